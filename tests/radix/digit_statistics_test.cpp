// Counts, hashes, last digits, report lines and formatted numbers.
#include <gtest/gtest.h>

#include <random>

#include "death_output.h"
#include "failures.h"
#include "kernel_sets.h"
#include "lumo/numbers/words/hash61.h"
#include "lumo/radix/digit_report.h"
#include "lumo/radix/float_string.h"
#include "lumo/radix/output/word_text.h"

namespace lumo {
namespace {

TEST(DigitCounts, CountsTextAndValuesInAnyOrder) {
    const std::string text = "00123456789abcdefffff";
    const auto counted = [](upL_t radix, const std::string& digits) {
        DigitCounts counts(radix);
        counts.add(digits.data(), digits.size());
        return counts;
    };
    DigitCounts all = counted(16, text), parts = counted(16, text.substr(7));
    EXPECT_EQ(all.to_string(), "2  1  1  1  1  1  1  1  1  1  1  1  1  1  1  5");
    EXPECT_EQ(all, parts += counted(16, text.substr(0, 7)));
    std::string raw;
    for (char c : text) raw += static_cast<char>(c <= '9' ? c - '0' : c - 'a' + 10);
    EXPECT_EQ(all, counted(16, raw));
    EXPECT_EQ(all.report_line().substr(0, 14), "Hex Counts: 2 ");
    EXPECT_EQ(counted(10, std::string(1234567, '7')).report_line(),
              "Dec Counts: 0  0  0  0  0  0  0  1,234,567  0  0");
    // Every byte in every place of a vector, in more vectors than sums of bytes hold; most bytes are no
    // digits.
    std::string bytes;
    for (int i = 0; i < 70 * 257; i++) bytes += static_cast<char>(i * 257 / 256);
    const std::string characters = "0123456789abcdef";
    for (upL_t radix : {10, 16}) {
        DigitCounts one_by_one(radix);
        for (char byte : bytes) {
            const upL_t digit = byte >= 0 && byte < 16 ? static_cast<upL_t>(byte) : characters.find(byte);
            if (digit < radix) one_by_one.add_digit(digit, 1);
        }
        lumo::testing::for_kernel_sets([&](KernelSet) { EXPECT_EQ(counted(radix, bytes), one_by_one); });
        for (upL_t digit = 0; digit < radix; digit++) EXPECT_NEAR(double(one_by_one[digit]), 140, 2);
    }
    for (upL_t radix : {0, 2, 11, 17})
        EXPECT_EQ(refusal([&] { DigitCounts counts(radix); }), "DigitCounts::DigitCounts() Invalid radix.");
}

TEST(DigitReport, TellsCountsHashesDigestsAndTheEnd) {
    EXPECT_EQ(HashedDigits(7, 0).dec_line(), "Dec Hash: Floor(|x| * 10^dec) mod (2^61 - 1) = 7");
    EXPECT_EQ(HashedDigits(0, Hash61::MODULUS).hex_line(),
              "Hex Hash: Floor(|x| * 16^hex) mod (2^61 - 1) = 0");
    EXPECT_EQ(refusal([] { HashedDigits(Hash61::MODULUS + 1, 0); }),
              "HashedDigits::HashedDigits() Hash is out of range.");

    LastDigits last;
    last.set("12345", 5);
    EXPECT_EQ(last.text(), "12345");
    last.set(std::string(10, '1') + std::string(50, '2'), 1000);
    EXPECT_EQ(last.text(), std::string(50, '2'));
    EXPECT_EQ(last.position(), 1000u);
    EXPECT_EQ(refusal([&] { last.set("12345", 6); }), "LastDigits::set() Block is too short.");

    DigitReport report;
    EXPECT_TRUE(report.lines().empty());
    report.dec.digits = 3, report.dec.sha256 = "ab";
    EXPECT_EQ(report.lines().size(), 3u);
    EXPECT_EQ(report.lines().back(), "SHA256-dec(1 - 3): ab");
    report.hex.digits = 2, report.hex.sha256 = "cd";
    EXPECT_EQ(report.lines().size(), 6u);
    EXPECT_EQ(report.lines().back(), "SHA256-hex(1 - 2): cd");
}

TEST(WordText, PrintsEveryShapeOfWord) {
    std::mt19937_64 random(3);
    std::vector<std::uint64_t> words{0,
                                     9999999999999999999u,
                                     1,
                                     1000000000000000000,
                                     99999999,
                                     100000000,
                                     9999999999999999,
                                     10000000000000000};
    for (int i = 0; i < 20000; i++) words.push_back(random() % 10000000000000000000u);
    std::string text(2 * 19, ' '), hex(16, ' ');
    words_to_text(DigitPacking::of(10), text.data(), words.data() + 2, 2);
    EXPECT_EQ(text, "99999999999999999990000000000000000000");
    text.resize(19);
    for (std::uint64_t word : words) {
        char expected[20], hex_expected[17];
        std::snprintf(expected, sizeof(expected), "%019lu", word);
        std::snprintf(hex_expected, sizeof(hex_expected), "%016lx", word);
        words_to_text(DigitPacking::of(10), text.data(), &word + 1, 1);
        words_to_text(DigitPacking::of(16), hex.data(), &word + 1, 1);
        ASSERT_EQ(text, expected);
        ASSERT_EQ(hex, hex_expected);
        std::string values = text;
        for (char& c : values) c = static_cast<char>(c - '0');
        ASSERT_EQ(values_to_word(10, values.data(), 19), word);
        for (upL_t radix : {10, 16}) {
            std::uint64_t joined = 0;
            for (upL_t count = 1; count <= DigitPacking::of(radix).digits_per_word; count++) {
                const char digit =
                    radix == 10 ? values[count - 1] : static_cast<char>(word >> 3 * count & 15);
                values[count - 1] = digit;
                joined = joined * radix + static_cast<unsigned char>(digit);
                ASSERT_EQ(values_to_word(radix, values.data(), count), joined);
            }
        }
    }
}

TEST(FloatString, AppliesItsOperationsInOrder) {
    FloatString pi(10, "31415926535"), nines(10, "9996"), hexadecimal(16, "12f7ff8"), whole(10, "1200"),
        one(10, "7");
    EXPECT_FALSE(pi.round(6));
    pi.apply_dot(1);
    pi.apply_sign(false);
    pi.set_scientific(-12);
    EXPECT_EQ(pi.text(), "-3.14159 *10^ -12");
    EXPECT_TRUE(nines.round(3));
    nines.apply_dot(0);
    EXPECT_EQ(nines.text(), "0.100");
    nines.strip_lzs();
    EXPECT_EQ(nines.text(), "0.1");
    EXPECT_FALSE(hexadecimal.round(3));
    hexadecimal.set_scientific(5);
    EXPECT_EQ(hexadecimal.text(), "12f *16^ 5");
    whole.truncate(9);
    whole.apply_dot(2);
    whole.strip_lzs();
    whole.apply_sign(true);
    whole.set_integer();
    EXPECT_EQ(whole.text(), "12");
    EXPECT_TRUE(one.round(0));
    EXPECT_EQ(one.text(), "1");
    EXPECT_EQ(refusal([] { FloatString(10, "12a"); }), "FloatString::FloatString() Invalid Digit");
    EXPECT_EQ(refusal([] { FloatString(8, "12"); }), "FloatString::FloatString() Invalid radix.");
}

TEST(FloatStringDeathTest, RefusesOperationsOutOfOrder) {
    using Operation = void (*)(FloatString&);
    const Operation none = [](FloatString&) {}, dot = [](FloatString&s) { s.apply_dot(1); },
                    far_dot = [](FloatString&s) { s.apply_dot(4); },
                    sign = [](FloatString&s) { s.apply_sign(true); },
                    integer = [](FloatString&s) { s.set_integer(); },
                    scientific = [](FloatString&s) { s.set_scientific(1); },
                    truncate = [](FloatString&s) { s.truncate(1); },
                    round = [](FloatString&s) { s.round(1); }, strip = [](FloatString&s) { s.strip_lzs(); },
                    nothing = [](FloatString&s) { s = FloatString(10, "000"); };
    const struct {
        Operation first, second;
        const char* text;
    } cases[] = {{integer, truncate, "Cannot truncate after exp."},
                 {sign, truncate, "Cannot truncate after sign."},
                 {dot, round, "Cannot truncate after dot."},
                 {dot, dot, "Dot has already been applied."},
                 {none, far_dot, "Cannot apply dot after end of string."},
                 {integer, dot, "Cannot apply dot after exp."},
                 {sign, dot, "Cannot apply dot after sign."},
                 {integer, strip, "Cannot strip zeros after applying exp."},
                 {sign, strip, "Cannot strip zeros after applying sign."},
                 {integer, scientific, "Formatting has already been set."},
                 {nothing, strip, "ptr <= base_ptr"}};
    for (const auto& c : cases)
        EXPECT_DEATH(dying([&] {
                         FloatString s(10, "123");
                         c.first(s);
                         c.second(s);
                     }),
                     c.text);
}

}  // namespace
}  // namespace lumo
