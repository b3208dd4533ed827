#pragma once
// velkaro --print-pdf OUT.pdf [--caption TEXT] [--solve] FILE: the print page
// of a file's first problem written to a PDF file, without a window. It needs
// a QApplication (the offscreen platform will do) but shows nothing.

#include <QString>

namespace velkaro::ui {

struct PrintPdfRequest {
  QString output;
  QString caption;
  bool solve = false;  // solve the problem fully first, as Start does with "Stop on first solution" off
  QString file;
};

// Exit statuses beside 0: the set-up refused by the solver.
inline constexpr int kPrintRefused = 2;
// The file has no problem, or the PDF could not be written.
inline constexpr int kPrintFailed = 1;

// Writes the page; what went wrong goes to stderr. Returns the exit status.
int printPdf(const PrintPdfRequest& request);

}  // namespace velkaro::ui
