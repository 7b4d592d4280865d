/// Word arrays of the shapes that find faults in carries, for tests of everything that loops over words.
#pragma once

#include <algorithm>
#include <random>
#include <vector>

#include "lumo/foundation/types/types.h"

namespace lumo::testing {

/// Runs: long stretches of zeros and of ones with single odd words between them.
enum class Shape { random, ones, zeros, sparse, runs };
inline constexpr Shape ALL_SHAPES[] = {Shape::random, Shape::ones, Shape::zeros, Shape::sparse, Shape::runs};

template <typename wtype>
std::vector<wtype> shaped_words(Shape shape, upL_t L, std::mt19937_64& random) {
    std::vector<wtype> words(L);
    constexpr wtype ones = static_cast<wtype>(~wtype(0));
    switch (shape) {
        case Shape::random:
            for (wtype& word : words) word = static_cast<wtype>(random());
            break;
        case Shape::ones:
            words.assign(L, ones);
            break;
        case Shape::zeros:
            break;
        case Shape::sparse:
            for (upL_t i = random() % 5; i < L; i += 1 + random() % 40)
                words[i] = static_cast<wtype>(wtype(1) << random() % WordTraits<wtype>::bits);
            break;
        case Shape::runs:
            for (upL_t i = 0; i < L;) {
                const wtype fill = random() % 2 ? ones : wtype(0);
                const upL_t length = random() % 4 ? random() % 12 : random() % (L + 1);
                for (upL_t end = std::min(L, i + length); i < end; i++) words[i] = fill;
                if (i < L && random() % 2) words[i++] = static_cast<wtype>(random());
            }
            break;
    }
    return words;
}

}  // namespace lumo::testing
