/// The family of series that fall by the same ratio at every term: sums of p(k) / q(k) / r^k.
///
/// The sum over [a, b) of p(k) / (q(k) r^(k - a + 1)) is P / (D r^(b - a)). Leaf P = p(k), D = q(k); for a
/// range cut in two (0 left, 1 right, of n1 terms)
///   P = P0 D1 r^n1 + D0 P1        D = D0 D1
/// With r = root^power 2^shift the power of two goes into the exponent. The power of the root depends on the
/// number of terms alone: all ranges of a level share it. A series of BBP type has root 1, and nothing is
/// multiplied but P and D.
///
/// To the rest of the engine such a series is one of P, Q, R with Q = D r^(b - a) and R = D.
#pragma once

#include "lumo/series/bsr_objects.h"

namespace lumo {

/// root^power 2^shift, above one.
template <typename wtype>
struct GeometricRatio {
    wtype root = 1;  ///< below 2^63
    unsigned power = 0;
    unsigned shift = 0;
};

template <typename wtype>
class BinaryBBP : public SeriesCommonP2B3<wtype> {
 public:
    const GeometricRatio<wtype> ratio;

    /// P := p(k) with its sign and R := q(k), positive; k >= 1. q(k) with the ratio has at most
    /// LeafTerm::MAX_WORDS words.
    virtual void fraction(LeafTerm<wtype>& out, upL_t k) const = 0;
    void term(LeafTerm<wtype>& out, upL_t k) const final;
    /// P and R of a leaf; Q is left alone. As it stands for single terms: a series with longer leaves brings
    /// its own.
    void end(upL_t a, upL_t b, Parts<wtype>& out) const override;
    const BinaryBBP* binary_bbp() const final { return this; }

    /// Words that D over [a, b) has at most.
    upL_t denominator_words(upL_t a, upL_t b) const;
    /// Words that root^(power n) has at most.
    upL_t power_words(upL_t n) const;

 protected:
    /// `size`: growth of Q a term beside its powers of k, as in SeriesRates.
    BinaryBBP(const GeometricRatio<wtype>& ratio, DoubleDouble size, upL_t overhead, upL_t leaf);

 private:
    const DoubleDouble power_size;  ///< of root^power, made once: every merge asks for it
};

}  // namespace lumo
