/// The parts that the Newton iterations for inverse functions have in common: how far a product is from one,
/// and the checks that catch a fault of the machine at each step.
///
/// q is the precision in words of the approximation R that a step starts from. Its product, 1 + d with d from
/// R's error, must have |d| < 2^(W (2 - q)); everything else is AlgorithmFailedException at `location`.
#pragma once

#include "lumo/numbers/objects/big_float.h"

namespace lumo {

/// Where an approximation lies, seen from its product.
enum class Estimate { exact, over, under };

template <typename wtype>
struct NewtonStep {
    using Number = BigFloat<wtype>;

    /// Precision from which one step reaches p >= 1 words.
    static constexpr upL_t child_precision(upL_t p) { return p <= 2 ? p - 1 : (p >> 1) + 1; }

    /// E is the whole product. Leaves its distance from one, positive.
    static Estimate distance_from_one(const char* location, Number& E, upL_t q);

    /// E is the product modulo 2^(W te), te <= 0: the one itself has been dropped. Its word at te - 1 tells
    /// the sign: 0 for an over-estimate, at least `lowest_under` for an under-estimate. Leaves the distance.
    static Estimate distance_from_one_wrapped(const char* location, Number& E, spL_t te, upL_t q,
                                              wtype lowest_under);

    /// E := E / 2. One more word of capacity may be used at the top.
    static void halve(const ParallelContext& ctx, Number& E);

    /// T := A / n at p words for n >= 1. T must not alias A; its capacity is p + 2 or one more than A has
    /// words.
    static void divide_by_word(const ParallelContext& ctx, Number& T, upL_t p, const Number& A,
                               std::uint32_t n);

    /// T := R - S after an over-estimate, R + S after an under-estimate, at p words. The sum is truncated, so
    /// the bottom word is nudged upward if all words are in use. T aliases neither.
    static void correct(const ParallelContext& ctx, Number& T, upL_t p, const Number& R, const Number& S,
                        Estimate estimate);

    /// r := target - product at p words, for two numbers that agree closely, of which only the words below
    /// `cut` are given; both have the sign `positive` (the header of a target cut to nothing has lost it).
    /// The true difference must be below W^(cut - 1), with W the base: then the words at cut - 1 are the
    /// same, or differ by one modulo W, as the parts above that word do of any two numbers less than one
    /// apart. Two below a target's 0 is let through as well, as the reciprocal's check of its top word does;
    /// everything else is a failure.
    static void residual(const char* location, const ParallelContext& ctx, Number& r, upL_t p,
                         const Number& target, const Number& product, spL_t cut, bool positive);

    /// Storage above R in the buffer that R was made in, from the next multiple of 128 bytes on, seen from
    /// the start of the buffer.
    static LinearWordBuffer<wtype> room_above(const Number& R);

    /// InvalidParametersException "tds is larger than plan." or "p is larger than plan.".
    static void require_plan(const char* location, upL_t tds, upL_t planned_tds, upL_t p, upL_t planned_p);
};

}  // namespace lumo
