#pragma once
// How the engines tell the user that a set-up was refused: the window shows a
// message box, the command line prints to stderr, a test records the text.

#include <string_view>

namespace velkaro::core {

// Caption of every message box the program shows.
inline constexpr std::string_view kMessageCaption = "Velkaro";

class MessageSink {
 public:
  virtual ~MessageSink() = default;
  virtual void showMessage(std::string_view caption, std::string_view text) = 0;
};

}  // namespace velkaro::core
