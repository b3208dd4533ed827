// A click on a square marks it or takes the mark away.

#include "ui/available_squares_dialog.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/board_view.h"

namespace velkaro::ui {

AvailableSquaresDialog::AvailableSquaresDialog(const QString& caption, std::uint64_t squares, QWidget* parent)
    : QDialog(parent),
      board_(new BoardView(this)),
      all_(new QPushButton(QStringLiteral("All"), this)),
      clear_(new QPushButton(QStringLiteral("Clear"), this)) {
  setWindowTitle(QStringLiteral("Available squares"));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(new QLabel(caption, this));
  board_->setShowsCoordinates(true);
  board_->setMarkedSquares(squares);
  board_->setMinimumSize(board_->sizeHint() * 3 / 4);
  layout->addWidget(board_, 1);
  layout->addWidget(new QLabel(QStringLiteral("Marqued available squares"), this));
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(all_);
  buttons->addWidget(clear_);
  buttons->addStretch();
  auto* box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  buttons->addWidget(box);
  layout->addLayout(buttons);
  connect(board_, &BoardView::squareClicked, this,
          [this](int square) { board_->setMarkedSquares(board_->markedSquares() ^ (std::uint64_t{1} << square)); });
  connect(all_, &QPushButton::clicked, this, [this] { board_->setMarkedSquares(~std::uint64_t{0}); });
  connect(clear_, &QPushButton::clicked, this, [this] { board_->setMarkedSquares(0); });
  connect(box, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

std::uint64_t AvailableSquaresDialog::squares() const { return board_->markedSquares(); }

}  // namespace velkaro::ui
