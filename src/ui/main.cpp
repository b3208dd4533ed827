// velkaro: the desktop program. With a FEN, EPD or PGN file named on the
// command line, the window opens on the first position of that file; without
// one, on the men of a game's start.

#include <QApplication>
#include <QCommandLineParser>

#include "ui/main_window.h"
#include "ui/problem_folder.h"

int main(int argc, char* argv[]) {
  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Velkaro"));
  QApplication::setApplicationVersion(QStringLiteral(VELKARO_VERSION));

  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Velkaro, a program for orthodox chess problems."));
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addPositionalArgument(QStringLiteral("file"),
                               QStringLiteral("A FEN, EPD or PGN file; its first position is set up."),
                               QStringLiteral("[file]"));
  parser.process(app);

  velkaro::ui::MainWindow window(velkaro::ui::chooseProblemFolder());
  const QStringList files = parser.positionalArguments();
  if (files.isEmpty()) {
    window.setUpInitialPosition();
  } else if (!window.openFirstPosition(files.first())) {
    qWarning("velkaro: no FEN position in %s", qPrintable(files.first()));
  }
  window.show();
  return QApplication::exec();
}
