// Inverse transforms of length 2^d: the points come in bit-reversed order and the elements leave in natural
// order, so each join multiplies its second half by roots that run with the element, before it adds. The
// pointwise product is taken as the leaves load.

[[gnu::always_inline]] inline void join4(C& a, C& b, C& c, C& d, const C& u, const C& v) {
    turn_conj(a, b, u);
    turn_conj(c, d, u);
    turn_conj(a, c, v);
    turn_conj_i(b, d, v);
}
// The same for element 0.
[[gnu::always_inline]] inline void join4(C& a, C& b, C& c, C& d) {
    cross(a, b);
    cross(c, d);
    cross(a, c);
    cross_conj_i(b, d);
}

// Columns i of four rows, joined with entry i of the table of a node.
inline void join_node4(const double* in, size_t in_step, double* out, size_t out_step, const double* tw,
                       size_t columns) {
    for (size_t i = 0; i < columns; i++) {
        const C u = root(tw + 4 * i), v = root(tw + 4 * i + 2);
        for (int h = 0; h < 8; h += LANES) {
            const double* x = in + FFT_VECTOR * i + h;
            double* y = out + FFT_VECTOR * i + h;
            C a = load(x), b = load(x + in_step), c = load(x + 2 * in_step), d = load(x + 3 * in_step);
            join4(a, b, c, d, u, v);
            store(y, a);
            store(y + out_step, b);
            store(y + 2 * out_step, c);
            store(y + 3 * out_step, d);
        }
    }
}

// Columns i of 16 rows of a node with `part` columns in all: joined by fours with entry i of the inner table,
// then across the fours with entries i + j part of the outer one. Tables are given from the first column on.
inline void join_node16(const double* in, size_t in_step, double* out, size_t out_step, const double* inner,
                        const double* outer, size_t part, size_t columns) {
    for (size_t i = 0; i < columns; i++, inner += 4, outer += 4)
        for (int h = 0; h < 8; h += LANES) {
            const double* x = in + FFT_VECTOR * i + h;
            double* y = out + FFT_VECTOR * i + h;
            C z[16];
#pragma GCC unroll 4
            for (size_t s = 0; s < 4; s++) {
#pragma GCC unroll 4
                for (size_t r = 4 * s; r < 4 * s + 4; r++) z[r] = load(x + r * in_step);
                join4(z[4 * s], z[4 * s + 1], z[4 * s + 2], z[4 * s + 3], root(inner), root(inner + 2));
            }
#pragma GCC unroll 4
            for (size_t j = 0; j < 4; j++) {
                const double* w = outer + 4 * part * j;
                join4(z[j], z[j + 4], z[j + 8], z[j + 12], root(w), root(w + 2));
#pragma GCC unroll 4
                for (size_t s = 0; s < 16; s += 4) store(y + (s + j) * out_step, z[s + j]);
            }
        }
}

// 8 rows of a node of 2^depth elements, in place.
inline void join_node8(double* x, size_t part, const double* inner, const double* outer) {
    const size_t step = FFT_VECTOR * part;
    for (size_t i = 0; i < part; i++, x += FFT_VECTOR, inner += 4, outer += 4) {
        const C u2 = root(inner), u4 = root(inner + 2), v = root(outer + 2), v8 = root(outer + 4 * part + 2);
        for (int h = 0; h < 8; h += LANES) {
            C z[8];
#pragma GCC unroll 8
            for (size_t r = 0; r < 8; r++) z[r] = load(x + step * r + h);
            join4(z[0], z[1], z[2], z[3], u2, u4);
            join4(z[4], z[5], z[6], z[7], u2, u4);
            turn_conj(z[0], z[4], v);
            turn_conj(z[1], z[5], v8);
            turn_conj_i(z[2], z[6], v);
            turn_conj_i(z[3], z[7], v8);
#pragma GCC unroll 8
            for (size_t r = 0; r < 8; r++) store(x + step * r + h, z[r]);
        }
    }
}

template <bool square>
[[gnu::always_inline]] inline C product(const double* f, const double* g) {
    const C a = load(f);
    if constexpr (square) {
        const V twice = a.re + a.re;
        return {fnma(a.im, a.im, a.re * a.re), twice * a.im};
    } else {
        return mul(a, load(g));
    }
}

template <bool square>
inline void inverse_leaf3(double* x, const double* f, const double* g, const double* eighth) {
    for (int h = 0; h < 8; h += LANES) {
        C z[8];
#pragma GCC unroll 8
        for (int i = 0; i < 8; i++) z[i] = product<square>(f + FFT_VECTOR * i + h, g + FFT_VECTOR * i + h);
        join4(z[0], z[1], z[2], z[3]);
        join4(z[4], z[5], z[6], z[7]);
        const C w = root(eighth);
        cross(z[0], z[4]);
        turn_conj(z[1], z[5], w);
        cross_conj_i(z[2], z[6]);
        turn_conj_i(z[3], z[7], w);
#pragma GCC unroll 8
        for (int i = 0; i < 8; i++) store(x + FFT_VECTOR * i + h, z[i]);
    }
}

template <bool square>
inline void inverse_leaf4(double* x, const double* f, const double* g, const double* tw) {
    for (int h = 0; h < 8; h += LANES) {
        C z[16];
#pragma GCC unroll 4
        for (int s = 0; s < 16; s += 4) {
#pragma GCC unroll 4
            for (int i = s; i < s + 4; i++)
                z[i] = product<square>(f + FFT_VECTOR * i + h, g + FFT_VECTOR * i + h);
            join4(z[s], z[s + 1], z[s + 2], z[s + 3]);
        }
        join4(z[0], z[4], z[8], z[12]);
#pragma GCC unroll 3
        for (int i = 1; i < 4; i++)
            join4(z[i], z[i + 4], z[i + 8], z[i + 12], root(tw + 4 * i), root(tw + 4 * i + 2));
#pragma GCC unroll 16
        for (int i = 0; i < 16; i++) store(x + FFT_VECTOR * i + h, z[i]);
    }
}

