// First and last pass: 16 columns of all rows in a tile, word 16 r + c.

/// Rows or groups by which the passes over memory fetch before they come to them.
constexpr size_t AHEAD = 3;

/// Columns of a group by parts of its rows' topmost node. In long rows a line lies between two parts: they
/// would all take the same places of the first cache.
struct GroupParts {
    int bits;
    unsigned log_columns;  ///< of a part
    size_t words;          ///< from part to part

    explicit GroupParts(const Vt3Shape& shape)
        : bits(node_bits(shape.log_c)),
          log_columns(shape.log_c - unsigned(bits)),
          words(end() + (shape.log_c >= VT3_PADDED_LOG_C ? 8 : 0)) {}

    size_t count() const { return size_t(1) << bits; }
    /// Words of a part.
    size_t end() const { return size_t(8) << log_columns; }
    size_t word_of(size_t column) const {
        return (column >> log_columns) * words + 8 * (column & ((size_t(1) << log_columns) - 1));
    }
};

/// m-point transforms across the m parts of the rows, by the index map r = (r mod m, r mod h): no twist.
/// Parts of the input are taken by class of r mod m; output s stands in part s. Or back.
/// Inputs in [0, 2 p), outputs in [3 p, 13 p). Costs (m - 1)^2 / 2 products a point of m.
/// `get(part, row)` gives element e.. of a row of the tile.
template <int M, bool INVERSE, typename Source>
void odd_stage(const Vt3Prime& prime, const Source& source, uint64_t* tile, size_t h) {
    using Field = NarrowField;
    const Field f(prime);
    constexpr int HALF = (M - 1) / 2;
    const Vt3Factor* cosines = prime.cosines[HALF - 1];
    const Vt3Factor* sines = prime.sines[HALF - 1];
    for (size_t r = 0; r < h; r++) {
        size_t row_of_class[M];
        for (size_t t = 0; t < size_t(M); t++) row_of_class[(r + t * h) % M] = t * h + r;
        for (size_t e = 0; e < VT3_COLUMNS; e += Field::LANES) {
            Field::V x[M];
            for (int u = 0; u < M; u++)
                x[u] = source.get(f, INVERSE ? size_t(u) * h + r : row_of_class[u], e);
            if constexpr (INVERSE)
                for (int u = 0; u < M; u++) x[u] = f.norm(x[u]);
            Field::V plus[HALF], minus[HALF];
            Field::V sum = x[0];
            for (int j = 0; j < HALF; j++) {
                plus[j] = Field::add(x[j + 1], x[M - 1 - j]);
                minus[j] = f.sub_lifted(x[j + 1], x[M - 1 - j]);
                sum = Field::add(sum, plus[j]);
            }
            auto put = [&](int s, Field::V value) {
                const size_t row = INVERSE ? row_of_class[(M - s) % M] : size_t(s) * h + r;
                Field::store(tile + row * VT3_COLUMNS + e, M == 7 ? f.norm_middle(value) : value);
            };
            // Doubles are small enough as they are: inputs at most p / 2, so their sum at most 3.5 p.
            const Field::V first = Field::SIGNED ? x[0] : f.norm_middle(x[0]);
            put(0, Field::SIGNED ? sum : f.norm_middle(sum));
            for (int s = 1; s <= HALF; s++) {
                Field::V even = first, odd = f.mul_signed(minus[0], sines[s - 1]);
                for (int j = 0; j < HALF; j++) {
                    const int i = (j + 1) * s % M;
                    even = Field::add(even, f.mul_signed(plus[j], cosines[i <= HALF ? i - 1 : M - i - 1]));
                    if (j == 0) continue;
                    const Field::V term = f.mul_signed(minus[j], sines[i <= HALF ? i - 1 : M - i - 1]);
                    odd = i <= HALF ? Field::add(odd, term) : Field::sub(odd, term);
                }
                put(s, Field::add(even, odd));
                put(M - s, Field::sub(even, odd));
            }
        }
    }
}

template <bool INVERSE, typename Source>
void odd_stage(const Vt3Prime& prime, unsigned m, const Source& source, uint64_t* tile, size_t h) {
    switch (m) {
        case 3:
            return odd_stage<3, INVERSE>(prime, source, tile, h);
        case 5:
            return odd_stage<5, INVERSE>(prime, source, tile, h);
        case 7:
            return odd_stage<7, INVERSE>(prime, source, tile, h);
    }
}

/// Rows of a tile as they stand.
struct TileRows {
    const uint64_t* tile;
    [[gnu::always_inline]] NarrowField::V get(const NarrowField&, size_t row, size_t e) const {
        return NarrowField::load(tile + row * VT3_COLUMNS + e);
    }
};

