// The FEN reader behind the import dialog and the FEN writer behind the export.
// The reader finds the placement by its slashes, so bare FEN, EPD and PGN tag
// lines all work; it is strict about the placement and, after it, stops silently
// at the first deviation and keeps what it has read.

#include "formats/fen.h"

#include <algorithm>
#include <cstddef>
#include <fstream>

namespace velkaro::formats {

namespace {

// Character classes are tested by searching comma-separated lists, so the comma
// passes every one of them. A zero byte is the end of the line and passes none.
constexpr std::string_view kPlacementSet = "1,2,3,4,5,6,7,8,B,K,N,P,Q,R,b,k,n,p,q,r,/";
constexpr std::string_view kDigitSet = "1,2,3,4,5,6,7,8";
constexpr std::string_view kPieceSet = "B,K,N,P,Q,R,b,k,n,p,q,r";
constexpr std::string_view kCastlingSet = "Q,K,q,k";
constexpr std::string_view kFileSet = "a,b,c,d,e,f,g,h";

constexpr bool inSet(std::string_view set, char c) {
  return c != '\0' && set.find(c) != std::string_view::npos;
}

// The comma passes the digit list's search as well, but it has no value to add:
// it counts as one square, like a piece letter.
constexpr bool isDigit(char c) { return c != ',' && inSet(kDigitSet, c); }

constexpr bool isDecimal(char c) { return c >= '0' && c <= '9'; }

// The reader's codes for the piece letters, White upper case, Black lower case.
constexpr int pieceCode(char letter) {
  constexpr std::string_view kLetters = "KQRBNPkqrbnp";
  constexpr int kCodes[] = {82, 76, 100, 124, 88, 112, -82, -76, -100, -124, -88, -112};
  const std::size_t index = kLetters.find(letter);
  return index == std::string_view::npos ? 0 : kCodes[index];
}
static_assert(pieceCode('K') == core::piece::King && pieceCode('b') == -core::piece::Bishop && pieceCode(',') == 0);

// The writer's letters, indexed by the magnitude of a piece code; a Black code
// gets the letter 32 further on, its lower case. FEN letters are always English,
// whatever language moves are printed in.
constexpr std::array<char, 125> kLetterOfCode = [] {
  std::array<char, 125> letters{};
  letters[core::piece::King] = 'K';
  letters[core::piece::Queen] = 'Q';
  letters[core::piece::Rook] = 'R';
  letters[core::piece::Bishop] = 'B';
  letters[core::piece::Knight] = 'N';
  letters[core::piece::Pawn] = 'P';
  return letters;
}();
static_assert(kLetterOfCode[82] == 'K' && kLetterOfCode[124] == 'B' && kLetterOfCode[0] == '\0');

// 0 for an empty square; a code the editor never holds is written as empty too,
// so the line stays a FEN line.
constexpr char letterOf(int code) {
  if (code < -124 || code > 124) return '\0';
  const char letter = kLetterOfCode[static_cast<std::size_t>(code < 0 ? -code : code)];
  return (code < 0 && letter != '\0') ? static_cast<char>(letter + 32) : letter;
}
static_assert(letterOf(-112) == 'p' && letterOf(76) == 'Q' && letterOf(5) == '\0');

// A line as the dialog holds it. Files are read with a 256-byte line buffer, so
// a longer line is cut to 255 characters (the rest is dropped, not shown as a
// line of its own), and a zero byte ends it.
std::string_view cutLine(std::string_view line) {
  return line.substr(0, std::min({line.find('\0'), line.size(), std::size_t{FenImport::kLineLimit}}));
}

std::string_view shownLine(const std::vector<std::string>& lines, int index) {
  return cutLine(lines[static_cast<std::size_t>(index)]);
}

char charAt(const std::array<char, FenImport::kBufferSize>& buffer, int index) {
  return (index >= 0 && index < FenImport::kBufferSize) ? buffer[static_cast<std::size_t>(index)] : '\0';
}

// Where a tag's value starts: after its name, one optional blank and one
// optional double quote.
std::size_t valueStart(std::string_view line, std::size_t nameLength) {
  std::size_t at = nameLength;
  if (at < line.size() && line[at] == ' ') ++at;
  if (at < line.size() && line[at] == '"') ++at;
  return at;
}

std::size_t skipBlank(std::string_view line, std::size_t at) {
  return at < line.size() && line[at] == ' ' ? at + 1 : at;
}

// The first two-letter `pattern` lying wholly within positions first..last.
std::size_t findWithin(std::string_view line, std::string_view pattern, std::size_t first, std::size_t last) {
  for (std::size_t at = first; at + 1 <= last && at + 1 < line.size(); ++at) {
    if (line[at] == pattern[0] && line[at + 1] == pattern[1]) return at;
  }
  return std::string_view::npos;
}

// The stipulation text and the number text (at most two digits) as read.
struct TagTexts {
  std::string text;
  std::string number;
};

void readEventTag(std::string_view line, TagTexts& tags) {
  for (std::size_t at = valueStart(line, 6); at < line.size() && line[at] != ']' && line[at] != '"'; ++at) {
    tags.text += line[at];
  }
}

void readPlyCountTag(std::string_view line, TagTexts& tags) {
  const std::size_t at = valueStart(line, 9);
  if (at >= line.size() || line[at] < '1' || line[at] > '9') return;
  tags.number += line[at];
  if (at + 1 < line.size() && isDecimal(line[at + 1])) tags.number += line[at + 1];
}

// Walks up from the line above the FEN tag through the game's tag block (a
// short line ends it). The nearest Event and PlyCount tags count; the walk goes
// on past an Event tag until a PlyCount tag has been seen too.
void readPgnTags(const std::vector<std::string>& lines, int selected, TagTexts& tags) {
  bool haveEvent = false;
  bool haveCount = false;
  for (int index = selected - 1; index >= 0 && !(haveEvent && haveCount); --index) {
    const std::string_view line = shownLine(lines, index);
    if (line.size() < 3) break;
    if (!haveEvent && line.starts_with("[Event")) {
      readEventTag(line, tags);
      haveEvent = true;
    } else if (!haveCount && line.starts_with("[PlyCount")) {
      readPlyCountTag(line, tags);
      haveCount = true;
    }
  }
  tags.text += tags.number;
}

// The "c6" (comment) and "dm" (direct mate) opcodes of the selected EPD line.
// The searches start late enough to pass over the placement, but nothing keeps
// them out of the other fields: an en-passant square c6 is read as the opcode.
void readEpdOpcodes(std::string_view line, TagTexts& tags) {
  const std::size_t comment = findWithin(line, "c6", 10, 252);
  if (comment != std::string_view::npos && comment < 251) {
    const std::size_t from = skipBlank(line, comment + 2);
    const std::size_t end = line.find(';', from);
    if (end != std::string_view::npos) tags.text = line.substr(from, end - from);  // an unclosed opcode gives nothing
  }
  const std::size_t mate = findWithin(line, "dm", 20, 251);
  if (mate != std::string_view::npos && mate <= 250) {
    for (std::size_t at = skipBlank(line, mate + 2); at < line.size() && isDecimal(line[at]); ++at) {
      tags.text += line[at];
      if (tags.number.size() < 2) tags.number += line[at];
    }
  }
}

// The nearest "[Ask" line above the FEN line. Its text ends at the first
// non-digit after a digit, so "H#3 (v)" gives "H#3".
void readAskLine(const std::vector<std::string>& lines, int selected, TagTexts& tags) {
  for (int index = selected - 1; index >= 0; --index) {
    const std::string_view line = shownLine(lines, index);
    if (line.size() < 3 || !line.starts_with("[Ask")) continue;
    bool digitSeen = false;
    for (std::size_t at = valueStart(line, 4); at < line.size(); ++at) {
      const char c = line[at];
      if (c == ';' || c == '"' || (digitSeen && !isDecimal(c))) break;
      tags.text += c;
      if (isDecimal(c)) {
        digitSeen = true;
        if (tags.number.size() < 2) tags.number += c;
      }
    }
    return;
  }
}

TagStipulation classify(const TagTexts& tags) {
  TagStipulation stipulation;
  stipulation.text = tags.text.substr(0, FenImport::kLineLimit);
  const char first = stipulation.text.empty() ? '\0' : stipulation.text[0];
  stipulation.helpmate = first == 'H' || first == 'h';
  stipulation.selfmate = first == 'S' || first == 's';
  for (char digit : tags.number) stipulation.moves = stipulation.moves * 10 + (digit - '0');
  return stipulation;
}

// Appends to a stretch of the writer's area and never past its end.
struct AreaWriter {
  std::array<char, 90>& area;
  std::size_t at;
  std::size_t end;
  void put(char c) {
    if (at < end) area[at++] = c;
  }
  void put(std::string_view text) {
    for (char c : text) put(c);
  }
};

void writePlacement(const core::BoardSetup& setup, AreaWriter& out) {
  for (int rank = 8; rank >= 1; --rank) {
    int run = 0;
    for (int file = 0; file < 8; ++file) {
      const char letter = letterOf(setup.board[static_cast<std::size_t>(core::squareAt(file, rank))]);
      if (letter != '\0' && run > 0) out.put(static_cast<char>('0' + run));
      run = letter == '\0' ? run + 1 : 0;
      if (letter != '\0') out.put(letter);
    }
    if (run > 0) out.put(static_cast<char>('0' + run));
    if (rank > 1) out.put('/');
  }
}

// Castling in the order Q, K, q, k, queen side first, as the program has always
// written it (not the usual KQkq).
void writeCastling(const core::BoardSetup& setup, AreaWriter& out) {
  const bool any = setup.whiteLongCastle || setup.whiteShortCastle || setup.blackLongCastle || setup.blackShortCastle;
  if (!any) out.put('-');
  if (setup.whiteLongCastle) out.put('Q');
  if (setup.whiteShortCastle) out.put('K');
  if (setup.blackLongCastle) out.put('q');
  if (setup.blackShortCastle) out.put('k');
}

}  // namespace

std::string fileTypeOf(std::string_view fileName) {
  std::string type(fileName.substr(fileName.size() > 3 ? fileName.size() - 3 : 0));
  for (char& c : type) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return type;
}

TagStipulation ReadStipulationFromTags(const std::vector<std::string>& lines, int selected,
                                       std::string_view fileType) {
  TagTexts tags;
  if (selected >= 0 && static_cast<std::size_t>(selected) < lines.size()) {
    if (fileType == "PGN") readPgnTags(lines, selected, tags);
    if (fileType == "EPD") readEpdOpcodes(shownLine(lines, selected), tags);
    if (fileType == "FEN") readAskLine(lines, selected, tags);
  }
  return classify(tags);
}

char FenImport::sourceAt(int index) const { return charAt(source_, index); }
char FenImport::copyAt(int index) const { return charAt(normalized_, index); }

// The last byte of the copy is never written, so the copy always ends in a zero.
void FenImport::put(int index, char c) {
  if (index >= 0 && index < kLineLimit) normalized_[static_cast<std::size_t>(index)] = c;
}

void FenImport::clearBuffers() {
  source_.fill('\0');
  normalized_.fill('\0');
}

std::string_view FenImport::normalized() const {
  const std::string_view copy(normalized_.data(), normalized_.size());
  return copy.substr(0, copy.find('\0'));
}

bool FenImport::FenCheck(std::string_view line) {
  result_ = ImportResult{};
  side_ = 0;
  placementValid_ = false;
  label_.clear();
  clearBuffers();
  line = cutLine(line);
  std::copy(line.begin(), line.end(), source_.begin());
  if (line.size() < 16) return false;

  int slashes = 0;
  int firstSlash = -1;
  for (int at = 0; at < kLineLimit; ++at) {
    if (source_[static_cast<std::size_t>(at)] != '/') continue;
    if (firstSlash < 0) firstSlash = at;
    ++slashes;
  }
  if (slashes < 7) return false;

  // The placement starts after the last character before the first slash that
  // cannot belong to it. Position 0 is never tested, so a line whose FEN follows
  // a single other character is taken from position 0 and refused.
  int at = firstSlash;
  while (at > 0 && inSet(kPlacementSet, source_[static_cast<std::size_t>(at)])) --at;
  int in = at == 0 ? 0 : at + 1;
  int out = 0;
  if (!checkPlacement(in, out)) return false;
  placementValid_ = true;
  checkFields(in, out);
  return true;
}

bool FenImport::checkPlacement(int& in, int& out) {
  for (int row = 0; row < 7; ++row) {
    if (!checkUpperRow(in, out)) return false;
  }
  return checkLastRow(in, out);
}

// A row above the last one closes at a count of 9: eight squares and its slash,
// or a digit that reaches 9, which is why "K8" passes as a whole row.
bool FenImport::checkUpperRow(int& in, int& out) {
  int count = 0;
  while (count != 9) {
    const char c = sourceAt(in);
    if (!inSet(kPlacementSet, c) || (c == '/' && count < 8)) return false;
    count += isDigit(c) ? c - '0' : 1;
    if (count > 9) return false;
    put(out++, c);
    ++in;
  }
  return true;
}

bool FenImport::checkLastRow(int& in, int& out) {
  int count = 0;
  while (count != 8) {
    const char c = sourceAt(in);
    if (!isDigit(c) && !inSet(kPieceSet, c)) return false;
    count += isDigit(c) ? c - '0' : 1;
    if (count > 8) return false;
    put(out++, c);
    ++in;
  }
  return true;
}

// Side, castling and en passant. Nothing fails here any more: the first
// deviation stops the copy and what was read so far stands.
void FenImport::checkFields(int in, int out) {
  if (sourceAt(in++) != ' ') return;
  put(out++, ' ');
  const char side = sourceAt(in);
  if (side != 'w' && side != 'b' && side != '-') return;
  side_ = static_cast<std::int8_t>(side == 'w' ? 1 : side == 'b' ? -1 : 0);
  put(out++, side);
  if (sourceAt(++in) != ' ') return;
  // This blank lands in the copy at its place in the source line, not at the
  // copy's own write position. When the FEN does not open the line (an EPD line
  // with text before it, a PGN tag line) the copy keeps a zero after the side
  // letter, and castling and en passant never reach the position. That is how
  // the import has always behaved, and it is kept.
  put(in++, ' ');
  ++out;
  char c = sourceAt(in);
  if (c == '-') {
    put(out++, '-');
    ++in;
  } else if (inSet(kCastlingSet, c)) {
    for (; inSet(kCastlingSet, sourceAt(in)); ++in) put(out++, sourceAt(in));
  } else {
    return;
  }
  if (sourceAt(in++) != ' ') return;
  put(out++, ' ');
  c = sourceAt(in);
  if (inSet(kFileSet, c)) {
    put(out++, c);
    put(out++, sourceAt(in + 1));  // the rank is taken as it stands, unchecked
  } else if (c == '-') {
    put(out++, '-');
  }
}

// Places the pieces of the copy's placement; returns where it stopped. A comma
// passed the check as a square but names no piece: it ends the placement, and
// the squares after it stay empty. A square beyond h1 (possible after rows such
// as "K8" that close without a slash) ends it too rather than leave the board.
int FenImport::convertPlacement(int& lastDigit) {
  int at = 0;
  int row = 8;
  int file = 1;
  for (char c = copyAt(at); inSet(kPlacementSet, c) && row != 0; c = copyAt(++at)) {
    if (c == ',') break;
    if (isDigit(c)) {
      file += c - '0';
      lastDigit = c - '0';
    } else if (c == '/') {
      --row;
      file = 1;
    } else {
      const int square = (8 - row) * 8 + (file - 1);
      if (square > 63) break;
      result_.board[static_cast<std::size_t>(square)] = static_cast<std::int8_t>(pieceCode(c));
      ++file;
    }
  }
  return at;
}

void FenImport::convertFields(int at, int lastDigit) {
  if (copyAt(at) != ' ') return;
  at += 2;  // the blank and the side letter, which the check has taken
  if (copyAt(at) != ' ') return;
  if (copyAt(++at) == '-') {
    ++at;
  } else {
    for (char c = copyAt(at); inSet(kCastlingSet, c); c = copyAt(++at)) {
      if (c == 'Q') result_.whiteLongCastle = 1;
      if (c == 'K') result_.whiteShortCastle = 1;
      if (c == 'q') result_.blackLongCastle = 1;
      if (c == 'k') result_.blackShortCastle = 1;
    }
  }
  if (copyAt(at++) != ' ') return;
  // The test is made on the copy at the position given by the value of the
  // placement's last digit, not on the field itself, so the field is taken only
  // when that character happens to pass the file list (a black bishop "b" or a
  // comma), and then whatever stands in the field, "-" included. Kept as the
  // import has always done it: most lines come in without en passant.
  if (inSet(kFileSet, copyAt(lastDigit))) result_.enPassantFile = copyAt(at);
}

void FenImport::FenToPosition(const std::vector<std::string>& lines, int selected, std::string_view fileType) {
  if (!placementValid_) return;
  result_ = ImportResult{};  // every field is set again below
  label_.clear();
  int lastDigit = 0;
  const int fieldsAt = convertPlacement(lastDigit);
  convertFields(fieldsAt, lastDigit);
  result_.sideToMove = side_;
  const TagStipulation stipulation = ReadStipulationFromTags(lines, selected, fileType);
  result_.helpmate = stipulation.helpmate ? 1 : 0;
  result_.selfmate = stipulation.selfmate ? 1 : 0;
  result_.moves = static_cast<std::uint8_t>(stipulation.moves);  // two digits at most
  label_ = stipulation.text;
}

bool FenImport::selectLine(const std::vector<std::string>& lines, int selected, std::string_view fileType) {
  clearBuffers();
  const bool exists = selected >= 0 && static_cast<std::size_t>(selected) < lines.size();
  const std::string_view line = exists ? std::string_view(lines[static_cast<std::size_t>(selected)]) : "";
  if (!FenCheck(line)) return false;  // the check has left the preview board empty
  FenToPosition(lines, selected, fileType);
  return true;
}

core::BoardSetup setupFromImport(const ImportResult& result) {
  core::BoardSetup setup;
  std::copy(result.board.begin(), result.board.end(), setup.board.begin());
  setup.sideToMove = result.sideToMove < 0 ? core::Black : core::White;
  setup.whiteLongCastle = result.whiteLongCastle != 0;
  setup.whiteShortCastle = result.whiteShortCastle != 0;
  setup.blackLongCastle = result.blackLongCastle != 0;
  setup.blackShortCastle = result.blackShortCastle != 0;
  if (result.enPassantFile >= 'a' && result.enPassantFile <= 'h') {
    const int rank = setup.sideToMove == core::White ? 5 : 4;
    setup.lastMoveSquare = core::squareAt(result.enPassantFile - 'a', rank);
  }
  return setup;
}

std::vector<std::string> readImportLines(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return {};
  std::vector<std::string> lines;
  std::string line;
  while (std::getline(file, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.emplace_back(cutLine(line));
  }
  if (file.bad()) return {};
  return lines;
}

std::string_view FenText::fen() const { return cutLine(std::string_view(area.data(), kStipulationAt)); }

std::string_view FenText::stipulation() const {
  return cutLine(std::string_view(area.data() + kStipulationAt, area.size() - kStipulationAt));
}

FenText PositionToFen(const core::BoardSetup& setup, const core::Stipulation& stipulation) {
  FenText text;
  // The longest FEN line is 81 characters, well short of the stipulation's place.
  AreaWriter fen{text.area, 0, FenText::kStipulationAt - 1};
  writePlacement(setup, fen);
  fen.put(setup.sideToMove == core::White ? " w " : " b ");
  writeCastling(setup, fen);
  fen.put(' ');
  if (setup.lastMoveSquare != 0) {
    fen.put(static_cast<char>('a' + (setup.lastMoveSquare & 7)));
    fen.put(setup.sideToMove == core::White ? '6' : '3');
  } else {
    fen.put('-');
  }

  AreaWriter stip{text.area, FenText::kStipulationAt, text.area.size()};
  stip.put(stipulation.helpmate ? "H#" : stipulation.selfmate ? "S#" : "#");
  const int moves = std::clamp(stipulation.moves, 0, 99);  // two digits is all the area has room for
  if (moves > 9) stip.put(static_cast<char>('0' + moves / 10));
  stip.put(static_cast<char>('0' + moves % 10));
  return text;
}

}  // namespace velkaro::formats
