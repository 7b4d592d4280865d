/// One third, as a constant that costs nothing to compute.
#pragma once

#include <algorithm>

#include "lumo/foundation/errors/exceptions.h"
#include "velmora/constants/constant.h"

namespace velmora {

class ThirdConstant final : public Constant {
 public:
    using Constant::Constant;
    static std::unique_ptr<Constant> make(const CatalogueEntry& entry) {
        return std::make_unique<ThirdConstant>(entry);
    }

    upL_t max_digits() const override { return limit; }
    upL_t terms(upL_t) const override { return 1; }
    SizeEstimate estimate(upL_t p, upL_t) const override {
        if (too_long) throw lumo::LimitExceededException("", "Product is too long.", 1000, p);
        return {lumo::align_bytes(8 * (p + 2)) + offset_bytes, 64 * p};
    }
    lumo::BigFloat<std::uint64_t> compute(const ComputeContext& context) const override {
        lumo::AlignedBufferC buffer = context.buffer;
        buffer.spawn(offset_bytes);  // the value need not lie at the start
        const upL_t words = context.precision_words + 2;
        lumo::BigFloat<std::uint64_t> x(buffer.spawn_words<std::uint64_t>(words), words);
        std::fill_n(x.T, words, 0x5555555555555555);
        x.L = words;
        x.exp = -static_cast<lumo::spL_t>(words);
        const lumo::StatusSection section(context.status, {{'G', "Writing one third...  "}});
        return x;
    }

    upL_t limit = 1000000000000050;
    upL_t offset_bytes = 256;
    bool too_long = false;
};

inline constexpr AlgorithmEntry THIRD_ALGORITHMS[] = {{"direct", "Direct", "", ""},
                                                      {"other", "Other", "(slow)", ""}};
inline constexpr CatalogueEntry THIRD_ENTRY = {
    "", "third", "Third", "0.333333...", "", THIRD_ALGORITHMS, {}, {}, &ThirdConstant::make};

inline std::unique_ptr<ThirdConstant> make_third() {
    return std::make_unique<ThirdConstant>(THIRD_ENTRY);
}

}  // namespace velmora
