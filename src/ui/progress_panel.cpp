// The fields are read-only line edits of fixed width, so that new numbers
// never make the window's layout move while a search runs.

#include "ui/progress_panel.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace velkaro::ui {
namespace {

const QString kClockAtZero = QStringLiteral("00:00:00");

QString fromView(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

}  // namespace

ProgressPanel::ProgressPanel(QWidget* parent)
    : QWidget(parent),
      start_(new QPushButton(QStringLiteral("Start"), this)),
      continue_(new QPushButton(QStringLiteral("Continue"), this)),
      stop_(new QPushButton(QStringLiteral("Stop"), this)),
      bar_(new QProgressBar(this)) {
  // Two rows hold the buttons and the three counters, so that the result
  // tree below keeps the height.
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(9, 4, 9, 4);
  auto* fields = new QGridLayout;
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(start_);
  buttons->addWidget(continue_);
  buttons->addWidget(stop_);
  buttons->addStretch();
  fields->addLayout(buttons, 0, 0, 1, 2);
  clock_ = addField(fields, 0, 2, QStringLiteral("Time:"));
  testedMoves_ = addField(fields, 1, 0, QStringLiteral("Number of testing moves:"));
  speed_ = addField(fields, 1, 2, QStringLiteral("Speed ( moves/sec ):"));
  fields->setColumnStretch(4, 1);
  layout->addLayout(fields);

  bar_->setRange(0, kBarFull);
  bar_->setTextVisible(false);
  layout->addWidget(bar_);

  auto* analysing = new QHBoxLayout;
  analysing->addWidget(new QLabel(QStringLiteral("Analysing moves:"), this));
  lines_[0] = createLineBox();
  lines_[1] = createLineBox();
  analysing->addWidget(lines_[0], 1);
  analysing->addWidget(lines_[1], 1);
  layout->addLayout(analysing);

  start_->setToolTip(QStringLiteral("Start a new run on the problem as it stands"));
  continue_->setToolTip(QStringLiteral("Go on with the run that was stopped or paused at a solution"));
  stop_->setToolTip(QStringLiteral("Stop the run; Continue takes it up again"));
  connect(start_, &QPushButton::clicked, this, &ProgressPanel::startPressed);
  connect(continue_, &QPushButton::clicked, this, &ProgressPanel::continuePressed);
  connect(stop_, &QPushButton::clicked, this, &ProgressPanel::stopPressed);
  start_->setEnabled(false);  // the window enables it for the modes that run jobs
  continue_->setEnabled(false);
  stop_->setEnabled(false);
  reset();
}

QLineEdit* ProgressPanel::addField(QGridLayout* layout, int row, int column, const QString& label) {
  auto* field = new QLineEdit(this);
  field->setReadOnly(true);
  field->setFocusPolicy(Qt::NoFocus);
  field->setAlignment(Qt::AlignRight);
  field->setFixedWidth(field->fontMetrics().horizontalAdvance(QStringLiteral(" 999 999 999 999 999 ")));
  layout->addWidget(new QLabel(label, this), row, column);
  layout->addWidget(field, row, column + 1);
  return field;
}

// Two lines, exactly as tall as they need to be.
QListWidget* ProgressPanel::createLineBox() {
  auto* box = new QListWidget(this);
  box->setFocusPolicy(Qt::NoFocus);
  box->setSelectionMode(QAbstractItemView::NoSelection);
  box->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  box->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  box->setFixedHeight(box->fontMetrics().lineSpacing() * 2 + 2 * box->frameWidth() + 6);
  return box;
}

void ProgressPanel::setClockText(std::string_view text) { clock_->setText(fromView(text)); }
void ProgressPanel::setTestedMovesText(std::string_view text) { testedMoves_->setText(fromView(text)); }
void ProgressPanel::setSpeedText(std::string_view text) { speed_->setText(fromView(text)); }
void ProgressPanel::setBar(int position) { bar_->setValue(qBound(0, position, kBarFull)); }

void ProgressPanel::setLineDisplay(const core::CurrentLineText& line) {
  const std::string* boxes[2] = {line.firstBox, line.secondBox};
  for (int box = 0; box < 2; ++box) {
    lines_[box]->clear();
    for (int row = 0; row < 2; ++row) lines_[box]->addItem(QString::fromStdString(boxes[box][row]));
  }
}

void ProgressPanel::clearLineDisplay() {
  lines_[0]->clear();
  lines_[1]->clear();
}

void ProgressPanel::reset() {
  clock_->setText(kClockAtZero);
  testedMoves_->clear();
  speed_->clear();
  bar_->setValue(0);
  clearLineDisplay();
}

void ProgressPanel::showRunning() {
  start_->setEnabled(false);
  continue_->setEnabled(false);
  stop_->setEnabled(true);
}

void ProgressPanel::showIdle(bool canStart, bool canContinue) {
  start_->setEnabled(canStart);
  continue_->setEnabled(canContinue);
  stop_->setEnabled(false);
}

QString ProgressPanel::clockText() const { return clock_->text(); }
QString ProgressPanel::testedMovesText() const { return testedMoves_->text(); }
QString ProgressPanel::speedText() const { return speed_->text(); }
int ProgressPanel::bar() const { return bar_->value(); }
QListWidget* ProgressPanel::lineDisplay(int box) const { return lines_[box == 0 ? 0 : 1]; }

}  // namespace velkaro::ui
