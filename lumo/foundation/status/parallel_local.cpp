#include "lumo/foundation/status/parallel_local.h"

namespace lumo {

ParallelLocalNode::ParallelLocalNode(PolledPart* parent) : part("ParallelLocalNode", parent) {}

std::unique_ptr<StatusNode> ParallelLocalNode::make_node() {
    return std::make_unique<ParallelLocalNode>(&part);
}

std::unique_ptr<StatusIteration> ParallelLocalNode::make_iteration(upL_t total) {
    return std::make_unique<ParallelLocalIteration>(total, &part);
}

ParallelLocalIteration::ParallelLocalIteration(upL_t total, PolledPart* parent)
    : part("ParallelLocalIteration", parent, total) {}

std::unique_ptr<StatusNode> ParallelLocalIteration::make_node() {
    return std::make_unique<ParallelLocalNode>(&part);
}

std::unique_ptr<StatusIteration> ParallelLocalIteration::make_iteration(upL_t total) {
    return std::make_unique<ParallelLocalIteration>(total, &part);
}

}  // namespace lumo