template <bool square>
inline void inverse_leaf2(double* x, const double* f, const double* g) {
    for (int h = 0; h < 8; h += LANES) {
        C z[4];
#pragma GCC unroll 4
        for (int i = 0; i < 4; i++) z[i] = product<square>(f + FFT_VECTOR * i + h, g + FFT_VECTOR * i + h);
        join4(z[0], z[1], z[2], z[3]);
#pragma GCC unroll 4
        for (int i = 0; i < 4; i++) store(x + FFT_VECTOR * i + h, z[i]);
    }
}

template <bool square>
inline void join_leaf(double* x, const double* f, const double* g, unsigned depth,
                      const double* const* nodes) {
    if (depth == 3) {
        inverse_leaf3<square>(x, f, g, nodes[3]);
    } else if constexpr (WIDE) {
        inverse_leaf4<square>(x, f, g, nodes[4]);
    } else {
        for (size_t j = 0; j < 16; j += 4)
            inverse_leaf2<square>(x + FFT_VECTOR * j, f + FFT_VECTOR * j, g + FFT_VECTOR * j);
        join_node4(x, 4 * FFT_VECTOR, x, 4 * FFT_VECTOR, nodes[4], 4);
    }
}

// The last layers of a block of depth >= 5, in place.
inline void join_block(double* x, unsigned depth, const double* const* nodes) {
    const unsigned layers = layers_at(depth);
    const size_t part = size_t(1) << (depth - layers), step = FFT_VECTOR * part;
    if (layers == 4)
        join_node16(x, step, x, step, nodes[depth - 2], nodes[depth], part, part);
    else if (layers == 3)
        join_node8(x, part, nodes[depth - 1], nodes[depth]);
    else
        join_node4(x, step, x, step, nodes[depth], part);
}

template <bool square>
void inverse_tree(double* out, const double* f, const double* g, unsigned depth, const double* const* nodes) {
    if (depth <= LEAF_DEPTH) return join_leaf<square>(out, f, g, depth, nodes);
    const unsigned layers = layers_at(depth);
    const size_t step = FFT_VECTOR << (depth - layers);
    for (size_t j = 0; j < size_t(1) << layers; j++)
        inverse_tree<square>(out + step * j, f + step * j, g + step * j, depth - layers, nodes);
    join_block(out, depth, nodes);
}

// Both ways at once: each part of a block is split, multiplied and joined before the next one is touched.
template <bool square>
void multiply_tree(double* a, double* b, unsigned depth, size_t p, const double* roots,
                   const double* const* nodes) {
    if (depth <= LEAF_DEPTH) {
        split_leaf(a, depth, p, roots);
        if constexpr (!square) split_leaf(b, depth, p, roots);
        return join_leaf<square>(a, a, b, depth, nodes);
    }
    split_block(a, depth, p, roots);
    if constexpr (!square) split_block(b, depth, p, roots);
    const unsigned layers = layers_at(depth);
    const size_t step = FFT_VECTOR << (depth - layers);
    for (size_t j = 0; j < size_t(1) << layers; j++)
        multiply_tree<square>(a + step * j, b + step * j, depth - layers, (p << layers) + j, roots, nodes);
    join_block(a, depth, nodes);
}

void multiply_block(double* a, double* b, unsigned depth, size_t p, const double* roots,
                    const double* const* nodes) {
    if (a == b)
        multiply_tree<true>(a, a, depth, p, roots, nodes);
    else
        multiply_tree<false>(a, b, depth, p, roots, nodes);
}

void inverse_block(double* out, const double* f, const double* g, unsigned depth,
                   const double* const* nodes) {
    if (f == g)
        inverse_tree<true>(out, f, g, depth, nodes);
    else
        inverse_tree<false>(out, f, g, depth, nodes);
}

void inverse_node(double* x, size_t quarter, const double* tw, size_t from, size_t to) {
    double* y = x + FFT_VECTOR * from;
    join_node4(y, FFT_VECTOR * quarter, y, FFT_VECTOR * quarter, tw + 4 * from, to - from);
}

// The topmost layers undone: rows of the array at a distance of `step`, which is one of 2^(depth - layers)
// elements, to 2^layers rows of a tile whose columns start at column i.
void tile_inverse(const double* x, size_t step, double* tile, unsigned layers, unsigned depth,
                  const double* const* nodes, size_t i) {
    const size_t columns = size_t(1) << (depth - layers);
    if (layers == 0) {
        __builtin_memcpy(tile, x, FFT_TILE_ROW * sizeof(double));
    } else if (layers == 2) {
        join_node4(x, step, tile, FFT_TILE_ROW, nodes[depth] + 4 * i, FFT_COLUMNS);
    } else if (WIDE && layers == 4) {
        join_node16(x, step, tile, FFT_TILE_ROW, nodes[depth - 2] + 4 * i, nodes[depth] + 4 * i, columns,
                    FFT_COLUMNS);
    } else {
        const size_t rows = size_t(1) << (layers - 2), quarter = FFT_TILE_ROW * rows;
        for (size_t j = 0; j < 4; j++)
            tile_inverse(x + step * rows * j, step, tile + quarter * j, layers - 2, depth - 2, nodes, i);
        for (size_t r = 0; r < rows; r++) {
            double* y = tile + FFT_TILE_ROW * r;
            join_node4(y, quarter, y, quarter, nodes[depth] + 4 * (columns * r + i), FFT_COLUMNS);
        }
    }
}
