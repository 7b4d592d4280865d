/// Which algorithm multiplies which length: a short list of thresholds, walked from the bottom.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lumo/multiply/basic_algorithm.h"

namespace lumo {

/// One line of the list that a table is built from.
struct TableRow {
    static constexpr upL_t NO_LIMIT = ~upL_t(0);
    const char* tag;
    upL_t limit_bits;  ///< longest product; NO_LIMIT: as far as the algorithm goes
};

/// Read-only once built. Lengths are words of `wtype`.
template <typename wtype>
class AlgorithmTable {
 public:
    struct Row {
        upL_t threshold;  ///< longest product in words
        const BasicAlgorithm<wtype>* algorithm;
    };
    explicit AlgorithmTable(std::string table_name) : name_(std::move(table_name)) {}

    /// Ignores a null algorithm. A threshold beyond the algorithm's own limit is cut to it. Throws
    /// StringException "Thresholds must be increasing." at "AlgorithmTable::add()". The algorithm must
    /// outlive the table.
    void add(upL_t threshold, const BasicAlgorithm<wtype>* algorithm);
    /// The same with an algorithm that only this table uses.
    void add(upL_t threshold, std::unique_ptr<const BasicAlgorithm<wtype>> algorithm);

    /// Of the first row with threshold >= length. Throws LimitExceededException.
    const BasicAlgorithm<wtype>& get_algorithm(upL_t length) const;

    const std::string& name() const { return name_; }
    static constexpr unsigned word_bits() { return WordTraits<wtype>::bits; }
    const std::vector<Row>& rows() const { return rows_; }
    upL_t max_length() const { return rows_.empty() ? 0 : rows_.back().threshold; }

 private:
    std::string name_;
    std::vector<Row> rows_;
    std::vector<std::unique_ptr<const BasicAlgorithm<wtype>>> owned;
};

/// A table of products in memory.
template <typename wtype>
class AlgorithmTableB final : public AlgorithmTable<wtype> {
 public:
    using AlgorithmTable<wtype>::AlgorithmTable;

    /// Maxima over all products up to `length`, in `sizes` piece by piece; returns the largest total.
    /// Throws LimitExceededException.
    upL_t max_buffer_sizes(BufferSizes& sizes, upL_t length, upL_t tds) const;
    /// The largest total; with `small` that of the forms that need the least. Throws LimitExceededException.
    upL_t max_buffer_size(upL_t length, upL_t tds, bool small) const;
    /// Lets every algorithm that a product up to `length` may reach make its tables. LimitExceededException.
    void ensure_tables(upL_t length) const;

 private:
    /// Calls visit(algorithm, length within the row) for every row that a product up to `length` may reach.
    template <typename Visit>
    void walk(upL_t length, const char* location, Visit visit) const;
};

/// Builds a table from a list. An unknown tag, and one without an object for this word type, are reported on
/// the console and left out.
template <typename wtype>
AlgorithmTableB<wtype> build_algorithm_table(std::string name, const std::vector<TableRow>& list);

/// The table that all products use.
template <typename wtype>
const AlgorithmTableB<wtype>& basic_algorithm_table();

}  // namespace lumo
