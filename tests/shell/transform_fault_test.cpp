// A bit that flips in the array of a transform in the middle of a product ends the program with exit code 1,
// or changes nothing: it never ends in wrong digits.

#include <gmock/gmock.h>

#include <atomic>
#include <random>

#include "lumo/multiply/kernels/kernel_select.h"
#include "lumo/multiply/ntt/vt3/vt3_select.h"
#include "run_in_program.h"

using namespace velmora;
using namespace lumo::kernels;

namespace {

/// Where an array is caught between two passes.
enum class Place {
    columns,   ///< an operand after the first pass
    image,     ///< an operand transformed
    product,   ///< after the pointwise product and the inverse passes that go with it
    residues,  ///< before coefficients are rounded, or residues joined
    count
};

/// Counts what passes through each place, and flips one bit of the one that is chosen.
struct Injector {
    void aim(Place at, std::uint64_t which, std::uint64_t seed) {
        *this = {};
        random.seed(seed);
        place = at;
        visit = which;
    }
    template <typename Word>
    void pass(Place at, const Word* words, std::size_t n) {
        if (visits[static_cast<int>(at)]++ != visit || at != place) return;
        auto* bytes = reinterpret_cast<unsigned char*>(const_cast<Word*>(words));
        const std::uint64_t bit = random() % (64 * n);
        bytes[bit / 8] ^= static_cast<unsigned char>(1 << bit % 8);
        flipped = true;
    }
    std::uint64_t visits[static_cast<int>(Place::count)] = {};
    Place place = Place::count;
    std::uint64_t visit = 0;
    bool flipped = false;
    std::mt19937_64 random;
};
Injector injector;  // of runs in one thread

/// The kernels in use, with the injector between their passes.
const FftKernels* fft = nullptr;
const Vt3Kernels* vt3 = nullptr;

FftKernels watched_fft() {
    FftKernels table = *fft;
    // Of the columns just written, or about to be read: a row of one of them at a time.
    table.enter = [](const FftShape& shape, double* x, const FftOperand& a, double* tile, size_t from,
                     size_t to) {
        fft->enter(shape, x, a, tile, from, to);
        injector.pass(Place::columns, x, FFT_VECTOR * shape.vectors());
    };
    table.forward_block = [](double* x, unsigned depth, size_t p, const double* roots) {
        fft->forward_block(x, depth, p, roots);
        injector.pass(Place::image, x, FFT_VECTOR << depth);
    };
    table.inverse_block = [](double* out, const double* f, const double* g, unsigned depth,
                             const double* const* nodes) {
        fft->inverse_block(out, f, g, depth, nodes);
        injector.pass(Place::product, out, FFT_VECTOR << depth);
    };
    table.multiply_block = [](double* a, double* b, unsigned depth, size_t p, const double* roots,
                              const double* const* nodes) {
        fft->multiply_block(a, b, depth, p, roots, nodes);
        injector.pass(Place::product, a, FFT_VECTOR << depth);
    };
    table.leave = [](const FftShape& shape, const double* x, unsigned char* bytes, double* tile,
                     FftTally& tally, size_t from, size_t to) {
        injector.pass(Place::residues, x, FFT_VECTOR * shape.vectors());
        fft->leave(shape, x, bytes, tile, tally, from, to);
    };
    return table;
}

Vt3Kernels watched_vt3() {
    Vt3Kernels table = *vt3;
    table.rows_forward = [](const Vt3Shape& shape, const Vt3Prime& prime, const Vt3Twist& twist, uint64_t* x,
                            const Vt3Ahead& ahead, size_t group) {
        vt3->rows_forward(shape, prime, twist, x, ahead, group);
        injector.pass(Place::image, x, 8 * shape.columns());
    };
    table.rows_product = [](const Vt3Shape& shape, const Vt3Prime& prime, const Vt3Twist& twist,
                            uint64_t* out, const Vt3Rows& f, const Vt3Rows& g, const Vt3Ahead& ahead,
                            size_t group) {
        if (f.from) injector.pass(Place::columns, f.from, 8 * shape.columns());
        vt3->rows_product(shape, prime, twist, out, f, g, ahead, group);
        injector.pass(Place::product, out, 8 * shape.columns());
    };
    table.leave = [](const Vt3Shape& shape, const Vt3Prime& prime, const uint64_t* x, uint64_t* tile,
                     size_t column) {
        vt3->leave(shape, prime, x, tile, column);
        injector.pass(Place::residues, tile, shape.tile_words());
    };
    return table;
}

/// The tables of kernels are the watched ones while this lives.
class Watch {
 public:
    Watch() {
        fft = &lumo::fft_kernels();
        vt3 = &lumo::vt3_kernels();
        fft_table = watched_fft();
        vt3_table = watched_vt3();
    }
    ~Watch() {
        lumo::replace_fft_kernels(nullptr);
        lumo::select_vt3_kernels(nullptr);
    }
    void use_fft() { lumo::replace_fft_kernels(&fft_table); }
    void use_vt3() { lumo::select_vt3_kernels(&vt3_table); }

 private:
    FftKernels fft_table;
    Vt3Kernels vt3_table;
};

RunInProgram run(const char* key, const char* argument, upL_t dec) {
    std::unique_ptr<Constant> constant = make_constant(find_by_key(key));
    if (constant->takes_argument()) constant->set_argument(argument);
    return {std::move(constant), dec, 1, nullptr};
}

/// Runs of one constant with one flip each; how many ended in a message.
int flips(const char* key, const char* argument, upL_t dec, int flips_a_place) {
    injector = {};
    const RunInProgram clean = run(key, argument, dec);
    EXPECT_EQ(clean.code, 0) << clean.text;
    EXPECT_GT(clean.digits.size(), dec);
    std::uint64_t visits[static_cast<int>(Place::count)];
    std::copy(std::begin(injector.visits), std::end(injector.visits), visits);
    std::mt19937_64 random(dec);
    int caught = 0;
    for (int place = 0; place < static_cast<int>(Place::count); place++)
        for (int i = 0; i < flips_a_place; i++) {
            const std::uint64_t seed = random();
            injector.aim(static_cast<Place>(place), seed % visits[place], seed);
            const RunInProgram damaged = run(key, argument, dec);
            EXPECT_TRUE(injector.flipped);
            SCOPED_TRACE(testing::Message() << key << " place " << place << " seed " << seed);
            if (damaged.code == 0) {
                EXPECT_TRUE(damaged.digits == clean.digits) << damaged.text;
                continue;
            }
            caught++;
            EXPECT_EQ(damaged.code, 1);
            EXPECT_EQ(damaged.digits, "");
            EXPECT_THAT(damaged.text, testing::HasSubstr("Exception Encountered: "));
        }
    return caught;
}

}  // namespace

// Some numbers carry hashes, the root none.
TEST(TransformFaults, InTheFloatingPointTransform) {
    Watch watch;
    watch.use_fft();
    EXPECT_GT(flips("pi", "", 60000, 10), 10);
    EXPECT_GT(flips("sqrt", "7", 60000, 10), 10);
}

TEST(TransformFaults, InTheNumberTheoreticTransform) {
    Watch watch;
    watch.use_vt3();
    EXPECT_GT(flips("sqrt", "7", 700000, 4), 8);
}
