// Compressed digit files: what is written is what is read, in one file and in sets, and what is refused.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <random>

#include "console_talk.h"
#include "digit_values.h"
#include "digitviewer/files/incomplete_files.h"
#include "digitviewer/files/lmd/lmd_set_reader.h"
#include "digitviewer/files/lmd/lmd_set_writer.h"
#include "failures.h"
#include "lumo/foundation/console/console.h"
#include "lumo/foundation/errors/exceptions.h"
#include "lumo/foundation/parallel/pushpool.h"
#include "temp_folder.h"

namespace DigitViewer2 {
namespace {

using lumo::message_of;
using lumo::ParallelContext;
using testing::HasSubstr;
namespace fs = std::filesystem;

class Lmd : public testing::Test {
 protected:
    Lmd() { lumo::Console::settings().colors_enabled = false; }
    ~Lmd() override { IncompleteFiles::clear(); }

    std::string path(const std::string& name) const { return folder / name; }
    std::string write_file(const std::string& bytes, const std::string& name = "x.lmd") const {
        folder.write(name, bytes);
        return path(name);
    }
    /// Writes the values as a set; returns the path of its first file.
    std::string write_set(const std::string& values, upL_t radix, upL_t block, upL_t total) const {
        BasicLmdSetWriter writer(path("n"), "3.1", radix, block, total);
        writer.write({}, values.data(), 0, values.size());
        writer.close();
        return writer.path();
    }
    static std::string header(const std::string& version, const std::string& base, const std::string& total,
                              const std::string& block, const std::string& id) {
        std::string text = "#Compressed Digit File\r\n\r\n";
        if (!version.empty()) text += "FileVersion:\t" + version + "\r\n\r\n";
        return text + "Base:\t" + base + "\r\n\r\nFirstDigits:\t3.14\r\n\r\nTotalDigits:\t" + total +
               "\r\n\r\nBlocksize:\t" + block + "\r\n\r\nBlockID:\t" + id + "\r\n\r\nEndHeader\r\n\r\n" +
               std::string(1, '\0');
    }

