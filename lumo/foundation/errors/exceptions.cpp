/// The printed layouts of the family, and the check that most of its throws go through.
#include "lumo/foundation/errors/exceptions.h"

#include "lumo/foundation/console/console.h"

namespace lumo {

using Console::format_commas;
using Console::new_line;
using Console::print_label_line;
using Console::print_line;

namespace {

/// The frame that every class prints its lines in. Colour stays red from the first newline to the last.
template <typename Lines>
void print_framed(std::string_view title, const char* type, const Lines& lines) {
    const std::lock_guard hold(Console::lock());
    Console::print("\n", 'R');
    print_label_line(title, type);
    new_line();
    lines();
    new_line();
    Console::set_color('w');
}

constexpr std::string_view TITLE = "Exception Encountered";

void print_function(const std::string& function) {
    if (!function.empty()) print_label_line("In Function", function);
}

}  // namespace

void UnknownException::print() const {
    print_framed(TITLE, get_typename(), [] { print_line("An exception of an unknown type was thrown."); });
}

void StdException::print() const {
    print_framed(TITLE, get_typename(), [this] { print_line(message); });
}

void StringException::print() const {
    print_framed(TITLE, get_typename(), [this] { print_fields(); });
}

void StringException::print_fields() const {
    if (!function.empty()) {
        print_function(function);
        new_line();
    }
    print_line(message);
}

void ExponentOverflowException::print_fields() const {
    print_line("Floating-point exponent has exceeded internal limit:");
    StringException::print_fields();
}

void ConvolutionTooSmallException::print_fields() const {
    StringException::print_fields();
    print_label_line("    Convolution Size", format_commas(convolution_size));
    print_label_line("    Requested Size", format_commas(requested_size));
}

void LimitExceededException::print_fields() const {
    print_line("Limit Exceeded");
    print_label_line("    Function", function);
    print_line(message);
    print_label_line("    Limit", limit == UNKNOWN_LIMIT ? "Unknown" : format_commas(limit));
    print_label_line("    Attempted", format_commas(attempted));
}

void BSRModularCheckFailedException::print_fields() const {
    StringException::print_fields();
    for (std::size_t i = 0; i < hashes.size(); i++) {
        const auto& [stored, computed] = hashes[i];
        print_line("    hash[" + std::to_string(i) + "] = " + format_commas(stored) +
                   " != " + format_commas(computed));
    }
}

void MemoryAllocationFailedException::print_fields() const {
    print_function(function);
    print_label_line("Allocation Type", allocation_type);
    print_label_line("Allocation Size", format_commas(allocation_size));
    print_line(message);
}

void SystemException::print() const {
    print_framed("System Exception Encountered", get_typename(), [this] {
        print_function(function);
        print_label_line("Error Code", format_commas(code));
        new_line();
        print_line(message);
    });
}

void BufferTooSmallException::print() const {
    print_framed(TITLE, get_typename(), [this] {
        print_line("Buffer is too small:");
        print_label_line("    Function", function);
        print_label_line("    Buffer Size", format_commas(buffer_size));
        print_label_line("    Required Size", format_commas(required_size));
    });
}

void FileIO::FileException::print() const {
    print_framed(TITLE, get_typename(), [this] {
        print_function(function);
        print_label_line("Error Code", format_commas(std::int64_t(error_code)));
        print_label_line("Path", path);
        new_line();
        print_line(message);
        if (error_code > 0) print_line(std::generic_category().message(error_code));
    });
}

void FarMemoryOutOfBoundsException::print() const {
    print_framed(TITLE, get_typename(), [this] {
        print_line("Out-of-Bounds Access on FarMemory object:");
        print_label_line("    Function", function);
        print_label_line("    Object Size", format_commas(object_size));
        print_label_line("    Access Offset", format_commas(access_offset));
        print_label_line("    Access Length", format_commas(access_length));
    });
}

void RaidException::print() const {
    print_framed("Raid03 Exception Encountered", get_typename(), [this] {
        if (!function.empty()) {
            print_function(function);
            new_line();
        }
        print_line(message);
    });
}

void require_capacity(const char* location, upL_t available, upL_t required) {
    if (available < required) throw BufferTooSmallException(location, available, required);
}

}  // namespace lumo
