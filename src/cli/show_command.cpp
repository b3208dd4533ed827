// velkaro-cli show: what a problem file holds, read as the window opens it:
// the position as a FEN line, the stipulation, then the solution text.

#include <cstdio>
#include <memory>
#include <string>

#include "cli/cli.h"
#include "formats/fen.h"
#include "formats/problem_file.h"

namespace velkaro::cli {

namespace {

int runShow(const std::string& file) {
  formats::ProblemData problem;
  if (!formats::OpenProblem(file, problem)) {
    std::fprintf(stderr, "velkaro-cli: cannot open %s\n", file.c_str());
    return kExitFileError;
  }
  const formats::FenText fen = formats::PositionToFen(problem.setup, problem.stipulation);
  std::printf("%.*s\n%s\n", static_cast<int>(fen.fen().size()), fen.fen().data(), problem.stipulation.text().c_str());
  std::fwrite(problem.solutionText.data(), 1, problem.solutionText.size(), stdout);
  return 0;
}

}  // namespace

void addShowCommand(CLI::App& app, int& status) {
  auto file = std::make_shared<std::string>();
  CLI::App* command = app.add_subcommand("show", "print the position, stipulation and solution of a problem file");
  command->add_option("file", *file, "the problem file, FILE.kvz")->required();
  command->callback([file, &status] { status = runShow(*file); });
}

}  // namespace velkaro::cli