    const lumo::TempFolder folder;
};

TEST_F(Lmd, LayoutByteForByte) {
    const std::string values = {1, 4, 1, 5, 9, 2, 6, 5, 3, 5, 8, 9, 7, 9, 3, 2, 3, 8, 4, 6};  // 20: two words
    for (const upL_t total : {upL_t(20), upL_t(0)}) {
        write_set(values, 10, 0, total);
        const std::string expected =
            "#Compressed Digit "
            "File\r\n\r\nFileVersion:\t1.1.0\r\n\r\nBase:\t10\r\n\r\nFirstDigits:\t3.1\r\n\r\n"
            "TotalDigits:\t00000000000000000020\r\n\r\nBlocksize:\t0\r\n\r\nBlockID:"
            "\t0\r\n\r\nEndHeader\r\n\r\n";
        std::string bytes = expected + '\0';
        for (const std::uint64_t word : {1415926535897932384u, 6000000000000000000u})
            bytes.append(reinterpret_cast<const char*>(&word), 8);
        EXPECT_EQ(folder.contents("n.lmd"), bytes) << total;
    }
    write_set({15, 0, 10}, 16, 0, 3);
    EXPECT_TRUE(folder.contents("n.lmd").ends_with(std::string("\0\0\0\0\0\0\xa0\xf0", 8)));
}

TEST_F(Lmd, RoundTripsWhateverTheBlocks) {
    const auto pool = lumo::make_pushpool(3);
    const ParallelContext parallel{8, pool.get()};
    std::mt19937_64 random(20260214);
    for (const upL_t radix : {10, 16}) {
        for (const upL_t count : {1, 15, 16, 17, 18, 19, 20, 50, 1000, 1000000}) {
            const std::string values = random_values(count, radix, static_cast<unsigned>(count + radix));
            for (const upL_t block : {0, 50, 1000, 1000007}) {
                if (block == 50 && count > 1000) continue;
                const std::string first = write_set(values, radix, block, random() % 2 ? count : 0);
                BasicLmdSetReader reader(first);
                EXPECT_EQ(reader.radix(), radix);
                EXPECT_EQ(reader.first_digits(), "3.1");
                ASSERT_EQ(reader.digits(), count) << block;
                EXPECT_TRUE(reader.take_warnings().empty());
                std::string back(count, '\x7f');
                reader.read(parallel, back.data(), 0, count);
                EXPECT_TRUE(back == values) << radix << " " << count << " " << block;
                for (int i = 0; i < 50; i++) {
                    const upL_t from = random() % (count + 1), length = random() % (count - from + 1);
                    std::string piece(length, '\x7f');
                    reader.read(i % 2 ? parallel : ParallelContext(), piece.data(), static_cast<spL_t>(from),
                                length);
                    ASSERT_TRUE(piece == values.substr(from, length)) << from << " " << length;
                }
                EXPECT_EQ(message_of([&] { reader.read({}, back.data(), spL_t(count) - 1, 2); }),
                          "Incomplete read.");
                EXPECT_EQ(message_of([&] { reader.read({}, back.data(), -1, 1); }),
                          "Attempted to read in front of decimal place.");
                EXPECT_EQ(folder.names().size(), block == 0 ? 1 : (count - 1) / block + 1);
                folder.clear();
            }
        }
    }
}

TEST_F(Lmd, PiecesInAnyOrderAsValuesAndAsText) {
    const auto pool = lumo::make_pushpool(3);
    const ParallelContext parallel{8, pool.get()};
    std::mt19937 random(99);
    for (const upL_t radix : {10, 16}) {
        const upL_t count = 400001, block = 130003;
        const std::string values = random_values(count, radix, 5);
        std::string text = values;
        for (char& c : text) c = "0123456789abcdef"[static_cast<int>(c)];
        std::vector<std::pair<upL_t, upL_t>> pieces;
        for (upL_t at = 0; at < count;) {
            const upL_t length =
                std::min<upL_t>(count - at, random() % 3 ? random() % 40 + 1 : random() % 50000);
            pieces.emplace_back(at, length);
            at += length;
        }
        std::shuffle(pieces.begin(), pieces.end(), random);
        {
            BasicLmdSetWriter writer(path("n"), "", radix, block, count);
            for (const auto& [at, length] : pieces) {
                if (random() % 2)
                    writer.write(parallel, values.data() + at, at, length);
                else
                    writer.write_text(parallel, text.data() + at, at, length);
            }
            EXPECT_THAT(folder.names(),
                        testing::ElementsAre("n - 0.lmd", "n - 1.lmd", "n - 2.lmd", "n - 3.lmd"));
            writer.close();
        }
        BasicLmdSetReader reader(path("n - 2.lmd"));
        std::string back(count, '\x7f');
        reader.read(parallel, back.data(), 0, count);
        EXPECT_TRUE(back == values);
        // Runs of packed words lead through the same digits.
        upL_t at = 0;
        while (at < count) {
            const upL_t length = reader.open_run(at, count - at);
            ASSERT_EQ(length, std::min(block, count - at));
            std::uint64_t word;
            reader.read_run(&word, 1, 1);
            std::string digits(WordPacking::of(radix).digits_per_word, '\0');
            unpack_values(WordPacking::of(radix), digits.data(), &word, 1);
            EXPECT_EQ(digits, values.substr(at + digits.size(), digits.size()));
            at += length;
        }
        EXPECT_EQ(reader.open_run(3, 10), 0u);
        folder.clear();
    }
}

TEST_F(Lmd, FilesAreIncompleteUntilTheyAreFull) {
    const std::string values = random_values(850, 10, 1);
    {
        // Files that are finished are forgotten: these are more than are remembered. One at a time is open.
        BasicLmdSetWriter many(path("m"), "3.1", 10, 50, 850);
        const auto descriptors = [] { return std::distance(fs::directory_iterator("/proc/self/fd"), {}); };
        const auto before = descriptors();
        for (const auto& [from, length] : {std::pair<upL_t, upL_t>{0, 10}, {10, 40}}) {
            for (upL_t at = from; at < 850; at += 50) many.write({}, values.data() + at, at, length);
            EXPECT_LE(descriptors(), before + 1);
        }
        BasicLmdSetWriter backwards(path("n"), "3.1", 10, 100, 0);
        backwards.write({}, values.data() + 100, 100, 50);
        backwards.write({}, values.data(), 0, 100);
        backwards.close();
        EXPECT_EQ(BasicLmdSetReader(path("n - 1.lmd")).digits(), 150u);
    }
    folder.clear();
    const std::string printed = lumo::printed_by([&] {
        BasicLmdSetWriter writer(path("n"), "3.1", 10, 100, 150);
        writer.write({}, values.data(), 0, 120);
        EXPECT_THAT(folder.names(), testing::ElementsAre("n - 0.lmd", "n - 1 (incomplete).lmd"));
        EXPECT_THAT(IncompleteFiles::on_disk(), testing::ElementsAre(path("n - 1 (incomplete).lmd")));
        EXPECT_EQ(message_of([&] { writer.write({}, "\12", 120, 1); }), "Invalid Digit");
        EXPECT_EQ(message_of([&] { writer.write({}, values.data(), 150, 1); }), "File ID is out of range.");
        writer.close();
    });
    EXPECT_THAT(printed, HasSubstr("Warning, closing incomplete file\n" + path("n - 1 (incomplete).lmd") +
                                   "\nFiles of this set that are finished: 1\n"));
    EXPECT_EQ(message_of([&] { BasicLmdSetReader(path("n - 1 (incomplete).lmd")); }),
              "This file is incomplete.");
    BasicLmdSetReader reader(path("n - 0.lmd"));
    std::string back(150, '\0');
    reader.read({}, back.data(), 0, 100);
    EXPECT_EQ(message_of([&] { reader.read({}, back.data(), 99, 2); }),
              "The following needed files are missing or inaccessible:\n    n - 1.lmd");

    EXPECT_EQ(message_of([&] { BasicLmdSetWriter(path("m"), "3.", 10, 49, 100); }),
              "Invalid Digits per File");
    EXPECT_EQ(message_of([&] { BasicLmdSetWriter(path("m"), "3.", 12, 0, 100); }), "Unsupported Radix");
    EXPECT_EQ(message_of([&] { BasicLmdSetWriter(path("m"), "3\n.", 10, 0, 100); }), "Invalid first digits.");
}

TEST_F(Lmd, HeadersThatAreRefused) {
    const std::string words(800, '\0');
    std::string unterminated = header("1.1.0", "10", "100", "50", "0");
    unterminated.back() = 'x';
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"no version", header("", "10", "100", "50", "0"), "No version # found."},
        {"nothing", "", "No version # found."},
        {"magic only", "#Compressed Digit File\r\n\r\n", "No version # found."},
        {"later", header("2.0.0", "10", "100", "50", "0"),
         "This .lmd file is of a later format version.\nThis version of the digit viewer is unable to view "
         "this "
         "file."},
        {"block 49", header("1.1.0", "10", "100", "49", "0"), "Invalid Digits per File"},
        {"radix", header("1.1.0", "8", "100", "50", "0"), "Unsupported Radix"},
        {"range", header("1.1.0", "10", "100", "50", "2"),
         "This file is out of range.\nStart:        100\nEnd:          150\nTotal Digits: 100"},
        {"overflow", header("1.1.0", "10", "100", "4000000000000000000", "5"),
         "This file is out of range.\nStart:        500\nEnd:          4,000,000,000,000,000,500\n"
         "Total Digits: 100"},
        {"overflow, no total", header("1.1.0", "10", "0", "4000000000000000000", "5"),
         "This file is out of range.\nStart:        18,446,744,073,709,551,615\nEnd:          "
         "18,446,744,073,709,551,615\nTotal Digits: 0"},
        {"no number", header("1.1.0", "10", "1e9", "50", "0"), "Invalid Header: TotalDigits:\t1e9"},
        {"too large", header("1.1.0", "10", "0", "99999999999999999999", "0"),
         "Invalid Header: Blocksize:\t99999999999999999999"},
        {"no end", header("1.1.0", "10", "100", "50", "0").substr(0, 130), "Incomplete Header"},
        {"no terminator", unterminated, "Incomplete Header"},
        {"endless", "#\nFileVersion:\t1.1.0\n" + std::string(100000, '\n'), "Incomplete Header"},
    };
    for (const auto& [what, bytes, message] : cases)
        EXPECT_EQ(message_of([&] { BasicLmdSetReader(write_file(bytes + words)); }), message) << what;
    EXPECT_EQ(message_of([&] { BasicLmdSetReader(path(".lmd")); }), "File name is too short.");
    EXPECT_EQ(message_of([&] { BasicLmdSetReader(path("digits.txt")); }), "Invalid Extension");
}

