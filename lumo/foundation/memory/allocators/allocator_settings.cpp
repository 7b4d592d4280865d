// The settings of the allocators: reading, writing, printing and asking for them.

#include <charconv>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/memory/allocators/interleave_allocator.h"
#include "lumo/foundation/memory/allocators/mmap_allocator.h"
#include "lumo/foundation/parallel/settings/setting_values.h"

namespace lumo {

namespace {

constexpr const char* LOCKED_LABEL = "    Lock Pages:";

PagePolicy load_policy(const Config::Object& object, const char* key, PagePolicy otherwise) {
    return parse_page_policy(object.get_optional_string(key, page_policy_word(otherwise)));
}

PagePolicy ask_policy(const char* title) {
    {
        std::lock_guard lock(Console::lock());
        Console::new_line();
        Console::print_line(title, 'T');
        for (int i = 0; i < 3; i++)
            Console::print_line("  " + std::to_string(i) + "    " +
                                page_policy_text(static_cast<PagePolicy>(i)));
    }
    return static_cast<PagePolicy>(Console::prompt_integer("option: ", 0, 2));
}

std::string node_list_text(const std::vector<upL_t>& nodes) {
    std::string text;
    for (upL_t node : nodes) text += (text.empty() ? "" : " ") + std::to_string(node);
    return text.empty() ? "All" : text;
}

std::vector<upL_t> ask_nodes() {
    {
        std::lock_guard lock(Console::lock());
        Console::new_line();
        Console::print_line("Enter NUMA node #'s one-by-one. Enter nothing to stop.");
        Console::print_line("    - Duplicating nodes allow for imbalanced interleaving.");
        Console::print_line("    - Non-existant nodes simply won't bind.");
        Console::new_line();
    }
    std::vector<upL_t> nodes;
    for (;;) {
        const std::string line = Console::read_line().value_or("");
        if (line.empty()) return nodes;
        upL_t node = 0;
        const auto [stop, error] = std::from_chars(line.data(), line.data() + line.size(), node);
        if (error == std::errc() && stop == line.data() + line.size())
            nodes.push_back(node);
        else
            Console::print_line("Invalid node: " + line);
    }
}

}  // namespace

void BufferAllocator::to_cfg(Config::Object& object) const {
    object.add_string("Allocator", name());
    add_settings(object);
}

// The general allocator has no settings; these are its forms.
void BufferAllocator::load(const Config::Object&) {}
upL_t BufferAllocator::print_settings(upL_t line) const {
    return line;
}
void BufferAllocator::menu_action(upL_t) {}
void BufferAllocator::add_settings(Config::Object&) const {}

void MmapAllocator::load(const Config::Object& object) {
    large_pages = load_policy(object, "LargePages", large_pages);
    locked_pages = load_policy(object, "LockedPages", locked_pages);
}

void MmapAllocator::add_settings(Config::Object& object) const {
    object.add_string("LargePages", page_policy_word(large_pages));
    object.add_string("LockedPages", page_policy_word(locked_pages));
}

upL_t MmapAllocator::print_settings(upL_t line) const {
    print_setting(line, "    Large Pages:", page_policy_text(large_pages));
    print_setting(line + 1, LOCKED_LABEL, page_policy_text(locked_pages));
    return line + 2;
}

void MmapAllocator::menu_action(upL_t option) {
    if (option == 0) large_pages = ask_policy("Large Pages:");
    if (option == 1) locked_pages = ask_policy("Lock Pages:");
}

void InterleaveAllocator::load(const Config::Object& object) {
    hashed = load_flag(object, "Hashed", hashed);
    locked_pages = load_policy(object, "LockedPages", locked_pages);
    const Config::Array* listed = object.get_optional_array("Nodes");
    if (listed == nullptr) return;
    nodes.clear();
    for (std::size_t i = 0; i < listed->size(); i++) {
        const std::int64_t node = (*listed)[i].to_integer();
        if (node < 0) throw InvalidParametersException("", "NUMA nodes cannot be negative.");
        nodes.push_back(upL_t(node));
    }
}

void InterleaveAllocator::add_settings(Config::Object& object) const {
    add_flag(object, "Hashed", hashed);
    object.add_string("LockedPages", page_policy_word(locked_pages));
    Config::Array& listed = object.add_array("Nodes");
    for (upL_t node : nodes) listed.add_integer(std::int64_t(node));
}

upL_t InterleaveAllocator::print_settings(upL_t line) const {
    print_setting(line, "    Page Mapping:", hashed ? "Hashed" : "Round-Robin");
    print_setting(line + 1, LOCKED_LABEL, page_policy_text(locked_pages));
    print_setting(line + 2, "    Nodes:", node_list_text(nodes));
    return line + 3;
}

void InterleaveAllocator::menu_action(upL_t option) {
    if (option == 0) hashed = !hashed;
    if (option == 1) locked_pages = ask_policy("Lock Pages:");
    if (option == 2) nodes = ask_nodes();
}

}  // namespace lumo
