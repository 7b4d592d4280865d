#include "lumo/multiply/ntt/c17/c17_transform.h"

#include "lumo/multiply/ntt/vt3/vt3_select.h"

namespace lumo {

C17Transform::C17Transform(const Vt3Size& size, upL_t tds)
    : Vt3Transform(size, tds, vt3_kernels(), vt3_other_kernels()) {}

}  // namespace lumo
