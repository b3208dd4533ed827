// Board texts of the positions list and the squares marked when one is shown.

#include "placement/board_text.h"

#include "core/attacks.h"
#include "placement/layout.h"

namespace velkaro::placement {

namespace {

constexpr char kLetters[kKindCount + 1] = "PKQRBN";  // in the order of the kinds

char letterOf(int code) {
  for (int kind = 0; kind < kKindCount; ++kind) {
    if (kKindCode[kind] == code) return kLetters[kind];
  }
  return '?';
}

}  // namespace

std::string boardText(const Board& board) {
  std::string text;
  for (int row = 0; row < 8; ++row) {
    int empty = 0;
    for (int file = 0; file < 8; ++file) {
      const int code = board[static_cast<std::size_t>(row * 8 + file)];
      if (code == 0) {
        ++empty;
        continue;
      }
      if (empty > 0) text += static_cast<char>('0' + empty);
      empty = 0;
      text += letterOf(code);
    }
    if (empty > 0) text += static_cast<char>('0' + empty);
    if (row < 7) text += '/';
  }
  return text;
}

std::optional<Board> parseBoardText(std::string_view text) {
  Board board{};
  int row = 0;
  int file = 0;
  for (const char c : text) {
    if (c == '/') {
      if (file != 8 || ++row > 7) return std::nullopt;
      file = 0;
    } else if (c >= '1' && c <= '8') {
      file += c - '0';
    } else {
      const std::string_view letters(kLetters);
      const std::size_t kind = letters.find(c);
      if (kind == letters.npos || file >= 8) return std::nullopt;
      board[static_cast<std::size_t>(row * 8 + file++)] = static_cast<std::int8_t>(kKindCode[kind]);
    }
    if (file > 8) return std::nullopt;
  }
  if (row != 7 || file != 8) return std::nullopt;
  return board;
}

Squares unattackedEmptySquares(const Board& board) {
  core::Position position{};
  for (int square = 0; square < 64; ++square) position.board[square] = board[static_cast<std::size_t>(square)];
  Squares unattacked = 0;
  for (int square = 0; square < 64; ++square) {
    if (position.board[square] == 0 && core::isAttackedByWhite(square, position) < 0) unattacked |= bitOf(square);
  }
  return unattacked;
}

std::optional<Squares> unattackedEmptySquares(std::string_view boardText) {
  const std::optional<Board> board = parseBoardText(boardText);
  if (!board) return std::nullopt;
  return unattackedEmptySquares(*board);
}

}  // namespace velkaro::placement
