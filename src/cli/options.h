#pragma once
// The command line of velkaro-cli: its options, how they are read, and the
// set-up they describe.

#include <optional>
#include <string>
#include <vector>

#include "core/position.h"
#include "solver/first_move.h"

namespace velkaro::cli {

// Exit statuses the command line promises.
inline constexpr int kExitRefused = 2;   // the set-up was refused; the message is on stderr
inline constexpr int kExitUsage = 64;    // bad arguments; a usage line is on stderr

struct Options {
  std::string command;
  std::string fen;
  std::string stipulation;
  std::string enPassant;
  std::string firstMove;
  int depth = -1;
  int language = 4;
  bool divide = false;
  bool secondMoves = false;
  bool minimumMoves = false;
  bool stopFirst = false;
};

// Reads argv; on a mistake returns nothing after printing what was wrong.
std::optional<Options> parseOptions(const std::vector<std::string>& arguments);

// Prints the usage lines on stderr and returns kExitUsage.
int usage();

// The set-up the FEN (and --ep) describe; on a mistake returns nothing after
// printing what was wrong.
std::optional<core::BoardSetup> setupFromOptions(const Options& options);

// The legal first move `text` names; on a mistake (none, or several) returns
// nothing after printing what was wrong.
std::optional<solver::FirstMove> chosenFirstMove(const core::BoardSetup& setup, const std::string& text);

}  // namespace velkaro::cli
