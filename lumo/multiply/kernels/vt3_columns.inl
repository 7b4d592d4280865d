// First and last pass: 16 columns of all rows in a tile, word 16 r + c.

/// Rows or groups by which the passes over memory fetch before they come to them.
constexpr size_t AHEAD = 3;

/// m-point transforms across the m parts of the rows, by the index map r = (r mod m, r mod h): no twist.
/// Parts of the input are taken by class of r mod m; output s stands in part s. Or back.
/// Inputs in [0, 2 p), outputs in [3 p, 13 p). Costs (m - 1)^2 / 2 products a point of m.
template <int M, bool INVERSE>
void odd_stage(const Field& f, const Vt3Prime& prime, uint64_t* tile, size_t h) {
    constexpr int HALF = (M - 1) / 2;
    const Vt3Factor* cosines = prime.cosines[HALF - 1];
    const Vt3Factor* sines = prime.sines[HALF - 1];
    for (size_t r = 0; r < h; r++) {
        uint64_t* part_of_class[M];
        for (size_t t = 0; t < size_t(M); t++)
            part_of_class[(r + t * h) % M] = tile + (t * h + r) * VT3_COLUMNS;
        for (size_t e = 0; e < VT3_COLUMNS; e += Field::LANES) {
            Field::V x[M];
            for (int u = 0; u < M; u++)
                x[u] =
                    Field::load((INVERSE ? tile + (size_t(u) * h + r) * VT3_COLUMNS : part_of_class[u]) + e);
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
                uint64_t* to =
                    INVERSE ? part_of_class[(M - s) % M] : tile + (size_t(s) * h + r) * VT3_COLUMNS;
                Field::store(to + e, M == 7 ? f.norm_middle(value) : value);
            };
            const Field::V first = f.norm_middle(x[0]);
            put(0, f.norm_middle(sum));
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

template <bool INVERSE>
void odd_stage(const Field& f, const Vt3Prime& prime, unsigned m, uint64_t* tile, size_t h) {
    switch (m) {
        case 3:
            return odd_stage<3, INVERSE>(f, prime, tile, h);
        case 5:
            return odd_stage<5, INVERSE>(f, prime, tile, h);
        case 7:
            return odd_stage<7, INVERSE>(f, prime, tile, h);
    }
}

template <int PIECES>
void reduce_rows(const Field& f, const Vt3Prime& prime, bool lifted, const uint64_t* pieces, uint64_t* tile,
                 size_t rows) {
    for (size_t r = 0; r < rows; r++)
        for (size_t e = 0; e < VT3_COLUMNS; e += Field::LANES) {
            const uint64_t* from = pieces + r * PIECES * VT3_COLUMNS + e;
            Field::V value = f.load_piece(from);
            for (int i = 1; i < PIECES; i++)
                value = Field::add(value,
                                   f.mul(f.load_piece(from + size_t(i) * VT3_COLUMNS), prime.pieces[i - 1]));
            Field::store(tile + r * VT3_COLUMNS + e, lifted ? f.lift(value) : f.norm(value));
        }
}

void cut(const Vt3Shape& shape, uint64_t* pieces, const unsigned char* operand, size_t size, uint64_t place,
         uint64_t row_bytes, size_t rows) {
    const size_t bytes = shape.b / 8, count = shape.pieces();
    const uint64_t mask = (uint64_t(1) << 48) - 1;
    const uint64_t top_mask = (uint64_t(1) << (shape.b - 48 * (count - 1))) - 1;
    for (size_t r = 0; r < rows; r++, place += row_bytes, pieces += count * VT3_COLUMNS) {
        unsigned char copy[16 * 25 + 8];
        const unsigned char* from = operand + place;
        for (size_t i = 0; i < shape.run_bytes(); i += 64)
            __builtin_prefetch(reinterpret_cast<const void*>(uintptr_t(from) + AHEAD * row_bytes + i), 0, 3);
        if (place + shape.run_bytes() + 8 > size) {
            __builtin_memset(copy, 0, sizeof copy);
            if (place < size) {
                const size_t left = size - place;
                __builtin_memcpy(copy, from, left < shape.run_bytes() ? left : shape.run_bytes());
            }
            from = copy;
        }
        for (size_t i = 0; i < count; i++)
            for (size_t j = 0; j < VT3_COLUMNS; j++) {
                uint64_t word;
                __builtin_memcpy(&word, from + j * bytes + 6 * i, 8);
                pieces[i * VT3_COLUMNS + j] = word & (i + 1 < count ? mask : top_mask);
            }
    }
}

void enter(const Vt3Shape& shape, const Vt3Prime& prime, const uint64_t* pieces, size_t used, uint64_t* tile,
           uint64_t* x, size_t column) {
    const Field f(prime);
    const bool lifted = shape.m == 1;
    switch (shape.pieces()) {
        case 3:
            reduce_rows<3>(f, prime, lifted, pieces, tile, used);
            break;
        case 4:
            reduce_rows<4>(f, prime, lifted, pieces, tile, used);
            break;
        default:
            reduce_rows<5>(f, prime, lifted, pieces, tile, used);
    }
    for (size_t i = used * VT3_COLUMNS; i < shape.tile_words(); i += Field::LANES)
        Field::store(tile + i, lifted ? f.lift(Field::all(0)) : Field::all(0));
    odd_stage<false>(f, prime, shape.m, tile, shape.h());
    for (size_t s = 0; s < shape.m; s++)
        forward_transform<VT3_COLUMNS>(f, tile + (s << shape.log_h) * VT3_COLUMNS, shape.log_h, prime.roots,
                                       0);
    const size_t groups = shape.rows() / 8;
    for (size_t g = 0; g < groups; g++) {
        uint64_t* to = x + g * shape.group_words + 8 * column;
        if (g + AHEAD < groups)
            for (size_t i = 0; i < VT3_COLUMNS; i++)
                __builtin_prefetch(to + AHEAD * shape.group_words + 8 * i, 1, 2);
        for (size_t e = 0; e < VT3_COLUMNS; e += 8)
            transpose8(tile + 8 * g * VT3_COLUMNS + e, VT3_COLUMNS, to + 8 * e, 8);
    }
}

void leave(const Vt3Shape& shape, const Vt3Prime& prime, const uint64_t* x, uint64_t* tile, size_t column) {
    const Field f(prime);
    const size_t groups = shape.rows() / 8;
    for (size_t g = 0; g < groups; g++) {
        const uint64_t* from = x + g * shape.group_words + 8 * column;
        if (g + AHEAD < groups)
            for (size_t i = 0; i < VT3_COLUMNS; i++)
                __builtin_prefetch(from + AHEAD * shape.group_words + 8 * i, 0, 2);
        for (size_t e = 0; e < VT3_COLUMNS; e += 8)
            transpose8(from + 8 * e, 8, tile + 8 * g * VT3_COLUMNS + e, VT3_COLUMNS);
    }
    for (size_t s = 0; s < shape.m; s++)
        inverse_transform<VT3_COLUMNS>(f, tile + (s << shape.log_h) * VT3_COLUMNS, shape.log_h,
                                       prime.inverse_roots, 0);
    odd_stage<true>(f, prime, shape.m, tile, shape.h());
}
