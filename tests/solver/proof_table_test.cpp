// What a proof answers for other numbers of plies left: a failure for as
// many or fewer, a success for as many or more, and nothing for another
// position or side to move; and which proofs a full bucket keeps.

#include <gtest/gtest.h>

#include <vector>

#include "solver/proof_table.h"

namespace velkaro::solver {
namespace {

using Proof = ProofTable::Proof;

TableKey keyOf(std::uint64_t squares, std::uint32_t side, int pliesLeft) {
  TableKey key;
  key.squares[0] = squares;
  key.squares[2] = ~squares;
  key.rest = side | (static_cast<std::uint32_t>(pliesLeft) << kPliesLeftShift) | (60u << 18) | (4u << 24);
  return key;
}

struct Case {
  Proof stored;
  int storedPlies;
  std::uint64_t askedSquares;
  std::uint32_t askedSide;
  int askedPlies;
  Proof answer;
};

constexpr std::uint64_t kSquares = 0x1234'5678'9abc'def0;

TEST(ProofTable, AnswersForOtherPliesOnlyWhatFollows) {
  const Case cases[] = {
      {Proof::Failure, 5, kSquares, 0, 5, Proof::Failure},
      {Proof::Failure, 5, kSquares, 0, 3, Proof::Failure},
      {Proof::Failure, 5, kSquares, 0, 7, Proof::None},
      {Proof::Success, 5, kSquares, 0, 5, Proof::Success},
      {Proof::Success, 5, kSquares, 0, 7, Proof::Success},
      {Proof::Success, 5, kSquares, 0, 3, Proof::None},
      {Proof::Failure, 5, kSquares, 1, 5, Proof::None},
      {Proof::Success, 5, kSquares ^ 1, 0, 7, Proof::None},
  };
  for (const Case& test : cases) {
    ProofTable table;
    table.reset(1);
    table.store(keyOf(kSquares, 0, test.storedPlies), test.stored);
    EXPECT_EQ(table.proved(keyOf(test.askedSquares, test.askedSide, test.askedPlies)), test.answer)
        << "stored " << test.storedPlies << " plies, asked " << test.askedPlies;
  }
}

// Proofs of positions 1, 2, 3, ... that all fall into one bucket of three.
struct Step {
  int position;
  Proof proof;
  int plies;
};

struct BucketCase {
  const char* what;
  std::vector<Step> stores;
  std::vector<Step> answers;  // asked with the plies given, answered with the proof given
};

TEST(ProofTable, AFullBucketKeepsTheDeeperProofs) {
  const BucketCase cases[] = {
      {"the two deepest stay, the newest comes in",
       {{1, Proof::Failure, 9}, {2, Proof::Failure, 8}, {3, Proof::Failure, 7}, {4, Proof::Failure, 1},
        {5, Proof::Failure, 1}, {6, Proof::Failure, 1}},
       {{1, Proof::Failure, 9}, {2, Proof::Failure, 8}, {3, Proof::None, 7}, {6, Proof::Failure, 1}}},
      {"a stronger failure takes the weaker one's place",
       {{1, Proof::Failure, 3}, {2, Proof::Failure, 2}, {3, Proof::Failure, 6}, {1, Proof::Failure, 5}},
       {{1, Proof::Failure, 5}, {2, Proof::Failure, 2}, {3, Proof::Failure, 6}}},
      {"a stronger success takes the weaker one's place",
       {{1, Proof::Success, 7}, {2, Proof::Failure, 2}, {3, Proof::Failure, 6}, {1, Proof::Success, 5}},
       {{1, Proof::Success, 5}, {2, Proof::Failure, 2}, {3, Proof::Failure, 6}}},
  };
  for (const BucketCase& test : cases) {
    ProofTable table;
    table.reset(1);
    for (const Step& step : test.stores) table.store(keyOf(kSquares + step.position, 0, step.plies), step.proof);
    for (const Step& step : test.answers) {
      EXPECT_EQ(table.proved(keyOf(kSquares + step.position, 0, step.plies)), step.proof)
          << test.what << ": position " << step.position;
    }
  }
}

}  // namespace
}  // namespace velkaro::solver
