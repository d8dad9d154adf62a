// Opens arbitrary bytes as a compound file and, when they are accepted, walks
// every storage and reads every stream.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/compound_file.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace quillora;
  CompoundReader reader;
  if (reader.OpenBytes(std::string(reinterpret_cast<const char*>(data), size)) !=
      CompoundResult::kOk) {
    return 0;
  }
  std::vector<CompoundStorage> storages{reader.root()};
  std::string bytes;
  while (!storages.empty()) {
    const CompoundStorage storage = storages.back();
    storages.pop_back();
    CompoundEnumerator it = reader.EnumElements(storage);
    for (CompoundElement e; it.Next(&e);) {
      if (e.type == CompoundElementType::kStorage) {
        CompoundStorage child;
        if (reader.OpenStorage(storage, e.name, &child) != CompoundResult::kOk)
          __builtin_trap();
        storages.push_back(child);
      } else {
        CompoundStream stream;
        if (reader.OpenStream(storage, e.name, &stream) != CompoundResult::kOk ||
            reader.ReadStream(stream, &bytes) != CompoundResult::kOk ||
            bytes.size() != e.size) {
          __builtin_trap();
        }
      }
    }
  }
  return 0;
}
