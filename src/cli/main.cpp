// velkaro-cli: Velkaro's engines from the command line, for batch work,
// scripts and end-to-end checks. stdout carries exactly the result text;
// progress and the summary go to stderr.

#include <unistd.h>

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <cstdio>
#include <iostream>

#include "cli/cli.h"
#include "core/notation.h"
#include "formats/standard_fen.h"
#include "jobs/progress_text.h"

namespace velkaro::cli {

void StderrMessages::showMessage(std::string_view, std::string_view text) {
  std::fprintf(stderr, "%.*s\n", static_cast<int>(text.size()), text.data());
}

void PrintedText::appendText(std::string_view text) { std::fwrite(text.data(), 1, text.size(), stdout); }

void PrintedText::resultShown(bool) { std::fflush(stdout); }

TerminalProgress::TerminalProgress(const char* counted) : shown_(isatty(STDERR_FILENO) != 0), counted_(counted) {}

void TerminalProgress::tick(const jobs::Progress& progress) {
  if (!shown_) return;
  std::fprintf(stderr, "\r%s %s %s %s %s/sec  ", jobs::clockText(progress.elapsedMs).c_str(),
               jobs::testedMovesText(progress.tested).c_str(), counted_,
               jobs::speedText(progress.tested, progress.elapsedMs).c_str(), counted_);
}

void TerminalProgress::clear() const {
  if (shown_) std::fputs("\r\033[K", stderr);
}

void printSummary(double seconds, std::uint64_t moves, const char* counted) {
  const auto perSecond = seconds > 0 ? static_cast<std::uint64_t>(static_cast<double>(moves) / seconds) : 0;
  std::fprintf(stderr, "Time %.3f s, %s %s, %s %s/sec\n", seconds, core::GroupDigits(std::to_string(moves)).c_str(),
               counted, core::GroupDigits(std::to_string(perSecond)).c_str(), counted);
}

void addPositionOptions(CLI::App& command, PositionOptions& options) {
  command.add_option("--fen", options.fen, "the position as a standard FEN line")->required();
  command.add_option("--ep", options.enPassant,
                     "the pawn that has just made a double step (e.g. d5); overrides the FEN's en-passant field");
}

namespace {

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
  const int passed = square - 8 * side;
  return core::rankOf(square) == (side == core::White ? 5 : 4) &&
         setup.board[static_cast<std::size_t>(square)] == -side * core::piece::Pawn &&
         setup.board[static_cast<std::size_t>(passed)] == 0;
}

}  // namespace

core::BoardSetup setupFrom(const PositionOptions& options) {
  std::string error;
  std::optional<core::BoardSetup> setup = formats::readStandardFen(options.fen, error);
  if (!setup) throw UsageError("--fen: " + error);
  if (!options.enPassant.empty()) {
    const int square = squareFromText(options.enPassant);
    if (square < 0 || !enPassantPossible(*setup, square)) {
      throw UsageError("--ep: no enemy pawn on " + options.enPassant + " can just have made a double step");
    }
    setup->lastMoveSquare = square;
  }
  return *setup;
}

core::Stipulation stipulationFrom(const std::string& text, int maxMoves) {
  core::Stipulation stipulation;
  const char first = text.empty() ? ' ' : static_cast<char>(text[0] & ~0x20);
  stipulation.helpmate = first == 'H';
  stipulation.selfmate = first == 'S';
  const std::size_t hash = stipulation.helpmate || stipulation.selfmate ? 1 : 0;
  const std::string number = text.size() > hash + 1 && text[hash] == '#' ? text.substr(hash + 1) : "";
  const bool digits = !number.empty() && number.size() <= 3 && number.find_first_not_of("0123456789") == number.npos;
  stipulation.moves = digits ? std::stoi(number) : 0;
  if (stipulation.moves < 1 || stipulation.moves > maxMoves) {
    throw UsageError("--stip needs #n, S#n or H#n with n from 1 to " + std::to_string(maxMoves) + ", not \"" + text +
                     "\"");
  }
  return stipulation;
}

core::FirstMove chosenFirstMove(const core::BoardSetup& setup, const std::string& text) {
  std::optional<core::FirstMove> chosen;
  for (const core::FirstMove& move : core::firstMoveList(setup)) {
    if (!core::namesMove(move, text)) continue;
    if (chosen) throw UsageError("--first-move: \"" + text + "\" names more than one move; give its from-square too");
    chosen = move;
  }
  if (!chosen) throw UsageError("--first-move: \"" + text + "\" is not a legal first move");
  return *chosen;
}

}  // namespace velkaro::cli

int main(int argc, char** argv) {
  using namespace velkaro::cli;
  CLI::App app("Velkaro's engines from the command line: solving, counting and checking chess problems.",
               "velkaro-cli");
  app.require_subcommand(1);
  int status = 0;
  addPerftCommand(app, status);
  addSolveCommand(app, status);
  addCountCommand(app, status);
  addPlaceCommand(app, status);
  addExportCommand(app, status);
  addSaveCommand(app, status);
  addShowCommand(app, status);
  addCreateCommand(app, status);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    std::cout << app.help();
    return 0;
  } catch (const CLI::ParseError& error) {
    std::cerr << "velkaro-cli: " << error.what() << "\n" << app.help();
    return kExitUsage;
  } catch (const UsageError& error) {
    std::cerr << "velkaro-cli: " << error.what() << "\n" << app.help();
    return kExitUsage;
  }
  return status;
}
