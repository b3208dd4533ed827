// The command line's FEN reader: every field honoured, the en-passant target
// turned into the pawn that has just made its double step, and each malformed
// field refused with a message that names it.

#include "formats/standard_fen.h"

#include <gtest/gtest.h>

namespace velkaro::formats {
namespace {

TEST(StandardFen, FieldsAreHonoured) {
  std::string error;
  const auto setup = readStandardFen("rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3", error);
  ASSERT_TRUE(setup.has_value()) << error;
  EXPECT_EQ(setup->sideToMove, core::White);
  EXPECT_TRUE(setup->whiteLongCastle && setup->whiteShortCastle && setup->blackLongCastle && setup->blackShortCastle);
  EXPECT_EQ(setup->lastMoveSquare, core::squareAt(5, 5));  // the pawn on f5
  EXPECT_EQ(setup->board[static_cast<std::size_t>(core::squareAt(4, 1))], core::piece::King);

  const auto black = readStandardFen("4k3/8/8/8/3Pp3/8/8/4K3 b - d3", error);
  ASSERT_TRUE(black.has_value()) << error;
  EXPECT_EQ(black->lastMoveSquare, core::squareAt(3, 4));  // the pawn on d4
  const auto bare = readStandardFen("8/8/8/8/8/8/8/K6k", error);  // fields after the placement may be left out
  ASSERT_TRUE(bare.has_value()) << error;
  EXPECT_EQ(bare->sideToMove, core::White);
}

TEST(StandardFen, MalformedFieldsAreNamed) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "empty"},
      {"8/8/8/8/8/8/8 w - -", "placement field"},
      {"8/8/8/8/8/8/8/K6k9 w - -", "placement field"},
      {"8/8/8/8/8/8/8/K5xk w - -", "placement field"},
      {"8/8/8/8/8/8/8/K6k x - -", "side-to-move field"},
      {"8/8/8/8/8/8/8/K6k w KK -", "castling field"},
      {"8/8/8/8/8/8/8/K6k w Kx -", "castling field"},
      {"8/8/8/8/8/8/8/K6k w - e6", "en-passant field"},
      {"8/8/8/8/8/8/8/K6k w - e3", "en-passant field"},
      {"8/8/8/8/8/8/8/K6k w - z9", "en-passant field"},
      {"8/8/8/8/8/8/8/K6k w - - x 1", "half-move clock field"},
      {"8/8/8/8/8/8/8/K6k w - - 0 -1", "move-number field"},
      {"8/8/8/8/8/8/8/K6k w - - 0 1 extra", "more than six fields"},
  };
  for (const auto& [fen, named] : cases) {
    std::string error;
    EXPECT_FALSE(readStandardFen(fen, error).has_value()) << fen;
    EXPECT_NE(error.find(named), std::string::npos) << fen << ": " << error;
  }
}

}  // namespace
}  // namespace velkaro::formats
