#include "velmora/constants/gamma.h"

#include "failures.h"
#include "series_runs.h"
#include "value_run.h"
#include "velmora/constants/series/series_gamma_k.h"

namespace velmora::testing {
namespace {

template <typename T>
class Gamma : public ::testing::Test {};
TYPED_TEST_SUITE(Gamma, WordTypes);

TYPED_TEST(Gamma, ThirdSumIsExact) {
    // The sum is used up to 2n terms.
    for (const auto& [k, end] :
         {std::pair(2u, upL_t(9)), {10u, upL_t(2049)}, {31u, upL_t(1400)}, {40u, upL_t(1400)}}) {
        const SeriesGammaK<TypeParam> series(k);
        const auto expected = lumo::testing::exact_sum(series, 1, end);
        const lumo::testing::BlockRun<TypeParam> run(series, {1, end}, 2, 1, true,
                                                     lumo::process_parallelizer());
        EXPECT_TRUE(run.gives(expected)) << k;
    }
}

TYPED_TEST(Gamma, BothFormsAtAllPrecisions) {
    for (const upL_t p : PRECISIONS) {
        const Exact exact(lumo::WordTraits<TypeParam>::bits * (p + 8),
                          [](mpfr_t x) { mpfr_const_euler(x, MPFR_RNDN); });
        for (const auto form : {BrentMcMillanForm::refined, BrentMcMillanForm::original}) {
            const upL_t tds = 1 + p % 4;
            const BrentMcMillan_BigFloatR<TypeParam> plan(form, p, tds);
            EXPECT_TRUE(ValueRun<TypeParam>(plan, tds).equals(exact, p)) << p;
        }
    }
}

/// Notes what is told between the large phases.
class FinishingTexts final : public lumo::NullStatusNode {
 public:
    void push_node(lumo::ColorString text) override {
        if (text[0].text.starts_with("Fin")) list.push_back(text[0].text);
    }
    std::vector<std::string> list;
};

TEST(GammaStatus, EachFormTellsItsOwnProducts) {
    const auto texts = [](BrentMcMillanForm form) {
        const BrentMcMillan_BigFloatR<std::uint64_t> plan(form, 30, 1);
        lumo::Multiply::ensure_tables(64 * plan.max_product_words());
        const lumo::testing::Scratch memory(plan.total_bytes());
        FinishingTexts status;
        plan.run(memory.context(), status);
        std::erase(status.list, "Finishing Series...  ");
        return status.list;
    };
    std::vector<std::string> expected = {
        "Finalizing: Q^2: ", "Finalizing: R + S: ", "Finalizing: Q * (R + S): "};
    EXPECT_EQ(texts(BrentMcMillanForm::original), expected);
    expected.insert(expected.end(), {"Finishing: P + Q: ", "Finishing: Q * 2^(k+2): "});
    EXPECT_EQ(texts(BrentMcMillanForm::refined), expected);
}

TEST(GammaThreads, WordsDoNotDependOnTheDecomposition) {
    const BrentMcMillan_BigFloatR<std::uint64_t> serial(BrentMcMillanForm::refined, 2500, 1);
    const ValueRun<std::uint64_t> expected(serial, 1);
    for (const upL_t tds : {2, 5, 16}) {
        const BrentMcMillan_BigFloatR<std::uint64_t> plan(BrentMcMillanForm::refined, 2500, tds);
        EXPECT_TRUE(ValueRun<std::uint64_t>(plan, tds).has_words_of(expected)) << tds;
    }
}

TEST(GammaThreads, MoreTasksThanPlannedAreRefused) {
    const BrentMcMillan_BigFloatR<std::uint64_t> plan(BrentMcMillanForm::refined, 100, 1);
    EXPECT_EQ(lumo::message_of([&] { ValueRun<std::uint64_t>(plan, 2); }),
              "Attempted to run with a larger tds than the plan supports.");
}

TEST(GammaFaults, AFlippedBitEndsTheComputation) {
    using Parts = lumo::PartsAB<std::uint64_t>;
    using Flip = FlipOf<lumo::ObserverAB<std::uint64_t>, Parts>;
    // Just below a power of two in n, where the third sum is longest.
    const BrentMcMillan_BigFloatR<std::uint64_t> plan(BrentMcMillanForm::refined, 2900, 1);
    for (const bool in_sum : {false, true}) {
        for (const auto part : {&Parts::T, &Parts::V, &Parts::C, &Parts::D}) {
            if (in_sum && part == &Parts::C) continue;
            Flip fault(part, in_sum, 1);
            EXPECT_THROW(ValueRun<std::uint64_t>(plan, 1, &fault), lumo::BSRModularCheckFailedException);
        }
    }
    lumo::ObserverAB<std::uint64_t>* const none = nullptr;
    expect_faults_are_caught([&](auto* fault) {
        ValueRun<std::uint64_t>(plan, 1, none, static_cast<lumo::SeriesObserver<std::uint64_t>*>(fault));
    });
}

}  // namespace
}  // namespace velmora::testing
