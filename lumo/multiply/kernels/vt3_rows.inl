// Middle pass: 8 rows in lockstep. Roots are the same for all of them, but in the topmost nodes on the way
// there, which take up part of the twists; the rest goes by recurrence along the row.

/// Twist of the lanes of a group, as mul_var() takes it: the factor of column 0 of all rows, and w of each
/// lane, which it takes from column to column.
struct RowTwist {
    Field::Same first;
    uint64_t lane[8];

    RowTwist(const Vt3Shape& shape, const Vt3Twist& twist, size_t group, bool inverse, const Field& f)
        : first(inverse ? Field::all(twist.last) : f.unit) {
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

/// The power of w for element i of a topmost node at column c is w^(i stride) w^c. The latter is one factor
/// for all elements; it goes from column to column by a product with w, and comes from a floating quotient.
class ColumnPowers {
 public:
    ColumnPowers(const Field& f, const RowTwist& twist, size_t part)
        : step(f.step_of(Field::load(twist.lane + part))), power(f.step_of(twist.first).w) {}
    /// w^c times the factor of column 0, for one column after the other.
    [[gnu::always_inline]] Field::Step next(const Field& f) {
        const Field::Step factor = f.loose_step_of(power);
        power = f.mul_step(power, step);
        return factor;
    }

 private:
    Field::Step step;
    Field::V power;
};

/// w^stride of the lanes, as mul_var() takes it.
inline Field::V stride_power(const Field& f, const RowTwist& twist, size_t part, unsigned log_stride) {
    Field::V power = Field::load(twist.lane + part);
    for (unsigned i = 0; i < log_stride; i++) power = f.mul_var(power, power);
    return power;
}

/// Nodes in their own place that fetch what comes next, a few lines each.
class FetchingNodes : public InPlace {
 public:
    /// For so many nodes, or more.
    FetchingNodes(const Vt3Ahead& ahead, size_t nodes)
        : first(ahead.first),
          second(ahead.second),
          first_step((ahead.first_lines + nodes - 1) / nodes),
          second_step((ahead.second_lines + nodes - 1) / nodes) {}

    [[gnu::always_inline]] void visit() const {
        for (size_t i = 0; i < first_step; i++) __builtin_prefetch(first + 8 * i, 0, 2);
        for (size_t i = 0; i < second_step; i++) __builtin_prefetch(second + 8 * i, 0, 2);
        first += 8 * first_step;
        second += 8 * second_step;
    }

 private:
    mutable const uint64_t *first, *second;
    size_t first_step, second_step;
};

/// Roots of a topmost node for each lane, with the powers of w^stride in them.
template <int BITS>
class LaneRoots {
 public:
    LaneRoots(const Field& f, Field::V jump, const Vt3Factor* plain) {
        for (int level = BITS - 1; level >= 0; level--, jump = f.mul_var(jump, jump))
            for (int node = 0; node < (1 << level); node++)
                roots[(1 << level) - 1 + node] = f.step_of(f.mul(jump, plain[node]));
    }
    const Field::Step& get(int level, int node) const { return roots[(1 << level) - 1 + node]; }

 private:
    Field::Step roots[(1 << BITS) - 1];
};

/// Twists the rows of one or two operands and runs their topmost nodes.
template <int BITS, First FIRST, bool PAIR>
void enter_rows(const Field& field, const RowTwist& twist, const Vt3Rows& x, const Vt3Rows& y,
                const GroupParts& parts, const Vt3Factor* roots) {
    const Field f = field;
    constexpr int COUNT = 1 << BITS;
    const size_t stride = parts.words;
    for (size_t part = 0; part < 8; part += Field::LANES) {
        ColumnPowers powers(f, twist, part);
        const LaneRoots<BITS> node(f, stride_power(f, twist, part, parts.log_columns), roots);
        const auto enter = [&](const Vt3Rows& rows, size_t at, const Field::Step& factor) {
            Field::V v[COUNT];
#pragma GCC unroll 16
            for (int i = 0; i < COUNT; i++)
                v[i] = f.mul_step_lifted(Field::load(rows.from + size_t(i) * stride + at), factor);
            forward_levels<BITS, FIRST>(f, v, node);
            InPlace().put<BITS>(v, rows.to, stride, at);
        };
        for (size_t at = part; at < parts.end(); at += 8) {
            const Field::Step factor = powers.next(f);
            if constexpr (PAIR) enter(y, at, factor);
            enter(x, at, factor);
        }
    }
}

/// The last nodes of the way back, and the twist.
template <int BITS, First FIRST>
void leave_rows(const Field& field, const RowTwist& twist, uint64_t* x, const GroupParts& parts,
                const Vt3Factor* roots) {
    const Field f = field;
    constexpr int COUNT = 1 << BITS;
    const size_t stride = parts.words;
    for (size_t part = 0; part < 8; part += Field::LANES) {
        ColumnPowers powers(f, twist, part);
        const Field::V jump = stride_power(f, twist, part, parts.log_columns);
        Field::Step jumps[COUNT];
        Field::V value = jump;
        for (int i = 1; i < COUNT; i++, value = f.mul_var(value, jump)) jumps[i] = f.step_of(value);
        for (size_t at = part; at < parts.end(); at += 8) {
            const Field::Step factor = powers.next(f);
            Field::V v[COUNT];
            InPlace().get<BITS>(f, v, x, stride, at);
            inverse_levels<BITS, FIRST, false>(f, v, roots + at / 8, parts.end() / 8);
            Field::store(x + at, f.mul_step_lifted(v[0], factor));
#pragma GCC unroll 16
            for (int i = 1; i < COUNT; i++)
                Field::store(x + size_t(i) * stride + at,
                             f.mul_step_lifted(f.mul_step(v[i], factor), jumps[i]));
        }
    }
}

/// The lowest nodes of the way back start from products of two transforms.
class PointwiseProduct : public FetchingNodes {
 public:
    PointwiseProduct(const FetchingNodes& nodes, const uint64_t* all, const uint64_t* f, const uint64_t* g)
        : FetchingNodes(nodes), base(all), f_rows(f), g_rows(g) {}

    template <int BITS>
    [[gnu::always_inline]] void get(const Field& f, Field::V* v, const uint64_t* x, size_t stride,
                                    size_t e) const {
        const size_t at = size_t(x - base) + e;
#pragma GCC unroll 16
        for (int i = 0; i < (1 << BITS); i++)
            v[i] = f.mul_outputs(Field::load(f_rows + at + size_t(i) * stride),
                                 Field::load(g_rows + at + size_t(i) * stride));
    }

 private:
    const uint64_t *base, *f_rows, *g_rows;
};

void rows_forward(const Vt3Shape& shape, const Vt3Prime& prime, const Vt3Twist& twist, uint64_t* x,
                  const Vt3Ahead& ahead, size_t group) {
    const Field f(prime);
    const RowTwist lanes(shape, twist, group, false, f);
    const GroupParts parts(shape);
    for_node(shape.log_c, [&](auto n) {
        enter_rows<n.bits, n.first, false>(f, lanes, {x, x}, {}, parts, prime.roots);
    });
    const FetchingNodes nodes(ahead, parts.count() * all_nodes(parts.log_columns));
    for (size_t i = 0; i < parts.count(); i++)
        forward_transform<8>(f, nodes, x + i * parts.words, parts.log_columns, prime.roots, i);
}

/// Part by part below the topmost nodes: what is transformed is in the first cache when the way back starts.
void rows_product(const Vt3Shape& shape, const Vt3Prime& prime, const Vt3Twist& twist, uint64_t* out,
                  const Vt3Rows& x, const Vt3Rows& y, const Vt3Ahead& ahead, size_t group) {
    const Field f(prime);
    const GroupParts parts(shape);
    if (x.from || y.from) {
        const RowTwist lanes(shape, twist, group, false, f);
        for_node(shape.log_c, [&](auto n) {
            if (x.from && y.from)
                enter_rows<n.bits, n.first, true>(f, lanes, x, y, parts, prime.roots);
            else
                enter_rows<n.bits, n.first, false>(f, lanes, x.from ? x : y, {}, parts, prime.roots);
        });
    }
    const size_t transforms = 1 + (x.from ? 1 : 0) + (y.from ? 1 : 0);
    const FetchingNodes nodes(ahead, transforms * parts.count() * all_nodes(parts.log_columns));
    const PointwiseProduct product(nodes, out, x.to, y.to);
    for (size_t i = 0; i < parts.count(); i++) {
        const size_t at = i * parts.words;
        if (x.from) forward_transform<8>(f, product, x.to + at, parts.log_columns, prime.roots, i);
        if (y.from) forward_transform<8>(f, product, y.to + at, parts.log_columns, prime.roots, i);
        inverse_transform<8>(f, product, out + at, parts.log_columns, prime.inverse_roots);
    }
    const RowTwist lanes(shape, twist, group, true, f);
    for_node(shape.log_c,
             [&](auto n) { leave_rows<n.bits, n.first>(f, lanes, out, parts, prime.inverse_roots); });
}
