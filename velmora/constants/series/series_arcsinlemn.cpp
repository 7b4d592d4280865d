#include "velmora/constants/series/series_arcsinlemn.h"

#include "lumo/foundation/errors/exceptions.h"
#include "velmora/constants/series/series_product.h"

namespace velmora {
namespace {

constexpr std::int64_t ODD[] = {-1, 2};
constexpr LinearFactor DENOMINATOR[] = {{4, 1, 1}, {1, 0, 1}};
constexpr LinearFactor NUMERATOR[] = {{2, -1, 1}, {4, 1, 1}};

void check(std::int64_t x, std::int64_t y) {
    constexpr const char* LOCATION = "ArcSinlemn(x/y)";
    const auto refuse = [](const std::string& text) {
        throw lumo::InvalidParametersException(LOCATION, text);
    };
    if (x < 1) refuse("Argument for ArcSinlemn is invalid: " + std::to_string(x));
    if (x >= y) refuse("x must be less than y or series won't converge.");
    if (y >> 16 != 0) refuse("y^4 doesn't fit into a machine word: " + std::to_string(y));
    // Beyond this the numbers are more than a hundred times as long as the result.
    if (20 * x > 19 * y) refuse("x/y is too close to 1.0. Series converges too slowly.");
}

lumo::DoubleDouble fourth_power_size(std::uint64_t x) {
    return lumo::DoubleDouble(4) * log(lumo::DoubleDouble::from_count(x));
}

}  // namespace

template <typename wtype>
std::unique_ptr<lumo::SeriesCommonP2B3<wtype>> make_arcsinlemn_series(std::int64_t x, std::int64_t y) {
    check(x, y);
    const auto a = static_cast<std::uint64_t>(x);
    const auto b = static_cast<std::uint64_t>(y);
    const lumo::DoubleDouble size = fourth_power_size(b);
    return std::make_unique<SeriesProduct<wtype>>(
        ProductTerms{{size + lumo::DoubleDouble(3) * lumo::LN2_PAIR, size - fourth_power_size(a)},
                     false,
                     31,
                     12,
                     ODD,
                     {a * a, a * a},
                     false,
                     {2 * b * b, b * b},
                     DENOMINATOR,
                     {a * a, a * a},
                     NUMERATOR});
}

template std::unique_ptr<lumo::SeriesCommonP2B3<std::uint32_t>> make_arcsinlemn_series(std::int64_t,
                                                                                       std::int64_t);
template std::unique_ptr<lumo::SeriesCommonP2B3<std::uint64_t>> make_arcsinlemn_series(std::int64_t,
                                                                                       std::int64_t);

lumo::SeriesCoefficients arcsinlemn_coefficients(std::int64_t x, std::int64_t y) {
    return {x, x, y, 1};
}

}  // namespace velmora
