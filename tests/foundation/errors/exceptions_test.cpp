#include "lumo/foundation/errors/exceptions.h"

#include <gtest/gtest.h>

#include <thread>

#include "console_talk.h"
#include "lumo/foundation/console/console.h"

namespace lumo {
namespace {

using Pointer = std::unique_ptr<Exception>;

/// Serial forms: what each class holds besides a location and a text.
std::string with(std::initializer_list<std::uint64_t> numbers, bool message = true) {
    std::string bytes;
    append_field(bytes, "f()");
    if (message) append_field(bytes, "text");
    for (const std::uint64_t n : numbers) append_field(bytes, n);
    return bytes;
}

std::string with_text(std::string bytes, const char* text) {
    append_field(bytes, text);
    return bytes;
}

std::string file_bytes() {
    std::string bytes = with_text(with({}), "/tmp/x");
    append_field(bytes, std::int32_t(-2));
    return bytes;
}

std::vector<std::pair<const char*, std::string>> serial_forms() {
    std::vector<std::pair<const char*, std::string>> forms = {
        {"StdException", with_text("", "text")},
        {"SystemException", with({~std::uint64_t(21)})},
        {"BufferTooSmallException", with({100, 2000}, false)},
        {"FileException", file_bytes()},
        {"InconsistentMetaData", file_bytes()},
        {"FarMemoryOutOfBoundsException", with({1, 2, 3}, false)},
        {"LimitExceededException", with({1000, 2000})},
        {"MemoryAllocationFailedException", with_text(with({}), "mmap") + std::string(8, '\1')},
        {"ConvolutionTooSmallException", with({10, 20})},
        {"BSRModularCheckFailedException", with({2, 1, 2, 3000, 4000})},
    };
    for (const char* name :
         {"StringException", "ParseException", "EndOfStreamException", "KeyNotFoundException",
          "InvalidParametersException", "ArithmeticException", "ExponentOverflowException",
          "AlgorithmFailedException", "ResourceAcquisitionFailedException", "FarMemoryException",
          "Raid0Exception", "Raid03Exception", "InvalidTransformException", "TransformTooSmallException",
          "ConvolutionFailedException", "UnsupportedValueException", "UnsupportedZeroException",
          "UnsupportedNegativeException", "StressTestFailedException"})
        forms.emplace_back(name, with({}));
    return forms;
}

std::string bytes_of(const Exception& e) {
    std::string bytes;
    e.serialize(bytes);
    return bytes;
}

std::string printed(const Exception& e) {
    return printed_by([&] { e.print(); });
}

class Exceptions : public testing::Test {
 protected:
    void SetUp() override { Console::settings().colors_enabled = false; }
    void TearDown() override { Console::settings() = Console::Settings(); }
};

TEST_F(Exceptions, EveryClassSurvivesBytesThrowingAndTheHeap) {
    for (const auto& [name, bytes] : serial_forms()) {
        SCOPED_TRACE(name);
        const Pointer rebuilt = rebuild_exception(name, bytes);
        EXPECT_STREQ(rebuilt->get_typename(), name);
        EXPECT_EQ(bytes_of(*rebuilt), bytes);
        Pointer moved;
        try {
            rebuilt->rethrow();
        } catch (Exception& e) {
            moved = e.move_to_heap();
        }
        EXPECT_EQ(typeid(*moved), typeid(*rebuilt));
        EXPECT_EQ(printed(*moved), printed(*rebuilt));  // rethrow() copies
        EXPECT_EQ(bytes_of(*moved), bytes);
    }
}

TEST_F(Exceptions, BytesThatEndEarlyAreRefused) {
    for (const auto& [name, bytes] : serial_forms())
        for (std::size_t length = 0; length < bytes.size(); length++) try {
                rebuild_exception(name, std::string_view(bytes).substr(0, length));
                ADD_FAILURE() << name << " from " << length << " bytes";
            } catch (const ParseException& e) {
                ASSERT_EQ(e.message, "Unexpected end of string.");
            }
    EXPECT_THROW(rebuild_exception("StdException", std::string(8, '\xff')), ParseException);
    EXPECT_THROW(rebuild_exception("NoSuchException", ""), KeyNotFoundException);
}

TEST_F(Exceptions, DerivedTypesArriveOnTheJoiningThread) {
    Pointer result;
    std::thread([&] {
        try {
            throw velmora::StressTest::StressTestFailedException("", "failed");
        } catch (...) {
            result = capture_current_exception();
        }
    }).join();
    EXPECT_THROW(result->rethrow(), velmora::StressTest::StressTestFailedException);

    const auto capture = [](auto&& thrown) {
        try {
            throw thrown;
        } catch (...) {
            return capture_current_exception();
        }
    };
    EXPECT_EQ(dynamic_cast<StdException&>(*capture(std::runtime_error("out of luck"))).message,
              "out of luck");
    EXPECT_STREQ(capture(17)->get_typename(), "UnknownException");
}

TEST_F(Exceptions, Layouts) {
    const auto expect = [](const Exception& e, const std::string& lines) {
        EXPECT_EQ(printed(e), "\nException Encountered: " + (e.get_typename() + ("\n\n" + lines + "\n")));
    };
    expect(ParseException("parse()", "Bad."), "In Function: parse()\n\nBad.\n");
    expect(ParseException("", "Bad."), "Bad.\n");
    expect(ExponentOverflowException("f()", "Too big."),
           "Floating-point exponent has exceeded internal limit:\nIn Function: f()\n\nToo big.\n");
    expect(FileIO::FileException("", "Failed.", "a/b", 2),
           "Error Code: 2\nPath: a/b\n\nFailed.\nNo such file or directory\n");
    expect(FileIO::FileException("f()", "Bad.", "c"), "In Function: f()\nError Code: 0\nPath: c\n\nBad.\n");
    expect(LimitExceededException("f()", "Too many.", LimitExceededException::UNKNOWN_LIMIT, 5000),
           "Limit Exceeded\n    Function: f()\nToo many.\n    Limit: Unknown\n    Attempted: 5,000\n");
    expect(BufferTooSmallException("f()", 1000, 2000),
           "Buffer is too small:\n    Function: f()\n    Buffer Size: 1,000\n    Required Size: 2,000\n");
    expect(BSRModularCheckFailedException("", "Mismatch.", {{1000, 7}}),
           "Mismatch.\n    hash[0] = 1,000 != 7\n");
    EXPECT_EQ(printed(R03::Raid03Exception("", "Two drives lost.")),
              "\nRaid03 Exception Encountered: Raid03Exception\n\nTwo drives lost.\n\n");
    EXPECT_EQ(printed(SystemException("f()", "Failed.", 12345)),
              "\nSystem Exception Encountered: SystemException\n\n"
              "In Function: f()\nError Code: 12,345\n\nFailed.\n\n");
    Console::settings().colors_enabled = true;
    EXPECT_EQ(printed(StdException("text")),
              "\x1b[01;31m\nException Encountered: StdException\n\ntext\n\n\x1b[01;37m");
}

}  // namespace
}  // namespace lumo
