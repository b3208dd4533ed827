#pragma once
// Whether one placement is a problem: White mates in n with exactly one key,
// the key keeps the chosen restrictions, and no man can be taken away without
// the same key still working alone. Everything a placement needs is here, so
// that several testers can work side by side, each with its own key finder.

#include <cstdint>
#include <memory>
#include <optional>

#include "core/position.h"
#include "generator/placements.h"
#include "generator/records.h"
#include "generator/settings.h"
#include "solver/key_finder.h"

namespace velkaro::generator {

// What the test says about a placement.
struct Verdict {
  bool problem = false;
  core::MoveRecord key;
  int flights = 0;  // the black king's flights before the key
  FlightMark mark = FlightMark::Same;
};

// A placement with its verdict.
struct Tested {
  Board board{};
  Verdict verdict;
};

// The black king's moves to the squares around it.
struct Flights {
  int count = 0;
  std::uint64_t squares = 0;
};
Flights blackKingFlights(const core::Position& position);
FlightMark flightMark(const Flights& before, const Flights& after);

// The set-up a placement is tested in: White to move, with the set-up's
// castling settings, and its en-passant "last move" while the pawn can still
// have just made its double step.
core::BoardSetup setupOf(const Board& board, const core::BoardSetup& fixed);

class PlacementTester {
 public:
  explicit PlacementTester(const CreateSettings& settings);
  ~PlacementTester();
  PlacementTester(const PlacementTester&) = delete;
  PlacementTester& operator=(const PlacementTester&) = delete;

  Verdict test(const Board& board);

 private:
  std::optional<solver::Key> uniqueKey(const core::BoardSetup& setup);
  solver::Key keyWithSecondMoves(const core::BoardSetup& setup);
  static bool hasDual(const solver::Key& key);
  bool restrictionsKept(const core::BoardSetup& setup, const core::MoveRecord& key, Verdict& verdict);
  bool hasSuperfluousMan(const core::BoardSetup& setup, const core::MoveRecord& key);

  core::BoardSetup fixed_;
  core::Stipulation stipulation_;
  KeyRestrictions restrictions_;
  // Whether the key search lists every working second move. Listing turns
  // off the threat search after each first move: for mate in 2 the threat
  // costs more than the listing of at most two keys, for mate in 3 less.
  bool listSecondMoves_;
  solver::KeyFinder finder_;
  std::unique_ptr<core::PlyStack> stack_;  // the position before and after the key
};

}  // namespace velkaro::generator
