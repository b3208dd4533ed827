// Move notation: the letter table of the notation languages, the text of one
// move and of the current line, and the grouping of counts. Captures, checks
// and mates are never marked: the long form names both squares anyway.

#include "core/notation.h"

namespace velkaro::core {

namespace {

struct LanguageRow {
  const char* name;
  std::array<char, 5> letters;  // king, queen, rook, bishop, knight
};

constexpr LanguageRow kLanguages[Notation::kLanguageCount] = {
    {"Czech", {'K', 'D', 'V', 'S', 'J'}},     {"Danish", {'K', 'D', 'T', 'L', 'S'}},
    {"Dutch", {'K', 'D', 'T', 'L', 'P'}},     {"English", {'K', 'Q', 'R', 'B', 'N'}},
    {"Estonian", {'K', 'L', 'V', 'O', 'R'}},  {"Finnish", {'K', 'D', 'T', 'L', 'R'}},
    {"French", {'R', 'D', 'T', 'F', 'C'}},    {"German", {'K', 'D', 'T', 'L', 'S'}},
    {"Hungarian", {'K', 'V', 'T', 'L', 'H'}}, {"Icelandic", {'K', 'D', 'H', 'B', 'R'}},
    {"Italian", {'R', 'D', 'T', 'A', 'C'}},   {"Norwegian", {'K', 'D', 'T', 'L', 'S'}},
    {"Polish", {'K', 'H', 'W', 'G', 'S'}},    {"Portuguese", {'R', 'D', 'T', 'B', 'C'}},
    {"Romanian", {'R', 'D', 'T', 'N', 'C'}},  {"Spanish", {'R', 'D', 'T', 'A', 'C'}},
    {"Swedish", {'K', 'D', 'T', 'L', 'S'}},
};

constexpr bool isLanguage(int language) { return language >= 1 && language <= Notation::kLanguageCount; }

void appendSquare(std::string& text, int square) {
  text += static_cast<char>('a' + square % 8);
  text += static_cast<char>('1' + (63 - square) / 8);
}

}  // namespace

void Notation::setLanguage(int language) {
  if (!isLanguage(language)) return;
  language_ = language;
  letters_ = kLanguages[language - 1].letters;
}

const char* Notation::languageName(int language) {
  return isLanguage(language) ? kLanguages[language - 1].name : "";
}

char Notation::pieceLetter(int code) {
  // Colour never changes the letter, so both signs share a case.
  switch (code) {
    case piece::King: case -piece::King: lastLetter_ = letters_[0]; break;
    case piece::Queen: case -piece::Queen: lastLetter_ = letters_[1]; break;
    case piece::Rook: case -piece::Rook: lastLetter_ = letters_[2]; break;
    case piece::Bishop: case -piece::Bishop: lastLetter_ = letters_[3]; break;
    case piece::Knight: case -piece::Knight: lastLetter_ = letters_[4]; break;
    case piece::Pawn: case -piece::Pawn: lastLetter_ = ' '; break;
    default: break;
  }
  return lastLetter_;
}

std::string Notation::MoveText(int movedPiece, int from, int to, int placedPiece, int moveKind) {
  if (moveKind == kind::WhiteLongCastle || moveKind == kind::BlackLongCastle) return "0 - 0 - 0";
  if (moveKind == kind::WhiteShortCastle || moveKind == kind::BlackShortCastle) return "0 - 0";
  std::string text;
  text.reserve(9);
  text += pieceLetter(movedPiece);
  appendSquare(text, from);
  text += " - ";
  appendSquare(text, to);
  text += placedPiece != movedPiece ? pieceLetter(placedPiece) : ' ';
  return text;
}

std::string Notation::MoveText(const MoveRecord& move) {
  return MoveText(move.movedPiece, move.fromSquare, move.toSquare, move.placedPiece, move.moveKind);
}

std::string Notation::MoveText(const PlyStack& stack, int ply) {
  const PlyFrame& frame = stack[ply];
  return MoveText(frame.movedPiece, frame.fromSquare, frame.toSquare, frame.placedPiece, frame.moveKind);
}

// "n. first, second" for moves firstMove and firstMove + 1 of the line.
std::string Notation::movePair(const ShownLine& line, int firstMove) {
  std::string text = std::to_string((firstMove + 1) / 2) + ". " + MoveText(line[firstMove - 1]);
  text += ", ";
  text += MoveText(line[firstMove]);
  return text;
}

CurrentLineText Notation::ShowCurrentLine(const ShownLine& line, int searchDepth, int currentPly) {
  CurrentLineText shown;
  shown.firstBox[0] = movePair(line, 1);
  if (searchDepth >= 3 && currentPly >= 4) shown.firstBox[1] = movePair(line, 3);
  if (searchDepth >= 9 && currentPly >= 7) {
    shown.secondBox[0] = movePair(line, 5);
    shown.secondBox[1] = movePair(line, 7);
  }
  return shown;
}

std::string GroupDigits(std::string_view digits) {
  const std::size_t length = digits.size();
  if (length < 4 || length > 10) return std::string(digits);
  const std::size_t lead = length % 3 == 0 ? 3 : length % 3;
  std::string grouped(digits.substr(0, lead));
  for (std::size_t start = lead; start < length; start += 3) {
    grouped += ' ';
    grouped += digits.substr(start, 3);
  }
  return grouped;
}

}  // namespace velkaro::core
