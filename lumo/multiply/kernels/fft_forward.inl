// Forward transforms of length 2^d by ring splitting: a block of index p belongs to x^L = s_p^2 and splits
// into x^(L/2) = s_p (index 2p) and -s_p (index 2p + 1); s_(2p+1) = i s_(2p). roots[p] is s_p; s_0 = 1.
// Radix-4 and radix-16 nodes are two and four such layers. Nodes read rows at a distance of `step` doubles.

[[gnu::always_inline]] inline void split4(C& a, C& b, C& c, C& d, const C& w1, const C& w2) {
    turn(a, c, w1);
    turn(b, d, w1);
    turn(a, b, w2);
    turn_i(c, d, w2);
}
// The same for p = 0.
[[gnu::always_inline]] inline void split4(C& a, C& b, C& c, C& d) {
    cross(a, c);
    cross(b, d);
    cross(a, b);
    cross_i(c, d);
}

template <bool unit>
[[gnu::always_inline]] inline void split16(C (&z)[16], const double* roots, size_t p) {
    if constexpr (unit) {
#pragma GCC unroll 4
        for (int i = 0; i < 4; i++) split4(z[i], z[i + 4], z[i + 8], z[i + 12]);
    } else {
        const C w1 = root(roots + 2 * p), w2 = root(roots + 4 * p);
#pragma GCC unroll 4
        for (int i = 0; i < 4; i++) split4(z[i], z[i + 4], z[i + 8], z[i + 12], w1, w2);
    }
#pragma GCC unroll 4
    for (int j = 0; j < 4; j++) {
        C &a = z[4 * j], &b = z[4 * j + 1], &c = z[4 * j + 2], &d = z[4 * j + 3];
        if (unit && j == 0)
            split4(a, b, c, d);
        else
            split4(a, b, c, d, root(roots + 8 * p + 2 * j), root(roots + 16 * p + 4 * j));
    }
}

template <bool unit>
inline void node4(const double* in, size_t in_step, double* out, size_t out_step, size_t p,
                  const double* roots, size_t columns) {
    const C w1 = root(roots + 2 * p), w2 = root(roots + 4 * p);
    for (const double* end = in + FFT_VECTOR * columns; in < end; in += FFT_VECTOR, out += FFT_VECTOR)
        for (int h = 0; h < 8; h += LANES) {
            const double* x = in + h;
            double* y = out + h;
            C a = load(x), b = load(x + in_step), c = load(x + 2 * in_step), d = load(x + 3 * in_step);
            if constexpr (unit)
                split4(a, b, c, d);
            else
                split4(a, b, c, d, w1, w2);
            store(y, a);
            store(y + out_step, b);
            store(y + 2 * out_step, c);
            store(y + 3 * out_step, d);
        }
}

template <bool unit>
[[gnu::always_inline]] inline void column16(const double* in, size_t in_step, double* out, size_t out_step,
                                            size_t p, const double* roots) {
    for (int h = 0; h < 8; h += LANES) {
        C z[16];
#pragma GCC unroll 16
        for (size_t i = 0; i < 16; i++) z[i] = load(in + i * in_step + h);
        split16<unit>(z, roots, p);
#pragma GCC unroll 16
        for (size_t i = 0; i < 16; i++) store(out + i * out_step + h, z[i]);
    }
}

template <bool unit>
inline void node16(const double* in, size_t in_step, double* out, size_t out_step, size_t p,
                   const double* roots, size_t columns) {
    for (const double* end = in + FFT_VECTOR * columns; in < end; in += FFT_VECTOR, out += FFT_VECTOR)
        column16<unit>(in, in_step, out, out_step, p, roots);
}

// Three layers of 8 rows.
[[gnu::always_inline]] inline void column8(double* x, size_t step, size_t p, const double* roots) {
    for (int h = 0; h < 8; h += LANES) {
        C z[8];
#pragma GCC unroll 8
        for (size_t i = 0; i < 8; i++) z[i] = load(x + step * i + h);
        const C w1 = root(roots + 2 * p), w2 = root(roots + 4 * p);
        split4(z[0], z[2], z[4], z[6], w1, w2);
        split4(z[1], z[3], z[5], z[7], w1, w2);
        const C w3 = root(roots + 8 * p), w4 = root(roots + 8 * p + 4);
        turn(z[0], z[1], w3);
        turn_i(z[2], z[3], w3);
        turn(z[4], z[5], w4);
        turn_i(z[6], z[7], w4);
#pragma GCC unroll 8
        for (size_t i = 0; i < 8; i++) store(x + step * i + h, z[i]);
    }
}

