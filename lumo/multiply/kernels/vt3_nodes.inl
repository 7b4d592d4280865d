// Transforms of 2^levels elements of some words each. Forward by splitting rings: the node of index t splits
// x^2q - roots[t]^2 into x^q - roots[t] (index 2 t) and x^q + roots[t] (index 2 t + 1). Back by joining
// halves of the transform, bits of the places reversed: element j of both with a power of the inverse root.
// Depth first, several levels a node in registers.
//
// Bounds in the integer fields, both ways: only element 0 of a node goes through all its levels unmultiplied,
// and every output descends from it; it is brought to [7 p, 9 p), so outputs lie in [3 p, 13 p) and the other
// elements of the next node stay within [0, 16 p). In the lowest nodes on the way forward it is brought to
// [4 p, 6 p), which leaves outputs in [0, 10 p). A transform starts from pieces in [3 p, 13 p) or twisted
// elements in [3 p, 9 p).
// In the fields of doubles, p standing for 2^48, a product is at most 0.6 p and a transform starts from at
// most 3.5 p. Element 0 is brought to p / 2 in every eighth level at least: before that no more than 7 levels
// have added to what it starts from, after it no more than 11 to p / 2, so every factor stays below 8 p.

/// What becomes of element 0 of a node.
enum class First { kept, low, middle };

template <First FIRST>
[[gnu::always_inline]] inline Field::V first_element(const Field& f, Field::V a) {
    if constexpr (FIRST == First::low) return f.norm_low(a);
    if constexpr (FIRST == First::middle) return f.norm_middle(a);
    return a;
}

/// Roots of node t.
struct NodeRoots {
    const Vt3Factor* roots;
    size_t t;
    Vt3Factor get(int level, int node) const { return roots[(t << level) + size_t(node)]; }
};

/// The levels of a node, in registers. PIECES: the first root is 1, and doubles are only reduced. HALF: the
/// upper half of the elements is zero and need not be set.
template <int BITS, First FIRST, bool PIECES = false, bool HALF = false, typename Roots>
[[gnu::always_inline]] inline void forward_levels(const Field& f, Field::V* v, const Roots& roots) {
    constexpr int COUNT = 1 << BITS;
    v[0] = first_element<FIRST>(f, v[0]);
#pragma GCC unroll 4
    for (int level = 0; level < BITS; level++) {
        const int half = COUNT >> (level + 1);
#pragma GCC unroll 8
        for (int node = 0; node < (1 << level); node++) {
            const auto& root = roots.get(level, node);
#pragma GCC unroll 8
            for (int i = 0; i < half; i++) {
                Field::V& a = v[2 * half * node + i];
                Field::V& b = v[2 * half * node + i + half];
                if (HALF && level == 0) {
                    b = a;
                    continue;
                }
                const bool reduced = Field::SIGNED && PIECES && level == 0;
                const Field::V product = reduced ? f.norm(b) : f.mul_signed(b, root);
                b = Field::sub(a, product);
                a = Field::add(a, product);
            }
        }
    }
}

