// The panel's controls show the problem document; a user's change goes into
// the document, and the document's signals bring every control up to date,
// so the panel never holds state of its own.

#include "ui/solver_panel.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

#include "solver/solver_job.h"
#include "ui/en_passant.h"
#include "ui/problem_document.h"

namespace velkaro::ui {

// The settings stand in three rows: stipulation, side and castling; the en
// passant choices beside "Testing all second moves"; the first move and the
// two board buttons.
SolverPanel::SolverPanel(ProblemDocument& document, QWidget* parent) : QWidget(parent), document_(document) {
  auto* content = new QWidget;
  auto* layout = new QGridLayout(content);
  layout->setContentsMargins(9, 4, 9, 4);
  layout->addWidget(createStipulationBox(), 0, 0);
  layout->addWidget(createSideBox(), 0, 1);
  layout->addWidget(createCastlingBox(), 0, 2);
  layout->addWidget(createEnPassantBox(), 1, 0, 1, 2);
  allSecondMoves_ = new QCheckBox(QStringLiteral("Testing all second moves"), content);
  layout->addWidget(allSecondMoves_, 1, 2, Qt::AlignLeft | Qt::AlignVCenter);
  layout->addWidget(createFirstMoveRow(), 2, 0, 1, 3);
  layout->setRowStretch(3, 1);
  layout->setColumnStretch(0, 2);  // widths shared out as the boxes need them
  layout->setColumnStretch(1, 1);
  layout->setColumnStretch(2, 2);
  scroll_ = new QScrollArea(this);
  scroll_->setWidget(content);
  scroll_->setWidgetResizable(true);
  scroll_->setFrameShape(QFrame::NoFrame);
  scroll_->setFocusPolicy(Qt::NoFocus);
  scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  auto* outer = new QVBoxLayout(this);
  outer->setContentsMargins(0, 0, 0, 0);
  outer->addWidget(scroll_);
  connect(allSecondMoves_, &QCheckBox::toggled, this, [this](bool on) {
    SolverOptions options = document_.options();
    options.testAllSecondMoves = on;
    document_.setOptions(options);
  });
  connect(&document_, &ProblemDocument::setupChanged, this, &SolverPanel::showSetup);
  connect(&document_, &ProblemDocument::stipulationChanged, this, &SolverPanel::showStipulation);
  connect(&document_, &ProblemDocument::firstMoveChanged, this, &SolverPanel::showFirstMove);
  connect(&document_, &ProblemDocument::optionsChanged, this, [this] {
    const QSignalBlocker blocker(allSecondMoves_);
    allSecondMoves_->setChecked(document_.options().testAllSecondMoves);
  });
  showSetup();
  showStipulation();
  showFirstMove();
}

QSize SolverPanel::sizeHint() const { return scroll_->widget()->sizeHint(); }

// As wide as the controls, but only a few lines high: dragged smaller, the
// panel scrolls.
QSize SolverPanel::minimumSizeHint() const {
  return {scroll_->widget()->minimumSizeHint().width() + scroll_->verticalScrollBar()->sizeHint().width(),
          fontMetrics().height() * 4};
}

QWidget* SolverPanel::createStipulationBox() {
  auto* box = new QGroupBox(QStringLiteral("Stipulation"), this);
  auto* layout = new QGridLayout(box);
  const char* const labels[3] = {"Mate in ", "Sefmate in ", "Helpmate in "};
  for (int kind = 0; kind < 3; ++kind) {
    kinds_[static_cast<std::size_t>(kind)] = new QRadioButton(QString::fromLatin1(labels[kind]), box);
    layout->addWidget(kinds_[static_cast<std::size_t>(kind)], kind, 0);
    connect(kinds_[static_cast<std::size_t>(kind)], &QRadioButton::toggled, this, [this](bool checked) {
      if (checked) chooseStipulation();
    });
  }
  moves_ = new QSpinBox(box);
  moves_->setRange(1, core::kMaxMoves);
  moves_->setToolTip(QStringLiteral("The number of moves; on the Variants tab, of single moves to count"));
  layout->addWidget(moves_, 0, 1, 3, 1, Qt::AlignLeft | Qt::AlignVCenter);
  layout->setColumnStretch(2, 1);
  connect(moves_, &QSpinBox::valueChanged, this, &SolverPanel::chooseStipulation);
  return box;
}

QWidget* SolverPanel::createSideBox() {
  auto* box = new QGroupBox(QStringLiteral("Side to move"), this);
  auto* layout = new QVBoxLayout(box);
  white_ = new QRadioButton(QStringLiteral("White"), box);
  black_ = new QRadioButton(QStringLiteral("Black"), box);
  layout->addWidget(white_);
  layout->addWidget(black_);
  layout->addStretch();
  connect(white_, &QRadioButton::toggled, this,
          [this](bool isWhite) { document_.setSideToMove(isWhite ? core::White : core::Black); });
  return box;
}

QWidget* SolverPanel::createCastlingBox() {
  auto* box = new QGroupBox(QStringLiteral("Castling"), this);
  auto* layout = new QGridLayout(box);
  const char* const labels[4] = {"White 0 - 0 - 0", "White 0 - 0", "Black 0 - 0 - 0", "Black 0 - 0"};
  for (int index = 0; index < 4; ++index) {
    castling_[static_cast<std::size_t>(index)] = new QCheckBox(QString::fromLatin1(labels[index]), box);
    layout->addWidget(castling_[static_cast<std::size_t>(index)], index % 2, index / 2);
    connect(castling_[static_cast<std::size_t>(index)], &QCheckBox::toggled, this,
            [this, index](bool allowed) { document_.setCastling(index, allowed); });
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
    layout->addWidget(choice, index / 3, index % 3);
    connect(choice, &QRadioButton::toggled, this, [this, index](bool checked) { chooseEnPassant(index, checked); });
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

void SolverPanel::chooseStipulation() {
  document_.setStipulation({kinds_[2]->isChecked(), kinds_[1]->isChecked(), moves_->value()});
}

// One choice at most: choosing one takes back the others; clicking the chosen
// one again takes it back.
void SolverPanel::chooseEnPassant(int index, bool checked) {
  const std::vector<int>& squares = document_.enPassantChoices();
  if (index >= static_cast<int>(squares.size())) return;
  document_.setLastMoveSquare(checked ? squares[static_cast<std::size_t>(index)] : 0);
}

void SolverPanel::showSetup() {
  const core::BoardSetup& setup = document_.setup();
  {
    const QSignalBlocker whiteBlocker(white_);
    const QSignalBlocker blackBlocker(black_);
    (setup.sideToMove == core::Black ? black_ : white_)->setChecked(true);
  }
  const bool rights[4] = {setup.whiteLongCastle, setup.whiteShortCastle, setup.blackLongCastle,
                          setup.blackShortCastle};
  for (std::size_t index = 0; index < 4; ++index) {
    const QSignalBlocker blocker(castling_[index]);
    castling_[index]->setChecked(rights[index]);
  }
  const std::vector<int>& squares = document_.enPassantChoices();
  for (std::size_t index = 0; index < enPassant_.size(); ++index) {
    QRadioButton* choice = enPassant_[index];
    const bool offered = index < squares.size();
    const QSignalBlocker blocker(choice);
    choice->setChecked(offered && squares[index] == setup.lastMoveSquare);
    if (offered) choice->setText(QString::fromStdString(doubleStepText(squares[index])));
    choice->setVisible(offered);
  }
}

void SolverPanel::showStipulation() {
  const core::Stipulation& stipulation = document_.stipulation();
  for (QRadioButton* kind : kinds_) kind->blockSignals(true);
  kinds_[stipulation.helpmate ? 2 : stipulation.selfmate ? 1 : 0]->setChecked(true);
  for (QRadioButton* kind : kinds_) kind->blockSignals(false);
  const QSignalBlocker blocker(moves_);
  moves_->setValue(stipulation.moves);
  updateEnabledStates();
}

void SolverPanel::setNotation(const core::Notation& notation) {
  notation_ = notation;
  showFirstMove();
}

void SolverPanel::showFirstMove() {
  const std::optional<core::FirstMove>& move = document_.firstMove();
  firstMove_->setText(move ? QString::fromStdString(notation_.MoveText(move->record())) : QStringLiteral("All moves"));
}

QRadioButton* SolverPanel::sideButton(int side) const { return side == core::Black ? black_ : white_; }

QAbstractButton* SolverPanel::enPassantButton(int index) const { return enPassant_[static_cast<std::size_t>(index)]; }

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
  allSecondMoves_->setEnabled(!locked_ && !counting_ && !document_.stipulation().helpmate);
  selectMove_->setEnabled(!locked_);
  initialPosition_->setEnabled(!locked_);
  clear_->setEnabled(!locked_);
}

}  // namespace velkaro::ui
