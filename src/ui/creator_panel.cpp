// The panel keeps the problems of the run beside its rows, so a chosen row
// puts its problem on the board without asking the job.

#include "ui/creator_panel.h"

#include <QCheckBox>
#include <QDateTime>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QThread>
#include <QVBoxLayout>

#include "generator/placement_test.h"
#include "ui/available_squares_dialog.h"

namespace velkaro::ui {

namespace {

const char* const kKindLetters[generator::kKinds] = {"K", "Q", "R", "B", "N", "P"};
const char* const kKindNames[generator::kKinds] = {"King", "Queen", "Rook", "Bishop", "Knight", "Pawn"};

// The added-men fields: queens to pawns, the kinds after the king.
int addedIndex(int side, generator::Kind kind) { return (side == core::White ? 0 : 5) + static_cast<int>(kind) - 1; }

QString fromView(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

}  // namespace

CreatorPanel::CreatorPanel(QWidget* parent) : QWidget(parent) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(createChoices());
  auto* row = new QHBoxLayout;
  row->addWidget(createSquareButtons());
  row->addWidget(createAddedMen(), 1);
  layout->addLayout(row);
  list_ = new QListWidget(this);
  list_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  list_->setUniformItemSizes(true);
  layout->addWidget(list_, 1);
  key_ = new QLabel(this);
  key_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  layout->addWidget(key_);
  connect(list_, &QListWidget::currentRowChanged, this, &CreatorPanel::chooseRow);
}

QWidget* CreatorPanel::createChoices() {
  auto* box = new QWidget(this);
  auto* grid = new QGridLayout(box);
  grid->setContentsMargins(0, 0, 0, 0);
  auto* length = new QGroupBox(box);
  auto* lengthLayout = new QVBoxLayout(length);
  mateIn2_ = new QRadioButton(QStringLiteral("Mate in 2"), length);
  mateIn3_ = new QRadioButton(QStringLiteral("Mate in 3"), length);
  mateIn2_->setChecked(true);
  lengthLayout->addWidget(mateIn2_);
  lengthLayout->addWidget(mateIn3_);
  auto* order = new QGroupBox(box);
  auto* orderLayout = new QVBoxLayout(order);
  inTurn_ = new QRadioButton(QStringLiteral("All, in turn"), order);
  atRandom_ = new QRadioButton(QStringLiteral("At random"), order);
  inTurn_->setChecked(true);
  orderLayout->addWidget(inTurn_);
  orderLayout->addWidget(atRandom_);
  grid->addWidget(length, 0, 0, 2, 1);
  grid->addWidget(order, 0, 1, 2, 1);
  const char* const texts[4] = {"No duals", "No capturing", "No checking", "No restrict"};
  for (int index = 0; index < 4; ++index) {
    restrictions_[static_cast<std::size_t>(index)] = new QCheckBox(QString::fromLatin1(texts[index]), box);
    grid->addWidget(restrictions_[static_cast<std::size_t>(index)], index % 2, 2 + index / 2);
  }
  return box;
}

// "K" to "P" for each side; a button whose kind is restricted shows it bold.
QWidget* CreatorPanel::createSquareButtons() {
  auto* box = new QGroupBox(QStringLiteral("Available squares"), this);
  auto* grid = new QGridLayout(box);
  for (int row = 0; row < 2; ++row) {
    grid->addWidget(new QLabel(QString::fromLatin1(row == 0 ? "White:" : "Black:"), box), row, 0);
    for (int kind = 0; kind < generator::kKinds; ++kind) {
      const int index = row * generator::kKinds + kind;
      auto* button = new QPushButton(QString::fromLatin1(kKindLetters[kind]), box);
      button->setFixedWidth(button->fontMetrics().horizontalAdvance(QStringLiteral("MM")) + 12);
      button->setToolTip(QStringLiteral("The squares on which %1 %2s may be generated")
                             .arg(row == 0 ? "White" : "Black", QString::fromLatin1(kKindNames[kind]).toLower()));
      grid->addWidget(button, row, kind + 1);
      connect(button, &QPushButton::clicked, this, [this, index] { chooseSquares(index); });
      squareButtons_[static_cast<std::size_t>(index)] = button;
    }
  }
  return box;
}

QWidget* CreatorPanel::createAddedMen() {
  auto* box = new QGroupBox(QStringLiteral("Number of pieces (additionally):"), this);
  auto* grid = new QGridLayout(box);
  for (int kind = 1; kind < generator::kKinds; ++kind) {
    grid->addWidget(new QLabel(QString::fromLatin1(kKindLetters[kind]), box), 0, kind, Qt::AlignHCenter);
  }
  for (int row = 0; row < 2; ++row) {
    const int side = row == 0 ? core::White : core::Black;
    grid->addWidget(new QLabel(QString::fromLatin1(row == 0 ? "White:" : "Black:"), box), row + 1, 0);
    for (int kind = 1; kind < generator::kKinds; ++kind) {
      auto* field = new QSpinBox(box);
      field->setRange(0, 9);
      grid->addWidget(field, row + 1, kind);
      connect(field, &QSpinBox::valueChanged, this, &CreatorPanel::addedMenChanged);
      added_[static_cast<std::size_t>(addedIndex(side, static_cast<generator::Kind>(kind)))] = field;
    }
  }
  return box;
}

void CreatorPanel::chooseSquares(int index) {
  const int kind = index % generator::kKinds;
  const QString caption = QStringLiteral("%1 %2:").arg(index < generator::kKinds ? "White" : "Black",
                                                        QString::fromLatin1(kKindNames[kind]));
  auto* dialog = new AvailableSquaresDialog(caption, available_[static_cast<std::size_t>(index)].squares, this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog, &QDialog::accepted, this, [this, dialog, index] {
    available_[static_cast<std::size_t>(index)].squares = dialog->squares();
    QPushButton* button = squareButtons_[static_cast<std::size_t>(index)];
    QFont font = button->font();
    font.setBold(available_[static_cast<std::size_t>(index)].restricts());
    button->setFont(font);
  });
  dialog->open();
}

QPushButton* CreatorPanel::squaresButton(int side, generator::Kind kind) const {
  return squareButtons_[static_cast<std::size_t>(generator::mapIndex(side, kind))];
}

QSpinBox* CreatorPanel::addedField(int side, generator::Kind kind) const {
  return added_[static_cast<std::size_t>(addedIndex(side, kind))];
}

generator::AddedMen CreatorPanel::added(int side) const {
  auto value = [&](generator::Kind kind) { return addedField(side, kind)->value(); };
  return {value(generator::Kind::Queen), value(generator::Kind::Rook), value(generator::Kind::Bishop),
          value(generator::Kind::Knight), value(generator::Kind::Pawn)};
}

generator::CreateSettings CreatorPanel::settings(const core::BoardSetup& setup) const {
  generator::CreateSettings settings;
  settings.setup = setup;
  settings.moves = mateIn3_->isChecked() ? 3 : 2;
  settings.white = added(core::White);
  settings.black = added(core::Black);
  settings.atRandom = atRandom_->isChecked();
  settings.seed = static_cast<std::uint64_t>(QDateTime::currentMSecsSinceEpoch());
  settings.restrictions = {restrictions_[0]->isChecked(), restrictions_[1]->isChecked(), restrictions_[2]->isChecked(),
                           restrictions_[3]->isChecked()};
  settings.available = available_;
  settings.threads = QThread::idealThreadCount();
  return settings;
}

void CreatorPanel::beginRun(const core::BoardSetup& fixedMen, bool fresh, int language) {
  writer_ = std::make_unique<generator::ListWriter>(static_cast<generator::ListSink&>(*this), language);
  if (!fresh) return;
  fixedMen_ = fixedMen;
  const QSignalBlocker blocker(list_);
  list_->clear();
  problems_.clear();
  keys_.clear();
  placeholder_ = false;
  key_->clear();
}

void CreatorPanel::record(const generator::Record& record) { writer_->record(record); }

void CreatorPanel::setPlaceholder(std::string_view text) {
  const QSignalBlocker blocker(list_);
  if (placeholder_) delete list_->takeItem(list_->count() - 1);
  placeholder_ = !text.empty();
  if (placeholder_) list_->addItem(fromView(text));
}

void CreatorPanel::addRow(std::string_view text) {
  const QSignalBlocker blocker(list_);
  list_->addItem(fromView(text));
}

// The row of a new problem is the last one so far; the board takes it when
// the run pauses or ends.
void CreatorPanel::problemSelected(const generator::Problem& problem, std::string_view keyText) {
  problems_.push_back(problem);
  keys_.emplace_back(keyText);
  const QSignalBlocker blocker(list_);
  list_->setCurrentRow(static_cast<int>(problems_.size()) - 1);
  key_->setText(fromView(keyText));
}

void CreatorPanel::showSelection() { chooseRow(list_->currentRow()); }

void CreatorPanel::chooseRow(int row) {
  if (row < 0 || row >= static_cast<int>(problems_.size())) return;
  key_->setText(QString::fromStdString(keys_[static_cast<std::size_t>(row)]));
  emit problemChosen(generator::setupOf(problems_[static_cast<std::size_t>(row)].board, fixedMen_));
}

void CreatorPanel::setLocked(bool locked) {
  for (QWidget* widget : findChildren<QWidget*>()) {
    if (widget != list_ && widget != key_) widget->setEnabled(!locked);
  }
  list_->setEnabled(!locked);
}

}  // namespace velkaro::ui
