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

/// x[c] := x[c] w^c in every lane.
template <bool LIFTED>
void twist_rows(const Field& f, const RowTwist& twist, uint64_t* x, size_t columns) {
    constexpr int CHAINS = Field::CHAINS;
    for (size_t part = 0; part < 8; part += Field::LANES) {
        Field::V power[CHAINS];
        power[0] = f.unit;
        power[1] = Field::load(twist.lane + part);
        for (int i = 2; i < CHAINS; i++) power[i] = f.mul_var(power[i / 2], power[i - i / 2]);
        const Field::V step = f.mul_var(power[CHAINS / 2], power[CHAINS / 2]);
        for (size_t c = 0; c < columns; c += CHAINS)
#pragma GCC unroll 8
            for (int i = 0; i < CHAINS; i++) {
                uint64_t* at = x + 8 * (c + size_t(i)) + part;
                const Field::V value = Field::load(at);
                Field::store(at, LIFTED ? f.mul_var_lifted(value, power[i]) : f.mul_var(value, power[i]));
                power[i] = f.mul_var(power[i], step);
            }
    }
}

void rows_forward(const Vt3Shape& shape, const Vt3Prime& prime, const Vt3Twist& twist, uint64_t* x,
                  size_t group) {
    const Field f(prime);
    twist_rows<true>(f, RowTwist(shape, twist, group, false, f), x, shape.columns());
    forward_transform<8>(f, x, shape.log_c, prime.roots, 0);
}

void rows_inverse(const Vt3Shape& shape, const Vt3Prime& prime, const Vt3Twist& twist, uint64_t* out,
                  const uint64_t* f_rows, const uint64_t* g_rows, size_t group) {
    const Field f(prime);
    for (size_t i = 0; i < 8 * shape.columns(); i += Field::LANES)
        Field::store(out + i, f.mul_var(Field::load(f_rows + i), f.norm(Field::load(g_rows + i))));
    inverse_transform<8>(f, out, shape.log_c, prime.inverse_roots, 0);
    twist_rows<false>(f, RowTwist(shape, twist, group, true, f), out, shape.columns());
}
