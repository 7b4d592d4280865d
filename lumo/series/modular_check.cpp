#include "lumo/series/modular_check.h"

#include <string>
#include <vector>

#include "lumo/foundation/errors/exceptions.h"

namespace lumo {

template <typename wtype>
void lmb_Verify_BSR(upL_t a, upL_t b, std::initializer_list<const ExactFloat<wtype>*> objects,
                    const ParallelContext& ctx) {
    std::vector<BSRModularCheckFailedException::HashPair> pairs;
    bool failed = false;
    for (const ExactFloat<wtype>* object : objects) {
        const std::uint64_t stored = Hash61::canonical(object->hash);
        const std::uint64_t computed = Hash61::canonical(object->computed_hash(ctx));
        failed = failed || stored != computed;
        pairs.emplace_back(stored, computed);
    }
    if (!failed) return;
    throw BSRModularCheckFailedException(
        "lmb_Verify_BSR()",
        "Modular Redundancy Check Failed: " + std::to_string(a) + " : " + std::to_string(b),
        std::move(pairs));
}

template void lmb_Verify_BSR(upL_t, upL_t, std::initializer_list<const ExactFloat<std::uint32_t>*>,
                             const ParallelContext&);
template void lmb_Verify_BSR(upL_t, upL_t, std::initializer_list<const ExactFloat<std::uint64_t>*>,
                             const ParallelContext&);

}  // namespace lumo
