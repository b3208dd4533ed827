// The rows of the Creator's problem list and the text of a selected key.

#include "generator/list_writer.h"

#include "formats/fen.h"

namespace velkaro::generator {

std::string boardText(const std::array<std::int8_t, 64>& board) {
  core::BoardSetup setup;
  for (std::size_t square = 0; square < 64; ++square) setup.board[square] = board[square];
  const formats::FenText text = formats::PositionToFen(setup, core::Stipulation{false, false, 2});
  const std::string_view fen = text.fen();
  return std::string(fen.substr(0, fen.find(' ')));
}

std::string flightMarkText(FlightMark mark) {
  switch (mark) {
    case FlightMark::Gained:
      return "+";
    case FlightMark::Lost:
      return " ";
    case FlightMark::Same:
      return "=";
    case FlightMark::Moved:
      return "\u00b1";
  }
  return " ";
}

std::string rowText(const Problem& problem) {
  std::string row = boardText(problem.board);
  row.resize(static_cast<std::size_t>(kBoardColumns), ' ');
  row += static_cast<char>('0' + problem.flights);
  row += ' ';
  row += flightMarkText(problem.mark);
  return row;
}

ListWriter::ListWriter(ListSink& sink, int language) : sink_(sink) { notation_.setLanguage(language); }

std::string ListWriter::keyText(const Problem& problem) { return "1. " + notation_.MoveText(problem.key); }

void ListWriter::record(const Record& record) {
  if (std::holds_alternative<Testing>(record)) {
    sink_.setPlaceholder(kTestingRow);
    return;
  }
  sink_.setPlaceholder("");
  if (const Problem* problem = std::get_if<Problem>(&record)) {
    sink_.addRow(rowText(*problem));
    sink_.problemSelected(*problem, keyText(*problem));
  } else if (const NoFound* end = std::get_if<NoFound>(&record)) {
    sink_.addRow(end->more ? kNoFoundMoreRow : kNoFoundRow);
  } else {
    sink_.addRow(kAndOtherRow);
  }
}

}  // namespace velkaro::generator
