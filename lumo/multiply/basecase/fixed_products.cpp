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
template <int K, int... I>
[[gnu::always_inline]] inline void add_products([[maybe_unused]] ChainSum& sum,
                                                [[maybe_unused]] const void* A,
                                                [[maybe_unused]] const void* B,
                                                std::integer_sequence<int, I...>) {
    (sum.add_product(digit(A, I), digit(B, K - I)), ...);
}

constexpr int first_of_column(int n, int k) {
    return k < n ? 0 : k - n + 1;
}

template <int N, int K>
[[gnu::always_inline]] inline void mul_column(void* T, ChainSum& sum, const void* A, const void* B) {
    add_products<K>(sum, A, B, Range<first_of_column(N, K), (K < N ? K + 1 : N)>());
    set_digit(T, K, sum.shift());
}

template <int N, int K>
[[gnu::always_inline]] inline void sqr_column(void* T, ChainSum& sum, const void* A) {
    ChainSum cross;
    add_products<K>(cross, A, A, Range<first_of_column(N, K), (K + 1) / 2>());
    sum.add(cross);
    sum.add(cross);
    if constexpr (K % 2 == 0) sum.add_product(digit(A, K / 2), digit(A, K / 2));
    set_digit(T, K, sum.shift());
}

template <int N, int... K>
void mul_columns(void* T, const void* A, const void* B, std::integer_sequence<int, K...>) {
    ChainSum sum;
    (mul_column<N, K>(T, sum, A, B), ...);
    set_digit(T, 2 * N - 1, sum.low);
}

template <int N, int... K>
void sqr_columns(void* T, const void* A, std::integer_sequence<int, K...>) {
    ChainSum sum;
    (sqr_column<N, K>(T, sum, A), ...);
    set_digit(T, 2 * N - 1, sum.low);
}

template <int N>
void mul_fixed(void* T, const void* A, const void* B) {
    mul_columns<N>(T, A, B, Range<0, 2 * N - 1>());
}

template <int N>
void sqr_fixed(void* T, const void* A) {
    sqr_columns<N>(T, A, Range<0, 2 * N - 1>());
}

template <int... N>
constexpr std::array<FixedMul, sizeof...(N)> mul_table(std::integer_sequence<int, N...>) {
    return {mul_fixed<N>...};
}
template <int... N>
constexpr std::array<FixedSqr, sizeof...(N)> sqr_table(std::integer_sequence<int, N...>) {
    return {sqr_fixed<N>...};
}

}  // namespace

FixedMul fixed_mul(upL_t digits) {
    static constexpr auto table = mul_table(Range<1, static_cast<int>(MAX_FIXED_MUL) + 1>());
    return table[digits - 1];
}

FixedSqr fixed_sqr(upL_t digits) {
    static constexpr auto table = sqr_table(Range<1, static_cast<int>(MAX_FIXED_SQR) + 1>());
    return table[digits - 1];
}

}  // namespace lumo::Basecase
