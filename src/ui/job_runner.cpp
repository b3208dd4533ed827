// The worker thread and the mailbox between it and the interface thread.

#include "ui/job_runner.h"

#include <QThread>
#include <array>
#include <mutex>

#include "generator/generator_job.h"

namespace velkaro::ui {

// Everything the worker has said and the interface thread has not yet taken.
class JobRunner::Mailbox {
 public:
  explicit Mailbox(JobRunner& runner) : runner_(runner) {}

  void post(AnyRecord record) {
    std::lock_guard lock(mutex_);
    records_.push_back(std::move(record));
    notify();
  }
  void post(const PanelState& panel) {
    std::lock_guard lock(mutex_);
    panel_ = panel;
    panelChanged_ = true;
    notify();
  }
  void moveBar(int position) {
    std::lock_guard lock(mutex_);
    panel_.progress.bar = position;
    panelChanged_ = true;
    notify();
  }
  void refuse(const QString& caption, const QString& message) {
    std::lock_guard lock(mutex_);
    caption_ = caption;
    refusal_ = message;
  }
  void finish(jobs::RunEnd end) {
    std::lock_guard lock(mutex_);
    end_ = end;
    notify();
  }

  Mail take(std::size_t most) {
    std::lock_guard lock(mutex_);
    Mail mail;
    if (records_.size() <= most) {
      mail.records.swap(records_);
    } else {
      mail.records.assign(std::make_move_iterator(records_.begin()),
                          std::make_move_iterator(records_.begin() + static_cast<std::ptrdiff_t>(most)));
      records_.erase(records_.begin(), records_.begin() + static_cast<std::ptrdiff_t>(most));
      mail.more = true;
    }
    if (panelChanged_) mail.panel = panel_;
    panelChanged_ = false;
    if (!mail.more && end_) {
      mail.end = end_;
      mail.caption = caption_;
      mail.refusal = refusal_;
      end_.reset();
      refusal_.clear();
    }
    notified_ = mail.more;  // what is left is announced already
    return mail;
  }

 private:
  // Called with the lock held: one announcement until the mail is taken.
  void notify() {
    if (notified_) return;
    notified_ = true;
    emit runner_.mailArrived();
  }

