// List files are any text a user picks: whatever the bytes, the reader gives
// names that are not empty, hold no line break and are at most 128 long.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "interchange/list_files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  for (int code_page : {1252, 932}) {
    std::vector<std::u16string> names;
    if (!quillora::ParseListFile(bytes, code_page, &names) && !names.empty()) {
      __builtin_trap();
    }
    for (const std::u16string& name : names) {
      if (name.empty() || name.size() > quillora::kListNameLimit) __builtin_trap();
      if (name.find_first_of(u"\r\n") != std::u16string::npos) __builtin_trap();
    }
  }
  return 0;
}
