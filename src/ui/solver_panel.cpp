// The panel's controls are the editor state beside the board: the main window
// reads them when it needs a set-up and writes them when a position comes in.

#include "ui/solver_panel.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

#include "ui/en_passant.h"

namespace velkaro::ui {
namespace {

// Frame 0 and one frame beyond the last ply leave room for a helpmate in 30.
constexpr int kMostMoves = 30;

}  // namespace

SolverPanel::SolverPanel(QWidget* parent) : QWidget(parent) {
  auto* layout = new QGridLayout(this);
  layout->addWidget(createStipulationBox(), 0, 0);
  layout->addWidget(createSideBox(), 0, 1);
  layout->addWidget(createCastlingBox(), 1, 0);
  layout->addWidget(createEnPassantBox(), 1, 1);
  allSecondMoves_ = new QCheckBox(QStringLiteral("Testing all second moves"), this);
  layout->addWidget(allSecondMoves_, 2, 0, 1, 2);
  layout->addWidget(createFirstMoveRow(), 3, 0, 1, 2);
  layout->setRowStretch(4, 1);
  updateEnabledStates();
}

QWidget* SolverPanel::createStipulationBox() {
  auto* box = new QGroupBox(QStringLiteral("Stipulation"), this);
  auto* layout = new QGridLayout(box);
  const char* const labels[3] = {"Mate in ", "Sefmate in ", "Helpmate in "};
  for (int kind = 0; kind < 3; ++kind) {
    kinds_[static_cast<std::size_t>(kind)] = new QRadioButton(QString::fromLatin1(labels[kind]), box);
    layout->addWidget(kinds_[static_cast<std::size_t>(kind)], kind, 0);
  }
  kinds_[0]->setChecked(true);
  connect(kinds_[2], &QRadioButton::toggled, this, &SolverPanel::updateEnabledStates);
  moves_ = new QSpinBox(box);
  moves_->setRange(1, kMostMoves);
  moves_->setValue(2);
  layout->addWidget(moves_, 0, 1, 3, 1, Qt::AlignVCenter);
  return box;
}

QWidget* SolverPanel::createSideBox() {
  auto* box = new QGroupBox(QStringLiteral("Side to move"), this);
  auto* layout = new QVBoxLayout(box);
  white_ = new QRadioButton(QStringLiteral("White"), box);
  black_ = new QRadioButton(QStringLiteral("Black"), box);
  white_->setChecked(true);
  layout->addWidget(white_);
  layout->addWidget(black_);
  layout->addStretch();
  connect(white_, &QRadioButton::toggled, this,
          [this](bool isWhite) { emit sideChanged(isWhite ? core::White : core::Black); });
  connect(white_, &QRadioButton::toggled, this, &SolverPanel::settingsEdited);
  return box;
}

QWidget* SolverPanel::createCastlingBox() {
  auto* box = new QGroupBox(QStringLiteral("Castling"), this);
  auto* layout = new QGridLayout(box);
  const char* const labels[4] = {"White 0 - 0 - 0", "White 0 - 0", "Black 0 - 0 - 0", "Black 0 - 0"};
  for (int index = 0; index < 4; ++index) {
    castling_[static_cast<std::size_t>(index)] = new QCheckBox(QString::fromLatin1(labels[index]), box);
    layout->addWidget(castling_[static_cast<std::size_t>(index)], index % 2, index / 2);
    connect(castling_[static_cast<std::size_t>(index)], &QCheckBox::toggled, this, &SolverPanel::settingsEdited);
  }
  return box;
}

// Five places are kept whether or not they are used, so that a board change
// never makes the window's layout move.
QWidget* SolverPanel::createEnPassantBox() {
  auto* box = new QGroupBox(QStringLiteral("En passant - last move:"), this);
  auto* layout = new QGridLayout(box);
  for (int index = 0; index < kMaxEnPassantChoices; ++index) {
    auto* choice = new QRadioButton(QStringLiteral("a7 - a5"), box);
    choice->setAutoExclusive(false);  // a second click takes the choice back
    QSizePolicy policy = choice->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    choice->setSizePolicy(policy);
    choice->hide();
    layout->addWidget(choice, index % 3, index / 3);
    connect(choice, &QRadioButton::toggled, this, [this, index](bool checked) { chooseEnPassant(index, checked); });
    connect(choice, &QRadioButton::toggled, this, &SolverPanel::settingsEdited);
    enPassant_[static_cast<std::size_t>(index)] = choice;
  }
  return box;
}

QWidget* SolverPanel::createFirstMoveRow() {
  auto* row = new QWidget(this);
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  selectMove_ = new QPushButton(QStringLiteral("Select move"), row);
  firstMove_ = new QLineEdit(QStringLiteral("All moves"), row);
  firstMove_->setReadOnly(true);
  firstMove_->setFocusPolicy(Qt::NoFocus);
  firstMove_->setMinimumWidth(firstMove_->fontMetrics().horizontalAdvance(QStringLiteral(" Ng1 - f3Q ")) + 12);
  initialPosition_ = new QPushButton(QStringLiteral("Initial position"), row);
  clear_ = new QPushButton(QStringLiteral("Clear"), row);
  layout->addWidget(selectMove_);
  layout->addWidget(new QLabel(QStringLiteral("First move to test:"), row));
  layout->addWidget(firstMove_);
  layout->addStretch();
  layout->addWidget(initialPosition_);
  layout->addWidget(clear_);
  connect(initialPosition_, &QPushButton::clicked, this, &SolverPanel::initialPositionRequested);
  connect(clear_, &QPushButton::clicked, this, &SolverPanel::clearRequested);
  connect(selectMove_, &QPushButton::clicked, this, &SolverPanel::selectMoveRequested);
  return row;
}

core::Stipulation SolverPanel::stipulation() const {
  return {kinds_[2]->isChecked(), kinds_[1]->isChecked(), moves_->value()};
}

void SolverPanel::setStipulation(const core::Stipulation& stipulation) {
  kinds_[stipulation.helpmate ? 2 : stipulation.selfmate ? 1 : 0]->setChecked(true);
  if (stipulation.moves > 0) moves_->setValue(stipulation.moves);
}

int SolverPanel::sideToMove() const { return white_->isChecked() ? core::White : core::Black; }

void SolverPanel::setSideToMove(int side) { (side == core::Black ? black_ : white_)->setChecked(true); }

QRadioButton* SolverPanel::sideButton(int side) const { return side == core::Black ? black_ : white_; }

void SolverPanel::readSettings(core::BoardSetup& setup) const {
  setup.sideToMove = sideToMove();
  setup.whiteLongCastle = castling_[0]->isChecked();
  setup.whiteShortCastle = castling_[1]->isChecked();
  setup.blackLongCastle = castling_[2]->isChecked();
  setup.blackShortCastle = castling_[3]->isChecked();
  setup.lastMoveSquare = lastMoveSquare();
}

void SolverPanel::showSettings(const core::BoardSetup& setup) {
  setSideToMove(setup.sideToMove);
  castling_[0]->setChecked(setup.whiteLongCastle);
  castling_[1]->setChecked(setup.whiteShortCastle);
  castling_[2]->setChecked(setup.blackLongCastle);
  castling_[3]->setChecked(setup.blackShortCastle);
  setLastMoveSquare(setup.lastMoveSquare);
}

void SolverPanel::setEnPassantChoices(const std::vector<int>& pawnSquares) {
  const int chosen = lastMoveSquare();
  enPassantSquares_.assign(pawnSquares.begin(),
                           pawnSquares.begin() + qMin<std::ptrdiff_t>(pawnSquares.size(), kMaxEnPassantChoices));
  for (int index = 0; index < kMaxEnPassantChoices; ++index) {
    QRadioButton* choice = enPassant_[static_cast<std::size_t>(index)];
    const bool offered = index < static_cast<int>(enPassantSquares_.size());
    const QSignalBlocker blocker(choice);
    choice->setChecked(offered && enPassantSquares_[static_cast<std::size_t>(index)] == chosen);
    if (offered) {
      choice->setText(QString::fromStdString(doubleStepText(enPassantSquares_[static_cast<std::size_t>(index)])));
    }
    choice->setVisible(offered);
  }
}

int SolverPanel::lastMoveSquare() const {
  for (std::size_t index = 0; index < enPassantSquares_.size(); ++index) {
    if (enPassant_[index]->isChecked()) return enPassantSquares_[index];
  }
  return 0;
}

void SolverPanel::setLastMoveSquare(int square) {
  for (std::size_t index = 0; index < enPassant_.size(); ++index) {
    const QSignalBlocker blocker(enPassant_[index]);
    enPassant_[index]->setChecked(index < enPassantSquares_.size() && enPassantSquares_[index] == square);
  }
}

void SolverPanel::chooseEnPassant(int index, bool checked) {
  if (!checked) return;
  for (int other = 0; other < kMaxEnPassantChoices; ++other) {
    if (other == index) continue;
    const QSignalBlocker blocker(enPassant_[static_cast<std::size_t>(other)]);
    enPassant_[static_cast<std::size_t>(other)]->setChecked(false);
  }
}

QAbstractButton* SolverPanel::enPassantButton(int index) const { return enPassant_[static_cast<std::size_t>(index)]; }

bool SolverPanel::testsAllSecondMoves() const { return allSecondMoves_->isChecked(); }

void SolverPanel::setFirstMoveText(const QString& text) { firstMove_->setText(text); }

void SolverPanel::setCountingMode(bool counting) {
  counting_ = counting;
  updateEnabledStates();
}

void SolverPanel::setLocked(bool locked) {
  locked_ = locked;
  updateEnabledStates();
}

void SolverPanel::updateEnabledStates() {
  for (QRadioButton* kind : kinds_) kind->setEnabled(!locked_ && !counting_);
  moves_->setEnabled(!locked_);
  white_->setEnabled(!locked_);
  black_->setEnabled(!locked_);
  for (QCheckBox* right : castling_) right->setEnabled(!locked_);
  for (QRadioButton* choice : enPassant_) choice->setEnabled(!locked_);
  allSecondMoves_->setEnabled(!locked_ && !counting_ && !kinds_[2]->isChecked());
  selectMove_->setEnabled(!locked_);
  initialPosition_->setEnabled(!locked_);
  clear_->setEnabled(!locked_);
}

}  // namespace velkaro::ui
