// The test of one placement, in the order that puts the cheap rejections
// first: the Black king in check, the unique key, the key restrictions, and
// only then the costly economy trials.

#include "generator/placement_test.h"

#include <algorithm>
#include <cstdlib>

#include "core/attacks.h"
#include "core/first_moves.h"
#include "core/geometry.h"

namespace velkaro::generator {

namespace {

using core::piece::King;
using core::piece::Pawn;

bool blackKingInCheck(const core::BoardSetup& setup) {
  core::Position position{};
  for (int square = 0; square < 64; ++square) {
    position.board[square] = static_cast<std::int8_t>(setup.board[static_cast<std::size_t>(square)]);
  }
  const int king = core::firstSquareOf(position.board, -King);
  return core::isAttackedByWhite(king, position) >= 0;
}

}  // namespace

Flights blackKingFlights(const core::Position& position) {
  Flights flights;
  const int king = position.blackKingSquare;
  for (int rowStep = -1; rowStep <= 1; ++rowStep) {
    for (int fileStep = -1; fileStep <= 1; ++fileStep) {
      const int target = core::geometry::leap(king, fileStep, rowStep);
      if ((fileStep == 0 && rowStep == 0) || target < 0 || position.board[target] < 0) continue;
      core::Position moved = position;
      moved.board[king] = 0;
      moved.board[target] = static_cast<std::int8_t>(-King);
      if (core::isAttackedByWhite(target, moved) >= 0) continue;
      ++flights.count;
      flights.squares |= std::uint64_t{1} << target;
    }
  }
  return flights;
}

FlightMark flightMark(const Flights& before, const Flights& after) {
  if (after.count > before.count) return FlightMark::Gained;
  if (after.count < before.count) return FlightMark::Lost;
  return after.squares == before.squares ? FlightMark::Same : FlightMark::Moved;
}

core::BoardSetup setupOf(const Board& board, const core::BoardSetup& fixed) {
  core::BoardSetup setup = fixed;
  for (std::size_t square = 0; square < 64; ++square) setup.board[square] = board[square];
  setup.sideToMove = core::White;
  // The Black pawn of the last move stands on rank 5, the squares it came
  // over behind it.
  const int pawn = setup.lastMoveSquare;
  const bool stillPossible = pawn >= 24 && pawn < 32 && board[static_cast<std::size_t>(pawn)] == -Pawn &&
                             board[static_cast<std::size_t>(pawn - 8)] == 0 &&
                             board[static_cast<std::size_t>(pawn - 16)] == 0;
  if (!stillPossible) setup.lastMoveSquare = 0;
  return setup;
}

PlacementTester::PlacementTester(const CreateSettings& settings)
    : fixed_(settings.setup),
      stipulation_{false, false, settings.moves},
      restrictions_(settings.restrictions),
      listSecondMoves_(settings.moves == 2),
      stack_(std::make_unique<core::PlyStack>()) {}

PlacementTester::~PlacementTester() = default;

Verdict PlacementTester::test(const Board& board) {
  Verdict verdict;
  const core::BoardSetup setup = setupOf(board, fixed_);
  // With White to move the Black king cannot stand in check.
  if (blackKingInCheck(setup)) return verdict;
  const std::optional<solver::Key> key = uniqueKey(setup);
  if (!key) return verdict;
  if (restrictions_.noDuals && hasDual(listSecondMoves_ ? *key : keyWithSecondMoves(setup))) return verdict;
  if (!restrictionsKept(setup, key->move, verdict)) return verdict;
  if (hasSuperfluousMan(setup, key->move)) return verdict;
  verdict.problem = true;
  verdict.key = key->move;
  return verdict;
}

// The one key of the position, if it has exactly one.
std::optional<solver::Key> PlacementTester::uniqueKey(const core::BoardSetup& setup) {
  auto keys = finder_.keys(setup, stipulation_, 2, listSecondMoves_);
  if (!keys || keys->size() != 1) return std::nullopt;
  return std::move(keys->front());
}

// The key with every working reply to each defence. It is the first key the
// search finds, so the finder stops there.
solver::Key PlacementTester::keyWithSecondMoves(const core::BoardSetup& setup) {
  auto keys = finder_.keys(setup, stipulation_, 1, true);
  return keys && !keys->empty() ? std::move(keys->front()) : solver::Key{};
}

// Whether some defence allows more than one working reply.
bool PlacementTester::hasDual(const solver::Key& key) {
  return std::any_of(key.variations.begin(), key.variations.end(),
                     [](const solver::Variation& line) { return line.dual; });
}

// "No capturing" before the key is played; "No checking" and "No restrict"
// after it, with the rook of a castling moved and a pawn taken en passant
// removed. The flight note is filled on the way.
bool PlacementTester::restrictionsKept(const core::BoardSetup& setup, const core::MoveRecord& key, Verdict& verdict) {
  if (restrictions_.noCapturing && setup.board[static_cast<std::size_t>(key.toSquare)] != 0) return false;
  core::setUpRoot(*stack_, setup);
  core::applyFirstMove(*stack_, core::FirstMove{key.movedPiece, key.fromSquare, key.toSquare, key.moveKind, 0});
  const core::Position& before = (*stack_)[1].position;
  const core::Position& after = (*stack_)[2].position;
  if (restrictions_.noChecking && core::isAttackedByWhite(after.blackKingSquare, after) >= 0) return false;
  const Flights flightsBefore = blackKingFlights(before);
  const Flights flightsAfter = blackKingFlights(after);
  if (restrictions_.noRestrict && flightsBefore.count > flightsAfter.count) return false;
  verdict.flights = flightsBefore.count;
  verdict.mark = flightMark(flightsBefore, flightsAfter);
  return true;
}

// A man other than a king, off the key's squares, whose removal leaves the
// same key as the only one: the problem would be sound without it.
bool PlacementTester::hasSuperfluousMan(const core::BoardSetup& setup, const core::MoveRecord& key) {
  for (int square = 0; square < 64; ++square) {
    const int code = setup.board[static_cast<std::size_t>(square)];
    if (code == 0 || std::abs(code) == King || square == key.fromSquare || square == key.toSquare) continue;
    core::BoardSetup smaller = setup;
    smaller.board[static_cast<std::size_t>(square)] = 0;
    if (square == smaller.lastMoveSquare) smaller.lastMoveSquare = 0;
    const std::optional<solver::Key> smallerKey = uniqueKey(smaller);
    if (smallerKey && smallerKey->move == key) return true;
  }
  return false;
}

}  // namespace velkaro::generator
