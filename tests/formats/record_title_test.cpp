// A record's title: its author, site and date from the tags or opcodes of
// its file type, or the line of text above a FEN record; never another
// record's.

#include "formats/record_title.h"

#include <gtest/gtest.h>

namespace velkaro::formats {
namespace {

TEST(RecordTitle, TagsOpcodesOrTheLineAbove) {
  const std::vector<std::string> fen = {"A. Kish, Christian Science Monitor 1935",
                                        "[Ask \"#2\"]",
                                        "2n2K2/1Q3Pr1/3pk3/5bp1/4p1q1/2B1nNNB/8/8 w - -",
                                        "",
                                        "[Ask \"H#2\"]",
                                        "[Author \"T. Garai\"]",
                                        "[Site \"Probleemblad\"]",
                                        "[Date \"1989\"]",
                                        "4R3/8/Q7/1B1p4/2bpR3/P2kr3/6K1/6b1 b - -",
                                        "8/8/8/8/k7/2R5/p5N1/7K b - -"};
  EXPECT_EQ(recordTitle(fen, 2, "FEN"), "A. Kish, Christian Science Monitor 1935");
  EXPECT_EQ(recordTitle(fen, 8, "FEN"), "T. Garai, Probleemblad, 1989");
  EXPECT_EQ(recordTitle(fen, 9, "FEN"), "");  // the record above ends the walk
  const std::vector<std::string> pgn = {"[Event \"H#\"]", "[White \"J. Mintz\"]", "[Site \"?\"]",
                                        "[PlyCount \"3\"]", "[FEN \"8/8/8/8/k7/2R5/p5N1/7K b - -\"]", "",
                                        "[Event \"#\"]", "[FEN \"8/8/8/8/8/8/8/K6k w - -\"]"};
  EXPECT_EQ(recordTitle(pgn, 4, "PGN"), "J. Mintz");
  EXPECT_EQ(recordTitle(pgn, 7, "PGN"), "");
  const std::vector<std::string> epd = {"8/8/8/8/8/8/8/K6k w - - c0 A. Author;c1 Somewhere;c6 #;dm 2;",
                                        "8/8/8/8/8/8/8/K6k w - - c6 #;dm 2;"};
  EXPECT_EQ(recordTitle(epd, 0, "EPD"), "A. Author, Somewhere");
  EXPECT_EQ(recordTitle(epd, 1, "EPD"), "");
}

}  // namespace
}  // namespace velkaro::formats
