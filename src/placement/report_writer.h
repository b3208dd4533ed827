#pragma once
// The one place where Positions results become text: the rows of the
// positions list (board texts, " ... and other", "No many solutions") and
// the captions beside it, after a finished run, after a pause on a find and
// after a Resume, exactly as the program has always shown them. The window
// and velkaro-cli show the same.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "placement/records.h"

namespace velkaro::placement {

inline constexpr std::string_view kTestingRow = "  testing ...";
inline constexpr std::string_view kAndOtherRow = " ... and other";
inline constexpr std::string_view kNoManySolutions = "No many solutions";

// A find's board text is kept while its ordinal is below kTextsKept; rows are
// listed up to ordinal kRowsListed (so that row, never kept, is empty); from
// ordinal kRowsListed + 1 on, " ... and other" stands instead.
inline constexpr int kTextsKept = 990;
inline constexpr int kRowsListed = 990;

enum class Caption { NoSolution, NonAttackingSquares, Positions };
inline constexpr int kCaptionCount = 3;
// "No solution", "No. of non-attacking squares:", "Number of positions:".
std::string_view captionLabel(Caption caption);

// Where the rows and captions go: the window's list, a panel model, a test.
class PositionsSink {
 public:
  virtual ~PositionsSink() = default;
  // Empties the list and the captions.
  virtual void clear() {}
  virtual void addRow(std::string_view) {}
  virtual void removeLastRow() {}
  // A caption with its value ("" for "No solution").
  virtual void showCaption(Caption, std::string_view /*value*/) {}
  // Chooses a row, which shows its placement on the board.
  virtual void selectRow(int /*row*/) {}
};

class ReportWriter : public RecordSink {
 public:
  explicit ReportWriter(PositionsSink& sink) : sink_(sink) {}

  void record(const Record& record) override;

  void operator()(const FreshStart&);
  void operator()(const Searching&);
  void operator()(const NewBest&) {}
  void operator()(const Found& found);
  void operator()(const RunOver& over);

 private:
  std::string rowText(std::int64_t ordinal) const;
  void addRow(std::string_view text);
  void reportFinished(const RunOver& over);

  PositionsSink& sink_;
  std::array<std::string, kTextsKept> texts_;  // slot k: find k's board text
  std::int64_t listed_ = 0;                    // finds listed so far (goal 803)
  int rows_ = 0;
};

// The positions panel as data: the rows of the list, the captions and the
// chosen row.
class PositionsPanel : public PositionsSink {
 public:
  void clear() override;
  void addRow(std::string_view text) override { rows_.emplace_back(text); }
  void removeLastRow() override;
  void showCaption(Caption caption, std::string_view value) override;
  void selectRow(int row) override { selected_ = row; }

  const std::vector<std::string>& rows() const { return rows_; }
  const std::optional<std::string>& caption(Caption caption) const {
    return captions_[static_cast<std::size_t>(caption)];
  }
  int selectedRow() const { return selected_; }

  // The rows, then each caption shown, label and value, one a line.
  std::string text() const;

 private:
  std::vector<std::string> rows_;
  std::array<std::optional<std::string>, kCaptionCount> captions_;
  int selected_ = -1;
};

}  // namespace velkaro::placement
