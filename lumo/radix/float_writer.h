/// The output of a computed constant: hexadecimal digits, conversion to decimal, statistics, digit files, and
/// the verification of all these steps. In memory.
#pragma once

#include <memory>
#include <optional>

#include "digitviewer/files/digit_reader.h"
#include "digitviewer/files/digit_writer.h"
#include "lumo/radix/digit_report.h"
#include "lumo/radix/direct_convert.h"
#include "lumo/radix/verify_plan.h"

namespace lumo {

enum class OutputKind { none, text, lmd };  ///< lmd: compressed

struct OutputSettings {
    std::string base_path;  ///< folder and name of the constant: " - Dec - <algorithm>" is appended
    OutputKind kind = OutputKind::text;
    std::string algorithm;      ///< short name
    upL_t digits_per_file = 0;  ///< of compressed files; 0 for a single one
};

/// The final name of the file of digits in that radix, or of the first of several; empty without files.
std::string digit_file_path(const OutputSettings& settings, upL_t radix);

/// What a FloatWriterB needs. Digits count those after the point; either number may be 0.
struct FloatWriterPlan {
    FloatWriterPlan(upL_t dec_digits, upL_t hex_digits, upL_t tds);

    upL_t dec_digits;
    upL_t hex_digits;
    upL_t tds;
    upL_t scratch_bytes = 0;   ///< everything but the value, aligned to 128
    upL_t product_words = 0;   ///< longest product in 64-bit words: the twiddle tables must reach so far
    upL_t fraction_words = 0;  ///< words after the point that the value must have
    upL_t output_words = 0;    ///< decimal words, 19 digits each, guard words included
    upL_t block_words = 0;     ///< words that are turned to text at once
    ConvertPlanP<std::uint64_t> convert;
    VerifyPlan<std::uint64_t> verify;
};

/// Takes one value through its output. The steps are called in the order of their declaration, once each;
/// a step whose digits are not asked for does nothing. Each reports to the status node under its heading.
///
/// The digits are those of the value given, cut off, not rounded. The value, the plan and the scratch stay
/// the caller's and must live as long as the writer. Nothing is allocated beyond names and status text.
class FloatWriterB {
 public:
    using Number = BigFloat<std::uint64_t>;

    /// ctx.scratch holds plan.scratch_bytes and stays in use between the steps; ctx.tds <= plan.tds.
    /// `recorded_hash`: hash_value() of the value when its computation finished; taken now when absent.
    /// InvalidParametersException when the value is null ("Invalid number."), has an integer part of more
    /// than 60 digits, fewer words after the point than the digits need ("Too many digits"), or hexadecimal
    /// digits are asked of a value other than zero below 2^-64 ("Invalid number."). Zero has no words, so the
    /// first plan.fraction_words words of its buffer must be zero: they are its hexadecimal digits.
    FloatWriterB(const Number* value, const FloatWriterPlan& plan, OutputSettings settings,
                 const MultiplyContext& ctx, StatusNode& status,
                 std::optional<std::uint64_t> recorded_hash = {},
                 ConversionProbe<std::uint64_t>* probe = nullptr);

    /// Hash modulo 2^61 - 1 of the words of a value, independent of its exponent.
    static std::uint64_t hash_value(const Number& value, const ParallelContext& ctx);

    /// "Verifying Binary Output:". AlgorithmFailedException when the words no longer have their hash.
    void verify_binary_words();
    /// "Writing Hexadecimal Digits:". FileException when the file cannot be written.
    void write_hex_digits();
    /// "Processing Decimal Digits:". See DirectConvertB::run().
    void convert();
    /// "Verifying Base Conversion:". AlgorithmFailedException with both hashes on a mismatch. An error
    /// of one in the last guard word, which conversions may have, is set right.
    void verify();
    /// "Writing Decimal Digits:". FileException when the file cannot be written.
    void write_dec_digits();
    /// Reads the files back and gives them their final names. AlgorithmFailedException "Digit output failed.
    /// Metadata cross-check doesn't match." when they differ from what was written.
    void read_check();
    /// In place of read_check(): gives the files their final names as they are.
    void publish();

    /// Valid after the writing steps; the paths are the final ones.
    const DigitReport& report() const { return results; }
    /// The digits as a reader sees them: decimal after convert(), hexadecimal at any time.
    std::unique_ptr<DigitViewer2::BasicDigitReader> make_reader(upL_t radix) const;

 private:
    const Number& value;
    const FloatWriterPlan& plan;
    const OutputSettings settings;
    const MultiplyContext ctx;
    StatusNode& status;
    ConversionProbe<std::uint64_t>* const probe;
    const std::uint64_t recorded_hash;
    AlignedBufferC scratch;          ///< what the decimal words leave
    std::uint64_t* words = nullptr;  ///< plan.output_words of them
    DigitReport results;
    std::unique_ptr<DigitViewer2::BasicDigitWriter> dec_file, hex_file;  ///< until they bear their names

    static const Number& checked(const Number* value, const FloatWriterPlan& plan);
    const std::uint64_t* words_end(upL_t radix) const;
    std::string first_digits(upL_t radix) const;
    void write_digits(RadixReport& report, std::unique_ptr<DigitViewer2::BasicDigitWriter>& file,
                      upL_t digits);
    void open_file(RadixReport& report, std::unique_ptr<DigitViewer2::BasicDigitWriter>& file,
                   const std::string& integer_digits, upL_t digits) const;
    std::unique_ptr<DigitViewer2::BasicDigitReader> open_reader(const std::string& path, upL_t radix) const;
    void check_file(RadixReport& report, std::unique_ptr<DigitViewer2::BasicDigitWriter>& file);
    static void publish_file(const RadixReport& report,
                             std::unique_ptr<DigitViewer2::BasicDigitWriter>& file);
};

}  // namespace lumo
