/// Leaves of series whose terms are products of small factors.
#pragma once

#include <concepts>

#include "lumo/foundation/errors/fatal.h"
#include "lumo/series/bsr_objects.h"
#include "velmora/constants/series/leaf_words.h"

namespace velmora {

inline constexpr lumo::upL_t MOST_LEAF_TERMS = 12;

/// What a series of the P, Q, R family is made of: R(k) and Q(k) by factors that multiply a LeafProduct, and
/// P(k) as p(k), or as R(k) p(k), with p(k) >= 0 in words, whose number set_p() returns; it has room for
/// LeafTerm::MAX_WORDS of them.
template <typename Terms, typename wtype>
concept FactorTerms = requires(const Terms& terms, LeafProduct<wtype>& product, wtype* words, lumo::upL_t k) {
    terms.multiply_R(product, k);
    terms.multiply_Q(product, k);
    { terms.set_p(words, k) } -> std::same_as<lumo::upL_t>;
};

/// The leaf [a, b) of at most MOST_LEAF_TERMS terms, one after the other: R' = R r(k), Q' = Q q(k), P' = P
/// q(k) + R' p(k), or + R p(k) where P does not contain R. All in magnitudes: the terms of an alternating
/// series fall, so that the first one's sign is that of P.
template <typename wtype, FactorTerms<wtype> Terms>
void make_factor_leaf(const Terms& terms, lumo::upL_t a, lumo::upL_t b, bool alternating, bool P_contains_R,
                      lumo::Parts<wtype>& out) {
    using lumo::upL_t;
    constexpr upL_t TERM_WORDS = lumo::LeafTerm<wtype>::MAX_WORDS, WORDS = (MOST_LEAF_TERMS + 1) * TERM_WORDS;
    lumo::require(b - a <= MOST_LEAF_TERMS, "A leaf has grown beyond its words.", "make_factor_leaf()");
    wtype P[WORDS], Q[WORDS], R[WORDS], p[TERM_WORDS];
    upL_t PL = 0, QL = 1, RL = 1;
    Q[0] = R[0] = 1;
    for (upL_t k = a; k != b; ++k) {
        LeafProduct<wtype> ratio(R, RL), denominator(Q, QL), numerator(P, PL);
        terms.multiply_Q(denominator, k);
        terms.multiply_Q(numerator, k);
        QL = denominator.length();
        PL = numerator.length();
        const bool add = !alternating || (k - a) % 2 == 0;
        const upL_t pL = terms.set_p(p, k);
        const auto add_term = [&] {
            PL = add ? lumo::add_words_product(P, PL, R, RL, p, pL)
                     : lumo::subtract_words_product(P, PL, R, RL, p, pL);
        };
        if (!P_contains_R) add_term();
        terms.multiply_R(ratio, k);
        RL = ratio.length();
        if (P_contains_R) add_term();
    }
    set_words(out.P, P, PL, !(alternating && P_contains_R));
    set_words(out.Q, Q, QL, true);
    out.Q.strip_lzs_aligned();
    if (!out.need_R) return;
    set_words(out.R, R, RL, !alternating || (b - a) % 2 == 0);
    out.R.strip_lzs_aligned();
}

}  // namespace velmora
