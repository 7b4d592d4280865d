#include "velmora/constants/gamma.h"

namespace velmora {

std::unique_ptr<Constant> GammaConstant::make(const CatalogueEntry& entry) {
    return std::make_unique<GammaConstant>(entry);
}

BrentMcMillan_BigFloatR<std::uint64_t> GammaConstant::plan(upL_t precision_words, upL_t tds) const {
    const bool original = algorithm().token == std::string_view("brent-original");
    return {original ? BrentMcMillanForm::original : BrentMcMillanForm::refined, precision_words, tds};
}

}  // namespace velmora
