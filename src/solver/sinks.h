#pragma once
// How a running job talks to whoever shows it: the window, the command line or
// a test. The engine never reaches into the interface; it calls these.

#include <string>
#include <string_view>

#include "core/notation.h"

namespace velkaro::solver {

// The progress panel's fields, as text.
struct Progress {
  std::string clock;        // "%02d:%02d:%02d"
  std::string testedMoves;  // " %s %s": billions and remainder, grouped
  std::string speed;        // moves per second, grouped
  int bar = 0;              // progress bar position, 0..48
  bool showsLine = false;   // whether `line` is the line under test
  core::CurrentLineText line;
};

class ProgressSink {
 public:
  virtual ~ProgressSink() = default;
  // Every refresh interval of tested moves. The interface lets pending input
  // through here; returning true asks the job to stop at its next step.
  virtual bool tick(const Progress&) { return false; }
  // The clock at the start of a run, and the exact totals after each result.
  virtual void update(const Progress&) {}
  // The progress bar alone (a new first move, or a finished result).
  virtual void barMoved(int) {}
};

// Result lines. Items are numbered by the job; variation lines are children of
// the key line above them. The job keeps the plain-text buffer itself and says
// what it appends, so a caller can print the text as it grows.
using ItemId = int;

class ReportSink {
 public:
  virtual ~ReportSink() = default;
  virtual void clearItems() {}
  virtual void insertRootItem(ItemId, std::string_view) {}
  virtual void insertChildItem(ItemId /*parent*/, ItemId, std::string_view) {}
  virtual void deleteItem(ItemId) {}
  virtual void scrollToEnd() {}
  virtual void beep() {}
  virtual void bufferAppended(std::string_view) {}
};

}  // namespace velkaro::solver
