#include "sweep_case.h"

#include <cstring>
#include <optional>

#include "lumo/foundation/errors/exceptions.h"
#include "lumo/multiply/algorithm_registry.h"
#include "scratch.h"

namespace lumo::sweep {

using testing::Pattern;
using testing::Scratch;
using testing::Words;

namespace {

constexpr const char* FORM_NAMES[FORMS] = {"whole",  "shortest", "window",  "small",
                                           "square", "images",   "wrapped", "wrapped_square"};

/// Divide 2^512 - 1, and with it the modulus of every ring of this sign whose bits are a multiple of 512.
constexpr mp_limb_t RING_PRIMES[] = {67280421310721, 59649589127497217, 1238926361552897};

/// The words of a number as words of the type that is tested.
template <typename wtype>
class Operand {
 public:
    explicit Operand(const Words& a) : L(a.size() * 8 / sizeof(wtype)) {
        if constexpr (sizeof(wtype) == 8) {
            T = a.data();
        } else {
            copy.resize(L);
            std::memcpy(copy.data(), a.data(), 8 * a.size());
            T = copy.data();
            if (L > 1 && copy.back() == 0) L--;  // odd lengths, too
        }
    }
    const wtype* T;
    upL_t L;

 private:
    std::vector<wtype> copy;
};

/// What a window of a product should be.
class Expected {
 public:
    /// sign 0: the product itself, else modulo 2^(64 size) + sign.
    Expected(const Case& c, const Words& a, const Words& b, int sign)
        : size(sign == 0 ? a.size() + b.size() : c.row.words), ring_sign(sign), first(a), second(b) {
        by_residues = 64 * (a.size() + b.size()) > c.exact_bits;
        if (by_residues) return;
        exact = sign == 0 ? testing::exact_product(a, b) : testing::wrapped_product(a, b, size, sign);
        zero = sign < 0 && std::all_of(exact.begin(), exact.end(),
                                       [&](auto word) { return word == exact[0] && word + 1 <= 1; });
    }
    bool whole_only() const { return by_residues; }
    upL_t words() const { return size; }

    /// Empty if right; bytes [from, to) of the product stand at t.
    std::string difference(const unsigned char* t, upL_t from, upL_t to) const {
        if (by_residues) {
            Words all(size);
            std::memcpy(all.data(), t, to - from);
            const bool right = ring_sign == 0 ? testing::agrees_by_residues(all, first, second)
                                              : testing::agrees_by_residues(all, first, second, RING_PRIMES);
            return right ? "" : "wrong residues";
        }
        // 2^n - 1 stands for zero modulo itself.
        if (zero && from < to && (t[0] == 0 || t[0] == 255) &&
            std::count(t, t + (to - from), t[0]) == long(to - from))
            return "";
        const auto* right = reinterpret_cast<const unsigned char*>(exact.data()) + from;
        const auto* found = std::mismatch(t, t + (to - from), right).first;
        return found == t + (to - from) ? "" : "first wrong byte " + std::to_string(from + upL_t(found - t));
    }

 private:
    upL_t size;
    int ring_sign;
    const Words &first, &second;
    bool by_residues, zero = false;
    Words exact;
};

template <typename wtype>
class Runner {
 public:
    Runner(const Case& wanted, BasicParallelizer& threads)
        : c(wanted),
          pool(threads),
          random(wanted.seed),
          algorithm(*find_algorithm(wanted.row.tag)->basic<wtype>()) {}

    std::string run() {
        choose_lengths();
        const Words a = number(c.a, AL, 1);
        const bool square = c.form == Form::square || c.form == Form::wrapped_square;
        const Words b = square ? Words() : number(c.b, BL, 2);
        const bool ring = c.form == Form::wrapped || c.form == Form::wrapped_square;
        const Expected expected(c, a, square ? a : b, ring ? c.row.ring_sign : 0);
        const Operand<wtype> A(a), B(b);
        const bool images = ring || c.form == Form::images;
        const bool whole = expected.whole_only() || c.form == Form::whole || c.form == Form::shortest;
        // Beyond what odd lengths of operands leave of it the product is zero.
        const upL_t total = ring ? WORDS * c.row.words : A.L + (square ? A.L : B.L);
        upL_t s = whole ? 0 : random() % (total + 1);
        upL_t L = whole ? total : s + random() % (total - s + 1);
        if (!ring && s == L) s = 0, L = total;  // a window of a product is not empty
        std::string wrong;
        try {
            wrong = images ? by_images(expected, A, square ? A : B, square, s, L)
                           : directly(expected, A, square ? A : B, s, L);
        } catch (const Exception& e) {
            wrong = e.get_typename();
        }
        return wrong.empty() ? wrong : wrong + describe(s, L);
    }

 private:
    static constexpr upL_t WORDS = 8 / sizeof(wtype);

    void choose_lengths() {
        const upL_t n = c.row.words;
        const auto cut = [&](upL_t total) {
            AL = total / 2 + (total > 2 ? random() % (total / 8 + 1) : 0);
            BL = total - AL;
        };
        switch (c.form) {
            case Form::whole:
            case Form::images:
                cut(n);
                break;
            case Form::shortest:
                cut(std::max(upL_t(2), c.row.shortest_words));
                break;
            case Form::window:
            case Form::small:
                AL = 1 + random() % (n - 1);
                BL = n - AL;
                break;
            case Form::square:
                AL = BL = n / 2;
                break;
            case Form::wrapped:
                AL = n;
                BL = n - random() % std::min(n, upL_t(100));
                break;
            case Form::wrapped_square:
                AL = BL = n;
                break;
        }
    }

