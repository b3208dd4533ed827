// velkaro: the desktop program. With a problem file, or a FEN, EPD or PGN
// file, named on the command line, the window opens on that problem (the
// file's first position); without one, on the men of a game's start. With --print-pdf it writes the file's
// print page to a PDF instead and shows no window.

#include <QApplication>
#include <QCommandLineParser>
#include <cstdio>
#include <cstring>

#include "ui/main_window.h"
#include "ui/print_pdf_command.h"
#include "ui/problem_folder.h"

namespace {

constexpr int kExitUsage = 64;

// Writing a PDF needs no display: without a platform chosen, the offscreen
// one is taken, so that --print-pdf works on a machine without one.
void chooseOffscreenForPdf(int argc, char* argv[]) {
  for (int i = 1; i < argc; ++i) {
    if (std::strncmp(argv[i], "--print-pdf", 11) == 0 && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
      qputenv("QT_QPA_PLATFORM", "offscreen");
    }
  }
}

int usageError(const char* text) {
  std::fprintf(stderr, "velkaro: %s\nUsage: velkaro --print-pdf OUT.pdf [--caption TEXT] [--solve] FILE\n", text);
  return kExitUsage;
}

}  // namespace

int main(int argc, char* argv[]) {
  chooseOffscreenForPdf(argc, argv);
  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Velkaro"));
  QApplication::setApplicationVersion(QStringLiteral(VELKARO_VERSION));

  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Velkaro, a program for orthodox chess problems."));
  parser.addHelpOption();
  parser.addVersionOption();
  const QCommandLineOption printPdf(QStringLiteral("print-pdf"),
                                    QStringLiteral("Write the print page of the file's first problem to <pdf>."),
                                    QStringLiteral("pdf"));
  const QCommandLineOption caption(QStringLiteral("caption"), QStringLiteral("The caption of the printed page."),
                                   QStringLiteral("text"));
  const QCommandLineOption solve(QStringLiteral("solve"),
                                 QStringLiteral("Solve the problem fully before writing the PDF."));
  parser.addOptions({printPdf, caption, solve});
  parser.addPositionalArgument(QStringLiteral("file"),
                               QStringLiteral("A problem file (.kvz), or a FEN, EPD or PGN file whose first "
                                              "position is set up."),
                               QStringLiteral("[file]"));
  parser.process(app);

  const QStringList files = parser.positionalArguments();
  if (parser.isSet(printPdf)) {
    if (files.size() != 1) return usageError("--print-pdf needs exactly one problem file");
    return velkaro::ui::printPdf({parser.value(printPdf), parser.value(caption), parser.isSet(solve), files.first()});
  }
  if (parser.isSet(caption) || parser.isSet(solve)) return usageError("--caption and --solve go with --print-pdf");

  velkaro::ui::MainWindow window(velkaro::ui::chooseProblemFolder());
  if (files.isEmpty()) {
    window.setUpInitialPosition();
  } else if (files.first().endsWith(QStringLiteral(".kvz"), Qt::CaseInsensitive)) {
    window.openProblemFile(files.first());
  } else if (!window.openFirstPosition(files.first())) {
    qWarning("velkaro: no FEN position in %s", qPrintable(files.first()));
  }
  window.show();
  return QApplication::exec();
}
