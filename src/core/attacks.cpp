// Attack tests, one straight-line function per square and attacking side,
// built from compile-time rays so that no direction table, offset arithmetic
// or edge test runs when a square is examined.

#include "core/attacks.h"

#include <cstdint>
#include <utility>

#include "core/geometry.h"

namespace velkaro::core {

namespace {

using namespace geometry;

// What a man can attack from a given distance and kind of line, as bits of
// one class byte per piece code (indexed by the code as an unsigned byte).
enum AttackerClass : std::uint8_t {
  kLineNear = 1,   // king, queen, rook next to the square on a file or rank
  kLineFar = 2,    // queen, rook further along it
  kDiagNear = 4,   // king, queen, bishop next to it on a diagonal
  kDiagFar = 8,    // queen, bishop further along it
  kPawnNear = 16,  // a pawn next to it on a diagonal, on the side it captures from
};

constexpr std::array<std::uint8_t, 256> attackerClasses(int side) {
  std::array<std::uint8_t, 256> classes{};
  auto set = [&](int code, std::uint8_t bits) { classes[static_cast<std::uint8_t>(code * side)] = bits; };
  set(piece::King, kLineNear | kDiagNear);
  set(piece::Queen, kLineNear | kLineFar | kDiagNear | kDiagFar);
  set(piece::Rook, kLineNear | kLineFar);
  set(piece::Bishop, kDiagNear | kDiagFar);
  set(piece::Pawn, kPawnNear);
  return classes;
}

template <int Attacker>
inline constexpr std::array<std::uint8_t, 256> kClasses = attackerClasses(Attacker);

// One square of a ray: true when it is empty and the ray goes on; otherwise
// records in `hit` whether its man attacks along this ray.
template <int Attacker, int Square, int FileStep, int RowStep, int Distance>
[[gnu::always_inline]] inline bool rayGoesOn(const std::int8_t* board, bool& hit) {
  constexpr int target = rayStep(Square, FileStep, RowStep, Distance);
  constexpr bool diagonal = FileStep != 0 && RowStep != 0;
  // A Black pawn attacks from the row above (north), a White pawn from below.
  constexpr bool pawnSide = diagonal && RowStep == (Attacker == Black ? -1 : 1);
  constexpr std::uint8_t mask =
      diagonal ? (Distance == 1 ? (kDiagNear | (pawnSide ? kPawnNear : 0)) : kDiagFar)
               : (Distance == 1 ? kLineNear : kLineFar);
  const int code = board[target];
  if (code == 0) return true;
  hit = (kClasses<Attacker>[static_cast<std::uint8_t>(code)] & mask) != 0;
  return false;
}

template <int Attacker, int Square, int FileStep, int RowStep, int... Distance>
[[gnu::always_inline]] inline bool rayAttacks([[maybe_unused]] const std::int8_t* board,
                                              std::integer_sequence<int, Distance...>) {
  bool hit = false;
  (void)(rayGoesOn<Attacker, Square, FileStep, RowStep, Distance + 1>(board, hit) && ...);
  return hit;
}

template <int Attacker, int Square, int FileStep, int RowStep>
[[gnu::always_inline]] inline bool ray(const std::int8_t* board) {
  return rayAttacks<Attacker, Square, FileStep, RowStep>(
      board, std::make_integer_sequence<int, rayLength(Square, FileStep, RowStep)>{});
}

template <int Attacker, int Square, int Leap>
[[gnu::always_inline]] inline bool knightOn(const std::int8_t* board) {
  constexpr int target = leap(Square, kKnightLeaps[Leap].first, kKnightLeaps[Leap].second);
  if constexpr (target < 0) {
    return false;
  } else {
    return board[target] == Attacker * piece::Knight;
  }
}

template <int Attacker, int Square, int... Leap>
[[gnu::always_inline]] inline bool knights(const std::int8_t* board, std::integer_sequence<int, Leap...>) {
  return (knightOn<Attacker, Square, Leap>(board) || ...);
}

// The eight rays in the order they are examined: west, north-west, north,
// north-east, east, south-east, south, south-west. The order only changes the
// speed, not the answer. Bit i of an AttackLines value stands for ray i.
inline constexpr std::pair<int, int> kRays[8] = {{-1, 0}, {-1, -1}, {0, -1}, {1, -1},
                                                 {1, 0},  {1, 1},   {0, 1},  {-1, 1}};

template <int Attacker, int Square, int Ray>
[[gnu::always_inline]] inline bool rayOf(const std::int8_t* board) {
  return ray<Attacker, Square, kRays[Ray].first, kRays[Ray].second>(board);
}

template <int Attacker, int Square, int... Ray>
[[gnu::always_inline]] inline bool anyRay(const std::int8_t* board, std::integer_sequence<int, Ray...>) {
  return (rayOf<Attacker, Square, Ray>(board) || ...);
}

template <int Attacker, int Square>
int attackedBy(const Position& position) {
  const std::int8_t* board = position.board;
  if (anyRay<Attacker, Square>(board, std::make_integer_sequence<int, 8>{}) ||
      knights<Attacker, Square>(board, std::make_integer_sequence<int, 8>{})) {
    return 1;
  }
  return -1;
}

// Whether some square of a ray holds a man that would attack along it if
// nothing stood between; blockers are ignored.
template <int Attacker, int Square, int FileStep, int RowStep, int... Distance>
[[gnu::always_inline]] inline bool rayHoldsAttacker([[maybe_unused]] const std::int8_t* board,
                                                    std::integer_sequence<int, Distance...>) {
  constexpr bool diagonal = FileStep != 0 && RowStep != 0;
  constexpr bool pawnSide = diagonal && RowStep == (Attacker == Black ? -1 : 1);
  constexpr std::uint8_t nearMask = diagonal ? (kDiagNear | (pawnSide ? kPawnNear : 0)) : kLineNear;
  constexpr std::uint8_t farMask = diagonal ? kDiagFar : kLineFar;
  [[maybe_unused]] auto holds = [&](int target, std::uint8_t mask) {
    return (kClasses<Attacker>[static_cast<std::uint8_t>(board[target])] & mask) != 0;
  };
  return (false || ... || holds(rayStep(Square, FileStep, RowStep, Distance + 1), Distance == 0 ? nearMask : farMask));
}

template <int Attacker, int Square, int... Ray>
[[gnu::always_inline]] inline AttackLines linesHoldingAttackers(const std::int8_t* board,
                                                                std::integer_sequence<int, Ray...>) {
  return ((rayHoldsAttacker<Attacker, Square, kRays[Ray].first, kRays[Ray].second>(
               board, std::make_integer_sequence<int, rayLength(Square, kRays[Ray].first, kRays[Ray].second)>{})
               ? AttackLines{1} << Ray
               : AttackLines{0}) |
          ...);
}

template <int Attacker, int Square>
AttackLines attackLines(const Position& position) {
  const std::int8_t* board = position.board;
  const bool knight = knights<Attacker, Square>(board, std::make_integer_sequence<int, 8>{});
  return linesHoldingAttackers<Attacker, Square>(board, std::make_integer_sequence<int, 8>{}) |
         (knight ? kKnightLines : 0);
}

template <int Attacker, int Square, int... Ray>
[[gnu::always_inline]] inline bool anyRayAlong(const std::int8_t* board, AttackLines lines,
                                               std::integer_sequence<int, Ray...>) {
  return ((((lines >> Ray) & 1) && rayOf<Attacker, Square, Ray>(board)) || ...);
}

template <int Attacker, int Square>
int attackedAlong(const Position& position, AttackLines lines) {
  const std::int8_t* board = position.board;
  if (anyRayAlong<Attacker, Square>(board, lines, std::make_integer_sequence<int, 8>{}) ||
      ((lines & kKnightLines) && knights<Attacker, Square>(board, std::make_integer_sequence<int, 8>{}))) {
    return 1;
  }
  return -1;
}

// The attackers of a square with the squares between them and it: one ray
// square at a time, the first man on the ray decides.
template <int Attacker, int Square, int FileStep, int RowStep, int Distance>
[[gnu::always_inline]] inline bool lineAttackerGoesOn(const std::int8_t* board, Attackers& found) {
  constexpr int target = rayStep(Square, FileStep, RowStep, Distance);
  constexpr bool diagonal = FileStep != 0 && RowStep != 0;
  constexpr bool pawnSide = diagonal && RowStep == (Attacker == Black ? -1 : 1);
  constexpr std::uint8_t mask = diagonal ? (Distance == 1 ? (kDiagNear | (pawnSide ? kPawnNear : 0)) : kDiagFar)
                                         : (Distance == 1 ? kLineNear : kLineFar);
  constexpr std::uint64_t through = [] {
    std::uint64_t squares = 0;
    for (int step = 1; step <= Distance; ++step) squares |= std::uint64_t{1} << rayStep(Square, FileStep, RowStep, step);
    return squares;
  }();
  const int code = board[target];
  if (code == 0) return true;
  if (kClasses<Attacker>[static_cast<std::uint8_t>(code)] & mask) {
    found.squares |= through;
    ++found.count;
  }
  return false;
}

template <int Attacker, int Square, int FileStep, int RowStep, int... Distance>
[[gnu::always_inline]] inline void lineAttackers([[maybe_unused]] const std::int8_t* board,
                                                 [[maybe_unused]] Attackers& found,
                                                 std::integer_sequence<int, Distance...>) {
  (void)(lineAttackerGoesOn<Attacker, Square, FileStep, RowStep, Distance + 1>(board, found) && ...);
}

template <int Attacker, int Square, int Leap>
[[gnu::always_inline]] inline void knightAttacker(const std::int8_t* board, Attackers& found) {
  constexpr int target = leap(Square, kKnightLeaps[Leap].first, kKnightLeaps[Leap].second);
  if constexpr (target >= 0) {
    if (board[target] == Attacker * piece::Knight) {
      found.squares |= std::uint64_t{1} << target;
      ++found.count;
    }
  }
}

template <int Attacker, int Square, int... Index>
[[gnu::always_inline]] inline void allAttackers(const std::int8_t* board, Attackers& found,
                                                std::integer_sequence<int, Index...>) {
  (lineAttackers<Attacker, Square, kRays[Index].first, kRays[Index].second>(
       board, found, std::make_integer_sequence<int, rayLength(Square, kRays[Index].first, kRays[Index].second)>{}),
   ...);
  (knightAttacker<Attacker, Square, Index>(board, found), ...);
}

template <int Attacker, int Square>
Attackers attackersOf(const Position& position) {
  Attackers found{0, 0};
  allAttackers<Attacker, Square>(position.board, found, std::make_integer_sequence<int, 8>{});
  return found;
}

template <typename Table, template <int, int> class Entry, int Attacker, std::size_t... Square>
constexpr Table squareTable(std::index_sequence<Square...>) {
  return {Entry<Attacker, static_cast<int>(Square)>::function...};
}

template <int Attacker, int Square>
struct FullTest {
  static constexpr AttackTest function = &attackedBy<Attacker, Square>;
};
template <int Attacker, int Square>
struct LinesOf {
  static constexpr AttackLinesOf function = &attackLines<Attacker, Square>;
};
template <int Attacker, int Square>
struct TestAlong {
  static constexpr AttackTestAlong function = &attackedAlong<Attacker, Square>;
};

template <int Attacker, int Square>
struct AttackersAt {
  static constexpr AttackersOf function = &attackersOf<Attacker, Square>;
};

template <template <int, int> class Entry, int Attacker, typename Function>
constexpr std::array<Function, 64> perSquare() {
  return squareTable<std::array<Function, 64>, Entry, Attacker>(std::make_index_sequence<64>{});
}

}  // namespace

constinit const std::array<AttackTest, 64> kAttackedByBlack = perSquare<FullTest, Black, AttackTest>();
constinit const std::array<AttackTest, 64> kAttackedByWhite = perSquare<FullTest, White, AttackTest>();
constinit const std::array<AttackLinesOf, 64> kBlackAttackLines = perSquare<LinesOf, Black, AttackLinesOf>();
constinit const std::array<AttackLinesOf, 64> kWhiteAttackLines = perSquare<LinesOf, White, AttackLinesOf>();
constinit const std::array<AttackTestAlong, 64> kAttackedByBlackAlong = perSquare<TestAlong, Black, AttackTestAlong>();
constinit const std::array<AttackTestAlong, 64> kAttackedByWhiteAlong = perSquare<TestAlong, White, AttackTestAlong>();
constinit const std::array<AttackersOf, 64> kBlackAttackersOf = perSquare<AttackersAt, Black, AttackersOf>();
constinit const std::array<AttackersOf, 64> kWhiteAttackersOf = perSquare<AttackersAt, White, AttackersOf>();

}  // namespace velkaro::core
