// Transforms of 2^levels elements of some words each, by splitting rings: the node of index t splits
// x^2q - roots[t]^2 into x^q - roots[t] (index 2 t) and x^q + roots[t] (index 2 t + 1). Depth first, several
// levels a node in registers.
//
// Bounds in the integer fields. Forward: only element 0 of a node goes through all its levels unmultiplied,
// and every output descends from it; it is brought to [7 p, 9 p), so outputs lie in [3 p, 13 p) and the other
// elements of the next node stay within [0, 16 p). Inverse: inputs below 4 p; sums are reduced after two
// levels where they would pass 16 p, and outputs brought below 4 p again.
// In the fields of doubles a product is at most 0.6 p, and the same reductions keep every factor below 10 p.

template <int BITS>
inline void forward_node(const Field& f, uint64_t* x, size_t stride, const Vt3Factor* roots, size_t t) {
    constexpr int COUNT = 1 << BITS;
    for (size_t e = 0; e < stride; e += Field::LANES) {
        Field::V v[COUNT];
#pragma GCC unroll 16
        for (int i = 0; i < COUNT; i++) v[i] = Field::load(x + size_t(i) * stride + e);
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
                    const Field::V product = f.mul_signed(b, root);
                    b = Field::sub(a, product);
                    a = Field::add(a, product);
                }
            }
        }
#pragma GCC unroll 16
        for (int i = 0; i < COUNT; i++) Field::store(x + size_t(i) * stride + e, v[i]);
    }
}

template <int BITS>
inline void inverse_node(const Field& f, uint64_t* x, size_t stride, const Vt3Factor* roots, size_t t) {
    constexpr int COUNT = 1 << BITS;
    for (size_t e = 0; e < stride; e += Field::LANES) {
        Field::V v[COUNT];
#pragma GCC unroll 16
        for (int i = 0; i < COUNT; i++) v[i] = Field::load(x + size_t(i) * stride + e);
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
        v[0] = f.norm(v[0]);
        if (BITS >= 3) v[1] = f.norm(v[1]);
        if (BITS >= 4) {
            v[2] = f.norm(v[2]);
            v[3] = f.norm(v[3]);
        }
#pragma GCC unroll 16
        for (int i = 0; i < COUNT; i++) Field::store(x + size_t(i) * stride + e, v[i]);
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

struct ForwardNode {
    template <int BITS>
    static void run(const Field& f, uint64_t* x, size_t stride, const Vt3Factor* roots, size_t t) {
        forward_node<BITS>(f, x, stride, roots, t);
    }
};
struct InverseNode {
    template <int BITS>
    static void run(const Field& f, uint64_t* x, size_t stride, const Vt3Factor* roots, size_t t) {
        inverse_node<BITS>(f, x, stride, roots, t);
    }
};

/// `count` neighbouring nodes of the same size.
template <typename Node>
inline void nodes(const Field& f, uint64_t* x, int bits, size_t stride, const Vt3Factor* roots, size_t t,
                  size_t count) {
    const size_t step = stride << bits;
    for (size_t i = 0; i < count; i++, x += step, t++) switch (bits) {
            case 1:
                Node::template run<1>(f, x, stride, roots, t);
                break;
            case 2:
                Node::template run<2>(f, x, stride, roots, t);
                break;
            case 3:
                if constexpr (Field::RADIX_BITS >= 3) Node::template run<3>(f, x, stride, roots, t);
                break;
            case 4:
                if constexpr (Field::RADIX_BITS >= 4) Node::template run<4>(f, x, stride, roots, t);
                break;
        }
}

/// Nodes at the bottom: the stride is a constant.
template <typename Node, size_t WIDTH>
inline void leaves(const Field& f, uint64_t* x, unsigned bits, const Vt3Factor* roots, size_t t,
                   size_t count) {
    nodes<Node>(f, x, int(bits), WIDTH, roots, t, count);
}

template <size_t WIDTH>
void forward_transform(const Field& f, uint64_t* x, unsigned levels, const Vt3Factor* roots, size_t t) {
    if (levels <= unsigned(Field::RADIX_BITS)) return leaves<ForwardNode, WIDTH>(f, x, levels, roots, t, 1);
    const int bits = node_bits(levels);
    const unsigned below = levels - unsigned(bits);
    const size_t stride = WIDTH << below, count = size_t(1) << bits;
    nodes<ForwardNode>(f, x, bits, stride, roots, t, 1);
    if (below <= unsigned(Field::RADIX_BITS))
        return leaves<ForwardNode, WIDTH>(f, x, below, roots, t << bits, count);
    for (size_t i = 0; i < count; i++)
        forward_transform<WIDTH>(f, x + i * stride, below, roots, (t << bits) + i);
}

template <size_t WIDTH>
void inverse_transform(const Field& f, uint64_t* x, unsigned levels, const Vt3Factor* roots, size_t t) {
    if (levels <= unsigned(Field::RADIX_BITS)) return leaves<InverseNode, WIDTH>(f, x, levels, roots, t, 1);
    const int bits = node_bits(levels);
    const unsigned below = levels - unsigned(bits);
    const size_t stride = WIDTH << below, count = size_t(1) << bits;
    if (below <= unsigned(Field::RADIX_BITS))
        leaves<InverseNode, WIDTH>(f, x, below, roots, t << bits, count);
    else
        for (size_t i = 0; i < count; i++)
            inverse_transform<WIDTH>(f, x + i * stride, below, roots, (t << bits) + i);
    nodes<InverseNode>(f, x, bits, stride, roots, t, 1);
}
