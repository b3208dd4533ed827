#pragma once
// The problem file: a problem with the state of its last run, kept as a binary
// ".kvz" file in the problem folder, and its solution text kept beside it in a
// ".red" text file. Saving writes both; opening reads back whatever the files
// hold and leaves everything they do not reach as it was.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <istream>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/first_moves.h"
#include "core/position.h"
#include "core/stipulation.h"

namespace velkaro::formats {

// What the window's open and save dialogs show.
inline constexpr char kProblemFilter[] = "KVZ Files (*.kvz)";
inline constexpr char kOpenProblemTitle[] = "Open problem";
inline constexpr char kSaveProblemAsTitle[] = "Save problem as";
inline constexpr char kProblemExtension[] = ".kvz";

// The parts of a problem file: a header of one-byte fields, the current line
// as n + 1 move records (the ply frames the line passes through), and a filler
// that rounds the file up to (n + 2) records.
inline constexpr std::size_t kHeaderSize = 309;
inline constexpr std::size_t kMoveRecordSize = sizeof(core::PlyFrame);
inline constexpr std::size_t kFillerSize = 491;
static_assert(kMoveRecordSize == 800 && kHeaderSize + kFillerSize == kMoveRecordSize);
// The longest line a file keeps: one move per ply frame a job has.
inline constexpr int kMaxLineMoves = core::kPlyFrameCount - 1;

// The companion text is read a line of at most 47 characters at a time; a
// line shorter than 5 characters ends it, and so does a full buffer.
inline constexpr std::size_t kCompanionLineLimit = 47;
inline constexpr std::size_t kShortestCompanionLine = 5;
inline constexpr std::size_t kSolutionTextLimit = 64000;

// The options of the Solver panel that a run reads.
struct SolverOptions {
  bool minimumMoves = false;        // "Search minimum moves"
  bool stopOnFirstSolution = true;  // "Stop on first solution"
  bool testAllSecondMoves = false;  // "Testing all second moves"
  bool counting = false;            // the last run counted continuations (the Variants tab)
  bool operator==(const SolverOptions&) const = default;
};

// The line the last run stood at, as the "Analysing moves:" boxes show it:
// Notation::ShowCurrentLine(moves, depth, ply).
struct CurrentLine {
  int depth = 0;                        // the plies the search plays out; 0 when there was no run
  int ply = 0;                          // the ply the run stood at
  std::vector<core::MoveRecord> moves;  // from the start position on
};

// The problem being edited, with what its last run left.
struct ProblemData {
  core::BoardSetup setup;
  core::Stipulation stipulation;
  SolverOptions options;
  std::optional<core::FirstMove> firstMove;  // "Select move"; none tests all moves
  CurrentLine line;
  std::string solutionText;  // the plain-text solution buffer: "\n" after each line, a tab before a variation
};

// One top-level entry of the solution tree with the lines under it.
struct SolutionEntry {
  std::string text;
  std::vector<std::string> children;
  bool operator==(const SolutionEntry&) const = default;
};

// The bytes of the problem file. Header bytes (each the low byte of a value
// in -128..127):
//   1 selfmate, 2 helpmate, 3 number of moves, 4 side to move (1, or -1 as 255),
//   5 "Search minimum moves", 6 "Stop on first solution", 7 the last run counted,
//   19 n, 20 the line's depth, 21 the ply it stood at,
//   31-34 castling (White long, White short, Black long, Black short),
//   35 en-passant "last move" square, 36 a first move was chosen,
//   37-41 that move: moved man, from-square, to-square, move kind, its place
//   among the man's moves, 51 "Testing all second moves",
//   53-116 the squares a8 to h1 as English letters, Black ones negated.
// The rest of the header is 0. Move record i is the ply frame before the
// line's move i: the position reached and that move; the search's own words
// and the move list are 0, and so are the records past the end of the line.
// The line is written as far as its moves are legal.
std::vector<std::uint8_t> problemFileBytes(const ProblemData& problem);

// Takes over what `bytes`, a problem file or the first part of one, say.
// Every byte the file lacks keeps the value `problem` gives it, so a short
// file changes only what it reaches. What cannot stand is dropped: squares
// without an English piece letter are empty, a first move must be a legal
// one, the line ends at its first move that is not legal in the position it
// reaches, an en-passant square must lie on the board.
void readProblemBytes(std::span<const std::uint8_t> bytes, ProblemData& problem);

// The solution text of a companion file, read line by line: a line longer
// than 47 characters goes on as a line of its own, a line shorter than 5
// characters ends the reading, each line read is kept with "\n" after it.
std::string readSolutionText(std::istream& in);

// The entries of the result tree that a solution text makes: a line that
// begins with a tab (the tab removed) under the last top-level entry, any
// other line (and a tab line before any other) at the top.
std::vector<SolutionEntry> solutionTree(std::string_view text);

// The problem file's name with its last three characters replaced by "red".
std::filesystem::path companionPath(const std::filesystem::path& problemFile);

// "Velkaro - " and the file's name, without its folder.
std::string problemWindowTitle(const std::filesystem::path& problemFile);

// Writes the problem file, then replaces the companion file: the old one is
// deleted and, when there is a solution text, the text is written as it is.
// False when either cannot be written.
bool SaveProblem(const std::filesystem::path& file, const ProblemData& problem);

// Reads a problem file into `problem` (see readProblemBytes), then its
// solution text from the companion file (empty without one). False, with
// `problem` untouched, when the problem file cannot be opened.
bool OpenProblem(const std::filesystem::path& file, ProblemData& problem);

}  // namespace velkaro::formats
