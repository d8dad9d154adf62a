// Restores arbitrary bytes, as a backup and as an archive, into a fresh
// volume: whatever the file holds, the restore answers a result and never
// reads out of bounds or crashes.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "backup/archive.h"
#include "backup/backup.h"
#include "platform/registry.h"

namespace {

using namespace quillora;

// Serves the fuzzer's bytes as the one file there is.
class InputFiles : public FileSystem {
 public:
  explicit InputFiles(std::string bytes) : bytes_(std::move(bytes)) {}
  std::unique_ptr<WritableFile> CreateAlways(const std::string&) override {
    return nullptr;
  }
  bool ReadWholeFile(const std::string&, std::string* bytes, std::size_t) override {
    *bytes = bytes_;
    return true;
  }
  bool Exists(const std::string&) override { return true; }

 private:
  std::string bytes_;
};

std::string VolumePath() {
  const char* dir = access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
  return std::string(dir) + "/quillora-restore-fuzz-" + std::to_string(getpid()) + ".db";
}

void RemoveVolume(const std::string& path) {
  for (const char* suffix : {"", "-wal", "-shm", "-journal"})
    unlink((path + suffix).c_str());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::unique_ptr<Locale> locale = Locale::UsEnglish();
  const std::string path = VolumePath();
  RemoveVolume(path);
  InputFiles files(std::string(reinterpret_cast<const char*>(data), size));
  {
    std::string error;
    std::unique_ptr<ObjectStore> volume = OpenSqliteObjectStore(path, &error);
    if (!volume) std::abort();
    std::unique_ptr<Registry> registry = OpenMemoryRegistry();
    Catalogue catalogue(*volume, registry.get());
    EntryStore entries(*volume);
    if (!catalogue.Open() || !entries.Open()) std::abort();
    {
      BackupWriter writer(entries, catalogue, *locale);
      const int result = Restore(writer, files, "input.qrd");
      if (result < kRestoreOk || result > kRestoreContentRefused) std::abort();
    }
    {
      ArchiveWriter writer(entries, catalogue, *locale, kArchiveData, 0, 0, {});
      const int result = Restore(writer, files, "input.qra");
      if (result < kRestoreOk || result > kRestoreContentRefused) std::abort();
    }
  }
  RemoveVolume(path);
  return 0;
}
