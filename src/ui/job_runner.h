#pragma once
// Runs the Solver and Variants jobs for the window. It is the jobs' progress,
// report and message sink: the progress panel, the result pane and message
// boxes show what a job says, and every progress tick lets pending input
// through, so that Stop can be pressed while the search goes on.

#include <memory>
#include <optional>
#include <string_view>

#include "core/messages.h"
#include "core/notation.h"
#include "counter/counting_job.h"
#include "solver/sinks.h"
#include "solver/solver_job.h"

class QWidget;

namespace velkaro::ui {

class ProgressPanel;
class ResultPane;

// What a run takes from the window's options, afresh at every Start and
// Continue.
struct RunOptions {
  int language = core::Notation::kEnglish;
  int refreshInterval = solver::kDefaultRefreshInterval;
  bool stopOnFirstSolution = true;
  bool testAllSecondMoves = false;  // read again when a run goes on after a solution
};

class JobRunner : public solver::ProgressSink, public solver::ReportSink, public core::MessageSink {
 public:
  enum class Kind { Solving, Counting };

  // Message boxes are shown over `dialogParent`.
  JobRunner(ProgressPanel& panel, ResultPane& pane, QWidget& dialogParent);
  ~JobRunner() override;

  solver::RunEnd solve(solver::SolveSettings settings, const RunOptions& options);
  solver::RunEnd count(const counter::CountSettings& settings, const RunOptions& options);
  // Continue: the last run goes on where it stopped or paused.
  solver::RunEnd resume(const RunOptions& options);
  // The running job stops at its next step.
  void requestStop() { stopRequested_ = true; }
  // The last run can no longer be continued (its position has been edited).
  void forgetLastRun() { continuable_.reset(); }

  bool running() const { return running_; }
  // The kind of run that Continue would go on with, if any.
  std::optional<Kind> continuable() const { return continuable_; }

  bool tick(const solver::Progress& progress) override;
  void update(const solver::Progress& progress) override;
  void barMoved(int position) override;
  void clearItems() override;
  void insertRootItem(solver::ItemId id, std::string_view text) override;
  void insertChildItem(solver::ItemId parent, solver::ItemId id, std::string_view text) override;
  void deleteItem(solver::ItemId id) override;
  void scrollToEnd() override;
  void beep() override;
  void bufferAppended(std::string_view text) override;
  void showMessage(std::string_view caption, std::string_view text) override;

 private:
  void beginRun(const RunOptions& options);
  solver::RunEnd endRun(Kind kind, solver::RunEnd end, const RunOptions& options);
  void showTotals(const solver::Progress& progress);

  ProgressPanel& panel_;
  ResultPane& pane_;
  QWidget& dialogParent_;
  // Each job holds a whole ply stack: too large for the call stack.
  std::unique_ptr<solver::SolverJob> solverJob_;
  std::unique_ptr<counter::CountingJob> countingJob_;
  bool running_ = false;
  bool stopRequested_ = false;
  std::optional<Kind> continuable_;
};

}  // namespace velkaro::ui
