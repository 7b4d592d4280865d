// Middle pass: 8 rows in lockstep, twiddles the same for all of them, twists by recurrence along the row.

/// Twist of the lanes of a group, as mul_var() takes it.
struct RowTwist {
    uint64_t lane[8];

    RowTwist(const Vt3Shape& shape, const Vt3Twist& twist, size_t group, bool inverse, const Field& f) {
        const size_t row = 8 * group;
        const uint64_t* power = inverse ? twist.power_inverse : twist.power;
        for (size_t i = 0; i < 8; i++) {
            const size_t place = (row + i) & (shape.h() - 1);
            lane[i] = power[reversed(place, shape.log_h)];
        }
        const size_t s = row >> shape.log_h;
        if (s == 0) return;
        const Field::V part = Field::all(inverse ? twist.part_inverse[s] : twist.part[s]);
        for (size_t i = 0; i < 8; i += Field::LANES)
            Field::store(lane + i, f.mul_var(Field::load(lane + i), part));
    }

    static size_t reversed(size_t i, unsigned bits) {
        size_t r = 0;
        for (unsigned j = 0; j < bits; j++) r = 2 * r + ((i >> j) & 1);
        return r;
    }
};

/// Powers of the twist for the elements of a topmost node: element i of the node at column c takes
/// w^(i stride + c). They go from column to column by one product with w.
template <int BITS>
struct TwistChains {
    static constexpr int COUNT = 1 << BITS;
    alignas(64) uint64_t power[COUNT * Field::LANES];
    Field::Step step;

    TwistChains(const Field& f, const RowTwist& twist, size_t part, unsigned log_stride) {
        Field::V jump = Field::load(twist.lane + part), value = f.unit;
        step = f.step_of(jump);
        for (unsigned i = 0; i < log_stride; i++) jump = f.mul_var(jump, jump);
        for (int i = 0; i < COUNT; i++, value = f.mul_var(value, jump))
            Field::store(power + i * Field::LANES, value);
    }
    [[gnu::always_inline]] Field::V get(int i) const { return Field::load(power + i * Field::LANES); }
    [[gnu::always_inline]] void advance(const Field& f, int i) {
        Field::store(power + i * Field::LANES, f.mul_step(get(i), step));
    }
};

/// Twists the rows of one or two operands and runs their topmost nodes. `distant`: they come from memory.
template <int BITS, bool PAIR>
void enter_rows(const Field& field, const RowTwist& twist, uint64_t* x, uint64_t* y, unsigned log_stride,
                const Vt3Factor* roots, bool distant) {
    const Field f = field;
    constexpr int COUNT = 1 << BITS;
    const size_t stride = size_t(8) << log_stride;
    for (size_t part = 0; part < 8; part += Field::LANES) {
        TwistChains<BITS> chains(f, twist, part, log_stride);
        for (size_t at = part; at < stride; at += 8) {
            Field::V v[COUNT];
            if (distant) {
#pragma GCC unroll 16
                for (size_t i = 0; i < size_t(COUNT); i++) {
                    __builtin_prefetch(x + i * stride + at + 8 * AHEAD, 1, 2);
                    if constexpr (PAIR) __builtin_prefetch(y + i * stride + at + 8 * AHEAD, 1, 2);
                }
            }
            if constexpr (PAIR) {
#pragma GCC unroll 16
                for (int i = 0; i < COUNT; i++)
                    v[i] = f.mul_var_lifted(Field::load(y + size_t(i) * stride + at), chains.get(i));
                forward_levels<BITS>(f, v, roots, 0);
                InPlace().put<BITS>(v, y, stride, at);
            }
#pragma GCC unroll 16
            for (int i = 0; i < COUNT; i++) {
                v[i] = f.mul_var_lifted(Field::load(x + size_t(i) * stride + at), chains.get(i));
                chains.advance(f, i);
            }
            forward_levels<BITS>(f, v, roots, 0);
            InPlace().put<BITS>(v, x, stride, at);
        }
    }
}

/// The last nodes of the way back, and the twist.
template <int BITS>
void leave_rows(const Field& field, const RowTwist& twist, uint64_t* x, unsigned log_stride,
                const Vt3Factor* roots) {
    const Field f = field;
    constexpr int COUNT = 1 << BITS;
    const size_t stride = size_t(8) << log_stride;
    for (size_t part = 0; part < 8; part += Field::LANES) {
        TwistChains<BITS> chains(f, twist, part, log_stride);
        for (size_t at = part; at < stride; at += 8) {
            Field::V v[COUNT];
            InPlace().get<BITS>(f, v, x, stride, at);
            inverse_levels<BITS>(f, v, roots + at / 8, stride / 8);
#pragma GCC unroll 16
            for (int i = 0; i < COUNT; i++) {
                Field::store(x + size_t(i) * stride + at, f.mul_var_lifted(v[i], chains.get(i)));
                chains.advance(f, i);
            }
        }
    }
}

/// The lowest nodes of the way back start from products of two transforms.
struct PointwiseProduct {
    const uint64_t* base;
    const uint64_t* f_rows;
    const uint64_t* g_rows;

    template <int BITS>
    [[gnu::always_inline]] void get(const Field& f, Field::V* v, const uint64_t* x, size_t stride,
                                    size_t e) const {
        const size_t at = size_t(x - base) + e;
#pragma GCC unroll 16
        for (int i = 0; i < (1 << BITS); i++)
            v[i] = f.mul_outputs(Field::load(f_rows + at + size_t(i) * stride),
                                 Field::load(g_rows + at + size_t(i) * stride));
    }
};

void rows_forward(const Vt3Shape& shape, const Vt3Prime& prime, const Vt3Twist& twist, uint64_t* x,
                  uint64_t* y, size_t group) {
    const Field f(prime);
    const RowTwist lanes(shape, twist, group, false, f);
    const int bits = node_bits(shape.log_c);
    const unsigned below = shape.log_c - unsigned(bits);
    for_bits(bits, [&](auto b) {
        if (y)
            enter_rows<b.value, true>(f, lanes, x, y, below, prime.roots, shape.streaming);
        else
            enter_rows<b.value, false>(f, lanes, x, nullptr, below, prime.roots, shape.streaming);
    });
    forward_transform<8>(f, InPlace(), x, below, prime.roots, 0, size_t(1) << bits);
    if (y) forward_transform<8>(f, InPlace(), y, below, prime.roots, 0, size_t(1) << bits);
}

void rows_inverse(const Vt3Shape& shape, const Vt3Prime& prime, const Vt3Twist& twist, uint64_t* out,
                  const uint64_t* f_rows, const uint64_t* g_rows, size_t group) {
    const Field f(prime);
    const RowTwist lanes(shape, twist, group, true, f);
    const int bits = node_bits(shape.log_c);
    const unsigned below = shape.log_c - unsigned(bits);
    const PointwiseProduct product{out, f_rows, g_rows};
    inverse_transform<8>(f, product, out, below, prime.inverse_roots, size_t(1) << bits);
    for_bits(bits, [&](auto b) { leave_rows<b.value>(f, lanes, out, below, prime.inverse_roots); });
}
