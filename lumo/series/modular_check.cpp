#include "lumo/series/modular_check.h"

#include <algorithm>
#include <string>
#include <vector>

#include "lumo/foundation/errors/exceptions.h"

namespace lumo {

template <typename wtype>
void lmb_Verify_BSR(upL_t a, upL_t b, std::initializer_list<const ExactFloat<wtype>*> objects,
                    const ParallelContext& ctx) {
    const auto hashes = [&](const ExactFloat<wtype>& object) {
        return BSRModularCheckFailedException::HashPair(Hash61::canonical(object.hash),
                                                        Hash61::canonical(object.computed_hash(ctx)));
    };
    const bool consistent = std::all_of(objects.begin(), objects.end(), [&](const ExactFloat<wtype>* object) {
        const auto [stored, computed] = hashes(*object);
        return stored == computed;
    });
    if (consistent) return;
    std::vector<BSRModularCheckFailedException::HashPair> pairs;
    for (const ExactFloat<wtype>* object : objects) pairs.push_back(hashes(*object));
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
