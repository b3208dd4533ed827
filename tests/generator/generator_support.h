#pragma once
// What the Creator tests share: the data tables under tests/data/generator,
// settings read from their fields, and a run wired to recording sinks that can
// stop the run at every tick and resumes it to the end.

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "formats/standard_fen.h"
#include "generator/generator_job.h"
#include "generator/list_writer.h"

namespace velkaro::generator {

// The lines of a table file, split at " | "; comments and blank lines left out.
inline std::vector<std::vector<std::string>> readTable(const std::string& name) {
  std::vector<std::vector<std::string>> rows;
  std::ifstream file(std::string(VELKARO_TEST_DATA_DIR) + "/generator/" + name);
  EXPECT_TRUE(file.good()) << name;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::vector<std::string> fields;
    for (std::size_t at = 0;;) {
      const std::size_t bar = line.find(" | ", at);
      fields.push_back(line.substr(at, bar - at));
      if (bar == std::string::npos) break;
      at = bar + 3;
    }
    rows.push_back(fields);
  }
  return rows;
}

// Failures show a problem as its row and key.
inline void PrintTo(const Record& record, std::ostream* out) {
  if (const Problem* problem = std::get_if<Problem>(&record)) {
    *out << problem->ordinal << ": " << rowText(*problem) << " " << core::Notation().MoveText(problem->key);
  } else {
    *out << (std::holds_alternative<NoFound>(record) ? (std::get<NoFound>(record).more ? kNoFoundMoreRow : kNoFoundRow)
                                                     : kAndOtherRow);
  }
}

inline AddedMen addedMen(const std::string& digits) {
  return {digits[0] - '0', digits[1] - '0', digits[2] - '0', digits[3] - '0', digits[4] - '0'};
}

inline core::BoardSetup setupFromFen(const std::string& fen) {
  std::string error;
  const auto setup = formats::readStandardFen(fen, error);
  EXPECT_TRUE(setup.has_value()) << fen << ": " << error;
  return setup.value_or(core::BoardSetup{});
}

// "N:e4,h3 r:a8": the available squares of White's knights and Black's rooks.
inline void readMaps(const std::string& text, SquareMaps& maps) {
  static constexpr std::string_view kLetters = "KQRBNPkqrbnp";
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    SquareMap& map = maps[kLetters.find(word[0])];
    map.squares = 0;
    for (std::size_t at = 2; at < word.size(); at += 3) {
      map.squares |= std::uint64_t{1} << core::squareAt(word[at] - 'a', word[at + 1] - '0');
    }
  }
}

// A Creator run that keeps its records and messages. With `stopEvery` set it
// asks for a stop at every such tick and resumes; `pause` makes it pause at
// each problem.
class Recorded : public jobs::ProgressSink, public RecordSink, public core::MessageSink {
 public:
  explicit Recorded(CreateSettings settings) : settings_(std::move(settings)) {}

  void tick(const jobs::Progress&) override {
    if (stopEvery > 0 && ++ticks_ % stopEvery == 0) job->requestStop();
  }
  void record(const Record& record) override {
    if (std::holds_alternative<Testing>(record)) {
      if (stopWhenTesting) job->requestStop();
      return;
    }
    records.push_back(record);
  }
  void showMessage(std::string_view caption, std::string_view text) override {
    messages.push_back(std::string(caption) + std::string(text));
  }

  // Runs until the run is finished or has listed `problems` problems; a run
  // stopped as it begins testing is left so.
  jobs::RunEnd run(std::size_t problems = kMaxProblems) {
    jobs::RunEnd end = job->start(settings_);
    if (stopWhenTesting) return end;
    while (end == jobs::RunEnd::Stopped || (end == jobs::RunEnd::Solution && job->problems().size() < problems)) {
      ++resumes;
      end = job->resume();
    }
    return end;
  }

  int stopEvery = 0;
  bool stopWhenTesting = false;
  int resumes = 0;
  std::vector<Record> records;
  std::vector<std::string> messages;
  std::unique_ptr<GeneratorJob> job = std::make_unique<GeneratorJob>(*this, *this, *this);

 private:
  CreateSettings settings_;
  int ticks_ = 0;
};

}  // namespace velkaro::generator
