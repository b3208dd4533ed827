// The move generators' fixed order, their edge cases, the iterator family and
// the move counter.

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "core/legal.h"
#include "core/mate_test.h"
#include "core/movegen.h"
#include "core/notation.h"
#include "formats/fen.h"

namespace velkaro::core {
namespace {

// A job's stack with frame 1 set up from a FEN line (and an en-passant square).
struct Board {
  PlyStack stack;
  Notation notation;

  explicit Board(const char* fen, int lastMoveSquare = 0) {
    formats::FenImport import;
    EXPECT_TRUE(import.selectLine({fen}, 0, "FEN")) << fen;
    BoardSetup setup = formats::setupFromImport(import.result());
    setup.lastMoveSquare = lastMoveSquare;
    setUpRoot(stack, setup);
  }

  // The generator's entries for the man on `square`, as move texts.
  std::vector<std::string> generated(int square) {
    PlyFrame& frame = stack[1];
    const int code = frame.position.board[square];
    frame.movedPiece = code;
    frame.fromSquare = square;
    generatePieceMoves(frame, square, code, enPassantPawn(stack, 1));
    std::vector<std::string> texts;
    for (const MoveEntry* entry = frame.moveList; entry->kind != kind::End; ++entry) {
      const int placed = isCastling(entry->kind) || entry->kind == kind::EnPassant ? code : entry->kind;
      texts.push_back(notation.MoveText(code, square, entry->target, placed, entry->kind));
    }
    return texts;
  }

