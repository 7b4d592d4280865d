/// Compares the products of every algorithm with GMP's, over all lengths of its table.
///
///   product_sweep [bits=N] [least=N] [algorithm=TAG] [seed=N] [exact=N] [doubles]
///
/// Takes the rows of `least` to `bits` bits (default: up to 2^24) of BKT, FFT, VT3, N64, VST and C17, or of
/// one of them; beyond 2^28 bits the longest row of at most 1.5, 2, 3, 4, 6, ... times that, ten up to 2^33.
/// One line a row; exit code 1 at the first difference, with all that the product was made of: the same seed
/// and row make it again. VELMORA_KERNELS names the set of kernels; `doubles` puts those of doubles in the
/// place of the 52-bit integers.
///
/// At every row up to 2^20 bits each of six kinds of operands (random, ones, sparse, digits at the limits of
/// balanced ones, digits of zeros and ones in turn, top bits of digits only) goes through each of eight forms
/// of a product (sweep_case.h). Beyond, each kind goes through one form a row and the forms rotate from row
/// to row; beyond 2^28 bits four products a row, of kinds that rotate. From case to case rotate the kind of
/// the second operand, the task decomposition (1, 2, 3, 7, 16, on a pool) and the word type. Lengths, windows
/// and where images stand come from the seed. Products longer than `exact` bits (default 2^31) are compared
/// modulo three primes: 2^61 - 1 and two below 2^64, wrapped ones modulo three divisors of the ring's
/// modulus.
#include "lumo/multiply/ntt/ntt_algorithm.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "lumo/foundation/parallel/pushpool.h"
#include "lumo/multiply/basecase/bkt_sizes.h"
#include "lumo/multiply/fft/fft_sizes.h"
#include "lumo/multiply/kernels/kernel_select.h"
#include "lumo/multiply/ntt/c17/c17_transform.h"
#include "lumo/multiply/ntt/n64/n64_transform.h"
#include "lumo/multiply/ntt/vst/vst_transform.h"
#include "lumo/multiply/ntt/vt3/vt3_select.h"
#include "lumo/multiply/ntt/vt3/vt3_transform.h"
#include "sweep_case.h"

namespace {

using namespace lumo;
using namespace lumo::sweep;
using testing::Pattern;

constexpr unsigned KINDS = 6;
constexpr upL_t MANY_CASES_BITS = upL_t(1) << 20, ALL_ROWS_BITS = upL_t(1) << 28;
constexpr upL_t TDS[] = {1, 2, 3, 7, 16};

struct Options {
    upL_t bits = upL_t(1) << 24, least = 0, seed = 1, exact = upL_t(1) << 31;
    std::string algorithm;
};

unsigned digit_of(const Vt3Size& size) {
    return size.b;
}
unsigned digit_of(const N64Size&) {
    return 64;
}

/// The rows of a table with the shortest product of each: one word more than the row below holds.
class Rows {
 public:
    Rows(const char* name, int ring_sign) : tag(name), sign(ring_sign) {}
    void add(upL_t bits, unsigned digit) {
        const upL_t below = list.empty() ? 0 : list.back().words;
        list.push_back({tag, bits / 64, digit, below + 1, sign});
    }
    std::vector<Row> list;

