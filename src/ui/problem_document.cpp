// The problem document keeps its parts consistent: the en-passant choice and
// the first move follow the set-up.

#include "ui/problem_document.h"

#include <algorithm>

#include "ui/en_passant.h"

namespace velkaro::ui {

ProblemDocument::ProblemDocument(QObject* parent) : QObject(parent) {}

void ProblemDocument::setupEdited() {
  enPassantChoices_ = ui::enPassantChoices(setup_.board, setup_.sideToMove);
  if (std::find(enPassantChoices_.begin(), enPassantChoices_.end(), setup_.lastMoveSquare) ==
      enPassantChoices_.end()) {
    setup_.lastMoveSquare = 0;
  }
  firstMove_.reset();
  emit setupChanged();
  emit firstMoveChanged();
  setModified(true);
}

void ProblemDocument::setSetup(const core::BoardSetup& setup) {
  setup_ = setup;
  setup_.sideToMove = setup.sideToMove < 0 ? core::Black : core::White;
  setupEdited();
}

void ProblemDocument::setBoard(const Board& board) {
  setup_.board = board;
  setupEdited();
}

void ProblemDocument::setSquare(int square, int code) {
  setup_.board[static_cast<std::size_t>(square)] = code;
  setupEdited();
}

void ProblemDocument::setSideToMove(int side) {
  setup_.sideToMove = side < 0 ? core::Black : core::White;
  setupEdited();
}

void ProblemDocument::setCastling(int index, bool allowed) {
  bool* rights[4] = {&setup_.whiteLongCastle, &setup_.whiteShortCastle, &setup_.blackLongCastle,
                     &setup_.blackShortCastle};
  *rights[index & 3] = allowed;
  setupEdited();
}

void ProblemDocument::setLastMoveSquare(int square) {
  setup_.lastMoveSquare = square;
  setupEdited();
}

void ProblemDocument::setStipulation(const core::Stipulation& stipulation) {
  const int moves = stipulation.moves > 0 ? stipulation.moves : stipulation_.moves;
  stipulation_ = {stipulation.helpmate, stipulation.selfmate && !stipulation.helpmate, moves};
  emit stipulationChanged();
  setModified(true);
}

void ProblemDocument::setOptions(const SolverOptions& options) {
  if (options == options_) return;
  options_ = options;
  emit optionsChanged();
  setModified(true);
}

void ProblemDocument::setFirstMove(const std::optional<core::FirstMove>& move) {
  firstMove_ = move;
  emit firstMoveChanged();
  setModified(true);
}

void ProblemDocument::clearSolution() {
  records_.clear();
  text_.clear();
  line_ = formats::CurrentLine{};
  emit solutionCleared();
}

void ProblemDocument::addSolution(const std::vector<solver::Record>& records, const std::string& text) {
  records_.insert(records_.end(), records.begin(), records.end());
  text_ += text;
}

}  // namespace velkaro::ui

namespace velkaro::ui {

void ProblemDocument::setModified(bool modified) {
  if (modified == modified_) return;
  modified_ = modified;
  emit modifiedChanged(modified);
}

formats::ProblemData ProblemDocument::problemData() const {
  return {setup_, stipulation_, options_, firstMove_, line_, text_};
}

// The set-up first: it drops the first move, which the problem then brings.
void ProblemDocument::takeProblem(const formats::ProblemData& problem) {
  setSetup(problem.setup);
  setStipulation(problem.stipulation);
  setOptions(problem.options);
  setFirstMove(problem.firstMove);
  records_.clear();
  text_ = problem.solutionText;
  line_ = problem.line;
  setModified(false);
}

}  // namespace velkaro::ui
