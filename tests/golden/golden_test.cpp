// Every result text of the Solver and Variants runs against the golden files
// in tests/data/golden: one file a case, its set-up in a header and the exact
// text after "---". Each case is run as a user could run it: straight
// through, stopped at every k-th progress tick and continued, and paused at
// each solution and continued; all must give the golden text, and the result
// tree must hold the same lines as the text.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <functional>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "core/first_moves.h"
#include "counter/counting_job.h"
#include "formats/standard_fen.h"
#include "solver/report_writer.h"
#include "solver/solver_job.h"

namespace velkaro {
namespace {

struct Case {
  std::string name;
  std::map<std::string, std::string> fields;
  std::vector<std::string> countLines;  // "count-line:" entries: records without a run
  std::string expected;

  std::string field(const std::string& key, const std::string& otherwise = "") const {
    const auto found = fields.find(key);
    return found == fields.end() ? otherwise : found->second;
  }
};

void PrintTo(const Case& test, std::ostream* out) { *out << test.name; }

std::vector<Case> loadCases() {
  std::vector<Case> cases;
  for (const auto& entry : std::filesystem::directory_iterator(VELKARO_TEST_DATA_DIR "/golden")) {
    if (entry.path().extension() != ".case") continue;
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string content((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    const std::size_t rule = content.find("\n---\n");
    Case test{entry.path().stem().string(), {}, {}, rule == std::string::npos ? "" : content.substr(rule + 5)};
    std::istringstream header(content.substr(0, rule));
    for (std::string line; std::getline(header, line);) {
      const std::size_t colon = line.find(": ");
      if (line.empty() || line[0] == '#' || colon == std::string::npos) continue;
      const std::string key = line.substr(0, colon);
      (key == "count-line" ? test.countLines.emplace_back() : test.fields[key]) = line.substr(colon + 2);
    }
    cases.push_back(test);
  }
  std::sort(cases.begin(), cases.end(), [](const Case& a, const Case& b) { return a.name < b.name; });
  return cases;
}

// The sinks of a run: the tree as the window shows it, the text, the messages,
// and a stop request at every `stopEvery`-th tick.
class Recorder : public jobs::ProgressSink, public solver::LineSink, public core::MessageSink {
 public:
  jobs::Job* job = nullptr;
  int stopEvery = 0;
  int ticks = 0;
  std::string text;
  std::vector<std::string> tree;  // children indented by a tab
  std::string placeholder;

  void tick(const jobs::Progress&) override {
    if (stopEvery > 0 && ++ticks % stopEvery == 0) job->requestStop();
  }
  void setPlaceholder(std::string_view line) override { placeholder = line; }
  void addRootLine(std::string_view line) override { tree.emplace_back(line); }
  void addChildLine(std::string_view line) override { tree.push_back("\t" + std::string(line)); }
  void appendText(std::string_view more) override { text.append(more); }
  void showMessage(std::string_view caption, std::string_view message) override {
    text += "! " + std::string(caption) + ": " + std::string(message) + "\n";
  }
};

struct Outcome {
  std::string text;
  std::vector<std::string> tree;
  std::string placeholder;
  std::uint64_t tested = 0;
  int stops = 0;
};

core::BoardSetup setupOf(const Case& test) {
  std::string error;
  std::optional<core::BoardSetup> setup = formats::readStandardFen(test.field("fen"), error);
  EXPECT_TRUE(setup.has_value()) << error;
  if (!setup) return {};
  const std::string ep = test.field("ep");
  if (ep.size() == 2) setup->lastMoveSquare = core::squareAt(ep[0] - 'a', ep[1] - '0');
  // A few set-ups no FEN can hold: extra men put on afterwards, e.g. "a8 P".
  std::istringstream extra(test.field("put"));
  for (std::string square, man; extra >> square >> man;) {
    const int code = std::string("KQRBNP").find(static_cast<char>(std::toupper(man[0])));
    const int codes[] = {core::piece::King, core::piece::Queen,  core::piece::Rook,
                         core::piece::Bishop, core::piece::Knight, core::piece::Pawn};
    setup->board[static_cast<std::size_t>(core::squareAt(square[0] - 'a', square[1] - '0'))] =
        std::isupper(man[0]) ? codes[code] : -codes[code];
  }
  return *setup;
}

std::optional<core::FirstMove> firstMoveOf(const Case& test, const core::BoardSetup& setup) {
  const std::string text = test.field("first-move");
  if (text.empty()) return std::nullopt;
  for (const core::FirstMove& move : core::firstMoveList(setup)) {
    if (core::namesMove(move, text)) return move;
  }
  ADD_FAILURE() << "no first move " << text;
  return std::nullopt;
}

// Runs the case to its end, continuing after every stop and pause.
Outcome run(const Case& test, int stopEvery, bool pauseAtSolutions) {
  Recorder recorder;
  recorder.stopEvery = stopEvery;
  const int language = std::stoi(test.field("lang", "4"));
  solver::ReportWriter writer(recorder, language);
  Outcome outcome;
  if (!test.countLines.empty()) {
    for (const std::string& line : test.countLines) {
      std::istringstream fields(line);
      solver::CountLine record;
      fields >> record.depth >> record.count.billions >> record.count.remainder >> record.previous.billions >>
          record.previous.remainder >> record.rootSide;
      writer.record(record);
    }
    return {recorder.text, recorder.tree, recorder.placeholder};
  }
  const core::BoardSetup setup = setupOf(test);
  std::unique_ptr<jobs::Job> owned;
  jobs::RunEnd end;
  std::function<jobs::RunEnd()> resume;
  if (!test.field("count").empty()) {
    auto job = std::make_unique<counter::CountingJob>(recorder, writer, recorder);
    counter::CountSettings settings{setup, std::stoi(test.field("count")), firstMoveOf(test, setup)};
    settings.threads = 1;  // one walker ticks in a fixed rhythm; several are checked against it elsewhere
    recorder.job = job.get();
    job->setRefreshInterval(std::stoi(test.field("refresh", "101")));
    end = job->start(settings);
    resume = [job = job.get()] { return job->resume(); };
    owned = std::move(job);
  } else {
    auto job = std::make_unique<solver::SolverJob>(recorder, writer, recorder);
    solver::SolveSettings settings;
    settings.setup = setup;
    const std::string stip = test.field("stip");
    settings.stipulation = {stip[0] == 'H', stip[0] == 'S', std::stoi(stip.substr(stip.find('#') + 1))};
    settings.minimumMoves = test.field("min-moves") == "yes";
    settings.testAllSecondMoves = test.field("second-moves") == "yes";
    settings.stopOnFirstSolution = pauseAtSolutions;
    settings.firstMove = firstMoveOf(test, setup);
    recorder.job = job.get();
    job->setRefreshInterval(std::stoi(test.field("refresh", "37")));
    end = job->start(settings);
    resume = [job = job.get()] { return job->resume(); };
    owned = std::move(job);
  }
  while (end == jobs::RunEnd::Stopped || end == jobs::RunEnd::Solution) {
    outcome.stops += end == jobs::RunEnd::Stopped;
    end = resume();
  }
  outcome.text = recorder.text;
  outcome.tree = recorder.tree;
  outcome.placeholder = recorder.placeholder;
  outcome.tested = owned->testedMoves().total();
  return outcome;
}

class Golden : public testing::TestWithParam<Case> {};

TEST_P(Golden, Uninterrupted) { EXPECT_EQ(run(GetParam(), 0, false).text, GetParam().expected); }

TEST_P(Golden, StopAndContinue) {
  const Outcome whole = run(GetParam(), 0, false);
  for (const int every : {1, 3}) {
    const Outcome stopped = run(GetParam(), every, false);
    EXPECT_EQ(stopped.text, GetParam().expected) << "stopping at every " << every << ". tick";
    EXPECT_EQ(stopped.tested, whole.tested);
    if (whole.tested > 400) {
      EXPECT_GT(stopped.stops, 0);
    }
  }
}

TEST_P(Golden, PauseAtEachSolution) { EXPECT_EQ(run(GetParam(), 0, true).text, GetParam().expected); }

// The tree holds the text's lines, variations under their key, and no
// placeholder is left. Two endings of the minimum-moves search are the
// program's own: the tree shows the words, the text ends without a line
// break, and the helpmate's text keeps its format string.
TEST_P(Golden, TreeHoldsTheTextsLines) {
  const Outcome outcome = run(GetParam(), 0, false);
  std::string text = outcome.text;
  std::string lines;
  for (const std::string& line : outcome.tree) lines += line + "\n";
  if (text.ends_with("%s No more solutions")) text.replace(text.size() - 20, 20, " No more solutions\n");
  if (text.ends_with("No more solutions")) text += "\n";
  std::string withoutMessages;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    if (!line.starts_with("! ")) withoutMessages += line + "\n";
  }
  EXPECT_EQ(lines, withoutMessages);
  EXPECT_EQ(outcome.placeholder, "");
}

INSTANTIATE_TEST_SUITE_P(Cases, Golden, testing::ValuesIn(loadCases()),
                         [](const testing::TestParamInfo<Case>& info) {
                           std::string name = info.param.name;
                           std::replace_if(name.begin(), name.end(), [](char c) { return !std::isalnum(c); }, '_');
                           return name;
                         });

}  // namespace
}  // namespace velkaro
