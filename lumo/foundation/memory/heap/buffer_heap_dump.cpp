#include <algorithm>
#include <cstdio>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/memory/heap/buffer_heap.h"

namespace lumo {

namespace {

std::string hex(std::uintptr_t address) {
    char text[24];
    std::snprintf(text, sizeof(text), "0x%016llx", static_cast<unsigned long long>(address));
    return text;
}

void print_free_space(upL_t bytes) {
    if (bytes > 0) Console::print_label_line("    Free Space", Console::format_bytes(bytes));
}

std::string percent(upL_t part, upL_t whole) {
    char text[16];
    std::snprintf(text, sizeof(text), "%.2f%%", whole == 0 ? 0. : 100. * double(part) / double(whole));
    return text;
}

}  // namespace

void BufferHeap::dump() const {
    std::lock_guard lock(Console::lock());
    Console::print_line("Heap Table Dump:");
    Console::print_label_line("Parent", hex(reinterpret_cast<std::uintptr_t>(parent)));
    Console::print_label_line("Total Size", Console::format_bytes(size()));
    Console::print_label_line("Current Usage", Console::format_bytes(current_usage()));
    Console::print_label_line("Peak Heap Usage", Console::format_bytes(peak_usage()));
    Console::print_label_line("Start", hex(base));
    Console::print_label_line("Active Allocations", Console::format_commas(count));
    Console::print_label_line("Peak Allocations", Console::format_commas(peak_count));
    if (count == 0) {
        Console::print("No Active Allocations\n");
        return;
    }
    upL_t gaps = 0;
    std::uintptr_t previous_end = base;
    for (upL_t i = 0; i < count; i++) {
        const Entry& block = entry(i);
        print_free_space(block.address - previous_end);
        gaps += block.address - previous_end;
        Console::print_line("Base: " + hex(block.address) + "   Size: " + Console::format_bytes(block.bytes));
        previous_end = block.address + block.bytes;
    }
    print_free_space(table_limit - top);
    Console::print_line("Table Limit         : " + hex(table_limit));
    Console::print_line("Fragmentation       : " + percent(gaps, gaps + (table_limit - top)));
}

}  // namespace lumo
