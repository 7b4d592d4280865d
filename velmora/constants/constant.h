/// A constant that can be computed: what the session knows of it.
#pragma once

#include <functional>
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
    std::function<void(const std::string&)> log_event;  ///< never empty; main thread only
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
    std::string name() const { return row.menu_name; }
    const AlgorithmEntry& algorithm() const { return row.algorithms[chosen]; }
    /// Chooses by token; throws KeyNotFoundException "Invalid Key: " and the token.
    void set_algorithm(std::string_view token);

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
