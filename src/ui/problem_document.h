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
#include "formats/problem_file.h"
#include "solver/records.h"
#include "ui/board_transform.h"

namespace velkaro::ui {

using formats::SolverOptions;

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
  // report writer made of them, and the line it last stood at.
  const std::vector<solver::Record>& solutionRecords() const { return records_; }
  const std::string& solutionText() const { return text_; }
  void clearSolution();
  void addSolution(const std::vector<solver::Record>& records, const std::string& text);
  const formats::CurrentLine& currentLine() const { return line_; }
  void setCurrentLine(const formats::CurrentLine& line) { line_ = line; }
  // Whether the last run counted continuations (the Variants tab). A run
  // changes nothing the user set, so this leaves the problem unmodified.
  void setLastRunCounted(bool counted) { options_.counting = counted; }

  // The whole problem as a problem file keeps it, and back. A problem read
  // from a file brings its solution as text only.
  formats::ProblemData problemData() const;
  void takeProblem(const formats::ProblemData& problem);

  // Changed since it was opened, saved or imported.
  bool modified() const { return modified_; }
  void setModified(bool modified);

 signals:
  void setupChanged();
  void stipulationChanged();
  void optionsChanged();
  void firstMoveChanged();
  void solutionCleared();
  void modifiedChanged(bool modified);

 private:
  void setupEdited();

  core::BoardSetup setup_;
  std::vector<int> enPassantChoices_;
  core::Stipulation stipulation_{false, false, 2};
  SolverOptions options_;
  std::optional<core::FirstMove> firstMove_;
  std::vector<solver::Record> records_;
  std::string text_;
  formats::CurrentLine line_;
  bool modified_ = false;
};

}  // namespace velkaro::ui
