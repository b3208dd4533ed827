#pragma once
// The one place where the Creator's records become text: the rows of the
// problem list (the board text padded to the row's fixed width, the flight
// digit, a blank and the flight mark), the placeholder row, the end rows, and
// the key shown when a row is selected ("1. %s").
//
// Texts are UTF-8. The flight mark for as many flights on other squares is the
// plus-minus sign, U+00B1 (two bytes); every other character of a row is
// ASCII, so a row is 80 characters long.

#include <string>
#include <string_view>

#include "core/notation.h"
#include "generator/records.h"

namespace velkaro::generator {

inline constexpr std::string_view kTestingRow = "  testing ...";
inline constexpr std::string_view kAndOtherRow = " ... and other";
inline constexpr std::string_view kNoFoundRow = "No found";
inline constexpr std::string_view kNoFoundMoreRow = "No found more";

// A row is this many characters: the board text padded with blanks to
// kBoardColumns, then the digit, a blank and the mark.
inline constexpr int kRowWidth = 80;
inline constexpr int kBoardColumns = kRowWidth - 3;

// The placement field of the FEN line.
std::string boardText(const std::array<std::int8_t, 64>& board);
std::string flightMarkText(FlightMark mark);
std::string rowText(const Problem& problem);

// Where the rows go: the window's list, the command line's stdout, a test.
class ListSink {
 public:
  virtual ~ListSink() = default;
  // The placeholder row at the end of the list; an empty text deletes it.
  virtual void setPlaceholder(std::string_view) {}
  virtual void addRow(std::string_view) {}
  // A new problem's row is selected: its problem goes on the board and its
  // key is shown.
  virtual void problemSelected(const Problem&, std::string_view /*keyText*/) {}
};

class ListWriter : public RecordSink {
 public:
  ListWriter(ListSink& sink, int language);

  void record(const Record& record) override;

  // "1. %s" with the key's move text in the writer's language.
  std::string keyText(const Problem& problem);

 private:
  ListSink& sink_;
  core::Notation notation_;
};

}  // namespace velkaro::generator
