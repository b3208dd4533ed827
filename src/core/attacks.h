#pragma once
// Is a square attacked by one side? The innermost question of every search:
// legality of moves, castling conditions, check and mate all rest on it.

#include <array>

#include "core/position.h"

namespace velkaro::core {

// One straight-line test per square; returns 1 when attacked, -1 when not.
using AttackTest = int (*)(const Position&);

extern const std::array<AttackTest, 64> kAttackedByBlack;
extern const std::array<AttackTest, 64> kAttackedByWhite;

// 1 if some Black man attacks `square` in `position`, -1 if none does. The
// first attacker found ends the test.
inline int isAttackedByBlack(int square, const Position& position) {
  return kAttackedByBlack[static_cast<std::size_t>(square)](position);
}

// The same for White men.
inline int isAttackedByWhite(int square, const Position& position) {
  return kAttackedByWhite[static_cast<std::size_t>(square)](position);
}

// Whether `side`'s opponent attacks `square`.
template <int Side>
inline int isAttackedByOpponentOf(int square, const Position& position) {
  if constexpr (Side == White) {
    return isAttackedByBlack(square, position);
  } else {
    return isAttackedByWhite(square, position);
  }
}

// Whether the king of `side` stands in check in `position`.
inline bool inCheck(int side, const Position& position) {
  return side == White ? isAttackedByBlack(position.whiteKingSquare, position) >= 0
                       : isAttackedByWhite(position.blackKingSquare, position) >= 0;
}

}  // namespace velkaro::core
