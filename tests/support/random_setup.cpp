#include "random_setup.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "core/validate.h"
#include "formats/standard_fen.h"

namespace velkaro::testing {

core::BoardSetup randomSetup(std::mt19937& random, int men) {
  static constexpr int kMen[] = {core::piece::Queen, core::piece::Rook, core::piece::Bishop, core::piece::Knight,
                                 core::piece::Pawn};
  core::BoardSetup setup;
  std::vector<int> squares(64);
  for (int square = 0; square < 64; ++square) squares[static_cast<std::size_t>(square)] = square;
  std::shuffle(squares.begin(), squares.end(), random);
  setup.board[static_cast<std::size_t>(squares[0])] = core::piece::King;
  setup.board[static_cast<std::size_t>(squares[1])] = -core::piece::King;
  for (int i = 2; i < men; ++i) {
    const int square = squares[static_cast<std::size_t>(i)];
    int man = kMen[random() % 5];
    if (man == core::piece::Pawn && (square < 8 || square >= 56)) man = core::piece::Knight;
    setup.board[static_cast<std::size_t>(square)] = random() % 2 ? man : -man;
  }
  setup.sideToMove = random() % 2 ? core::White : core::Black;
  return setup;
}

namespace {

class NoMessages : public core::MessageSink {
 public:
  void showMessage(std::string_view, std::string_view) override {}
};

// Keeps the first message's text.
class FirstMessage : public core::MessageSink {
 public:
  void showMessage(std::string_view, std::string_view text) override {
    if (first.empty()) first = text;
  }
  std::string first;
};

}  // namespace

bool randomRoot(std::mt19937& random, int minMen, int moreMen, core::PlyStack& stack) {
  const core::BoardSetup setup = randomSetup(random, minMen + static_cast<int>(random() % static_cast<unsigned>(moreMen)));
  NoMessages messages;
  if (core::validatePosition(setup, stack, messages) != 0) return false;
  core::setUpRoot(stack, setup);
  return true;
}

std::string fenRoot(const std::string& fen, core::PlyStack& stack) {
  std::string error;
  const auto setup = formats::readStandardFen(fen, error);
  if (!setup) return error.empty() ? "not a FEN line" : error;
  FirstMessage messages;
  if (core::validatePosition(*setup, stack, messages) != 0) {
    return messages.first.empty() ? "not a legal position" : messages.first;
  }
  core::setUpRoot(stack, *setup);
  return {};
}

}  // namespace velkaro::testing
