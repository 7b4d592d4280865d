#include "velmora/shell/session/session_cfg.h"

#include <cerrno>
#include <fstream>

#include "lumo/foundation/config/writer.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/memory/allocators/allocator_registry.h"
#include "lumo/foundation/parallel/settings/setting_values.h"
#include "velmora/shell/session/normal_float_session_b.h"
#include "velmora/shell/session/output_folder.h"

namespace velmora {

using lumo::Config::Object;

namespace {

/// The word of a kind of output in configuration files.
const char* digit_writer_word(lumo::OutputKind kind) {
    return kind == lumo::OutputKind::none ? "none" : kind == lumo::OutputKind::lmd ? "lmd" : "text";
}

lumo::OutputKind parse_digit_writer(const std::string& word) {
    for (const lumo::OutputKind kind :
         {lumo::OutputKind::none, lumo::OutputKind::text, lumo::OutputKind::lmd}) {
        if (word == digit_writer_word(kind)) return kind;
    }
    throw lumo::InvalidParametersException("", "Invalid Digit Writer: " + word);
}

std::unique_ptr<Constant> load_constant(const Object& object) {
    auto constant = make_constant(find_by_key(object.get_string("Constant")));
    if (constant->takes_argument()) constant->set_argument(std::to_string(object.get_integer("Argument")));
    constant->set_algorithm(object.get_optional_string("Algorithm", constant->algorithm().token));
    return constant;
}

void load_compression(NormalFloatSession& session, const Object& writer) {
    const std::int64_t digits = writer.get_optional_integer("DigitsPerFile", 0);
    if (digits < 0) throw lumo::InvalidParametersException("", "Invalid Digits per File");
    session.set_compressed_output(static_cast<upL_t>(digits));
}

}  // namespace

void NormalFloatSession::to_cfg(Object& object) const {
    object.add_string("Mode", mode_token());
    Object& constant_object = object.add_object("Constant");
    constant_object.add_string("Constant", selected->key());
    if (selected->takes_argument())
        constant_object.add_integer("Argument", static_cast<std::int64_t>(selected->argument()));
    constant_object.add_string("Algorithm", selected->algorithm().token);
    Object& size = object.add_object("ComputeSize");
    size.add_integer("DecimalDigits", static_cast<std::int64_t>(digits));
    lumo::add_flag(size, "EnableHexDigits", hex_on);
    Object& output_object = object.add_object("Output");
    output_object.add_string("Path", folder);
    Object& writer = output_object.add_object("DigitWriter");
    writer.add_string("Framework", digit_writer_word(output));
    if (output == lumo::OutputKind::lmd)
        writer.add_integer("DigitsPerFile", static_cast<std::int64_t>(file_digits));
    lumo::add_flag(object, "OutputVerify", verify);
    parallel.to_cfg(object.add_object("Parallelism"));
    memory->to_cfg(object.add_object("Allocator"));
}

void NormalFloatSession::load_settings(const Object& object) {
    const Object& size = object.get_object("ComputeSize");
    const std::int64_t decimal = size.get_integer("DecimalDigits");
    set_decimal_digits(decimal < 0 ? 0 : static_cast<upL_t>(decimal));
    size.get("EnableHexDigits");
    set_hex_enabled(lumo::load_flag(size, "EnableHexDigits", true));

    output = lumo::OutputKind::none;
    if (const Object* output_object = object.get_optional_object("Output")) {
        output = lumo::OutputKind::text;
        if (const Object* writer = output_object->get_optional_object("DigitWriter")) {
            output = parse_digit_writer(writer->get_string("Framework"));
            if (output == lumo::OutputKind::lmd) load_compression(*this, *writer);
        }
        const std::string path = output_object->get_optional_string("Path", "");
        if (output == lumo::OutputKind::none)
            folder = as_folder(path);
        else
            set_output_path(path);
    }
    verify = lumo::load_flag(object, "OutputVerify", false);
    if (const Object* threads = object.get_optional_object("Parallelism"))
        parallel = lumo::Parallelism::from_cfg(*threads);
    if (const Object* blocks = object.get_optional_object("Allocator"))
        memory = lumo::load_buffer_allocator(*blocks, *memory);
    refresh();
}

std::unique_ptr<NormalFloatSession> load_session(const lumo::DetectedHardware& hardware,
                                                 const Object& object) {
    const std::string& mode = object.get_string("Mode");
    if (mode != "ram") throw lumo::InvalidParametersException("", "Invalid Mode: " + mode);
    auto session =
        std::make_unique<NormalFloatSessionB>(hardware, load_constant(object.get_object("Constant")));
    session->load_settings(object);
    return session;
}

std::string session_text(const NormalFloatSession& session) {
    Object root;
    root.add_string("Action", "CustomCompute");
    session.to_cfg(root.add_object("CustomCompute"));
    return lumo::Config::write_cfg(root);
}

void save_session(const NormalFloatSession& session, const std::string& path) {
    const std::string name = path.substr(path.rfind('/') + 1);
    if (name.empty() || name == ".cfg") throw lumo::InvalidParametersException("", "No file name was given.");
    std::ofstream file(path, std::ios::binary);
    file << session_text(session);
    file.close();
    if (!file) throw lumo::FileIO::FileException("save_session()", "Unable to write file.", path, errno);
}

}  // namespace velmora
