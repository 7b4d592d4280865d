// Transforms of 2^levels elements of some words each. Forward by splitting rings: the node of index t splits
// x^2q - roots[t]^2 into x^q - roots[t] (index 2 t) and x^q + roots[t] (index 2 t + 1). Back by joining
// halves of the transform, bits of the places reversed: element j of both with a power of the inverse root.
// Depth first, several levels a node in registers.
//
// Bounds in the integer fields, both ways: only element 0 of a node goes through all its levels unmultiplied,
// and every output descends from it; it is brought to [7 p, 9 p), so outputs lie in [3 p, 13 p) and the other
// elements of the next node stay within [0, 16 p). In the lowest nodes on the way forward it is brought to
// [4 p, 6 p), which leaves outputs in [0, 10 p).
// In the fields of doubles a product is at most 0.6 p, and the same reductions keep every factor below 10 p.

/// The levels of a node, in registers. HALF: the upper half of the elements is zero and need not be set.
template <int BITS, bool HALF = false, bool LOWEST = false>
[[gnu::always_inline]] inline void forward_levels(const Field& f, Field::V* v, const Vt3Factor* roots,
                                                  size_t t) {
    constexpr int COUNT = 1 << BITS;
    v[0] = LOWEST ? f.norm_low(v[0]) : f.norm_middle(v[0]);
#pragma GCC unroll 4
    for (int level = 0; level < BITS; level++) {
        const int half = COUNT >> (level + 1);
#pragma GCC unroll 8
        for (int node = 0; node < (1 << level); node++) {
            const Vt3Factor root = roots[(t << level) + size_t(node)];
#pragma GCC unroll 8
            for (int i = 0; i < half; i++) {
                Field::V& a = v[2 * half * node + i];
                Field::V& b = v[2 * half * node + i + half];
                if (HALF && level == 0) {
                    b = a;
                    continue;
                }
                const Field::V product = f.mul_signed(b, root);
                b = Field::sub(a, product);
                a = Field::add(a, product);
            }
        }
    }
}

/// And back. Elements `step` apart in a transform, from element j on: `roots` is the table from j on.
template <int BITS>
[[gnu::always_inline]] inline void inverse_levels(const Field& f, Field::V* v, const Vt3Factor* roots,
                                                  size_t step) {
    constexpr int COUNT = 1 << BITS;
    v[0] = f.norm_middle(v[0]);
#pragma GCC unroll 4
    for (int level = 0; level < BITS; level++) {
        const int half = 1 << level;
#pragma GCC unroll 8
        for (int i = 0; i < half; i++) {
            const Vt3Factor root = roots[size_t(half + i) * step];
#pragma GCC unroll 8
            for (int node = 0; node < (COUNT >> (level + 1)); node++) {
                Field::V& a = v[2 * half * node + i];
                Field::V& b = v[2 * half * node + i + half];
                const Field::V product = f.mul_signed(b, root);
                b = Field::sub(a, product);
                a = Field::add(a, product);
            }
        }
    }
}

/// Where the elements of the lowest nodes come from or go to when that is their own place. visit() is called
/// once a node.
struct InPlace {
    [[gnu::always_inline]] void visit() const {}
    template <int BITS>
    [[gnu::always_inline]] void get(const Field&, Field::V* v, const uint64_t* x, size_t stride,
                                    size_t e) const {
#pragma GCC unroll 16
        for (int i = 0; i < (1 << BITS); i++) v[i] = Field::load(x + size_t(i) * stride + e);
    }
    template <int BITS>
    [[gnu::always_inline]] void put(Field::V* v, uint64_t* x, size_t stride, size_t e) const {
#pragma GCC unroll 16
        for (int i = 0; i < (1 << BITS); i++) Field::store(x + size_t(i) * stride + e, v[i]);
    }
};

