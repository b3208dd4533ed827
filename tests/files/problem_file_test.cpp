// Tests of the problem file: problems saved and opened again, the header's
// bytes, short and damaged files, and the companion solution text read back
// by its line rules and rebuilt as a tree.

#include "formats/problem_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "files_test_support.h"

namespace velkaro::formats {
namespace {

using core::MoveRecord;
using namespace core::piece;
using files_test::dataPath;
using files_test::readFile;
using files_test::setupOf;

constexpr char kGarai[] = "4R3/8/Q7/1B1p4/2bpR3/P2kr3/6K1/6b1 b - -";  // H#2, Black moves first
constexpr char kSkuja[] = "4k2r/5p1p/5Q2/8/8/4p3/8/R3K3 w Qk -";       // #2, key O-O-O

int square(const char* name) { return core::squareAt(name[0] - 'a', name[1] - '0'); }

MoveRecord move(int man, const char* from, const char* to, int kind = 0) {
  return {static_cast<std::int8_t>(man), static_cast<std::int8_t>(square(from)), static_cast<std::int8_t>(square(to)),
          static_cast<std::int8_t>(man), static_cast<std::int8_t>(kind == 0 ? man : kind)};
}

// 1.Rxe4 Bxc4+ 2.Ke3 Qh6#
const std::vector<MoveRecord> kGaraiLine = {move(-Rook, "e3", "e4"), move(Bishop, "b5", "c4"), move(-King, "d3", "e3"),
                                            move(Queen, "a6", "h6")};

ProblemData garai() {
  ProblemData problem;
  problem.setup = setupOf(kGarai);
  problem.stipulation = {true, false, 2};
  problem.options = {true, false, true, false};
  for (const core::FirstMove& first : core::firstMoveList(problem.setup)) {
    if (core::namesMove(first, "e3e4")) problem.firstMove = first;
  }
  problem.line = {5, 4, kGaraiLine};
  problem.solutionText = readFile(dataPath("garai.red"));
  return problem;
}

ProblemData skuja() {
  ProblemData problem;
  problem.setup = setupOf(kSkuja);
  problem.stipulation = {false, false, 3};
  // 1.O-O-O O-O 2.Rg1#: both castlings replayed, the rook moved by the first.
  problem.line.moves = {move(King, "e1", "c1", core::kind::WhiteLongCastle),
                        move(-King, "e8", "g8", core::kind::BlackShortCastle), move(Rook, "d1", "g1")};
  return problem;
}

struct RoundTrip {
  const char* name;
  ProblemData problem;
  std::size_t movesKept;
};

class ProblemFile : public files_test::ScratchFolder {};

TEST_F(ProblemFile, SavedProblemsOpenAsTheyWere) {
  ProblemData broken = garai();
  broken.line.moves[2] = move(-King, "d3", "a1");  // not a king's move: the line ends before it
  broken.solutionText.clear();
  ProblemData bare;
  bare.setup = setupOf(kSkuja);
  const RoundTrip cases[] = {{"garai", garai(), 4}, {"skuja", skuja(), 3}, {"broken", broken, 2}, {"bare", bare, 0}};
  for (const RoundTrip& c : cases) {
    SCOPED_TRACE(c.name);
    const std::filesystem::path file = folder_ / (std::string(c.name) + ".kvz");
    std::filesystem::copy_file(dataPath("garai.red"), companionPath(file));  // an old solution, to be replaced
    ASSERT_TRUE(SaveProblem(file, c.problem));
    const std::string bytes = readFile(file);
    EXPECT_EQ(bytes.size(), (std::max<std::size_t>(c.movesKept, 1) + 2) * kMoveRecordSize);
    EXPECT_EQ(static_cast<unsigned char>(bytes[4]), c.problem.setup.sideToMove == core::Black ? 255 : 1);
    EXPECT_EQ(std::filesystem::exists(companionPath(file)), !c.problem.solutionText.empty());

    ProblemData opened;
    ASSERT_TRUE(OpenProblem(file, opened));
    EXPECT_EQ(opened.setup.sideToMove, c.problem.setup.sideToMove);
    EXPECT_EQ(opened.line.moves.size(), c.movesKept);
    EXPECT_EQ(opened.firstMove.has_value(), c.problem.firstMove.has_value());
    EXPECT_EQ(opened.solutionText, c.problem.solutionText);
    const std::vector<std::uint8_t> again = problemFileBytes(opened);
    EXPECT_EQ(std::string(again.begin(), again.end()), bytes);
  }
}

// Every header byte of the saved Garai problem, against the golden list of
// its non-zero bytes.
TEST(ProblemFileHeader, HoldsEachFieldAtItsByte) {
  std::vector<std::uint8_t> expected(kHeaderSize, 0);
  std::istringstream golden(readFile(dataPath("garai_header.txt")));
  for (std::string line; std::getline(golden, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream fields(line);
    std::size_t byte = 0;
    int value = 0;
    fields >> byte >> value;
    expected.at(byte) = static_cast<std::uint8_t>(value);
  }
  const std::vector<std::uint8_t> bytes = problemFileBytes(garai());
  for (std::size_t byte = 0; byte < kHeaderSize; ++byte) EXPECT_EQ(bytes[byte], expected[byte]) << "byte " << byte;
}

// The Garai file cut short and read over the Skuja problem: what the cut
// reaches is Garai's, the rest stays Skuja's.
TEST(ProblemFileShort, ChangesOnlyWhatItReaches) {
  const struct {
    std::size_t cut;
    bool helpmate, moves, side, castling;
    int squares;  // board squares from a8 on that come from the file
    std::size_t lineMoves;
  } cases[] = {{0, false, false, false, false, 0, 3},
               {3, true, false, false, false, 0, 3},
               {5, true, true, true, false, 0, 0},
               {35, true, true, true, true, 0, 0},
               {60, true, true, true, true, 7, 0},
               {kHeaderSize, true, true, true, true, 64, 0},
               {kHeaderSize + 800, true, true, true, true, 64, 1},
               {4800, true, true, true, true, 64, 4}};
  const std::vector<std::uint8_t> file = problemFileBytes(garai());
  const ProblemData from = garai();
  const ProblemData before = skuja();
  for (const auto& c : cases) {
    SCOPED_TRACE(c.cut);
    ProblemData problem = skuja();
    readProblemBytes(std::span(file).first(c.cut), problem);
    EXPECT_EQ(problem.stipulation.helpmate, (c.helpmate ? from : before).stipulation.helpmate);
    EXPECT_EQ(problem.stipulation.moves, (c.moves ? from : before).stipulation.moves);
    EXPECT_EQ(problem.setup.sideToMove, (c.side ? from : before).setup.sideToMove);
    EXPECT_EQ(problem.setup.whiteLongCastle, (c.castling ? from : before).setup.whiteLongCastle);
    for (std::size_t at = 0; at < 64; ++at) {
      EXPECT_EQ(problem.setup.board[at], (static_cast<int>(at) < c.squares ? from : before).setup.board[at]) << at;
    }
    EXPECT_EQ(problem.line.moves.size(), c.lineMoves);
  }
}

// A move count no search can hold (a damaged byte 3) leaves the problem's own.
TEST(ProblemFileOpen, TakesOnlyAMoveCountASearchCanHold) {
  std::vector<std::uint8_t> file = problemFileBytes(garai());
  for (const int moves : {0, -120, 31, 127, 30, 1}) {
    SCOPED_TRACE(moves);
    file[3] = static_cast<std::uint8_t>(moves);
    ProblemData problem = skuja();
    readProblemBytes(file, problem);
    EXPECT_EQ(problem.stipulation.moves, moves == 30 || moves == 1 ? moves : skuja().stipulation.moves);
  }
}

TEST(ProblemFileOpen, AMissingFileChangesNothing) {
  ProblemData problem = garai();
  EXPECT_FALSE(OpenProblem(std::filesystem::temp_directory_path() / "velkaro_no_such_problem.kvz", problem));
  EXPECT_EQ(problemFileBytes(problem), problemFileBytes(garai()));
  EXPECT_EQ(problem.solutionText, garai().solutionText);
}

TEST(CompanionText, IsReadByItsLineRules) {
  for (const char* name :
       {"solution", "long_line", "long_line_short_rest", "short_line", "crlf", "exactly_47", "no_final_break"}) {
    SCOPED_TRACE(name);
    std::ifstream in(dataPath(std::string("companion/") + name + ".red"), std::ios::binary);
    ASSERT_TRUE(in);
    EXPECT_EQ(readSolutionText(in), readFile(dataPath(std::string("companion/") + name + ".txt")));
  }
}

TEST(CompanionText, RebuildsTheTree) {
  std::string dump;
  for (const SolutionEntry& entry : solutionTree(readFile(dataPath("tree.txt")))) {
    dump += "R|" + entry.text + "\n";
    for (const std::string& child : entry.children) dump += "C|" + child + "\n";
  }
  EXPECT_EQ(dump, readFile(dataPath("tree.expected")));
}

TEST(CompanionText, NamesAndTitles) {
  std::istringstream golden(readFile(dataPath("names.txt")));
  for (std::string line; std::getline(golden, line);) {
    if (line.empty() || line[0] == '#') continue;
    const std::size_t first = line.find(" | ");
    const std::size_t second = line.find(" | ", first + 3);
    const std::filesystem::path file = line.substr(0, first);
    EXPECT_EQ(companionPath(file).string(), line.substr(first + 3, second - first - 3));
    EXPECT_EQ(problemWindowTitle(file), line.substr(second + 3));
  }
}

}  // namespace
}  // namespace velkaro::formats
