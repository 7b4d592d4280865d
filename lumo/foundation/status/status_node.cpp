#include "lumo/foundation/status/status_node.h"

#include "lumo/foundation/errors/exceptions.h"

namespace lumo {

namespace {

[[noreturn]] void refuse(const char* location) {
    throw InvalidParametersException(location, "Not Implemented");
}

}  // namespace

StatusTree StatusIteration::get_tree() const {
    refuse("StatusIteration::get_tree()");
}
std::unique_ptr<StatusIteration> StatusIteration::make_iteration(upL_t) {
    refuse("StatusIteration::make_iteration()");
}
void StatusIteration::push_node(ColorString) {
    refuse("StatusIteration::push_node()");
}
void StatusIteration::pop_frame() {
    refuse("StatusIteration::pop_frame()");
}
void StatusIteration::set_status(ColorString) {
    refuse("StatusIteration::set_status()");
}

}  // namespace lumo
