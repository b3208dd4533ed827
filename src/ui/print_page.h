#pragma once
// The printed page of a problem: the board, the piece count, the stipulation,
// a caption, the solution and the time and examined moves of the last search,
// laid out once as a face of fixed pixel measures. The print preview, the
// printer and the PDF writer all paint this one face, only at other scales.

#include <QRect>
#include <QSize>
#include <QString>
#include <array>
#include <memory>
#include <string>

#include "core/stipulation.h"
#include "ui/board_transform.h"

class QPainter;
class QPagedPaintDevice;

namespace velkaro::ui {

class BoardView;
class ProblemDocument;

// What the page shows, taken from the problem and the progress panel.
struct PrintContent {
  Board board{};
  core::Stipulation stipulation;
  std::string solution;  // the plain-text solution buffer, "\n" after each line
  QString clockText;     // as the progress panel shows them
  QString examinedMovesText;
  QString caption;
};

PrintContent printContentOf(const ProblemDocument& document, const QString& clockText,
                            const QString& examinedMovesText);

class PrintPage {
 public:
  static constexpr int kFaceWidth = 416;
  static constexpr int kBoardSide = 314;
  static constexpr int kLineHeight = 14;  // one solution line
  static constexpr int kGrowth = 84;      // below the board, beside the solution's lines
  static constexpr int kCaptionLength = 50;
  static constexpr int kSolutionLimit = 64'000;  // characters of the buffer that are looked at

  // The items of the face; the last five come and go with their check box.
  enum Item { Frame, Caption, BoardPicture, PieceCount, Stipulation, Solution, TimeLabel, Time, MovesLabel, Moves };
  static constexpr int kItemCount = Moves + 1;
  // The choices of the preview's check boxes, each showing or hiding items.
  enum Part { PieceCountPart, AskPart, SolutionPart, TimePart };
  static constexpr int kPartCount = TimePart + 1;

  explicit PrintPage(const PrintContent& content);
  ~PrintPage();
  PrintPage(const PrintPage&) = delete;
  PrintPage& operator=(const PrintPage&) = delete;

  // At most kCaptionLength characters are kept.
  void setCaption(const QString& caption);
  void setShown(Part part, bool shown);
  bool shown(Part part) const { return shown_[part]; }

  int solutionLines() const { return solutionLines_; }
  QSize faceSize() const;
  QRect itemRect(Item item) const;
  QString itemText(Item item) const;
  bool itemShown(Item item) const;

  // Paints the face in its own pixels from (0, 0); the painter's transform
  // says how large.
  void paint(QPainter& painter) const;
  // One page: the face, each pixel `scale` by `scale` dots where scale is the
  // page's width in dots / 600, placed 20 × scale dots from the top-left
  // corner of the printable area; shrunk to the page's height where it would
  // run off it. False when the device would not start the document.
  bool print(QPagedPaintDevice& device) const;
  // The same page as an A4 PDF file.
  bool writePdf(const QString& path) const;

 private:
  void paintBoard(QPainter& painter) const;
  void paintSolution(QPainter& painter) const;

  PrintContent content_;
  QString solution_;
  int solutionLines_ = 0;
  std::array<bool, kPartCount> shown_{true, true, true, true};
  // The window's own board widget, never shown, draws the board picture.
  std::unique_ptr<BoardView> boardView_;
};

}  // namespace velkaro::ui
