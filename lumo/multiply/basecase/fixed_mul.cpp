#include <array>

#include "lumo/multiply/basecase/fixed_columns.h"
#include "lumo/multiply/basecase/fixed_products.h"

namespace lumo::Basecase {

namespace {

template <int N, int K>
[[gnu::always_inline]] inline void mul_column(void* T, ChainSum& sum, const void* A, const void* B) {
    add_products<K>(sum, A, B, Range<first_of_column(N, K), (K < N ? K + 1 : N)>());
    set_digit(T, K, sum.shift());
}

template <int N, int... K>
void mul_columns(void* T, const void* A, const void* B, std::integer_sequence<int, K...>) {
    ChainSum sum;
    (mul_column<N, K>(T, sum, A, B), ...);
    set_digit(T, 2 * N - 1, sum.low);
}

template <int N>
void mul_fixed(void* T, const void* A, const void* B) {
    mul_columns<N>(T, A, B, Range<0, 2 * N - 1>());
}

template <int... N>
constexpr std::array<FixedMul, sizeof...(N)> mul_table(std::integer_sequence<int, N...>) {
    return {mul_fixed<N>...};
}

}  // namespace

FixedMul fixed_mul(upL_t digits) {
    static constexpr auto table = mul_table(Range<1, static_cast<int>(MAX_FIXED_MUL) + 1>());
    return table[digits - 1];
}

}  // namespace lumo::Basecase
