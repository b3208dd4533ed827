#pragma once
// What the file-format tests share: the data folder, whole files as text,
// set-ups from FEN lines, and a scratch folder of their own.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "core/position.h"
#include "formats/standard_fen.h"

namespace velkaro::formats::files_test {

inline std::filesystem::path dataPath(const std::string& name) {
  return std::filesystem::path(VELKARO_TEST_DATA_DIR) / "files" / name;
}

inline std::string readFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline core::BoardSetup setupOf(const std::string& fen) {
  std::string error;
  const auto setup = readStandardFen(fen, error);
  EXPECT_TRUE(setup) << fen << ": " << error;
  return setup.value_or(core::BoardSetup{});
}

// A fresh folder per test, removed with the fixture.
class ScratchFolder : public ::testing::Test {
 protected:
  void SetUp() override {
    const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
    folder_ = std::filesystem::temp_directory_path() /
              (std::string("velkaro_files_") + test->test_suite_name() + "_" + test->name());
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }
  std::filesystem::path folder_;
};

}  // namespace velkaro::formats::files_test
