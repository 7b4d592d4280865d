#include <array>

#include "lumo/multiply/basecase/fixed_columns.h"
#include "lumo/multiply/basecase/fixed_products.h"

namespace lumo::Basecase {

namespace {

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
void sqr_columns(void* T, const void* A, std::integer_sequence<int, K...>) {
    ChainSum sum;
    (sqr_column<N, K>(T, sum, A), ...);
    set_digit(T, 2 * N - 1, sum.low);
}

template <int N>
void sqr_fixed(void* T, const void* A) {
    sqr_columns<N>(T, A, Range<0, 2 * N - 1>());
}

template <int... N>
constexpr std::array<FixedSqr, sizeof...(N)> sqr_table(std::integer_sequence<int, N...>) {
    return {sqr_fixed<N>...};
}

}  // namespace

FixedSqr fixed_sqr(upL_t digits) {
    static constexpr auto table = sqr_table(Range<1, static_cast<int>(MAX_FIXED_SQR) + 1>());
    return table[digits - 1];
}

}  // namespace lumo::Basecase
