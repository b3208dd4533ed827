// Tests of the settings file: what a file on disk gives at start-up with every
// fallback, the file a first start makes, and what a change writes back.

#include "formats/settings.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace velkaro::formats {
namespace {

using Bytes = std::vector<unsigned char>;

class SettingsFile : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ = std::filesystem::temp_directory_path() /
              ("velkaro-settings-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "-" +
               ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  std::filesystem::path file() const { return folder_ / kSettingsFileName; }

  void write(const Bytes& bytes) const {
    std::ofstream out(file(), std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  }

  Bytes read() const {
    std::ifstream in(file(), std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }

  std::filesystem::path folder_;
};

struct LoadCase {
  const char* what;
  Bytes bytes;
  int language;
  int intervalCode;
  int refreshInterval;
};

TEST_F(SettingsFile, FallsBackToTheDefaultsForWhatTheFileDoesNotSay) {
  const LoadCase cases[] = {
      {"Hungarian, every 100 000 moves", {255, 9, 1}, 9, 1, 100'000},
      {"both out of range at the bottom", {255, 0, 0}, 4, 3, 1'000'000},
      {"both out of range at the top", {255, 18, 6}, 4, 3, 1'000'000},
      {"a negative language", {255, 0xfe, 5}, 4, 5, 10'000'000},
      {"a negative code sets no interval", {255, 17, 0xff}, 17, -1, 1'000'000},
      {"the marker is not checked", {0, 1, 2}, 1, 2, 500'000},
      {"a fourth byte is ignored", {255, 7, 4, 99}, 7, 4, 5'000'000},
      {"a file without the code", {255, 13}, 13, 3, 1'000'000},
      {"a file of the marker alone", {255}, 4, 3, 1'000'000},
      {"an empty file", {}, 4, 3, 1'000'000},
  };
  for (const LoadCase& c : cases) {
    SCOPED_TRACE(c.what);
    write(c.bytes);
    const Settings settings = LoadSettings(folder_);
    EXPECT_EQ(settings.language, c.language);
    EXPECT_EQ(settings.intervalCode, c.intervalCode);
    EXPECT_EQ(refreshIntervalOf(settings.intervalCode), c.refreshInterval);
    if (c.intervalCode > 0) {
      EXPECT_EQ(intervalCodeOf(c.refreshInterval, -1), c.intervalCode);
    }
    EXPECT_EQ(read(), c.bytes) << "reading must leave an existing file alone";
  }
}

TEST_F(SettingsFile, FirstStartWritesFourBytesIntoANewFolder) {
  const std::filesystem::path folder = folder_ / "KVZ";
  const Settings settings = LoadSettings(folder);
  EXPECT_EQ(settings.language, kDefaultLanguage);
  EXPECT_EQ(settings.intervalCode, kDefaultIntervalCode);
  std::ifstream in(folder / kSettingsFileName, std::ios::binary);
  EXPECT_EQ(Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()), (Bytes{255, 4, 3, 0}));
}

TEST_F(SettingsFile, SavingWritesExactlyThreeBytes) {
  LoadSettings(folder_);
  ASSERT_EQ(read().size(), 4u);
  const int code = intervalCodeOf(5'000'000, kDefaultIntervalCode);
  EXPECT_EQ(intervalCodeOf(2'000'000, 2), 2) << "an interval outside the table keeps the code";
  ASSERT_TRUE(SaveSettings(folder_, {9, code}));
  EXPECT_EQ(read(), (Bytes{255, 9, 4}));
  const Settings back = LoadSettings(folder_);
  EXPECT_EQ(back.language, 9);
  EXPECT_EQ(refreshIntervalOf(back.intervalCode), 5'000'000);
}

TEST_F(SettingsFile, SavingIntoAMissingFolderWritesNothing) {
  EXPECT_FALSE(SaveSettings(folder_ / "missing", {4, 3}));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "missing"));
}

}  // namespace
}  // namespace velkaro::formats
