#include "digitviewer/files/incomplete_files.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstring>

namespace DigitViewer2::IncompleteFiles {

namespace {

constexpr std::size_t SLOTS = 16;
constexpr std::size_t MOST_BYTES = 1024;

/// A name is written before `length` is set and left alone while it is not zero, so that a signal handler
/// sees whole names only.
struct Slot {
    std::atomic<bool> taken{false};
    std::atomic<std::size_t> length{0};
    char name[MOST_BYTES];
};

Slot slots[SLOTS];

bool exists(const Slot& slot) {
    return slot.length.load(std::memory_order_acquire) != 0 && ::access(slot.name, F_OK) == 0;
}

void write_all(int descriptor, const char* text, std::size_t bytes) {
    [[maybe_unused]] const auto written = ::write(descriptor, text, bytes);
}

}  // namespace

void add(const std::string& path) noexcept {
    if (path.empty() || path.size() >= MOST_BYTES) return;
    for (Slot& slot : slots) {
        if (slot.taken.exchange(true)) continue;
        std::memcpy(slot.name, path.c_str(), path.size() + 1);
        slot.length.store(path.size(), std::memory_order_release);
        return;
    }
}

void remove(const std::string& path) noexcept {
    for (Slot& slot : slots) {
        const std::size_t length = slot.length.load(std::memory_order_acquire);
        if (length != path.size() || std::memcmp(slot.name, path.data(), length) != 0) continue;
        slot.length.store(0, std::memory_order_release);
        slot.taken.store(false, std::memory_order_release);
    }
}

void clear() noexcept {
    for (Slot& slot : slots) {
        slot.length.store(0, std::memory_order_release);
        slot.taken.store(false, std::memory_order_release);
    }
}

std::vector<std::string> on_disk() {
    std::vector<std::string> names;
    for (const Slot& slot : slots) {
        if (exists(slot) && std::find(names.begin(), names.end(), slot.name) == names.end())
            names.emplace_back(slot.name);
    }
    return names;
}

void write_in_signal_handler(int descriptor) noexcept {
    constexpr char LABEL[] = "Left on disk: ";
    for (const Slot& slot : slots) {
        if (!exists(slot)) continue;
        write_all(descriptor, LABEL, sizeof LABEL - 1);
        write_all(descriptor, slot.name, slot.length.load(std::memory_order_acquire));
        write_all(descriptor, "\n", 1);
    }
}

}  // namespace DigitViewer2::IncompleteFiles
