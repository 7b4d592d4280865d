#include <gtest/gtest.h>

#include <set>

#include "lumo/foundation/errors/exceptions.h"
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

TEST(Catalogue, AlgorithmsAreChosenByToken) {
    const auto pi = make_constant(find_by_key("pi"));
    EXPECT_STREQ(pi->algorithm().token, "chudnovsky");
    for (const AlgorithmEntry& algorithm : pi->entry().algorithms) {
        pi->set_algorithm(algorithm.token);
        EXPECT_EQ(&pi->algorithm(), &algorithm);
    }
    try {
        pi->set_algorithm("Chudnovsky");
        ADD_FAILURE();
    } catch (const lumo::KeyNotFoundException& failure) {
        EXPECT_EQ(failure.message, "Invalid Key: Chudnovsky");
    }
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
