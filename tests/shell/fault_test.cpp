// Faults inside a computation end in a message and exit code 1, from the arguments to the end of the program.

#include <gmock/gmock.h>

#include "run_in_program.h"
#include "velmora/constants/plans/pi_series.h"

using namespace velmora;
using testing::HasSubstr;

namespace {

/// Flips a bit of the second block's sum.
struct BlockFault final : lumo::SeriesObserver<std::uint64_t> {
    void block_done(const lumo::Region&, lumo::Parts<std::uint64_t>& parts) override {
        if (blocks++ == 1) parts.P.T[parts.P.L / 2] ^= 1 << 20;
    }
    int blocks = 0;
};

/// Pi on a machine that damages one block of the series.
class DamagedPi final : public Constant {
 public:
    DamagedPi() : Constant(find_by_key("pi")) {}
    upL_t terms(upL_t p) const override { return plan(p, 1).terms(); }
    SizeEstimate estimate(upL_t p, upL_t tds) const override {
        return {plan(p, tds).total_bytes(), 64 * plan(p, tds).max_product_words()};
    }
    lumo::BigFloat<std::uint64_t> compute(const ComputeContext& context) const override {
        const lumo::MultiplyContext ctx{context.parallel.tds,  context.parallel.parallelizer, 0, 0,
                                        context.buffer.data(), context.buffer.size()};
        BlockFault fault;
        return plan(context.precision_words, context.parallel.tds).run(ctx, context.status, &fault);
    }

 private:
    static Pi_Series_BigFloatR<std::uint64_t> plan(upL_t p, upL_t tds) {
        return {PiSeries::chudnovsky, 1, p, tds, false};
    }
};

struct PowerFault final : OutputProbe {
    void power(upL_t row, std::uint64_t* words, upL_t) override {
        if (row == 0) words[0] ^= 2;
    }
};

struct ConversionFault final : OutputProbe {
    void converted(std::uint64_t* out, upL_t L, std::uint64_t&) override {
        if (!done.exchange(true)) out[L / 2] ^= 1;
    }
    std::atomic<bool> done{false};
};

struct FileFault final : OutputProbe {
    void written(const std::string& path) override {
        std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
        file.seekg(500);
        const char digit = static_cast<char>(file.get());
        file.seekp(500);
        file.put(digit == '7' ? '8' : '7');
    }
};

/// Runs the program on Pi with the faults; what it printed. No digit file may have got its name.
std::string damaged_run(std::unique_ptr<Constant> pi, OutputProbe* probe) {
    const RunInProgram run(std::move(pi), 60000, 0, probe);
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.digits, "");
    return run.text;
}

std::string damaged_output(OutputProbe& probe) {
    return damaged_run(make_constant(find_by_key("pi")), &probe);
}

}  // namespace

TEST(Faults, InTheSeries) {
    EXPECT_THAT(damaged_run(std::make_unique<DamagedPi>(), nullptr),
                HasSubstr("Exception Encountered: BSRModularCheckFailedException\n"));
}

TEST(Faults, InTheConversion) {
    PowerFault power;
    EXPECT_THAT(damaged_output(power), HasSubstr("AlgorithmFailedException\n"));
    ConversionFault block;
    EXPECT_THAT(damaged_output(block), HasSubstr("AlgorithmFailedException\n"));
}

TEST(Faults, InAWrittenFile) {
    FileFault file;
    EXPECT_THAT(damaged_output(file), HasSubstr("Metadata cross-check doesn't match."));
}