    /// Every other narrow one has an odd length.
    Words number(Pattern pattern, upL_t words, unsigned which) {
        Words a = testing::operand(pattern, words, c.row.digit, static_cast<unsigned>(c.seed) + which);
        if (c.narrow && random() % 2) a.back() &= 0xffffffff;
        return a;
    }

    std::string directly(const Expected& expected, const Operand<wtype>& A, const Operand<wtype>& B, upL_t s,
                         upL_t L) {
        const bool square = c.form == Form::square;
        const upL_t total = A.L + B.L;
        algorithm.ensure_tables(total);
        BufferSizes sizes;
        const Scratch scratch(c.form == Form::small ? algorithm.max_buffer_size(total, c.tds)
                                                    : algorithm.max_buffer_sizes(sizes, total, c.tds));
        const MultiplyContext ctx = scratch.context(c.tds, pool);
        const Scratch t(sizeof(wtype) * (L - s));
        const auto finished = [&] {
            const auto* bytes = static_cast<const unsigned char*>(t.data());
            if (!scratch.intact() || !t.intact()) return std::string("wrote beyond its memory");
            return expected.difference(bytes, sizeof(wtype) * s, sizeof(wtype) * L);
        };
        wtype* T = t.template words<wtype>();
        switch (c.form) {
            case Form::window:
                algorithm.mul_partial(ctx, T, s, L, A.T, A.L, B.T, B.L);
                break;
            case Form::small:
                algorithm.mul_small(ctx, T, s, L, A.T, A.L, B.T, B.L);
                break;
            case Form::square:
                algorithm.sqr_partial(ctx, T, s, L, A.T, A.L);
                break;
            default:
                algorithm.mul(ctx, T, A.T, A.L, B.T, B.L);
                break;
        }
        std::string wrong = finished();
        if (!square || !wrong.empty() || expected.whole_only()) return wrong;
        const Scratch all(sizeof(wtype) * total);
        algorithm.sqr(ctx, all.template words<wtype>(), A.T, A.L);
        if (!scratch.intact() || !all.intact()) return "wrote beyond its memory";
        return expected.difference(static_cast<const unsigned char*>(all.data()), 0, sizeof(wtype) * total);
    }

    std::string by_images(const Expected& expected, const Operand<wtype>& A, const Operand<wtype>& B,
                          bool square, upL_t s, upL_t L) {
        TransformHolder<wtype> transform;
        algorithm.ensure_tables(WORDS * c.row.words);
        algorithm.params(transform, WORDS * c.row.words, c.tds);
        if (transform->length_bits() != 64 * c.row.words) return "another row was taken";
        const Scratch work(transform->scratch_bytes()), f(transform->array_bytes());
        const MultiplyContext ctx = work.context(c.tds, pool);
        transform->forward(ctx, A.T, A.L, f.data());
        std::optional<Scratch> g, apart;
        if (!square) {
            g.emplace(transform->array_bytes());
            transform->forward(ctx, B.T, B.L, g->data());
        }
        // The product's image may stand apart or on an operand's.
        void* out = random() % 2 || square ? f.data() : g->data();
        if (!expected.whole_only() && random() % 3 == 0) out = apart.emplace(transform->array_bytes()).data();
        const Scratch t(sizeof(wtype) * (L - s));
        wtype* T = t.template words<wtype>();
        if (square)
            transform->inverse_fsqr(ctx, T, s, L, out, f.data());
        else
            transform->inverse_fmul(ctx, T, s, L, out, f.data(), g->data());
        if (!work.intact() || !f.intact() || !t.intact() || (g && !g->intact()) ||
            (apart && !apart->intact()))
            return "wrote beyond its memory";
        return expected.difference(static_cast<const unsigned char*>(t.data()), sizeof(wtype) * s,
                                   sizeof(wtype) * L);
    }

    std::string describe(upL_t s, upL_t L) const {
        const auto number = [](const char* name, upL_t value) {
            return std::string(" ") + name + " " + std::to_string(value);
        };
        return std::string(": ") + c.row.tag + number("row bits", 64 * c.row.words) + ", form " +
               FORM_NAMES[static_cast<unsigned>(c.form)] + ", A " + testing::name_of(c.a) + number("of", AL) +
               ", B " + testing::name_of(c.b) + number("of", BL) + " 64-bit words," +
               number("word bits", 8 * sizeof(wtype)) + "," + number("window", s) + number("to", L) + "," +
               number("tds", c.tds) + "," + number("case seed", c.seed);
    }

    const Case& c;
    BasicParallelizer& pool;
    std::mt19937_64 random;
    const BasicAlgorithm<wtype>& algorithm;
    upL_t AL = 0, BL = 0;
};

template <typename wtype>
std::string run_with(const Case& c, BasicParallelizer& pool) {
    Runner<wtype> runner(c, pool);
    return runner.run();
}

}  // namespace

std::string run_case(const Case& c, BasicParallelizer& pool) {
    return c.narrow ? run_with<std::uint32_t>(c, pool) : run_with<std::uint64_t>(c, pool);
}

}  // namespace lumo::sweep
