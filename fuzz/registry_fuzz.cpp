// Feeds hostile bytes to the registry file reader and to the settings
// command's parser. The first byte picks which.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "store/settings.h"
#include "store/settings_values.h"

namespace {

const std::string& FilePath() {
  static const std::string path = [] {
    char dir[] = "/tmp/quillora-fuzz-XXXXXX";
    if (::mkdtemp(dir) == nullptr) std::abort();
    return std::string(dir) + "/registry.db";
  }();
  return path;
}

void ReadRegistryFile(std::string_view bytes) {
  const std::string& path = FilePath();
  for (const char* suffix : {"", "-wal", "-shm"}) std::remove((path + suffix).c_str());
  FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) std::abort();
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::fclose(file);
  std::string error;
  auto registry = quillora::OpenSqliteRegistry(path, &error);
  if (!registry) return;
  quillora::Settings settings;
  quillora::LoadSettings(*registry, &settings);
  quillora::ShowSettings(*registry);
  quillora::ReadNextClientSeed(*registry);
}

void SetFromText(std::string_view input) {
  static auto registry = quillora::OpenMemoryRegistry();
  const auto& table = quillora::KnownSettingValues();
  if (input.empty()) return;
  const auto& info = table[static_cast<unsigned char>(input[0]) % table.size()];
  std::string message;
  quillora::SetSettingFromText(*registry, info.name, input.substr(1), &message);
  quillora::Settings settings;
  quillora::LoadSettings(*registry, &settings);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  std::string_view input(reinterpret_cast<const char*>(data) + 1, size - 1);
  if (data[0] & 1) {
    ReadRegistryFile(input);
  } else {
    SetFromText(input);
  }
  return 0;
}
