#pragma once
// Is a square attacked by one side? The innermost question of every search:
// legality of moves, castling conditions, check and mate all rest on it.

#include <array>
#include <cstdint>

#include "core/position.h"

namespace velkaro::core {

// One straight-line test per square; returns 1 when attacked, -1 when not.
using AttackTest = int (*)(const Position&);

extern const std::array<AttackTest, 64> kAttackedByBlack;
extern const std::array<AttackTest, 64> kAttackedByWhite;

// Which lines from a square could carry an attack at all: bit i for ray i (west,
// north-west, north, north-east, east, south-east, south, south-west) when an
// attacking man of the right kind stands anywhere on it, blockers ignored, and
// kKnightLines when an attacking knight stands a knight's leap away.
using AttackLines = unsigned;
inline constexpr AttackLines kKnightLines = 1u << 8;
using AttackLinesOf = AttackLines (*)(const Position&);
extern const std::array<AttackLinesOf, 64> kBlackAttackLines;
extern const std::array<AttackLinesOf, 64> kWhiteAttackLines;

// The attack test restricted to the given lines. A move of one side never adds
// a man of the other, so lines that held no attacker before the move cannot
// hold one after it: for every move but the king's, testing the lines found
// before the move gives the same answer as the full test.
using AttackTestAlong = int (*)(const Position&, AttackLines);
extern const std::array<AttackTestAlong, 64> kAttackedByBlackAlong;
extern const std::array<AttackTestAlong, 64> kAttackedByWhiteAlong;

// 1 if some Black man attacks `square` in `position`, -1 if none does. The
// first attacker found ends the test.
inline int isAttackedByBlack(int square, const Position& position) {
  return kAttackedByBlack[static_cast<std::size_t>(square)](position);
}

// The same for White men.
inline int isAttackedByWhite(int square, const Position& position) {
  return kAttackedByWhite[static_cast<std::size_t>(square)](position);
}

// Every man of one side that attacks a square, with the squares between each
// of them and it: the squares on which a check by them can be answered.
struct Attackers {
  std::uint64_t squares;  // the attackers' squares and those between them and the target
  int count;
};
using AttackersOf = Attackers (*)(const Position&);
extern const std::array<AttackersOf, 64> kBlackAttackersOf;
extern const std::array<AttackersOf, 64> kWhiteAttackersOf;

// Whether `side`'s opponent attacks `square`.
template <int Side>
inline int isAttackedByOpponentOf(int square, const Position& position) {
  if constexpr (Side == White) {
    return isAttackedByBlack(square, position);
  } else {
    return isAttackedByWhite(square, position);
  }
}

template <int Side>
inline AttackLines attackLinesAgainst(int square, const Position& position) {
  return (Side == White ? kBlackAttackLines : kWhiteAttackLines)[static_cast<std::size_t>(square)](position);
}

template <int Side>
inline int isAttackedAlongByOpponentOf(int square, const Position& position, AttackLines lines) {
  return (Side == White ? kAttackedByBlackAlong : kAttackedByWhiteAlong)[static_cast<std::size_t>(square)](position,
                                                                                                          lines);
}

// Whether the king of `side` stands in check in `position`.
inline bool inCheck(int side, const Position& position) {
  return side == White ? isAttackedByBlack(position.whiteKingSquare, position) >= 0
                       : isAttackedByWhite(position.blackKingSquare, position) >= 0;
}

}  // namespace velkaro::core