/// Digits modulo p from their pieces, in [0, 2 p), or as they are put together and 3 p more where the column
/// transform starts with them: in [3 p, 13 p), since without an odd factor all primes are above 2^47.
template <int PIECES, bool LIFTED>
struct PieceRows {
    const uint64_t* pieces;
    const Vt3Factor* powers;
    size_t used;

    template <typename AnyField>
    [[gnu::always_inline]] typename AnyField::V get(const AnyField& f, size_t row, size_t e) const {
        if (row >= used) return LIFTED ? f.lift(AnyField::all(0)) : AnyField::all(0);
        const typename AnyField::V value =
            f.template joined<PIECES>(pieces + row * PIECES * VT3_COLUMNS + e, VT3_COLUMNS, powers);
        return LIFTED ? f.lift(value) : f.norm(value);
    }
};

uint64_t cut(const Vt3Shape& shape, uint64_t* pieces, const unsigned char* operand, size_t size,
             uint64_t place, uint64_t row_bytes, size_t rows) {
    WordSums sums;
    for (size_t r = 0; r < rows; r++, place += row_bytes, pieces += shape.pieces() * VT3_COLUMNS) {
        unsigned char copy[16 * 27 + 8];
        const unsigned char* from = operand + place;
        for (size_t i = 0; i < shape.run_bytes(); i += 64)
            __builtin_prefetch(reinterpret_cast<const void*>(uintptr_t(from) + 2 * AHEAD * row_bytes + i), 0,
                               3);
        if (place + shape.run_bytes() + 8 > size) {
            __builtin_memset(copy, 0, sizeof copy);
            if (place < size) {
                const size_t left = size - place;
                __builtin_memcpy(copy, from, left < shape.run_bytes() ? left : shape.run_bytes());
            }
            from = copy;
        }
        sums.add(from, shape.run_bytes());
        cut_run(shape, pieces, from);
        Field::take_pieces(pieces, shape.pieces() * VT3_COLUMNS);
    }
    return sums.total();
}

/// Groups of an array: 8 rows of a tile stand there as 16 vectors of 8. The lowest nodes of the columns take
/// them from there or put them there; columns have 8 rows or more, so these are never shorter than
/// TURNED_ROWS. STREAM: groups are written past the caches.
template <bool STREAM>
struct Groups {
    const uint64_t* tile;
    uint64_t* x;
    size_t group_words;
    size_t count;
    size_t first = 0;  ///< row at `tile`

    [[gnu::always_inline]] void visit() const {}
    template <int BITS>
    [[gnu::always_inline]] void get(const Field&, Field::V* v, const uint64_t* rows, size_t, size_t e) const {
        if constexpr ((size_t(1) << BITS) < TURNED_ROWS) __builtin_unreachable();
#pragma GCC unroll 4
        for (size_t i = 0; i < (size_t(1) << BITS); i += TURNED_ROWS)
            load_turned(v + i, lines<0>(first + size_t(rows - tile) / VT3_COLUMNS + i, e));
    }
    template <int BITS>
    [[gnu::always_inline]] void put(Field::V* v, uint64_t* rows, size_t, size_t e) const {
        if constexpr ((size_t(1) << BITS) < TURNED_ROWS) __builtin_unreachable();
#pragma GCC unroll 4
        for (size_t i = 0; i < (size_t(1) << BITS); i += TURNED_ROWS)
            store_turned<STREAM>(lines<1>(first + size_t(rows - tile) / VT3_COLUMNS + i, e), v + i);
    }

    /// Of the rows from `row` on, which stand at `part`.
    Groups from(size_t row, const uint64_t* part) const {
        return {part, x, group_words, count, row};
    }

 private:
    /// Place of a row in the line of column e. Lines of groups to come are fetched with the first row.
    template <int WRITE>
    [[gnu::always_inline]] uint64_t* lines(size_t row, size_t e) const {
        uint64_t* const line = x + row / 8 * group_words + 8 * e;
        if (!(STREAM && WRITE) && row % 8 == 0 && row / 8 + AHEAD < count)
            for (size_t i = 0; i < size_t(Field::LANES); i++)
                __builtin_prefetch(line + AHEAD * group_words + 8 * i, WRITE, 2);
        return line + row % 8;
    }
};

/// Rows of a tile, or of a residue class of them, by parts of the columns' topmost node.
struct TileParts {
    int bits;
    unsigned log_rows;  ///< of a part
    size_t words;       ///< from part to part

    explicit TileParts(const Vt3Shape& shape)
        : bits(node_bits(shape.log_h)),
          log_rows(shape.log_h - unsigned(bits)),
          words(shape.tile_place(rows())) {}

    size_t count() const { return size_t(1) << bits; }
    size_t rows() const { return size_t(1) << log_rows; }
};

