// Texts of the progress panel.

#include "jobs/progress_text.h"

#include <cstdio>

namespace velkaro::jobs {

std::string clockText(std::int64_t elapsedMs) {
  const std::int64_t seconds = elapsedMs / 1000;
  char text[32];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d", static_cast<int>(seconds / 3600),
                static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60));
  return text;
}

std::string testedMovesText(const BigCount& count) {
  char remainder[16];
  std::snprintf(remainder, sizeof remainder, count.billions > 0 ? "%09d" : "%d", count.remainder);
  const std::string billions = count.billions > 0 ? core::GroupDigits(std::to_string(count.billions)) : "";
  return " " + billions + " " + core::GroupDigits(remainder);
}

std::string speedText(const BigCount& count, std::int64_t elapsedMs) {
  if (elapsedMs <= 0) return "0";
  const std::int64_t perSecond =
      count.remainder / elapsedMs * 1000 + BigCount::kBillion / elapsedMs * count.billions * 1000;
  return core::GroupDigits(std::to_string(perSecond));
}

std::string speedPerSecondText(const BigCount& count, std::int64_t elapsedMs) {
  const std::int64_t seconds = elapsedMs / 1000;
  if (seconds <= 0) return "0";
  const std::int64_t perSecond = count.remainder / seconds + BigCount::kBillion / seconds * count.billions;
  return core::GroupDigits(std::to_string(perSecond));
}

core::CurrentLineText lineText(const Progress& progress, core::Notation& notation) {
  if (progress.lineDepth <= 0) return {};
  return notation.ShowCurrentLine(progress.line, progress.lineDepth, progress.linePly);
}

}  // namespace velkaro::jobs
