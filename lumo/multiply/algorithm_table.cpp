#include "lumo/multiply/algorithm_table.h"

#include "lumo/foundation/console/console.h"
#include "lumo/multiply/algorithm_registry.h"

namespace lumo {

template <typename wtype>
void AlgorithmTable<wtype>::add(upL_t threshold, const BasicAlgorithm<wtype>* algorithm) {
    if (!algorithm) return;
    if (!rows_.empty() && rows_.back().threshold >= threshold)
        throw StringException("AlgorithmTable::add()", "Thresholds must be increasing.");
    rows_.push_back({std::min(threshold, algorithm->max_bits / WordTraits<wtype>::bits), algorithm});
}

template <typename wtype>
void AlgorithmTable<wtype>::add(upL_t threshold, std::unique_ptr<const BasicAlgorithm<wtype>> algorithm) {
    add(threshold, algorithm.get());
    owned.push_back(std::move(algorithm));
}

template <typename wtype>
const BasicAlgorithm<wtype>& AlgorithmTable<wtype>::get_algorithm(upL_t length) const {
    for (const Row& row : rows_)
        if (row.threshold >= length) return *row.algorithm;
    throw LimitExceededException("AlgorithmTable::get_algorithm()", "Product is too large.", max_length(),
                                 length);
}

template <typename wtype>
template <typename Visit>
void AlgorithmTableB<wtype>::walk(upL_t length, const char* location, Visit visit) const {
    for (const auto& row : this->rows()) {
        visit(*row.algorithm, std::min(length, row.threshold));
        if (row.threshold >= length) return;
    }
    throw LimitExceededException(location, "Product is too large.", this->max_length(), length);
}

template <typename wtype>
upL_t AlgorithmTableB<wtype>::max_buffer_sizes(BufferSizes& sizes, upL_t length, upL_t tds) const {
    sizes = {};
    upL_t total = 0;
    walk(length, "AlgorithmTableB::max_buffer_sizes()",
         [&](const BasicAlgorithm<wtype>& algorithm, upL_t reach) {
             BufferSizes own;
             total = std::max(total, algorithm.max_buffer_sizes(own, reach, tds));
             sizes.merge(own);
         });
    return total;
}

template <typename wtype>
upL_t AlgorithmTableB<wtype>::max_buffer_size(upL_t length, upL_t tds, bool small) const {
    if (!small) {
        BufferSizes sizes;
        return max_buffer_sizes(sizes, length, tds);
    }
    upL_t total = 0;
    walk(length, "AlgorithmTableB::max_buffer_size()",
         [&](const BasicAlgorithm<wtype>& algorithm, upL_t reach) {
             total = std::max(total, algorithm.max_buffer_size(reach, tds));
         });
    return total;
}

template <typename wtype>
void AlgorithmTableB<wtype>::ensure_tables(upL_t length) const {
    walk(length, "AlgorithmTableB::ensure_tables()",
         [](const BasicAlgorithm<wtype>& algorithm, upL_t reach) { algorithm.ensure_tables(reach); });
}

template <typename wtype>
AlgorithmTableB<wtype> build_algorithm_table(std::string name, const std::vector<TableRow>& list) {
    AlgorithmTableB<wtype> table(std::move(name));
    for (const TableRow& row : list) {
        const AlgorithmRecord* record = find_algorithm(row.tag);
        if (!record) {
            Console::print_line(std::string("Skipping unknown algorithm: ") + row.tag);
            continue;
        }
        const BasicAlgorithm<wtype>* algorithm = record->basic<wtype>();
        if (!algorithm) {
            Console::print_line(std::string("Warning: ") + row.tag + " does not support: \"" + table.name() +
                                "\"");
            continue;
        }
        table.add(row.limit_bits / WordTraits<wtype>::bits, algorithm);
    }
    return table;
}

template <typename wtype>
const AlgorithmTableB<wtype>& basic_algorithm_table() {
    static const AlgorithmTableB<wtype> table = build_algorithm_table<wtype>(
        sizeof(wtype) == 4 ? "Basic: 32-bit Word" : "Basic: 64-bit Word", basic_table_rows());
    return table;
}

template class AlgorithmTable<std::uint32_t>;
template class AlgorithmTable<std::uint64_t>;
template class AlgorithmTableB<std::uint32_t>;
template class AlgorithmTableB<std::uint64_t>;
template AlgorithmTableB<std::uint32_t> build_algorithm_table(std::string, const std::vector<TableRow>&);
template AlgorithmTableB<std::uint64_t> build_algorithm_table(std::string, const std::vector<TableRow>&);
template const AlgorithmTableB<std::uint32_t>& basic_algorithm_table();
template const AlgorithmTableB<std::uint64_t>& basic_algorithm_table();

}  // namespace lumo
