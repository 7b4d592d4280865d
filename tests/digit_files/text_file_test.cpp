// Text digit files: what is written is what is read, and what readers and writers refuse.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

#include "digit_values.h"
#include "digitviewer/files/file_names.h"
#include "digitviewer/files/text_reader.h"
#include "digitviewer/files/text_writer.h"
#include "failures.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "temp_folder.h"

namespace DigitViewer2 {
namespace {

using lumo::message_of;
using lumo::ParallelContext;

class TextFile : public ::testing::Test {
 protected:
    std::string path(const std::string& name) const { return folder / name; }
    std::string write_file(const std::string& text, const std::string& name = "x.txt") const {
        folder.write(name, text);
        return path(name);
    }
    const lumo::TempFolder folder;
};

TEST_F(TextFile, IsNotPublishedOverAProtectedOne) {
    write_file("kept", "final");
    std::filesystem::permissions(path("final"), std::filesystem::perms::owner_read);
    BasicTextWriter writer(path("digits"), "3.", 10);
    writer.write({}, std::string(5, 1).data(), 0, 5);
    EXPECT_THAT(message_of([&] { writer.publish(path("final")); }), ::testing::HasSubstr("write-protected"));
    EXPECT_EQ(folder.contents("final"), "kept");
    EXPECT_EQ(folder.contents("digits"), "3.11111");
}

TEST_F(TextFile, RoundTripsInBlocksAndInParallel) {
    const auto pool = lumo::make_pushpool(3);
    for (unsigned radix : {10u, 16u}) {
        // More than the writer's block, so that one call is cut.
        const upL_t count = 2500000;
        const std::string values = random_values(count, radix, radix);
        BasicTextWriter writer(path("digits"), radix == 10 ? "-3.14" : "3.", radix);
        const ParallelContext parallel{8, pool.get()};
        // Out of order, uneven pieces.
        writer.write(parallel, values.data() + 1200001, 1200001, count - 1200001);
        writer.write({}, values.data(), 0, 77);
        writer.write(parallel, values.data() + 77, 77, 1200001 - 77);
        writer.close();
        EXPECT_EQ(std::filesystem::file_size(path("digits")), count + (radix == 10 ? 3 : 2));

        BasicTextReader reader(path("digits"));
        EXPECT_EQ(reader.radix(), radix);
        EXPECT_EQ(reader.first_digits(), radix == 10 ? "-3." : "3.");
        EXPECT_EQ(reader.digits(), count);
        std::string back(count, '\0');
        reader.read(parallel, back.data(), 0, count);
        EXPECT_TRUE(back == values);
        reader.read({}, back.data(), 999999, 12345);
        EXPECT_EQ(back.substr(0, 12345), values.substr(999999, 12345));
        EXPECT_EQ(message_of([&] { reader.read({}, back.data(), spL_t(count) - 5, 6); }), "Incomplete read.");
        EXPECT_EQ(message_of([&] { reader.read({}, back.data(), -1, 1); }),
                  "Attempted to read in front of decimal place.");
    }
}

TEST_F(TextFile, TextIsDigitsAndNothingElse) {
    BasicTextWriter writer(path("a (incomplete)"), "1a.ffff", 16);
    writer.write_text({}, "0123456789abcdef", 0, 16);
    const char values[] = {15, 10, 0, 9};
    writer.write({}, values, 16, 4);
    const char bad[] = {16};
    EXPECT_EQ(message_of([&] { writer.write({}, bad, 20, 1); }), "Invalid Digit");
    std::ofstream(path("a")) << "an older file, longer than the new one is";
    writer.publish(path("a"));
    EXPECT_EQ(folder.contents("a"), "1a.0123456789abcdeffa09");
    EXPECT_FALSE(std::filesystem::exists(path("a (incomplete)")));
}

TEST_F(TextFile, LooksForThePointInTheFirst63Bytes) {
    EXPECT_EQ(BasicTextReader(write_file(std::string(62, '1') + ".5")).first_digits().size(), 63u);
    EXPECT_EQ(message_of([&] { BasicTextReader(write_file(std::string(63, '1') + ".5")); }),
              "A decimal place was not found within the first 63 bytes of the file.");
    EXPECT_EQ(message_of([&] { BasicTextReader(write_file("")); }),
              "A decimal place was not found within the first 63 bytes of the file.");
    EXPECT_EQ(BasicTextReader(write_file("3.")).digits(), 0u);
    EXPECT_EQ(message_of([&] { BasicTextWriter(path("y"), "314", 10); }), "No decimal place was found.");
}

TEST_F(TextFile, TakesTheRadixFromTheFirstDigits) {
    EXPECT_EQ(BasicTextReader(write_file("3.243F6A")).radix(), 16u);
    EXPECT_EQ(BasicTextReader(write_file("3.2430")).radix(), 10u);
    EXPECT_EQ(BasicTextReader(write_file("3.2430"), 16).radix(), 16u);
    EXPECT_EQ(message_of([&] { BasicTextReader(write_file("3.243f6a"), 10); }), "Invalid Radix");
    EXPECT_EQ(message_of([&] { BasicTextReader(write_file("3.14"), 8); }), "Invalid Radix");

    BasicTextReader upper(write_file("3.aAbBcCdDeEfF"));
    char out[12];
    upper.read({}, out, 0, 12);
    EXPECT_THAT(out, ::testing::ElementsAre(10, 10, 11, 11, 12, 12, 13, 13, 14, 14, 15, 15));
}

TEST_F(TextFile, RefusesABadByteWhenItIsRead) {
    std::string digits(100, '7');
    digits[80] = 'a';
    BasicTextReader reader(write_file("3." + digits));
    std::string out(100, '\0');
    reader.read({}, out.data(), 0, 80);
    reader.read({}, out.data(), 81, 19);
    EXPECT_EQ(message_of([&] { reader.read({}, out.data(), 0, 100); }), "Invalid Digit");
    for (char c : {' ', '\n', '/', ':', 'g', '@', '`', '\x80'}) {
        digits[80] = c;
        for (upL_t radix : {10, 16})
            EXPECT_EQ(message_of([&] {
                          BasicTextReader(write_file("3." + digits), radix).read({}, out.data(), 80, 1);
                      }),
                      "Invalid Digit");
    }
}

TEST_F(TextFile, SystemErrorsNamePathAndErrno) {
    const lumo::Thrown missing = lumo::thrown_by([&] { BasicTextReader(path("missing")); });
    EXPECT_EQ(missing.path, path("missing"));
    EXPECT_EQ(missing.error_code, ENOENT);
    std::filesystem::create_symlink("/dev/full", path("full"));
    const lumo::Thrown full = lumo::thrown_by([&] { BasicTextWriter(path("full"), "3.", 10); });
    EXPECT_EQ(full.path, path("full"));
    EXPECT_EQ(full.error_code, ENOSPC);
    EXPECT_EQ(full.message, "Unable to write file.");
}

TEST(FileNames, FollowTheRadix) {
    EXPECT_EQ(digit_file_name("out/Pi", 10, "Chudnovsky", ".txt"), "out/Pi - Dec - Chudnovsky.txt");
    EXPECT_EQ(digit_file_name("Pi", 16, "Chudnovsky", ".txt"), "Pi - Hex - Chudnovsky.txt");
    EXPECT_EQ(incomplete_name("Pi.txt"), "Pi.txt (incomplete)");
}

}  // namespace
}  // namespace DigitViewer2
