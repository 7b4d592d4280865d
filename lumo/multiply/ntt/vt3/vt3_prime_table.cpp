#include "lumo/multiply/ntt/vt3/vt3_prime_table.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <memory>
#include <mutex>
#include <vector>

#include "lumo/multiply/ntt/vt3/vt3_modular.h"
#include "lumo/multiply/ntt/vt3/vt3_prime_set.h"
#include "lumo/multiply/ntt/vt3/vt3_primes.h"
#include "lumo/multiply/ntt/vt3/vt3_select.h"
#include "lumo/multiply/ntt/vt3/vt3_sizes.h"

namespace lumo {

using kernels::Vt3Factor;
using kernels::Vt3Form;
using kernels::Vt3Prime;

namespace {

/// Of a table that is built when it is asked for: short ones would soon be followed by longer ones.
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
    bool planned;  ///< in a buffer of the caller
    std::vector<unsigned char> own;
    std::array<std::uint64_t, MOST_TWOS + 1> order{}, inverse_order{};

    /// What the roots and the inverse ones take.
    static upL_t root_bytes(unsigned levels) { return align_bytes(sizeof(Vt3Factor) << (levels - 1)); }
    static upL_t bytes(unsigned levels) {
        return root_bytes(levels) + align_bytes(sizeof(Vt3Factor) << levels);
    }

    /// In `storage` of bytes(levels_), or in an allocation of its own.
    Table(unsigned index, Vt3Form form, unsigned levels_, void* storage)
        : prime{}, levels(levels_), planned(storage != nullptr) {
        if (!planned) {
            own.resize(bytes(levels));
            storage = own.data();
        }
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
        auto* roots = static_cast<Vt3Factor*>(storage);
        auto* inverse_roots = roots + root_bytes(levels) / sizeof(Vt3Factor);
        set_bit_reversed(roots, factor, prime.order);
        set_inverse_powers(inverse_roots, factor, prime.inverse_order);
        prime.roots = roots;
        prime.inverse_roots = inverse_roots;
    }

    void set_bit_reversed(Vt3Factor* roots, const Vt3FactorOf& factor, const std::uint64_t* orders) const {
        const std::uint64_t p = prime.p;
        std::vector<std::uint64_t> values{1};
        for (unsigned level = 2; level <= levels; level++) {
            const ConstantMultiplier times(orders[level], p);
            const std::size_t count = values.size();
            for (std::size_t t = 0; t < count; t++) values.push_back(times(values[t]));
        }
        std::transform(values.begin(), values.end(), roots, factor);
    }

    void set_inverse_powers(Vt3Factor* roots, const Vt3FactorOf& factor, const std::uint64_t* orders) const {
        const std::uint64_t p = prime.p;
        roots[0] = {};
        for (unsigned level = 0; level < levels; level++) {
            const ConstantMultiplier times(orders[level + 1], p);
            const std::size_t h = std::size_t(1) << level;
            std::uint64_t value = 1;
            for (std::size_t j = 0; j < h; j++, value = times(value)) roots[h + j] = factor(value);
        }
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

/// By prime, the levels that the transforms of all lengths up to `bits` need; 0 for primes of none.
std::array<unsigned, PRIMES> levels_of_primes(upL_t bits) {
    std::array<unsigned, PRIMES> levels{};
    const Vt3Size& longest = vt3_size_for(bits);
    for (const Vt3Size& size : vt3_sizes()) {
        const kernels::Vt3Shape shape = size.shape();
        const Vt3PrimeSet& set = *vt3_prime_set(size.n, size.m, size.k);
        for (unsigned i = 0; i < size.n; i++)
            levels[set.index[i]] = std::max(levels[set.index[i]], std::max(shape.log_h, shape.log_c));
        if (size == longest) break;
    }
    return levels;
}

}  // namespace

const Vt3Prime& vt3_prime_table(unsigned index, Vt3Form form, unsigned levels) {
    std::atomic<const Table*>& slot = store().current[std::size_t(form)][index];
    const Table* table = slot.load(std::memory_order_acquire);
    if (table && table->levels >= levels) return table->prime;
    const std::lock_guard lock(store().mutex);
    table = slot.load(std::memory_order_relaxed);
    if (!table || table->levels < levels) {
        store().owned.push_back(
            std::make_unique<Table>(index, form, std::max(levels, LEAST_LEVELS), nullptr));
        table = store().owned.back().get();
        slot.store(table, std::memory_order_release);
    }
    return table->prime;
}

upL_t vt3_table_bytes(upL_t bits) {
    upL_t sum = 0;
    for (const unsigned levels : levels_of_primes(bits))
        if (levels != 0) sum += Table::bytes(levels);
    return sum;
}

void build_vt3_tables(AlignedBufferC buffer, upL_t bits, const ParallelContext& ctx) {
    const Vt3Form form = vt3_kernels().form;
    struct Job {
        unsigned index, levels;
        void* storage;
        std::unique_ptr<const Table> table;
    };
    std::vector<Job> jobs;
    const auto levels = levels_of_primes(bits);
    for (unsigned index = 0; index < PRIMES; index++)
        if (levels[index] != 0)
            jobs.push_back({index, levels[index], buffer.spawn(Table::bytes(levels[index])), nullptr});
    parallel_stride(ctx, jobs.size(), [&](upL_t i) {
        Job& job = jobs[i];
        job.table = std::make_unique<Table>(job.index, form, job.levels, job.storage);
    });
    const std::lock_guard lock(store().mutex);
    for (Job& job : jobs) {
        store().current[std::size_t(form)][job.index].store(job.table.get(), std::memory_order_release);
        store().owned.push_back(std::move(job.table));
    }
}

void release_vt3_tables() {
    const std::lock_guard lock(store().mutex);
    for (auto& form : store().current)
        for (auto& slot : form) {
            const Table* table = slot.load(std::memory_order_relaxed);
            if (table && table->planned) slot.store(nullptr, std::memory_order_relaxed);
        }
    std::erase_if(store().owned, [](const auto& table) { return table->planned; });
}

}  // namespace lumo