  JobRunner& runner_;
  std::mutex mutex_;
  std::vector<AnyRecord> records_;
  PanelState panel_;
  bool panelChanged_ = false;
  std::optional<jobs::RunEnd> end_;
  QString caption_;
  QString refusal_;
  bool notified_ = false;
};

// Lives on the worker thread with the jobs; it is their sinks.
class JobRunner::Worker : public QObject,
                          public jobs::ProgressSink,
                          public solver::RecordSink,
                          public generator::RecordSink,
                          public placement::RecordSink,
                          public core::MessageSink {
 public:
  explicit Worker(Mailbox& mailbox)
      : mailbox_(mailbox),
        solverJob(std::make_unique<solver::SolverJob>(*this, *this, *this)),
        countingJob(std::make_unique<counter::CountingJob>(*this, *this, *this)),
        generatorJob(std::make_unique<generator::GeneratorJob>(*this, *this, *this)),
        placementJob(std::make_unique<placement::PlacementJob>(*this, *this, *this)) {}

  void started(const jobs::Progress& progress, bool fresh) override { mailbox_.post(PanelState{progress, false, fresh}); }
  void tick(const jobs::Progress& progress) override { mailbox_.post(PanelState{progress, true, false}); }
  void update(const jobs::Progress& progress) override { mailbox_.post(PanelState{progress, false, false}); }
  void barMoved(int position) override { mailbox_.moveBar(position); }
  void record(const solver::Record& record) override { mailbox_.post(record); }
  void record(const generator::Record& record) override { mailbox_.post(record); }
  void record(const placement::Record& record) override { mailbox_.post(record); }
  void showMessage(std::string_view caption, std::string_view text) override {
    mailbox_.refuse(QString::fromUtf8(caption.data(), static_cast<qsizetype>(caption.size())),
                    QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
  }

  void prepare(const RunOptions& options) {
    for (jobs::Job* job : all()) job->setRefreshInterval(options.refreshInterval);
  }
  std::array<jobs::Job*, 4> all() const {
    return {solverJob.get(), countingJob.get(), generatorJob.get(), placementJob.get()};
  }
  // The job pauses after every solution; with "Stop on first solution" off
  // the worker goes on at once.
  void solveOn(jobs::RunEnd end, const RunOptions& options) {
    while (end == jobs::RunEnd::Solution && !options.stopOnFirstSolution) {
      end = solverJob->resume(options.testAllSecondMoves);
    }
    finish(*solverJob, end);
  }
  // The panel shows the totals a run ended with, a stopped one too.
  void finish(const jobs::Job& job, jobs::RunEnd end) {
    if (end != jobs::RunEnd::Refused) mailbox_.post(PanelState{job.totals(), false, false});
    mailbox_.finish(end);
  }

 private:
  Mailbox& mailbox_;

 public:
  // Each job holds a whole ply stack: too large for the call stack.
  std::unique_ptr<solver::SolverJob> solverJob;
  std::unique_ptr<counter::CountingJob> countingJob;
  std::unique_ptr<generator::GeneratorJob> generatorJob;
  std::unique_ptr<placement::PlacementJob> placementJob;
};

JobRunner::JobRunner(QObject* parent)
    : QObject(parent),
      mailbox_(std::make_unique<Mailbox>(*this)),
      worker_(std::make_unique<Worker>(*mailbox_)),
      thread_(new QThread(this)) {
  thread_->setObjectName(QStringLiteral("Velkaro jobs"));
  worker_->moveToThread(thread_);
  thread_->start();
}

JobRunner::~JobRunner() {
  requestStop();
  thread_->quit();
  thread_->wait();
}

// The worker is idle here, so a stop asked for after the last run ended can
// be forgotten before the next one is queued; one asked for from now on holds.
void JobRunner::begin(Kind kind, const RunOptions& options) {
  for (jobs::Job* job : worker_->all()) job->clearStopRequest();
  running_ = true;
  kind_ = kind;
  continuable_.reset();
  QMetaObject::invokeMethod(worker_.get(), [worker = worker_.get(), options] { worker->prepare(options); });
}

void JobRunner::solve(const solver::SolveSettings& settings, const RunOptions& options) {
  begin(Kind::Solving, options);
  solver::SolveSettings pausing = settings;
  pausing.stopOnFirstSolution = true;  // the worker decides whether to go on
  QMetaObject::invokeMethod(worker_.get(), [worker = worker_.get(), pausing, options] {
    worker->solveOn(worker->solverJob->start(pausing), options);
  });
}

void JobRunner::count(const counter::CountSettings& settings, const RunOptions& options) {
  begin(Kind::Counting, options);
  QMetaObject::invokeMethod(worker_.get(), [worker = worker_.get(), settings] {
    worker->finish(*worker->countingJob, worker->countingJob->start(settings));
  });
}

void JobRunner::create(const generator::CreateSettings& settings, const RunOptions& options) {
  begin(Kind::Creating, options);
  QMetaObject::invokeMethod(worker_.get(), [worker = worker_.get(), settings] {
    worker->finish(*worker->generatorJob, worker->generatorJob->start(settings));
  });
}

void JobRunner::place(const placement::PlaceSettings& settings, const RunOptions& options) {
  begin(Kind::Placing, options);
  QMetaObject::invokeMethod(worker_.get(), [worker = worker_.get(), settings] {
    worker->finish(*worker->placementJob, worker->placementJob->start(settings));
  });
}

void JobRunner::resume(const RunOptions& options) {
  if (running_ || !continuable_) return;
  const Kind kind = *continuable_;
  begin(kind, options);
  Worker* worker = worker_.get();
  switch (kind) {
    case Kind::Solving:
      QMetaObject::invokeMethod(worker, [worker, options] {
        worker->solveOn(worker->solverJob->resume(options.testAllSecondMoves), options);
      });
      break;
    case Kind::Counting:
      QMetaObject::invokeMethod(worker, [worker] { worker->finish(*worker->countingJob, worker->countingJob->resume()); });
      break;
    case Kind::Creating:
      QMetaObject::invokeMethod(worker,
                                [worker] { worker->finish(*worker->generatorJob, worker->generatorJob->resume()); });
      break;
    case Kind::Placing:
      QMetaObject::invokeMethod(worker, [worker, options] {
        worker->finish(*worker->placementJob, worker->placementJob->resume(options.stopOnFirstSolution));
      });
      break;
  }
}

void JobRunner::requestStop() {
  for (jobs::Job* job : worker_->all()) job->requestStop();
}

JobRunner::Mail JobRunner::takeMail(std::size_t most) {
  Mail mail = mailbox_->take(most);
  mail.kind = kind_;
  if (mail.end) {
    running_ = false;
    if (*mail.end == jobs::RunEnd::Stopped || *mail.end == jobs::RunEnd::Solution) continuable_ = kind_;
  }
  return mail;
}

}  // namespace velkaro::ui
