#pragma once
// The panel under the "Solver" and "Variants" tabs: the stipulation and its
// number of moves, the side to move, the four castling settings, the
// en-passant last move, "Testing all second moves", the first move to test,
// and the "Initial position" and "Clear" buttons. It shows the problem
// document and writes what the user changes into it.

#include <QWidget>
#include <array>

#include "core/notation.h"

class QAbstractButton;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QScrollArea;
class QSpinBox;

namespace velkaro::ui {

class ProblemDocument;

class SolverPanel : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kMaxEnPassantChoices = 5;

  SolverPanel(ProblemDocument& document, QWidget* parent = nullptr);

  // The first move to test is written in this notation.
  void setNotation(const core::Notation& notation);
  // In counting mode the number is a count of single moves and the
  // stipulation and second-move settings have no say.
  void setCountingMode(bool counting);
  // While a job runs, nothing here may change.
  void setLocked(bool locked);

  // The panel scrolls when the result tree below is dragged taller.
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

  QPushButton* initialPositionButton() const { return initialPosition_; }
  QPushButton* clearButton() const { return clear_; }
  QPushButton* selectMoveButton() const { return selectMove_; }
  QLineEdit* firstMoveField() const { return firstMove_; }
  QSpinBox* movesField() const { return moves_; }
  QRadioButton* sideButton(int side) const;
  QRadioButton* kindButton(int kind) const { return kinds_[static_cast<std::size_t>(kind)]; }
  QCheckBox* castlingBox(int index) const { return castling_[static_cast<std::size_t>(index)]; }
  QCheckBox* allSecondMovesBox() const { return allSecondMoves_; }
  QAbstractButton* enPassantButton(int index) const;

 signals:
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
  void chooseStipulation();
  void showSetup();
  void showStipulation();
  void showFirstMove();
  void updateEnabledStates();

  ProblemDocument& document_;
  core::Notation notation_;
  QScrollArea* scroll_ = nullptr;

  std::array<QRadioButton*, 3> kinds_{};  // mate, selfmate, helpmate
  QSpinBox* moves_ = nullptr;
  QRadioButton* white_ = nullptr;
  QRadioButton* black_ = nullptr;
  std::array<QCheckBox*, 4> castling_{};  // White long, White short, Black long, Black short
  std::array<QRadioButton*, kMaxEnPassantChoices> enPassant_{};
  QCheckBox* allSecondMoves_ = nullptr;
  QPushButton* selectMove_ = nullptr;
  QLineEdit* firstMove_ = nullptr;
  QPushButton* initialPosition_ = nullptr;
  QPushButton* clear_ = nullptr;
  bool counting_ = false;
  bool locked_ = false;
};

}  // namespace velkaro::ui
