#include "digitviewer/files/file_names.h"

#include "lumo/foundation/errors/fatal.h"

namespace DigitViewer2 {

std::string digit_file_name(const std::string& base, lumo::upL_t radix, const std::string& algorithm,
                            const std::string& extension) {
    if (radix != 10 && radix != 16) lumo::fatal_error("Invalid Base");
    return base + (radix == 10 ? " - Dec - " : " - Hex - ") + algorithm + extension;
}

std::string incomplete_name(const std::string& final_path) {
    return final_path + " (incomplete)";
}

}  // namespace DigitViewer2
