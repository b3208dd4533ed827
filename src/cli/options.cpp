// Reading velkaro-cli's arguments and turning --fen and --ep into a set-up.

#include "cli/options.h"

#include <charconv>
#include <cstdio>
#include <string_view>

#include "counter/first_moves.h"
#include "formats/fen.h"

namespace velkaro::cli {

namespace {

bool parseNumber(std::string_view text, int& value) {
  const char* end = text.data() + text.size();
  auto [at, error] = std::from_chars(text.data(), end, value);
  return error == std::errc{} && at == end;
}

void complain(const std::string& what) { std::fprintf(stderr, "velkaro-cli: %s\n", what.c_str()); }

// The options that take a value, and where the value goes.
bool takeValue(Options& options, std::string_view name, const std::string& value) {
  if (name == "--fen") {
    options.fen = value;
  } else if (name == "--stip") {
    options.stipulation = value;
  } else if (name == "--ep") {
    options.enPassant = value;
  } else if (name == "--first-move") {
    options.firstMove = value;
  } else if (name == "--depth") {
    if (!parseNumber(value, options.depth) || options.depth < 0) {
      complain("--depth needs a whole number of 0 or more, not \"" + value + "\"");
      return false;
    }
  } else if (name == "--lang") {
    if (!parseNumber(value, options.language) || options.language < 1 || options.language > 17) {
      complain("--lang needs a language number from 1 to 17, not \"" + value + "\"");
      return false;
    }
  } else {
    complain("unknown option " + std::string(name));
    return false;
  }
  return true;
}

bool takeFlag(Options& options, std::string_view name) {
  if (name == "--divide") {
    options.divide = true;
  } else if (name == "--second-moves") {
    options.secondMoves = true;
  } else if (name == "--min-moves") {
    options.minimumMoves = true;
  } else if (name == "--stop-first") {
    options.stopFirst = true;
  } else {
    return false;
  }
  return true;
}

// "d5" as a square index, or -1.
int squareFromText(std::string_view text) {
  if (text.size() != 2 || text[0] < 'a' || text[0] > 'h' || text[1] < '1' || text[1] > '8') return -1;
  return core::squareAt(text[0] - 'a', text[1] - '0');
}

// The "last move" square must hold an enemy pawn that can just have made its
// double step: on rank 5 when White is to move (rank 4 when Black is), with
// the square it passed over empty.
bool enPassantPossible(const core::BoardSetup& setup, int square) {
  const int side = setup.sideToMove;
  const int rank = side == core::White ? 5 : 4;
  const int passed = square - 8 * side;
  return core::rankOf(square) == rank && setup.board[static_cast<std::size_t>(square)] == -side * core::piece::Pawn &&
         setup.board[static_cast<std::size_t>(passed)] == 0;
}

}  // namespace

std::optional<Options> parseOptions(const std::vector<std::string>& arguments) {
  if (arguments.empty()) return std::nullopt;
  Options options;
  options.command = arguments[0];
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    const std::string& name = arguments[i];
    if (takeFlag(options, name)) continue;
    if (i + 1 >= arguments.size()) {
      complain(name.rfind("--", 0) == 0 ? name + " needs a value" : "unexpected argument \"" + name + "\"");
      return std::nullopt;
    }
    if (!takeValue(options, name, arguments[++i])) return std::nullopt;
  }
  if (options.fen.empty()) {
    complain("--fen is required");
    return std::nullopt;
  }
  return options;
}

int usage() {
  std::fputs(
      "usage: velkaro-cli perft --fen FEN --depth N [--divide] [--ep SQUARE]\n"
      "       velkaro-cli solve --fen FEN --stip STIP [--ep SQUARE] [--lang N] [--second-moves]\n"
      "                         [--min-moves] [--first-move MOVE] [--stop-first]\n"
      "       velkaro-cli count --fen FEN --depth N [--ep SQUARE] [--first-move MOVE]\n",
      stderr);
  return kExitUsage;
}

std::optional<core::BoardSetup> setupFromOptions(const Options& options) {
  formats::FenImport import;
  if (!import.selectLine({options.fen}, 0, "FEN")) {
    complain("--fen: not a FEN position: \"" + options.fen + "\"");
    return std::nullopt;
  }
  core::BoardSetup setup = formats::setupFromImport(import.result());
  if (!options.enPassant.empty()) {
    const int square = squareFromText(options.enPassant);
    if (square < 0 || !enPassantPossible(setup, square)) {
      complain("--ep: no enemy pawn on " + options.enPassant + " can just have made a double step");
      return std::nullopt;
    }
    setup.lastMoveSquare = square;
  }
  return setup;
}

std::optional<solver::FirstMove> chosenFirstMove(const core::BoardSetup& setup, const std::string& text) {
  std::optional<solver::FirstMove> chosen;
  for (const solver::FirstMove& move : counter::firstMoveList(setup)) {
    if (!counter::namesMove(move, text)) continue;
    if (chosen) {
      complain("--first-move: \"" + text + "\" names more than one move; give its from-square too");
      return std::nullopt;
    }
    chosen = move;
  }
  if (!chosen) complain("--first-move: \"" + text + "\" is not a legal first move");
  return chosen;
}

}  // namespace velkaro::cli
