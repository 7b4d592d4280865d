#include "lumo/multiply/ntt/n64/n64_nodes.h"

#include <utility>

#include "lumo/multiply/ntt/modular.h"

namespace lumo {

void n64_forward(const N64Prime& prime, std::uint64_t* x, std::size_t words, unsigned levels) {
    const N64Field f = prime.field;
    unsigned level = 0;
    if (levels % 2 != 0) {
        const std::size_t half = words / 2;
        for (std::size_t j = 0; j < half; j++) {
            const std::uint64_t a = x[j], b = x[j + half];
            x[j] = f.add(a, b);
            x[j + half] = f.sub(a, b);
        }
        level++;
    }
    for (; level < levels; level += 2) {
        const std::size_t length = words >> level, q = length / 4;
        std::uint64_t* y = x;
        for (std::size_t i = 0; i < (std::size_t(1) << level); i++, y += length) {
            const N64Factor w = prime.roots[i], w0 = prime.roots[2 * i], w1 = prime.roots[2 * i + 1];
            for (std::size_t j = 0; j < q; j++) {
                const std::uint64_t a = y[j], b = y[j + q];
                const std::uint64_t c = f.mul(y[j + 2 * q], w), d = f.mul(y[j + 3 * q], w);
                const std::uint64_t plus = f.add(a, c), minus = f.sub(a, c);
                const std::uint64_t plus_b = f.mul(f.add(b, d), w0), minus_b = f.mul(f.sub(b, d), w1);
                y[j] = f.add(plus, plus_b);
                y[j + q] = f.sub(plus, plus_b);
                y[j + 2 * q] = f.add(minus, minus_b);
                y[j + 3 * q] = f.sub(minus, minus_b);
            }
        }
    }
}

void n64_inverse(const N64Prime& prime, std::uint64_t* x, std::size_t words, unsigned levels) {
    const N64Field f = prime.field;
    unsigned level = levels;
    for (; level >= 2; level -= 2) {
        const std::size_t length = words >> (level - 2), q = length / 4;
        std::uint64_t* y = x;
        for (std::size_t i = 0; i < (std::size_t(1) << (level - 2)); i++, y += length) {
            const N64Factor w = prime.inverse_roots[i], w0 = prime.inverse_roots[2 * i],
                            w1 = prime.inverse_roots[2 * i + 1];
            for (std::size_t j = 0; j < q; j++) {
                const std::uint64_t a = y[j], b = y[j + q], c = y[j + 2 * q], d = y[j + 3 * q];
                const std::uint64_t plus = f.add(a, b), plus_b = f.mul(f.sub(a, b), w0);
                const std::uint64_t minus = f.add(c, d), minus_b = f.mul(f.sub(c, d), w1);
                y[j] = f.add(plus, minus);
                y[j + q] = f.add(plus_b, minus_b);
                y[j + 2 * q] = f.mul(f.sub(plus, minus), w);
                y[j + 3 * q] = f.mul(f.sub(plus_b, minus_b), w);
            }
        }
    }
    if (level != 0) {
        const std::size_t half = words / 2;
        for (std::size_t j = 0; j < half; j++) {
            const std::uint64_t a = x[j], b = x[j + half];
            x[j] = f.add(a, b);
            x[j + half] = f.sub(a, b);
        }
    }
}

namespace {

template <unsigned M, bool INVERSE>
void odd_stage(const N64Prime& prime, std::uint64_t* tile, std::size_t h) {
    const N64Field f = prime.field;
    constexpr unsigned HALF = M / 2;
    for (std::size_t r = 0; r < h; r++) {
        std::uint64_t* by_class[M];  // rows by r mod m
        std::uint64_t* by_part[M];
        for (unsigned t = 0; t < M; t++) {
            by_part[t] = tile + (t * h + r) * 16;
            by_class[(t * h + r) % M] = by_part[t];
        }
        for (std::size_t e = 0; e < 16; e++) {
            std::uint64_t x[M], plus[HALF], minus[HALF];
            for (unsigned u = 0; u < M; u++) x[u] = (INVERSE ? by_part : by_class)[u][e];
            std::uint64_t sum = x[0];
            for (unsigned j = 0; j < HALF; j++) {
                plus[j] = f.add(x[j + 1], x[M - 1 - j]);
                minus[j] = f.sub(x[j + 1], x[M - 1 - j]);
                sum = f.add(sum, plus[j]);
            }
            const auto put = [&](unsigned s, std::uint64_t value) {
                (INVERSE ? by_class[(M - s) % M] : by_part[s])[e] = value;
            };
            put(0, sum);
            for (unsigned s = 1; s <= HALF; s++) {
                std::uint64_t even = x[0], odd = 0;
                for (unsigned j = 0; j < HALF; j++) {
                    const unsigned i = (j + 1) * s % M, fold = i <= HALF ? i - 1 : M - i - 1;
                    even = f.add(even, f.mul(plus[j], prime.cosines[fold]));
                    const std::uint64_t term = f.mul(minus[j], prime.sines[fold]);
                    odd = i <= HALF ? f.add(odd, term) : f.sub(odd, term);
                }
                put(s, f.add(even, odd));
                put(M - s, f.sub(even, odd));
            }
        }
    }
}

template <bool INVERSE>
void odd_stage(const N64Prime& prime, unsigned m, std::uint64_t* tile, std::size_t h) {
    switch (m) {
        case 3:
            return odd_stage<3, INVERSE>(prime, tile, h);
        case 5:
            return odd_stage<5, INVERSE>(prime, tile, h);
        case 7:
            return odd_stage<7, INVERSE>(prime, tile, h);
    }
}

}  // namespace

void n64_odd_forward(const N64Prime& prime, unsigned m, std::uint64_t* tile, std::size_t h) {
    odd_stage<false>(prime, m, tile, h);
}

void n64_odd_inverse(const N64Prime& prime, unsigned m, std::uint64_t* tile, std::size_t h) {
    odd_stage<true>(prime, m, tile, h);
}

void n64_twist(const N64Prime& prime, std::uint64_t* x, std::size_t count, std::uint64_t root) {
    const N64Field f = prime.field;
    const N64Factor single = n64_factor(root, f.p), step = n64_factor(pow_mod(root, 4, f.p), f.p);
    // Four chains side by side: each waits for its own products.
    std::uint64_t power[4] = {prime.unit};
    for (int i = 1; i < 4; i++) power[i] = f.mul(power[i - 1], single);
    for (std::size_t c = 0; c < count; c += 4)
        for (std::size_t i = 0; i < 4; i++) {
            x[c + i] = f.mul_var(x[c + i], power[i]);
            power[i] = f.mul(power[i], step);
        }
}

}  // namespace lumo
