/// The powers of the radix that a conversion multiplies by.
#pragma once

#include <array>

#include "lumo/foundation/status/status_node.h"
#include "lumo/numbers/objects/big_float_transform.h"
#include "lumo/radix/conversion_probe.h"
#include "lumo/radix/convert_plan.h"

namespace lumo {

/// One row for each row of the plan: the image of its power where the plan keeps it, its words where products
/// are direct, and the words of the last. Lives in the table part of the conversion's scratch.
template <typename wtype>
class PowerTable {
 public:
    using Number = BigFloat<wtype>;
    using Form = BigFloatTransformR<wtype>;

    /// Cuts the table (plan.table_words) from the front of `buffer` and builds it, with what is left as
    /// scratch. Throws AlgorithmFailedException "Power Hash Mismatch" at "CBRv2::CheckP()" and "Mismatching
    /// exponents.".
    PowerTable(const ConvertPlanP<wtype>& plan, StatusNode& status, const MultiplyContext& ctx,
               AlignedBufferC& buffer, ConversionProbe<wtype>* probe);

    /// One row: the ring, and the power held in it where the plan keeps its image.
    struct Row {
        TransformHolder<wtype> build;    ///< under the plan's tds
        TransformHolder<wtype> product;  ///< the same ring under the row's tds
        Form form;
        Number words;  ///< the power itself, where products are direct
    };
    const Row& row(upL_t index) const { return rows[index]; }
    /// The power of the last row, as words.
    const Number& last_power() const { return power; }

 private:
    static constexpr upL_t MAX_ROWS = 48;

    const ConvertPlanP<wtype>& plan;
    std::array<Row, MAX_ROWS> rows;
    Number power;

    void set_first_power();
    void square(const MultiplyContext& ctx, upL_t index, wtype* target);
};

/// Compares the hash of the words of P, seen as P x 2^(W exponent), with that of radix^power.
template <typename wtype>
void check_power_hash(StatusNode& status, const wtype* P, upL_t L, upL_t exponent, wtype radix, upL_t power,
                      const ParallelContext& ctx);

}  // namespace lumo
