#include "velmora/shell/menus/digit_viewer.h"

#include "digitviewer/viewer/viewer.h"
#include "lumo/foundation/parallel/settings/parallelism.h"

namespace velmora {

int run_digit_viewer(Program&) {
    const lumo::Parallelism settings;
    const auto parallelizer = settings.framework().make_parallelizer();
    DigitViewer2::Menu_DigitViewer({settings.task_decomposition(), parallelizer.get()});
    return 0;
}

}  // namespace velmora
