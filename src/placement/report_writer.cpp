// The positions list and its captions, made from a Positions run's records.

#include "placement/report_writer.h"

#include <variant>

#include "core/notation.h"

namespace velkaro::placement {

std::string_view captionLabel(Caption caption) {
  switch (caption) {
    case Caption::NoSolution:
      return "No solution";
    case Caption::NonAttackingSquares:
      return "No. of non-attacking squares:";
    case Caption::Positions:
      return "Number of positions:";
  }
  return {};
}

void ReportWriter::record(const Record& record) { std::visit(*this, record); }

void ReportWriter::operator()(const FreshStart&) {
  texts_.fill({});
  listed_ = 0;
  rows_ = 0;
  sink_.clear();
}

void ReportWriter::operator()(const Searching&) { addRow(kTestingRow); }

void ReportWriter::operator()(const Found& found) {
  if (found.ordinal < kTextsKept) texts_[static_cast<std::size_t>(found.ordinal)] = boardText(found.board);
}

void ReportWriter::operator()(const RunOver& over) {
  sink_.removeLastRow();  // "  testing ..."
  --rows_;
  if (over.end == jobs::RunEnd::Stopped) return;
  const std::string count = core::GroupDigits(std::to_string(over.found));
  if (over.end == jobs::RunEnd::Solution) {
    // Paused on a find: the find alone is added, and stays chosen.
    addRow(rowText(over.found));
    listed_ = over.found;
    sink_.showCaption(Caption::Positions, count);
    sink_.selectRow(rows_ - 1);
    return;
  }
  if (over.goal == Goal::NonAttackingPieces && !over.foundInRun) {
    if (over.found > 0) {
      addRow(kNoManySolutions);
    } else {
      sink_.showCaption(Caption::NoSolution, "");
      sink_.showCaption(Caption::Positions, count);
    }
    return;
  }
  reportFinished(over);
  sink_.showCaption(Caption::Positions, count);
  sink_.selectRow(0);
}

// The finds not listed yet (a cover goal lists them all), up to the last
// listed ordinal, and " ... and other" beyond it.
void ReportWriter::reportFinished(const RunOver& over) {
  if (over.goal != Goal::NonAttackingPieces) {
    sink_.showCaption(Caption::NonAttackingSquares, std::to_string(over.best));
  }
  const std::int64_t first = over.goal == Goal::NonAttackingPieces ? listed_ + 1 : 1;
  for (std::int64_t ordinal = first; ordinal <= over.found && ordinal <= kRowsListed; ++ordinal) {
    addRow(rowText(ordinal));
  }
  if (over.found > kRowsListed) addRow(kAndOtherRow);
  listed_ = over.found;
}

std::string ReportWriter::rowText(std::int64_t ordinal) const {
  if (ordinal > kRowsListed) return std::string(kAndOtherRow);
  return ordinal < kTextsKept ? texts_[static_cast<std::size_t>(ordinal)] : std::string();
}

void ReportWriter::addRow(std::string_view text) {
  sink_.addRow(text);
  ++rows_;
}

void PositionsPanel::clear() {
  rows_.clear();
  captions_.fill(std::nullopt);
  selected_ = -1;
}

void PositionsPanel::removeLastRow() {
  if (!rows_.empty()) rows_.pop_back();
}

void PositionsPanel::showCaption(Caption caption, std::string_view value) {
  captions_[static_cast<std::size_t>(caption)] = std::string(value);
}

std::string PositionsPanel::text() const {
  std::string text;
  for (const std::string& row : rows_) text += row + "\n";
  for (int index = 0; index < kCaptionCount; ++index) {
    const auto caption = static_cast<Caption>(index);
    const std::optional<std::string>& value = captions_[static_cast<std::size_t>(index)];
    if (!value) continue;
    text += captionLabel(caption);
    if (!value->empty()) text += " " + *value;
    text += "\n";
  }
  return text;
}

}  // namespace velkaro::placement
