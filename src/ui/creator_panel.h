#pragma once
// The panel under the "Creator" tab: "Mate in 2" or "Mate in 3", "All, in
// turn" or "At random", the four key restrictions, the buttons that open
// "Available squares" for each side and kind, the men to add, and the list of
// problems found. The list stays when the user visits another tab.

#include <QWidget>
#include <array>
#include <memory>
#include <vector>

#include "generator/list_writer.h"
#include "generator/records.h"
#include "generator/settings.h"

class QCheckBox;
class QLabel;
class QListWidget;
class QPushButton;
class QRadioButton;
class QSpinBox;

namespace velkaro::ui {

class CreatorPanel : public QWidget, private generator::ListSink {
  Q_OBJECT

 public:
  explicit CreatorPanel(QWidget* parent = nullptr);

  // A run's settings: the panel's choices around the fixed men of `setup`.
  generator::CreateSettings settings(const core::BoardSetup& setup) const;
  generator::AddedMen added(int side) const;

  // A fresh run empties the list; its rows are written in `language`.
  void beginRun(const core::BoardSetup& fixedMen, bool fresh, int language);
  void record(const generator::Record& record);
  // While a job runs, nothing here may change.
  void setLocked(bool locked);
  // The run has paused or ended: the problem its last find selected goes on
  // the board.
  void showSelection();

  QListWidget* problemList() const { return list_; }
  QLabel* keyLabel() const { return key_; }
  QPushButton* squaresButton(int side, generator::Kind kind) const;
  QSpinBox* addedField(int side, generator::Kind kind) const;
  QRadioButton* lengthButton(int moves) const { return moves == 3 ? mateIn3_ : mateIn2_; }
  QCheckBox* restrictionBox(int index) const { return restrictions_[static_cast<std::size_t>(index)]; }

 signals:
  // A listed problem was chosen: it goes on the board.
  void problemChosen(const core::BoardSetup& setup);
  // The men to add have changed (the piece count follows them).
  void addedMenChanged();

 private:
  QWidget* createChoices();
  QWidget* createSquareButtons();
  QWidget* createAddedMen();
  void chooseSquares(int index);
  void chooseRow(int row);

  void setPlaceholder(std::string_view text) override;
  void addRow(std::string_view text) override;
  void problemSelected(const generator::Problem& problem, std::string_view keyText) override;

  QRadioButton* mateIn2_ = nullptr;
  QRadioButton* mateIn3_ = nullptr;
  QRadioButton* inTurn_ = nullptr;
  QRadioButton* atRandom_ = nullptr;
  std::array<QCheckBox*, 4> restrictions_{};  // No duals, No capturing, No checking, No restrict
  std::array<QPushButton*, 2 * generator::kKinds> squareButtons_{};
  std::array<QSpinBox*, 10> added_{};  // White Q R B N P, Black Q R B N P
  QListWidget* list_ = nullptr;
  QLabel* key_ = nullptr;

  generator::SquareMaps available_{};
  std::unique_ptr<generator::ListWriter> writer_;
  core::BoardSetup fixedMen_;
  std::vector<generator::Problem> problems_;  // row k shows problems_[k]
  std::vector<std::string> keys_;
  bool placeholder_ = false;
};

}  // namespace velkaro::ui
