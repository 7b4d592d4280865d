#include "lumo/series/modular_check.h"

#include <string>
#include <vector>

#include "lumo/foundation/errors/exceptions.h"

namespace lumo {

template <typename wtype>
void lmb_Verify_BSR(upL_t a, upL_t b, std::initializer_list<const ExactFloat<wtype>*> objects,
                    const ParallelContext& ctx, BSRStep step) {
    std::vector<BSRModularCheckFailedException::HashPair> failed;
    for (const ExactFloat<wtype>* object : objects) {
        const std::uint64_t computed = object->computed_hash(ctx);
        if (!Hash61::equal(object->hash, computed))
            failed.emplace_back(Hash61::canonical(object->hash), Hash61::canonical(computed));
    }
    if (failed.empty()) return;
    throw BSRModularCheckFailedException(
        "lmb_Verify_BSR()",
        (step == BSRStep::range ? "Modular Redundancy Check Failed: " : "BSR Merge Failure: ") +
            std::to_string(a) + " : " + std::to_string(b),
        std::move(failed));
}

template void lmb_Verify_BSR(upL_t, upL_t, std::initializer_list<const ExactFloat<std::uint32_t>*>,
                             const ParallelContext&, BSRStep);
template void lmb_Verify_BSR(upL_t, upL_t, std::initializer_list<const ExactFloat<std::uint64_t>*>,
                             const ParallelContext&, BSRStep);

}  // namespace lumo
