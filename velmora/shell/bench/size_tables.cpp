#include "velmora/shell/bench/size_tables.h"

namespace velmora {

namespace {

using lumo::upL_t;

constexpr BenchmarkSize DECIMAL_SIZES[] = {
    {"25m", 25000000},      {"50m", 50000000},      {"100m", 100000000},   {"250m", 250000000},
    {"500m", 500000000},    {"1b", 1000000000},     {"2.5b", 2500000000},  {"5b", 5000000000},
    {"10b", 10000000000},   {"25b", 25000000000},   {"50b", 50000000000},  {"100b", 100000000000},
    {"250b", 250000000000}, {"500b", 500000000000}, {"1t", 1000000000000}, {"2.5t", 2500000000000},
};

constexpr BenchmarkSize BINARY_SIZES[] = {
    {"1M", upL_t(1) << 20},   {"2M", upL_t(1) << 21},   {"4M", upL_t(1) << 22},  {"8M", upL_t(1) << 23},
    {"16M", upL_t(1) << 24},  {"32M", upL_t(1) << 25},  {"64M", upL_t(1) << 26}, {"128M", upL_t(1) << 27},
    {"256M", upL_t(1) << 28}, {"512M", upL_t(1) << 29}, {"1G", upL_t(1) << 30},  {"2G", upL_t(1) << 31},
    {"4G", upL_t(1) << 32},   {"8G", upL_t(1) << 33},   {"16G", upL_t(1) << 34}, {"32G", upL_t(1) << 35},
    {"64G", upL_t(1) << 36},  {"128G", upL_t(1) << 37},
};

}  // namespace

std::span<const BenchmarkSize> decimal_sizes() {
    return DECIMAL_SIZES;
}

std::span<const BenchmarkSize> binary_sizes() {
    return BINARY_SIZES;
}

std::optional<upL_t> benchmark_digits(std::string_view key) {
    for (const auto sizes : {decimal_sizes(), binary_sizes()}) {
        for (const BenchmarkSize& size : sizes) {
            if (key == size.key) return size.digits;
        }
    }
    return std::nullopt;
}

}  // namespace velmora
