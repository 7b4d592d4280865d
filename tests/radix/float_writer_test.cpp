// The whole output of a value: digits, statistics, files and their verification.
#include "lumo/radix/float_writer.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

#include "console_talk.h"
#include "counted_status.h"
#include "failures.h"
#include "lumo/foundation/digest/sha2.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/numbers/words/hash61.h"
#include "lumo/radix/output/decimal_words.h"
#include "radix_oracle.h"
#include "real_number.h"
#include "temp_folder.h"

namespace lumo {
namespace {

using namespace testing;
using u64 = std::uint64_t;
using Value = HeldFloat<u64>;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

/// Pi with m words after the point, cut off.
mpz_class scaled_pi(upL_t m) {
    Real pi(64 * m + 2);
    mpfr_const_pi(pi.value, MPFR_RNDZ);
    mpfr_mul_2ui(pi.value, pi.value, 64 * m, MPFR_RNDZ);
    mpz_class z;
    mpfr_get_z(z.get_mpz_t(), pi.value, MPFR_RNDZ);
    return z;
}
Value pi_value(upL_t m) {
    return test_value<u64>(scaled_pi(m), m);
}

/// Digits after the point of scaled / 2^(64 m).
std::string expected_digits(const mpz_class& scaled, upL_t m, int radix, upL_t digits) {
    const mpz_class z = expected_integer<u64>(scaled, m, radix, digits);
    const std::string text = digits == 0 ? "" : z.get_str(radix);
    return std::string(digits - text.size(), '0') + text;
}

class FloatWriter : public ::testing::Test {
 protected:
    DigitReport write(const BigFloat<u64>& value, const FloatWriterPlan& plan,
                      const ParallelContext& parallel = {}, ConversionProbe<u64>* probe = nullptr) {
        Multiply::release_tables();  // those of longer products would hide a plan's mistake
        Multiply::ensure_tables(plan.product_words * 64);
        const Scratch scratch(plan.scratch_bytes);
        CountedStatus status;
        FloatWriterB writer(&value, plan, settings, scratch.context(parallel.tds, *parallel.parallelizer),
                            status, {}, probe);
        writer.verify_binary_words();
        writer.write_hex_digits();
        writer.convert();
        writer.verify();
        writer.write_dec_digits();
        writer.read_check();
        EXPECT_TRUE(scratch.intact());
        return writer.report();
    }
    std::string failure(const BigFloat<u64>& value, const FloatWriterPlan& plan,
                        ConversionProbe<u64>& probe) {
        return message_of([&] { write(value, plan, {}, &probe); });
    }

