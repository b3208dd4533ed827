// The report writer of the placement search fills the list and the captions;
// the panel only shows them.

#include "ui/positions_panel.h"

#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "placement/board_text.h"

namespace velkaro::ui {

namespace {

constexpr placement::Goal kGoals[3] = {placement::Goal::AttackingSquares, placement::Goal::NonAttackingSquares,
                                       placement::Goal::NonAttackingPieces};
const char* const kGoalTexts[3] = {"Maximum of attacking squares", "Maximum of non-attacking squares",
                                   "Non-attacking pieces"};
const char* const kKindNames[6] = {"Kings", "Queens", "Rooks", "Bishops", "Knights", "Pawns"};

QString fromView(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

// At most two characters as a decimal number; anything else counts as 0.
int countOf(const QLineEdit* field) {
  bool number = false;
  const int value = field->text().left(2).toInt(&number);
  return number && value > 0 ? value : 0;
}

}  // namespace

PositionsPanel::PositionsPanel(QWidget* parent) : QWidget(parent) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* top = new QHBoxLayout;
  auto* goalBox = new QGroupBox(QStringLiteral("Search for positions:"), this);
  auto* goalLayout = new QVBoxLayout(goalBox);
  for (int index = 0; index < 3; ++index) {
    goals_[static_cast<std::size_t>(index)] = new QRadioButton(QString::fromLatin1(kGoalTexts[index]), goalBox);
    goalLayout->addWidget(goals_[static_cast<std::size_t>(index)]);
  }
  goals_[2]->setChecked(true);
  top->addWidget(goalBox);
  auto* countBox = new QGroupBox(QStringLiteral("Number of pieces:"), this);
  auto* countLayout = new QGridLayout(countBox);
  for (int kind = 0; kind < 6; ++kind) {
    auto* field = new QLineEdit(countBox);
    field->setMaxLength(2);
    field->setFixedWidth(field->fontMetrics().horizontalAdvance(QStringLiteral("888")) + 10);
    countLayout->addWidget(new QLabel(QString::fromLatin1(kKindNames[kind]), countBox), kind % 3, (kind / 3) * 2);
    countLayout->addWidget(field, kind % 3, (kind / 3) * 2 + 1);
    counts_[static_cast<std::size_t>(kind)] = field;
  }
  top->addWidget(countBox);
  layout->addLayout(top);

  list_ = new QListWidget(this);
  list_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  list_->setUniformItemSizes(true);
  layout->addWidget(list_, 1);
  auto* captions = new QGridLayout;
  for (int caption = 0; caption < placement::kCaptionCount; ++caption) {
    const std::string_view label = placement::captionLabel(static_cast<placement::Caption>(caption));
    captionLabels_[static_cast<std::size_t>(caption)] = new QLabel(fromView(label), this);
    captionValues_[static_cast<std::size_t>(caption)] = new QLabel(this);
    captions->addWidget(captionLabels_[static_cast<std::size_t>(caption)], caption, 0);
    captions->addWidget(captionValues_[static_cast<std::size_t>(caption)], caption, 1);
  }
  captions->setColumnStretch(1, 1);
  layout->addLayout(captions);
  clear();
  connect(list_, &QListWidget::currentRowChanged, this, &PositionsPanel::chooseRow);
}

placement::PlaceSettings PositionsPanel::settings(bool stopOnFirstSolution) const {
  placement::PlaceSettings settings;
  settings.counts = {countOf(counts_[0]), countOf(counts_[1]), countOf(counts_[2]),
                     countOf(counts_[3]), countOf(counts_[4]), countOf(counts_[5])};
  for (int index = 0; index < 3; ++index) {
    if (goals_[static_cast<std::size_t>(index)]->isChecked()) settings.goal = kGoals[index];
  }
  settings.stopOnFirstSolution = stopOnFirstSolution;
  return settings;
}

void PositionsPanel::setLocked(bool locked) {
  for (QRadioButton* goal : goals_) goal->setEnabled(!locked);
  for (QLineEdit* field : counts_) field->setEnabled(!locked);
}

QRadioButton* PositionsPanel::goalButton(placement::Goal goal) const {
  for (int index = 0; index < 3; ++index) {
    if (kGoals[index] == goal) return goals_[static_cast<std::size_t>(index)];
  }
  return nullptr;
}

QLabel* PositionsPanel::captionValue(placement::Caption caption) const {
  return captionValues_[static_cast<std::size_t>(caption)];
}

void PositionsPanel::clear() {
  const QSignalBlocker blocker(list_);
  list_->clear();
  for (int caption = 0; caption < placement::kCaptionCount; ++caption) {
    captionLabels_[static_cast<std::size_t>(caption)]->hide();
    captionValues_[static_cast<std::size_t>(caption)]->clear();
  }
}

void PositionsPanel::addRow(std::string_view text) {
  const QSignalBlocker blocker(list_);
  list_->addItem(fromView(text));
}

void PositionsPanel::removeLastRow() {
  const QSignalBlocker blocker(list_);
  delete list_->takeItem(list_->count() - 1);
}

void PositionsPanel::showCaption(placement::Caption caption, std::string_view value) {
  captionLabels_[static_cast<std::size_t>(caption)]->show();
  captionValues_[static_cast<std::size_t>(caption)]->setText(fromView(value));
}

void PositionsPanel::selectRow(int row) {
  {
    const QSignalBlocker blocker(list_);
    list_->setCurrentRow(row);
  }
  chooseRow(row);
}

void PositionsPanel::chooseRow(int row) {
  if (row < 0 || row >= list_->count()) return;
  const std::string text = list_->item(row)->text().toStdString();
  const std::optional<placement::Board> board = placement::parseBoardText(text);
  if (!board) return;
  emit placementChosen(*board, placement::unattackedEmptySquares(*board));
}

}  // namespace velkaro::ui
