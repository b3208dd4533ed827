// Reading a standard FEN line strictly, field by field.

#include "formats/standard_fen.h"

#include <sstream>
#include <vector>

namespace velkaro::formats {

namespace {

using namespace core;

int pieceCode(char letter) {
  const bool black = letter >= 'a' && letter <= 'z';
  int code = 0;
  switch (black ? static_cast<char>(letter - 'a' + 'A') : letter) {
    case 'K': code = piece::King; break;
    case 'Q': code = piece::Queen; break;
    case 'R': code = piece::Rook; break;
    case 'B': code = piece::Bishop; break;
    case 'N': code = piece::Knight; break;
    case 'P': code = piece::Pawn; break;
    default: return 0;
  }
  return black ? -code : code;
}

bool readPlacement(std::string_view field, BoardSetup& setup, std::string& error) {
  int rank = 8;
  int file = 0;
  for (char c : field) {
    if (c == '/') {
      if (file != 8 || rank == 1) {
        error = "rank " + std::to_string(rank) + " does not hold 8 squares";
        return false;
      }
      --rank;
      file = 0;
    } else if (c >= '1' && c <= '8') {
      file += c - '0';
    } else if (const int code = pieceCode(c); code != 0 && file < 8) {
      setup.board[static_cast<std::size_t>(squareAt(file, rank))] = code;
      ++file;
    } else {
      error = code == 0 ? std::string("'") + c + "' is neither a piece letter nor a digit 1 to 8"
                        : "rank " + std::to_string(rank) + " holds more than 8 squares";
      return false;
    }
    if (file > 8) {
      error = "rank " + std::to_string(rank) + " holds more than 8 squares";
      return false;
    }
  }
  if (rank != 1 || file != 8) {
    error = rank != 1 ? "it has " + std::to_string(9 - rank) + " ranks instead of 8"
                      : "rank 1 does not hold 8 squares";
    return false;
  }
  return true;
}

bool readCastling(std::string_view field, BoardSetup& setup) {
  if (field == "-") return true;
  for (char c : field) {
    bool* right = c == 'K' ? &setup.whiteShortCastle
                  : c == 'Q' ? &setup.whiteLongCastle
                  : c == 'k' ? &setup.blackShortCastle
                  : c == 'q' ? &setup.blackLongCastle
                             : nullptr;
    if (right == nullptr || *right) return false;
    *right = true;
  }
  return !field.empty();
}

// The target square behind a pawn that has just made its double step: on
// rank 6 with White to move (the black pawn on rank 5), on rank 3 with Black
// to move; the pawn must stand there and the squares it crossed be empty.
bool readEnPassant(std::string_view field, BoardSetup& setup, std::string& error) {
  if (field == "-") return true;
  if (field.size() != 2 || field[0] < 'a' || field[0] > 'h' || field[1] < '1' || field[1] > '8') {
    error.assign(1, '"').append(field).append("\" is not a square");
    return false;
  }
  const int side = setup.sideToMove;
  const int file = field[0] - 'a';
  const int rank = field[1] - '0';
  if (rank != (side == White ? 6 : 3)) {
    error = std::string(field) + " is not on rank " + (side == White ? "6" : "3") + " for the side to move";
    return false;
  }
  const int target = squareAt(file, rank);
  const int pawn = target + 8 * side;  // one rank nearer the side to move
  const int start = target - 8 * side;
  if (setup.board[static_cast<std::size_t>(pawn)] != -side * piece::Pawn ||
      setup.board[static_cast<std::size_t>(target)] != 0 || setup.board[static_cast<std::size_t>(start)] != 0) {
    error = "no pawn can just have passed " + std::string(field);
    return false;
  }
  setup.lastMoveSquare = pawn;
  return true;
}

bool isCount(std::string_view field) {
  if (field.empty() || field.size() > 6) return false;
  for (char c : field) {
    if (c < '0' || c > '9') return false;
  }
  return true;
}

}  // namespace

std::optional<BoardSetup> readStandardFen(std::string_view line, std::string& error) {
  std::vector<std::string> fields;
  std::istringstream words{std::string(line)};
  for (std::string word; words >> word;) fields.push_back(word);
  if (fields.empty()) {
    error = "the FEN line is empty";
    return std::nullopt;
  }
  if (fields.size() > 6) {
    error = "the FEN line has more than six fields: \"" + fields[6] + "\"";
    return std::nullopt;
  }
  BoardSetup setup;
  std::string why;
  if (!readPlacement(fields[0], setup, why)) {
    error = "the placement field \"" + fields[0] + "\" is malformed: " + why;
    return std::nullopt;
  }
  if (fields.size() > 1) {
    if (fields[1] != "w" && fields[1] != "b") {
      error = "the side-to-move field \"" + fields[1] + "\" must be w or b";
      return std::nullopt;
    }
    setup.sideToMove = fields[1] == "w" ? White : Black;
  }
  if (fields.size() > 2 && !readCastling(fields[2], setup)) {
    error = "the castling field \"" + fields[2] + "\" must be - or letters of KQkq, each once";
    return std::nullopt;
  }
  if (fields.size() > 3 && !readEnPassant(fields[3], setup, why)) {
    error = "the en-passant field \"" + fields[3] + "\" is wrong: " + why;
    return std::nullopt;
  }
  if (fields.size() > 4 && !isCount(fields[4])) {
    error = "the half-move clock field \"" + fields[4] + "\" is not a number";
    return std::nullopt;
  }
  if (fields.size() > 5 && !isCount(fields[5])) {
    error = "the move-number field \"" + fields[5] + "\" is not a number";
    return std::nullopt;
  }
  return setup;
}

}  // namespace velkaro::formats
