#include "lumo/foundation/parallel/dispatch/fan_out.h"

#include <algorithm>
#include <bit>

namespace lumo {

namespace {

class BlockAction final : public BasicAction {
 public:
    BlockAction(BasicParallelizer& p, BasicAction& a, upL_t first, upL_t indices, upL_t block_length)
        : parallelizer(p), action(a), start(first), count(indices), length(block_length) {}
    void run(upL_t i) override {
        const upL_t from = i * length;
        if (from >= count) return;
        parallelizer.run_in_parallel(action, start + from, start + std::min(from + length, count));
    }

 private:
    BasicParallelizer& parallelizer;
    BasicAction& action;
    upL_t start, count, length;
};

}  // namespace

FanOutShape::FanOutShape(upL_t indices, upL_t max_sequential) {
    const upL_t m = indices - 1;
    const unsigned s = (std::bit_width(m) + 1) >> 1;
    blocks = upL_t(1) << s;
    if (blocks > max_sequential) {
        blocks = max_sequential;
        length = m / max_sequential + 1;
    } else {
        length = (m >> s) + 1;
    }
}

void run_with_fan_out(BasicParallelizer& parallelizer, BasicAction& action, upL_t start, upL_t end,
                      upL_t max_sequential) {
    max_sequential = std::max(max_sequential, SMALLEST_MAX_SEQUENTIAL_DISPATCH);
    if (end <= start) return;
    const upL_t n = end - start;
    if (n <= max_sequential) {
        parallelizer.run_in_parallel(action, start, end);
        return;
    }
    // A block that still exceeds the limit fans out again when its task dispatches it.
    const FanOutShape shape(n, max_sequential);
    BlockAction block(parallelizer, action, start, n, shape.length);
    parallelizer.run_in_parallel(block, 0, shape.blocks);
}

}  // namespace lumo
