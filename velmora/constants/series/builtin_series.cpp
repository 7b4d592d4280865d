#include "velmora/constants/series/builtin_series.h"

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

lumo::SeriesRates rates(const char* size, const char* converge) {
    return {DoubleDouble::parse(size), DoubleDouble::parse(converge)};
}

ProductTerms product_terms(BuiltinSeries which) {
    switch (which) {
        case BuiltinSeries::zeta3_wedeniwski:
            return {rates("13.69304457440350871544421753264022563507",
                          "11.61360303272367278719252116826569593085"),
                    true,
                    49,
                    6,
                    WEDENIWSKI_P,
                    {1, 1},
                    true,
                    {24, 1},
                    WEDENIWSKI_Q,
                    {1, 1},
                    WEDENIWSKI_R};
        case BuiltinSeries::zeta3_az:
            return {rates("6.931471805599453094172321214581765680755",
                          "6.931471805599453094172321214581765680755"),
                    true,
                    36,
                    12,
                    AZ_P,
                    {1, 1},
                    true,
                    {1, 1},
                    AZ_Q,
                    {1, 1},
                    AZ_R};
        case BuiltinSeries::catalan_pilehrood_short:
            return {rates("9.364262454248445239386040399907367860500187",
                          "5.205379370888767529537007178618801091734"),
                    false,
                    30,
                    8,
                    PILEHROOD_SHORT_P,
                    {1, 1},
                    false,
                    {9, 1},
                    PILEHROOD_SHORT_Q,
                    {32, 1},
                    PILEHROOD_SHORT_R};
        case BuiltinSeries::catalan_pilehrood_long:
            return {rates("16.63553233343868742601357091499623763381",
                          "6.931471805599453094172321214581765680755"),
                    true,
                    41,
                    4,
                    PILEHROOD_LONG_P,
                    {1, 1},
                    false,
                    {1, 1},
                    PILEHROOD_LONG_Q,
                    {32, 1},
                    PILEHROOD_LONG_R};
        case BuiltinSeries::catalan_guillera2008:
            return {rates("2.079441541679835928251696364374529704227",
                          "2.079441541679835928251696364374529704227"),
                    true,
                    28,
                    8,
                    GUILLERA2008_P,
                    {1, 1},
                    true,
                    {1, 1},
                    GUILLERA2008_Q,
                    {1, 1},
                    GUILLERA2008_R};
        case BuiltinSeries::catalan_guillera2019:
            return {rates("14.04639368137265907906059986105179075028",
                          "5.728627514653315366053814403553671933374"),
                    true,
                    37,
                    8,
                    GUILLERA2019_P,
                    {1, 1},
                    false,
                    {1, 1},
                    GUILLERA2019_Q,
                    {512, 1},
                    GUILLERA2019_R};
        default:
            return {rates("5.545177444479562475337856971665412544604",
                          "1.386294361119890618834464242916353136151"),
                    true,
                    33,
                    10,
                    LUPAS_P,
                    {1, 1},
                    true,
                    {1, 1},
                    LUPAS_Q,
                    {16, 1},
                    LUPAS_R};
    }
}

}  // namespace

template <typename wtype>
std::unique_ptr<lumo::SeriesCommonP2B3<wtype>> make_series(BuiltinSeries which) {
    if (which == BuiltinSeries::catalan_huvent) return std::make_unique<SeriesCatalanHuvent<wtype>>();
    return std::make_unique<SeriesProduct<wtype>>(product_terms(which));
}

template std::unique_ptr<lumo::SeriesCommonP2B3<std::uint32_t>> make_series(BuiltinSeries);
template std::unique_ptr<lumo::SeriesCommonP2B3<std::uint64_t>> make_series(BuiltinSeries);

lumo::SeriesCoefficients constant_coefficients(BuiltinSeries which) {
    switch (which) {
        case BuiltinSeries::zeta3_wedeniwski:
            return {1, 12463, 10368, 1};
        case BuiltinSeries::zeta3_az:
            return {1, 77, 64, 1};
        case BuiltinSeries::catalan_guillera2008:
            return {1, 2, 2, 1};
        case BuiltinSeries::catalan_lupas:
            return {1, 19, 18, 1};
        case BuiltinSeries::catalan_huvent:
            return {1, 0, 12, 1};
        default:
            return {1, 0, 2, 1};
    }
}

}  // namespace velmora
