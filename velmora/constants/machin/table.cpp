#include "velmora/constants/machin/table.h"

#include <algorithm>
#include <span>

namespace velmora::machin {
namespace {

constexpr std::size_t MAX_TERMS = 6;

struct Record {
    std::uint64_t n;
    std::size_t count;
    Term terms[MAX_TERMS];
};

// Sorted by n.
constexpr Record PRIMARY[] = {
    {2, 3, {{26, 18}, {4801, -2}, {8749, 8}}},
    {3, 4, {{251, 228}, {449, 86}, {4801, -60}, {8749, 98}}},
    {5, 4, {{251, 334}, {449, 126}, {4801, -88}, {8749, 144}}},
    {6, 4, {{251, 372}, {449, 140}, {4801, -98}, {8749, 160}}},
    {7, 4, {{251, 404}, {449, 152}, {4801, -106}, {8749, 174}}},
    {10, 4, {{251, 478}, {449, 180}, {4801, -126}, {8749, 206}}},
    {11, 5, {{351, 498}, {1079, 872}, {4801, 554}, {8749, 402}, {19601, 188}}},
    {13, 6, {{1574, 1998}, {4801, 1658}, {8749, 3494}, {13311, 3064}, {21295, 6328}, {246401, 5796}}},
};
constexpr Record SECONDARY[] = {
    {2, 3, {{31, 14}, {49, 10}, {161, 6}}},
    {3, 3, {{31, 22}, {49, 16}, {161, 10}}},
    {5, 3, {{31, 32}, {49, 24}, {161, 14}}},
    {6, 3, {{31, 36}, {49, 26}, {161, 16}}},
    {7, 5, {{351, 404}, {881, 450}, {1079, 258}, {6049, 326}, {19601, -174}}},
    {10, 3, {{31, 46}, {49, 34}, {161, 20}}},
    {11, 6, {{1574, 1868}, {2001, 1550}, {8449, 1716}, {13311, 1314}, {21295, 2816}, {246401, 602}}},
    {13, 6, {{1457, 1998}, {2001, 1658}, {6049, 962}, {8191, 1406}, {8449, 874}, {19601, -1354}}},
};

}  // namespace

double lookup(std::uint64_t n, std::int64_t scale, Which which, double d, Formula& out) {
    if (n == 1) return 0;
    const std::span<const Record> table =
        which == Which::primary ? std::span<const Record>(PRIMARY) : std::span<const Record>(SECONDARY);
    const auto record = std::ranges::lower_bound(table, n, {}, &Record::n);
    if (record == table.end() || record->n != n) return NO_FORMULA;
    double sum = 0;
    for (std::size_t i = 0; i < record->count; ++i) {
        const Term& term = record->terms[i];
        out.terms.push_back({term.x, term.c * scale});
        sum += cost(term.x, d);
    }
    return sum / d;
}

}  // namespace velmora::machin
