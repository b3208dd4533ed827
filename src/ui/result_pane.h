#pragma once
// The result pane: the tree of result lines (a key line with its threat and
// variations as children), shown from the window's result model.

#include <QTreeView>

namespace velkaro::ui {

class ResultModel;

class ResultPane : public QTreeView {
  Q_OBJECT

 public:
  ResultPane(ResultModel& model, QWidget* parent = nullptr);

  ResultModel& results() const { return model_; }

 signals:
  // The platform's copy keys: the selected lines go to the clipboard.
  void copyRequested();

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  ResultModel& model_;
};

}  // namespace velkaro::ui
