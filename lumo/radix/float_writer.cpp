#include "lumo/radix/float_writer.h"

#include <algorithm>

#include "digitviewer/files/digit_text.h"
#include "digitviewer/files/file_names.h"
#include "digitviewer/files/lmd/lmd_names.h"
#include "digitviewer/files/lmd/lmd_set_reader.h"
#include "digitviewer/files/lmd/lmd_set_writer.h"
#include "digitviewer/files/text_reader.h"
#include "digitviewer/files/text_writer.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/errors/fatal.h"
#include "lumo/numbers/words/hash61.h"
#include "lumo/radix/cbrv2/fraction_view.h"
#include "lumo/radix/output/decimal_words.h"
#include "lumo/radix/output/digit_pass.h"
#include "lumo/radix/output/float_reader.h"
#include "lumo/radix/output/read_back.h"

namespace lumo {

namespace {

using DigitViewer2::BasicDigitReader;
using DigitViewer2::BasicDigitWriter;

constexpr upL_t MOST_INTEGER_DIGITS = 60;
constexpr upL_t SHOWN_DIGITS = 50;
constexpr upL_t PAGE_BYTES = 4096;

std::string file_name(const OutputSettings& settings, upL_t radix, const char* extension) {
    return DigitViewer2::digit_file_name(settings.base_path, radix, settings.algorithm, extension);
}

std::string two_hashes(const char* message, std::uint64_t expected, std::uint64_t actual) {
    return std::string(message) + "\nExpected = " + std::to_string(expected) +
           "\nActual   = " + std::to_string(actual);
}

std::string read_text(BasicDigitReader& reader, upL_t offset, upL_t count) {
    std::string text(count, '\0');
    reader.read({}, text.data(), static_cast<spL_t>(offset), count);
    DigitViewer2::text_of_values(reader.radix(), text.data(), text.data(), count);
    return text;
}

}  // namespace

std::string digit_file_path(const OutputSettings& settings, upL_t radix) {
    if (settings.kind == OutputKind::none) return "";
    if (settings.kind == OutputKind::text) return file_name(settings, radix, ".txt");
    return DigitViewer2::lmd_path(file_name(settings, radix, ""), settings.digits_per_file, 0);
}

FloatWriterB::FloatWriterB(const Number* value_, const FloatWriterPlan& plan_, OutputSettings settings_,
                           const MultiplyContext& ctx_, StatusNode& status_,
                           std::optional<std::uint64_t> recorded_hash_,
                           ConversionProbe<std::uint64_t>* probe_)
    : value(checked(value_, plan_)),
      plan(plan_),
      settings(std::move(settings_)),
      ctx(ctx_),
      status(status_),
      probe(probe_),
      recorded_hash(recorded_hash_ ? *recorded_hash_ : hash_value(value, ctx.parallel())),
      scratch(ctx.buffer()) {
    require_capacity("FloatWriterB::FloatWriterB()", scratch.size(), plan.scratch_bytes);
    words = scratch.spawn_words<std::uint64_t>(plan.output_words);
}

const BigFloat<std::uint64_t>& FloatWriterB::checked(const Number* value, const FloatWriterPlan& plan) {
    const char* const location = "FloatWriterB::FloatWriterB()";
    if (!value || (plan.hex_digits != 0 && value->top() < 0))
        throw InvalidParametersException(location, "Invalid number.");
    if (value->is_zero() ? value->capacity < plan.fraction_words
                         : value->exp > -static_cast<spL_t>(plan.fraction_words))
        throw InvalidParametersException(location, "Too many digits");
    if (value->top() > 4 || integer_text(*value, 10).size() > MOST_INTEGER_DIGITS)
        throw InvalidParametersException(location, "Integer part is too long.");
    return *value;
}

std::uint64_t FloatWriterB::hash_value(const Number& value, const ParallelContext& ctx) {
    return Hash61::canonical(bp_hash<std::uint64_t>(0, value.T, value.L, ctx));
}

void FloatWriterB::verify_binary_words() {
    StatusSection section(status, {{'T', "Verifying Binary Output:"}});
    const std::uint64_t hash = hash_value(value, ctx.parallel());
    if (!Hash61::equal(hash, recorded_hash))
        throw AlgorithmFailedException(
            "FloatWriterB::verify_binary_words()",
            two_hashes("The binary words have changed.", Hash61::canonical(recorded_hash), hash));
}

void FloatWriterB::write_hex_digits() {
    if (plan.hex_digits == 0) return;
    StatusSection section(status, {{'T', "Writing Hexadecimal Digits:"}});
    write_digits(results.hex, hex_file, plan.hex_digits);
}

void FloatWriterB::convert() {
    if (plan.dec_digits == 0) return;
    StatusSection section(status, {{'T', "Processing Decimal Digits:"}});
    DirectConvertB<std::uint64_t>::run(plan.convert, status, words, plan.output_words, value,
                                       ctx.with_scratch(scratch), probe);
}

void FloatWriterB::verify() {
    if (plan.dec_digits == 0) return;
    StatusSection section(status, {{'T', "Verifying Base Conversion:"}});
    if (plan.verify.product_words > Multiply::max_length<std::uint64_t>())
        throw InvalidParametersException("FloatWriterB::verify()", "Too many digits");
    const Number seen = words_between(value, -static_cast<spL_t>(plan.verify.fraction_words), 0);
    const std::uint64_t expected =
        VerifyB<std::uint64_t>::hash_binary(plan.verify, status, seen, ctx.with_scratch(scratch));
    const std::uint64_t actual = DecimalWords::hash(words, plan.output_words, ctx.parallel());
    // The conversion may be off by one in its lowest guard word. It is set right, since a carry from there
    // can reach the digits that are wanted.
    if (actual == expected) return;
    if (Hash61::equal(Hash61::add(actual, 1), expected))
        return DecimalWords::add_one(words, plan.output_words);
    if (Hash61::equal(Hash61::sub(actual, 1), expected))
        return DecimalWords::subtract_one(words, plan.output_words);
    throw AlgorithmFailedException("FloatWriterB::verify()",
                                   two_hashes("The base conversion is not correct.", expected, actual));
}

void FloatWriterB::write_dec_digits() {
    if (plan.dec_digits == 0) return;
    StatusSection section(status, {{'T', "Writing Decimal Digits:"}});
    write_digits(results.dec, dec_file, plan.dec_digits);
}

void FloatWriterB::read_check() {
    check_file(results.hex, hex_file);
    check_file(results.dec, dec_file);
}

void FloatWriterB::publish() {
    publish_file(results.hex, hex_file);
    publish_file(results.dec, dec_file);
}

const std::uint64_t* FloatWriterB::words_end(upL_t radix) const {
    if (radix == 10) return words + plan.output_words;
    return value.is_zero() ? value.base + plan.fraction_words : value.T - value.exp;
}

std::string FloatWriterB::first_digits(upL_t radix) const {
    return (value.positive ? "" : "-") + integer_text(value, radix) + ".";
}

std::unique_ptr<BasicDigitReader> FloatWriterB::make_reader(upL_t radix) const {
    const upL_t digits = radix == 10 ? plan.dec_digits : plan.hex_digits;
    return std::make_unique<FloatReaderB>(radix, first_digits(radix), words_end(radix), digits);
}

void FloatWriterB::write_digits(RadixReport& report, std::unique_ptr<BasicDigitWriter>& file, upL_t digits) {
    const upL_t radix = report.counts.radix();
    const auto reader = make_reader(radix);
    report.first_digits = reader->first_digits() + read_text(*reader, 0, std::min(digits, SHOWN_DIGITS));
    const upL_t shown = std::min(digits, LastDigits::DIGITS);
    report.last.set(read_text(*reader, digits - shown, shown), digits);
    report.hash = integer_hash(value);
    open_file(report, file, reader->first_digits(), digits);
    const DigitPass pass{DigitPacking::of(radix), words_end(radix), digits, plan.block_words};
    pass.run(report, file.get(), status, ctx.parallel(), scratch);
    if (file) file->close();
}

void FloatWriterB::open_file(RadixReport& report, std::unique_ptr<BasicDigitWriter>& file,
                             const std::string& integer_digits, upL_t digits) const {
    const upL_t radix = report.counts.radix();
    if (settings.kind == OutputKind::text) {
        report.path = digit_file_path(settings, radix);
        file = std::make_unique<DigitViewer2::BasicTextWriter>(DigitViewer2::incomplete_name(report.path),
                                                               integer_digits, radix);
    } else if (settings.kind == OutputKind::lmd) {
        file = std::make_unique<DigitViewer2::BasicLmdSetWriter>(
            file_name(settings, radix, ""), report.first_digits, radix, settings.digits_per_file, digits);
        report.path = file->path();
    }
}

std::unique_ptr<BasicDigitReader> FloatWriterB::open_reader(const std::string& path, upL_t radix) const {
    if (settings.kind == OutputKind::lmd) return std::make_unique<DigitViewer2::BasicLmdSetReader>(path);
    return std::make_unique<DigitViewer2::BasicTextReader>(path, radix);
}

void FloatWriterB::check_file(RadixReport& report, std::unique_ptr<BasicDigitWriter>& file) {
    if (!file) return;
    if (probe) probe->written(file->path());
    const auto reader = open_reader(file->path(), report.counts.radix());
    AlignedBufferC rest = scratch;
    const upL_t bytes = align_bytes(DigitPass::scratch_bytes(plan.block_words) / 2);
    read_back(report, *reader, status, ctx.parallel(), {rest.extract_aligned(bytes, PAGE_BYTES), bytes});
    publish_file(report, file);
}

void FloatWriterB::publish_file(const RadixReport& report, std::unique_ptr<BasicDigitWriter>& file) {
    if (!file) return;
    file->publish(report.path);
    file.reset();
}

}  // namespace lumo
