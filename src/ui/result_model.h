#pragma once
// The result tree's lines as a model: keys, headers and messages at the root,
// variations as children of the root line above them, and the placeholder
// (" searching ...") that the next result replaces. A run may write millions
// of lines, so the text lives in one buffer and the rows are offsets into it,
// and lines arrive in batches that the views learn of in one step each.

#include <QAbstractItemModel>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "solver/report_writer.h"

namespace velkaro::ui {

class ResultModel : public QAbstractItemModel, public solver::LineSink {
  Q_OBJECT

 public:
  explicit ResultModel(QObject* parent = nullptr);

  void clear();

  // What a batch of lines adds to the plain-text buffer, and whether it
  // completed a result (to scroll to) and asked for a beep.
  struct Batch {
    std::string text;
    bool resultShown = false;
    bool beep = false;
  };
  // The lines written since the last call reach the views, in one step.
  Batch showBatch();

  // solver::LineSink: lines of the next batch.
  void setPlaceholder(std::string_view text) override;
  void addRootLine(std::string_view text) override;
  void addChildLine(std::string_view text) override;
  void appendText(std::string_view text) override { batch_.text.append(text); }
  void resultShown(bool beep) override {
    batch_.resultShown = true;
    batch_.beep = batch_.beep || beep;
  }

  // Every line in tree order, children after their root line with a tab
  // before them; the placeholder last when it stands.
  std::vector<std::string> lines() const;

  QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  int columnCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  struct Text {
    std::uint64_t offset;
    std::uint32_t length;
  };
  struct RootRow {
    Text text;
    std::uint32_t firstChild;
    std::uint32_t childCount;
  };
  // What the views have been told of: rows beyond these are still in the
  // batch.
  struct Shown {
    std::size_t roots = 0;
    std::uint32_t lastRootChildren = 0;
    bool placeholder = false;
  };

  Text store(std::string_view text);
  QString textOf(const Text& text) const;
  std::size_t shownRootRows() const { return shown_.roots + (shown_.placeholder ? 1 : 0); }
  void insertChildrenOfLastShownRoot();

  std::string textBuffer_;
  std::vector<RootRow> roots_;
  std::vector<Text> children_;
  std::string placeholder_;  // empty: none
  Shown shown_;
  Batch batch_;
};

}  // namespace velkaro::ui
