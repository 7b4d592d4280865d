#include "lumo/foundation/digest/sha2.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "lumo/foundation/digest/sha2_blocks.h"

namespace lumo {
namespace {

constexpr const char* TWO_BLOCKS_256 = "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq";
constexpr const char* TWO_BLOCKS_512 =
    "abcdefghbcdefghicdefghijdefghijkefghijklfghijklmghijklmnhijklmnoijklmnopjklmnopqklmnopqrlmnopqrsmnopqrst"
    "nopqrstu";

TEST(Sha2, PublishedVectors) {
    const std::string million(1000000, 'a');
    const std::pair<std::string_view, const char*> of_256_bits[] = {
        {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {TWO_BLOCKS_256, "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
        {million, "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
    };
    for (const auto& [text, digest] : of_256_bits) EXPECT_EQ(to_hex(Sha256::digest(text)), digest);
    const std::pair<std::string_view, const char*> of_512_bits[] = {
        {"",
         "cf83e1357eefb8bdf1542850d66d8007d620e4050b5715dc83f4a921d36ce9ce"
         "47d0d13c5d85f2b0ff8318d2877eec2f63b931bd47417a81a538327af927da3e"},
        {"abc",
         "ddaf35a193617abacc417349ae20413112e6fa4e89a97ea20a9eeee64b55d39a"
         "2192992a274fc1a836ba3c23a3feebbd454d4423643ce80e2a9ac94fa54ca49f"},
        {TWO_BLOCKS_512,
         "8e959b75dae313da8cf4f72814fc143f8f7779c6eb9f7fa17299aeadb6889018"
         "501d289e4900f7e4331b99dec4b5433ac7d329eeb6dd26545e96e55b874be909"},
        {million,
         "e718483d0ce769644e2e42c7bc15b4638e1f98b13b2044285632a803afa973eb"
         "de0ff244877ea60a4cb0432ce577c31beb009c5c2c49aa2e4eadb217ad8cc09b"},
    };
    for (const auto& [text, digest] : of_512_bits) EXPECT_EQ(to_hex(Sha512::digest(text)), digest);
}

template <typename T>
class Sha2Pieces : public testing::Test {};
using Widths = testing::Types<std::uint32_t, std::uint64_t>;
TYPED_TEST_SUITE(Sha2Pieces, Widths);

TYPED_TEST(Sha2Pieces, CutsOfTheMessageDoNotMatter) {
    std::mt19937_64 random(20240117);
    for (std::size_t length = 0; length < 300; length++) {
        std::string message(length, '\0');
        for (char& c : message) c = static_cast<char>(random());
        Sha2<TypeParam> hash;
        for (std::string_view rest = message; !rest.empty();) {
            const std::size_t piece = std::min<std::size_t>(rest.size(), random() % 140);
            hash.update(rest.substr(0, piece));
            rest.remove_prefix(piece);
        }
        const auto expected = Sha2<TypeParam>::digest(message);
        ASSERT_EQ(hash.final(), expected) << length;
        hash.update(message);  // final() left it as newly made
        ASSERT_EQ(hash.final(), expected) << length;
    }
}

TEST(Sha2, NativeAndPortableBlocksAgree) {
    if (!has_sha_instructions()) GTEST_SKIP() << "this processor has no SHA instructions";
    std::mt19937_64 random(7);
    std::vector<std::uint8_t> data(64 * 9 + 1);
    for (auto& byte : data) byte = static_cast<std::uint8_t>(random());
    for (std::size_t count = 0; count < 10; count++) {
        std::uint32_t native[8], portable[8];
        for (int i = 0; i < 8; i++) native[i] = portable[i] = static_cast<std::uint32_t>(random());
        const std::uint8_t* start = data.data() + (count < 9 ? 1 : 0);
        sha256_blocks_native(native, start, count);
        sha2_blocks_portable(portable, start, count);
        for (int i = 0; i < 8; i++) ASSERT_EQ(native[i], portable[i]) << count << " blocks";
    }
}

}  // namespace
}  // namespace lumo
