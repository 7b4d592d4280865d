/// The check of a finished conversion modulo 2^61 - 1, by another road than the conversion took.
///
/// For X the words after the point of a value as an integer, X / 2^(W m), and N = Floor(fraction x R^digits):
/// X R^digits = N 2^(W m) + remainder. The low words of one exact product give the remainder, and with it the
/// hash that N must have.
#pragma once

#include "lumo/foundation/status/status_node.h"
#include "lumo/numbers/objects/big_float.h"
#include "lumo/radix/conversion_probe.h"

namespace lumo {

template <typename wtype>
struct VerifyPlan {
    wtype radix;
    upL_t digits;          ///< exponent of the radix
    upL_t fraction_words;  ///< m: most words after the point that a value may have
    upL_t tds;
    upL_t power_words = 0;      ///< of the odd part's power
    upL_t remainder_words = 0;  ///< of the low product
    upL_t product_words = 0;    ///< longest product: the twiddle tables must reach so far
    upL_t total_bytes = 0;      ///< scratch that VerifyB::hash_binary() needs

    VerifyPlan(wtype radix, upL_t digits, upL_t fraction_words, upL_t tds);
};

template <typename wtype>
struct VerifyB {
    /// Canonical hash of Floor(fraction(value) x R^digits). ctx.tds <= plan.tds; ctx.scratch holds
    /// plan.total_bytes. InvalidParametersException "Too many digits" when the value has more words after the
    /// point than planned; AlgorithmFailedException "Power Hash Mismatch".
    static std::uint64_t hash_binary(const VerifyPlan<wtype>& plan, StatusNode& status,
                                     const BigFloat<wtype>& value, const MultiplyContext& ctx,
                                     ConversionProbe<wtype>* probe = nullptr);
};

}  // namespace lumo
