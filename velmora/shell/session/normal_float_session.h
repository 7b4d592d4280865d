/// Everything that decides one computation of one constant: what to compute, how many digits, where they go,
/// and with what threads and memory. Digits are counted here; below the session only words are.
///
/// Every change re-derives the memory estimate. Used by the main thread, for one action.
#pragma once

#include <optional>

#include "lumo/foundation/hardware/detected_hardware.h"
#include "lumo/foundation/memory/allocators/buffer_allocator.h"
#include "lumo/foundation/parallel/settings/parallelism.h"
#include "lumo/radix/float_writer.h"
#include "velmora/constants/constant.h"
#include "velmora/validation/spot_check.h"

namespace velmora {

/// Bytes that a run will take. They are upper bounds for what is planned; libraries and bookkeeping come on
/// top.
struct MemoryEstimate {
    upL_t product_bits = 0;   ///< the longest product by transform
    upL_t working_bytes = 0;  ///< the working buffer
    upL_t table_bytes = 0;    ///< the twiddle tables
    std::string problem;      ///< why no run of this size is possible; the sizes are lower bounds then

    upL_t total_bytes() const { return working_bytes + table_bytes; }
};

class NormalFloatSession {
 public:
    static constexpr upL_t MIN_DIGITS = 100;
    /// Digits beyond those delivered, so that rounding never reaches these.
    static constexpr upL_t MARGIN_DIGITS = 100;
    static constexpr upL_t DEFAULT_DIGITS = 1000000;

    /// `hardware` must outlive the session.
    NormalFloatSession(const lumo::DetectedHardware& hardware, std::unique_ptr<Constant> chosen);
    virtual ~NormalFloatSession() = default;

    /// Runs the computation to the last line of its report. Final: the process ends afterwards.
    virtual void run() = 0;
    /// After run(): what the comparison with known digits came to, as "Good through 1,000,000".
    const std::string& spot_check() const { return verdict; }
    bool spot_check_passed() const { return SpotChecks::passed(verdict); }
    /// Whether the run is possible. Prints the summary, warnings and reasons if asked to.
    virtual bool can_run(bool print) const = 0;
    /// Derives the estimate anew from the settings.
    virtual void refresh() = 0;
    virtual const char* mode_token() const = 0;  ///< "ram"
    virtual const char* mode_name() const = 0;   ///< "Ram Only"

    const Constant& constant() const { return *selected; }
    std::string constant_name() const { return selected->name(); }
    /// The name of the algorithm and its remark.
    std::string algorithm_name() const;
    upL_t decimal_digits() const { return digits; }
    /// 0 when hexadecimal output is off.
    upL_t hex_digits() const;
    bool hex_enabled() const { return hex_on; }
    upL_t working_digits() const { return digits + MARGIN_DIGITS; }
    upL_t precision_words() const;
    lumo::OutputKind output_kind() const { return output; }
    /// Of compressed output; 0 for a single file.
    upL_t digits_per_file() const { return file_digits; }
    const std::string& output_path() const { return folder; }
    bool output_verify() const { return verify; }
    const lumo::Parallelism& parallelism() const { return parallel; }
    const lumo::BufferAllocator& allocator() const { return *memory; }
    const MemoryEstimate& estimate() const { return sizes; }
    const lumo::DetectedHardware& hardware() const { return machine; }

    /// A digit count that the new constant does not allow is repaired with a warning.
    void set_constant(std::unique_ptr<Constant> chosen);
    /// Throws KeyNotFoundException for an unknown token.
    void set_algorithm(std::string_view token);
    /// Throws InvalidParametersException outside the limits.
    void set_decimal_digits(upL_t n);
    /// Switches hexadecimal digits on and sets the size by them; 0 switches them off.
    void set_hex_digits(upL_t n);
    void set_hex_enabled(bool on);
    void set_output_kind(lumo::OutputKind kind);
    /// Compressed output: 0 for a single file. Throws InvalidParametersException "Invalid Digits per File"
    /// below 50.
    void set_compressed_output(upL_t digits_per_file);
    /// Throws ParseException "Path is not writable." with the path and what the system says.
    void set_output_path(const std::string& path);
    void set_output_verify(bool on) { verify = on; }
    void set_parallelism(lumo::Parallelism chosen);
    /// Throws InvalidParametersException for an unknown name.
    void set_framework(std::string_view name);
    void set_task_decomposition(upL_t tasks);
    void set_allocator(std::unique_ptr<lumo::BufferAllocator> chosen) { memory = std::move(chosen); }

    /// Adds the fields of the `CustomCompute` object.
    void to_cfg(lumo::Config::Object& object) const;
    /// Takes the settings of a `CustomCompute` object; the constant is set before.
    void load_settings(const lumo::Config::Object& object);

 protected:
    void print_summary() const;
    MemoryEstimate sizes;
    std::string verdict;

 private:
    void check_digits(upL_t n) const;
    void repair_digits();

    const lumo::DetectedHardware& machine;
    std::unique_ptr<Constant> selected;
    upL_t digits = DEFAULT_DIGITS;
    bool hex_on = true;
    lumo::OutputKind output = lumo::OutputKind::text;
    upL_t file_digits = 0;
    std::string folder;  ///< ends in a separator when not empty
    bool verify = true;
    lumo::Parallelism parallel;
    std::unique_ptr<lumo::BufferAllocator> memory;
};

}  // namespace velmora
