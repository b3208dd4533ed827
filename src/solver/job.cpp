// The run infrastructure shared by the solver and the continuation counter.

#include "solver/job.h"

#include <cstdio>

namespace velkaro::solver {

std::string testedMovesText(const BigCount& count) {
  char remainder[16];
  if (count.billions > 0) {
    std::snprintf(remainder, sizeof remainder, "%09d", count.remainder);
  } else {
    std::snprintf(remainder, sizeof remainder, "%d", count.remainder);
  }
  const std::string billions = count.billions > 0 ? core::GroupDigits(std::to_string(count.billions)) : "";
  return " " + billions + " " + core::GroupDigits(remainder);
}

std::string speedText(const BigCount& count, std::int64_t elapsedMs) {
  if (elapsedMs <= 0) return "0";
  const std::int64_t perSecond = count.remainder / elapsedMs * 1000 +
                                 BigCount::kBillion / elapsedMs * count.billions * 1000;
  return core::GroupDigits(std::to_string(perSecond));
}

std::string clockText(std::int64_t elapsedMs) {
  const std::int64_t seconds = elapsedMs / 1000;
  char text[32];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d", static_cast<int>(seconds / 3600),
                static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60));
  return text;
}

Job::Job(ProgressSink& progress, ReportSink& report, core::MessageSink& messages)
    : progressSink_(progress), reportSink_(report), messages_(messages) {}

std::int64_t Job::elapsedMs() const {
  if (!clockRunning_) return frozenMs_;
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start_).count();
}

Progress Job::progress(bool withLine) {
  Progress shown;
  const std::int64_t elapsed = elapsedMs();
  shown.clock = clockText(elapsed);
  shown.testedMoves = testedMovesText(tested_);
  shown.speed = speedText(tested_, elapsed);
  shown.bar = bar_;
  if (withLine && lineDepth() > 0) {
    shown.showsLine = true;
    shown.line = notation_.ShowCurrentLine(stack_, lineDepth(), linePly());
  }
  return shown;
}

void Job::tick() {
  countdown_ = refreshInterval_;
  if (progressSink_.tick(progress(true))) stopRequested_ = true;
}

void Job::startClock(bool continuing) {
  const auto now = std::chrono::steady_clock::now();
  clockRunning_ = true;
  if (continuing) {
    start_ = now - std::chrono::milliseconds(frozenMs_);
  } else {
    start_ = now;
    tested_ = BigCount{};
    bar_ = 0;
    buffer_.clear();
    pending_ = 0;
    reportSink_.clearItems();
  }
  countdown_ = refreshInterval_;
  Progress shown = progress(false);
  if (!continuing) shown.testedMoves = shown.speed = "";
  progressSink_.update(shown);
}

void Job::stopClock() {
  frozenMs_ = elapsedMs();
  clockRunning_ = false;
}

void Job::finalUpdate() { progressSink_.update(progress(false)); }

void Job::moveBar(int position) {
  bar_ = position;
  progressSink_.barMoved(position);
}

ItemId Job::addRootItem(std::string_view text) {
  const ItemId id = nextItem_++;
  reportSink_.insertRootItem(id, text);
  return id;
}

ItemId Job::addRootLine(std::string_view text) {
  const ItemId id = addRootItem(text);
  appendToBuffer(text);
  appendToBuffer("\n");
  return id;
}

ItemId Job::addChildLine(ItemId parent, std::string_view text) {
  const ItemId id = nextItem_++;
  reportSink_.insertChildItem(parent, id, text);
  appendToBuffer("\t");
  appendToBuffer(text);
  appendToBuffer("\n");
  return id;
}

void Job::insertPlaceholder(std::string_view text) {
  deletePending();  // a run continued after Stop replaces its placeholder
  pending_ = nextItem_++;
  reportSink_.insertRootItem(pending_, text);
}

void Job::deletePending() {
  if (pending_ != 0) reportSink_.deleteItem(pending_);
  pending_ = 0;
}

void Job::appendToBuffer(std::string_view text) {
  buffer_.append(text);
  reportSink_.bufferAppended(text);
}

void Job::finishResult(bool withBeep) {
  reportSink_.scrollToEnd();
  if (withBeep) reportSink_.beep();
}

}  // namespace velkaro::solver
