// Reading the published-problem files.

#include "published_problems.h"

#include "formats/fen.h"
#include "table_file.h"

namespace velkaro::published {

core::Stipulation Problem::stipulation() const {
  core::Stipulation stipulation;
  const char kind = stipulationText.empty() ? ' ' : stipulationText[0];
  stipulation.helpmate = kind == 'H' || kind == 'h';
  stipulation.selfmate = kind == 'S' || kind == 's';
  stipulation.moves = std::stoi(stipulationText.substr(stipulationText.find('#') + 1));
  return stipulation;
}

core::BoardSetup Problem::setup() const {
  formats::FenImport import;
  import.selectLine({fen}, 0, "FEN");
  core::BoardSetup setup = formats::setupFromImport(import.result());
  if (lastMove.size() == 2) setup.lastMoveSquare = core::squareAt(lastMove[0] - 'a', lastMove[1] - '0');
  return setup;
}

std::vector<Problem> readProblems(const std::string& path, const std::string& filter) {
  std::vector<Problem> problems;
  for (const std::vector<std::string>& fields : testing::readTable(path)) {
    if (fields.size() < 6) continue;
    Problem problem{fields[0], fields[1], fields[2], fields[3], fields[4], fields[5]};
    if (filter.empty() || problem.id.find(filter) != std::string::npos ||
        problem.stipulationText.find(filter) != std::string::npos) {
      problems.push_back(problem);
    }
  }
  return problems;
}

}  // namespace velkaro::published
