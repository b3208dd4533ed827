#pragma once
// The problem being edited: position, side to move, castling, the en-passant
// last move, the stipulation, the options, the first move to test, and the
// last solution as records and as text. The main window owns the one
// document; the board, the panels, the runs, and later the files and printing
// read and change it here, and it says what changed through its signals.

#include <QObject>
#include <optional>
#include <string>
#include <vector>

#include "core/first_moves.h"
#include "core/position.h"
#include "core/stipulation.h"
#include "solver/records.h"
#include "ui/board_transform.h"

namespace velkaro::ui {

struct SolverOptions {
  bool minimumMoves = false;        // "Search minimum moves"
  bool stopOnFirstSolution = true;  // "Stop on first solution", on at start-up
  bool testAllSecondMoves = false;  // "Testing all second moves" (never for helpmates)
  bool operator==(const SolverOptions&) const = default;
};

class ProblemDocument : public QObject {
  Q_OBJECT

 public:
  explicit ProblemDocument(QObject* parent = nullptr);

  // The position with everything a search needs beside the board.
  const core::BoardSetup& setup() const { return setup_; }
  const Board& board() const { return setup_.board; }
  // Every change of the set-up drops an en-passant choice the new board no
  // longer offers, and the first move to test, which may no longer exist.
  void setSetup(const core::BoardSetup& setup);
  void setBoard(const Board& board);
  void setSquare(int square, int code);
  void setSideToMove(int side);
  void setCastling(int index, bool allowed);  // 0 White long, 1 White short, 2 Black long, 3 Black short
  void setLastMoveSquare(int square);

  // The double steps the board allows as the last move, a-file first.
  const std::vector<int>& enPassantChoices() const { return enPassantChoices_; }

  const core::Stipulation& stipulation() const { return stipulation_; }
  // A number of moves of 0 keeps the number as it is.
  void setStipulation(const core::Stipulation& stipulation);

  const SolverOptions& options() const { return options_; }
  void setOptions(const SolverOptions& options);

  const std::optional<core::FirstMove>& firstMove() const { return firstMove_; }
  void setFirstMove(const std::optional<core::FirstMove>& move);

  // The last run's results: the records a run emitted and the plain text the
  // report writer made of them.
  const std::vector<solver::Record>& solutionRecords() const { return records_; }
  const std::string& solutionText() const { return text_; }
  void clearSolution();
  void addSolution(const std::vector<solver::Record>& records, const std::string& text);

 signals:
  void setupChanged();
  void stipulationChanged();
  void optionsChanged();
  void firstMoveChanged();
  void solutionCleared();

 private:
  void setupEdited();

  core::BoardSetup setup_;
  std::vector<int> enPassantChoices_;
  core::Stipulation stipulation_{false, false, 2};
  SolverOptions options_;
  std::optional<core::FirstMove> firstMove_;
  std::vector<solver::Record> records_;
  std::string text_;
};

}  // namespace velkaro::ui
