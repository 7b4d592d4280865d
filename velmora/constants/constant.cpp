#include "velmora/constants/constant.h"

#include "lumo/foundation/errors/exceptions.h"

namespace velmora {

void Constant::set_argument(std::string_view text) {
    throw lumo::InvalidParametersException("", "Invalid Constant: " + key() + ":" + std::string(text));
}

}  // namespace velmora
