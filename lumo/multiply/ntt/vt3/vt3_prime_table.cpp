#include "lumo/multiply/ntt/vt3/vt3_prime_table.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <memory>
#include <mutex>
#include <vector>

#include "lumo/multiply/ntt/vt3/vt3_modular.h"
#include "lumo/multiply/ntt/vt3/vt3_primes.h"

namespace lumo {

using kernels::Vt3Factor;
using kernels::Vt3Form;
using kernels::Vt3Prime;

namespace {

constexpr unsigned LEAST_LEVELS = 12;
constexpr unsigned PRIMES = 119;
constexpr unsigned MOST_TWOS = 40;

std::uint64_t prime_of(unsigned index) {
    return vt3_prime_value(vt3_prime_factors()[index]);
}

/// The least x that is no square, or no m-th power.
std::uint64_t non_power(std::uint64_t p, std::uint64_t m) {
    std::uint64_t x = 2;
    while (pow_mod(x, (p - 1) / m, p) == 1) x++;
    return x;
}

std::uint64_t inverse_of_power_of_two(std::uint64_t p, Vt3Form form) {
    std::uint64_t inverse = p;
    for (int i = 0; i < 6; i++) inverse *= 2 - p * inverse;
    return form == Vt3Form::integer52 ? inverse & ((std::uint64_t(1) << 52) - 1) : inverse;
}

struct Table {
    Vt3Prime prime;
    unsigned levels;
    std::vector<Vt3Factor> roots, inverse_roots;
    std::array<std::uint64_t, MOST_TWOS + 1> order{}, inverse_order{};

    Table(unsigned index, Vt3Form form, unsigned levels_) : prime{}, levels(levels_) {
        const std::uint64_t p = prime_of(index);
        prime.p = p;
        prime.p_inverse = inverse_of_power_of_two(p, form);
        prime.unit = vt3_variable(form, 1, p);
        const Vt3FactorOf factor(form, p);
        prime.one = factor(1);
        for (unsigned i = 0; i < 4; i++) prime.pieces[i] = factor(pow_mod(2, 48 * (i + 1), p));
        const std::uint64_t half = (p + 1) / 2;
        for (unsigned m : {3u, 5u, 7u}) {
            if (vt3_prime_factors()[index] % m != 0) continue;
            const std::uint64_t w = pow_mod(non_power(p, m), (p - 1) / m, p);
            prime.odd_order[m / 2 - 1] = w;
            for (unsigned j = 1; j <= m / 2; j++) {
                const std::uint64_t up = pow_mod(w, j, p), down = pow_mod(w, m - j, p);
                prime.cosines[m / 2 - 1][j - 1] = factor(mul_mod((up + down) % p, half, p));
                prime.sines[m / 2 - 1][j - 1] = factor(mul_mod(up + p - down, half, p));
            }
        }
        const unsigned twos = std::min(unsigned(std::countr_zero(p - 1)), MOST_TWOS);
        std::uint64_t w = pow_mod(non_power(p, 2), (p - 1) >> twos, p), back = inverse_mod(w, p);
        for (unsigned k = twos + 1; k-- > 0; w = mul_mod(w, w, p), back = mul_mod(back, back, p)) {
            order[k] = w;
            inverse_order[k] = back;
        }
        prime.order = order.data();
        prime.inverse_order = inverse_order.data();
        roots = bit_reversed(factor, prime.order);
        inverse_roots = inverse_powers(factor, prime.inverse_order);
        prime.roots = roots.data();
        prime.inverse_roots = inverse_roots.data();
    }

    std::vector<Vt3Factor> bit_reversed(const Vt3FactorOf& factor, const std::uint64_t* orders) const {
        const std::uint64_t p = prime.p;
        std::vector<std::uint64_t> values{1};
        for (unsigned level = 2; level <= levels; level++) {
            const ConstantMultiplier times(orders[level], p);
            const std::size_t count = values.size();
            for (std::size_t t = 0; t < count; t++) values.push_back(times(values[t]));
        }
        std::vector<Vt3Factor> factors(values.size());
        std::transform(values.begin(), values.end(), factors.begin(), factor);
        return factors;
    }

    std::vector<Vt3Factor> inverse_powers(const Vt3FactorOf& factor, const std::uint64_t* orders) const {
        const std::uint64_t p = prime.p;
        std::vector<Vt3Factor> factors(std::size_t(1) << levels);
        for (unsigned level = 0; level < levels; level++) {
            const ConstantMultiplier times(orders[level + 1], p);
            const std::size_t h = std::size_t(1) << level;
            std::uint64_t value = 1;
            for (std::size_t j = 0; j < h; j++, value = times(value)) factors[h + j] = factor(value);
        }
        return factors;
    }
};

/// Tables in use stay where they are when a longer one takes their place.
struct Store {
    std::mutex mutex;
    std::array<std::array<std::atomic<const Table*>, PRIMES>, 3> current{};
    std::vector<std::unique_ptr<const Table>> owned;
};

Store& store() {
    static Store tables;
    return tables;
}

}  // namespace

const Vt3Prime& vt3_prime_table(unsigned index, Vt3Form form, unsigned levels) {
    std::atomic<const Table*>& slot = store().current[std::size_t(form)][index];
    const Table* table = slot.load(std::memory_order_acquire);
    if (table && table->levels >= levels) return table->prime;
    const std::lock_guard lock(store().mutex);
    table = slot.load(std::memory_order_relaxed);
    if (!table || table->levels < levels) {
        store().owned.push_back(std::make_unique<Table>(index, form, std::max(levels, LEAST_LEVELS)));
        table = store().owned.back().get();
        slot.store(table, std::memory_order_release);
    }
    return table->prime;
}

}  // namespace lumo
