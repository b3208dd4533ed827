// The clock, the counters and the progress tick every run shares.

#include "jobs/job.h"

namespace velkaro::jobs {

std::int64_t Job::elapsedMs() const {
  if (!clockRunning_) return frozenMs_;
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start_).count();
}

Progress Job::progress(bool withLine) const {
  Progress shown;
  shown.elapsedMs = elapsedMs();
  shown.tested = tested_;
  shown.bar = bar_;
  if (withLine) fillLine(shown);
  return shown;
}

void Job::tick() {
  countdown_ = refreshInterval_;
  progressSink_.tick(progress(true));
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
  }
  countdown_ = refreshInterval_;
  progressSink_.started(progress(false), !continuing);
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

void Job::moveBarFor(int tried, int total) {
  const int position = total > 0 ? tried * kProgressBarFull / total : 0;
  moveBar(position < kProgressBarFull ? position : kProgressBarFull);
}

}  // namespace velkaro::jobs
