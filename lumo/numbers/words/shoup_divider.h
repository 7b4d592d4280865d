/// Division of word arrays by one word with a precomputed two-word inverse (Shoup), serial and in parallel.
#pragma once

#include <bit>

#include "lumo/numbers/words/double_word.h"
#include "lumo/numbers/words/words.h"

namespace lumo {

/// A divisor d, 2 < d < 2^(W-1), not a power of two, with floor((2^(2W) - 1) / d).
/// The constructor throws InvalidParametersException "Divisor is too large." or "Untested with power-of-two."
/// at "ShoupDivider()".
template <typename wtype>
struct ShoupDivider {
    wtype d;
    wtype neg_d;  ///< -d modulo 2^W
    wtype inv_lo;
    wtype inv_hi;

    explicit ShoupDivider(wtype divisor);
    wtype add(wtype a, wtype b) const {
        const wtype s = a + b;
        return s >= d ? s - d : s;
    }
    wtype mul(wtype a, wtype b) const {
        wtype w = inv_hi * b + mul_high(inv_lo, b);
        if (static_cast<wtype>(w * neg_d) >= d) w++;  // now floor(b 2^W / d)
        const wtype r = a * b + mul_high(a, w) * neg_d;
        return r >= d ? r + neg_d : r;
    }
    /// a 2^W modulo d.
    wtype shift(wtype a) const {
        const wtype r = (mul_high(inv_lo, a) + inv_hi * a) * neg_d;
        return r >= d ? r + neg_d : r;
    }
    /// 2^(W e) modulo d.
    wtype pow2W(upL_t e) const {
        if (e == 0) return 1;
        wtype r = shift(1);
        for (int bit = static_cast<int>(std::bit_width(e)) - 2; bit >= 0; bit--) {
            r = mul(r, r);
            if (e >> bit & 1) r = shift(r);
        }
        return r;
    }
};

/// (top, A) modulo d. top >= d throws InvalidParametersException "Top word is too large." at "mod()".
template <typename wtype>
wtype bp_mod(const ShoupDivider<wtype>& D, const wtype* A, upL_t L, wtype top);
/// T := (top, A) / d over L words (T may be A); returns the remainder. A block whose remainder disagrees with
/// the one foreseen by another route throws AlgorithmFailedException "Mismatching block residuals.".
template <typename wtype>
wtype bp_div_np(const ShoupDivider<wtype>& D, wtype* T, const wtype* A, upL_t L, wtype top,
                const ParallelContext& ctx = {});
/// The same with A taken as zero: L further quotient words below a known remainder `top`.
template <typename wtype>
wtype bp_div_ex(const ShoupDivider<wtype>& D, wtype* T, upL_t L, wtype top, const ParallelContext& ctx = {});

}  // namespace lumo
