/// Work dealt out to pieces beforehand, so that each finds in its cache what it left there; a piece that has
/// done its own share helps the others with theirs.
#pragma once

#include <atomic>

#include "lumo/foundation/types/types.h"
#include "lumo/multiply/ntt/assemble.h"

namespace lumo {

class PieceShares {
 public:
    explicit PieceShares(upL_t count) : pieces(count) {}

    /// The items of one piece: [from, to).
    void deal(upL_t piece, upL_t from, upL_t to) {
        shares[piece].next.store(from, std::memory_order_relaxed);
        shares[piece].end = to;
    }

    /// item(owner, index) for the share of `piece`, then for what is left of the others. Called once a piece.
    template <typename Item>
    void work(upL_t piece, Item&& item) {
        for (upL_t i = 0; i < pieces; i++) {
            const upL_t owner = (piece + i) % pieces;
            Share& share = shares[owner];
            while (share.next.load(std::memory_order_relaxed) < share.end) {
                const upL_t index = share.next.fetch_add(1, std::memory_order_relaxed);
                if (index < share.end) item(owner, index);
            }
        }
    }

 private:
    struct alignas(128) Share {
        std::atomic<upL_t> next = 0;
        upL_t end = 0;
    };
    upL_t pieces;
    Share shares[NTT_MOST_PIECES];
};

}  // namespace lumo
