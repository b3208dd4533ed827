// The text of every Solver and Variants result line.

#include "solver/report_writer.h"

#include <cstdio>

namespace velkaro::solver {

namespace {

using jobs::BigCount;

// Blanks before the "x" column, fewer as the count gains digits.
const char* padding(std::int32_t count) {
  static constexpr struct {
    std::int32_t above;
    int blanks;
  } kSteps[] = {{99'999'999, 17}, {9'999'999, 19}, {999'999, 21}, {99'999, 24},
                {9'999, 26},      {999, 28},       {99, 31},      {9, 33}};
  static const std::string kBlanks(35, ' ');
  for (const auto& step : kSteps) {
    if (count > step.above) return kBlanks.c_str() + (35 - step.blanks);
  }
  return kBlanks.c_str();
}

std::int64_t inMillions(const BigCount& count) {
  return static_cast<std::int64_t>(count.billions) * 1000 + count.remainder / 1'000'000;
}

}  // namespace

std::string countLineText(const CountLine& line) {
  const BigCount& count = line.count;
  std::string billions;
  std::string number;
  std::string column;
  double ratio = 0;  // a zero previous count (no moves at the depth before) gives 0.00
  if (count.billions == 0) {
    number = core::GroupDigits(std::to_string(count.remainder));
    column = padding(count.remainder);
    if (line.previous.total() > 0) {
      ratio = static_cast<double>(count.remainder) / static_cast<double>(line.previous.total());
    }
  } else {
    billions = core::GroupDigits(std::to_string(count.billions));
    number =
        core::GroupDigits(std::to_string(static_cast<std::int64_t>(count.remainder) + BigCount::kBillion)).substr(2);
    column = std::string(count.billions > 9 ? 12 : 14, ' ');
    if (inMillions(line.previous) > 0) {
      ratio = static_cast<double>(inMillions(count)) / static_cast<double>(inMillions(line.previous));
    }
  }
  char ratioText[32];
  std::snprintf(ratioText, sizeof ratioText, "%.2f", ratio);
  const int sideAtDepth = line.depth % 2 == 1 ? -line.rootSide : line.rootSide;
  return billions + " " + number + column + "x" + ratioText +
         (sideAtDepth == core::White ? "   / White /" : "   / Black /");
}

ReportWriter::ReportWriter(LineSink& sink, int language) : sink_(sink) { notation_.setLanguage(language); }

void ReportWriter::record(const Record& record) { std::visit(*this, record); }

void ReportWriter::rootLine(std::string_view text) {
  sink_.addRootLine(text);
  sink_.appendText(text);
  sink_.appendText("\n");
}

void ReportWriter::operator()(const Searching& searching) {
  sink_.setPlaceholder(searching.counting ? " counting ..." : " searching ...");
}

void ReportWriter::operator()(const MovesHeader& header) {
  char text[32];
  std::snprintf(text, sizeof text, "In %d moves:", header.moves);
  rootLine(text);
}

std::string ReportWriter::variationText(const Variation& variation) {
  std::string text;
  if (variation.dual) {
    text = std::string(24, ' ');
  } else {
    text = "1...., " + notation_.MoveText(variation.defence);
    if (variation.defenceMates) return text + "#";
    text += "  ";
  }
  if (variation.reply) {
    text += "2. " + notation_.MoveText(*variation.reply);
    if (variation.replyMates) text += "#";
  }
  return text;
}

// "Solution No %d" (none for a forced first move), the key line with its
// castling text, mate mark, "   O.K." and threat, then the variations.
void ReportWriter::operator()(const Key& key) {
  sink_.setPlaceholder("");
  std::string line = "1. " + notation_.MoveText(key.move);
  if (key.mates) line += "#";
  if (key.forced) {
    line += "   O.K.";
  } else {
    rootLine("Solution No " + std::to_string(key.number));
  }
  if (key.threat) line += "  threat:  2. " + notation_.MoveText(*key.threat) + "#";
  rootLine(line);
  for (const Variation& variation : key.variations) {
    const std::string text = variationText(variation);
    sink_.addChildLine(text);
    sink_.appendText("\t");
    sink_.appendText(text);
    sink_.appendText("\n");
  }
  sink_.resultShown(true);
}

// "  Solution No %d", then the moves in pairs, the last one marked as mate.
void ReportWriter::operator()(const HelpLine& help) {
  sink_.setPlaceholder("");
  rootLine("  Solution No " + std::to_string(help.number));
  const std::size_t plies = help.moves.size();
  for (std::size_t pair = 1; 2 * pair <= plies; ++pair) {
    std::string line = std::to_string(pair) + ". " + notation_.MoveText(help.moves[2 * pair - 2]);
    line += ",  " + notation_.MoveText(help.moves[2 * pair - 1]);
    if (2 * pair == plies) line += "#";
    rootLine(line);
  }
  sink_.resultShown(true);
}

void ReportWriter::operator()(const NoSolution& end) {
  sink_.setPlaceholder("");
  rootLine(end.anyFound ? "No more solutions" : end.helpmate ? "  Solution no found" : "No solution");
  sink_.resultShown(true);
}

// After a solution the minimum-moves run ends; its buffer texts are the
// program's own, the helpmate's format string included.
void ReportWriter::operator()(const FailedDepth& depth) {
  sink_.setPlaceholder("");
  if (depth.anyFound) {
    sink_.addRootLine(depth.helpmate ? " No more solutions" : "No more solutions");
    sink_.appendText(depth.helpmate ? "%s No more solutions" : "No more solutions");
  } else {
    rootLine(depth.helpmate ? " - no solution" : "- no solution");
  }
  sink_.resultShown(depth.last);
}

void ReportWriter::operator()(const CountLine& line) {
  sink_.setPlaceholder("");
  char heading[40];
  std::snprintf(heading, sizeof heading, "In %d single moves:", line.depth);
  rootLine(heading);
  rootLine(countLineText(line));
  sink_.resultShown(line.last);
}

namespace {

class TextOnly : public LineSink {
 public:
  void appendText(std::string_view text) override { text_.append(text); }
  std::string text_;
};

}  // namespace

std::string solutionText(const std::vector<Record>& records, int language) {
  TextOnly text;
  ReportWriter writer(text, language);
  for (const Record& record : records) writer.record(record);
  return std::move(text.text_);
}

}  // namespace velkaro::solver