TEST_F(Lmd, HeadersThatAreAccepted) {
    const std::string words(800, '\0');
    EXPECT_EQ(BasicLmdSetReader(write_file(header("1.0.0", "16", "100", "50", "1") + words)).radix(), 16u);
    std::string lf = header("1.1.0", "10", "100", "50", "0");
    std::erase(lf, '\r');
    lf.insert(lf.find("Base"), "Comment:\tsome text\n\n\n\n# more\n");
    EXPECT_EQ(BasicLmdSetReader(write_file(lf + words)).digits(), 100u);
    // A total that is not known: no check of the range.
    BasicLmdSetReader unknown(write_file(header("1.1.0", "10", "0", "50", "7") + words));
    EXPECT_EQ(unknown.digits(), BasicDigitReader::UNKNOWN_DIGITS);
    char out[50];
    unknown.read({}, out, 350, 50);
    EXPECT_EQ(unknown.missing_files(0, 5000).size(), BasicLmdSetReader::MOST_NAMES);
    // Of a single file it is as many as the file holds.
    BasicLmdFileReader single(write_file(header("1.1.0", "10", "0", "0", "0") + words));
    EXPECT_EQ(single.digits(), 1900u);
    EXPECT_THAT(single.description(), HasSubstr("words_in_this_file:  100"));
    // A number in the name of a single file means nothing; a block as long as the total makes one too.
    EXPECT_EQ(
        BasicLmdSetReader(write_file(header("1.1.0", "10", "90", "90", "0") + words, "sqrt3.lmd")).digits(),
        90u);
    EXPECT_EQ(
        BasicLmdSetReader(write_file(header("1.1.0", "10", "90", "0", "0") + words, "sqrt2.lmd")).digits(),
        90u);
}

