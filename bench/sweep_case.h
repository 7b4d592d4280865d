/// One product of a sweep: which way it is made, and whether it comes out right.
#pragma once

#include <random>
#include <string>

#include "bit_patterns.h"
#include "lumo/foundation/parallel/basic_parallelizer.h"

namespace lumo::sweep {

/// One length of one algorithm.
struct Row {
    const char* tag;
    upL_t words;           ///< 64-bit words of the ring
    unsigned digit;        ///< bits of its digits
    upL_t shortest_words;  ///< of a product that takes this row
    int ring_sign;         ///< of the 1 in the modulus
};

/// Whole: product as long as the row. Shortest: the least long that takes it. Window, small: words [s, L) of
/// a product of unequal operands, in the fast form and in the one with little memory. Square: whole, and a
/// window. Images: by transforms kept. Wrapped, wrapped_square: of operands as long as the ring, a window.
enum class Form { whole, shortest, window, small, square, images, wrapped, wrapped_square };
inline constexpr unsigned FORMS = 8;

struct Case {
    Row row;
    Form form;
    testing::Pattern a, b;
    upL_t tds;
    bool narrow;  ///< words of 32 bits
    std::uint64_t seed;
    upL_t exact_bits;  ///< longer products than these are told by residues, windows of them are the whole
};

/// Empty if the product was right and nothing was written beside it, else what was found and all that it
/// takes to make the product again.
std::string run_case(const Case& c, BasicParallelizer& pool);

}  // namespace lumo::sweep
