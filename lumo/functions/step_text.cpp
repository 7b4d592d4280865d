#include "lumo/functions/step_text.h"

#include "lumo/foundation/console/console.h"

namespace lumo {

template <typename wtype>
ColorString step_text(const char* tag, upL_t words) {
    constexpr long double digits_per_word = WordTraits<wtype>::bits * 0.301029995663981195213738894724493L;
    const auto digits = static_cast<upL_t>(static_cast<long double>(words) * digits_per_word);
    return {{'T', tag}, {'Y', Console::format_commas(digits)}};
}

template ColorString step_text<std::uint32_t>(const char*, upL_t);
template ColorString step_text<std::uint64_t>(const char*, upL_t);

}  // namespace lumo
