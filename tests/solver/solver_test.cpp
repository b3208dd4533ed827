// Direct mates against their published solutions, line for line, and the
// driver's options: Stop and Continue, all second moves, a chosen first move,
// minimum moves and refused set-ups.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "counter/first_moves.h"
#include "solver/solver_job.h"
#include "solver_fixture.h"

namespace velkaro::solver {
namespace {

// Composers and sources as published; the texts are Velkaro's.
const Problem kDirectMates[] = {
    {"mate in 1", "k7/8/1K6/8/8/8/8/7R w - -", "#1", "Solution No 1\n1. Rh1 - h8 #\nNo more solutions\n"},
    {"A. Kish, Christian Science Monitor 1935", "2n2K2/1Q3Pr1/3pk3/5bp1/4p1q1/2B1nNNB/8/8 w - -", "#2",
     "Solution No 1\n"
     "1. Kf8 - e8   threat:  2.  f7 - f8N#\n"
     "\t1...., Rg7 - g8   2.  f7 - g8Q#\n"
     "\t1...., Rg7 - f7   2. Qb7 - f7 #\n"
     "\t1....,  d6 - d5   2. Qb7 - d7 #\n"
     "\t1...., Bf5 - g6   2. Nf3 - g5 #\n"
     "\t1...., Qg4 - h5   2. Qb7 - e4 #\n"
     "\t1...., Ne3 - d5   2. Qb7 - d7 #\n"
     "No more solutions\n"},
    {"K. S. Howard, The Observer 1926", "1b3B2/2N2b2/3n4/2Q5/rp3K2/k2N4/1pP5/1B6 w - -", "#2",
     "Solution No 1\n"
     "1. Qc5 - d4   threat:  2. Qd4 - b2 #\n"
     "\t1...., Nd6 - c4   2. Qd4 - c3 #\n"
     "\t1...., Ra4 - a5   2. Qd4 - b4 #\n"
     "\t1...., Ra4 - a6   2. Qd4 - b4 #\n"
     "\t1...., Ra4 - a7   2. Qd4 - b4 #\n"
     "\t1...., Ra4 - a8   2. Qd4 - b4 #\n"
     "\t1....,  b4 - b3   2. Nc7 - b5 #\n"
     "No more solutions\n"},
    // Two threats; replies that repeat the first one are left out.
    {"J. Haring, Arbejder Skak 1960", "2B5/8/4N1r1/2Kp4/3pkP2/R2N3Q/4b1P1/6b1 w - -", "#2",
     "Solution No 1\n"
     "1. Kc5 - b4   threat:  2. Ne6 - c5 #\n"
     "\t1...., Rg6 - g3   2. Nd3 - c5 #\n"
     "\t1...., Rg6 - e6   2. Qh3 - e6 #\n"
     "\t1...., Be2 - f3   2. Nd3 - c5 #\n"
     "\t1...., Be2 - d3   2. Qh3 - d3 #\n"
     "No more solutions\n"},
    // No threat: the key waits.
    {"D. M. Howard, Problem Observer 2007", "B7/8/7Q/4k3/KNp5/8/5P2/8 w - -", "#3",
     "Solution No 1\n"
     "1. Qh6 - g6 \n"
     "\t1...., Ke5 - f4   2. Qg6 - h5 \n"
     "\t1...., Ke5 - d4   2. Qg6 - f6 \n"
     "\t1....,  c4 - c3   2. Nb4 - d3 \n"
     "No more solutions\n"},
    {"R. Skuja, Wiener Schachzeitung 1934: castling key", "4k2r/5p1p/5Q2/8/8/4p3/8/R3K3 w Qk -", "#2",
     "Solution No 1\n"
     "1. 0 - 0 - 0  threat:  2. Qf6 - d8 #\n"
     "\t1...., Ke8 - f8   2. Rd1 - d8 #\n"
     "\t1...., 0 - 0  2. Rd1 - g1 #\n"
     "No more solutions\n"},
    {"W. A. Shinkman 1912: promotion key", "4kB2/6P1/8/3Q4/8/8/8/7K w - -", "#2",
     "Solution No 1\n1.  g7 - g8B\n\t1...., Ke8 - f8   2. Qd5 - f7 #\nNo more solutions\n"},
    {"H. Reddmann, Die Schwalbe 2019: castling mate", "2nn1R1r/5b2/8/7p/6p1/Q5Np/3B1NkP/4K2R w K -", "#2",
     "Solution No 1\n"
     "1. Nf2 - d3   threat:  2. Nd3 - f4 #\n"
     "\t1...., Nd8 - e6   2. Qa3 - a8 #\n"
     "\t1...., Bf7 - g8   2. Rf8 - f2 #\n"
     "\t1...., Bf7 - g6   2. Rf8 - f2 #\n"
     "\t1...., Bf7 - e8   2. Rf8 - f2 #\n"
     "\t1...., Bf7 - e6   2. Rf8 - f2 #\n"
     "\t1...., Bf7 - d5   2. Rf8 - f2 #\n"
     "\t1...., Bf7 - c4   2. Rf8 - f2 #\n"
     "\t1...., Bf7 - b3   2. Rf8 - f2 #\n"
     "\t1...., Bf7 - a2   2. Rf8 - f2 #\n"
     "\t1...., Kg2 - f3   2. 0 - 0#\n"
     "No more solutions\n"},
    // The Kish problem with colours exchanged: Black plays first and mates.
    {"Black first", "8/8/2b1Nnnb/4P1Q1/5BP1/3PK3/1q3pR1/2N2k2 b - -", "#2",
     "Solution No 1\n"
     "1. Kf1 - e1   threat:  2.  f2 - f1N#\n"
     "\t1...., Ne6 - d4   2. Qb2 - d2 #\n"
     "\t1...., Qg5 - h4   2. Qb2 - e5 #\n"
     "\t1...., Bf4 - g3   2. Nf6 - g4 #\n"
     "\t1....,  d3 - d4   2. Qb2 - d2 #\n"
     "\t1...., Rg2 - g1   2.  f2 - g1Q#\n"
     "\t1...., Rg2 - f2   2. Qb2 - f2 #\n"
     "No more solutions\n"},
    {"V. Shmatov, StrateGems 2012", "8/7p/8/4p2K/5kPP/1Q4N1/8/8 w - -", "#3",
     "Solution No 1\n"
     "1. Qb3 - a3 \n"
     "\t1....,  h7 - h6   2. Qa3 - c3 \n"
     "\t1....,  e5 - e4   2. Ng3 - f5 \n"
     "No more solutions\n"},
};

TEST(DirectMate, PublishedProblems) {
  for (const Problem& problem : kDirectMates) {
    Solve solve(problem.fen, problem.stipulation);
    EXPECT_EQ(solve.runToEnd(), problem.text) << problem.name;
  }
}

// J. Kling, The Chess Euclid 1849: the key takes en passant after b7-b5.
TEST(DirectMate, EnPassantKeyNeedsTheLastMove) {
  const char* fen = "R7/7q/7r/Pp6/5p1r/7P/4Q3/k3K2R w K -";
  Solve withLastMove(fen, "#2", core::squareAt(1, 5));
  EXPECT_EQ(withLastMove.runToEnd(),
            "Solution No 1\n"
            "1.  a5 - b6 \n"
            "\t1...., Qh7 - a7   2. Ke1 - f2 #\n"
            "\t1...., Ka1 - b1   2. Ke1 - f2 #\n"
            "No more solutions\n");
  Solve without(fen, "#2");
  EXPECT_EQ(without.runToEnd(), "No solution\n");
}

// Variation lines hang under their key line in the result tree.
TEST(DirectMate, VariationsAreChildrenOfTheKey) {
  Solve solve("8/7p/8/4p2K/5kPP/1Q4N1/8/8 w - -", "#3");
  solve.runToEnd();
  EXPECT_EQ(solve.tree(), (std::vector<std::string>{"Solution No 1", "1. Qb3 - a3 ", "  1....,  h7 - h6   2. Qa3 - c3 ",
                                                    "  1....,  e5 - e4   2. Ng3 - f5 ", "No more solutions"}));
}

// Stopping at every k-th progress tick and continuing gives exactly the
// lines of an uninterrupted run, with and without a pause at each key.
TEST(DirectMate, StopAndContinueChangeNothing) {
  const char* fen = "B7/8/7Q/4k3/KNp5/8/5P2/8 w - -";
  for (const bool pauseAtKeys : {false, true}) {
    Solve whole(fen, "#3");
    whole.settings.stopOnFirstSolution = pauseAtKeys;
    const std::string expected = whole.runToEnd();
    for (const int k : {1, 2, 7}) {
      Solve interrupted(fen, "#3");
      interrupted.settings.stopOnFirstSolution = pauseAtKeys;
      interrupted.stopEveryTick(k, 37);
      EXPECT_EQ(interrupted.runToEnd(), expected) << "stopping at every " << k << ". tick";
      EXPECT_GT(interrupted.stops, 10) << k;
      EXPECT_EQ(interrupted.job.testedMoves().total(), whole.job.testedMoves().total());
    }
  }
}

// Every working second move, the duals lined up under the first; quiet
// continuations and mates alike. L. Makaronets, Best Problems 2019.
TEST(DirectMate, TestingAllSecondMovesListsEveryReply) {
  Solve solve("K5R1/7p/7p/8/R3PkP1/3p1b2/3pBQn1/4n2N w - -", "#3");
  solve.settings.testAllSecondMoves = true;
  EXPECT_EQ(solve.runToEnd(),
            "Solution No 1\n"
            "1. Qf2 - b6 \n"
            "\t1....,  h6 - h5   2. Qb6 - h6 \n"
            "\t1...., Kf4 - e5   2. Qb6 - c7 \n"
            "\t1....,  d3 - e2   2. Qb6 - h6 \n"
            "\t1...., Bf3 - g4   2. Rg8 - g4 \n"
            "\t1...., Bf3 - e4   2. Qb6 - c6 \n"
            "\t1...., Bf3 - e2   2. Qb6 - f6 \n"
            "\t1....,  d2 - d1Q  2. Qb6 - h6 \n"
            "\t1....,  d2 - d1N  2. Qb6 - h6 \n"
            "\t1....,  d2 - d1R  2. Qb6 - h6 \n"
            "\t1....,  d2 - d1B  2. Qb6 - h6 \n"
            "\t1...., Ng2 - h4   2. Qb6 - h6 \n"
            "\t1...., Ng2 - e3   2. Qb6 - b8 #\n"
            "\t                        2. Qb6 - d6 #\n"
            "\t                        2. Qb6 - h6 \n"
            "\t                        2. Qb6 - c7 #\n"
            "\t1...., Ne1 - c2   2. Qb6 - f6 \n"
            "\t                        2. Qb6 - h6 \n"
            "No more solutions\n");
  // In a two-mover every mate after each defence is listed.
  Solve twoMover("2n2K2/1Q3Pr1/3pk3/5bp1/4p1q1/2B1nNNB/8/8 w - -", "#2");
  twoMover.settings.testAllSecondMoves = true;
  const std::string text = twoMover.runToEnd();
  EXPECT_NE(text.find("\t1...., Rg7 - g8   2.  f7 - g8Q#\n\t                        2.  f7 - g8B#\n"),
            std::string::npos);
  EXPECT_NE(text.find("\t1...., Ne3 - d5   2. Qb7 - d7 #\n\t                        2. Qb7 - c8 #\n"
                      "\t                        2.  f7 - f8N#\n"),
            std::string::npos);
  EXPECT_EQ(text.find("threat"), std::string::npos);
}

// Continue after a key reads "Testing all second moves" again; Continue
// after Stop does not.
TEST(DirectMate, SecondMovesOptionReadAgainAtEachKey) {
  Solve solve("8/7p/8/4p2K/5kPP/1Q4N1/8/8 w - -", "#4");  // three keys in four moves
  solve.settings.stopOnFirstSolution = true;
  ASSERT_EQ(solve.job.start(solve.settings), RunEnd::Solution);
  ASSERT_EQ(solve.job.resume(true), RunEnd::Solution);
  ASSERT_EQ(solve.job.resume(false), RunEnd::Solution);
  ASSERT_EQ(solve.job.resume(), RunEnd::Finished);
  EXPECT_EQ(solve.job.solutionText(),
            "Solution No 1\n"
            "1. Qb3 - a3 \n"
            "\t1....,  h7 - h6   2. Qa3 - c3 \n"
            "\t1....,  e5 - e4   2. Ng3 - f5 \n"
            "Solution No 2\n"
            "1. Qb3 - c3 \n"
            "\t1....,  h7 - h6   2. Kh5 - g6 \n"
            "\t                        2. Qc3 - a3 \n"
            "\t                        2. Ng3 - f5 \n"
            "\t1....,  e5 - e4   2. Ng3 - f5 \n"
            "\t                        2. Ng3 - e2 #\n"
            "\t                        2. Ng3 - f1 \n"
            "Solution No 3\n"
            "1. Ng3 - f5   threat:  2. Qb3 - e3 #\n"
            "\t1....,  h7 - h6   2. Nf5 - e7 \n"
            "\t1....,  e5 - e4   2. Qb3 - a3 \n"
            "\t1...., Kf4 - e4   2. Kh5 - g5 \n"
            "No more solutions\n");
}

TEST(DirectMate, ChosenFirstMove) {
  const char* fen = "8/7p/8/4p2K/5kPP/1Q4N1/8/8 w - -";
  Solve key(fen, "#3");
  key.chooseFirstMove("Qb3-a3");
  EXPECT_EQ(key.runToEnd(),
            "1. Qb3 - a3    O.K.\n"
            "\t1....,  h7 - h6   2. Qa3 - c3 \n"
            "\t1....,  e5 - e4   2. Ng3 - f5 \n");
  EXPECT_TRUE(key.job.finished());
  Solve refuted(fen, "#3");
  refuted.chooseFirstMove("Qb3-c3");  // refuted by 1...h6
  EXPECT_EQ(refuted.runToEnd(), "No solution\n");
}

TEST(DirectMate, MinimumMoves) {
  Solve solve("8/7p/8/4p2K/5kPP/1Q4N1/8/8 w - -", "#5");
  solve.settings.minimumMoves = true;
  EXPECT_EQ(solve.runToEnd(),
            "In 1 moves:\n- no solution\n"
            "In 2 moves:\n- no solution\n"
            "In 3 moves:\n"
            "Solution No 1\n"
            "1. Qb3 - a3 \n"
            "\t1....,  h7 - h6   2. Qa3 - c3 \n"
            "\t1....,  e5 - e4   2. Ng3 - f5 \n"
            "No more solutions");  // the program's own ending: no line break
  // Up to the stipulated number of moves and no further.
  Solve tooShort("8/7p/8/4p2K/5kPP/1Q4N1/8/8 w - -", "#2");
  tooShort.settings.minimumMoves = true;
  EXPECT_EQ(tooShort.runToEnd(), "In 1 moves:\n- no solution\nIn 2 moves:\n- no solution\n");
  EXPECT_TRUE(tooShort.job.finished());
}

TEST(DirectMate, RefusedSetUpSearchesNothing) {
  Solve solve("8/8/8/8/8/8/K7/k6R b - -", "#1");  // the side not to move is in check
  EXPECT_EQ(solve.job.start(solve.settings), RunEnd::Refused);
  EXPECT_EQ(solve.messages, (std::vector<std::string>{"Velkaro: CHECKMATE !"}));
  EXPECT_EQ(solve.job.testedMoves().total(), 0u);
  EXPECT_EQ(solve.job.solutionText(), "");
}

}  // namespace
}  // namespace velkaro::solver
