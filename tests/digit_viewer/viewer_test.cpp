// The digit viewer: its statistics against plain counting, and its dialogue on both formats.
#include "digitviewer/viewer/viewer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "console_talk.h"
#include "counted_status.h"
#include "digitviewer/files/lmd/lmd_set_reader.h"
#include "digitviewer/files/lmd/lmd_set_writer.h"
#include "digitviewer/files/text_reader.h"
#include "digitviewer/viewer/copy_digits.h"
#include "digitviewer/viewer/digit_statistics.h"
#include "failures.h"
#include "lumo/foundation/console/console.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/numbers/words/hash61.h"
#include "temp_folder.h"

namespace DigitViewer2 {
namespace {

using lumo::message_of;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

std::string random_values(upL_t count, upL_t radix, unsigned seed) {
    std::mt19937 random(seed);
    std::string values(count, '\0');
    for (char& v : values) v = static_cast<char>(random() % radix);
    return values;
}

std::string text_of(std::string values) {
    for (char& c : values) c = "0123456789abcdef"[static_cast<int>(c)];
    return values;
}

void expect_plain_counting(const DigitStatistics& statistics, const std::string& values, upL_t radix) {
    std::uint64_t hash = 0;
    upL_t counts[16] = {};
    for (const char v : values) {
        counts[static_cast<int>(v)]++;
        hash = lumo::Hash61::add(lumo::Hash61::mul(hash, radix), static_cast<std::uint64_t>(v));
    }
    EXPECT_EQ(statistics.digits, values.size());
    EXPECT_EQ(statistics.hash, lumo::Hash61::canonical(hash)) << values.size();
    for (upL_t digit = 0; digit < radix; digit++) EXPECT_EQ(statistics.counts[digit], counts[digit]) << digit;
}

class Viewer : public testing::Test {
 protected:
    Viewer() { lumo::Console::settings().colors_enabled = false; }

    std::string path(const std::string& name) const { return folder / name; }
    /// Writes the digits as text and as sets of compressed files; returns a path of each.
    std::vector<std::string> write_both(const std::string& values, upL_t radix, upL_t block) const {
        folder.write("digits.txt", "3." + text_of(values));
        BasicLmdSetWriter writer(path("digits"), "3.", radix, block, values.size());
        writer.write({}, values.data(), 0, values.size());
        writer.close();
        return {path("digits.txt"), writer.path()};
    }
    std::string talk_to(const std::string& answers) const {
        return lumo::talk(answers, [&] { Menu_DigitViewer({8, pool.get()}); });
    }

