/// What a series of the P, Q, R family, or of its special case without R, tells the engine.
///
/// The sum over [a, b) is P / Q with P = P0 Q1 + R0 P1, Q = Q0 Q1, R = R0 R1 for a range cut in two. R
/// carries the sign of an alternating series; Q is positive. A hyperdescent series has R = 1 throughout, so
/// that P = P0 Q1 + P1: its signs are those of P. Sizes are natural logarithms, lengths words of
/// `wtype`. Objects are immutable while a computation runs: all threads call them at once. Source: Haible and
/// Papanikolaou, "Fast multiprecision evaluation of series of rational numbers" (1998).
#pragma once

#include "lumo/foundation/types/double_double.h"

namespace lumo {

/// One term in words: magnitudes without leading zero words, Q positive and never zero.
template <typename wtype>
struct LeafTerm {
    static constexpr upL_t MAX_WORDS = 40;
    wtype P[MAX_WORDS];
    wtype Q[MAX_WORDS];
    wtype R[MAX_WORDS];
    upL_t PL, QL, RL;
    bool P_positive, R_positive;
};

struct MultiplyContext;
template <typename wtype>
struct Parts;
template <typename wtype>
struct ExactFloat;
template <typename wtype>
class BinaryBBP;

struct SeriesRates {
    DoubleDouble size;      ///< growth of Q a term beside its powers of k
    DoubleDouble converge;  ///< decrease of a term
};

template <typename wtype>
class SeriesCommonP2B3 {
 public:
    virtual ~SeriesCommonP2B3() = default;

    SeriesRates rates;
    upL_t overhead_words;       ///< room of a half of a range beyond half the words of the whole
    upL_t leaf_terms;           ///< ranges with fewer terms are leaves
    bool hyperdescent = false;  ///< R is 1, neither asked for nor stored
    upL_t grid_terms = 0;       ///< longer ranges are cut at its multiples, 0 anywhere
    upL_t cut_words = 0;        ///< by how much that makes a half longer, and what join() leaves out at most
    upL_t join_bytes = 0;       ///< scratch of join()

    /// Natural logarithm of Q over [a, b), 1 <= a <= b: exact but for a small constant, monotonic in b.
    virtual DoubleDouble block_size(upL_t a, upL_t b) const = 0;
    /// The term k >= 1.
    virtual void term(LeafTerm<wtype>& out, upL_t k) const = 0;
    /// The leaf [a, b), as bsr_end() makes it of the terms; for series whose runs of terms take less work.
    virtual void end(upL_t a, upL_t b, Parts<wtype>& out) const;

    /// The factors a k + b that R(k) and Q(k) each contain at least, as CommonFactor counts them; 0 to leave
    /// them.
    virtual unsigned common_power() const { return 0; }
    /// In the place of bsr_merge() for the range [a, b), where that frees the range of a factor; false, with
    /// nothing done, elsewhere.
    virtual bool join(const MultiplyContext&, upL_t, upL_t, Parts<wtype>&, const Parts<wtype>&,
                      const ExactFloat<wtype>&) const {
        return false;
    }

    /// Itself, for a series whose terms fall by one ratio.
    virtual const BinaryBBP<wtype>* binary_bbp() const { return nullptr; }

    /// Words that P, Q or R over [a, b) have at most.
    upL_t result_words(upL_t a, upL_t b) const;
    /// What the recursion over so many terms needs beyond its result, as right parts stand above left ones.
    upL_t recursion_words(upL_t terms) const;
    /// Words that a result buffer needs for the recursion over [a, b).
    upL_t words(upL_t a, upL_t b) const;
    /// Words that a half of a range of `words` words has at most.
    upL_t half_words(upL_t words) const;
    /// The point that cuts [a, b) into halves of equal size, or about equal on the grid.
    upL_t split(upL_t a, upL_t b) const;
    /// Precision that the terms from k on still need when the sum has `end` - 1 as its last term.
    virtual DoubleDouble remaining(upL_t k, upL_t end) const;
    /// Terms after which the rest of the sum lies below e^-size.
    virtual upL_t terms_for(DoubleDouble size) const;

 protected:
    SeriesCommonP2B3(SeriesRates r, upL_t overhead, upL_t leaf)
        : rates(r), overhead_words(overhead), leaf_terms(leaf) {}

    /// Bits by which P may exceed Q: a polynomial in k at most.
    upL_t excess_bits = 128;
};

/// Size of one word as a natural logarithm: W ln 2.
template <typename wtype>
DoubleDouble word_size();
/// Words for a size, rounded up.
template <typename wtype>
upL_t size_to_words(DoubleDouble size);
template <typename wtype>
DoubleDouble words_to_size(upL_t words);
/// ln Gamma(x) for x >= 1, by Stirling's series; off by less than 0.01.
long double log_gamma(long double x);

}  // namespace lumo
