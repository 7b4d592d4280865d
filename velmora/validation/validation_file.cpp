#include <unistd.h>

#include "digitviewer/files/file_handle.h"
#include "lumo/foundation/console/console.h"
#include "velmora/validation/validation_report.h"

namespace velmora {

namespace {

std::string free_path(const std::string& base) {
    std::string path = base + ".txt";
    for (int number = 2; ::access(path.c_str(), F_OK) == 0; number++)
        path = base + " (" + std::to_string(number) + ").txt";
    return path;
}

}  // namespace

std::string save_validation_file(const std::string& base, const std::string& text) {
    const std::string path = free_path(base);
    DigitViewer2::FileHandle file(path, DigitViewer2::FileHandle::Mode::create);
    file.write(text.data(), 0, text.size());
    file.sync();
    file.close();
    lumo::Console::print_label_line("Validation File", path, 'G');
    return path;
}

}  // namespace velmora
