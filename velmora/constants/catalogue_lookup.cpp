#include <algorithm>

#include "lumo/foundation/errors/exceptions.h"
#include "velmora/constants/catalogue.h"
#include "velmora/constants/constant.h"

namespace velmora {

namespace {

/// The first row that can be computed and fits, or null.
template <typename Predicate>
const CatalogueEntry* find_computable(Predicate fits) {
    for (const CatalogueEntry& row : catalogue()) {
        if (row.make && fits(row)) return &row;
    }
    return nullptr;
}

}  // namespace

const CatalogueEntry& find_by_command_name(std::string_view name) {
    const CatalogueEntry* row = find_computable([&](const CatalogueEntry& r) {
        return std::ranges::find(r.command_names, name) != r.command_names.end();
    });
    if (!row) throw lumo::InvalidParametersException("", "Invalid Constant: " + std::string(name));
    return *row;
}

const CatalogueEntry& find_by_key(std::string_view key) {
    const CatalogueEntry* row = find_computable([&](const CatalogueEntry& r) { return r.key == key; });
    if (!row) throw lumo::InvalidParametersException("", "Invalid constant token.");
    return *row;
}

std::unique_ptr<Constant> make_constant(const CatalogueEntry& entry) {
    return entry.make(entry);
}

void Constant::set_algorithm(std::string_view token) {
    const auto found =
        std::ranges::find_if(row.algorithms, [&](const AlgorithmEntry& a) { return a.token == token; });
    if (found == row.algorithms.end())
        throw lumo::KeyNotFoundException("", "Invalid Key: " + std::string(token));
    chosen = found - row.algorithms.begin();
}

}  // namespace velmora