    const lumo::TempFolder folder;
    const std::unique_ptr<lumo::BasicParallelizer> pool = lumo::make_pushpool(3);
};

TEST_F(Viewer, StatisticsAreThoseOfPlainCounting) {
    for (const upL_t radix : {10, 16}) {
        for (const auto& [count, block] : {std::pair<upL_t, upL_t>(1, 0),
                                           {20, 0},
                                           {1000, 50},
                                           {39000, 1000},
                                           {200003, 60007},
                                           {7000001, 0},
                                           {7000001, 3000017}}) {
            const std::string values = random_values(count, radix, static_cast<unsigned>(count + block));
            for (const std::string& file : write_both(values, radix, block)) {
                for (const lumo::ParallelContext& ctx : {lumo::ParallelContext(), {8, pool.get()}}) {
                    std::unique_ptr<BasicDigitReader> reader;
                    if (file.ends_with(".txt"))
                        reader = std::make_unique<BasicTextReader>(file, radix);
                    else
                        reader = std::make_unique<BasicLmdSetReader>(file);
                    lumo::CountedStatus status;
                    expect_plain_counting(read_statistics(*reader, count, ctx, status), values, radix);
                    const upL_t some = count * 2 / 3;
                    expect_plain_counting(read_statistics(*reader, some, ctx, status), values.substr(0, some),
                                          radix);
                }
            }
            folder.clear();
        }
    }
}

TEST_F(Viewer, CopiesKeepTheDigits) {
    const std::string values = random_values(6000011, 10, 3);
    const std::vector<std::string> files = write_both(values, 10, 1000003);
    BasicTextReader text(files[0]);
    lumo::CountedStatus status;
    for (const lumo::ParallelContext& ctx : {lumo::ParallelContext(), {8, pool.get()}}) {
        BasicLmdSetWriter writer(path("copy"), "3.", 10, 0, values.size());
        copy_digits(text, writer, 0, values.size(), ctx, status);
        writer.close();
        BasicLmdSetReader reader(path("copy.lmd"));
        std::string back(values.size(), '\0');
        reader.read({}, back.data(), 0, back.size());
        EXPECT_TRUE(back == values);
    }
}

TEST_F(Viewer, EveryChoiceOnBothFormats) {
    for (const upL_t radix : {10, 16}) {
        const std::string values = random_values(1000, radix, 8);
        const std::string text = text_of(values);
        DigitStatistics expected(radix);
        for (const std::string& file : write_both(values, radix, 300)) {
            SCOPED_TRACE(file);
            const std::string printed = talk_to(
                file + "\n0\n41\n60\n1\n0\n1\n500\n2\n" + path("out") + "\n0\n2\n" + path("part.txt") +
                "\n123\n3\n0\nset\n" + path("new") + "\n200\n3\n777\none\n" + path("new") +
                "/\n0\n4\n301\n500\nsub\n" + path("new") + "\n100\n0\n990\n12\n4\n901\n1001\n5\n");
            const std::string kind = radix == 10 ? " - Dec" : " - Hex";
            EXPECT_THAT(printed,
                        AllOf(HasSubstr("Digits after Decimal Place: 1,000\n"),
                              HasSubstr("What would you like to do?\n"), HasSubstr("View a Range of Digits"),
                              HasSubstr(text.substr(40, 10) + " " + text.substr(50, 10) + " "),
                              HasSubstr(" :  90\n" + text.substr(90, 10) + " "), HasSubstr(" :  100\n"),
                              HasSubstr(radix == 10 ? "Dec Counts: " : "Hex Counts: "),
                              HasSubstr("Hash(1 - 1000) = "), HasSubstr("Hash(1 - 500) = "),
                              HasSubstr("Files 3 - 4 hold the digits 301 - 500\n"),
                              HasSubstr("This range of digits is not accessible."),
                              HasSubstr("Ending Digit: This range of digits is not accessible.")));
            EXPECT_EQ(printed.find("Exception"), std::string::npos) << printed;
            EXPECT_EQ(folder.contents("out.txt"), "3." + text);
            EXPECT_EQ(folder.contents("part.txt"), "3." + text.substr(0, 123));
            std::string back(1000, '\0');
            BasicLmdSetReader set(path("new/set" + kind + " - 4.lmd"));
            set.read({}, back.data(), 0, 1000);
            EXPECT_EQ(back, values);
            BasicLmdSetReader one(path("new/one" + kind + ".lmd"));
            EXPECT_EQ(one.digits(), 777u);
            one.read({}, back.data(), 0, 777);
            EXPECT_EQ(back.substr(0, 777), values.substr(0, 777));
            BasicLmdSetReader part(path("new/sub" + kind + " - 3.lmd"));
            EXPECT_EQ(part.digits(), 1000u);
            part.read({}, back.data(), 300, 200);
            EXPECT_EQ(back.substr(0, 200), values.substr(300, 200));
            EXPECT_THAT(part.missing_files(0, 1000), testing::SizeIs(8));
            EXPECT_EQ(std::distance(std::filesystem::directory_iterator(path("new")), {}), 8);
            std::filesystem::remove_all(path("new"));
            std::filesystem::remove(path("out.txt"));
            std::filesystem::remove(path("part.txt"));
        }
        folder.clear();
    }
}

TEST_F(Viewer, NothingThatStandsIsWrittenOver) {
    const std::string values = random_values(1000, 10, 2);
    write_both(values, 10, 300);
    // The digits of a set go to a set of its own name, in its own folder.
    EXPECT_THAT(talk_to(path("digits.txt") + "\n3\n0\ndigits\n \n300\n5\n"),
                Not(HasSubstr("already exists")));
    const std::string set = path("digits - Dec - 0.lmd");
    const std::string printed = talk_to(set + "\n3\n0\ndigits\n \n400\n4\n301\n500\ndigits\n\n300\n2\n" +
                                        path("digits") + "\n1\n0\n5\n");
    EXPECT_THAT(printed, AllOf(HasSubstr("File already exists."), HasSubstr("Path: " + set),
                               HasSubstr("Path: " + path("digits - Dec - 1.lmd")),
                               HasSubstr("Path: " + path("digits.txt")), HasSubstr("Hash(1 - 1000) = ")));
    EXPECT_EQ(folder.contents("digits.txt"), "3." + text_of(values));
}

TEST_F(Viewer, PartsOfASetOfUnknownLength) {
    LmdHeader header;
    header.block_size = 100;
    header.first_digits = "0.";
    for (header.block_id = 0; header.block_id < 3; header.block_id++)
        folder.write("x - " + std::to_string(header.block_id) + ".lmd",
                     make_lmd_header(header).text + std::string(8 * 6, static_cast<char>(header.block_id)));
    talk_to(path("x - 0.lmd") + "\n4\n120\n300\npart\n \n50\n5\n");
    BasicLmdSetReader part(path("part - Dec - 5.lmd"));
    EXPECT_EQ(part.digits(), BasicDigitReader::UNKNOWN_DIGITS);
    std::string expected(200, '\0'), back(200, '\0');
    BasicLmdSetReader(path("x - 1.lmd")).read({}, expected.data(), 100, 200);
    part.read({}, back.data(), 100, 200);
    EXPECT_EQ(back, expected);
    EXPECT_EQ(part.missing_files(0, 300).size(), 2u);
}

TEST_F(Viewer, FoldersOfASet) {
    const std::string set = write_both(random_values(1000, 10, 1), 10, 300)[1];
    std::filesystem::create_directories(path("more"));
    std::filesystem::rename(path("digits - 2.lmd"), path("more/digits - 2.lmd"));
    folder.write("digits - 3.lmd", "no digits");
    folder.write("more/digits - 0.lmd", "not looked at, the file is known");
    const std::string printed =
        talk_to(set + "\n1\n0\n6\n" + path("absent") + "\n6\n" + path("more") + "\n1\n900\n5\n");
    EXPECT_THAT(
        printed,
        AllOf(HasSubstr("Inconsistent Metadata: \"digits - 3.lmd\""),
              HasSubstr("inaccessible:\n    digits - 2.lmd\n    digits - 3.lmd\nThis range of digits is "
                        "not accessible."),
              HasSubstr("Unable to read folder."), HasSubstr("Hash(1 - 900) = ")));
    // A text file has no folders to add.
    EXPECT_THROW(talk_to(path("digits.txt") + "\n6\n"), lumo::Console::EndOfInput);
}

TEST_F(Viewer, SourcesThatTellLittle) {
    folder.write("few.txt", "3.14159");
    EXPECT_THAT(talk_to(path("few.txt") + "\n3\n0\n4\n1\n5\n5\n"), HasSubstr("Too few digits to compress."));
    folder.write("escape.txt", "\x1b[2J\x7f.14159");
    EXPECT_THAT(talk_to(path("escape.txt") + "\n5\n"), HasSubstr("?[2J?.\n"));
    folder.write("none.txt", "3.");
    EXPECT_THAT(
        talk_to(path("none.txt") + "\n3\n4\n0\n1\n1\n5\n"),
        AllOf(HasSubstr("No Digits to Recompress."), HasSubstr("This range of digits is not accessible.")));
    // A file that was begun with no total known.
    LmdHeader header;
    header.block_size = 100;
    std::string bytes = make_lmd_header(header).text + std::string(8 * 6, '\0');
    folder.write("x - 0.lmd", bytes);
    const std::string printed = talk_to(path("x - 0.lmd") + "\n1\n0\n100\n5\n");
    EXPECT_THAT(printed, AllOf(HasSubstr("Digits after Decimal Place: Unknown - Extended File Format\n"),
                               HasSubstr("Dec Counts: 100  0"), Not(HasSubstr("Dec Hash"))));
}

TEST_F(Viewer, FailuresLeadBackToTheMenuAndTellWhatIsLeft) {
    const std::string text = write_both(random_values(1000, 10, 1), 10, 300)[0];
    std::filesystem::create_symlink("/dev/full", path("full.txt (incomplete)"));
    std::filesystem::create_symlink("/dev/full", path("full - Dec - 0 (incomplete).lmd"));
    const std::string printed =
        talk_to(text + "\n2\n" + path("full") + "\n0\n3\n0\nfull\n" + path("") +
                "\n300\n3\n0\nx\n \n49\n2\n" + path("absent/x") + "\n0\n2\n\n2\n/\n5\n");
    EXPECT_THAT(printed, HasSubstr("No file name was given."));
    EXPECT_THAT(printed,
                AllOf(HasSubstr("Error Code: 28\n"), HasSubstr("Path: " + path("full.txt (incomplete)")),
                      HasSubstr("Left on disk: " + path("full.txt (incomplete)")),
                      HasSubstr("Left on disk: " + path("full - Dec - 0 (incomplete).lmd")),
                      HasSubstr("Invalid Digits per File"), HasSubstr("Error Code: 2\n")));
    const std::string left = "Left on disk: " + path("full.txt (incomplete)");
    EXPECT_EQ(printed.find(left), printed.rfind(left)) << "told once";
    folder.write("bad.txt", "3.14x15" + std::string(100, '1'));
    EXPECT_THAT(talk_to(path("bad.txt") + "\n0\n1\n10\n1\n0\n5\n"), HasSubstr("Invalid Digit"));
    EXPECT_EQ(message_of([&] { talk_to(path("digits.bin") + "\n"); }), "Invalid Extension");
    EXPECT_EQ(message_of([&] { talk_to(path("absent.txt") + "\n"); }), "Unable to open file.");
    EXPECT_THROW(talk_to(text + "\n0\n"), lumo::Console::EndOfInput);
}

}  // namespace
}  // namespace DigitViewer2
