/// The list of constants: their menu lines, keys, algorithms and difficulty figures, and the factory.
/// Static data, read-only.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace velmora {

class Constant;
struct CatalogueEntry;

using ConstantFactory = std::unique_ptr<Constant> (*)(const CatalogueEntry&);

struct AlgorithmEntry {
    const char* token;      ///< in configurations and behind "-algorithm:"
    const char* name;       ///< the menu line
    const char* remark;     ///< behind or below the menu line; may be empty
    const char* run_title;  ///< the first line of status; may be empty
};

struct CatalogueEntry {
    const char* group;  ///< heading that opens a group of the menu; empty within a group
    const char* key;    ///< in configurations and file names
    const char* menu_name;
    const char* value;       ///< as the menu displays it; may be empty
    const char* difficulty;  ///< relative cost, one figure an algorithm
    std::span<const AlgorithmEntry> algorithms;
    std::span<const char* const> notes;          ///< lines below the menu of algorithms
    std::span<const char* const> command_names;  ///< what names the constant on the command line
    ConstantFactory make;                        ///< null for a constant that this build does not compute
};

/// All rows in the order of the menu.
std::span<const CatalogueEntry> catalogue();

/// The row that a name of the command line means. Throws InvalidParametersException "Invalid Constant: " and
/// the name when there is none or it cannot be computed.
const CatalogueEntry& find_by_command_name(std::string_view name);
/// The row of a key. Throws InvalidParametersException "Invalid constant token.".
const CatalogueEntry& find_by_key(std::string_view key);

/// The constant of a row that can be computed.
std::unique_ptr<Constant> make_constant(const CatalogueEntry& entry);

}  // namespace velmora