inline void node8(double* x, size_t step, size_t p, const double* roots, size_t columns) {
    for (const double* end = x + FFT_VECTOR * columns; x < end; x += FFT_VECTOR) column8(x, step, p, roots);
}

constexpr bool WIDE = LANES == 8;

// How many layers a node takes. Narrow vectors have registers for two. Wide ones have them for four, but rows
// that lie 4 KB or more apart share a set of the first cache, and it holds only 12 of them: those nodes take
// three.
inline unsigned layers_at(unsigned depth) {
    if (!WIDE || depth == 5 || depth == 6) return 2;
    return depth <= 8 ? 4 : 3;
}

// The first layers of a block of depth >= 5, in place.
inline void split_block(double* x, unsigned depth, size_t p, const double* roots) {
    const unsigned layers = layers_at(depth);
    const size_t part = size_t(1) << (depth - layers), step = FFT_VECTOR * part;
    if (layers == 4)
        node16<false>(x, step, x, step, p, roots, part);
    else if (layers == 3)
        node8(x, step, p, roots, part);
    else
        node4<false>(x, step, x, step, p, roots, part);
}

// A block that is small enough to go in one step.
constexpr unsigned LEAF_DEPTH = 4;

inline void split_leaf(double* x, unsigned depth, size_t p, const double* roots) {
    if (depth == 3) {
        column8(x, FFT_VECTOR, p, roots);
    } else if constexpr (WIDE) {
        column16<false>(x, FFT_VECTOR, x, FFT_VECTOR, p, roots);
    } else {
        node4<false>(x, 4 * FFT_VECTOR, x, 4 * FFT_VECTOR, p, roots, 4);
        for (size_t j = 0; j < 4; j++)
            node4<false>(x + 4 * FFT_VECTOR * j, FFT_VECTOR, x + 4 * FFT_VECTOR * j, FFT_VECTOR, 4 * p + j,
                         roots, 1);
    }
}

void forward_block(double* x, unsigned depth, size_t p, const double* roots) {
    if (depth <= LEAF_DEPTH) return split_leaf(x, depth, p, roots);
    split_block(x, depth, p, roots);
    const unsigned layers = layers_at(depth);
    for (size_t j = 0; j < size_t(1) << layers; j++)
        forward_block(x + (FFT_VECTOR << (depth - layers)) * j, depth - layers, (p << layers) + j, roots);
}

void forward_node(double* x, size_t quarter, size_t p, const double* roots, size_t from, size_t to) {
    const size_t step = FFT_VECTOR * quarter;
    double* y = x + FFT_VECTOR * from;
    if (p == 0)
        node4<true>(y, step, y, step, p, roots, to - from);
    else
        node4<false>(y, step, y, step, p, roots, to - from);
}

// The topmost layers: 2^layers rows of a tile, index p, to rows of the array at a distance of `step`.
template <bool unit>
void tile_forward(double* tile, double* x, size_t step, unsigned layers, size_t p, const double* roots) {
    if (layers == 0) {
        __builtin_memcpy(x, tile, FFT_TILE_ROW * sizeof(double));
    } else if (layers == 2) {
        node4<unit>(tile, FFT_TILE_ROW, x, step, p, roots, FFT_COLUMNS);
    } else if (WIDE && layers == 4) {
        node16<unit>(tile, FFT_TILE_ROW, x, step, p, roots, FFT_COLUMNS);
    } else {
        const size_t rows = size_t(1) << (layers - 2), quarter = FFT_TILE_ROW * rows;
        node4<unit>(tile, quarter, tile, quarter, p, roots, FFT_COLUMNS * rows);
        tile_forward<unit>(tile, x, step, layers - 2, 4 * p, roots);
        for (size_t j = 1; j < 4; j++)
            tile_forward<false>(tile + quarter * j, x + step * rows * j, step, layers - 2, 4 * p + j, roots);
    }
}
