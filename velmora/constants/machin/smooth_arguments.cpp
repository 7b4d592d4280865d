#include "velmora/constants/machin/smooth_arguments.h"

#include <algorithm>

namespace velmora::machin {
namespace {

constexpr std::uint64_t LARGEST = 1500000;

/// Products of the first `count` small primes up to LARGEST + 1, ascending.
std::vector<std::uint64_t> smooth_numbers(std::size_t count) {
    std::vector<std::uint64_t> numbers = {1};
    for (const std::uint64_t p : std::span(SMALL_PRIMES).first(count)) {
        // The list grows while it is walked: every power of p is reached.
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            if (numbers[i] * p <= LARGEST + 1) numbers.push_back(numbers[i] * p);
        }
    }
    std::ranges::sort(numbers);
    return numbers;
}

SmoothArgument describe(std::uint64_t x) {
    SmoothArgument argument{x, {}};
    for (std::size_t i = 0; i < std::size(SMALL_PRIMES); ++i) {
        for (std::uint64_t v = x + 1; v % SMALL_PRIMES[i] == 0; v /= SMALL_PRIMES[i]) ++argument.exponents[i];
        for (std::uint64_t v = x - 1; v % SMALL_PRIMES[i] == 0; v /= SMALL_PRIMES[i]) --argument.exponents[i];
    }
    return argument;
}

struct Catalogue {
    std::array<std::vector<std::uint64_t>, std::size(SMALL_PRIMES) + 1> numbers;
    std::array<std::vector<SmoothArgument>, std::size(SMALL_PRIMES) + 1> arguments;

    Catalogue() {
        for (std::size_t count = 1; count <= std::size(SMALL_PRIMES); ++count) {
            numbers[count] = smooth_numbers(count);
            for (const std::uint64_t below : numbers[count]) {
                if (std::ranges::binary_search(numbers[count], below + 2))
                    arguments[count].push_back(describe(below + 1));
            }
            std::ranges::reverse(arguments[count]);
        }
    }
};

const Catalogue& catalogue() {
    static const Catalogue made;
    return made;
}

}  // namespace

const std::vector<SmoothArgument>& smooth_arguments(std::size_t count) {
    return catalogue().arguments[count];
}

std::optional<std::uint64_t> argument_with_prime(std::uint64_t q, std::size_t count,
                                                 const std::set<std::uint64_t>& used) {
    std::optional<std::uint64_t> best;
    std::uint64_t best_rest = q;
    for (const std::uint64_t m : catalogue().numbers[count]) {
        const std::uint64_t multiple = m * q;
        for (const std::uint64_t x : {multiple - 1, multiple + 1}) {
            const std::uint64_t neighbour = x < multiple ? x - 1 : x + 1;
            if (x < 2 || neighbour == 0 || used.contains(x)) continue;
            const std::uint64_t rest = rough_part(neighbour, count);
            if (rest < best_rest || (rest == best_rest && best)) {
                best = x;
                best_rest = rest;
            }
        }
    }
    return best;
}

}  // namespace velmora::machin
