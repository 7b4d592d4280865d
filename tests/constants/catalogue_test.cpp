#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "failures.h"
#include "lumo/multiply/multiply.h"
#include "pool_context.h"
#include "scratch.h"
#include "velmora/constants/constant.h"

using namespace velmora;

TEST(Catalogue, NamesAreUnique) {
    std::set<std::string> keys, names;
    for (const CatalogueEntry& row : catalogue()) {
        EXPECT_TRUE(keys.insert(row.key).second) << row.key;
        for (const char* name : row.command_names) EXPECT_TRUE(names.insert(name).second) << name;
        std::set<std::string> tokens;
        for (const AlgorithmEntry& algorithm : row.algorithms)
            EXPECT_TRUE(tokens.insert(algorithm.token).second) << algorithm.token;
    }
    EXPECT_EQ(keys.size(), 10u);
    EXPECT_TRUE(names.count("zeta(3)"));
    EXPECT_TRUE(names.count("brent"));
}

TEST(Catalogue, FindsWhatCanBeComputed) {
    EXPECT_STREQ(find_by_command_name("pi").key, "pi");
    EXPECT_EQ(&find_by_key("pi"), &find_by_command_name("pi"));
    for (const CatalogueEntry& row : catalogue()) {
        if (row.make) continue;
        EXPECT_THROW(find_by_key(row.key), lumo::InvalidParametersException) << row.key;
        for (const char* name : row.command_names)
            EXPECT_THROW(find_by_command_name(name), lumo::InvalidParametersException) << name;
    }
    EXPECT_THROW(find_by_command_name("PI"), lumo::InvalidParametersException);
}

TEST(Catalogue, AllAlgorithmsOfAConstantAgree) {
    constexpr upL_t p = 300;
    constexpr upL_t tds = 2;
    for (const CatalogueEntry& row : catalogue()) {
        if (!row.make) continue;
        std::vector<std::uint64_t> first;
        for (const AlgorithmEntry& algorithm : row.algorithms) {
            SCOPED_TRACE(std::string(row.key) + " by " + algorithm.token);
            const auto constant = make_constant(row);
            constant->set_algorithm(algorithm.token);
            const SizeEstimate sizes = constant->estimate(p, tds);
            EXPECT_EQ(sizes.working_bytes % 128, 0u);
            EXPECT_EQ(constant->terms(p) == 0, algorithm.token == std::string_view("newton"));
            lumo::Multiply::release_tables();  // those of longer products would hide a plan's mistake
            lumo::Multiply::ensure_tables(sizes.max_product_bits);
            const lumo::testing::Scratch memory(sizes.working_bytes);
            lumo::NullStatusNode status;
            auto value =
                constant->compute({p, {tds, &lumo::process_parallelizer()}, memory.buffer(), status});
            // The value as displayed: its first digits.
            lumo::spL_t e;
            const double head = value.get_double(e) * std::pow(2.0, 64 * static_cast<double>(e));
            if (*row.value != '\0') {
                EXPECT_NEAR(head, std::stod(row.value), 1e-6);
            }
            // The lowest of the words that are true may be off by a few units.
            value.truncate(p - 2);
            ASSERT_GE(value.L, p - 2);
            std::vector<std::uint64_t> words(value.T + value.L - (p - 2), value.T + value.L);
            if (first.empty()) first = words;
            EXPECT_EQ(words, first);
        }
    }
}

TEST(Catalogue, AlgorithmsAreChosenByToken) {
    const auto pi = make_constant(find_by_key("pi"));
    EXPECT_STREQ(pi->algorithm().token, "chudnovsky");
    for (const AlgorithmEntry& algorithm : pi->entry().algorithms) {
        pi->set_algorithm(algorithm.token);
        EXPECT_EQ(&pi->algorithm(), &algorithm);
    }
    EXPECT_EQ(lumo::message_of([&] { pi->set_algorithm("Chudnovsky"); }), "Invalid Key: Chudnovsky");
    EXPECT_STREQ(pi->algorithm().token, "ramanujan-reduced");
}

TEST(Catalogue, ReducedMemoryTakesLess) {
    const auto pi = make_constant(find_by_key("pi"));
    const auto bytes = [&](const char* token) {
        pi->set_algorithm(token);
        return pi->estimate(60000, 2).working_bytes;
    };
    EXPECT_LT(bytes("chudnovsky-reduced"), bytes("chudnovsky"));
    EXPECT_LT(bytes("ramanujan-reduced"), bytes("ramanujan"));
}
