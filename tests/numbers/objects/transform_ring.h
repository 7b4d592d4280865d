/// A transform with its arrays in memory of exactly their size; the work area has room for one more.
#pragma once

#include "held_numbers.h"
#include "lumo/numbers/objects/transform_helper.h"
#include "scratch.h"

namespace lumo::testing {

template <typename wtype>
struct Ring {
    explicit Ring(upL_t words)
        : transform(make(holder, words)),
          scratch(TransformHelper<wtype>::bytes(transform, 4)),
          helper(scratch.context(), transform, 3) {}
    ~Ring() { EXPECT_TRUE(scratch.intact()); }
    upL_t words() const { return transform.words(); }
    /// A form with the image array i >= 1.
    template <typename Form>
    Form form(upL_t i) const {
        return Form(transform, helper.array(i));
    }

    TransformHolder<wtype> holder;
    const TransformDescriptor<wtype>& transform;
    Scratch scratch;
    TransformHelper<wtype> helper;

 private:
    static const TransformDescriptor<wtype>& make(TransformHolder<wtype>& holder, upL_t words) {
        static const bool tables = (Multiply::ensure_tables(1 << 22), true);
        EXPECT_TRUE(tables);
        Multiply::params(holder, words, 1);
        return *holder;
    }
};

}  // namespace lumo::testing
