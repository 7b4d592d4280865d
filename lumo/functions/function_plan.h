/// What the plan of every function tells its caller.
#pragma once

#include "lumo/foundation/types/types.h"

namespace lumo {

/// Sizes that run() needs for precisions up to p and up to `tds` pieces. Nothing is allocated, ever.
struct FunctionPlan {
    upL_t p;                 ///< words
    upL_t tds;               ///< bounds the context's
    upL_t output_words = 0;  ///< capacity that the result needs
    upL_t word_scratch = 0;  ///< words
    upL_t byte_scratch = 0;  ///< for products, aligned to 128

    FunctionPlan(upL_t precision, upL_t pieces, upL_t bytes_a_word)
        : p(precision), tds(pieces), word_bytes(bytes_a_word) {}
    /// What stands for a plan where several are compared or reported as one number: the scratch in bytes, and
    /// the aligned output as a bare count of words. It is no size of memory: scratch alone takes
    /// byte_scratch + word_bytes * word_scratch, and the output comes from elsewhere.
    upL_t total() const {
        return byte_scratch + word_bytes * word_scratch +
               round_up(output_words, ALIGNMENT_BYTES / word_bytes);
    }

 private:
    upL_t word_bytes;
};

}  // namespace lumo
