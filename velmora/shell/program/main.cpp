#include "lumo/foundation/console/console.h"
#include "velmora/shell/entry/interrupt.h"
#include "velmora/shell/entry/program.h"

int main(int argc, char** argv) {
    lumo::Console::secure_standard_streams();
    velmora::end_on_interrupt();
    return velmora::run_program({argv, argv + argc});
}
