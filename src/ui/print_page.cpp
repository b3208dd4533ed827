// The face is drawn with vector operations only: text as text, the men as
// the board widget's outline paths, squares as filled rectangles. On a PDF
// writer or a printer they stay sharp at any scale, and the preview's screen
// pixels are the same drawing at scale 1.

#include "ui/print_page.h"

#include <QFile>
#include <QFont>
#include <QFontMetricsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <algorithm>

#include "ui/board_view.h"
#include "ui/problem_document.h"

namespace velkaro::ui {
namespace {

// The face's measures, in its own pixels.
constexpr int kBoardLeft = 46;
constexpr int kBoardTop = 42;
constexpr int kBaseHeight = 384;  // the face before it grows with the solution
constexpr int kSolutionTop = kBaseHeight + 8;
constexpr int kRightMargin = 6;
constexpr int kValueIndent = 110;  // the time and the examined moves after their labels
constexpr int kRowGap = 4;
constexpr int kTabStep = 28;
// The page in dots: the face is placed 20 × scale from the corner, where
// scale is the page's width / 600.
constexpr int kDotsPerScale = 600;
constexpr int kFaceOffset = 20;
constexpr int kPdfResolution = 1200;
constexpr qreal kPdfMarginMm = 10;  // what a printer's printable area leaves

const QColor kInk(0x10, 0x10, 0x10);
const QColor kFrameColour(0xa0, 0xa0, 0xa0);

// Hinting would fit glyphs to the screen's pixel grid and give the preview
// other line widths than the page.
QFont faceFont(const char* family, int pixelSize, bool bold = false) {
  QFont font(QString::fromLatin1(family));
  font.setPixelSize(pixelSize);
  font.setBold(bold);
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

// A long caption is set smaller rather than cut.
QFont captionFont(const QString& caption, int width) {
  QFont font = faceFont("DejaVu Sans", 14, true);
  while (font.pixelSize() > 8 && QFontMetricsF(font).horizontalAdvance(caption) > width) {
    font.setPixelSize(font.pixelSize() - 1);
  }
  return font;
}

}  // namespace

PrintContent printContentOf(const ProblemDocument& document, const QString& clockText,
                            const QString& examinedMovesText) {
  PrintContent content;
  content.board = document.board();
  content.stipulation = document.stipulation();
  content.solution = document.solutionText();
  content.clockText = clockText;
  content.examinedMovesText = examinedMovesText;
  return content;
}

PrintPage::PrintPage(const PrintContent& content) : content_(content), boardView_(std::make_unique<BoardView>()) {
  const std::string& text = content_.solution;
  const std::size_t looked = std::min<std::size_t>(text.size(), kSolutionLimit);
  solution_ = QString::fromUtf8(text.data(), static_cast<qsizetype>(looked));
  solutionLines_ = static_cast<int>(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(looked), '\n'));
  setCaption(content_.caption);
  boardView_->setShowsCoordinates(true);
  boardView_->resize(kBoardSide, kBoardSide);
  boardView_->setBoard(content_.board);
}

PrintPage::~PrintPage() = default;

void PrintPage::setCaption(const QString& caption) { content_.caption = caption.left(kCaptionLength); }

void PrintPage::setShown(Part part, bool shown) { shown_[part] = shown; }

QSize PrintPage::faceSize() const { return {kFaceWidth, kBaseHeight + kGrowth + kLineHeight * solutionLines_}; }

// The stipulation, the solution and the rows below it begin, and the piece
// count ends, where the board's squares do.
QRect PrintPage::itemRect(Item item) const {
  const QRect squares = boardView_->squareRect(0).united(boardView_->squareRect(63)).translated(kBoardLeft, kBoardTop);
  const int underBoard = kBoardTop + kBoardSide + kRowGap;
  const int textLeft = squares.left();
  const int textWidth = kFaceWidth - kRightMargin - textLeft;
  const int timeTop = kSolutionTop + kLineHeight * (solutionLines_ + 1);
  switch (item) {
    case Frame:
      return QRect(QPoint(0, 0), faceSize()).adjusted(2, 2, -2, -2);
    case Caption:
      return {12, 8, kFaceWidth - 24, 28};
    case BoardPicture:
      return {kBoardLeft, kBoardTop, kBoardSide, kBoardSide};
    case PieceCount:
      return {squares.right() - 159, underBoard, 160, 20};
    case Stipulation:
      return {textLeft, underBoard, 160, 20};
    case Solution:
      return {textLeft, kSolutionTop, textWidth, kLineHeight * solutionLines_};
    case TimeLabel:
      return {textLeft, timeTop, kValueIndent, kLineHeight};
    case Time:
      return {textLeft + kValueIndent, timeTop, textWidth - kValueIndent, kLineHeight};
    case MovesLabel:
      return itemRect(TimeLabel).translated(0, kLineHeight + kRowGap);
    case Moves:
      return itemRect(Time).translated(0, kLineHeight + kRowGap);
  }
  return {};
}

QString PrintPage::itemText(Item item) const {
  int white = 0;
  int black = 0;
  switch (item) {
    case Caption:
      return content_.caption;
    case PieceCount:
      for (int code : content_.board) {
        white += code > 0;
        black += code < 0;
      }
      return QStringLiteral("( %1 + %2 )").arg(white).arg(black);
    case Stipulation:
      return QString::fromStdString(content_.stipulation.text());
    case Solution:
      return solution_;
    case TimeLabel:
      return QStringLiteral("Time:");
    case Time:
      return content_.clockText;
    case MovesLabel:
      return QStringLiteral("Examined moves:");
    case Moves:
      return content_.examinedMovesText;
    case Frame:
    case BoardPicture:
      break;
  }
  return {};
}

bool PrintPage::itemShown(Item item) const {
  switch (item) {
    case PieceCount:
      return shown_[PieceCountPart];
    case Stipulation:
      return shown_[AskPart];
    case Solution:
      return shown_[SolutionPart];
    case TimeLabel:
    case Time:
    case MovesLabel:
    case Moves:
      return shown_[TimePart];
    case Frame:
    case Caption:
    case BoardPicture:
      break;
  }
  return true;
}

void PrintPage::paint(QPainter& painter) const {
  painter.save();
  painter.setPen(QPen(kFrameColour, 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(QRectF(itemRect(Frame)).adjusted(0.5, 0.5, -0.5, -0.5));
  painter.setPen(kInk);
  const QRect caption = itemRect(Caption);
  painter.setFont(captionFont(content_.caption, caption.width()));
  painter.drawText(caption, Qt::AlignCenter, content_.caption);
  paintBoard(painter);

  struct Line {
    Item item;
    QFont font;
    Qt::Alignment alignment;
  };
  const Line lines[] = {
      {PieceCount, faceFont("DejaVu Sans", 13), Qt::AlignRight | Qt::AlignVCenter},
      {Stipulation, faceFont("DejaVu Sans", 14, true), Qt::AlignLeft | Qt::AlignVCenter},
      {TimeLabel, faceFont("DejaVu Sans", 11), Qt::AlignLeft | Qt::AlignVCenter},
      {Time, faceFont("DejaVu Sans", 11), Qt::AlignLeft | Qt::AlignVCenter},
      {MovesLabel, faceFont("DejaVu Sans", 11), Qt::AlignLeft | Qt::AlignVCenter},
      {Moves, faceFont("DejaVu Sans", 11), Qt::AlignLeft | Qt::AlignVCenter},
  };
  for (const Line& line : lines) {
    if (!itemShown(line.item)) continue;
    painter.setFont(line.font);
    painter.drawText(itemRect(line.item), static_cast<int>(line.alignment), itemText(line.item));
  }
  if (itemShown(Solution)) paintSolution(painter);
  painter.restore();
}

// The board widget paints itself through this painter, so its squares and
// men keep their vector form; a thin line sets the squares off the paper.
void PrintPage::paintBoard(QPainter& painter) const {
  const QRect box = itemRect(BoardPicture);
  painter.save();
  painter.translate(box.topLeft());
  boardView_->render(&painter, QPoint(), QRegion(), QWidget::RenderFlags());
  const QRect squares = boardView_->squareRect(0).united(boardView_->squareRect(63));
  painter.setPen(QPen(kInk, 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(QRectF(squares).adjusted(-0.5, -0.5, 0.5, 0.5));
  painter.restore();
}

// One row of kLineHeight per line; each leading tab (a variation's) indents
// it by a fixed step, the same on every device. Characters after the last
// line feed have no row of their own and are not shown.
void PrintPage::paintSolution(QPainter& painter) const {
  const QRect box = itemRect(Solution);
  painter.setFont(faceFont("DejaVu Sans Mono", 11));
  const QStringList rows = solution_.split(QLatin1Char('\n'));
  for (int row = 0; row < solutionLines_; ++row) {
    const QString& line = rows[row];
    qsizetype tabs = 0;
    while (tabs < line.size() && line[tabs] == QLatin1Char('\t')) ++tabs;
    const int indent = kTabStep * static_cast<int>(tabs);
    const QRect rect(box.left() + indent, box.top() + row * kLineHeight, box.width() - indent, kLineHeight);
    painter.drawText(rect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, line.mid(tabs));
  }
}

bool PrintPage::print(QPagedPaintDevice& device) const {
  QPainter painter;
  if (!painter.begin(&device)) return false;
  const int scale = std::max(1, device.width() / kDotsPerScale);
  const qreal offset = kFaceOffset * scale;
  const qreal room = device.height() - offset;
  const qreal factor = std::min<qreal>(scale, room / faceSize().height());
  painter.translate(offset, offset);
  painter.scale(factor, factor);
  paint(painter);
  return painter.end();
}

bool PrintPage::writePdf(const QString& path) const {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly)) return false;
  QPdfWriter writer(&file);
  writer.setTitle(QStringLiteral("Velkaro"));
  writer.setCreator(QStringLiteral("Velkaro"));
  writer.setResolution(kPdfResolution);
  writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                                   QMarginsF(kPdfMarginMm, kPdfMarginMm, kPdfMarginMm, kPdfMarginMm),
                                   QPageLayout::Millimeter));
  return print(writer);
}

}  // namespace velkaro::ui
