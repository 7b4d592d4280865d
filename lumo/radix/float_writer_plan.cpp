#include <algorithm>
#include <cmath>

#include "lumo/radix/float_writer.h"
#include "lumo/radix/output/decimal_words.h"
#include "lumo/radix/output/digit_pass.h"

namespace lumo {

namespace {

/// Decimal words below the digits asked for; values have 100 digits more.
constexpr upL_t GUARD_WORDS = 4;
/// Digits that a value must have at least beyond those asked for.
constexpr upL_t LEAST_MARGIN = 20;
/// Digits beyond those asked for that the check looks at, so that words below what the conversion reads still
/// decide whether a run of nines turns over.
constexpr upL_t SEEN_MARGIN = 130;
constexpr upL_t BLOCK_WORDS = 1 << 15;
constexpr upL_t PAGE_BYTES = 4096;

upL_t words_for(upL_t dec_digits) {
    return static_cast<upL_t>(static_cast<double>(dec_digits) * (std::log2(10.0) / 64)) + 2;
}

upL_t decimal_words(upL_t dec_digits) {
    constexpr upL_t D = DecimalWords::DIGITS_PER_WORD;
    return dec_digits == 0 ? 0 : (dec_digits + D - 1) / D + GUARD_WORDS;
}

}  // namespace

FloatWriterPlan::FloatWriterPlan(upL_t dec_digits_, upL_t hex_digits_, upL_t tds_)
    : dec_digits(dec_digits_),
      hex_digits(hex_digits_),
      tds(tds_),
      output_words(decimal_words(dec_digits)),
      block_words(std::clamp<upL_t>(std::max(output_words, hex_digits / 16 + 1), 256, BLOCK_WORDS)),
      convert(DecimalWords::BASE, output_words, tds),
      verify(10, output_words * DecimalWords::DIGITS_PER_WORD, words_for(dec_digits + SEEN_MARGIN), tds) {
    if (dec_digits != 0) fraction_words = words_for(dec_digits + LEAST_MARGIN);
    if (hex_digits != 0) fraction_words = std::max(fraction_words, hex_digits / 16 + 2);
    product_words = std::max(convert.product_words, verify.product_words);
    const upL_t pass_bytes = DigitPass::scratch_bytes(block_words) + PAGE_BYTES;
    scratch_bytes = align_bytes(output_words * sizeof(std::uint64_t)) +
                    std::max({convert.total_bytes, verify.total_bytes, pass_bytes});
}

}  // namespace lumo
