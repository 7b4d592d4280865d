#include <array>

#include "lumo/multiply/basecase/fixed_columns.h"
#include "lumo/multiply/basecase/fixed_products.h"

namespace lumo::Basecase {

namespace {

const void* after(const void* A, upL_t digits) {
    return static_cast<const char*>(A) + 8 * digits;
}

/// The columns up to where all digits of A take part.
template <int N, int... K>
[[gnu::always_inline]] inline void rising(void* T, ChainSum& sum, const void* A, const void* B,
                                          std::integer_sequence<int, K...>) {
    ((add_products<K>(sum, A, B, Range<0, K + 1>()), set_digit(T, K, sum.shift())), ...);
}

/// The columns above the top of B, whose last N digits begin at `last`.
template <int N, int... J>
[[gnu::always_inline]] inline void falling([[maybe_unused]] void* T, [[maybe_unused]] ChainSum& sum,
                                           [[maybe_unused]] const void* A, [[maybe_unused]] const void* last,
                                           std::integer_sequence<int, J...>) {
    ((add_products<N + J>(sum, A, last, Range<J + 1, N>()), set_digit(T, J, sum.shift())), ...);
}

template <int N>
void mul_strip(void* T, const void* A, const void* B, upL_t m) {
    ChainSum sum;
    rising<N>(T, sum, A, B, std::make_integer_sequence<int, N>());
    unsigned long long low = sum.low, middle = sum.middle;
    for (upL_t k = N; k < m; k++) {
        ChainSum column{low, middle, 0};
        add_products<N - 1>(column, A, after(B, k + 1 - N), Range<0, N>());
        set_digit(T, k, column.low);
        low = column.middle;
        middle = column.high;
    }
    sum = {low, middle, 0};
    falling<N>(static_cast<char*>(T) + 8 * m, sum, A, after(B, m - N),
               std::make_integer_sequence<int, N - 1>());
    set_digit(T, m + N - 1, sum.low);
}

template <int... N>
constexpr std::array<FixedStrip, sizeof...(N)> strip_table(std::integer_sequence<int, N...>) {
    return {mul_strip<N>...};
}

}  // namespace

FixedStrip fixed_strip(upL_t digits) {
    static constexpr auto table = strip_table(Range<1, static_cast<int>(MAX_FIXED_MUL) + 1>());
    return table[digits - 1];
}

}  // namespace lumo::Basecase
