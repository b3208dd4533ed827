// Reading and writing the settings file. Nothing here shows a message: a
// missing, short or odd file falls back to the defaults without a word.

#include "formats/settings.h"

#include <array>
#include <fstream>
#include <system_error>

namespace velkaro::formats {
namespace {

constexpr unsigned char kMarker = 255;

std::filesystem::path settingsPath(const std::filesystem::path& folder) { return folder / kSettingsFileName; }

// The file is the user's alone, as every file of the problem folder.
bool writeBytes(const std::filesystem::path& path, const unsigned char* bytes, std::size_t size) {
  {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (!file) return false;
    file.write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(size));
    if (!file) return false;
  }
  std::error_code ignored;
  std::filesystem::permissions(path, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write,
                               std::filesystem::perm_options::replace, ignored);
  return true;
}

}  // namespace

Settings parseSettings(const unsigned char* bytes, std::size_t size) {
  Settings settings;
  if (size > 1) {
    const int language = static_cast<signed char>(bytes[1]);
    if (language >= 1 && language <= 17) settings.language = language;
  }
  if (size > 2) {
    const int code = static_cast<signed char>(bytes[2]);
    settings.intervalCode = (code == 0 || code > 5) ? kDefaultIntervalCode : code;
  }
  return settings;
}

int refreshIntervalOf(int intervalCode) {
  if (intervalCode < 1 || intervalCode > 5) return kDefaultRefreshInterval;
  return kRefreshIntervalTable[intervalCode - 1];
}

int intervalCodeOf(int refreshInterval, int previousCode) {
  for (int code = 1; code <= 5; ++code) {
    if (kRefreshIntervalTable[code - 1] == refreshInterval) return code;
  }
  return previousCode;
}

Settings LoadSettings(const std::filesystem::path& folder) {
  const std::filesystem::path path = settingsPath(folder);
  std::ifstream file(path, std::ios::binary);
  if (file) {
    std::array<unsigned char, 3> bytes{};
    file.read(reinterpret_cast<char*>(bytes.data()), bytes.size());
    return parseSettings(bytes.data(), static_cast<std::size_t>(file.gcount()));
  }
  std::error_code ignored;
  std::filesystem::create_directories(folder, ignored);
  const unsigned char firstStart[] = {kMarker, kDefaultLanguage, kDefaultIntervalCode, 0};
  writeBytes(path, firstStart, sizeof firstStart);
  return Settings{};
}

bool SaveSettings(const std::filesystem::path& folder, const Settings& settings) {
  const unsigned char bytes[] = {kMarker, static_cast<unsigned char>(settings.language),
                                 static_cast<unsigned char>(settings.intervalCode)};
  return writeBytes(settingsPath(folder), bytes, sizeof bytes);
}

}  // namespace velkaro::formats
