#include "lumo/multiply/basecase/fixed_products.h"

#include <array>
#include <utility>

#include "lumo/multiply/basecase/accumulator.h"

namespace lumo::Basecase {

namespace {

template <int First, int... I>
constexpr auto shifted(std::integer_sequence<int, I...>) {
    return std::integer_sequence<int, (First + I)...>();
}
/// The integers First, .., End - 1: loops over them are unrolled by the language itself.
template <int First, int End>
using Range = decltype(shifted<First>(std::make_integer_sequence<int, (End > First ? End - First : 0)>()));

/// Sum of A[i] B[K - i] over the range.
template <int K, typename wtype, int... I>
[[gnu::always_inline]] inline void add_products([[maybe_unused]] ChainSum& sum,
                                                [[maybe_unused]] const wtype* A,
                                                [[maybe_unused]] const wtype* B,
                                                std::integer_sequence<int, I...>) {
    (sum.add_product(digit(A, I), digit(B, K - I)), ...);
}

constexpr int first_of_column(int n, int k) {
    return k < n ? 0 : k - n + 1;
}

template <int N, int K, typename wtype>
[[gnu::always_inline]] inline void mul_column(wtype* T, ChainSum& sum, const wtype* A, const wtype* B) {
    add_products<K>(sum, A, B, Range<first_of_column(N, K), (K < N ? K + 1 : N)>());
    set_digit(T, K, sum.shift());
}

template <int N, int K, typename wtype>
[[gnu::always_inline]] inline void sqr_column(wtype* T, ChainSum& sum, const wtype* A) {
    ChainSum cross;
    add_products<K>(cross, A, A, Range<first_of_column(N, K), (K + 1) / 2>());
    sum.add(cross);
    sum.add(cross);
    if constexpr (K % 2 == 0) sum.add_product(digit(A, K / 2), digit(A, K / 2));
    set_digit(T, K, sum.shift());
}

template <int N, typename wtype>
void mul_fixed(wtype* T, const wtype* A, const wtype* B) {
    ChainSum sum;
    [&]<int... K>(std::integer_sequence<int, K...>) {
        (mul_column<N, K>(T, sum, A, B), ...);
    }
    (Range<0, 2 * N - 1>());
    set_digit(T, 2 * N - 1, sum.low);
}

template <int N, typename wtype>
void sqr_fixed(wtype* T, const wtype* A) {
    ChainSum sum;
    [&]<int... K>(std::integer_sequence<int, K...>) {
        (sqr_column<N, K>(T, sum, A), ...);
    }
    (Range<0, 2 * N - 1>());
    set_digit(T, 2 * N - 1, sum.low);
}

template <typename wtype, int... N>
constexpr std::array<FixedMul<wtype>, sizeof...(N)> mul_table(std::integer_sequence<int, N...>) {
    return {mul_fixed<N + 1, wtype>...};
}
template <typename wtype, int... N>
constexpr std::array<FixedSqr<wtype>, sizeof...(N)> sqr_table(std::integer_sequence<int, N...>) {
    return {sqr_fixed<N + 1, wtype>...};
}

using Lengths = std::make_integer_sequence<int, static_cast<int>(MAX_FIXED_DIGITS)>;

}  // namespace

template <typename wtype>
FixedMul<wtype> fixed_mul(upL_t digits) {
    static constexpr auto table = mul_table<wtype>(Lengths());
    return table[digits - 1];
}

template <typename wtype>
FixedSqr<wtype> fixed_sqr(upL_t digits) {
    static constexpr auto table = sqr_table<wtype>(Lengths());
    return table[digits - 1];
}

template FixedMul<std::uint32_t> fixed_mul(upL_t);
template FixedMul<std::uint64_t> fixed_mul(upL_t);
template FixedSqr<std::uint32_t> fixed_sqr(upL_t);
template FixedSqr<std::uint64_t> fixed_sqr(upL_t);

}  // namespace lumo::Basecase
