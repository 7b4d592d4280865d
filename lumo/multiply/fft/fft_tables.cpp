#include "lumo/multiply/fft/fft_tables.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "lumo/multiply/fft/unit_roots.h"

namespace lumo {

namespace {

/// One table to be filled: entry i of `entries` takes `doubles` doubles at target.
struct TableJob {
    enum class Kind { roots, leaf_node, node, odd3, odd5, coarse, fine } kind;
    unsigned m, level;
    upL_t entries;
    unsigned doubles;
    double* target;
};

constexpr unsigned PART_TURNS[8] = {1, 17, 9, 25, 5, 21, 13, 29};

unsigned top_depth(upL_t bits) {
    unsigned depth = 3;
    for (const FftSize& size : fft_sizes_up_to(bits)) depth = std::max(depth, size.depth());
    return depth;
}

/// Lays the tables for `bits` out from `base` on and notes what each is to hold. Returns the bytes.
upL_t lay_out(FftTables& set, std::vector<TableJob>& jobs, double* base, upL_t bits) {
    upL_t at = 0;
    auto place = [&](TableJob::Kind kind, unsigned m, unsigned level, upL_t entries, unsigned doubles) {
        double* target = base ? base + at / sizeof(double) : nullptr;
        jobs.push_back({kind, m, level, entries, doubles, target});
        at += align_bytes(entries * doubles * sizeof(double));
        return target;
    };
    using Kind = TableJob::Kind;
    const unsigned top = top_depth(bits);
    set.bits = fft_sizes_up_to(bits).back().limit_bits;
    set.roots = place(Kind::roots, 1, top, upL_t(1) << (top - 1), 2);
    set.nodes[3] = place(Kind::leaf_node, 1, 3, 1, 2);
    for (unsigned depth = 4; depth <= top; depth++)
        set.nodes[depth] = place(Kind::node, 1, depth, upL_t(1) << (depth - 2), 4);
    bool done[6][FftTables::MAX_K] = {};
    for (const FftSize& size : fft_sizes_up_to(bits)) {
        if (std::exchange(done[size.m][size.k], true)) continue;
        const unsigned depth = size.depth();
        if (size.m == 3) set.odd[3][depth] = place(Kind::odd3, 3, depth, upL_t(1) << depth, 2);
        if (size.m == 5) set.odd[5][depth] = place(Kind::odd5, 5, depth, upL_t(1) << depth, 4);
        set.coarse[size.m][size.k] = place(Kind::coarse, size.m, size.k, size.vectors() / 8, 16);
        set.fine[size.m][size.k] = place(Kind::fine, size.m, size.k, 8, 16);
    }
    return at;
}

upL_t reverse_bits(upL_t n, unsigned count) {
    upL_t r = 0;
    for (unsigned i = 0; i < count; i++) r |= ((n >> i) & 1) << (count - 1 - i);
    return r;
}

/// Writes entries [i0, i1) of one table. All angles are multiples of 1 / roots.order().
void fill(const TableJob& job, const UnitRoots& roots, upL_t i0, upL_t i1) {
    using Kind = TableJob::Kind;
    const upL_t order = roots.order();
    const upL_t level = upL_t(job.m) << job.level;
    for (upL_t i = i0; i < i1; i++) {
        double* out = job.target + i * job.doubles;
        switch (job.kind) {
            case Kind::roots:
                roots.get(reverse_bits(i, job.level - 1) * (order / level), out);
                break;
            case Kind::leaf_node:
                roots.get(order / 8, out);
                break;
            case Kind::node:
                roots.get(2 * i * (order / level), out);
                roots.get(i * (order / level), out + 2);
                break;
            case Kind::odd3:
                roots.get(i * (order / level), out);
                break;
            case Kind::odd5:
                roots.get(i * (order / level), out);
                roots.get(2 * i * (order / level), out + 2);
                break;
            case Kind::coarse:
                for (unsigned j = 0; j < 8; j++) {
                    double w[2];
                    roots.get(PART_TURNS[j] * 8 * i * (order / (2 * level)), w);
                    out[j] = w[0];
                    out[8 + j] = w[1];
                }
                break;
            case Kind::fine:
                for (unsigned t = 0; t < 8; t++) {
                    double w[2];
                    roots.get(PART_TURNS[i] * t * (order / (2 * level)), w);
                    out[t] = w[0];
                    out[8 + t] = w[1];
                }
                break;
        }
    }
}

FftTables current;

struct AlignedDelete {
    void operator()(double* p) const { ::operator delete(p, std::align_val_t(ALIGNMENT_BYTES)); }
};
/// Holds the tables of ensure_fft_tables().
std::unique_ptr<double, AlignedDelete> own_tables;

}  // namespace

const FftTables& fft_tables() {
    return current;
}

upL_t fft_table_bytes(upL_t bits) {
    FftTables set;
    std::vector<TableJob> jobs;
    return lay_out(set, jobs, nullptr, bits);
}

void build_fft_tables(AlignedBufferC buffer, upL_t bits, const ParallelContext& ctx) {
    FftTables set;
    std::vector<TableJob> jobs;
    auto* base = static_cast<double*>(buffer.spawn(fft_table_bytes(bits)));
    lay_out(set, jobs, base, bits);

    const unsigned e = top_depth(bits) + 5;  // the twists of k have the order m 2^(k + 1)
    const UnitRoots roots1(1, e), roots3(3, e), roots5(5, e);
    constexpr upL_t CHUNK = 2048;
    struct Piece {
        const TableJob* job;
        upL_t from, to;
    };
    std::vector<Piece> pieces;
    for (const TableJob& job : jobs)
        for (upL_t i = 0; i < job.entries; i += CHUNK)
            pieces.push_back({&job, i, std::min(job.entries, i + CHUNK)});
    auto run = [&](upL_t n) {
        const Piece& piece = pieces[n];
        const unsigned m = piece.job->m;
        fill(*piece.job, m == 1 ? roots1 : m == 3 ? roots3 : roots5, piece.from, piece.to);
    };
    parallel_stride(ctx, pieces.size(), run);

    current = set;
    if (base != own_tables.get()) own_tables.reset();
}

void release_fft_tables() {
    current = {};
    own_tables.reset();
}

void ensure_fft_tables(upL_t bits) {
    if (current.bits && current.bits >= bits) return;
    const upL_t bytes = fft_table_bytes(bits);
    std::unique_ptr<double, AlignedDelete> memory(
        static_cast<double*>(::operator new(bytes, std::align_val_t(ALIGNMENT_BYTES))));
    build_fft_tables({memory.get(), bytes}, bits, {});
    own_tables = std::move(memory);
}

}  // namespace lumo
