/// What an output tells about its digits.
#pragma once

#include <string>
#include <vector>

#include "lumo/radix/digit_counts.h"
#include "lumo/radix/hashed_digits.h"
#include "lumo/radix/last_digits.h"

namespace lumo {

/// The digits of one radix. Positions count the digits after the point, from 1.
struct RadixReport {
    explicit RadixReport(upL_t radix) : counts(radix) {}

    upL_t digits = 0;
    DigitCounts counts;
    std::uint64_t hash = 0;  ///< canonical residue of Floor(|x| * radix^digits)
    LastDigits last;
    std::string first_digits;  ///< sign, integer part, point and the first digits after it (50 at most)
    std::string sha256;        ///< digest in hexadecimal of the digits after the point as text
    std::string path;          ///< of the digit file; empty without one

    /// "SHA256-dec(1 - N): " or "SHA256-hex(1 - N): " and the digest.
    std::string sha256_line() const;
};

struct DigitReport {
    RadixReport dec{10};
    RadixReport hex{16};

    HashedDigits hashes() const { return {dec.hash, hex.hash}; }
    /// Counts, hashes, digests, of the radixes that have digits.
    std::vector<std::string> lines() const;
};

}  // namespace lumo