TEST_F(Lmd, PayloadsThatAreRefused) {
    std::uint64_t word = 0x8ac7230489e80000;
    const auto bytes = [&] { return std::string(reinterpret_cast<const char*>(&word), 8); };
    const std::string head = header("1.1.0", "10", "40", "0", "0");
    char out[40];
    BasicLmdSetReader bad(write_file(head + std::string(8, '\0') + bytes() + std::string(8, '\0')));
    bad.read({}, out, 0, 19);
    EXPECT_EQ(message_of([&] { bad.read({}, out, 0, 40); }), "Invalid Word");
    EXPECT_EQ(message_of([&] { bad.read({}, out, 22, 3); }), "Invalid Word");
    word--;
    BasicLmdSetReader good(write_file(head + std::string(8, '\0') + bytes() + std::string(8, '\0')));
    good.read({}, out, 0, 40);
    EXPECT_EQ(std::string(out + 19, 19), std::string(19, 9));
    BasicLmdFileReader file(path("x.lmd"));
    EXPECT_EQ(message_of([&] { file.read({}, out, 30, 11); }), "Incomplete read.")
        << "of zeros behind the end";
    BasicLmdSetReader cut(write_file(head + std::string(8, '\0') + std::string(7, '\0')));
    cut.read({}, out, 0, 19);
    EXPECT_EQ(message_of([&] { cut.read({}, out, 0, 20); }), "Incomplete read.");
}

TEST_F(Lmd, SetsWithForeignAndMissingFiles) {
    const std::string values = random_values(500, 10, 4);
    write_set(values, 10, 100, 500);
    fs::create_directories(folder / "second");
    fs::rename(path("n - 3.lmd"), path("second/n - 3.lmd"));
    write_file(header("1.1.0", "10", "500", "100", "2"), "n - 2.lmd");   // other first digits
    write_file(header("1.1.0", "10", "500", "100", "7"), "n - 17.lmd");  // not the number of its name
    write_file("garbage", "n - 5.lmd");
    BasicLmdSetReader reader(path("n - 1.lmd"));
    EXPECT_THAT(reader.take_warnings(),
                testing::UnorderedElementsAre("Inconsistent Metadata: \"n - 2.lmd\"",
                                              "Inconsistent Metadata: \"n - 17.lmd\"",
                                              "Inconsistent Metadata: \"n - 5.lmd\""));
    EXPECT_THAT(reader.missing_files(0, 500), testing::ElementsAre("n - 2.lmd", "n - 3.lmd"));
    reader.add_search_directory(path("second"));
    EXPECT_THAT(reader.missing_files(0, 500), testing::ElementsAre("n - 2.lmd"));
    std::string back(500, '\0');
    reader.read({}, back.data(), 300, 200);
    EXPECT_EQ(back.substr(0, 200), values.substr(300));
    fs::copy_file(path("n - 4.lmd"), path("n - 3.lmd"));
    EXPECT_EQ(message_of([&] { BasicLmdSetReader(path("n - 3.lmd")); }),
              "Inconsistent Metadata: \"n - 3.lmd\"");
    // A file that is exchanged after the set was opened.
    fs::copy_file(path("n - 2.lmd"), path("n - 4.lmd"), fs::copy_options::overwrite_existing);
    reader.read({}, back.data(), 0, 100);
    EXPECT_EQ(message_of([&] { reader.read({}, back.data(), 400, 100); }),
              "Inconsistent Metadata: \"n - 4.lmd\"");
}

