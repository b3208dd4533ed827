// Writing and reading the problem file and its companion solution text. A
// file is read over the problem as it stands, so that a short or damaged file
// changes only what it holds; everything taken from it is checked before a
// search could trust it.

#include "formats/problem_file.h"

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <memory>
#include <system_error>

namespace velkaro::formats {

namespace {

using core::BoardSetup;
using core::FirstMove;
using core::MoveRecord;

// Header bytes.
constexpr std::size_t kSelfmateByte = 1;
constexpr std::size_t kHelpmateByte = 2;
constexpr std::size_t kMovesByte = 3;
constexpr std::size_t kSideByte = 4;
constexpr std::size_t kMinimumMovesByte = 5;
constexpr std::size_t kStopFirstByte = 6;
constexpr std::size_t kCountingByte = 7;
constexpr std::size_t kLineLengthByte = 19;
constexpr std::size_t kLineDepthByte = 20;
constexpr std::size_t kLinePlyByte = 21;
constexpr std::size_t kCastlingByte = 31;  // four bytes: White long, White short, Black long, Black short
constexpr std::size_t kEnPassantByte = 35;
constexpr std::size_t kFirstMoveChosenByte = 36;
constexpr std::size_t kFirstMoveByte = 37;  // five bytes: man, from, to, kind, place among the man's moves
constexpr std::size_t kSecondMovesByte = 51;
constexpr std::size_t kBoardByte = 53;  // 64 bytes, a8 first
static_assert(kBoardByte + 64 == 117 && kBoardByte + 64 <= kHeaderSize);

// Header byte 19 is signed, so no file holds more than 127 records after the
// first; nothing beyond them is read.
constexpr std::size_t kLargestFile = (127 + 2) * kMoveRecordSize;

// Where the fields of a move record lie: the layout of a ply frame.
constexpr std::size_t kKingSquaresAt = offsetof(core::Position, whiteKingSquare);
constexpr std::size_t kCastlingAt = offsetof(core::Position, whiteLongCastle);
constexpr std::size_t kMoveAt = offsetof(core::PlyFrame, movedPiece);  // man, from, to, placed, kind
static_assert(kMoveAt == 72 && offsetof(core::PlyFrame, moveKind) == kMoveAt + 16);

// A man's byte in the header is its English letter, negated for Black.
constexpr struct {
  int code;
  char letter;
} kLetters[] = {{core::piece::King, 'K'},   {core::piece::Queen, 'Q'},  {core::piece::Rook, 'R'},
                {core::piece::Bishop, 'B'}, {core::piece::Knight, 'N'}, {core::piece::Pawn, 'P'}};

constexpr std::int8_t letterByte(int code) {
  for (const auto& entry : kLetters) {
    if (entry.code == code) return static_cast<std::int8_t>(entry.letter);
    if (-entry.code == code) return static_cast<std::int8_t>(-entry.letter);
  }
  return 0;
}

constexpr int codeOfLetterByte(std::int8_t value) {
  for (const auto& entry : kLetters) {
    if (entry.letter == value) return entry.code;
    if (-entry.letter == value) return -entry.code;
  }
  return 0;
}
static_assert(letterByte(-core::piece::King) == -75 && codeOfLetterByte(-75) == -core::piece::King);
static_assert(codeOfLetterByte('k') == 0 && letterByte(5) == 0);

// Header values lie in -128..127; the byte is their low byte.
std::uint8_t byteOf(int value) { return static_cast<std::uint8_t>(std::clamp(value, -128, 127)); }

void putInt32(std::uint8_t* at, std::int32_t value) {
  const auto bits = static_cast<std::uint32_t>(value);
  for (int shift = 0; shift < 32; shift += 8) *at++ = static_cast<std::uint8_t>(bits >> shift);
}

std::int32_t int32At(const std::uint8_t* at) {
  std::uint32_t bits = 0;
  for (int shift = 0; shift < 32; shift += 8) bits |= static_cast<std::uint32_t>(*at++) << shift;
  return static_cast<std::int32_t>(bits);
}

// The set-up after a legal move: the men as the move leaves them, the other
// side to move, the mover's castling rights gone when its king or a rook leaves
// its corner (only the mover's: the engine keeps the same rule), and a pawn's
// double step as the new "last move".
BoardSetup afterMove(const BoardSetup& before, const FirstMove& move, core::PlyStack& scratch) {
  core::setUpRoot(scratch, before);
  core::applyFirstMove(scratch, move);
  BoardSetup after = before;
  for (std::size_t square = 0; square < 64; ++square) after.board[square] = scratch[2].position.board[square];
  after.sideToMove = -before.sideToMove;
  const bool white = move.movedPiece > 0;
  const int king = white ? 60 : 4;  // e1, e8
  const int from = move.fromSquare;
  bool& longRight = white ? after.whiteLongCastle : after.blackLongCastle;
  bool& shortRight = white ? after.whiteShortCastle : after.blackShortCastle;
  if (from == king || from == king - 4) longRight = false;
  if (from == king || from == king + 3) shortRight = false;
  const bool doubleStep = (move.movedPiece == core::piece::Pawn || move.movedPiece == -core::piece::Pawn) &&
                          (move.toSquare - from == 16 || from - move.toSquare == 16);
  after.lastMoveSquare = doubleStep ? move.toSquare : 0;
  return after;
}

// A line played out from its start as far as its moves are legal: setups[i]
// is the set-up before move i, and one more after the last move.
struct PlayedLine {
  std::vector<MoveRecord> moves;
  std::vector<BoardSetup> setups;
};

PlayedLine playLine(const BoardSetup& start, std::span<const MoveRecord> moves) {
  PlayedLine played{{}, {start}};
  const auto scratch = std::make_unique<core::PlyStack>();  // too large for the stack of a thread
  for (const MoveRecord& move : moves.first(std::min<std::size_t>(moves.size(), kMaxLineMoves))) {
    const BoardSetup before = played.setups.back();
    const std::vector<FirstMove> legal = core::firstMoveList(before);
    const auto found = std::find_if(legal.begin(), legal.end(), [&move](const FirstMove& candidate) {
      return candidate.movedPiece == move.movedPiece && candidate.fromSquare == move.fromSquare &&
             candidate.toSquare == move.toSquare && candidate.moveKind == move.moveKind;
    });
    if (found == legal.end()) break;
    played.moves.push_back(found->record());
    played.setups.push_back(afterMove(before, *found, *scratch));
  }
  return played;
}

void writeHeader(const ProblemData& problem, int lineLength, std::uint8_t* header) {
  header[kSelfmateByte] = problem.stipulation.selfmate ? 1 : 0;
  header[kHelpmateByte] = problem.stipulation.helpmate ? 1 : 0;
  header[kMovesByte] = byteOf(problem.stipulation.moves);
  header[kSideByte] = byteOf(problem.setup.sideToMove < 0 ? -1 : 1);
  header[kMinimumMovesByte] = problem.options.minimumMoves ? 1 : 0;
  header[kStopFirstByte] = problem.options.stopOnFirstSolution ? 1 : 0;
  header[kCountingByte] = problem.options.counting ? 1 : 0;
  header[kLineLengthByte] = byteOf(lineLength);
  header[kLineDepthByte] = byteOf(problem.line.depth);
  header[kLinePlyByte] = byteOf(problem.line.ply);
  const BoardSetup& setup = problem.setup;
  const bool castling[] = {setup.whiteLongCastle, setup.whiteShortCastle, setup.blackLongCastle,
                           setup.blackShortCastle};
  for (std::size_t right = 0; right < 4; ++right) header[kCastlingByte + right] = castling[right] ? 1 : 0;
  header[kEnPassantByte] = byteOf(setup.lastMoveSquare >= 0 && setup.lastMoveSquare < 64 ? setup.lastMoveSquare : 0);
  if (const std::optional<FirstMove>& move = problem.firstMove) {
    header[kFirstMoveChosenByte] = 1;
    const int fields[] = {move->movedPiece, move->fromSquare, move->toSquare, move->moveKind, move->ordinal};
    for (std::size_t field = 0; field < 5; ++field) header[kFirstMoveByte + field] = byteOf(fields[field]);
  }
  header[kSecondMovesByte] = problem.options.testAllSecondMoves ? 1 : 0;
  for (std::size_t square = 0; square < 64; ++square) {
    header[kBoardByte + square] = static_cast<std::uint8_t>(letterByte(setup.board[square]));
  }
}

// The ply frame before a move of the line: the position reached and the move.
void writeRecord(const BoardSetup& setup, const MoveRecord* move, std::uint8_t* record) {
  for (std::size_t square = 0; square < 64; ++square) record[square] = static_cast<std::uint8_t>(setup.board[square]);
  record[kKingSquaresAt] = core::firstSquareOf(setup.board.data(), core::piece::King);
  record[kKingSquaresAt + 1] = core::firstSquareOf(setup.board.data(), -core::piece::King);
  const bool castling[] = {setup.whiteLongCastle, setup.whiteShortCastle, setup.blackLongCastle,
                           setup.blackShortCastle};
  for (std::size_t right = 0; right < 4; ++right) record[kCastlingAt + right] = castling[right] ? 1 : 0;
  if (move == nullptr) return;
  const int fields[] = {move->movedPiece, move->fromSquare, move->toSquare, move->placedPiece, move->moveKind};
  for (std::size_t field = 0; field < 5; ++field) putInt32(record + kMoveAt + 4 * field, fields[field]);
}

class Header {
 public:
  explicit Header(const std::vector<std::uint8_t>& image) : image_(image) {}
  int value(std::size_t byte) const { return static_cast<std::int8_t>(image_[byte]); }
  bool flag(std::size_t byte) const { return image_[byte] != 0; }

