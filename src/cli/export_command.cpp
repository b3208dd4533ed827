// velkaro-cli export: one FEN, PGN or EPD record of a position and its
// stipulation, written by the rules of "Save FEN position", the file's type
// chosen by its extension.

#include <cstdio>
#include <memory>
#include <string>

#include "cli/cli.h"
#include "formats/fen.h"
#include "formats/fen_export.h"

namespace velkaro::cli {

namespace {

// PositionToFen has room for two digits of moves.
constexpr int kLargestExportedMoves = 99;

struct ExportOptions {
  PositionOptions position;
  std::string stipulation;
  std::string out;
  formats::ExportFields fields;
  bool askGiven = false;
};

int runExport(const ExportOptions& options) {
  const core::Stipulation stipulation = stipulationFrom(options.stipulation, kLargestExportedMoves);
  const formats::FenText text = formats::PositionToFen(setupFrom(options.position), stipulation);
  formats::ExportFields fields = options.fields;
  const formats::ExportFields shown = formats::exportFieldsFor(text);
  if (!options.askGiven) fields.ask = shown.ask;
  fields.fen = shown.fen;
  if (!formats::WriteFenRecord(options.out, text, fields)) {
    std::fprintf(stderr, "velkaro-cli: cannot write %s\n", options.out.c_str());
    return kExitFileError;
  }
  return 0;
}

}  // namespace

void addExportCommand(CLI::App& app, int& status) {
  auto options = std::make_shared<ExportOptions>();
  options->fields.append = false;
  CLI::App* command = app.add_subcommand("export", "write the position as a FEN, PGN or EPD record");
  addPositionOptions(*command, options->position);
  command->add_option("--stip", options->stipulation, "#n, S#n or H#n")->required();
  command->add_option("--out", options->out, "the file; its extension (.fen, .pgn, .epd) chooses the record")
      ->required();
  command->add_flag("--append", options->fields.append, "append the record when the file exists");
  CLI::Option* ask = command->add_option("--ask", options->fields.ask, "the Ask field (default: the stipulation)");
  command->add_option("--date", options->fields.date, "the Date field");
  command->add_option("--site", options->fields.site, "the Site field");
  command->add_option("--author", options->fields.author, "the Author field");
  command->add_option("--section", options->fields.section, "the Section field");
  command->callback([options, ask, &status] {
    options->askGiven = ask->count() > 0;
    status = runExport(*options);
  });
}

}  // namespace velkaro::cli
