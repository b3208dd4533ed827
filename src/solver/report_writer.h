#pragma once
// The one place where Solver and Variants results become text: the lines of
// the result tree (keys and headers at the root, variations under their key)
// and the plain-text solution buffer ("\n" after each line, a tab before each
// variation), exactly as the program has always written them.

#include <string>
#include <string_view>

#include "core/notation.h"
#include "solver/records.h"

namespace velkaro::solver {

// Where the lines go: the window's tree, the command line's stdout, a test.
class LineSink {
 public:
  virtual ~LineSink() = default;
  // The " searching ..." line that the next result replaces; an empty text
  // removes it.
  virtual void setPlaceholder(std::string_view) {}
  virtual void addRootLine(std::string_view) {}
  // A child of the last root line.
  virtual void addChildLine(std::string_view) {}
  // Text for the plain-text buffer.
  virtual void appendText(std::string_view) {}
  // A result is complete: the tree scrolls to its end, with a beep or not.
  virtual void resultShown(bool /*beep*/) {}
};

// The count line of one depth: the count grouped by threes (in the billions
// form from one billion on), the padding that keeps the "x" column, the ratio
// to the previous depth's count and the side to move at this depth.
std::string countLineText(const CountLine& line);

class ReportWriter : public RecordSink {
 public:
  ReportWriter(LineSink& sink, int language);

  void record(const Record& record) override;

  void operator()(const Searching& searching);
  void operator()(const MovesHeader& header);
  void operator()(const Key& key);
  void operator()(const HelpLine& line);
  void operator()(const NoSolution& end);
  void operator()(const FailedDepth& depth);
  void operator()(const CountLine& line);

 private:
  void rootLine(std::string_view text);
  std::string variationText(const Variation& variation);

  LineSink& sink_;
  core::Notation notation_;
};

// The plain-text buffer of a run's records, as one string.
std::string solutionText(const std::vector<Record>& records, int language);

}  // namespace velkaro::solver