/// Topmost nodes of the columns, straight from the pieces. HALF: the lower half of the rows is all there is.
template <int BITS, First FIRST, bool HALF, typename Source, typename Place>
void enter_nodes(const Field& field, const Vt3Prime& prime, const Source& source, const Place& place,
                 uint64_t* tile, size_t stride, size_t distance) {
    const Field f = field;
    constexpr size_t COUNT = size_t(1) << BITS;
    for (size_t r = 0; r < stride; r++)
        for (size_t e = 0; e < VT3_COLUMNS; e += Field::LANES) {
            Field::V v[COUNT];
#pragma GCC unroll 16
            for (size_t i = 0; i < (HALF ? COUNT / 2 : COUNT); i++) v[i] = source.get(f, i * stride + r, e);
            forward_levels<BITS, FIRST, true, HALF>(f, v, NodeRoots{prime.roots, 0});
            place.template put<BITS>(v, tile + r * VT3_COLUMNS, distance, e);
        }
}

template <int PIECES, bool STREAM>
void enter_pieces(const Vt3Shape& shape, const Vt3Prime& prime, const uint64_t* pieces, size_t used,
                  uint64_t* tile, const Groups<STREAM>& groups) {
    const Field f(prime);
    if (shape.m != 1) {
        odd_stage<false>(prime, shape.m, PieceRows<PIECES, false>{pieces, prime.pieces, used}, tile,
                         shape.h());
        for (size_t s = 0; s < shape.m; s++)
            forward_transform<VT3_COLUMNS>(f, groups, tile + (s << shape.log_h) * VT3_COLUMNS, shape.log_h,
                                           prime.roots, 0);
        return;
    }
    const PieceRows<PIECES, true> source{pieces, prime.pieces, used};
    const TileParts parts(shape);
    for_node(shape.log_h, [&](auto n) {
        if (parts.log_rows == 0)
            enter_nodes<n.bits, n.first, false>(f, prime, source, groups, tile, 1, VT3_COLUMNS);
        else if (2 * used <= shape.rows())
            enter_nodes<n.bits, n.first, true>(f, prime, source, InPlace(), tile, parts.rows(), parts.words);
        else
            enter_nodes<n.bits, n.first, false>(f, prime, source, InPlace(), tile, parts.rows(), parts.words);
    });
    if (parts.log_rows == 0) return;
    for (size_t i = 0; i < parts.count(); i++)
        forward_transform<VT3_COLUMNS>(f, groups.from(i * parts.rows(), tile + i * parts.words),
                                       tile + i * parts.words, parts.log_rows, prime.roots, i);
}

template <bool STREAM>
void enter_groups(const Vt3Shape& shape, const Vt3Prime& prime, const uint64_t* pieces, size_t used,
                  uint64_t* tile, const Groups<STREAM>& groups) {
    switch (shape.pieces()) {
        case 3:
            return enter_pieces<3>(shape, prime, pieces, used, tile, groups);
        case 4:
            return enter_pieces<4>(shape, prime, pieces, used, tile, groups);
        default:
            return enter_pieces<5>(shape, prime, pieces, used, tile, groups);
    }
}

void enter(const Vt3Shape& shape, const Vt3Prime& prime, const uint64_t* pieces, size_t used, uint64_t* tile,
           uint64_t* x, size_t column) {
    uint64_t* const first = x + GroupParts(shape).word_of(column);
    const size_t count = shape.rows() / 8;
    if (!shape.streaming)
        return enter_groups(shape, prime, pieces, used, tile,
                            Groups<false>{tile, first, shape.group_words, count});
    enter_groups(shape, prime, pieces, used, tile, Groups<true>{tile, first, shape.group_words, count});
    _mm_sfence();  // the rows of a group may be another thread's
}

void leave(const Vt3Shape& shape, const Vt3Prime& prime, const uint64_t* x, uint64_t* tile, size_t column) {
    const Field f(prime);
    const Groups<false> groups{tile, const_cast<uint64_t*>(x) + GroupParts(shape).word_of(column),
                               shape.group_words, shape.rows() / 8};
    const TileParts parts(shape);
    for (size_t s = 0; s < shape.m; s++) {
        const size_t row = s << shape.log_h;
        uint64_t* const part = tile + shape.tile_place(row);
        if (parts.log_rows == 0) {
            inverse_transform<VT3_COLUMNS>(f, groups, part, shape.log_h, prime.inverse_roots);
            continue;
        }
        for (size_t i = 0; i < parts.count(); i++)
            inverse_transform<VT3_COLUMNS>(f, groups.from(row + i * parts.rows(), part + i * parts.words),
                                           part + i * parts.words, parts.log_rows, prime.inverse_roots);
        for_node(shape.log_h, [&](auto n) {
            inverse_nodes<n.bits, n.first, VT3_COLUMNS, false>(f, groups, part, parts.rows() * VT3_COLUMNS,
                                                               parts.words, prime.inverse_roots, 1);
        });
    }
    odd_stage<true>(prime, shape.m, TileRows{tile}, tile, shape.h());
}
