/// Schoolbook and Karatsuba as an algorithm of the tables: "BKT". Runs in the caller's thread, whatever the
/// context allows; has no tables.
#pragma once

#include "lumo/multiply/basecase/bkt_sizes.h"
#include "lumo/multiply/basic_algorithm.h"

namespace lumo {

/// Operands of at least one word. Partial products are exact: the words below the window are computed too.
template <typename wtype>
class BktAlgorithm final : public BasicAlgorithm<wtype> {
 public:
    BktAlgorithm()
        : BasicAlgorithm<wtype>(BKT_MAX_BITS, "BKT", "Basecase/Karatsuba", "MULB", "Basic Multiply") {}

    void ensure_tables(upL_t) const override {}
    upL_t max_buffer_sizes(BufferSizes& sizes, upL_t length, upL_t tds) const override;
    void params(TransformHolder<wtype>& out, upL_t length, upL_t tds) const override;
    void sqr(const MultiplyContext& ctx, wtype* T, const wtype* A, upL_t AL) const override;
    void mul(const MultiplyContext& ctx, wtype* T, const wtype* A, upL_t AL, const wtype* B,
             upL_t BL) const override;
    void sqr_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A,
                     upL_t AL) const override;
    void mul_partial(const MultiplyContext& ctx, wtype* T, upL_t s, upL_t L, const wtype* A, upL_t AL,
                     const wtype* B, upL_t BL) const override;
};

}  // namespace lumo
