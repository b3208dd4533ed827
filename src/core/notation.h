#pragma once
// Move notation: the piece letters of the seventeen notation languages, the
// fixed long-algebraic text of one move, the current line under test as shown
// during a search, and the grouping of long counts by blanks.

#include <array>
#include <string>
#include <string_view>

#include "core/position.h"

namespace velkaro::core {

// The current line as the two two-line boxes of the progress panel show it.
// Lines the depth and ply do not reach are left empty.
struct CurrentLineText {
  bool operator==(const CurrentLineText&) const = default;
  std::string firstBox[2];
  std::string secondBox[2];
};

// The first moves of the line under test, as many as the display shows.
inline constexpr int kShownLineMoves = 8;
using ShownLine = std::array<MoveRecord, kShownLineMoves>;

// The letters moves are printed with. One object per window (or job), so two
// of them can print in different languages side by side.
class Notation {
 public:
  static constexpr int kLanguageCount = 17;
  static constexpr int kEnglish = 4;

  // Languages are numbered 1..17 (menu identifier - 112); any other number
  // leaves both the language and the letters as they are.
  void setLanguage(int language);
  int language() const { return language_; }

  // Letters for king, queen, rook, bishop and knight, in that order, for the
  // piece palette labels. Pawns are printed with a blank in every language.
  std::string_view letters() const { return {letters_.data(), letters_.size()}; }

  // The language's English name ("Czech" ... "Swedish"); "" outside 1..17.
  static const char* languageName(int language);

  // "0 - 0 - 0" for kinds 1 and 3, "0 - 0" for kinds 2 and 4; any other move
  // is exactly 9 characters: piece letter, from-square, " - ", to-square,
  // then the promotion letter or a blank. A code that is no piece keeps the
  // letter of the previous lookup.
  std::string MoveText(int movedPiece, int from, int to, int placedPiece, int moveKind);
  std::string MoveText(const MoveRecord& move);
  // The current move of frame `ply` of the line.
  std::string MoveText(const PlyStack& stack, int ply);
  // A single move kept apart from the line (a chosen first move, say).
  std::string LastMoveText(const MoveRecord& move) { return MoveText(move); }

  // The line under test. `searchDepth` is the number of plies the search
  // plays out (2n - 1 for a mate or selfmate in n, 2n for a helpmate in n);
  // moves 3-4 are shown from depth 3 once the current ply reaches 4, moves 5-8
  // from depth 9 once it reaches 7. Move k of the line is line[k - 1].
  CurrentLineText ShowCurrentLine(const ShownLine& line, int searchDepth, int currentPly);

 private:
  char pieceLetter(int code);
  std::string movePair(const ShownLine& line, int firstMove);

  int language_ = kEnglish;
  std::array<char, 5> letters_{'K', 'Q', 'R', 'B', 'N'};
  // The lookup has no default: a code it does not know gets this letter again.
  char lastLetter_ = ' ';
};

// Inserts a blank before every group of three digits from the right for texts
// of 4 to 10 characters ("1 000", "1 234 567 890"); shorter and longer texts
// come back unchanged.
std::string GroupDigits(std::string_view digits);

}  // namespace velkaro::core
