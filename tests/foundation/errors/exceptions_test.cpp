#include "lumo/foundation/errors/exceptions.h"

#include <gtest/gtest.h>

#include <set>
#include <thread>

#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/registration.h"

namespace velmora::StressTest {
class StressTestFailedException final
    : public lumo::ExceptionOf<StressTestFailedException, lumo::StringException> {
 public:
    static constexpr const char* TYPENAME = "StressTestFailedException";
    using ExceptionOf::ExceptionOf;
};
const lumo::ExceptionRegistration<StressTestFailedException> registration;
}  // namespace velmora::StressTest

namespace lumo {
namespace {

using Pointer = std::unique_ptr<Exception>;

template <typename T, typename... Arguments>
Pointer make(Arguments&&... arguments) {
    return std::make_unique<T>(std::forward<Arguments>(arguments)...);
}

/// One object of each class that the registry holds.
std::vector<Pointer> samples() {
    std::vector<Pointer> all;
    all.push_back(make<StdException>("text"));
    all.push_back(make<StringException>("f()", "text"));
    all.push_back(make<SystemException>("f()", "text", -22));
    all.push_back(make<ParseException>("f()", "text"));
    all.push_back(make<EndOfStreamException>("f()", "text"));
    all.push_back(make<KeyNotFoundException>("f()", "text"));
    all.push_back(make<InvalidParametersException>("f()", "text"));
    all.push_back(make<BufferTooSmallException>("f()", 100, 2000));
    all.push_back(make<ArithmeticException>("f()", "text"));
    all.push_back(make<ExponentOverflowException>("f()", "text"));
    all.push_back(make<LimitExceededException>("f()", "text", 1000, 2000));
    all.push_back(make<AlgorithmFailedException>("f()", "text"));
    all.push_back(make<ResourceAcquisitionFailedException>("f()", "text"));
    all.push_back(make<MemoryAllocationFailedException>("f()", "text", "mmap", 4096));
    all.push_back(make<FileIO::FileException>("f()", "text", "/tmp/x", -2));
    all.push_back(make<FarMemoryException>("f()", "text"));
    all.push_back(make<FarMemoryOutOfBoundsException>("f()", 1, 2, 3));
    all.push_back(make<DiskRaid0::Raid0Exception>("f()", "text"));
    all.push_back(make<R03::Raid03Exception>("f()", "text"));
    all.push_back(make<InvalidTransformException>("f()", "text"));
    all.push_back(make<TransformTooSmallException>("f()", "text"));
    all.push_back(make<ConvolutionTooSmallException>("f()", "text", 10, 20));
    all.push_back(make<ConvolutionFailedException>("f()", "text"));
    all.push_back(make<UnsupportedValueException>("f()", "text"));
    all.push_back(make<UnsupportedZeroException>("f()", "text"));
    all.push_back(make<UnsupportedNegativeException>("f()", "text"));
    all.push_back(make<BSRModularCheckFailedException>(
        "f()", "text", std::vector<BSRModularCheckFailedException::HashPair>{{1, 2}, {3000, 4000}}));
    all.push_back(make<DigitViewer2::InconsistentMetaData>("f()", "text", "/tmp/x", 5));
    all.push_back(make<velmora::StressTest::StressTestFailedException>("f()", "text"));
    return all;
}

std::string bytes_of(const Exception& e) {
    std::string bytes;
    e.serialize(bytes);
    return bytes;
}

std::string printed(const Exception& e) {
    testing::internal::CaptureStdout();
    e.print();
    return testing::internal::GetCapturedStdout();
}

class Exceptions : public testing::Test {
 protected:
    void SetUp() override { Console::settings().colors_enabled = false; }
    void TearDown() override { Console::settings() = Console::Settings(); }
};

TEST_F(Exceptions, EveryClassSurvivesTheRoundTrip) {
    std::set<std::string> names;
    for (const Pointer& sample : samples()) {
        const std::string name = sample->get_typename();
        SCOPED_TRACE(name);
        EXPECT_TRUE(names.insert(name).second);
        const std::string bytes = bytes_of(*sample);
        const Pointer rebuilt = rebuild_exception(name, bytes);
        EXPECT_EQ(typeid(*rebuilt), typeid(*sample));
        EXPECT_EQ(bytes_of(*rebuilt), bytes);
        EXPECT_EQ(printed(*rebuilt), printed(*sample));

        // Rethrown, caught by the root and moved to the heap, it is still of the same type and content.
        Pointer moved;
        try {
            rebuilt->rethrow();
        } catch (Exception& e) {
            moved = e.move_to_heap();
        }
        EXPECT_EQ(typeid(*moved), typeid(*sample));
        EXPECT_EQ(bytes_of(*moved), bytes);
        EXPECT_EQ(bytes_of(*rebuilt), bytes);  // rethrow() copies
    }
    EXPECT_EQ(names.size(), 29u);
}

TEST_F(Exceptions, BytesThatEndEarlyAreRefused) {
    for (const Pointer& sample : samples()) {
        const std::string bytes = bytes_of(*sample);
        for (std::size_t length = 0; length < bytes.size(); length++) {
            try {
                rebuild_exception(sample->get_typename(), std::string_view(bytes).substr(0, length));
                ADD_FAILURE() << sample->get_typename() << " from " << length << " bytes";
            } catch (const ParseException& e) {
                ASSERT_EQ(e.message, "Unexpected end of string.");
            }
        }
    }
    std::string huge_length(8, '\xff');
    EXPECT_THROW(rebuild_exception("StdException", huge_length), ParseException);
    EXPECT_THROW(rebuild_exception("NoSuchException", ""), KeyNotFoundException);
}

TEST_F(Exceptions, SerialFormIsTheFieldsInOrder) {
    const std::string expected("\3\0\0\0\0\0\0\0f()\2\0\0\0\0\0\0\0no\1\0\0\0\0\0\0\0p\xfe\xff\xff\xff", 34);
    EXPECT_EQ(bytes_of(FileIO::FileException("f()", "no", "p", -2)), expected);
}

TEST_F(Exceptions, DerivedTypeArrivesOnTheJoiningThread) {
    Pointer result;
    std::thread worker([&] {
        try {
            throw velmora::StressTest::StressTestFailedException("", "Stress test failed with 2");
        } catch (...) {
            result = capture_current_exception();
        }
    });
    worker.join();
    try {
        result->rethrow();
        FAIL();
    } catch (const velmora::StressTest::StressTestFailedException& e) {
        EXPECT_EQ(e.message, "Stress test failed with 2");
    }
}

TEST_F(Exceptions, ForeignExceptionsAreCaptured) {
    const auto capture = [](auto&& thrown) {
        try {
            throw thrown;
        } catch (...) {
            return capture_current_exception();
        }
    };
    const Pointer standard = capture(std::runtime_error("out of luck"));
    EXPECT_EQ(dynamic_cast<StdException&>(*standard).message, "out of luck");
    EXPECT_STREQ(capture(17)->get_typename(), "UnknownException");
}

TEST_F(Exceptions, StringLayout) {
    EXPECT_EQ(printed(ParseException("parse()", "Bad.")),
              "\nException Encountered: ParseException\n\nIn Function: parse()\n\nBad.\n\n");
    EXPECT_EQ(printed(ParseException("", "Bad.")), "\nException Encountered: ParseException\n\nBad.\n\n");
    EXPECT_EQ(printed(ExponentOverflowException("f()", "Too big.")),
              "\nException Encountered: ExponentOverflowException\n\n"
              "Floating-point exponent has exceeded internal limit:\nIn Function: f()\n\nToo big.\n\n");
    EXPECT_EQ(printed(R03::Raid03Exception("", "Two drives lost.")),
              "\nRaid03 Exception Encountered: Raid03Exception\n\nTwo drives lost.\n\n");
}

TEST_F(Exceptions, LayoutsWithFields) {
    EXPECT_EQ(printed(SystemException("f()", "Failed.", 12345)),
              "\nSystem Exception Encountered: SystemException\n\n"
              "In Function: f()\nError Code: 12,345\n\nFailed.\n\n");
    EXPECT_EQ(printed(FileIO::FileException("", "Failed.", "a/b", 2)),
              "\nException Encountered: FileException\n\nError Code: 2\nPath: a/b\n\nFailed.\n\n");
    EXPECT_EQ(
        printed(LimitExceededException("f()", "Too many.", LimitExceededException::UNKNOWN_LIMIT, 5000)),
        "\nException Encountered: LimitExceededException\n\nLimit Exceeded\n    Function: f()\n"
        "Too many.\n    Limit: Unknown\n    Attempted: 5,000\n\n");
    EXPECT_EQ(printed(BufferTooSmallException("f()", 1000, 2000)),
              "\nException Encountered: BufferTooSmallException\n\nBuffer is too small:\n"
              "    Function: f()\n    Buffer Size: 1,000\n    Required Size: 2,000\n\n");
    EXPECT_EQ(printed(BSRModularCheckFailedException("", "Mismatch.", {{1000, 7}})),
              "\nException Encountered: BSRModularCheckFailedException\n\nMismatch.\n"
              "    hash[0] = 1,000 != 7\n\n");
}

TEST_F(Exceptions, LayoutIsRedAndEndsWhite) {
    Console::settings().colors_enabled = true;
    EXPECT_EQ(printed(StdException("text")),
              "\x1b[01;31m\nException Encountered: StdException\n\ntext\n\n\x1b[01;37m");
}

TEST_F(Exceptions, CapacityIsChecked) {
    EXPECT_NO_THROW(require_capacity("f()", 10, 10));
    try {
        require_capacity("f()", 9, 10);
        FAIL();
    } catch (const BufferTooSmallException& e) {
        EXPECT_EQ(e.function, "f()");
        EXPECT_EQ(e.buffer_size, 9u);
        EXPECT_EQ(e.required_size, 10u);
    }
}

}  // namespace
}  // namespace lumo
