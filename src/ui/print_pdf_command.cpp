// The page is made exactly as the window makes it: the problem goes into a
// problem document, a solve writes its records and text there as a run from
// the window does, and the print page is built from the document. Solving
// runs the solver job straight through on this thread: with "Stop on first
// solution" off it returns only when everything is found.

#include "ui/print_pdf_command.h"

#include <QFile>
#include <QFileInfo>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "formats/fen.h"
#include "formats/problem_file.h"
#include "jobs/progress_text.h"
#include "solver/report_writer.h"
#include "solver/solver_job.h"
#include "ui/print_page.h"
#include "ui/problem_document.h"

namespace velkaro::ui {
namespace {

void complain(const QString& text) { std::fprintf(stderr, "velkaro: %s\n", qPrintable(text)); }

class StderrMessages : public core::MessageSink {
 public:
  void showMessage(std::string_view, std::string_view text) override {
    std::fprintf(stderr, "%.*s\n", static_cast<int>(text.size()), text.data());
  }
};

class CollectedRecords : public solver::RecordSink {
 public:
  void record(const solver::Record& record) override { records.push_back(record); }
  std::vector<solver::Record> records;
};

// The first line of a FEN, EPD or PGN file that holds a valid position, with
// the stipulation that goes with it.
bool readFirstPosition(const QString& path, ProblemDocument& document) {
  const std::vector<std::string> lines = formats::readImportLines(QFile::encodeName(path).toStdString());
  const std::string fileType = formats::fileTypeOf(QFile::encodeName(QFileInfo(path).fileName()).toStdString());
  formats::FenImport import;
  for (int row = 0; row < static_cast<int>(lines.size()); ++row) {
    if (!import.selectLine(lines, row, fileType)) continue;
    const formats::ImportResult& result = import.result();
    document.setSetup(formats::setupFromImport(result));
    document.setStipulation({result.helpmate != 0, result.selfmate != 0, result.moves});
    return true;
  }
  return false;
}

// Every kind of problem file is read here; the message says what failed.
std::optional<QString> loadProblem(const QString& path, ProblemDocument& document) {
  if (!QFileInfo(path).isReadable()) return QStringLiteral("%1 cannot be read").arg(path);
  const QString suffix = QFileInfo(path).suffix().toLower();
  if (suffix == QLatin1String("kvz")) {
    formats::ProblemData problem = document.problemData();
    if (!formats::OpenProblem(std::filesystem::path(path.toStdU16String()), problem)) {
      return QStringLiteral("%1 cannot be read").arg(path);
    }
    document.takeProblem(problem);
    return std::nullopt;
  }
  if (!readFirstPosition(path, document)) return QStringLiteral("no FEN position in %1").arg(path);
  return std::nullopt;
}

struct PanelTexts {
  QString clock = QStringLiteral("00:00:00");  // a panel before any run
  QString examinedMoves;
};

// Every key, as a run from the window with "Stop on first solution" off.
std::optional<PanelTexts> solveFully(ProblemDocument& document) {
  const core::Stipulation& stipulation = document.stipulation();
  if (stipulation.moves > core::kMaxMoves) {
    complain(QStringLiteral("%1 is longer than Velkaro can solve (%2 moves at most)")
                 .arg(QString::fromStdString(stipulation.text()))
                 .arg(core::kMaxMoves));
    return std::nullopt;
  }
  solver::SolveSettings settings;
  settings.setup = document.setup();
  settings.stipulation = stipulation;
  settings.stopOnFirstSolution = false;
  jobs::ProgressSink progress;
  CollectedRecords collected;
  StderrMessages messages;
  const auto job = std::make_unique<solver::SolverJob>(progress, collected, messages);  // the ply stack is large
  if (job->start(settings) == jobs::RunEnd::Refused) return std::nullopt;
  document.addSolution(collected.records, solver::solutionText(collected.records, core::Notation::kEnglish));
  return PanelTexts{QString::fromStdString(jobs::clockText(job->elapsedMs())),
                    QString::fromStdString(jobs::testedMovesText(job->testedMoves()))};
}

}  // namespace

int printPdf(const PrintPdfRequest& request) {
  ProblemDocument document;
  if (const std::optional<QString> failure = loadProblem(request.file, document)) {
    complain(*failure);
    return kPrintFailed;
  }
  PanelTexts panel;
  if (request.solve) {
    const std::optional<PanelTexts> solved = solveFully(document);
    if (!solved) return kPrintRefused;
    panel = *solved;
  }
  PrintContent content = printContentOf(document, panel.clock, panel.examinedMoves);
  content.caption = request.caption;
  if (!PrintPage(content).writePdf(request.output)) {
    complain(QStringLiteral("%1 could not be written").arg(request.output));
    return kPrintFailed;
  }
  return 0;
}

}  // namespace velkaro::ui