/// Neighbouring nodes of one size; the constants of the field stay in registers.
template <int BITS, bool LOWEST, typename Place>
void forward_nodes(const Field& field, const Place& place, uint64_t* x, size_t stride, const Vt3Factor* roots,
                   size_t t, size_t count) {
    const Field f = field;
    for (; count != 0; count--, t++, x += stride << BITS)
        for (size_t e = 0; e < stride; e += Field::LANES) {
            Field::V v[1 << BITS];
            place.visit();
            InPlace().get<BITS>(f, v, x, stride, e);
            forward_levels<BITS, false, LOWEST>(f, v, roots, t);
            if constexpr (LOWEST)
                place.template put<BITS>(v, x, stride, e);
            else
                InPlace().put<BITS>(v, x, stride, e);
        }
}
template <int BITS, size_t WIDTH, bool LOWEST, typename Place>
void inverse_nodes(const Field& field, const Place& place, uint64_t* x, size_t stride, const Vt3Factor* roots,
                   size_t count) {
    const Field f = field;
    for (; count != 0; count--, x += stride << BITS)
        for (size_t j = 0; j < stride / WIDTH; j++)
            for (size_t e = j * WIDTH; e < (j + 1) * WIDTH; e += Field::LANES) {
                Field::V v[1 << BITS];
                place.visit();
                if constexpr (LOWEST)
                    place.template get<BITS>(f, v, x, stride, e);
                else
                    InPlace().get<BITS>(f, v, x, stride, e);
                inverse_levels<BITS>(f, v, roots + j, stride / WIDTH);
                InPlace().put<BITS>(v, x, stride, e);
            }
}

/// Levels of the topmost node of a transform.
inline int node_bits(unsigned levels) {
    constexpr unsigned MOST = Field::RADIX_BITS;
    if (levels <= MOST) return int(levels);
    const unsigned rest = levels % MOST;
    if (rest == 0) return int(MOST);
    return int(MOST == 4 && rest == 1 ? 2 : rest);
}

/// Nodes of a transform, for one vector of elements.
inline size_t all_nodes(unsigned levels) {
    size_t nodes = 0;
    for (unsigned left = levels; left != 0; left -= unsigned(node_bits(left)))
        nodes += size_t(1) << (levels - unsigned(node_bits(left)));
    return nodes;
}

template <int BITS>
struct Bits {
    static constexpr int value = BITS;
};

/// Calls run(Bits<bits>).
template <typename Run>
[[gnu::always_inline]] inline void for_bits(int bits, Run run) {
    switch (bits) {
        case 1:
            return run(Bits<1>());
        case 2:
            return run(Bits<2>());
        case 3:
            if constexpr (Field::RADIX_BITS >= 3) return run(Bits<3>());
            break;
        case 4:
            if constexpr (Field::RADIX_BITS >= 4) return run(Bits<4>());
            break;
    }
}

/// All levels; what the lowest nodes leave goes to `place`.
template <size_t WIDTH, typename Place>
void forward_transform(const Field& f, const Place& place, uint64_t* x, unsigned levels,
                       const Vt3Factor* roots, size_t t, size_t count = 1) {
    const int bits = node_bits(levels);
    const unsigned below = levels - unsigned(bits);
    for_bits(bits, [&](auto b) {
        if (below == 0) return forward_nodes<b.value, true>(f, place, x, WIDTH, roots, t, count);
        for (; count != 0; count--, t++, x += WIDTH << levels) {
            forward_nodes<b.value, false>(f, place, x, WIDTH << below, roots, t, 1);
            forward_transform<WIDTH>(f, place, x, below, roots, t << bits, size_t(1) << bits);
        }
    });
}

/// All levels; what the lowest nodes start from comes from `place`.
template <size_t WIDTH, typename Place>
void inverse_transform(const Field& f, const Place& place, uint64_t* x, unsigned levels,
                       const Vt3Factor* roots, size_t count = 1) {
    const int bits = node_bits(levels);
    const unsigned below = levels - unsigned(bits);
    for_bits(bits, [&](auto b) {
        if (below == 0) return inverse_nodes<b.value, WIDTH, true>(f, place, x, WIDTH, roots, count);
        for (; count != 0; count--, x += WIDTH << levels) {
            inverse_transform<WIDTH>(f, place, x, below, roots, size_t(1) << bits);
            inverse_nodes<b.value, WIDTH, false>(f, place, x, WIDTH << below, roots, 1);
        }
    });
}