    const TempFolder folder;
    OutputSettings settings{folder / "Pi", OutputKind::text, "Chudnovsky"};
};

void expect_report(const RadixReport& report, const mpz_class& scaled, upL_t m, unsigned radix, upL_t digits,
                   const std::string& head) {
    const std::string text = expected_digits(scaled, m, static_cast<int>(radix), digits);
    DigitCounts counts(radix);
    counts.add(text.data(), text.size());
    EXPECT_EQ(report.digits, digits);
    EXPECT_EQ(report.counts, counts);
    EXPECT_EQ(report.hash,
              mpz_class(expected_integer<u64>(scaled, m, radix, digits, true) % Hash61::MODULUS));
    EXPECT_EQ(report.sha256, to_hex(Sha256::digest(text)));
    EXPECT_EQ(report.first_digits, head + text.substr(0, 50));
    EXPECT_EQ(report.last.text(), text.substr(digits - std::min<upL_t>(50, digits)));
    EXPECT_EQ(report.last.position(), digits);
}

TEST_F(FloatWriter, WritesPi) {
    const auto pool = make_pushpool(3);
    for (upL_t dec : {1, 18, 19, 20, 50, 1000, 12345, 700000}) {
        const upL_t hex = dec * 83 / 100 + 1;
        const upL_t m = static_cast<upL_t>(double(dec + 100) * 0.0519051265) + 2;
        const mpz_class scaled = scaled_pi(m);
        const Value value = test_value<u64>(scaled, m);
        std::vector<DigitReport> reports;
        for (upL_t tds : {1, 5}) {
            const FloatWriterPlan plan(dec, hex, tds);
            const DigitReport report = write(value, plan, {tds, pool.get()});
            expect_report(report.dec, scaled, m, 10, dec, "3.");
            expect_report(report.hex, scaled, m, 16, hex, "3.");
            EXPECT_EQ(report.dec.path, folder / "Pi - Dec - Chudnovsky.txt");
            EXPECT_TRUE(folder.contents(report.dec.path) == "3." + expected_digits(scaled, m, 10, dec));
            EXPECT_TRUE(folder.contents(report.hex.path) == "3." + expected_digits(scaled, m, 16, hex));
            EXPECT_THAT(folder.names(),
                        UnorderedElementsAre("Pi - Dec - Chudnovsky.txt", "Pi - Hex - Chudnovsky.txt"));
        }
    }
}

TEST_F(FloatWriter, CutsDigitsOffExactly) {
    // Decimal fractions as binary cuts them off: nines where the decimal ends, or zeros a bit above it.
    for (upL_t dec : {40, 57, 1000, 40000}) {
        const FloatWriterPlan plan(dec, 0, 2);
        const upL_t m = plan.fraction_words + 5;
        for (upL_t j : {upL_t(0), upL_t(1), upL_t(19), dec / 2, dec - 1, dec}) {
            for (int tiny : {0, 1}) {
                const mpz_class k = j == 0 ? mpz_class(1) : mpz_class(power(10, j) - 1 - power(10, j / 2));
                const mpz_class scaled = (k << (64 * m)) / power(10, j) + (j == 0 ? tiny - 1 : tiny);
                const Value value = test_value<u64>(scaled, m);
                settings.kind = OutputKind::none;
                const DigitReport report = write(value, plan);
                expect_report(report.dec, scaled, m, 10, dec, scaled >> (64 * m) == 0 ? "0." : "1.");
            }
        }
    }
    EXPECT_TRUE(folder.names().empty());
}

TEST_F(FloatWriter, HandlesSignsIntegerPartsAndMissingRadixes) {
    settings.kind = OutputKind::text;
    const upL_t m = 12;
    std::mt19937_64 random(8);
    const mpz_class scaled = random_scaled<u64>(m, random) + (power(10, 59) << (64 * m));
    Value value = test_value<u64>(scaled, m);
    value.negate();
    DigitReport report = write(value, FloatWriterPlan(100, 100, 1));
    expect_report(report.dec, scaled, m, 10, 100, "-" + power(10, 59).get_str() + ".");
    expect_report(report.hex, scaled, m, 16, 100, "-" + power(10, 59).get_str(16) + ".");
    EXPECT_EQ(folder.contents(report.dec.path).substr(0, 4), "-100");

    report = write(value, FloatWriterPlan(0, 100, 1));
    EXPECT_EQ(report.dec.digits, 0u);
    EXPECT_TRUE(report.dec.path.empty());
    EXPECT_EQ(report.hex.digits, 100u);
    report = write(value, FloatWriterPlan(100, 0, 1));
    EXPECT_EQ(report.hex.digits, 0u);
    EXPECT_EQ(report.lines().size(), 3u);

    // A value far below 1, whose first words after the point are not there.
    const mpz_class tiny = random_scaled<u64>(8, random);
    report = write(test_value<u64>(tiny, m), FloatWriterPlan(150, 0, 1));
    expect_report(report.dec, tiny, m, 10, 150, "0.");
}

TEST_F(FloatWriter, WritesZero) {
    for (const auto kind : {OutputKind::text, OutputKind::lmd}) {
        settings.kind = kind;
        const FloatWriterPlan plan(30000, 25000, 2);
        std::vector<u64> words(plan.fraction_words);
        const DigitReport report = write(BigFloat<u64>(words.data(), words.size()), plan);
        expect_report(report.dec, 0, plan.fraction_words, 10, 30000, "0.");
        expect_report(report.hex, 0, plan.fraction_words, 16, 25000, "0.");
        if (kind == OutputKind::text) {
            EXPECT_TRUE(folder.contents(report.hex.path) == "0." + std::string(25000, '0'));
        }
    }
}

TEST_F(FloatWriter, RefusesWhatItCannotWrite) {
    NullStatusNode status;
    const FloatWriterPlan plan(1000, 100, 1);
    const Scratch scratch(plan.scratch_bytes);
    const auto refused = [&](const BigFloat<u64>* value) {
        return message_of([&] { FloatWriterB(value, plan, settings, scratch.context(), status); });
    };
    const auto refusal = [&](const mpz_class& scaled, upL_t m) {
        const Value value = test_value<u64>(scaled, m);
        return refused(&value);
    };
    const BigFloat<u64> zero;
    const upL_t m = plan.fraction_words;
    EXPECT_EQ(refused(nullptr), "Invalid number.");
    EXPECT_EQ(refused(&zero), "Too many digits") << "without the words of its digits";
    EXPECT_EQ(refusal(1, m), "Invalid number.");
    EXPECT_EQ(refusal(scaled_pi(m - 1), m - 1), "Too many digits");
    EXPECT_EQ(refusal(power(10, 60) << (64 * m), m), "Integer part is too long.");
    EXPECT_EQ(refusal(scaled_pi(m), m), "");
}

TEST_F(FloatWriter, NoticesChangedBinaryWords) {
    const FloatWriterPlan plan(1000, 0, 1);
    Value value = pi_value(60);
    const Scratch scratch(plan.scratch_bytes);
    NullStatusNode status;
    const u64 recorded = FloatWriterB::hash_value(value, {});
    FloatWriterB writer(&value, plan, settings, scratch.context(), status, recorded);
    writer.verify_binary_words();
    value.T[30] ^= 1 << 20;
    EXPECT_THROW(writer.verify_binary_words(), AlgorithmFailedException);
}

TEST_F(FloatWriter, CatchesDamagedConversions) {
    struct Flip final : ConversionProbe<u64> {
        upL_t countdown;
        bool in_power;
        upL_t place;
        Flip(bool p, upL_t n, upL_t at) : countdown(n), in_power(p), place(at) {}
        void power(upL_t, u64* words, upL_t L) override {
            if (in_power && countdown-- == 0) words[L - 1] ^= 2;
        }
        void converted(u64* out, upL_t L, u64&) override {
            if (!in_power && countdown-- == 0) out[place % L] ^= 2;
        }
    };
    const FloatWriterPlan plan(30000, 0, 1);
    const upL_t m = plan.fraction_words + 4;
    const Value value = pi_value(m);
    for (upL_t row : {0, 1, 2}) {
        Flip flip(true, row, 0);
        EXPECT_EQ(failure(value, plan, flip), "Power Hash Mismatch");
    }
    for (upL_t place : {0, 1, 20, 50}) {
        Flip flip(false, 3, place);
        EXPECT_THAT(failure(value, plan, flip),
                    StartsWith("The base conversion is not correct.\nExpected = "));
    }
    Flip top(false, 3, ~upL_t(0));
    const std::string message = failure(value, plan, top);
    EXPECT_THAT(message, ::testing::AnyOf(StartsWith("Overlap Mismatch:"),
                                          StartsWith("The base conversion is not correct.")));
}

// One more or less in the lowest word is set right, though it went up into the digits that are wanted.
TEST_F(FloatWriter, SetsTheLowestWordRight) {
    struct OffByOne final : ConversionProbe<u64> {
        bool more;
        explicit OffByOne(bool up) : more(up) {}
        void converted(u64* out, upL_t L, u64&) override {
            more ? DecimalWords::add_one(out, L) : DecimalWords::subtract_one(out, L);
        }
    };
    settings.kind = OutputKind::none;
    const FloatWriterPlan plan(57, 0, 1);
    const upL_t m = plan.fraction_words + 5, words = plan.output_words;
    for (const bool more : {true, false}) {
        SCOPED_TRACE(more);
        // 57 digits, nines or zeros down to the lowest word, and a half of a unit of that.
        const mpz_class below = more ? mpz_class(power(10, 19 * (words - 3)) - 1) : mpz_class(0);
        const mpz_class integer = mpz_class(power(10, 57) / 7) * power(10, 19 * (words - 3)) + below;
        const mpz_class scaled = ((2 * integer + 1) << (64 * m)) / (2 * power(10, 19 * words));
        OffByOne probe(more);
        expect_report(write(test_value<u64>(scaled, m), plan, {}, &probe).dec, scaled, m, 10, 57, "0.");
    }
}

TEST_F(FloatWriter, CatchesDamagedFiles) {
    struct Damage final : ConversionProbe<u64> {
        std::string text;
        upL_t place;
        Damage(std::string t, upL_t at) : text(std::move(t)), place(at) {}
        void written(const std::string& path) override {
            if (path.find(" - Dec - ") == std::string::npos) return;
            std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
            file.seekp(static_cast<std::streamoff>(place));
            file << text;
        }
    };
    const FloatWriterPlan plan(1000, 100, 1);
    const Value value = pi_value(60);
    const std::string refused = "Digit output failed. Metadata cross-check doesn't match.";
    // Digits 3.14159...: a digit changed, two exchanged, one too many.
    Damage changed("2", 2), exchanged("41", 2), longer("7", 1002);
    Damage alike("16465108368193017797", 2);  // by 2^61 - 1 more: the hash is the same
    std::string message;
    EXPECT_THAT(printed_by([&] { message = failure(value, plan, changed); }),
                AllOf(HasSubstr("Pre-Write Counts = "), HasSubstr("Read-Back Counts = ")));
    EXPECT_EQ(message, refused);
    EXPECT_EQ(failure(value, plan, alike), refused);
    EXPECT_THAT(printed_by([&] { message = failure(value, plan, exchanged); }),
                AllOf(HasSubstr("Before Hash = "), HasSubstr("After  Hash = ")));
    EXPECT_EQ(message, refused);
    EXPECT_THAT(printed_by([&] { message = failure(value, plan, longer); }),
                AllOf(HasSubstr("Pre-Write Digits = 1000\n"), HasSubstr("Read-Back Digits = 1001\n")));
    EXPECT_EQ(message, refused);
    settings.kind = OutputKind::lmd;
    settings.digits_per_file = 400;
    Damage word("x", 300);
    EXPECT_EQ(failure(value, plan, word), refused);
    for (const char* name :
         {"Dec - Chudnovsky - 0", "Dec - Chudnovsky - 1", "Dec - Chudnovsky - 2", "Hex - Chudnovsky - 0"})
        EXPECT_TRUE(std::filesystem::remove(folder / (std::string("Pi - ") + name + ".lmd"))) << name;
    settings.kind = OutputKind::text;
    // What failed keeps the name of the unfinished, what passed has its own.
    EXPECT_THAT(folder.names(),
                UnorderedElementsAre("Pi - Dec - Chudnovsky.txt (incomplete)", "Pi - Hex - Chudnovsky.txt"));

    const auto file_failure = [&](Damage damage) { return failure(value, plan, damage); };
    EXPECT_EQ(file_failure({"x", 500}), "Invalid Digit");
    EXPECT_EQ(file_failure({"x", 0}), "Invalid decimal digit in first digits.");
    EXPECT_EQ(file_failure({"3", 1}), "A decimal place was not found within the first 63 bytes of the file.");
}

TEST_F(FloatWriter, NamesTheFileThatCannotBeWritten) {
    const Value value = pi_value(60);
    std::filesystem::create_symlink("/dev/full", folder / "Pi - Dec - Chudnovsky.txt (incomplete)");
    const Thrown thrown = thrown_by([&] { write(value, FloatWriterPlan(1000, 0, 1)); });
    EXPECT_EQ(thrown.path, folder / "Pi - Dec - Chudnovsky.txt (incomplete)");
    EXPECT_EQ(thrown.error_code, ENOSPC);
}

TEST_F(FloatWriter, ReadsDigitsFromMemory) {
    const FloatWriterPlan plan(1000, 1000, 1);
    const upL_t m = plan.fraction_words + 4;
    const Value value = pi_value(m);
    Multiply::ensure_tables(plan.product_words * 64);
    const Scratch scratch(plan.scratch_bytes);
    NullStatusNode status;
    FloatWriterB writer(&value, plan, settings, scratch.context(), status);
    writer.convert();
    for (upL_t radix : {10, 16}) {
        const auto reader = writer.make_reader(radix);
        std::string digits(1000, '\0');
        reader->read({}, digits.data(), 0, 1000);
        for (char& c : digits) c = "0123456789abcdef"[static_cast<unsigned char>(c)];
        EXPECT_EQ(digits, expected_digits(scaled_pi(m), m, static_cast<int>(radix), 1000));
        char some[5];
        reader->read({}, some, 758, 5);
        for (int i = 0; i < 5; i++)
            EXPECT_EQ("0123456789abcdef"[static_cast<unsigned char>(some[i])], digits[758 + i]);
        const auto refusal = [&](spL_t offset, upL_t count) {
            return message_of([&] { reader->read({}, digits.data(), offset, count); });
        };
        EXPECT_EQ(refusal(-1, 1), "Attempted to read in front of decimal place.");
        EXPECT_EQ(refusal(995, 6), "Incomplete read.");
    }
}

}  // namespace
}  // namespace lumo
