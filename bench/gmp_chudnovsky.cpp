/// The yardstick for Pi: plain binary splitting of the Chudnovsky series on a general integer library in one
/// thread, digits written to a file. `gmp_chudnovsky <digits> <file>` prints the seconds of its phases.
#include <gmp.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

struct Parts {
    Parts() { mpz_inits(P, Q, R, nullptr); }
    ~Parts() { mpz_clears(P, Q, R, nullptr); }
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;
    mpz_t P, Q, R;
};

void split(Parts& out, unsigned long a, unsigned long b, bool need_R) {
    if (b - a == 1) {
        mpz_set_ui(out.R, 2 * a - 1);
        mpz_mul_ui(out.R, out.R, 6 * a - 5);
        mpz_mul_ui(out.R, out.R, 6 * a - 1);
        mpz_set_ui(out.Q, a);
        mpz_mul_ui(out.Q, out.Q, a);
        mpz_mul_ui(out.Q, out.Q, a);
        mpz_mul_ui(out.Q, out.Q, 10939058860032000ul);
        mpz_set_ui(out.P, 545140134);
        mpz_mul_ui(out.P, out.P, a);
        mpz_add_ui(out.P, out.P, 13591409);
        mpz_mul(out.P, out.P, out.R);
        mpz_neg(out.P, out.P);
        mpz_neg(out.R, out.R);
        return;
    }
    const unsigned long m = a + (b - a) / 2;
    Parts right;
    split(out, a, m, true);
    split(right, m, b, need_R);
    mpz_mul(out.P, out.P, right.Q);
    mpz_mul(right.P, right.P, out.R);
    mpz_add(out.P, out.P, right.P);
    mpz_mul(out.Q, out.Q, right.Q);
    if (need_R) mpz_mul(out.R, out.R, right.R);
}

double seconds() {
    using Clock = std::chrono::steady_clock;
    return std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: gmp_chudnovsky <digits> <file>\n");
        return 1;
    }
    const unsigned long digits = std::strtoul(argv[1], nullptr, 10);
    const double start = seconds();
    const auto terms = static_cast<unsigned long>(static_cast<double>(digits) / 14.181647462725477) + 2;
    Parts sum;
    split(sum, 1, terms + 1, false);
    const double after_series = seconds();

    // Pi = 426880 sqrt(10005) Q / (13591409 Q + P), in fixed point of `digits` decimals.
    mpz_t scale, root;
    mpz_inits(scale, root, nullptr);
    mpz_ui_pow_ui(scale, 100, digits + 10);
    mpz_mul_ui(scale, scale, 10005);
    mpz_sqrt(root, scale);
    mpz_addmul_ui(sum.P, sum.Q, 13591409);
    mpz_mul_ui(sum.Q, sum.Q, 426880);
    mpz_mul(sum.Q, sum.Q, root);
    mpz_tdiv_q(sum.Q, sum.Q, sum.P);
    const double after_division = seconds();

    const std::unique_ptr<char, decltype(&std::free)> text(mpz_get_str(nullptr, 10, sum.Q), &std::free);
    std::FILE* file = std::fopen(argv[2], "w");
    if (!file) {
        std::perror(argv[2]);
        return 1;
    }
    std::fprintf(file, "3.%.*s", static_cast<int>(digits), text.get() + 1);
    std::fclose(file);
    const double end = seconds();
    std::printf("series %.3f s, root and division %.3f s, conversion and output %.3f s, total %.3f s\n",
                after_series - start, after_division - after_series, end - after_division, end - start);
    mpz_clears(scale, root, nullptr);
}
