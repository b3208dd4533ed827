#pragma once
// Runs the window's jobs (Solver, Variants, Creator, Positions) on a worker
// thread. The
// jobs talk to sinks on that thread, which leave what they say in a mailbox;
// the interface thread is told once that there is mail and takes it in
// batches, so the window repaints and answers Stop however fast results come.
// Stop reaches the job at once: it is an atomic request the search honours at
// its next step.

#include <QObject>
#include <QString>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

#include "core/notation.h"
#include "counter/counting_job.h"
#include "generator/records.h"
#include "generator/settings.h"
#include "jobs/job.h"
#include "placement/placement_job.h"
#include "placement/records.h"
#include "solver/records.h"
#include "solver/solver_job.h"

class QThread;

namespace velkaro::ui {

// What a run takes from the window's options, afresh at every Start and
// Continue.
struct RunOptions {
  int language = core::Notation::kEnglish;
  int refreshInterval = jobs::kDefaultRefreshInterval;
  bool stopOnFirstSolution = true;
  bool testAllSecondMoves = false;  // read again when a run goes on after a solution
};

// The progress panel as a run last left it.
struct PanelState {
  jobs::Progress progress;
  bool showsLine = false;    // a tick: the line under test is shown
  bool blankCounts = false;  // a fresh start: counts and speed stay empty
};

// A result of any of the runs.
using AnyRecord = std::variant<solver::Record, generator::Record, placement::Record>;

class JobRunner : public QObject {
  Q_OBJECT

 public:
  enum class Kind { Solving, Counting, Creating, Placing };

  explicit JobRunner(QObject* parent = nullptr);
  // A run still going is stopped, and the worker waited for.
  ~JobRunner() override;

  void solve(const solver::SolveSettings& settings, const RunOptions& options);
  void count(const counter::CountSettings& settings, const RunOptions& options);
  void create(const generator::CreateSettings& settings, const RunOptions& options);
  void place(const placement::PlaceSettings& settings, const RunOptions& options);
  // Continue: the last run goes on where it stopped or paused.
  void resume(const RunOptions& options);
  void requestStop();
  // A Solver or Variants run can no longer be continued: its position has
  // been edited. Creator and Positions runs keep their own men.
  void forgetPositionRun() {
    if (continuable_ == Kind::Solving || continuable_ == Kind::Counting) continuable_.reset();
  }

  bool running() const { return running_; }
  // The kind of run that Continue would go on with, if any.
  std::optional<Kind> continuable() const { return continuable_; }

  // What the run has said since the last call, taken on the interface
  // thread: at most `most` records, the panel's state, and the end of the run.
  struct Mail {
    std::vector<AnyRecord> records;
    std::optional<PanelState> panel;
    std::optional<jobs::RunEnd> end;  // only once every record has been taken
    QString caption;                  // the refused set-up's message box caption
    QString refusal;                  // and its message
    Kind kind = Kind::Solving;        // the run's kind, with its end
    bool more = false;                // records are left for the next call
  };
  Mail takeMail(std::size_t most);

 signals:
  // There is mail; it is said once until the mail has been taken.
  void mailArrived();

 private:
  class Worker;
  class Mailbox;

  void begin(Kind kind, const RunOptions& options);
  void mailTaken(const Mail& mail);

  std::unique_ptr<Mailbox> mailbox_;
  std::unique_ptr<Worker> worker_;
  QThread* thread_;
  bool running_ = false;
  Kind kind_ = Kind::Solving;
  std::optional<Kind> continuable_;
};

}  // namespace velkaro::ui
