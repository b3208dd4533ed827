#pragma once
// Set-ups rooted in a ply stack for the tests: random legal-looking ones for
// the tests that compare a quick answer with a slow one over many positions,
// and those of the FEN lines in their tables.

#include <random>
#include <string>

#include "core/position.h"

namespace velkaro::testing {

// The sanitizer build runs some ten times slower: tests that try many random
// positions take this share of them (one in kRandomShare).
#ifdef NDEBUG
inline constexpr int kRandomShare = 1;
#else
inline constexpr int kRandomShare = 10;
#endif

// Both kings and `men` - 2 other men on distinct squares, no pawn on the first
// or last rank, either side to move. The set-up check refuses those with the
// side not to move in check; the caller skips them.
core::BoardSetup randomSetup(std::mt19937& random, int men);

// A random set-up of `minMen` to `minMen + moreMen - 1` men set up at the root
// of `stack`; false when the set-up check refuses it.
bool randomRoot(std::mt19937& random, int minMen, int moreMen, core::PlyStack& stack);

// The position of the FEN line `fen` set up at the root of `stack`: what is
// wrong with the line or the position, or nothing.
std::string fenRoot(const std::string& fen, core::PlyStack& stack);

}  // namespace velkaro::testing