TEST_F(Lmd, APipeIsNotWaitedFor) {
    write_set(random_values(100, 10, 1), 10, 50, 100);
    ASSERT_EQ(::mkfifo(path("n - 2.lmd").c_str(), 0600), 0);
    BasicLmdSetReader reader(path("n - 0.lmd"));
    EXPECT_THAT(reader.take_warnings(), testing::ElementsAre("Inconsistent Metadata: \"n - 2.lmd\""));
    EXPECT_EQ(message_of([&] { BasicLmdSetReader(path("n - 2.lmd")); }), "Unable to read file.");
}

TEST_F(Lmd, SystemErrorsNamePathAndErrno) {
    const lumo::Thrown missing = lumo::thrown_by([&] { BasicLmdSetReader(path("missing.lmd")); });
    EXPECT_EQ(missing.path, path("missing.lmd"));
    EXPECT_EQ(missing.error_code, ENOENT);
    fs::create_symlink("/dev/full", path("n (incomplete).lmd"));
    BasicLmdSetWriter writer(path("n"), "3.", 10, 0, 100);
    const lumo::Thrown full =
        lumo::thrown_by([&] { writer.write({}, std::string(100, '\1').data(), 0, 100); });
    EXPECT_EQ(full.path, path("n (incomplete).lmd"));
    EXPECT_EQ(full.error_code, ENOSPC);
    BasicLmdSetWriter second(path("m"), "3.", 10, 50, 100);
    second.write({}, std::string(50, '\1').data(), 0, 50);
    fs::remove_all(folder.path);
    EXPECT_EQ(message_of([&] { second.write({}, std::string(50, '\1').data(), 50, 50); }),
              "Unable to create file.");
    EXPECT_TRUE(IncompleteFiles::on_disk().empty());
}

// Ten thousand files with a few bytes changed, cut or added, many within the header: each is refused by an
// exception of the family or read to its end.
TEST_F(Lmd, MutatedFilesAreReadOrRefused) {
    std::mt19937 random(4711);
    const std::string values = random_values(400, 10, 6);
    write_set(values, 10, 0, 400);
    const std::string original = folder.contents("n.lmd");
    const upL_t head = original.find("EndHeader") + 14;
    int read = 0, refused = 0;
    for (int i = 0; i < 10000; i++) {
        std::string bytes = original;
        const int changes = static_cast<int>(random() % 4) + 1;
        for (int j = 0; j < changes && !bytes.empty(); j++) {
            const upL_t at = random() % (random() % 8 ? std::min(head, bytes.size()) : bytes.size());
            switch (random() % 5) {
                case 0:
                    bytes.erase(at, random() % 30);
                    break;
                case 1:
                    bytes.insert(at, random() % 30, static_cast<char>(random()));
                    break;
                case 2:
                    bytes[at] = static_cast<char>('0' + random() % 10);
                    break;
                default:
                    bytes[at] = static_cast<char>(random());
            }
        }
        write_file(bytes, "m.lmd");
        try {
            BasicLmdSetReader reader(path("m.lmd"));
            std::array<char, 1000> out;
            const upL_t end = std::min<upL_t>(reader.digits(), 2000);
            for (upL_t at = 0; at < end; at += 333)
                reader.read({}, out.data(), static_cast<spL_t>(at), std::min<upL_t>(333, end - at));
            read++;
        } catch (const lumo::Exception&) {
            refused++;
        }
    }
    EXPECT_EQ(read + refused, 10000);
    EXPECT_GT(refused, 1000);
    EXPECT_GT(read, 1000);
}

}  // namespace
}  // namespace DigitViewer2