 private:
  const std::vector<std::uint8_t>& image_;
};

void readSetup(const Header& header, ProblemData& problem) {
  BoardSetup& setup = problem.setup;
  for (std::size_t square = 0; square < 64; ++square) {
    setup.board[square] = codeOfLetterByte(static_cast<std::int8_t>(header.value(kBoardByte + square)));
  }
  problem.stipulation.selfmate = header.flag(kSelfmateByte);
  problem.stipulation.helpmate = header.flag(kHelpmateByte);
  // A move count no search could hold leaves the problem's own.
  if (const int moves = header.value(kMovesByte); moves >= 1 && moves <= core::kMaxMoves) {
    problem.stipulation.moves = moves;
  }
  setup.sideToMove = header.value(kSideByte) < 0 ? core::Black : core::White;
  setup.whiteLongCastle = header.flag(kCastlingByte);
  setup.whiteShortCastle = header.flag(kCastlingByte + 1);
  setup.blackLongCastle = header.flag(kCastlingByte + 2);
  setup.blackShortCastle = header.flag(kCastlingByte + 3);
  setup.lastMoveSquare = std::max(header.value(kEnPassantByte), 0);  // at most 127; squares end at 63
  if (setup.lastMoveSquare > 63) setup.lastMoveSquare = 0;
}

void readOptions(const Header& header, ProblemData& problem) {
  problem.options.minimumMoves = header.flag(kMinimumMovesByte);
  problem.options.stopOnFirstSolution = header.flag(kStopFirstByte);
  problem.options.counting = header.flag(kCountingByte);
  problem.options.testAllSecondMoves = header.flag(kSecondMovesByte);
  problem.line.depth = std::max(header.value(kLineDepthByte), 0);
  problem.line.ply = std::max(header.value(kLinePlyByte), 0);
  problem.firstMove.reset();
  if (!header.flag(kFirstMoveChosenByte)) return;
  for (const FirstMove& move : core::firstMoveList(problem.setup)) {
    if (move.movedPiece == header.value(kFirstMoveByte) && move.fromSquare == header.value(kFirstMoveByte + 1) &&
        move.toSquare == header.value(kFirstMoveByte + 2) && move.moveKind == header.value(kFirstMoveByte + 3)) {
      problem.firstMove = move;
      return;
    }
  }
}

// The moves of the records that precede the line's last position, as far as
// the image holds them.
std::vector<MoveRecord> recordedMoves(const std::vector<std::uint8_t>& image, int lineLength) {
  std::vector<MoveRecord> moves;
  for (int index = 0; index < lineLength; ++index) {
    const std::size_t at = kHeaderSize + static_cast<std::size_t>(index) * kMoveRecordSize + kMoveAt;
    if (at + 20 > image.size()) break;
    const std::int32_t kind = int32At(&image[at + 16]);
    if (kind == core::kind::End) break;  // no move was made from this frame
    const auto fits = [](std::int32_t value) { return value >= -128 && value <= 127; };
    const std::int32_t fields[] = {int32At(&image[at]), int32At(&image[at + 4]), int32At(&image[at + 8]),
                                   int32At(&image[at + 12]), kind};
    if (!std::all_of(std::begin(fields), std::end(fields), fits)) break;
    moves.push_back({static_cast<std::int8_t>(fields[0]), static_cast<std::int8_t>(fields[1]),
                     static_cast<std::int8_t>(fields[2]), static_cast<std::int8_t>(fields[3]),
                     static_cast<std::int8_t>(fields[4])});
  }
  return moves;
}

// One line of the companion file, at most 47 characters of it; what is left
// of a longer line is read as the next one. A line break may be "\r\n".
bool readCompanionLine(std::istream& in, std::string& line) {
  line.clear();
  for (int c = in.get(); c != std::char_traits<char>::eof(); c = in.get()) {
    if (c == '\n' || (c == '\r' && in.peek() == '\n' && in.get() == '\n')) return true;
    if (line.size() == kCompanionLineLimit) {
      in.unget();
      return true;
    }
    line += static_cast<char>(c);
  }
  return !line.empty();
}

bool writeFile(const std::filesystem::path& path, const char* data, std::size_t size) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(data, static_cast<std::streamsize>(size));
  out.close();
  return !out.fail();
}

}  // namespace