 private:
    const char* tag;
    int sign;
};

template <typename Transform>
std::vector<Row> ntt_rows() {
    Rows rows(Transform::IDENTITY.tag, -1);
    for (const auto& size : Transform::sizes()) rows.add(size.bits(), digit_of(size));
    return rows.list;
}

/// Every length up to twice the longest that tables give it, then some.
std::vector<Row> bkt_rows() {
    Rows rows("BKT", -1);
    for (upL_t words = 2; words <= BKT_MAX_BITS / 64; words += words < 160 ? 1 : 36) rows.add(64 * words, 64);
    return rows.list;
}

std::vector<Row> fft_rows() {
    Rows rows("FFT", 1);
    for (const FftSize& size : fft_sizes()) rows.add(size.limit_bits, size.b);
    return rows.list;
}

/// Of all rows up to 2^28 bits and ten longer ones, those that are asked for.
std::vector<const Row*> chosen(const std::vector<Row>& all, const Options& options) {
    std::vector<const Row*> rows;
    const auto take = [&](const Row& row) {
        const upL_t bits = 64 * row.words;
        if (bits >= options.least && bits <= options.bits && (rows.empty() || rows.back() < &row))
            rows.push_back(&row);
    };
    for (const Row& row : all)
        if (64 * row.words <= ALL_ROWS_BITS) take(row);
    for (upL_t bits = ALL_ROWS_BITS * 3 / 2; bits <= upL_t(1) << 33;
         bits = (bits & (bits - 1)) == 0 ? bits / 2 * 3 : bits / 3 * 4) {
        const Row* longest = nullptr;
        for (const Row& row : all)
            if (64 * row.words <= bits) longest = &row;
        if (longest && 64 * longest->words > ALL_ROWS_BITS) take(*longest);
    }
    return rows;
}

/// False at the first difference.
bool sweep_row(const Row& row, unsigned index, const Options& options, BasicParallelizer& pool) {
    const auto start = std::chrono::steady_clock::now();
    const upL_t bits = 64 * row.words;
    const bool many = bits <= MANY_CASES_BITS, longer = bits > ALL_ROWS_BITS;
    unsigned cases = 0;
    const auto run = [&](Form form, unsigned kind, unsigned turn) {
        const std::uint64_t seed = options.seed * 1000003 + bits * 97 + cases++;
        const Case c{row,
                     form,
                     static_cast<Pattern>(kind % KINDS),
                     static_cast<Pattern>((kind + turn) % KINDS),
                     TDS[(index + turn + kind) % std::size(TDS)],
                     !longer && (index + turn + kind / 2) % 2 != 0,
                     seed,
                     options.exact};
        const std::string wrong = run_case(c, pool);
        if (!wrong.empty()) std::printf("%s\n", wrong.c_str());
        return wrong.empty();
    };
    if (longer) {
        const Form forms[] = {index % 2 ? Form::small : Form::whole, Form::square, Form::wrapped,
                              Form::wrapped_square};
        for (unsigned i = 0; i < std::size(forms); i++)
            if (!run(forms[i], index + i, i)) return false;
    } else {
        for (unsigned kind = 0; kind < KINDS; kind++)
            for (unsigned i = 0; i < (many ? FORMS : 1); i++) {
                const unsigned form = many ? i : (5 * index + kind) % FORMS;
                if (!run(static_cast<Form>(form), kind, many ? i : index)) return false;
            }
    }
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
    std::printf("%s %11llu bits, digits of %3u: %2u cases ok, %.2f s\n", row.tag,
                static_cast<unsigned long long>(bits), row.digit, cases, passed.count());
    std::fflush(stdout);
    return true;
}

bool read(const char* argument, Options& options) {
    const auto number = [&](const char* name, upL_t& value) {
        const std::size_t length = std::strlen(name);
        if (std::strncmp(argument, name, length) != 0) return false;
        value = std::strtoull(argument + length, nullptr, 10);
        return true;
    };
    if (std::strncmp(argument, "algorithm=", 10) == 0) {
        options.algorithm = argument + 10;
        return true;
    }
    if (std::strcmp(argument, "doubles") == 0) return select_vt3_kernels(&kernels::vt3_kernels_avx512);
    return number("bits=", options.bits) || number("least=", options.least) ||
           number("seed=", options.seed) || number("exact=", options.exact);
}

}  // namespace

int main(int argc, char** argv) {
    if (const std::string& problem = lumo::chosen_kernels().problem; !problem.empty())
        std::fprintf(stderr, "%s\n", problem.c_str());
    Options options;
    for (int i = 1; i < argc; i++)
        if (!read(argv[i], options)) {
            std::fprintf(stderr, "product_sweep: %s?\n", argv[i]);
            return 2;
        }
    std::printf("FFT by %s, VT3 by %s, seed %llu\n", fft_kernels().name, vt3_kernels().name,
                static_cast<unsigned long long>(options.seed));
    PushPoolParallelizer pool(2, false, 1);
    const std::vector<Row> tables[] = {bkt_rows(),
                                       fft_rows(),
                                       ntt_rows<Vt3Transform>(),
                                       ntt_rows<N64Transform>(),
                                       ntt_rows<VstTransform>(),
                                       ntt_rows<C17Transform>()};
    for (const auto& all : tables) {
        if (!options.algorithm.empty() && options.algorithm != all.front().tag) continue;
        for (const Row* row : chosen(all, options))
            if (!sweep_row(*row, static_cast<unsigned>(row - all.data()), options, pool)) return 1;
    }
}
