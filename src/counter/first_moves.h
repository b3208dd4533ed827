#pragma once
// The "Select move" list: every legal first move of the set-up, found by
// playing each pseudo-legal move on a scratch board, and the rows the dialog
// shows for them.

#include <string>
#include <string_view>
#include <vector>

#include "core/notation.h"
#include "core/position.h"
#include "solver/first_move.h"

namespace velkaro::counter {

// Up to this many moves of one man are looked at.
inline constexpr int kMovesPerMan = 30;

// The first row of the dialog: all moves.
inline constexpr std::string_view kAllMovesRow = "Wszystkie";

// The legal first moves of the side to move, square by square from a8, each
// man's moves in generation order.
std::vector<solver::FirstMove> firstMoveList(const core::BoardSetup& setup);

// The text of a first move in the chosen notation.
std::string firstMoveText(const solver::FirstMove& move, core::Notation& notation);

// The dialog's rows: "Wszystkie", then each move's text.
std::vector<std::string> selectMoveRows(const std::vector<solver::FirstMove>& moves, core::Notation& notation);

// Whether `text` names `move`: "e2e4", "e2-e4", "Ng1-f3", "g1f3", "Nf3", "e4",
// "exd5", "e7e8Q", "e8=Q", "0-0" or "O-O"; piece letters in English, blanks,
// "x", "+" and "#" ignored. A short form may name several moves.
bool namesMove(const solver::FirstMove& move, std::string_view text);

}  // namespace velkaro::counter
