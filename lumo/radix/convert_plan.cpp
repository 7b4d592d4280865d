#include "lumo/radix/convert_plan.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/multiply/basecase/basecase.h"

namespace lumo {

namespace {

/// Below this many words a fraction is multiplied out word by word.
constexpr upL_t LEAF_WORDS = 96;
/// The same where short products are made by vectors: these split it further down, in rings of at most so
/// many bits, and are then faster than a transform whose power is at hand.
constexpr upL_t VECTOR_LEAF_WORDS = 48;
constexpr upL_t MOST_DIRECT_BITS = 10000;
/// Words of the radix from which a node is worth two tasks, and a line of status.
constexpr upL_t PARALLEL_LENGTH = 2048;
/// Each level adds an error of a few units of the second guard word, so that dozens of levels stay below one
/// unit of the first.
template <typename wtype>
constexpr upL_t GUARD_WORDS = sizeof(wtype) == 8 ? 2 : 3;

/// By words such products would take as long as the transforms, and longer than those of AVX2.
template <typename wtype>
bool short_products_by_vectors() {
    return Basecase::by_vectors<wtype>(VECTOR_LEAF_WORDS, VECTOR_LEAF_WORDS / 3);
}

/// What a transform takes with `arrays` images.
upL_t transform_bytes(const BufferSizes& sizes, upL_t arrays) {
    return arrays * align_bytes(sizes.array_bytes) + align_bytes(sizes.scratch_bytes);
}

}  // namespace

template <typename wtype>
ConvertPlanP<wtype>::ConvertPlanP(wtype radix_, upL_t length_words, upL_t tds_)
    : radix(radix_), length(length_words), tds(tds_), twos(0), bits_a_word(0) {
    if (radix < 2) throw InvalidParametersException("ConvertPlanP::check_Psize()", "Invalid radix.");
    twos = static_cast<unsigned>(std::countr_zero(radix));
    bits_a_word = std::log2(static_cast<double>(radix));
    parallel_length = PARALLEL_LENGTH;
    base_length = length;
    if (length != 0 && radix >> twos != 1) make_rows();
}

template <typename wtype>
upL_t ConvertPlanP<wtype>::check_Psize(wtype radix, upL_t length_words, upL_t tds) {
    return ConvertPlanP(radix, length_words, tds).table_words * sizeof(wtype);
}

template <typename wtype>
upL_t ConvertPlanP<wtype>::fraction_words(upL_t n) const {
    return static_cast<upL_t>(bits_a_word * static_cast<double>(n) / WordTraits<wtype>::bits) + 1 +
           GUARD_WORDS<wtype>;
}

template <typename wtype>
upL_t ConvertPlanP<wtype>::level_of(upL_t n, upL_t level) const {
    if (n <= 15) return 0;
    while (level > 0 && rows[level - 1].split >= n) level--;
    return level;
}

template <typename wtype>
void ConvertPlanP<wtype>::make_rows() {
    // All nodes of a level are equally long but the last, which is shorter by less than one part in the
    // leaves' length.
    const upL_t leaf_bits =
        (short_products_by_vectors<wtype>() ? VECTOR_LEAF_WORDS : LEAF_WORDS) * WordTraits<wtype>::bits;
    const upL_t leaf = std::max<upL_t>(15, static_cast<upL_t>(static_cast<double>(leaf_bits) / bits_a_word));
    upL_t levels = 0;
    while ((length - 1) >> levels >= leaf) levels++;
    base_length = ((length - 1) >> levels) + 1;
    rows.resize(levels);
    upL_t row_tds = tds;
    for (upL_t i = levels; i-- > 0;) {
        rows[i].split = base_length << i;
        if (2 * rows[i].split < parallel_length) row_tds = 1;
        rows[i].tds = row_tds;
        row_tds = (row_tds + 1) / 2;
    }
    upL_t table_bytes = 0;
    upL_t build_bytes = 0;
    for (upL_t i = 0; i < levels; i++) {
        size_row(rows[i], i);
        if (rows[i].image_kept) table_bytes += align_bytes(rows[i].build.array_bytes);
        if (rows[i].direct) table_bytes += align_bytes(rows[i].power_words * sizeof(wtype));
        build_bytes = std::max(build_bytes, transform_bytes(rows[i].build, 1));
    }
    if (levels == 0) return;
    const PowerRow<wtype>& top = rows.back();
    // Two buffers take turns in squaring: only the top power's words are needed after the table is built.
    table_bytes += 2 * align_bytes(top.power_words * sizeof(wtype));
    table_words = table_bytes / sizeof(wtype);
    array_bytes = top.product.array_bytes;
    scratch_bytes = top.product.scratch_bytes;
    product_words = top.ring_words;
    total_bytes = table_bytes + std::max(build_bytes, top.node_bytes);
}

template <typename wtype>
void ConvertPlanP<wtype>::size_row(PowerRow<wtype>& row, upL_t index) {
    constexpr unsigned W = WordTraits<wtype>::bits;
    const upL_t s = row.split;
    row.exponent = s * twos / W;
    row.shift = static_cast<unsigned>(s * twos % W);
    const double odd_bits = std::log2(static_cast<double>(radix >> twos)) * static_cast<double>(s);
    // One word for the rounding of the estimate, one for a zero word that a square may have at its bottom.
    row.power_words = static_cast<upL_t>((odd_bits + row.shift) / W) + 3;
    // The value's words that lie above 2^(-W exponent) give integers only. What is left times the power spans
    // the low garbage, the fraction wanted with two words more, and an integer part as long as the power; the
    // ring need not tell the garbage from the integer part. It also holds the power's square.
    const upL_t active = fraction_words(2 * s) - row.exponent;
    row.result_words = fraction_words(s) + 3;
    row.ring_words = std::max(active, row.power_words + row.result_words);
    row.direct = short_products_by_vectors<wtype>() && row.ring_words * W <= MOST_DIRECT_BITS;
    row.image_kept = !row.direct && index + 1 < rows.size();
    if (row.direct) row.result_words = active + row.power_words;
    upL_t product_bytes = 0;
    if (!row.direct) {
        Multiply::max_buffer_sizes<wtype>(row.build, row.ring_words, tds);
        Multiply::max_buffer_sizes<wtype>(row.product, row.ring_words, row.tds);
        product_bytes =
            transform_bytes(row.product, 1) + (row.image_kept ? 0 : align_bytes(row.product.least_part()));
    }
    upL_t child_bytes = index == 0 ? 0 : rows[index - 1].node_bytes;
    if (row.tds > 1) child_bytes *= 2;
    row.node_bytes = align_bytes(row.result_words * sizeof(wtype)) + std::max(product_bytes, child_bytes);
}

template struct ConvertPlanP<std::uint32_t>;
template struct ConvertPlanP<std::uint64_t>;

}  // namespace lumo
