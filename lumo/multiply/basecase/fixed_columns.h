/// Columns of products whose places are known to the compiler.
#pragma once

#include <utility>

#include "lumo/multiply/basecase/accumulator.h"

namespace lumo::Basecase {

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

}  // namespace lumo::Basecase
