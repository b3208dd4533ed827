#pragma once
// Counting the legal move paths to a given depth ("perft"), walking the ply
// stack with the legal-move iterator: the check of move generation against
// published counts, and the core's speed benchmark.

#include <cstdint>
#include <functional>

#include "core/position.h"

namespace velkaro::core {

// Deepest walk the ply stack holds (the last ply's moves are made one frame up).
constexpr int kMaxPerftDepth = kPlyFrameCount - 2;

// Called after each first move's subtree with the root frame (its move fields
// name the move) and the number of leaves under it.
using FirstMoveCount = std::function<void(const PlyFrame& root, std::uint64_t leaves)>;

// Leaves of the legal-move tree of depth `depth` (0..kMaxPerftDepth) from the
// root frame set up in `stack`.
std::uint64_t perft(PlyStack& stack, int depth, const FirstMoveCount& onFirstMove = {});

}  // namespace velkaro::core
