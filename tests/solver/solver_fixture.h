#pragma once
// A solver job wired to recording sinks, set up from a FEN line, for the
// solver tests: it runs to the end (continuing after each pause or stop) and
// keeps the result tree as the window would show it.

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "core/messages.h"
#include "counter/first_moves.h"
#include "formats/fen.h"
#include "solver/solver_job.h"

namespace velkaro::solver {

// A published problem and the whole solution text Velkaro gives for it.
struct Problem {
  const char* name;
  const char* fen;
  const char* stipulation;
  const char* text;
};

class Recorder : public ProgressSink, public ReportSink, public core::MessageSink {
 public:
  // Asks for a stop at every `every`-th tick.
  int stopEvery = 0;
  int ticks = 0;
  std::vector<std::string>* messages = nullptr;

  bool tick(const Progress&) override { return stopEvery > 0 && ++ticks % stopEvery == 0; }
  void clearItems() override { items_.clear(); }
  void insertRootItem(ItemId id, std::string_view text) override { items_.push_back({id, 0, std::string(text)}); }
  void insertChildItem(ItemId parent, ItemId id, std::string_view text) override {
    items_.push_back({id, parent, std::string(text)});
  }
  void deleteItem(ItemId id) override {
    items_.erase(std::remove_if(items_.begin(), items_.end(), [id](const Item& item) { return item.id == id; }),
                 items_.end());
  }
  void showMessage(std::string_view caption, std::string_view text) override {
    messages->push_back(std::string(caption) + ": " + std::string(text));
  }

  // The tree's lines in order, children indented by two blanks.
  std::vector<std::string> tree() const {
    std::vector<std::string> lines;
    for (const Item& item : items_) lines.push_back((item.parent != 0 ? "  " : "") + item.text);
    return lines;
  }

 private:
  struct Item {
    ItemId id;
    ItemId parent;
    std::string text;
  };
  std::vector<Item> items_;
};

struct Solve {
  Recorder recorder;
  std::vector<std::string> messages;
  SolveSettings settings;
  // The job is large (its ply stack), so it lives on the heap.
  std::unique_ptr<SolverJob> owned = std::make_unique<SolverJob>(recorder, recorder, recorder);
  SolverJob& job = *owned;
  int stops = 0;

  Solve(const char* fen, const char* stipulation, int lastMoveSquare = 0) {
    recorder.messages = &messages;
    formats::FenImport import;
    EXPECT_TRUE(import.selectLine({fen}, 0, "FEN")) << fen;
    settings.setup = formats::setupFromImport(import.result());
    settings.setup.lastMoveSquare = lastMoveSquare;
    const std::string stip = stipulation;
    settings.stipulation.helpmate = stip[0] == 'H';
    settings.stipulation.selfmate = stip[0] == 'S';
    settings.stipulation.moves = std::stoi(stip.substr(stip.find('#') + 1));
    settings.stopOnFirstSolution = false;
  }

  void stopEveryTick(int every, int refreshInterval) {
    recorder.stopEvery = every;
    job.setRefreshInterval(refreshInterval);
  }

  void chooseFirstMove(const char* text) {
    for (const FirstMove& move : counter::firstMoveList(settings.setup)) {
      if (counter::namesMove(move, text)) settings.firstMove = move;
    }
    ASSERT_TRUE(settings.firstMove.has_value()) << text;
  }

  // Start, then Continue after every stop or pause until the run finishes.
  std::string runToEnd() {
    RunEnd end = job.start(settings);
    while (end == RunEnd::Stopped || end == RunEnd::Solution) {
      if (end == RunEnd::Stopped) ++stops;
      end = job.resume();
    }
    return job.solutionText();
  }

  std::vector<std::string> tree() const { return recorder.tree(); }
};

}  // namespace velkaro::solver