std::vector<std::uint8_t> problemFileBytes(const ProblemData& problem) {
  const PlayedLine played = playLine(problem.setup, problem.line.moves);
  const int lineLength = std::max(1, static_cast<int>(played.moves.size()));  // n is at least 1
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(lineLength + 2) * kMoveRecordSize, 0);
  writeHeader(problem, lineLength, bytes.data());
  for (std::size_t index = 0; index < played.setups.size(); ++index) {
    const MoveRecord* move = index < played.moves.size() ? &played.moves[index] : nullptr;
    writeRecord(played.setups[index], move, &bytes[kHeaderSize + index * kMoveRecordSize]);
  }
  return bytes;
}

void readProblemBytes(std::span<const std::uint8_t> bytes, ProblemData& problem) {
  // The problem as it stands, overwritten by as much as the file holds.
  std::vector<std::uint8_t> image = problemFileBytes(problem);
  const std::size_t taken = std::min(bytes.size(), kLargestFile);
  if (image.size() < taken) image.resize(taken, 0);
  std::copy_n(bytes.begin(), taken, image.begin());

  const Header header(image);
  readSetup(header, problem);
  readOptions(header, problem);
  problem.line.moves = playLine(problem.setup, recordedMoves(image, header.value(kLineLengthByte))).moves;
}

