#pragma once
// The panel under the "Positions" tab: the goal under "Search for
// positions:", the six "Number of pieces:" fields, the list of placements
// found and the captions beside it. Choosing a row shows its placement on the
// board with the unattacked empty squares marked.

#include <QWidget>
#include <array>
#include <cstdint>

#include "placement/placement_job.h"
#include "placement/report_writer.h"

class QLabel;
class QLineEdit;
class QListWidget;
class QRadioButton;

namespace velkaro::ui {

class PositionsPanel : public QWidget, private placement::PositionsSink {
  Q_OBJECT

 public:
  explicit PositionsPanel(QWidget* parent = nullptr);

  // A run's settings; a count that is not a number counts as 0.
  placement::PlaceSettings settings(bool stopOnFirstSolution) const;
  void record(const placement::Record& record) { writer_.record(record); }
  // While a job runs the goal and the counts may not change.
  void setLocked(bool locked);

  QRadioButton* goalButton(placement::Goal goal) const;
  QLineEdit* countField(int kind) const { return counts_[static_cast<std::size_t>(kind)]; }
  QListWidget* placementList() const { return list_; }
  QLabel* captionValue(placement::Caption caption) const;

 signals:
  // A listed placement was chosen: its men and its unattacked empty squares.
  void placementChosen(const placement::Board& board, std::uint64_t unattacked);

 private:
  void clear() override;
  void addRow(std::string_view text) override;
  void removeLastRow() override;
  void showCaption(placement::Caption caption, std::string_view value) override;
  void selectRow(int row) override;
  void chooseRow(int row);

  std::array<QRadioButton*, 3> goals_{};
  std::array<QLineEdit*, 6> counts_{};  // kings, queens, rooks, bishops, knights, pawns
  QListWidget* list_ = nullptr;
  std::array<QLabel*, placement::kCaptionCount> captionLabels_{};
  std::array<QLabel*, placement::kCaptionCount> captionValues_{};
  placement::ReportWriter writer_{*this};
};

}  // namespace velkaro::ui
