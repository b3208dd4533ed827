// libFuzzer target for the settings file: any bytes on disk must give a
// language of 1..17 and a usable interval, and what is saved from them must
// read back the same.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include <unistd.h>

#include "formats/settings.h"

namespace {

using velkaro::formats::Settings;

// One folder for the whole run, removed when the fuzzer exits. It lies in
// memory where the system offers that: every input is written to disk twice.
struct ScratchFolder {
  ScratchFolder() : path(base() / ("velkaro-settings-fuzz-" + std::to_string(::getpid()))) {
    std::filesystem::create_directories(path);
  }
  static std::filesystem::path base() {
    std::error_code ignored;
    return std::filesystem::is_directory("/dev/shm", ignored) ? std::filesystem::path("/dev/shm")
                                                               : std::filesystem::temp_directory_path();
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  std::filesystem::path path;
};

const std::filesystem::path& scratchFolder() {
  static const ScratchFolder folder;
  return folder.path;
}

void checkSettings(const Settings& settings) {
  if (settings.language < 1 || settings.language > 17) __builtin_trap();
  if (settings.intervalCode == 0 || settings.intervalCode > 5) __builtin_trap();
  const int interval = velkaro::formats::refreshIntervalOf(settings.intervalCode);
  if (velkaro::formats::intervalCodeOf(interval, 0) == 0) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::filesystem::path& folder = scratchFolder();
  {
    std::ofstream file(folder / velkaro::formats::kSettingsFileName, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  }
  const Settings loaded = velkaro::formats::LoadSettings(folder);
  checkSettings(loaded);
  if (!velkaro::formats::SaveSettings(folder, loaded)) __builtin_trap();
  const Settings back = velkaro::formats::LoadSettings(folder);
  if (back.language != loaded.language || back.intervalCode != loaded.intervalCode) __builtin_trap();
  return 0;
}
