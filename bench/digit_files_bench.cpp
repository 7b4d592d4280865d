// Digit files on two threads: counting, compressing, extracting, by format. Counter "digits/s". Files stand
// in the folder TMPDIR (default /dev/shm), so that memory is measured and no disk.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

#include "digitviewer/files/lmd/lmd_set_reader.h"
#include "digitviewer/files/lmd/lmd_set_writer.h"
#include "digitviewer/files/text_reader.h"
#include "digitviewer/files/text_writer.h"
#include "digitviewer/viewer/copy_digits.h"
#include "digitviewer/viewer/digit_statistics.h"
#include "lumo/foundation/parallel/pushpool.h"

using namespace DigitViewer2;

namespace {

constexpr upL_t DIGITS = 200000000;
constexpr upL_t BLOCK = 30000001;
constexpr upL_t THREADS = 2;

/// Random digits in both formats, made once.
class Files {
 public:
    Files() : base(folder() + "/velmora-bench-" + std::to_string(::getpid())) {
        std::filesystem::create_directories(base);
        std::string values(DIGITS, '\0');
        std::mt19937_64 random(1);
        for (char& v : values) v = static_cast<char>(random() % 10);
        BasicTextWriter writer(text(), "3.", 10);
        writer.write(context(), values.data(), 0, DIGITS);
        writer.close();
        BasicLmdSetWriter compressed(base + "/set", "3.", 10, BLOCK, DIGITS);
        compressed.write(context(), values.data(), 0, DIGITS);
        compressed.close();
    }
    ~Files() { std::filesystem::remove_all(base); }

    std::string text() const { return base + "/digits.txt"; }
    std::string set() const { return base + "/set - 0.lmd"; }
    std::string copy() const { return base + "/copy"; }
    lumo::ParallelContext context() const { return {THREADS, pool.get()}; }

 private:
    static std::string folder() {
        const char* const named = std::getenv("TMPDIR");
        return named ? named : "/dev/shm";
    }
    const std::unique_ptr<lumo::BasicParallelizer> pool = lumo::make_pushpool(THREADS);
    const std::string base;
};

const Files& files() {
    static const Files made;
    return made;
}

template <typename F>
void measure(benchmark::State& state, F&& f) {
    files();
    for (auto _ : state) f();
    state.counters["digits/s"] = benchmark::Counter(
        static_cast<double>(DIGITS) * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

void count(BasicDigitReader& reader) {
    lumo::NullStatusNode status;
    benchmark::DoNotOptimize(read_statistics(reader, DIGITS, files().context(), status).hash);
}

void copy(BasicDigitReader& reader, BasicDigitWriter& writer) {
    lumo::NullStatusNode status;
    copy_digits(reader, writer, 0, DIGITS, files().context(), status);
    writer.close();
}

void count_text(benchmark::State& state) {
    measure(state, [] {
        BasicTextReader reader(files().text());
        count(reader);
    });
}

void count_compressed(benchmark::State& state) {
    measure(state, [] {
        BasicLmdSetReader reader(files().set());
        count(reader);
    });
}

void compress(benchmark::State& state) {
    measure(state, [] {
        BasicTextReader reader(files().text());
        BasicLmdSetWriter writer(files().copy(), "3.", 10, BLOCK, DIGITS);
        copy(reader, writer);
    });
}

void extract(benchmark::State& state) {
    measure(state, [] {
        BasicLmdSetReader reader(files().set());
        BasicTextWriter writer(files().copy() + ".txt", "3.", 10);
        copy(reader, writer);
    });
}

BENCHMARK(count_text)->UseRealTime();
BENCHMARK(count_compressed)->UseRealTime();
BENCHMARK(compress)->UseRealTime();
BENCHMARK(extract)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
