// velkaro-cli place: the placements of the given white men that the goal
// keeps, listed as the Positions panel lists them (without pausing), then its
// captions; progress and the examined placements on stderr.

#include <unistd.h>

#include <cstdio>
#include <map>
#include <memory>
#include <string>

#include "cli/cli.h"
#include "jobs/progress_text.h"
#include "placement/placement_job.h"
#include "placement/report_writer.h"

namespace velkaro::cli {

namespace {

struct PlaceOptions {
  placement::PieceCounts counts;
  placement::Goal goal = placement::Goal::NonAttackingPieces;
};

// On a terminal the clock, the placements examined and the placements per
// second stay on one line of stderr while the run goes on.
class PlacementProgress : public jobs::ProgressSink {
 public:
  PlacementProgress() : shown_(isatty(STDERR_FILENO) != 0) {}
  void tick(const jobs::Progress& progress) override {
    if (!shown_) return;
    std::fprintf(stderr, "\r%s %s placements %s placements/sec  ", jobs::clockText(progress.elapsedMs).c_str(),
                 jobs::testedMovesText(progress.tested).c_str(),
                 jobs::speedPerSecondText(progress.tested, progress.elapsedMs).c_str());
  }
  void clear() const {
    if (shown_) std::fputs("\r\033[K", stderr);
  }

 private:
  bool shown_;
};

int runPlace(const PlaceOptions& options) {
  placement::PositionsPanel panel;
  placement::ReportWriter writer(panel);
  PlacementProgress progress;
  StderrMessages messages;
  const auto job = std::make_unique<placement::PlacementJob>(progress, writer, messages);
  const jobs::RunEnd end = job->start({options.counts, options.goal, false});
  progress.clear();
  if (end == jobs::RunEnd::Refused) return kExitRefused;
  std::fputs(panel.text().c_str(), stdout);
  const std::string examined = jobs::testedMovesText(job->testedMoves());
  std::fprintf(stderr, "Time %.3f s, %s placements\n", static_cast<double>(job->elapsedMs()) / 1000.0,
               examined.substr(examined.find_first_not_of(' ')).c_str());
  return 0;
}

}  // namespace

void addPlaceCommand(CLI::App& app, int& status) {
  auto options = std::make_shared<PlaceOptions>();
  CLI::App* command = app.add_subcommand("place",
                                         "place white men on the empty board: the most covered or free "
                                         "squares, or no man attacked");
  const std::pair<const char*, int placement::PieceCounts::*> fields[] = {
      {"--kings", &placement::PieceCounts::kings},     {"--queens", &placement::PieceCounts::queens},
      {"--rooks", &placement::PieceCounts::rooks},     {"--bishops", &placement::PieceCounts::bishops},
      {"--knights", &placement::PieceCounts::knights}, {"--pawns", &placement::PieceCounts::pawns}};
  for (auto [name, field] : fields) {
    command->add_option(name, options->counts.*field, "how many (0 to 99)")->check(CLI::Range(0, 99));
  }
  const std::map<std::string, placement::Goal> goals = {{"attacking-squares", placement::Goal::AttackingSquares},
                                                        {"non-attacking-squares", placement::Goal::NonAttackingSquares},
                                                        {"non-attacking-pieces", placement::Goal::NonAttackingPieces}};
  command->add_option("--goal", options->goal, "attacking-squares, non-attacking-squares or non-attacking-pieces")
      ->required()
      ->transform(CLI::CheckedTransformer(goals));
  command->callback([options, &status] { status = runPlace(*options); });
}

}  // namespace velkaro::cli