  // Every move the iterator `next` makes at ply 1, as move texts.
  template <typename Iterator>
  std::vector<std::string> made(Iterator next) {
    std::vector<std::string> texts;
    for (int continuing = 0; next(stack, 1, continuing) < 0; continuing = 1) {
      texts.push_back(notation.MoveText(stack, 1));
    }
    return texts;
  }
};

constexpr int sq(const char* text) { return squareAt(text[0] - 'a', text[1] - '0'); }

using Texts = std::vector<std::string>;

TEST(MoveGeneration, OrderWithinEachMan) {
  struct Case {
    const char* fen;
    const char* square;
    Texts moves;
  };
  const Case cases[] = {
      // Rays north, south, west, east, north-east, south-east, north-west,
      // south-west, each from the nearest square outwards.
      {"4k3/8/3p4/8/1P1Q4/8/8/4K3 w - -", "d4",
       {"Qd4 - d5 ", "Qd4 - d6 ", "Qd4 - d3 ", "Qd4 - d2 ", "Qd4 - d1 ", "Qd4 - c4 ", "Qd4 - e4 ", "Qd4 - f4 ",
        "Qd4 - g4 ", "Qd4 - h4 ", "Qd4 - e5 ", "Qd4 - f6 ", "Qd4 - g7 ", "Qd4 - h8 ", "Qd4 - e3 ", "Qd4 - f2 ",
        "Qd4 - g1 ", "Qd4 - c5 ", "Qd4 - b6 ", "Qd4 - a7 ", "Qd4 - c3 ", "Qd4 - b2 ", "Qd4 - a1 "}},
      // Knight targets by ascending square index.
      {"4k3/8/8/8/8/8/8/1N2K3 w - -", "b1", {"Nb1 - a3 ", "Nb1 - c3 ", "Nb1 - d2 "}},
      {"4k3/8/8/3N4/8/8/8/4K3 w - -", "d5",
       {"Nd5 - c7 ", "Nd5 - e7 ", "Nd5 - b6 ", "Nd5 - f6 ", "Nd5 - b4 ", "Nd5 - f4 ", "Nd5 - c3 ", "Nd5 - e3 "}},
      // King clockwise from the west, then long and short castling.
      {"4k3/8/8/8/8/8/8/R3K2R w KQ -", "e1",
       {"Ke1 - d1 ", "Ke1 - d2 ", "Ke1 - e2 ", "Ke1 - f2 ", "Ke1 - f1 ", "0 - 0 - 0", "0 - 0"}},
      // A pawn on the seventh rank: Q, N, R, B for the push, then for the
      // capture towards the a-file, then towards the h-file.
      {"1n1nk3/2P5/8/8/8/8/8/4K3 w - -", "c7",
       {" c7 - c8Q", " c7 - c8N", " c7 - c8R", " c7 - c8B", " c7 - b8Q", " c7 - b8N", " c7 - b8R", " c7 - b8B",
        " c7 - d8Q", " c7 - d8N", " c7 - d8R", " c7 - d8B"}},
      // Black men keep the same order; they are not mirrored.
      {"4k3/8/8/8/8/8/2p5/1N1NK3 b - -", "c2",
       {" c2 - c1Q", " c2 - c1N", " c2 - c1R", " c2 - c1B", " c2 - b1Q", " c2 - b1N", " c2 - b1R", " c2 - b1B",
        " c2 - d1Q", " c2 - d1N", " c2 - d1R", " c2 - d1B"}},
      {"4k3/3p4/8/8/8/8/8/4K3 b - -", "d7", {" d7 - d6 ", " d7 - d5 "}},
  };
  for (const Case& test : cases) {
    Board board(test.fen);
    EXPECT_EQ(board.generated(sq(test.square)), test.moves) << test.fen;
  }
}

TEST(MoveGeneration, EnPassantAtTheRootFollowsTheLastMoveSquare) {
  const char* fen = "4k3/8/8/PpP5/8/8/8/4K3 w - -";
  EXPECT_EQ(Board(fen).generated(sq("a5")), Texts{" a5 - a6 "});
  Board withLastMove(fen, sq("b5"));
  EXPECT_EQ(withLastMove.generated(sq("a5")), (Texts{" a5 - a6 ", " a5 - b6 "}));
  EXPECT_EQ(withLastMove.generated(sq("c5")), (Texts{" c5 - c6 ", " c5 - b6 "}));
  // The captured pawn leaves the board with the capture.
  Board board(fen, sq("b5"));
  for (int continuing = 0; nextLegalMove(board.stack, 1, continuing) < 0; continuing = 1) {
    if (board.stack[1].moveKind != kind::EnPassant) continue;
    EXPECT_EQ(board.stack[2].position.board[sq("b5")], 0);
    EXPECT_EQ(board.stack[2].position.board[sq("b6")], piece::Pawn);
  }
}

TEST(MoveGeneration, CastlingConditions) {
  struct Case {
    const char* fen;
    Texts castlings;  // what the king on e1 generates beyond its steps
  };
  const Case cases[] = {
      // Blocked, in check, through check and one flag show in the castling perft counts.
      {"4k3/8/8/8/8/8/8/4K3 w KQ -", {}},                            // flags but no rooks
      {"4k3/8/8/8/2r3r1/8/8/R3K2R w KQ -", {"0 - 0 - 0", "0 - 0"}},  // c1 and g1 attacked: generated
  };
  for (const Case& test : cases) {
    Texts moves = Board(test.fen).generated(sq("e1"));
    Texts castlings;
    for (const std::string& move : moves) {
      if (move[0] == '0') castlings.push_back(move);
    }
    EXPECT_EQ(castlings, test.castlings) << test.fen;
  }
  // A king away from its home square never castles, whatever the flags say.
  EXPECT_EQ(Board("4k3/8/8/8/8/8/8/R2K3R w KQ -").generated(sq("d1")).size(), 5u);
  // Castling into check is generated and then refused by the legality test.
  Board intoCheck("4k3/8/8/8/2r3r1/8/8/R3K2R w KQ -");
  for (const std::string& move : intoCheck.made(nextLegalMove)) EXPECT_NE(move[0], '0') << move;
}

TEST(LegalMoves, IteratorVariants) {
  // Only the moves that check the king on c6, in generation order.
  Board board("8/8/2k5/8/8/3N4/8/R5K1 w - -");
  EXPECT_EQ(board.made(nextCheckingMove), (Texts{"Nd3 - e5 ", "Nd3 - b4 ", "Ra1 - a6 ", "Ra1 - c1 "}));
  // Over positions with discovered checks, checking promotions, castling and
  // en passant: exactly the legal moves after which the enemy king is attacked.
  struct Case {
    const char* fen;
    const char* lastMove;
  };
  const Case positions[] = {
      {"5k2/8/8/8/8/8/8/4K2R w K -", ""},          // castling gives check
      {"4k3/8/8/8/8/8/4N3/4R1K1 w - -", ""},       // every knight move uncovers check
      {"3k4/1P6/8/8/8/8/8/K7 w - -", ""},          // promotions that check
      {"8/8/8/k1pP3R/8/8/8/4K3 w - -", "c5"},      // en passant uncovers check
      {"4k3/8/8/3n4/8/8/8/Q3K3 w - -", ""},        // queen checks on lines and diagonals
  };
  for (const Case& test : positions) {
    const int lastMove = test.lastMove[0] != 0 ? sq(test.lastMove) : 0;
    Board checking(test.fen, lastMove);
    Board legal(test.fen, lastMove);
    Texts expected;
    for (int continuing = 0; nextLegalMove(legal.stack, 1, continuing) < 0; continuing = 1) {
      if (inCheck(-legal.stack.rootSide, legal.stack[2].position)) {
        expected.push_back(legal.notation.MoveText(legal.stack, 1));
      }
    }
    EXPECT_FALSE(expected.empty()) << test.fen;
    EXPECT_EQ(checking.made(nextCheckingMove), expected) << test.fen;
  }
  // The plain iterator makes the same moves as the full one but leaves the
  // next frame's king square and castling flags as they were.
  Board kings("4k3/8/8/8/8/8/8/R3K2R w KQ -");
  const Texts legal = kings.made(nextLegalMove);
  Board plain("4k3/8/8/8/8/8/8/R3K2R w KQ -");
  const Texts plainMoves = plain.made(nextLegalMovePlain);
  EXPECT_EQ(plainMoves, legal);
  for (int continuing = 0; nextLegalMovePlain(plain.stack, 1, continuing) < 0; continuing = 1) {
    EXPECT_EQ(plain.stack[2].position.whiteKingSquare, sq("e1"));
    EXPECT_EQ(plain.stack[2].position.whiteLongCastle, 1);
  }
}

// The mate test's quick road gives the iterator's answer in every position of
// a tree full of checks, mates and stalemates.
TEST(LegalMoves, AnyLegalMoveAgreesWithTheIterator) {
  const char* positions[] = {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -",
                             "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - -", "n1n5/PPPk4/8/8/8/8/4Kppp/5N1N b - -",
                             "6k1/5ppp/8/8/3b4/8/5PPP/R1N3K1 w - -", "7k/5Q2/5K2/8/8/8/8/8 w - -",
                             "8/8/8/2k5/3Pp3/8/8/4K3 b - -"};
  int withoutMove = 0;
  int lastEscape = -1;  // carried from test to test, as a search carries it
  for (const char* fen : positions) {
    Board board(fen, fen[0] == '8' && fen[6] == '2' ? sq("d4") : 0);
    std::function<void(int)> visit = [&](int ply) {  // every node of the tree to depth 4
      const bool any = hasLegalMove(board.stack, ply, lastEscape);
      bool made = false;
      for (int continuing = 0; nextLegalMove(board.stack, ply, continuing) < 0; continuing = 1) {
        made = true;
        if (ply < 4) visit(ply + 1);
      }
      EXPECT_EQ(any, made) << fen << " ply " << ply;
      withoutMove += !made;
    };
    visit(1);
  }
  EXPECT_GT(withoutMove, 50);  // mates and stalemates on the way
}

TEST(LegalMoves, EveryMoveIsPutBack) {
  Board board("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -");
  for (int continuing = 0; nextLegalMove(board.stack, 1, continuing) < 0; continuing = 1) {
  }
  EXPECT_EQ(std::memcmp(board.stack[1].position.board, board.stack[2].position.board, 64), 0);
  EXPECT_EQ(board.stack[2].position.whiteKingSquare, board.stack[1].position.whiteKingSquare);
}

TEST(MoveCounter, CountsPseudoLegalMoves) {
  // 20 moves at the start, for either side.
  Board white("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -");
  EXPECT_EQ(countMoves(white.stack, 1), 20);
  Board black("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq -");
  EXPECT_EQ(countMoves(black.stack, 1), 20);
  // A pinned knight's moves count too: the count is not filtered for check.
  Board pinned("4r3/8/8/8/8/8/4N3/4K3 w - -");
  EXPECT_EQ(countMoves(pinned.stack, 1), 6 + 4);
  // Nine queens: the count is the sum of every man's list.
  Board queens("2Q2Q2/8/Q6Q/8/3QQ3/8/Q6Q/2QK1Q1k w - -");
  int expected = 0;
  for (int square = 0; square < 64; ++square) {
    if (queens.stack[1].position.board[square] > 0) expected += static_cast<int>(queens.generated(square).size());
  }
  EXPECT_EQ(countMoves(queens.stack, 1), expected);
  // Everything past the frame's first 280 bytes is cleared, up to the end of
  // the stack.
  const auto* bytes = reinterpret_cast<const unsigned char*>(&queens.stack[1]);
  const auto* end = reinterpret_cast<const unsigned char*>(queens.stack.frames.data() + kPlyFrameCount);
  for (const unsigned char* at = bytes + 280; at < end; ++at) ASSERT_EQ(*at, 0);
}

}  // namespace
}  // namespace velkaro::core
