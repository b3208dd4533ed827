#pragma once
// The progress panel: Start, Continue and Stop, the clock, the number of
// tested moves, the speed, the progress bar over the first moves and the
// "Analysing moves:" display of the line under test. A running job fills it
// through the setters; the buttons report presses through the signals.

#include <QWidget>
#include <string_view>

#include "core/notation.h"

class QGridLayout;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;

namespace velkaro::ui {

class ProgressPanel : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kBarFull = 48;

  explicit ProgressPanel(QWidget* parent = nullptr);

  void setClockText(std::string_view text);
  void setTestedMovesText(std::string_view text);
  void setSpeedText(std::string_view text);
  void setBar(int position);  // 0..kBarFull
  void setLineDisplay(const core::CurrentLineText& line);
  void clearLineDisplay();
  // Clock "00:00:00", counters and line display emptied, bar at 0.
  void reset();

  // During a run only Stop can be pressed.
  void showRunning();
  // Between runs Start can be pressed where the mode runs jobs, and Continue
  // when there is something to go on with.
  void showIdle(bool canStart, bool canContinue);

  QString clockText() const;
  QString testedMovesText() const;
  QString speedText() const;
  int bar() const;
  QListWidget* lineDisplay(int box) const;
  QPushButton* startButton() const { return start_; }
  QPushButton* continueButton() const { return continue_; }
  QPushButton* stopButton() const { return stop_; }

 signals:
  void startPressed();
  void continuePressed();
  void stopPressed();

 private:
  QLineEdit* addField(QGridLayout* layout, int row, int column, const QString& label);
  QListWidget* createLineBox();

  QPushButton* start_;
  QPushButton* continue_;
  QPushButton* stop_;
  QLineEdit* clock_ = nullptr;
  QLineEdit* testedMoves_ = nullptr;
  QLineEdit* speed_ = nullptr;
  QProgressBar* bar_;
  QListWidget* lines_[2];
};

}  // namespace velkaro::ui
