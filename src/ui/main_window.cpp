// The main window's layout and the board editor: placing and removing men,
// the piece count, the en-passant choices that follow the board, the board
// transformations and the tab strip.

#include "ui/main_window.h"

#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollArea>
#include <QSplitter>
#include <QStackedWidget>
#include <QTabBar>
#include <QVBoxLayout>

#include "ui/board_view.h"
#include "ui/creator_panel.h"
#include "ui/piece_palette.h"
#include "ui/positions_panel.h"
#include "ui/progress_panel.h"
#include "ui/result_pane.h"
#include "ui/solver_panel.h"

namespace velkaro::ui {
namespace {

using core::piece::Bishop;
using core::piece::King;
using core::piece::Knight;
using core::piece::Pawn;
using core::piece::Queen;
using core::piece::Rook;

constexpr int kBackRank[8] = {Rook, Knight, Bishop, Queen, King, Bishop, Knight, Rook};

Board gameStart() {
  Board board{};
  for (int file = 0; file < 8; ++file) {
    board[static_cast<std::size_t>(file)] = -kBackRank[file];
    board[static_cast<std::size_t>(8 + file)] = -Pawn;
    board[static_cast<std::size_t>(48 + file)] = Pawn;
    board[static_cast<std::size_t>(56 + file)] = kBackRank[file];
  }
  return board;
}

}  // namespace

MainWindow::MainWindow(const QString& problemFolder, QWidget* parent)
    : QMainWindow(parent), problemFolder_(problemFolder), importFolder_(QDir::currentPath()) {
  setWindowTitle(QStringLiteral("Velkaro"));
  setCentralWidget(createCentralArea());
  connect(&document_, &ProblemDocument::setupChanged, this, &MainWindow::setupChanged);
  createRunner();
  createActions();
  createMenus();
  createToolBar();
  loadSettings();
  showBoard();
  restoreWindowState();
}

MainWindow::~MainWindow() = default;

// The board side and the panel side share the width as the user drags their
// splitter; neither can be squeezed away.
QWidget* MainWindow::createCentralArea() {
  boardSplitter_ = new QSplitter(Qt::Horizontal, this);
  boardSplitter_->addWidget(createBoardArea());
  boardSplitter_->addWidget(createModeArea());
  boardSplitter_->setStretchFactor(0, 5);
  boardSplitter_->setStretchFactor(1, 4);
  boardSplitter_->setChildrenCollapsible(false);
  return boardSplitter_;
}

QWidget* MainWindow::createBoardArea() {
  auto* area = new QWidget(this);
  auto* layout = new QVBoxLayout(area);
  layout->setContentsMargins(0, 0, 0, 0);
  boardView_ = new BoardView(area);
  boardView_->setShowsCoordinates(true);
  layout->addWidget(boardView_, 1);

  auto* paletteRow = new QHBoxLayout;
  palette_ = new PiecePalette(area);
  pieceCount_ = new QLabel(area);
  // Room for "(16+16)", so that the count never moves the layout.
  pieceCount_->setMinimumWidth(pieceCount_->fontMetrics().horizontalAdvance(QStringLiteral("(88+88)")));
  pieceCount_->setAlignment(Qt::AlignCenter);
  paletteRow->addStretch();
  paletteRow->addWidget(palette_);
  paletteRow->addSpacing(12);
  paletteRow->addWidget(pieceCount_);
  paletteRow->addStretch();
  layout->addLayout(paletteRow);

  connect(boardView_, &BoardView::squareSizeChanged, palette_,
          [this](int side) { palette_->setButtonSide(qBound(28, side * 3 / 4, 72)); });
  connect(boardView_, &BoardView::squareClicked, this, &MainWindow::clickSquare);
  connect(boardView_, &BoardView::manDragged, this, &MainWindow::dragMan);
  connect(palette_, &PiecePalette::pieceDropped, this, &MainWindow::dropPiece);
  return area;
}

// Solver and Variants share the solver panel; Variants adds its caption. The
// result tree sits below a splitter, so it can take most of the height.
QWidget* MainWindow::createModeArea() {
  resultSplitter_ = new QSplitter(Qt::Vertical, this);
  resultSplitter_->setChildrenCollapsible(false);
  auto* area = new QWidget(resultSplitter_);
  auto* layout = new QVBoxLayout(area);
  layout->setContentsMargins(0, 0, 0, 0);
  tabs_ = new QTabBar(area);
  for (const char* name : {"Solver", "Creator", "Positions", "Variants"}) tabs_->addTab(QString::fromLatin1(name));
  layout->addWidget(tabs_);
  modeCaption_ = new QLabel(QStringLiteral("Counting number of possible continuations"), area);
  QFont captionFont = modeCaption_->font();
  captionFont.setBold(true);
  modeCaption_->setFont(captionFont);
  modeCaption_->hide();
  layout->addWidget(modeCaption_);

  panels_ = new QStackedWidget(area);
  solverPanel_ = new SolverPanel(document_, panels_);
  panels_->addWidget(solverPanel_);
  // Dragged smaller than they are, the Creator and Positions panels scroll,
  // as the Solver panel does, so the result tree can take the height.
  const auto scrolling = [this](QWidget* panel) {
    auto* area = new QScrollArea(panels_);
    area->setWidget(panel);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    return area;
  };
  creatorPanel_ = new CreatorPanel;
  panels_->addWidget(scrolling(creatorPanel_));
  positionsPanel_ = new PositionsPanel;
  panels_->addWidget(scrolling(positionsPanel_));
  connect(creatorPanel_, &CreatorPanel::problemChosen, &document_, &ProblemDocument::setSetup);
  connect(creatorPanel_, &CreatorPanel::addedMenChanged, this, &MainWindow::showBoard);
  connect(positionsPanel_, &PositionsPanel::placementChosen, this, &MainWindow::showPlacement);
  layout->addWidget(panels_);
  progressPanel_ = new ProgressPanel(area);
  layout->addWidget(progressPanel_);
  layout->addStretch();
  resultSplitter_->addWidget(area);
  resultPane_ = new ResultPane(resultModel_, resultSplitter_);
  resultSplitter_->addWidget(resultPane_);
  resultSplitter_->setStretchFactor(1, 1);

  connect(tabs_, &QTabBar::currentChanged, this, &MainWindow::changeMode);
  connect(solverPanel_, &SolverPanel::initialPositionRequested, this, &MainWindow::setUpInitialPosition);
  connect(solverPanel_, &SolverPanel::clearRequested, this, &MainWindow::clearBoard);
  return resultSplitter_;
}

// A click places the palette's man; a click with the man already standing
// there, or a right click, takes it off.
void MainWindow::clickSquare(int square, Qt::MouseButton button) {
  const int selected = palette_->selectedPiece();
  if (button == Qt::RightButton) {
    editSquare(square, 0);
  } else if (button == Qt::LeftButton) {
    editSquare(square, document_.board()[static_cast<std::size_t>(square)] == selected ? 0 : selected);
  }
}

// A man let go off the board leaves it.
void MainWindow::dragMan(int from, int to) {
  if (from == to) return;
  Board board = document_.board();
  const int code = board[static_cast<std::size_t>(from)];
  board[static_cast<std::size_t>(from)] = 0;
  if (to >= 0) board[static_cast<std::size_t>(to)] = code;
  document_.setBoard(board);
}

void MainWindow::dropPiece(int code, QPoint globalPosition) {
  const int square = boardView_->squareAtGlobal(globalPosition);
  if (square >= 0) editSquare(square, code);
}

void MainWindow::editSquare(int square, int code) { document_.setSquare(square, code); }

// The board's squares (only the changed ones are repainted) and the piece
// count; on the Creator tab the count takes in a king for a side that has
// none on the board and the men to add.
void MainWindow::showBoard() {
  boardView_->setBoard(document_.board());
  int white = 0;
  int black = 0;
  bool whiteKing = false;
  bool blackKing = false;
  for (int code : document_.board()) {
    white += code > 0;
    black += code < 0;
    whiteKing = whiteKing || code == core::piece::King;
    blackKing = blackKing || code == -core::piece::King;
  }
  if (mode_ == Mode::Creator) {
    white += (whiteKing ? 0 : 1) + creatorPanel_->added(core::White).total();
    black += (blackKing ? 0 : 1) + creatorPanel_->added(core::Black).total();
  }
  pieceCount_->setText(QStringLiteral("(%1+%2)").arg(white).arg(black));
}

// A listed placement: its men on the board, its unattacked empty squares
// marked (until the board changes).
void MainWindow::showPlacement(const std::array<std::int8_t, 64>& men, std::uint64_t unattacked) {
  core::BoardSetup setup;
  setup.sideToMove = document_.setup().sideToMove;
  for (std::size_t square = 0; square < 64; ++square) setup.board[square] = men[square];
  document_.setSetup(setup);
  boardView_->setMarkedSquares(unattacked);
}

// Solver and Variants results and a saved run of theirs belong to the set-up
// as it was: they are cleared as a transformation clears them, and Continue
// is given up.
void MainWindow::setupChanged() {
  boardView_->setMarkedSquares(0);
  showBoard();
  recordSetupChange();
  clearResults();
  // A Creator or Positions run shows its finds on the board: its own
  // figures stay in the panel.
  if (mode_ == Mode::Solver || mode_ == Mode::Variants) progressPanel_->reset();
  runner_->forgetPositionRun();
  updateRunButtons();
}

void MainWindow::setUpInitialPosition() {
  core::BoardSetup start;
  start.board = gameStart();
  start.whiteLongCastle = start.whiteShortCastle = true;
  start.blackLongCastle = start.blackShortCastle = true;
  document_.setSetup(start);
}

void MainWindow::clearBoard() {
  core::BoardSetup empty;
  empty.sideToMove = document_.setup().sideToMove;
  document_.setSetup(empty);
}

// Side to move, castling and the chosen last move stay as they are; the
// last move is dropped only when the new board no longer allows it.
void MainWindow::transform(int command) { document_.setBoard(transformBoard(document_.board(), command)); }

void MainWindow::changeMode(int tab) {
  mode_ = static_cast<Mode>(tab);
  const bool counting = mode_ == Mode::Variants;
  panels_->setCurrentIndex(counting ? 0 : tab);
  modeCaption_->setVisible(counting);
  solverPanel_->setCountingMode(counting);
  // The Creator and Positions panels hold their own lists.
  resultPane_->setVisible(mode_ == Mode::Solver || counting);
  showBoard();
  updateRunButtons();
}

}  // namespace velkaro::ui
