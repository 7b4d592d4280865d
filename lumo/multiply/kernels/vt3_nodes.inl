// Transforms of 2^levels elements of some words each, by splitting rings: the node of index t splits
// x^2q - roots[t]^2 into x^q - roots[t] (index 2 t) and x^q + roots[t] (index 2 t + 1). Depth first, several
// levels a node in registers.
//
// Bounds in the integer fields. Forward: only element 0 of a node goes through all its levels unmultiplied,
// and every output descends from it; it is brought to [7 p, 9 p), so outputs lie in [3 p, 13 p) and the other
// elements of the next node stay within [0, 16 p). Inverse: inputs below 4 p; sums are reduced after two
// levels where they would pass 16 p, and outputs brought below 4 p again.
// In the fields of doubles a product is at most 0.6 p, and the same reductions keep every factor below 10 p.

/// The levels of a node, in registers. HALF: the upper half of the elements is zero and need not be set.
template <int BITS, bool HALF = false>
[[gnu::always_inline]] inline void forward_levels(const Field& f, Field::V* v, const Vt3Factor* roots,
                                                  size_t t) {
    constexpr int COUNT = 1 << BITS;
    v[0] = f.norm_middle(v[0]);
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

/// And back: elements below 16 p come out.
template <int BITS>
[[gnu::always_inline]] inline void inverse_levels(const Field& f, Field::V* v, const Vt3Factor* roots,
                                                  size_t t) {
    constexpr int COUNT = 1 << BITS;
#pragma GCC unroll 4
    for (int level = BITS - 1; level >= 0; level--) {
        const int half = COUNT >> (level + 1);
        if (half == 4) {
#pragma GCC unroll 4
            for (int i = 0; i < COUNT; i += 4) v[i] = f.norm(v[i]);
        }
#pragma GCC unroll 8
        for (int node = 0; node < (1 << level); node++) {
            const Vt3Factor root = roots[(t << level) + size_t(node)];
#pragma GCC unroll 8
            for (int i = 0; i < half; i++) {
                Field::V& a = v[2 * half * node + i];
                Field::V& b = v[2 * half * node + i + half];
                const Field::V difference = f.sub_lifted(a, b);
                a = Field::add(a, b);
                b = f.mul(difference, root);
            }
        }
    }
}

/// Brings what inverse_levels() left below 4 p.
template <int BITS>
[[gnu::always_inline]] inline void settle(const Field& f, Field::V* v) {
    v[0] = f.norm(v[0]);
    if (BITS >= 3) v[1] = f.norm(v[1]);
    if (BITS >= 4) {
        v[2] = f.norm(v[2]);
        v[3] = f.norm(v[3]);
    }
}

/// Where the elements of the lowest nodes come from or go to when that is their own place.
struct InPlace {
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
struct ForwardNode {
    template <int BITS, typename Place>
    static void run(const Field& field, const Place& place, uint64_t* x, size_t stride,
                    const Vt3Factor* roots, size_t t, size_t count) {
        const Field f = field;
        for (; count != 0; count--, t++, x += stride << BITS)
            for (size_t e = 0; e < stride; e += Field::LANES) {
                Field::V v[1 << BITS];
                InPlace().get<BITS>(f, v, x, stride, e);
                forward_levels<BITS>(f, v, roots, t);
                place.template put<BITS>(v, x, stride, e);
            }
    }
};
struct InverseNode {
    template <int BITS, typename Place>
    static void run(const Field& field, const Place& place, uint64_t* x, size_t stride,
                    const Vt3Factor* roots, size_t t, size_t count) {
        const Field f = field;
        for (; count != 0; count--, t++, x += stride << BITS)
            for (size_t e = 0; e < stride; e += Field::LANES) {
                Field::V v[1 << BITS];
                place.template get<BITS>(f, v, x, stride, e);
                inverse_levels<BITS>(f, v, roots, t);
                settle<BITS>(f, v);
                InPlace().put<BITS>(v, x, stride, e);
            }
    }
};

/// Levels of the topmost node of a transform.
inline int node_bits(unsigned levels) {
    constexpr unsigned MOST = Field::RADIX_BITS;
    if (levels <= MOST) return int(levels);
    const unsigned rest = levels % MOST;
    if (rest == 0) return int(MOST);
    return int(MOST == 4 && rest == 1 ? 2 : rest);
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

template <typename Node, typename Place>
inline void nodes(const Field& f, const Place& place, uint64_t* x, unsigned bits, size_t stride,
                  const Vt3Factor* roots, size_t t, size_t count) {
    for_bits(int(bits), [&](auto b) { Node::template run<b.value>(f, place, x, stride, roots, t, count); });
}

/// All levels; what the lowest nodes leave goes to `place`.
template <size_t WIDTH, typename Place>
void forward_transform(const Field& f, const Place& place, uint64_t* x, unsigned levels,
                       const Vt3Factor* roots, size_t t, size_t count = 1) {
    if (levels <= unsigned(Field::RADIX_BITS))
        return nodes<ForwardNode>(f, place, x, levels, WIDTH, roots, t, count);
    const int bits = node_bits(levels);
    const unsigned below = levels - unsigned(bits);
    for (; count != 0; count--, t++, x += WIDTH << levels) {
        nodes<ForwardNode>(f, InPlace(), x, unsigned(bits), WIDTH << below, roots, t, 1);
        forward_transform<WIDTH>(f, place, x, below, roots, t << bits, size_t(1) << bits);
    }
}

/// All levels; what the lowest nodes start from comes from `place`.
template <size_t WIDTH, typename Place>
void inverse_transform(const Field& f, const Place& place, uint64_t* x, unsigned levels,
                       const Vt3Factor* roots, size_t t, size_t count = 1) {
    if (levels <= unsigned(Field::RADIX_BITS))
        return nodes<InverseNode>(f, place, x, levels, WIDTH, roots, t, count);
    const int bits = node_bits(levels);
    const unsigned below = levels - unsigned(bits);
    for (; count != 0; count--, t++, x += WIDTH << levels) {
        inverse_transform<WIDTH>(f, place, x, below, roots, t << bits, size_t(1) << bits);
        nodes<InverseNode>(f, InPlace(), x, unsigned(bits), WIDTH << below, roots, t, 1);
    }
}
