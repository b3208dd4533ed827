// Selfmates and helpmates against their published solutions, line for line,
// with either side moving first; Stop and Continue; a helpmate's short mate on
// the way and its minimum-moves run.

#include <gtest/gtest.h>

#include <string>

#include "solver_fixture.h"

namespace velkaro::solver {
namespace {

const Problem kProblems[] = {
    // The defences that mate at once are lines of their own.
    {"W. Pauly 1912: promotion key", "KB3N2/P1P1p1P1/5P1k/4P2p/7P/8/6B1/7b w - -", "S#2",
     "Solution No 1\n"
     "1.  c7 - c8N\n"
     "\t1....,  e7 - e6   2.  g7 - g8B\n"
     "\t1....,  e7 - f6   2.  e5 - f6 \n"
     "\t1...., Bh1 - g2 #\n"
     "No more solutions\n"},
    {"P. Moutecidis, Biuletyn 1959", "6Bk/5Rn1/5N2/4Q2P/8/3ppp2/4p1p1/4K1N1 w - -", "S#2",
     "Solution No 1\n"
     "1. Bg8 - h7 \n"
     "\t1...., Ng7 - e8   2. Qe5 - b8 \n"
     "\t1...., Ng7 - e6   2. Qe5 - e6 \n"
     "\t1...., Ng7 - f5   2. Bh7 - f5 \n"
     "\t1...., Ng7 - h5   2. Qe5 - h5 \n"
     "\t1....,  d3 - d2 #\n"
     "\t1....,  f3 - f2 #\n"
     "No more solutions\n"},
    // The same with colours exchanged: Black plays first and is mated.
    {"selfmate, Black first", "4k1n1/4P1P1/3PPP2/8/4q2p/5n2/5rN1/6bK b - -", "S#2",
     "Solution No 1\n"
     "1. Bg1 - h2 \n"
     "\t1....,  d6 - d7 #\n"
     "\t1....,  f6 - f7 #\n"
     "\t1...., Ng2 - f4   2. Bh2 - f4 \n"
     "\t1...., Ng2 - h4   2. Qe4 - h4 \n"
     "\t1...., Ng2 - e3   2. Qe4 - e3 \n"
     "\t1...., Ng2 - e1   2. Qe4 - b1 \n"
     "No more solutions\n"},
    {"N. Argunov, Shakhmatnaya Kompozitsiya 1999: checking key", "2N2bBR/4P1k1/7p/2N2p1P/3p1P2/1PpP4/2Kp4/1n1R4 w - -",
     "S#2",
     "Solution No 1\n"
     "1. Nc5 - e6 \n"
     "\t1...., Kg7 - h8   2.  e7 - f8R\n"
     "\t1...., Kg7 - f6   2.  e7 - f8N\n"
     "No more solutions\n"},
    {"T. Garai, Probleemblad 1989: two solutions", "4R3/8/Q7/1B1p4/2bpR3/P2kr3/6K1/6b1 b - -", "H#2",
     "  Solution No 1\n"
     "1. Bc4 - b5 ,  Re4 - e3 \n"
     "2. Kd3 - c4 ,  Re8 - c8 #\n"
     "  Solution No 2\n"
     "1. Re3 - e4 ,  Bb5 - c4 \n"
     "2. Kd3 - e3 ,  Qa6 - h6 #\n"
     "No more solutions\n"},
    // The same with colours exchanged: White plays first and is mated.
    {"helpmate, White first", "6B1/6k1/p2KR3/2BPr3/1b1P4/q7/8/4r3 w - -", "H#2",
     "  Solution No 1\n"
     "1. Re6 - e5 ,  Bb4 - c5 \n"
     "2. Kd6 - e6 ,  Qa3 - h3 #\n"
     "  Solution No 2\n"
     "1. Bc5 - b4 ,  Re5 - e6 \n"
     "2. Kd6 - c5 ,  Re1 - c1 #\n"
     "No more solutions\n"},
    {"J. Mintz, The Problemist 1982", "8/8/8/8/k7/2R5/p5N1/7K b - -", "H#3",
     "  Solution No 1\n"
     "1.  a2 - a1Q,  Ng2 - e1 \n"
     "2. Qa1 - b2 ,  Ne1 - c2 \n"
     "3. Qb2 - b5 ,  Rc3 - a3 #\n"
     "No more solutions\n"},
    {"no helpmate", "8/8/8/8/k7/2R5/p5N1/7K b - -", "H#2", "  Solution no found\n"},
};

TEST(SelfmateAndHelpmate, PublishedProblems) {
  for (const Problem& problem : kProblems) {
    Solve solve(problem.fen, problem.stipulation);
    EXPECT_EQ(solve.runToEnd(), problem.text) << problem.name;
  }
}

// A mate before the last move ends a shorter solution in its turn: here
// 1...Kg8 2.Ra8# among the helpmates in 2.
TEST(Helpmate, ShortMateOnTheWay) {
  Solve solve("7k/8/6K1/8/8/8/8/R7 b - -", "H#2");
  const std::string text = solve.runToEnd();
  EXPECT_NE(text.find("  Solution No 8\n1. Kh8 - g8 ,  Ra1 - a7 \n2. Kg8 - h8 ,  Ra7 - a8 #\n"
                      "  Solution No 9\n1. Kh8 - g8 ,  Ra1 - a8 #\n"
                      "  Solution No 10\n1. Kh8 - g8 ,  Ra1 - b1 \n"),
            std::string::npos)
      << text;
  EXPECT_TRUE(text.ends_with("  Solution No 14\n1. Kh8 - g8 ,  Ra1 - f1 \n2. Kg8 - h8 ,  Rf1 - f8 #\n"
                             "No more solutions\n"));
}

TEST(SelfmateAndHelpmate, StopAndContinueChangeNothing) {
  for (const char* stipulation : {"S#2", "H#2"}) {
    const char* fen = stipulation[0] == 'S' ? "6Bk/5Rn1/5N2/4Q2P/8/3ppp2/4p1p1/4K1N1 w - -"
                                            : "4R3/8/Q7/1B1p4/2bpR3/P2kr3/6K1/6b1 b - -";
    for (const bool pauseAtSolutions : {false, true}) {
      Solve whole(fen, stipulation);
      whole.settings.stopOnFirstSolution = pauseAtSolutions;
      const std::string expected = whole.runToEnd();
      for (const int every : {1, 5}) {
        Solve interrupted(fen, stipulation);
        interrupted.settings.stopOnFirstSolution = pauseAtSolutions;
        interrupted.stopEveryTick(every, 53);
        EXPECT_EQ(interrupted.runToEnd(), expected) << stipulation << " every " << every;
        EXPECT_GT(interrupted.stops, 5) << stipulation;
      }
    }
  }
}

// In 1 move there is no helpmate; in 2 both solutions; the ending's buffer
// text is the program's own, unformatted.
TEST(Helpmate, MinimumMoves) {
  Solve solve("4R3/8/Q7/1B1p4/2bpR3/P2kr3/6K1/6b1 b - -", "H#3");
  solve.settings.minimumMoves = true;
  EXPECT_EQ(solve.runToEnd(),
            "In 1 moves:\n - no solution\n"
            "In 2 moves:\n"
            "  Solution No 1\n"
            "1. Bc4 - b5 ,  Re4 - e3 \n"
            "2. Kd3 - c4 ,  Re8 - c8 #\n"
            "  Solution No 2\n"
            "1. Re3 - e4 ,  Bb5 - c4 \n"
            "2. Kd3 - e3 ,  Qa6 - h6 #\n"
            "%s No more solutions");
  EXPECT_EQ(solve.tree().back(), " No more solutions");
}

// A chosen first move: only the helpmates that begin with it.
TEST(Helpmate, ChosenFirstMove) {
  Solve solve("4R3/8/Q7/1B1p4/2bpR3/P2kr3/6K1/6b1 b - -", "H#2");
  solve.chooseFirstMove("e3e4");
  EXPECT_EQ(solve.runToEnd(),
            "  Solution No 1\n"
            "1. Re3 - e4 ,  Bb5 - c4 \n"
            "2. Kd3 - e3 ,  Qa6 - h6 #\n"
            "No more solutions\n");
}

}  // namespace
}  // namespace velkaro::solver
