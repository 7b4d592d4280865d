#include "lumo/multiply/algorithm_registry.h"

#include <map>

#include "lumo/multiply/basecase/bkt_algorithm.h"
#include "lumo/multiply/fft/fft_algorithm.h"
#include "lumo/multiply/ntt/c17/c17_transform.h"
#include "lumo/multiply/ntt/n64/n64_transform.h"
#include "lumo/multiply/ntt/ntt_algorithm.h"
#include "lumo/multiply/ntt/vst/vst_transform.h"
#include "lumo/multiply/ntt/vt3/vt3_transform.h"

namespace lumo {

namespace {

/// One object a word type, made on first use.
template <template <typename> class Algorithm>
AlgorithmRecord basic_record() {
    static const Algorithm<std::uint32_t> basic32;
    static const Algorithm<std::uint64_t> basic64;
    return {&basic32, &basic64};
}

template <typename Transform>
AlgorithmRecord ntt_record() {
    static const NttAlgorithm<std::uint32_t, Transform> basic32;
    static const NttAlgorithm<std::uint64_t, Transform> basic64;
    return {&basic32, &basic64};
}

}  // namespace

const AlgorithmRecord* find_algorithm(std::string_view tag) {
    static const std::map<std::string_view, AlgorithmRecord> registry = {
        {"BKT", basic_record<BktAlgorithm>()}, {"FFT", basic_record<FftAlgorithm>()},
        {"N64", ntt_record<N64Transform>()},   {"VST", ntt_record<VstTransform>()},
        {"C17", ntt_record<C17Transform>()},   {"VT3", ntt_record<Vt3Transform>()},
    };
    const auto found = registry.find(tag);
    return found == registry.end() ? nullptr : &found->second;
}

const std::vector<TableRow>& basic_table_rows() {
    static const std::vector<TableRow> rows = {
        {"BKT", 4992},
        {"FFT", FFT_TABLE_BITS},
        {"VT3", TableRow::NO_LIMIT},
        {"N64", TableRow::NO_LIMIT},
    };
    return rows;
}

}  // namespace lumo
