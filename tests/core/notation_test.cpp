// Move notation: the letters of every language, the exact 9-character move
// text and castling text, the quirk of unknown codes, digit grouping and the
// current-line display.

#include "core/notation.h"

#include <gtest/gtest.h>

#include <memory>

namespace velkaro::core {
namespace {

using namespace piece;

int sq(const char* name) { return squareAt(name[0] - 'a', name[1] - '0'); }

// Each language's letters for K, Q, R, B, N; the move texts take them by piece
// (the Polish moves below), castling and pawn moves have none.
TEST(Notation, EveryLanguageHasItsLetters) {
  const char* const languages[][2] = {{"Czech", "KDVSJ"},     {"Danish", "KDTLS"},     {"Dutch", "KDTLP"},
                                      {"English", "KQRBN"},   {"Estonian", "KLVOR"},   {"Finnish", "KDTLR"},
                                      {"French", "RDTFC"},    {"German", "KDTLS"},     {"Hungarian", "KVTLH"},
                                      {"Icelandic", "KDHBR"}, {"Italian", "RDTAC"},    {"Norwegian", "KDTLS"},
                                      {"Polish", "KHWGS"},    {"Portuguese", "RDTBC"}, {"Romanian", "RDTNC"},
                                      {"Spanish", "RDTAC"},   {"Swedish", "KDTLS"}};
  for (int number = 1; number <= 17; ++number) {
    Notation notation;
    notation.setLanguage(number);
    EXPECT_EQ(notation.language(), number);
    EXPECT_STREQ(Notation::languageName(number), languages[number - 1][0]);
    EXPECT_EQ(notation.letters(), languages[number - 1][1]) << number;
  }
  Notation german;
  german.setLanguage(8);
  EXPECT_EQ(german.MoveText(Knight, sq("g1"), sq("f3"), Knight, Knight), "Sg1 - f3 ");
  EXPECT_EQ(german.MoveText(Pawn, sq("e7"), sq("e8"), Queen, Queen), " e7 - e8D");
  EXPECT_EQ(german.MoveText(King, sq("e1"), sq("c1"), King, kind::WhiteLongCastle), "0 - 0 - 0");
  EXPECT_EQ(german.MoveText(King, sq("e1"), sq("g1"), King, kind::WhiteShortCastle), "0 - 0");
  EXPECT_EQ(german.MoveText(-King, sq("e8"), sq("c8"), -King, kind::BlackLongCastle), "0 - 0 - 0");
  EXPECT_EQ(german.MoveText(-King, sq("e8"), sq("g8"), -King, kind::BlackShortCastle), "0 - 0");
}

struct MoveCase {
  int moved;
  const char* from;
  const char* to;
  int placed;
  int moveKind;
  const char* expected;
};

// Polish letters differ from the English ones for every piece, so a letter
// taken from the wrong column or the wrong table shows.
const MoveCase kPolishMoves[] = {
    {King, "h1", "g2", King, King, "Kh1 - g2 "},
    {Queen, "d1", "h5", Queen, Queen, "Hd1 - h5 "},
    {Rook, "a1", "a8", Rook, Rook, "Wa1 - a8 "},
    {Bishop, "c1", "g5", Bishop, Bishop, "Gc1 - g5 "},
    {Knight, "b1", "c3", Knight, Knight, "Sb1 - c3 "},
    {-Knight, "b8", "c6", -Knight, -Knight, "Sb8 - c6 "},
    {Pawn, "e2", "e4", Pawn, Pawn, " e2 - e4 "},
    {-Pawn, "e2", "e1", -Rook, -Rook, " e2 - e1W"},
    {Pawn, "b7", "a8", Knight, Knight, " b7 - a8S"},
    {Pawn, "e5", "d6", Pawn, kind::EnPassant, " e5 - d6 "},
};

TEST(Notation, MoveTextIsNineCharactersWithLetterSquaresAndPromotion) {
  Notation notation;
  notation.setLanguage(13);
  for (const MoveCase& c : kPolishMoves) {
    SCOPED_TRACE(c.expected);
    const std::string text = notation.MoveText(c.moved, sq(c.from), sq(c.to), c.placed, c.moveKind);
    EXPECT_EQ(text, c.expected);
    EXPECT_EQ(text.size(), 9u);
  }
}

TEST(Notation, UnknownCodeKeepsPreviousLetter) {
  Notation notation;
  EXPECT_EQ(notation.MoveText(7, sq("a2"), sq("a3"), 7, 7), " a2 - a3 ");  // nothing looked up yet
  EXPECT_EQ(notation.MoveText(Knight, sq("g1"), sq("f3"), Knight, Knight), "Ng1 - f3 ");
  EXPECT_EQ(notation.MoveText(7, sq("a2"), sq("a3"), 7, 7), "Na2 - a3 ");
  EXPECT_EQ(notation.MoveText(Pawn, sq("d7"), sq("d8"), 9, 9), " d7 - d8 ");
  // The lookup for the promotion piece counts as the previous one.
  EXPECT_EQ(notation.MoveText(Pawn, sq("d7"), sq("d8"), Rook, Rook), " d7 - d8R");
  EXPECT_EQ(notation.MoveText(0, sq("c1"), sq("c2"), 0, 0), "Rc1 - c2 ");
}

TEST(Notation, LanguageChangesAndRefusals) {
  Notation notation;
  EXPECT_EQ(notation.language(), 4);
  EXPECT_EQ(notation.letters(), "KQRBN");
  notation.setLanguage(16);
  const std::string spanish(notation.letters());
  notation.setLanguage(11);
  EXPECT_EQ(notation.letters(), spanish);
  for (int outside : {0, 18, -4, 112}) {
    notation.setLanguage(outside);
    EXPECT_EQ(notation.language(), 11) << outside;
    EXPECT_EQ(notation.letters(), "RDTAC") << outside;
    EXPECT_STREQ(Notation::languageName(outside), "") << outside;
  }
  notation.setLanguage(4);
  EXPECT_EQ(notation.letters(), "KQRBN");
  EXPECT_EQ(notation.MoveText(Bishop, sq("f1"), sq("b5"), Bishop, Bishop), "Bf1 - b5 ");
}

TEST(Notation, FrameAndLastMoveTexts) {
  auto stack = std::make_unique<PlyStack>();
  PlyFrame& frame = (*stack)[5];
  frame.movedPiece = -Pawn;
  frame.fromSquare = sq("g2");
  frame.toSquare = sq("h1");
  frame.placedPiece = -Queen;
  frame.moveKind = -Queen;
  Notation notation;
  notation.setLanguage(7);
  EXPECT_EQ(notation.MoveText(*stack, 5), " g2 - h1D");
  const MoveRecord knight{Knight, static_cast<std::int8_t>(sq("h1")), static_cast<std::int8_t>(sq("g3")), Knight, Knight};
  EXPECT_EQ(notation.LastMoveText(knight), "Ch1 - g3 ");
}

TEST(Notation, GroupDigitsByThrees) {
  const char* const cases[][2] = {{"", ""},
                                  {"999", "999"},
                                  {"1000", "1 000"},
                                  {"12345", "12 345"},
                                  {"123456", "123 456"},
                                  {"1234567", "1 234 567"},
                                  {"1234567890", "1 234 567 890"},
                                  {"12345678901", "12345678901"}};
  for (auto [digits, expected] : cases) EXPECT_EQ(GroupDigits(digits), expected) << digits;
}

// 1. e4 e5 2. Nf3 Nc6 3. Bb5 a6 4. 0-0 Nf6.
ShownLine ruyLopez() {
  struct Played { int piece; const char* from; const char* to; int moveKind; };
  const Played line[] = {{Pawn, "e2", "e4", Pawn},     {-Pawn, "e7", "e5", -Pawn},
                         {Knight, "g1", "f3", Knight}, {-Knight, "b8", "c6", -Knight},
                         {Bishop, "f1", "b5", Bishop}, {-Pawn, "a7", "a6", -Pawn},
                         {King, "e1", "g1", kind::WhiteShortCastle}, {-Knight, "g8", "f6", -Knight}};
  ShownLine shown{};
  for (std::size_t index = 0; index < shown.size(); ++index) {
    const Played& move = line[index];
    shown[index] = {static_cast<std::int8_t>(move.piece), static_cast<std::int8_t>(sq(move.from)),
                    static_cast<std::int8_t>(sq(move.to)), static_cast<std::int8_t>(move.piece),
                    static_cast<std::int8_t>(move.moveKind)};
  }
  return shown;
}

TEST(Notation, CurrentLineShowsAsManyMovePairsAsDepthAndPlyAllow) {
  const char* const pair1 = "1.  e2 - e4 ,  e7 - e5 ";
  const char* const pair2 = "2. Ng1 - f3 , Nb8 - c6 ";
  const char* const pair3 = "3. Bf1 - b5 ,  a7 - a6 ";
  const char* const pair4 = "4. 0 - 0, Ng8 - f6 ";
  struct LineCase { int depth; int ply; const char* firstBox[2]; const char* secondBox[2]; };
  const LineCase cases[] = {
      {1, 1, {pair1, ""}, {"", ""}},        {3, 3, {pair1, ""}, {"", ""}},
      {2, 4, {pair1, ""}, {"", ""}},        {3, 4, {pair1, pair2}, {"", ""}},
      {9, 6, {pair1, pair2}, {"", ""}},     {8, 8, {pair1, pair2}, {"", ""}},
      {9, 7, {pair1, pair2}, {pair3, pair4}}, {12, 9, {pair1, pair2}, {pair3, pair4}},
  };
  const ShownLine line = ruyLopez();
  Notation notation;
  for (const LineCase& c : cases) {
    SCOPED_TRACE(testing::Message() << "depth " << c.depth << " ply " << c.ply);
    const CurrentLineText shown = notation.ShowCurrentLine(line, c.depth, c.ply);
    EXPECT_EQ(shown.firstBox[0], c.firstBox[0]);
    EXPECT_EQ(shown.firstBox[1], c.firstBox[1]);
    EXPECT_EQ(shown.secondBox[0], c.secondBox[0]);
    EXPECT_EQ(shown.secondBox[1], c.secondBox[1]);
  }
}

}  // namespace
}  // namespace velkaro::core
