/// Runs a plan in buffers of exactly the planned sizes, and measures results against exact integers.
#pragma once

#include <cmath>
#include <functional>

#include "allocation_count.h"
#include "failures.h"
#include "held_numbers.h"
#include "lumo/foundation/status/status_node.h"
#include "lumo/functions/function_plan.h"
#include "lumo/multiply/kernels/kernel_select.h"
#include "lumo/multiply/multiply.h"
#include "scratch.h"

namespace lumo::testing {

template <typename wtype>
constexpr int W = WordTraits<wtype>::bits;

/// Random shape and length; the top word is small in half of the cases, where precision is tightest.
template <typename wtype>
std::vector<wtype> any_words(std::mt19937_64& random, upL_t max_length) {
    const upL_t length = 1 + random() % max_length;
    std::vector<wtype> words = shaped_words<wtype>(ALL_SHAPES[random() % 5], length, random);
    const upL_t top = random() % 4;
    words.back() = top == 0 ? 1 : top == 1 ? static_cast<wtype>(-1) : words.back() | 1;
    return words;
}

/// Notes the tags of steps, and lets a test reach into a run between them.
class StepStatus final : public NullStatusNode {
 public:
    StepStatus() {
        tags.reserve(4096);
        upper.reserve(4096);
    }
    void push_node(ColorString text) override {
        allowance += text[0].text.size() < 16 ? 1 : 4;
        if (++depth > UPPER_LEVELS) return;
        for (const ColorSegment& segment : text) upper += segment.text;
    }
    void pop_frame() override { depth--; }
    void set_status(ColorString text) override {
        allowance += text[0].text.size() < 16 ? 1 : 4;
        if (text[0].color == 'T') tags += text[0].text;
        if (depth <= UPPER_LEVELS) upper += text[0].text;
        if (at_step) at_step(text[0].text);
    }

    static constexpr int UPPER_LEVELS = 3;
    std::string tags;
    std::string upper;          ///< all texts of the first levels, of steps the tags alone
    std::size_t allowance = 0;  ///< allocations of the texts themselves
    int depth = 0;
    std::function<void(const std::string&)> at_step;
};

/// Buffers of a plan, each with a guard behind it that the destructor looks at.
template <typename wtype>
class Bench {
 public:
    Bench(const FunctionPlan& plan, upL_t tds, BasicParallelizer& parallelizer = serial_parallelizer())
        : Bench(plan.output_words, plan.word_scratch, plan.byte_scratch, tds, parallelizer) {}
    Bench(upL_t output_words, upL_t word_scratch, upL_t byte_scratch, upL_t tds,
          BasicParallelizer& parallelizer = serial_parallelizer())
        : out(output_words * sizeof(wtype)),
          scratch_words(word_scratch * sizeof(wtype)),
          scratch_bytes(byte_scratch),
          T(out.words<wtype>(), output_words),
          words(scratch_words.words<wtype>()),
          word_count(word_scratch),
          ctx(scratch_bytes.context(tds, parallelizer)) {
        // What is made once is no allocation of a run.
        static const KernelSet prepared = (Multiply::ensure_tables(1 << 20), supported_kernels());
        EXPECT_EQ(prepared, supported_kernels());
    }
    ~Bench() {
        EXPECT_TRUE(out.intact() && scratch_words.intact() && scratch_bytes.intact());
        EXPECT_EQ(status.depth, 0);
    }
    /// Runs and expects no allocation but the texts of the status.
    template <typename Run>
    void quietly(Run run) {
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
    Scratch out, scratch_words, scratch_bytes;

 public:
    BigFloat<wtype> T;
    wtype* words;
    upL_t word_count;
    MultiplyContext ctx;
    StepStatus status;
};

/// |A 2^shift / B - 1| for integers A and B, in units of 2^(-W p).
template <typename wtype>
double relative_error(mpz_class A, spL_t shift, mpz_class B, upL_t p) {
    if (std::abs(shift) > 1 << 22) return INFINITY;
    (shift < 0 ? B : A) <<= static_cast<unsigned long>(std::abs(shift));
    const mpz_class difference = A - B;
    if (difference == 0) return 0;
    long difference_bits, B_bits;
    const double ratio = std::fabs(mpz_get_d_2exp(&difference_bits, difference.get_mpz_t()) /
                                   mpz_get_d_2exp(&B_bits, B.get_mpz_t()));
    const spL_t bits = difference_bits - B_bits + static_cast<spL_t>(W<wtype> * p);
    return bits > 1000 ? INFINITY : std::ldexp(ratio, static_cast<int>(std::max<spL_t>(bits, -1000)));
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

}  // namespace lumo::testing
