// velkaro-cli create: the Creator from the command line. Each problem found
// is printed as the list shows its row, then a tab and its key as selecting
// the row shows it; the list's last row ends the output.

#include <iostream>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "cli/cli.h"
#include "generator/generator_job.h"
#include "generator/list_writer.h"

namespace velkaro::cli {

namespace {

struct CreateOptions {
  std::string fen;
  std::string stipulation;
  std::string white = "00000";
  std::string black = "00000";
  bool random = false;
  std::optional<std::uint64_t> seed;
  generator::KeyRestrictions restrictions;
  std::vector<std::string> squares;
  int limit = 0;
  int jobs = 0;
};

// "10200": one digit each for queens, rooks, bishops, knights and pawns.
generator::AddedMen addedMen(const std::string& digits, const char* option) {
  if (digits.size() != 5 || digits.find_first_not_of("0123456789") != std::string::npos) {
    throw UsageError(std::string(option) + " needs five digits (queens, rooks, bishops, knights, pawns), not \"" +
                     digits + "\"");
  }
  auto at = [&](std::size_t index) { return digits[index] - '0'; };
  return {at(0), at(1), at(2), at(3), at(4)};
}

// "N:b1,c3,d2": the squares on which White's knights may be generated; a
// lower-case letter names Black's men.
void readSquares(const std::string& text, generator::SquareMaps& maps, std::vector<bool>& given) {
  static constexpr std::string_view kLetters = "KQRBNPkqrbnp";
  const std::size_t letter = text.size() >= 2 && text[1] == ':' ? kLetters.find(text[0]) : std::string::npos;
  if (letter == std::string::npos) {
    throw UsageError("--squares needs KIND:SQUARES with KIND one of KQRBNP (kqrbnp for Black), not \"" + text + "\"");
  }
  if (given[letter]) throw UsageError(std::string("--squares: the squares of ") + text[0] + " are given twice");
  given[letter] = true;
  std::uint64_t squares = 0;
  std::size_t at = 2;
  while (at < text.size()) {
    const std::size_t comma = std::min(text.find(',', at), text.size());
    const std::string name = text.substr(at, comma - at);
    if (name.size() != 2 || name[0] < 'a' || name[0] > 'h' || name[1] < '1' || name[1] > '8') {
      throw UsageError("--squares: \"" + name + "\" is not a square");
    }
    squares |= std::uint64_t{1} << core::squareAt(name[0] - 'a', name[1] - '0');
    at = comma + 1;
  }
  maps[letter].squares = squares;
}

generator::CreateSettings settingsFrom(const CreateOptions& options) {
  generator::CreateSettings settings;
  if (options.stipulation != "#2" && options.stipulation != "#3") {
    throw UsageError("--stip needs #2 or #3, not \"" + options.stipulation + "\"");
  }
  settings.moves = options.stipulation[1] - '0';
  settings.setup = setupFrom(PositionOptions{options.fen, ""});
  if (settings.setup.sideToMove != core::White) throw UsageError("--fen: the problems are White to play");
  settings.white = addedMen(options.white, "--white");
  settings.black = addedMen(options.black, "--black");
  if (options.seed && !options.random) throw UsageError("--seed goes with --random");
  if (options.random && options.limit == 0) throw UsageError("--random needs --limit: a random run does not end");
  settings.atRandom = options.random;
  settings.seed = options.seed ? *options.seed : std::random_device{}();
  settings.restrictions = options.restrictions;
  std::vector<bool> given(2 * generator::kKinds, false);
  for (const std::string& text : options.squares) readSquares(text, settings.available, given);
  settings.stopOnFirstSolution = options.limit > 0;
  settings.threads =
      options.jobs > 0 ? options.jobs : std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
  return settings;
}

// stdout gets each row and, under a problem's row, a tab and its key.
class PrintedList : public generator::ListSink {
 public:
  void addRow(std::string_view row) override { std::cout << row << '\n' << std::flush; }
  void problemSelected(const generator::Problem&, std::string_view keyText) override {
    std::cout << '\t' << keyText << '\n' << std::flush;
  }
};

int runCreate(const CreateOptions& options) {
  const generator::CreateSettings settings = settingsFrom(options);
  if (settings.atRandom) std::fprintf(stderr, "Seed %llu\n", static_cast<unsigned long long>(settings.seed));
  PrintedList list;
  generator::ListWriter writer(list, core::Notation::kEnglish);
  TerminalProgress progress("placements");
  StderrMessages messages;
  generator::GeneratorJob job(progress, writer, messages);
  jobs::RunEnd end = job.start(settings);
  while (end == jobs::RunEnd::Solution && static_cast<int>(job.problems().size()) < options.limit) {
    end = job.resume();
  }
  progress.clear();
  if (end == jobs::RunEnd::Refused) return kExitRefused;
  printSummary(static_cast<double>(job.elapsedMs()) / 1000.0, job.testedMoves().total(), "placements");
  return 0;
}

}  // namespace

void addCreateCommand(CLI::App& app, int& status) {
  auto options = std::make_shared<CreateOptions>();
  CLI::App* command = app.add_subcommand("create", "compose direct mates in 2 or 3 with a unique key");
  command->add_option("--fen", options->fen, "the fixed men as a standard FEN line, White to play")->required();
  command->add_option("--stip", options->stipulation, "#2 or #3")->required();
  command->add_option("--white", options->white, "White men to add: five digits, queens rooks bishops knights pawns");
  command->add_option("--black", options->black, "Black men to add, as --white");
  command->add_flag("--random", options->random, "place the men at random rather than all in turn");
  command->add_option("--seed", options->seed, "the random placements' seed; the same seed repeats a run");
  command->add_flag("--no-duals", options->restrictions.noDuals, "every defence allows only one mate");
  command->add_flag("--no-capturing", options->restrictions.noCapturing, "the key captures nothing");
  command->add_flag("--no-checking", options->restrictions.noChecking, "the key gives no check");
  command->add_flag("--no-restrict", options->restrictions.noRestrict, "the key takes no flight from the black king");
  command->add_option("--squares", options->squares,
                      "KIND:SQUARES, e.g. N:b1,c3,d2: the squares men of KIND may be generated on "
                      "(KQRBNP White, kqrbnp Black)");
  command->add_option("--limit", options->limit, "end after this many problems")->check(CLI::PositiveNumber);
  command->add_option("--jobs", options->jobs, "test placements on this many threads (default: one per core)")
      ->check(CLI::PositiveNumber);
  command->callback([options, &status] { status = runCreate(*options); });
}

}  // namespace velkaro::cli
