/// Runs a plan in buffers of exactly the planned sizes, and measures results against exact integers.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <string>

#include "allocation_count.h"
#include "gmp_words.h"
#include "lumo/foundation/status/status_node.h"
#include "lumo/multiply/kernels/kernel_select.h"
#include "lumo/multiply/multiply.h"
#include "lumo/numbers/objects/big_float.h"
#include "word_arrays.h"

namespace lumo::testing {

template <typename wtype>
constexpr int W = WordTraits<wtype>::bits;

/// A number that owns its words.
template <typename wtype>
struct Owned {
    std::vector<wtype> words;
    BigFloat<wtype> number;
    Owned(std::vector<wtype> w, spL_t exp, bool positive = true) : words(std::move(w)) {
        number = BigFloat<wtype>(words.data(), words.size());
        number.L = words.size();
        while (number.L > 0 && words[number.L - 1] == 0) number.L--;
        if (number.L != 0) number.exp = exp;
        number.positive = number.L == 0 || positive;
    }
    Owned(const Owned&) = delete;
};

/// Random shape, length and sign-free; the top word is small in half of the cases, where precision is
/// tightest.
template <typename wtype>
std::vector<wtype> any_words(std::mt19937_64& random, upL_t max_length) {
    const upL_t length = 1 + random() % max_length;
    std::vector<wtype> words = shaped_words<wtype>(ALL_SHAPES[random() % 5], length, random);
    switch (random() % 4) {
        case 0:
            words.back() = 1;
            break;
        case 1:
            words.back() = static_cast<wtype>(-1);
            break;
        default:
            words.back() |= 1;
    }
    return words;
}

/// Notes the tags of steps, and lets a test reach into a run between them. Allocates nothing while it runs.
class StepStatus final : public StatusNode {
 public:
    StepStatus() { tags.reserve(4096); }
    StatusTree get_tree() const override { return {}; }
    std::unique_ptr<StatusNode> make_node() override { return nullptr; }
    std::unique_ptr<StatusIteration> make_iteration(upL_t) override { return nullptr; }
    upL_t get_completed() const override { return 0; }
    void push_node(ColorString) override {
        depth++;
        allowance++;
    }
    void pop_frame() override { depth--; }
    void set_status(ColorString text) override {
        allowance += text[0].text.size() < 16 ? 1 : 4;
        if (text[0].color == 'T') tags += text[0].text;
        if (at_step) at_step(text[0].text);
    }

    std::string tags;
    std::size_t allowance = 0;  ///< allocations of the texts themselves
    int depth = 0;
    std::function<void(const std::string&)> at_step;
};

/// Buffers of a plan, each with a guard behind it that the destructor looks at.
template <typename wtype>
class Bench {
 public:
    template <typename Plan>
    Bench(const Plan& plan, upL_t tds, BasicParallelizer& parallelizer = serial_parallelizer())
        : Bench(plan.output_words, plan.word_scratch, plan.byte_scratch, tds, parallelizer) {}
    Bench(upL_t output_words, upL_t word_scratch, upL_t byte_scratch, upL_t tds,
          BasicParallelizer& parallelizer = serial_parallelizer())
        : out(output_words * sizeof(wtype)),
          scratch_words(word_scratch * sizeof(wtype)),
          scratch_bytes(byte_scratch),
          T(static_cast<wtype*>(out.data), output_words),
          words(static_cast<wtype*>(scratch_words.data)),
          word_count(word_scratch) {
        ctx.tds = tds;
        ctx.parallelizer = &parallelizer;
        ctx.scratch = scratch_bytes.data;
        ctx.scratch_bytes = byte_scratch;
    }
    ~Bench() {
        EXPECT_TRUE(out.intact());
        EXPECT_TRUE(scratch_words.intact());
        EXPECT_TRUE(scratch_bytes.intact());
        EXPECT_EQ(status.depth, 0);
    }
    /// Runs and expects no allocation but the texts of the status.
    void quietly(const std::function<void()>& run) {
        const std::size_t allowance = status.allowance;
        const std::size_t before = allocation_count();
        try {
            run();
        } catch (const Exception& e) {
            e.print();
            throw;
        }
        EXPECT_LE(allocation_count() - before, status.allowance - allowance);
    }

 private:
    struct Block {
        static constexpr unsigned char GUARD = 0xa7;
        explicit Block(upL_t bytes) : length(bytes), data(std::aligned_alloc(128, align_bytes(bytes + 128))) {
            std::memset(data, GUARD, bytes + 128);
        }
        ~Block() { std::free(data); }
        Block(const Block&) = delete;
        bool intact() const {
            const auto* p = static_cast<const unsigned char*>(data) + length;
            return std::all_of(p, p + 128, [](unsigned char c) { return c == GUARD; });
        }
        upL_t length;
        void* data;
    };
    Block out, scratch_words, scratch_bytes;

 public:
    BigFloat<wtype> T;
    wtype* words;
    upL_t word_count;
    MultiplyContext ctx;
    StepStatus status;
};

/// |M 2^shift| in units of 2^(-W p).
template <typename wtype>
double in_units(const mpz_class& M, spL_t shift, upL_t p) {
    if (M == 0) return 0;
    long exponent;
    const double value = std::fabs(mpz_get_d_2exp(&exponent, M.get_mpz_t()));
    const double log2 = static_cast<double>(exponent + shift + static_cast<spL_t>(W<wtype> * p));
    return log2 > 1000 ? INFINITY : std::ldexp(value, static_cast<int>(std::max(log2, -1000.0)));
}

/// |A 2^shift / B - 1| for integers A and B, in units of 2^(-W p).
template <typename wtype>
double relative_error(mpz_class A, spL_t shift, mpz_class B, upL_t p) {
    if (std::abs(shift) > 1 << 22) return INFINITY;
    if (shift < 0)
        B <<= static_cast<unsigned long>(-shift);
    else
        A <<= static_cast<unsigned long>(shift);
    const mpz_class difference = A - B;
    const spL_t size = static_cast<spL_t>(mpz_sizeinbase(B.get_mpz_t(), 2)) - 64;
    const mpz_class scale = size > 0 ? mpz_class(B >> static_cast<unsigned long>(size)) : B;
    return in_units<wtype>(difference, size > 0 ? -size : 0, p) / std::fabs(scale.get_d());
}

/// The promise of the functions.
inline constexpr double ERROR_BOUND = 4;

/// At precision 0 a function gives its seed, which has the precision of a double but may lose a word's worth.
template <typename wtype>
constexpr upL_t promised_words(upL_t p) {
    return p == 0 ? 32 / W<wtype> : p;
}

template <typename wtype>
void expect_tidy(const BigFloat<wtype>& T, upL_t p) {
    T.check_normalization();
    EXPECT_LE(T.L, p + 3);
}

/// Memory for all products of the tests.
inline void prepare_products() {
    static const bool done = [] {
        Multiply::ensure_tables(1 << 20);
        supported_kernels();  // what is looked up once is no allocation of a run
        return true;
    }();
    (void)done;
}

using WordTypes = ::testing::Types<std::uint32_t, std::uint64_t>;

}  // namespace lumo::testing
