#include "lumo/foundation/console/console.h"
#include "velmora/shell/actions/actions.h"
#include "velmora/shell/entry/interrupt.h"

int main(int argc, char** argv) {
    lumo::Console::secure_standard_streams();
    velmora::end_on_interrupt();
    return velmora::run_program({argv, argv + argc}, velmora::dispatch_action);
}