/// And back. Elements `step` apart in a transform, from element j on: `roots` is the table from j on. In the
/// lowest nodes, where step is 1, three of the four products of the first two levels are with 1, which
/// doubles below 0.9 p go without: they grow to 3.6 p.
template <int BITS, First FIRST, bool LOWEST>
[[gnu::always_inline]] inline void inverse_levels(const Field& f, Field::V* v, const Vt3Factor* roots,
                                                  size_t step) {
    constexpr int COUNT = 1 << BITS;
    v[0] = first_element<FIRST>(f, v[0]);
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
                const bool by_one = Field::SIGNED && LOWEST && level < 2 && i == 0;
                const Field::V product = by_one ? b : f.mul_signed(b, root);
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
template <int BITS, First FIRST, bool LOWEST, typename Place>
void forward_nodes(const Field& field, const Place& place, uint64_t* x, size_t stride, const Vt3Factor* roots,
                   size_t t, size_t count) {
    const Field f = field;
    for (; count != 0; count--, t++, x += stride << BITS)
        for (size_t e = 0; e < stride; e += Field::LANES) {
            Field::V v[1 << BITS];
            place.visit();
            InPlace().get<BITS>(f, v, x, stride, e);
            forward_levels<BITS, FIRST>(f, v, NodeRoots{roots, t});
            if constexpr (LOWEST)
                place.template put<BITS>(v, x, stride, e);
            else
                InPlace().put<BITS>(v, x, stride, e);
        }
}
/// Elements `distance` words apart, `stride` words of each.
template <int BITS, First FIRST, size_t WIDTH, bool LOWEST, typename Place>
void inverse_nodes(const Field& field, const Place& place, uint64_t* x, size_t stride, size_t distance,
                   const Vt3Factor* roots, size_t count) {
    const Field f = field;
    for (; count != 0; count--, x += distance << BITS)
        for (size_t j = 0; j < stride / WIDTH; j++)
            for (size_t e = j * WIDTH; e < (j + 1) * WIDTH; e += Field::LANES) {
                Field::V v[1 << BITS];
                place.visit();
                if constexpr (LOWEST)
                    place.template get<BITS>(f, v, x, distance, e);
                else
                    InPlace().get<BITS>(f, v, x, distance, e);
                inverse_levels<BITS, FIRST, LOWEST>(f, v, roots + j, stride / WIDTH);
                InPlace().put<BITS>(v, x, distance, e);
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

template <int BITS, First FIRST>
struct Node {
    static constexpr int bits = BITS;
    static constexpr First first = FIRST;
};

/// Calls run(Node<bits, ...>) for the node at the top of so many levels.
template <bool LOWEST = false, typename Run>
[[gnu::always_inline]] inline void for_node(unsigned levels, Run run) {
    const int bits = node_bits(levels);
    auto with_first = [&](auto first) {
        switch (bits) {
            case 1:
                return run(Node<1, first.first>());
            case 2:
                return run(Node<2, first.first>());
            case 3:
                if constexpr (Field::RADIX_BITS >= 3) return run(Node<3, first.first>());
                break;
            case 4:
                if constexpr (Field::RADIX_BITS >= 4) return run(Node<4, first.first>());
                break;
        }
    };
    constexpr First REDUCED = LOWEST ? First::low : First::middle;
    if constexpr (Field::REDUCES_ALL)
        with_first(Node<0, REDUCED>());
    else if (levels / 8 != (levels - unsigned(bits)) / 8)
        with_first(Node<0, REDUCED>());
    else
        with_first(Node<0, First::kept>());
}

/// All levels; what the lowest nodes leave goes to `place`.
template <size_t WIDTH, typename Place>
void forward_transform(const Field& f, const Place& place, uint64_t* x, unsigned levels,
                       const Vt3Factor* roots, size_t t, size_t count = 1) {
    const unsigned below = levels - unsigned(node_bits(levels));
    if (below == 0)
        return for_node<true>(levels, [&](auto n) {
            forward_nodes<n.bits, n.first, true>(f, place, x, WIDTH, roots, t, count);
        });
    for_node(levels, [&](auto n) {
        for (; count != 0; count--, t++, x += WIDTH << levels) {
            forward_nodes<n.bits, n.first, false>(f, place, x, WIDTH << below, roots, t, 1);
            forward_transform<WIDTH>(f, place, x, below, roots, t << n.bits, size_t(1) << n.bits);
        }
    });
}

/// All levels; what the lowest nodes start from comes from `place`.
template <size_t WIDTH, typename Place>
void inverse_transform(const Field& f, const Place& place, uint64_t* x, unsigned levels,
                       const Vt3Factor* roots, size_t count = 1) {
    const unsigned below = levels - unsigned(node_bits(levels));
    for_node(levels, [&](auto n) {
        if (below == 0)
            return inverse_nodes<n.bits, n.first, WIDTH, true>(f, place, x, WIDTH, WIDTH, roots, count);
        for (; count != 0; count--, x += WIDTH << levels) {
            inverse_transform<WIDTH>(f, place, x, below, roots, size_t(1) << n.bits);
            inverse_nodes<n.bits, n.first, WIDTH, false>(f, place, x, WIDTH << below, WIDTH << below, roots,
                                                         1);
        }
    });
}
