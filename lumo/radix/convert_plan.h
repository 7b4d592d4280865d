/// Sizes of a conversion from binary to another radix, and the rows of its table of powers.
///
/// A fraction becomes `length` words of radix R. A value of len words is split at the largest s = B 2^row
/// below len: its s top words come from the value cut short, the others from the fraction of value x R^s. Row
/// `row` of the table holds R^s as odd x 2^shift times a power of the word, so that only the odd part is
/// multiplied.
#pragma once

#include <vector>

#include "lumo/multiply/multiply.h"

namespace lumo {

/// One level of the conversion. Lengths are words of `wtype` unless they count words of the radix.
template <typename wtype>
struct PowerRow {
    upL_t split = 0;          ///< s, in words of the radix
    upL_t exponent = 0;       ///< R^s = P x 2^(W exponent)
    unsigned shift = 0;       ///< P = odd part x 2^shift, shift < W
    upL_t power_words = 0;    ///< most words that P may take
    upL_t ring_words = 0;     ///< what the transform must hold
    upL_t result_words = 0;   ///< where a fraction handed down by this row is made
    upL_t tds = 1;            ///< of the products by this row
    upL_t node_bytes = 0;     ///< scratch of the recursion from this row down
    bool direct = false;      ///< products are made from words, of which the power's stand in the table
    bool image_kept = false;  ///< the power's image stands in the table; of what is not direct, only the last
                              ///< is made anew for each product
    BufferSizes build;    ///< of transforms for the table, under the plan's tds
    BufferSizes product;  ///< of the row's products
};

template <typename wtype>
struct ConvertPlanP {
    upL_t table_words = 0;    ///< the table of powers with their images, in words
    upL_t total_bytes = 0;    ///< scratch that DirectConvertB::run() needs
    upL_t array_bytes = 0;    ///< image of one operand of the longest product
    upL_t scratch_bytes = 0;  ///< work area of the longest product

    wtype radix;
    upL_t length;  ///< words of the radix that may be converted at once
    upL_t tds;
    unsigned twos;              ///< R = odd 2^twos
    double bits_a_word;         ///< log2(R)
    upL_t base_length = 0;      ///< B, in words of the radix
    upL_t parallel_length = 0;  ///< nodes of at least this many words run their two halves as two tasks
    upL_t product_words = 0;    ///< longest product: the twiddle tables must reach so far
    std::vector<PowerRow<wtype>> rows;

    /// Needs no twiddle tables.
    /// InvalidParametersException "Invalid radix." for a radix below 2. A radix with no odd part has no rows:
    /// its words are cut from the bits.
    ConvertPlanP(wtype radix, upL_t length_words, upL_t tds);

    /// Bytes that the table of powers needs.
    static upL_t check_Psize(wtype radix, upL_t length_words, upL_t tds);
    /// Words after the point that a value needs for `n` words of the radix, two guard words included.
    upL_t fraction_words(upL_t n) const;
    /// The row that splits `n` words of the radix, counted from 1; 0 when they are converted directly.
    upL_t level_of(upL_t n, upL_t level) const;

 private:
    void make_rows();
    void size_row(PowerRow<wtype>& row, upL_t index);
};

}  // namespace lumo
