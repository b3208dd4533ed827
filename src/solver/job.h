#pragma once
// What every solving or counting run shares: the ply stack, the tested-move
// counter with its refresh countdown and progress tick, the clock, the stop
// request, and the result lines with their plain-text buffer.

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/messages.h"
#include "core/notation.h"
#include "core/position.h"
#include "solver/sinks.h"

namespace velkaro::solver {

// The "Refresh interval (moves)" choices; the default is 1 000 000.
inline constexpr int kRefreshIntervals[] = {100'000, 500'000, 1'000'000, 5'000'000, 10'000'000};
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
};

// " %s %s": billions and remainder grouped by threes, the remainder padded to
// nine digits once billions exist ("  1 234", " 3 000 001 234").
std::string testedMovesText(const BigCount& count);

// Moves per second, deliberately coarse: whole moves per millisecond first.
std::string speedText(const BigCount& count, std::int64_t elapsedMs);

// "%02d:%02d:%02d".
std::string clockText(std::int64_t elapsedMs);

class Job {
 public:
  Job(ProgressSink& progress, ReportSink& report, core::MessageSink& messages);
  virtual ~Job() = default;
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;

  // Asks the run to stop at its next step; Continue resumes it.
  void requestStop() { stopRequested_ = true; }

  void setLanguage(int language) { notation_.setLanguage(language); }
  void setRefreshInterval(int moves) { refreshInterval_ = moves > 0 ? moves : kDefaultRefreshInterval; }

  // The plain-text copy of the result lines: "\n" after each, a tab before
  // each variation line.
  const std::string& solutionText() const { return buffer_; }
  const BigCount& testedMoves() const { return tested_; }
  std::int64_t elapsedMs() const;

 protected:
  // Counts one made move; every refresh interval the progress tick runs.
  void countTestedMove() {
    if (lateBillionCarry_) {
      tested_.addCarryingLate();
    } else {
      tested_.add();
    }
    if (--countdown_ == 0) tick();
  }
  void tick();

  // A fresh run clears the counters, the clock, the result lines and buffer;
  // a continued one moves the clock's start back by the time already spent.
  void startClock(bool continuing);
  // Freezes the clock when a run returns (stopped, or paused at a solution).
  void stopClock();
  // The exact totals after a result, with the line display emptied.
  void finalUpdate();
  void moveBar(int position);

  ItemId addRootLine(std::string_view text);  // in the tree and, with "\n", in the buffer
  ItemId addRootItem(std::string_view text);  // in the tree only
  ItemId addChildLine(ItemId parent, std::string_view text);
  // Root item that the next result replaces (" searching ...").
  void insertPlaceholder(std::string_view text);
  void deletePending();
  void appendToBuffer(std::string_view text);
  void finishResult(bool withBeep);

  // What the line display shows at a tick: the search's depth in plies and
  // the ply it stands at; 0 means no line (counting).
  virtual int lineDepth() const { return 0; }
  virtual int linePly() const { return 0; }

  core::PlyStack stack_;
  core::Notation notation_;
  ProgressSink& progressSink_;
  ReportSink& reportSink_;
  core::MessageSink& messages_;

  bool stopRequested_ = false;
  // The helpmate search carries into the billions one move later.
  bool lateBillionCarry_ = false;
  BigCount tested_;
  int refreshInterval_ = kDefaultRefreshInterval;
  int countdown_ = kDefaultRefreshInterval;
  int bar_ = 0;
  ItemId pending_ = 0;  // 0: none

 private:
  Progress progress(bool withLine);

  std::chrono::steady_clock::time_point start_{};
  bool clockRunning_ = false;
  std::int64_t frozenMs_ = 0;
  ItemId nextItem_ = 1;
  std::string buffer_;
};

}  // namespace velkaro::solver
