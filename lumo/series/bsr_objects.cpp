#include "lumo/series/bsr_objects.h"

#include "lumo/foundation/errors/exceptions.h"

namespace lumo {

Region::Region(upL_t start, upL_t end) : s(start), e(end) {
    if (s >= e) throw InvalidParametersException("Region::Region()", "Invalid Range - Failed: s < e");
}

template <typename wtype>
ExactFloat<wtype> free_space_above(const ExactFloat<wtype>& used) {
    const upL_t start = align_words<wtype>(static_cast<upL_t>(used.T - used.base) + used.L);
    if (start >= used.capacity) return ExactFloat<wtype>(used.base + used.capacity, 0);
    return ExactFloat<wtype>(used.base + start, used.capacity - start);
}

template <typename wtype>
ExactFloat<wtype> lower_half(const ExactFloat<wtype>& whole) {
    return ExactFloat<wtype>(whole.base, whole.capacity / 2 & ~(WordTraits<wtype>::align_words - 1));
}

template <typename wtype>
ExactFloat<wtype> upper_half(const ExactFloat<wtype>& whole) {
    const ExactFloat<wtype> lower = lower_half(whole);
    return ExactFloat<wtype>(whole.base + lower.capacity, lower.capacity);
}

template ExactFloat<std::uint32_t> free_space_above(const ExactFloat<std::uint32_t>&);
template ExactFloat<std::uint64_t> free_space_above(const ExactFloat<std::uint64_t>&);
template ExactFloat<std::uint32_t> lower_half(const ExactFloat<std::uint32_t>&);
template ExactFloat<std::uint64_t> lower_half(const ExactFloat<std::uint64_t>&);
template ExactFloat<std::uint32_t> upper_half(const ExactFloat<std::uint32_t>&);
template ExactFloat<std::uint64_t> upper_half(const ExactFloat<std::uint64_t>&);

}  // namespace lumo
