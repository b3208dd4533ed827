#pragma once
// The panel under the "Solver" and "Variants" tabs: the stipulation and its
// number of moves, the side to move, the four castling settings, the
// en-passant last move, "Testing all second moves", the first move to test,
// and the "Initial position" and "Clear" buttons.

#include <QWidget>
#include <array>
#include <vector>

#include "core/position.h"
#include "core/stipulation.h"

class QAbstractButton;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSpinBox;

namespace velkaro::ui {

class SolverPanel : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kMaxEnPassantChoices = 5;

  explicit SolverPanel(QWidget* parent = nullptr);

  core::Stipulation stipulation() const;
  // A number of moves of 0 leaves the number field as it is.
  void setStipulation(const core::Stipulation& stipulation);

  int sideToMove() const;
  void setSideToMove(int side);

  // Castling settings and last move into `setup`, and back.
  void readSettings(core::BoardSetup& setup) const;
  void showSettings(const core::BoardSetup& setup);

  // Offers the double steps of the pawns on `pawnSquares`; the one chosen so
  // far stays chosen when it is offered again.
  void setEnPassantChoices(const std::vector<int>& pawnSquares);
  // The chosen pawn's square, 0 for none.
  int lastMoveSquare() const;
  void setLastMoveSquare(int square);

  bool testsAllSecondMoves() const;

  // "All moves" or the chosen first move's text.
  void setFirstMoveText(const QString& text);

  // In counting mode the number is a count of single moves and the
  // stipulation and second-move settings have no say.
  void setCountingMode(bool counting);
  // While a job runs, nothing here may change.
  void setLocked(bool locked);

  QPushButton* initialPositionButton() const { return initialPosition_; }
  QPushButton* clearButton() const { return clear_; }
  QPushButton* selectMoveButton() const { return selectMove_; }
  QLineEdit* firstMoveField() const { return firstMove_; }
  QSpinBox* movesField() const { return moves_; }
  QRadioButton* sideButton(int side) const;
  QAbstractButton* enPassantButton(int index) const;

 signals:
  void sideChanged(int side);
  // The side, a castling setting or the chosen last move has changed.
  void settingsEdited();
  void selectMoveRequested();
  void initialPositionRequested();
  void clearRequested();

 private:
  QWidget* createStipulationBox();
  QWidget* createSideBox();
  QWidget* createCastlingBox();
  QWidget* createEnPassantBox();
  QWidget* createFirstMoveRow();
  void chooseEnPassant(int index, bool checked);
  void updateEnabledStates();

  std::array<QRadioButton*, 3> kinds_{};  // mate, selfmate, helpmate
  QSpinBox* moves_ = nullptr;
  QRadioButton* white_ = nullptr;
  QRadioButton* black_ = nullptr;
  std::array<QCheckBox*, 4> castling_{};  // White long, White short, Black long, Black short
  std::array<QRadioButton*, kMaxEnPassantChoices> enPassant_{};
  std::vector<int> enPassantSquares_;
  QCheckBox* allSecondMoves_ = nullptr;
  QPushButton* selectMove_ = nullptr;
  QLineEdit* firstMove_ = nullptr;
  QPushButton* initialPosition_ = nullptr;
  QPushButton* clear_ = nullptr;
  bool counting_ = false;
  bool locked_ = false;
};

}  // namespace velkaro::ui
