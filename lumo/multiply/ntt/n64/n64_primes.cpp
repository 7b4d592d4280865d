#include "lumo/multiply/ntt/n64/n64_primes.h"

#include <atomic>
#include <bit>
#include <memory>
#include <mutex>
#include <vector>

#include "lumo/multiply/ntt/modular.h"

namespace lumo {

namespace {

constexpr unsigned SHIFT = 48, LEAST_LEVELS = 12;

/// Strong probable primes to the first twelve primes are primes below 3.3 10^24. Source: Sorenson and
/// Webster (2017).
bool is_prime(std::uint64_t p) {
    const int twos = std::countr_zero(p - 1);
    for (std::uint64_t base : {2, 3, 5, 7, 11, 13, 17, 19, 23, 29, 31, 37}) {
        std::uint64_t x = pow_mod(base, (p - 1) >> twos, p);
        if (x == 1 || x == p - 1) continue;
        int square = 1;
        for (; square < twos && x != p - 1; square++) x = mul_mod(x, x, p);
        if (x != p - 1) return false;
    }
    return true;
}

/// The three largest one more than a multiple of `step`; zeros where there are no more.
std::array<std::uint64_t, N64_PRIMES> largest_primes(std::uint64_t step) {
    std::array<std::uint64_t, N64_PRIMES> found{};
    std::size_t count = 0;
    for (std::uint64_t p = N64_LARGEST_PRIME / step * step + 1; p > step && count < N64_PRIMES; p -= step)
        if (is_prime(p)) found[count++] = p;
    return found;
}

/// The least x that is no m-th power.
std::uint64_t non_power(std::uint64_t p, std::uint64_t m) {
    std::uint64_t x = 2;
    while (pow_mod(x, (p - 1) / m, p) == 1) x++;
    return x;
}

struct Table {
    N64PrimeSet primes;
    unsigned levels;
    std::vector<N64Factor> roots[N64_PRIMES], inverse_roots[N64_PRIMES];

    Table(unsigned m, unsigned twos, unsigned levels_) : primes{}, levels(levels_) {
        const auto values = largest_primes(std::uint64_t(m) << twos);
        for (unsigned i = 0; i < N64_PRIMES; i++) {
            fill(primes[i], values[i], m);
            roots[i] = bit_reversed(primes[i].order, values[i]);
            inverse_roots[i] = bit_reversed(primes[i].inverse_order, values[i]);
            primes[i].roots = roots[i].data();
            primes[i].inverse_roots = inverse_roots[i].data();
        }
    }

    static void fill(N64Prime& prime, std::uint64_t p, unsigned m) {
        std::uint64_t inverse = p;
        for (int i = 0; i < 6; i++) inverse *= 2 - p * inverse;
        prime.field = {p, inverse};
        prime.unit = static_cast<std::uint64_t>((static_cast<unsigned __int128>(1) << 64) % p);
        prime.one = n64_factor(1, p);
        prime.odd_order = m == 1 ? 1 : pow_mod(non_power(p, m), (p - 1) / m, p);
        for (unsigned j = 1; j <= m / 2; j++) {
            const std::uint64_t half = (p + 1) / 2;
            const std::uint64_t up = pow_mod(prime.odd_order, j, p),
                                down = pow_mod(prime.odd_order, m - j, p);
            prime.cosines[j - 1] = n64_factor(mul_mod(prime.field.add(up, down), half, p), p);
            prime.sines[j - 1] = n64_factor(mul_mod(prime.field.sub(up, down), half, p), p);
        }
        const unsigned twos = std::min(unsigned(std::countr_zero(p - 1)), N64_MOST_TWOS);
        std::uint64_t w = pow_mod(non_power(p, 2), (p - 1) >> twos, p), back = inverse_mod(w, p);
        for (unsigned k = twos + 1; k-- > 0; w = mul_mod(w, w, p), back = mul_mod(back, back, p)) {
            prime.order[k] = w;
            prime.inverse_order[k] = back;
        }
    }

    std::vector<N64Factor> bit_reversed(const std::array<std::uint64_t, N64_MOST_TWOS + 1>& orders,
                                        std::uint64_t p) const {
        std::vector<N64Factor> factors{n64_factor(1, p)};
        factors.reserve(std::size_t(1) << (levels - 1));
        for (unsigned level = 2; level <= levels; level++) {
            const ConstantMultiplier times(orders[level], p);
            const std::size_t count = factors.size();
            for (std::size_t t = 0; t < count; t++) factors.push_back(n64_factor(times(factors[t].w), p));
        }
        return factors;
    }
};

/// Tables in use stay where they are when a longer one takes their place.
struct Store {
    std::mutex mutex;
    std::atomic<const Table*> current[4][N64_MOST_TWOS - SHIFT + 1]{};  // m / 2, twos
    std::vector<std::unique_ptr<const Table>> owned;
};

}  // namespace

bool n64_primes_hold(unsigned m, unsigned k) {
    const auto primes = largest_primes(std::uint64_t(m) << std::max(k, SHIFT));
    if (primes.back() == 0) return false;
    // m 2^k 2^128 <= p1 p2 p3, by the upper words of the products.
    const auto p1p2 = static_cast<unsigned __int128>(primes[0]) * primes[1];
    const auto upper = static_cast<unsigned __int128>(static_cast<std::uint64_t>(p1p2 >> 64)) * primes[2];
    return static_cast<std::uint64_t>(upper >> 64) >= std::uint64_t(m) << k;
}

const N64PrimeSet& n64_prime_set(unsigned m, unsigned k, unsigned levels) {
    static Store store;
    const unsigned twos = std::max(k, SHIFT);
    std::atomic<const Table*>& slot = store.current[m / 2][twos - SHIFT];
    const Table* table = slot.load(std::memory_order_acquire);
    if (table && table->levels >= levels) return table->primes;
    const std::lock_guard lock(store.mutex);
    table = slot.load(std::memory_order_relaxed);
    if (!table || table->levels < levels) {
        store.owned.push_back(std::make_unique<Table>(m, twos, std::max(levels, LEAST_LEVELS)));
        table = store.owned.back().get();
        slot.store(table, std::memory_order_release);
    }
    return table->primes;
}

}  // namespace lumo
