#pragma once
// What a Creator run is asked for: the fixed men, the problem length, the men
// to add, the order of placements, the key restrictions and the squares each
// kind of man may be generated on. The panel and the command line fill it.

#include <array>
#include <bit>
#include <cstdint>

#include "core/position.h"
#include "jobs/job.h"

namespace velkaro::generator {

// The kinds of men, in the order of the "Available squares" buttons ("K",
// "Q", "R", "B", "N", "P"), and their piece codes.
enum class Kind { King, Queen, Rook, Bishop, Knight, Pawn };
inline constexpr int kKinds = 6;
inline constexpr std::array<int, kKinds> kKindCodes = {core::piece::King,   core::piece::Queen,  core::piece::Rook,
                                                       core::piece::Bishop, core::piece::Knight, core::piece::Pawn};

constexpr Kind kindOf(int code) {
  const int magnitude = code < 0 ? -code : code;
  switch (magnitude) {
    case core::piece::Queen:
      return Kind::Queen;
    case core::piece::Rook:
      return Kind::Rook;
    case core::piece::Bishop:
      return Kind::Bishop;
    case core::piece::Knight:
      return Kind::Knight;
    case core::piece::Pawn:
      return Kind::Pawn;
    default:
      return Kind::King;
  }
}
static_assert(kindOf(-core::piece::Knight) == Kind::Knight);

// The squares on which men of one side and kind may be generated. A map with
// every square marked imposes nothing.
struct SquareMap {
  static constexpr std::uint64_t kAll = ~std::uint64_t{0};
  std::uint64_t squares = kAll;  // bit s for square s (a8 = 0 ... h1 = 63)

  int count() const { return std::popcount(squares); }
  bool restricts() const { return squares != kAll; }
  bool allows(int square) const { return (squares >> square & 1) != 0; }
  bool operator==(const SquareMap&) const = default;
};

// The twelve maps: White's king to pawn, then Black's.
using SquareMaps = std::array<SquareMap, 2 * kKinds>;
constexpr int mapIndex(int side, Kind kind) { return (side == core::White ? 0 : kKinds) + static_cast<int>(kind); }
// The map of the men with piece code `code`.
constexpr int mapIndexOf(int code) { return mapIndex(code > 0 ? core::White : core::Black, kindOf(code)); }

// The men to add of one side: queens, rooks, bishops, knights and pawns,
// each 0 to 9 (one digit of the panel's fields).
struct AddedMen {
  int queens = 0;
  int rooks = 0;
  int bishops = 0;
  int knights = 0;
  int pawns = 0;

  int of(Kind kind) const {
    switch (kind) {
      case Kind::Queen:
        return queens;
      case Kind::Rook:
        return rooks;
      case Kind::Bishop:
        return bishops;
      case Kind::Knight:
        return knights;
      case Kind::Pawn:
        return pawns;
      default:
        return 0;
    }
  }
  int total() const { return queens + rooks + bishops + knights + pawns; }
};

// The restrictions on the key.
struct KeyRestrictions {
  bool noDuals = false;      // "No duals": each defence allows only one mate
  bool noCapturing = false;  // "No capturing"
  bool noChecking = false;   // "No checking"
  bool noRestrict = false;   // "No restrict": the key takes no flight from the black king
};

struct CreateSettings {
  // The fixed men with the castling settings and the en-passant "last move";
  // White plays first whatever side the set-up gives.
  core::BoardSetup setup;
  int moves = 2;  // "Mate in 2" or "Mate in 3"
  AddedMen white;
  AddedMen black;
  bool atRandom = false;   // "At random" rather than "All, in turn"
  std::uint64_t seed = 0;  // the random placements; the same seed repeats a run
  KeyRestrictions restrictions;
  SquareMaps available{};
  bool stopOnFirstSolution = true;  // pause after each problem
  // The "Refresh interval (moves)" setting; a run ticks a hundredth (mate in
  // 2) or a thousandth (mate in 3) as often, since each placement costs a
  // whole mate search.
  int refreshInterval = jobs::kDefaultRefreshInterval;
  // Placements are tested on this many threads; the list is the same for any
  // number.
  int threads = 1;
};

}  // namespace velkaro::generator