std::string readSolutionText(std::istream& in) {
  std::string text;
  for (std::string line; readCompanionLine(in, line);) {
    if (line.size() < kShortestCompanionLine || text.size() + line.size() + 1 > kSolutionTextLimit) break;
    text += line;
    text += '\n';
  }
  return text;
}

std::vector<SolutionEntry> solutionTree(std::string_view text) {
  std::vector<SolutionEntry> tree;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.starts_with('\t') && !tree.empty()) {
      tree.back().children.emplace_back(line.substr(1));
    } else {
      tree.push_back({std::string(line.starts_with('\t') ? line.substr(1) : line), {}});
    }
  }
  return tree;
}

std::filesystem::path companionPath(const std::filesystem::path& problemFile) {
  std::string name = problemFile.filename().string();
  const std::size_t replaced = std::min<std::size_t>(name.size(), 3);
  name.replace(name.size() - replaced, replaced, "red");
  return problemFile.parent_path() / name;
}

std::string problemWindowTitle(const std::filesystem::path& problemFile) {
  return "Velkaro - " + problemFile.filename().string();
}

bool SaveProblem(const std::filesystem::path& file, const ProblemData& problem) {
  const std::vector<std::uint8_t> bytes = problemFileBytes(problem);
  if (!writeFile(file, reinterpret_cast<const char*>(bytes.data()), bytes.size())) return false;
  const std::filesystem::path companion = companionPath(file);
  std::error_code ignored;
  std::filesystem::remove(companion, ignored);
  if (problem.solutionText.empty()) return true;
  return writeFile(companion, problem.solutionText.data(), problem.solutionText.size());
}

bool OpenProblem(const std::filesystem::path& file, ProblemData& problem) {
  std::error_code error;
  if (std::filesystem::is_directory(file, error)) return false;
  std::ifstream in(file, std::ios::binary);
  if (!in) return false;
  std::vector<std::uint8_t> bytes(kLargestFile);
  in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(in.gcount()));
  readProblemBytes(bytes, problem);
  std::ifstream companion(companionPath(file), std::ios::binary);
  problem.solutionText = companion ? readSolutionText(companion) : std::string();
  return true;
}

}  // namespace velkaro::formats
