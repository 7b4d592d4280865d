#include "velmora/constants/e.h"

#include "lumo/foundation/errors/exceptions.h"
#include "velmora/constants/series/series_e.h"

namespace velmora {

template <typename wtype>
Series_BigFloatR<wtype> e_Taylor_BigFloatR(bool alternating, int power, upL_t p, upL_t tds) {
    constexpr const char* LOCATION = "e_Taylor_BigFloatR()";
    if (power != 1 && power != -1) throw lumo::InvalidParametersException(LOCATION, "Power must be 1 or -1.");
    if (power == -1 && !alternating)
        throw lumo::InvalidParametersException(LOCATION,
                                               "Inversion not supported for non-alternating series.");
    return {
        std::make_unique<SeriesETaylor<wtype>>(alternating), {1, 1, 1, alternating ? -power : power}, p, tds};
}

template Series_BigFloatR<std::uint32_t> e_Taylor_BigFloatR(bool, int, upL_t, upL_t);
template Series_BigFloatR<std::uint64_t> e_Taylor_BigFloatR(bool, int, upL_t, upL_t);

std::unique_ptr<Constant> EConstant::make(const CatalogueEntry& entry) {
    return std::make_unique<EConstant>(entry);
}

Series_BigFloatR<std::uint64_t> EConstant::plan(upL_t precision_words, upL_t tds) const {
    return e_Taylor_BigFloatR<std::uint64_t>(algorithm().token == std::string_view("exp(-1)"), 1,
                                             precision_words, tds);
}

}  // namespace velmora
