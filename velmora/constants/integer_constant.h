/// A constant of an integer n, 2 until another is set.
#pragma once

#include <limits>

#include "velmora/constants/constant.h"

namespace velmora {

class IntegerConstant : public Constant {
 public:
    using Constant::Constant;
    /// "Sqrt(2)" for the menu name "Sqrt(n)".
    std::string name() const override;
    std::string file_name() const override;
    bool takes_argument() const override { return true; }
    upL_t argument() const override { return integer; }
    void set_argument(std::string_view text) override;

 protected:
    /// The largest n that is taken. Configuration files hold integers of 64 bits with a sign.
    virtual upL_t largest_argument() const { return std::numeric_limits<std::int64_t>::max(); }
    /// Why n has no place here, without the number itself, as "Argument is invalid: "; empty if it has one.
    virtual std::string refusal(upL_t n) const = 0;

 private:
    upL_t integer = 2;
};

}  // namespace velmora
