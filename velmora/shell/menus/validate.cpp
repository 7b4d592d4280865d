#include "velmora/shell/menus/validate.h"

#include "velmora/validation/validator.h"

namespace velmora {

int run_validate(Program&) {
    run_validator();
    return 0;
}

}  // namespace velmora
