#include "velmora/constants/series/builtin_series.h"

#include "lumo/foundation/errors/fatal.h"
#include "velmora/constants/series/series_huvent.h"
#include "velmora/constants/series/series_product.h"

namespace velmora {
namespace {

using lumo::DoubleDouble;

constexpr std::int64_t AZ_P[] = {77, 250, 205};
constexpr LinearFactor AZ_Q[] = {{4, 2, 5}};
constexpr LinearFactor AZ_R[] = {{1, 0, 5}};

constexpr std::int64_t WEDENIWSKI_P[] = {12463, 104000, 336367, 531578, 412708, 126392};
constexpr LinearFactor WEDENIWSKI_Q[] = {{3, 1, 1}, {3, 2, 1}, {4, 1, 3}, {4, 3, 3}};
constexpr LinearFactor WEDENIWSKI_R[] = {{1, 0, 5}, {2, -1, 3}};

constexpr std::int64_t PILEHROOD_SHORT_P[] = {15, -184, 580};
constexpr LinearFactor PILEHROOD_SHORT_Q[] = {{6, -5, 2}, {6, -1, 2}};
constexpr LinearFactor PILEHROOD_SHORT_R[] = {{1, 0, 3}, {2, -1, 1}};

constexpr std::int64_t PILEHROOD_LONG_P[] = {315, -7800, 73256, -332800, 782848, -915456, 419840};
constexpr LinearFactor PILEHROOD_LONG_Q[] = {{8, -7, 2}, {8, -5, 2}, {8, -3, 2}, {8, -1, 2}};
constexpr LinearFactor PILEHROOD_LONG_R[] = {{1, 0, 3}, {2, -1, 1}, {4, -1, 2}, {4, -3, 2}};

constexpr std::int64_t GUILLERA2008_P[] = {2, 3};
constexpr LinearFactor GUILLERA2008_Q[] = {{2, 1, 3}};
constexpr LinearFactor GUILLERA2008_R[] = {{1, 0, 3}};

constexpr std::int64_t GUILLERA2019_P[] = {165, -3160, 21240, -57184, 45136};
constexpr LinearFactor GUILLERA2019_Q[] = {{18, -3, 3}, {6, -5, 3}};
constexpr LinearFactor GUILLERA2019_R[] = {{1, 0, 3}, {2, -1, 3}};

constexpr std::int64_t LUPAS_P[] = {19, 56, 40};
constexpr LinearFactor LUPAS_Q[] = {{4, 1, 2}, {4, 3, 2}};
constexpr LinearFactor LUPAS_R[] = {{1, 0, 3}, {4, -2, 1}};

/// A row of data: ProductTerms with the rates as text, and what turns the sum into the constant.
struct ProductRow {
    BuiltinSeries which;
    const char* rate_size;
    const char* rate_converge;
    bool alternating;
    lumo::upL_t overhead_words;
    lumo::upL_t leaf_terms;
    std::span<const std::int64_t> polynomial;
    bool P_contains_R;
    std::uint64_t Q_constant;
    std::span<const LinearFactor> Q;
    std::uint64_t R_constant;
    std::span<const LinearFactor> R;
    lumo::SeriesCoefficients coefficients;
};

// clang-format off
constexpr ProductRow PRODUCTS[] = {
    {BuiltinSeries::zeta3_wedeniwski,
     "13.69304457440350871544421753264022563507", "11.61360303272367278719252116826569593085",
     true, 49, 6, WEDENIWSKI_P, true, 24, WEDENIWSKI_Q, 1, WEDENIWSKI_R, {1, 12463, 10368, 1}},
    {BuiltinSeries::zeta3_az,
     "6.931471805599453094172321214581765680755", "6.931471805599453094172321214581765680755",
     true, 36, 12, AZ_P, true, 1, AZ_Q, 1, AZ_R, {1, 77, 64, 1}},
    {BuiltinSeries::catalan_pilehrood_short,
     "9.364262454248445239386040399907367860500187", "5.205379370888767529537007178618801091734",
     false, 30, 8, PILEHROOD_SHORT_P, false, 9, PILEHROOD_SHORT_Q, 32, PILEHROOD_SHORT_R, {1, 0, 2, 1}},
    {BuiltinSeries::catalan_pilehrood_long,
     "16.63553233343868742601357091499623763381", "6.931471805599453094172321214581765680755",
     true, 41, 4, PILEHROOD_LONG_P, false, 1, PILEHROOD_LONG_Q, 32, PILEHROOD_LONG_R, {1, 0, 2, 1}},
    {BuiltinSeries::catalan_guillera2008,
     "2.079441541679835928251696364374529704227", "2.079441541679835928251696364374529704227",
     true, 28, 8, GUILLERA2008_P, true, 1, GUILLERA2008_Q, 1, GUILLERA2008_R, {1, 2, 2, 1}},
    {BuiltinSeries::catalan_guillera2019,
     "14.04639368137265907906059986105179075028", "5.728627514653315366053814403553671933374",
     true, 37, 8, GUILLERA2019_P, false, 1, GUILLERA2019_Q, 512, GUILLERA2019_R, {1, 0, 2, 1}},
    {BuiltinSeries::catalan_lupas,
     "5.545177444479562475337856971665412544604", "1.386294361119890618834464242916353136151",
     true, 33, 10, LUPAS_P, true, 1, LUPAS_Q, 16, LUPAS_R, {1, 19, 18, 1}},
};
// clang-format on

const ProductRow& find(BuiltinSeries which) {
    const auto* const row = std::ranges::find(PRODUCTS, which, &ProductRow::which);
    lumo::require(row != std::end(PRODUCTS), "A series has no row of data.");
    return *row;
}

}  // namespace

template <typename wtype>
std::unique_ptr<lumo::SeriesCommonP2B3<wtype>> make_series(BuiltinSeries which) {
    if (which == BuiltinSeries::catalan_huvent) return std::make_unique<SeriesCatalanHuvent<wtype>>();
    const ProductRow& row = find(which);
    return std::make_unique<SeriesProduct<wtype>>(
        ProductTerms{{DoubleDouble::parse(row.rate_size), DoubleDouble::parse(row.rate_converge)},
                     row.alternating,
                     row.overhead_words,
                     row.leaf_terms,
                     row.polynomial,
                     {1, 1},
                     row.P_contains_R,
                     {row.Q_constant, 1},
                     row.Q,
                     {row.R_constant, 1},
                     row.R});
}

template std::unique_ptr<lumo::SeriesCommonP2B3<std::uint32_t>> make_series(BuiltinSeries);
template std::unique_ptr<lumo::SeriesCommonP2B3<std::uint64_t>> make_series(BuiltinSeries);

lumo::SeriesCoefficients constant_coefficients(BuiltinSeries which) {
    if (which == BuiltinSeries::catalan_huvent) return {1, 0, 12, 1};
    return find(which).coefficients;
}

}  // namespace velmora
