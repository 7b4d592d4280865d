#include "velmora/constants/series/series_e.h"

#include "lumo/foundation/errors/fatal.h"
#include "lumo/series/bsr_objects.h"
#include "velmora/constants/series/leaf_words.h"
#include "velmora/constants/series/log_gamma_sums.h"

namespace velmora {

using lumo::DoubleDouble;
using lumo::upL_t;

namespace {

constexpr upL_t LEAF_TERMS = 64;

/// Terms from `k` on whose product stays below 2^63, as one: the sum is p / q, its first term positive.
struct Group {
    std::int64_t p = 0;
    std::uint64_t q = 1;

    Group(upL_t& k, upL_t end, bool alternating, bool positive) {
        for (; k != end; ++k) {
            const auto product = static_cast<unsigned __int128>(q) * k;
            if (product >> 63 != 0) return;
            q = static_cast<std::uint64_t>(product);
            p = p * static_cast<std::int64_t>(k) + (positive ? 1 : -1);
            positive = positive != alternating;
        }
    }
};

}  // namespace

template <typename wtype>
SeriesETaylor<wtype>::SeriesETaylor(bool alternating_)
    : lumo::SeriesCommonP2B3<wtype>({DoubleDouble(0), DoubleDouble(0)}, 31, LEAF_TERMS),
      alternating(alternating_) {
    this->hyperdescent = true;
}

template <typename wtype>
DoubleDouble SeriesETaylor<wtype>::block_size(upL_t a, upL_t b) const {
    return log_gamma_difference(a, b, 0);
}

template <typename wtype>
void SeriesETaylor<wtype>::term(lumo::LeafTerm<wtype>& out, upL_t k) const {
    out.P[0] = 1;
    out.PL = 1;
    out.P_positive = !alternating || k % 2 == 0;
    LeafProduct<wtype> Q(out.Q);
    Q.multiply(k);
    out.QL = Q.length();
}

template <typename wtype>
void SeriesETaylor<wtype>::end(upL_t a, upL_t b, lumo::Parts<wtype>& out) const {
    constexpr upL_t WORDS = LEAF_TERMS * 64 / lumo::WordTraits<wtype>::bits;
    lumo::require(b - a <= LEAF_TERMS, "A leaf has grown beyond its words.", "SeriesETaylor::end()");
    wtype P[WORDS + 1], Q[WORDS + 1];
    upL_t PL = 0, QL = 1;
    Q[0] = 1;
    for (upL_t k = a; k != b;) {
        const bool like_first = !alternating || (k - a) % 2 == 0;
        const Group group(k, b, alternating, like_first);
        PL = lumo::multiply_add(P, PL, group.q, group.p);
        QL = lumo::multiply_add(Q, QL, group.q, 0);
    }
    set_words(out.P, P, PL, !alternating || a % 2 == 0);
    set_words(out.Q, Q, QL, true);
}

template <typename wtype>
DoubleDouble SeriesETaylor<wtype>::remaining(upL_t k, upL_t end) const {
    return end > k ? block_size(k, end) : DoubleDouble(0);
}

template <typename wtype>
upL_t SeriesETaylor<wtype>::terms_for(DoubleDouble size) const {
    upL_t lo = 0;
    upL_t hi = 1;
    while (size > block_size(1, hi + 1)) hi *= 2;
    while (hi - lo > 1) {
        const upL_t m = lo + (hi - lo) / 2;
        (size > block_size(1, m + 1) ? lo : hi) = m;
    }
    return hi + 1;
}

template class SeriesETaylor<std::uint32_t>;
template class SeriesETaylor<std::uint64_t>;

}  // namespace velmora
