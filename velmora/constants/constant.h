/// A constant that can be computed: what the session knows of it.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "lumo/foundation/memory/aligned_buffer.h"
#include "lumo/foundation/parallel/basic_parallelizer.h"
#include "lumo/foundation/status/status_node.h"
#include "lumo/numbers/objects/big_float.h"
#include "velmora/constants/catalogue.h"

namespace velmora {

using lumo::upL_t;

/// What a computation takes. Both are upper bounds.
struct SizeEstimate {
    upL_t working_bytes = 0;     ///< of the buffer handed to compute(), a multiple of 128
    upL_t max_product_bits = 0;  ///< the longest product by transform; sizes the twiddle tables
};

/// What a computation may use. The caller keeps all of it alive until the result has been taken out.
struct ComputeContext {
    upL_t precision_words;           ///< of 64 bits
    lumo::ParallelContext parallel;  ///< the `tds` that the estimate was made for
    lumo::AlignedBufferC buffer;     ///< at least `working_bytes` of the estimate
    lumo::StatusNode& status;
};

/// An entry of the catalogue with one of its algorithms chosen. Lives for one computation.
///
/// Precisions are words of 64 bits. estimate() allocates nothing large and compute() nothing at all outside
/// the context's buffer. The estimate of a size that no product can serve throws LimitExceededException.
class Constant {
 public:
    /// The first algorithm of the entry is chosen.
    explicit Constant(const CatalogueEntry& catalogue_entry) : row(catalogue_entry) {}
    virtual ~Constant() = default;
    Constant(const Constant&) = delete;
    Constant& operator=(const Constant&) = delete;

    const CatalogueEntry& entry() const { return row; }
    std::string key() const { return row.key; }
    virtual std::string name() const { return row.menu_name; }
    /// What the names of digit files begin with.
    virtual std::string file_name() const { return key(); }
    const AlgorithmEntry& algorithm() const { return row.algorithms[chosen]; }
    /// Chooses by token; throws KeyNotFoundException "Invalid Key: " and the token.
    void set_algorithm(std::string_view token);
    /// The menu line of an algorithm, and what stands behind and below it.
    virtual std::string algorithm_name(const AlgorithmEntry& entry) const { return entry.name; }
    virtual std::string algorithm_remark(const AlgorithmEntry& entry) const { return entry.remark; }

    /// Whether the constant is one of an integer, as a square root or a logarithm is.
    virtual bool takes_argument() const { return false; }
    virtual upL_t argument() const { return 0; }
    /// Takes the integer in decimal. InvalidParametersException "Argument is invalid: ", "Argument is too
    /// large: " or what the constant says of numbers that it has no use for; the text follows, and the limit
    /// on a line of its own.
    virtual void set_argument(std::string_view text);

    /// Largest count of decimal digits.
    virtual upL_t max_digits() const { return 1000000000000050; }
    /// Terms of the chosen series.
    virtual upL_t terms(upL_t precision_words) const = 0;
    virtual SizeEstimate estimate(upL_t precision_words, upL_t tds) const = 0;
    /// The value, to `precision_words`; its words lie within the context's buffer.
    virtual lumo::BigFloat<std::uint64_t> compute(const ComputeContext& context) const = 0;

 private:
    const CatalogueEntry& row;
    std::size_t chosen = 0;
};

}  // namespace velmora
