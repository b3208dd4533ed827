#pragma once
// The settings file "kvzl.cfg" in the problem folder: the notation language and
// the refresh interval, kept from one run to the next in three bytes (255, the
// language, the interval code); the file made at first start has a fourth, 0.

#include <cstddef>
#include <filesystem>

namespace velkaro::formats {

inline constexpr char kSettingsFileName[] = "kvzl.cfg";
inline constexpr int kDefaultLanguage = 4;       // English
inline constexpr int kDefaultIntervalCode = 3;   // 1 000 000 moves
inline constexpr int kDefaultRefreshInterval = 1'000'000;
// Moves between two refreshes, for the interval codes 1 to 5.
inline constexpr int kRefreshIntervalTable[5] = {100'000, 500'000, 1'000'000, 5'000'000, 10'000'000};

struct Settings {
  int language = kDefaultLanguage;  // 1..17
  // 1..5 normally. A negative code read from the file is kept as it is: it
  // selects no interval, and the default stays in force.
  int intervalCode = kDefaultIntervalCode;
};

// What the bytes of a settings file say. Byte 1 is taken as the language only
// within 1..17; byte 2 of 0 or above 5 becomes 3. Bytes the file lacks leave
// their defaults. The marker byte is not checked.
Settings parseSettings(const unsigned char* bytes, std::size_t size);

// The moves between refreshes for an interval code; the default for a code
// outside the table.
int refreshIntervalOf(int intervalCode);

// The code of an interval in the table; `previousCode` when it is not there.
int intervalCodeOf(int refreshInterval, int previousCode);

// Reads the settings from `folder`. When the file cannot be opened (the first
// start), the folder is created if need be and the file is written with the
// four bytes 255, 4, 3, 0; the defaults are returned.
Settings LoadSettings(const std::filesystem::path& folder);

// Writes the three bytes 255, language, code, replacing the file. False when
// the file cannot be created; nothing is written then.
bool SaveSettings(const std::filesystem::path& folder, const Settings& settings);

}  // namespace velkaro::formats
