#include "velmora/constants/series/series_arccoth.h"

#include "lumo/foundation/errors/exceptions.h"
#include "velmora/constants/series/series_product.h"

namespace velmora {
namespace {

constexpr std::int64_t ONE[] = {1};
constexpr LinearFactor DENOMINATOR[] = {{2, 1, 1}};
constexpr LinearFactor NUMERATOR[] = {{2, -1, 1}};

}  // namespace

template <typename wtype>
std::unique_ptr<lumo::SeriesCommonP2B3<wtype>> Series_ArcCoth_Base(std::uint64_t x) {
    constexpr const char* LOCATION = "Series_ArcCoth_Base()";
    if (x < 2) throw lumo::InvalidParametersException(LOCATION, "Argument is too small.");
    if (x >> 62 != 0) throw lumo::InvalidParametersException(LOCATION, "Argument is too large.");
    const lumo::DoubleDouble square = lumo::DoubleDouble(2) * log(lumo::DoubleDouble::from_count(x));
    return std::make_unique<SeriesProduct<wtype>>(ProductTerms{{square + lumo::LN2_PAIR, square},
                                                               false,
                                                               31,
                                                               16,
                                                               ONE,
                                                               {1, 1},
                                                               true,
                                                               {x, x},
                                                               DENOMINATOR,
                                                               {1, 1},
                                                               NUMERATOR});
}

template std::unique_ptr<lumo::SeriesCommonP2B3<std::uint32_t>> Series_ArcCoth_Base(std::uint64_t);
template std::unique_ptr<lumo::SeriesCommonP2B3<std::uint64_t>> Series_ArcCoth_Base(std::uint64_t);

lumo::SeriesCoefficients arccoth_coefficients(std::uint64_t x) {
    return {1, 1, static_cast<std::int64_t>(x), 1};
}

}  // namespace velmora
