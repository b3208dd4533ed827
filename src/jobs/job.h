#pragma once
// What every run shares, whatever it searches: the clock, the tested-move
// counter with its billions carry, the refresh countdown and progress tick,
// the stop request, and the sinks through which a run talks to whoever shows
// it (the window, the command line or a test). The engine never reaches into
// the interface; it calls these.

#include <atomic>
#include <chrono>
#include <cstdint>
#include <string_view>

#include "core/messages.h"
#include "core/notation.h"

namespace velkaro::jobs {

// The default "Refresh interval (moves)".
inline constexpr int kDefaultRefreshInterval = 1'000'000;

// Full position of the progress bar.
inline constexpr int kProgressBarFull = 48;

// A count kept as billions plus a remainder below one billion.
struct BigCount {
  static constexpr std::int32_t kBillion = 1'000'000'000;
  std::int32_t billions = 0;
  std::int32_t remainder = 0;

  void add() {
    if (++remainder == kBillion) {
      remainder = 0;
      ++billions;
    }
  }
  // The remainder is reduced only once it exceeds one billion.
  void addCarryingLate() {
    if (++remainder > kBillion) {
      remainder -= kBillion;
      ++billions;
    }
  }
  std::uint64_t total() const { return static_cast<std::uint64_t>(billions) * kBillion + remainder; }
  bool operator==(const BigCount&) const = default;
};

// What the progress panel shows, as numbers; jobs/progress_text.h makes the
// texts.
struct Progress {
  std::int64_t elapsedMs = 0;
  BigCount tested;
  int bar = 0;  // 0..kProgressBarFull
  // The line under test: the search's depth in plies and the ply it stands
  // at (0: no line, as when counting) and its first moves.
  int lineDepth = 0;
  int linePly = 0;
  core::ShownLine line{};
};

class ProgressSink {
 public:
  virtual ~ProgressSink() = default;
  // Every refresh interval of tested moves, on the thread that runs the job.
  virtual void tick(const Progress&) {}
  // A run starts: afresh (the counters are shown empty) or continued.
  virtual void started(const Progress&, bool /*fresh*/) {}
  // The exact totals after each result, with the line display emptied.
  virtual void update(const Progress&) {}
  // The progress bar alone (a new first move, or a finished result).
  virtual void barMoved(int) {}
};

// How a run (Start or Continue) ended.
enum class RunEnd {
  Refused,   // the set-up was refused; nothing was searched
  Stopped,   // Stop was requested; Continue resumes
  Solution,  // paused after a find; Continue goes on
  Finished,  // nothing more to find; Continue is not possible
};

class Job {
 public:
  Job(ProgressSink& progress, core::MessageSink& messages) : progressSink_(progress), messages_(messages) {}
  virtual ~Job() = default;
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;

  // Asks the run to stop at its next step; Continue resumes it. Any thread
  // may ask, also just before a run begins: the request holds until a run
  // has stopped for it.
  void requestStop() { stopRequested_.store(true, std::memory_order_relaxed); }
  // Forgets a request no run has honoured (one made after the run ended).
  void clearStopRequest() { stopRequested_.store(false, std::memory_order_relaxed); }

  void setRefreshInterval(int moves) { refreshInterval_ = moves > 0 ? moves : kDefaultRefreshInterval; }

  const BigCount& testedMoves() const { return tested_; }
  std::int64_t elapsedMs() const;
  // The clock, the count and the bar as they stand, without a line.
  Progress totals() const { return progress(false); }

 protected:
  bool stopRequested() const { return stopRequested_.load(std::memory_order_relaxed); }

  // Counts one tested move; every refresh interval the progress tick runs.
  void countTestedMove() {
    if (lateBillionCarry_) {
      tested_.addCarryingLate();
    } else {
      tested_.add();
    }
    if (--countdown_ == 0) tick();
  }
  void tick();

  // A fresh run clears the counters, the clock and the bar; a continued one
  // moves the clock's start back by the time already spent.
  void startClock(bool continuing);
  // Freezes the clock when a run returns (stopped, or paused at a find).
  void stopClock();
  // The exact totals after a result, with the line display emptied.
  void finalUpdate();
  void moveBar(int position);
  // The bar for `tried` of `total` first moves.
  void moveBarFor(int tried, int total);

  // The line under test for a tick; the searches fill it, others leave it.
  virtual void fillLine(Progress&) const {}

  ProgressSink& progressSink_;
  core::MessageSink& messages_;

  // The helpmate search and the counter carry into the billions one move late.
  bool lateBillionCarry_ = false;
  BigCount tested_;
  int refreshInterval_ = kDefaultRefreshInterval;
  int countdown_ = kDefaultRefreshInterval;
  int bar_ = 0;

 private:
  Progress progress(bool withLine) const;

  std::atomic<bool> stopRequested_{false};
  std::chrono::steady_clock::time_point start_{};
  bool clockRunning_ = false;
  std::int64_t frozenMs_ = 0;
};

}  // namespace velkaro::jobs
