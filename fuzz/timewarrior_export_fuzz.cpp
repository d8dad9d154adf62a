// A Timewarrior export is any file a user picks: whatever the bytes, the
// reader either refuses them with a line inside the text, or gives rows that
// are each an entry to import or a reason to skip one.
#include <cstddef>
#include <cstdint>
#include <string>

#include "interchange/timewarrior_export.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const quillora::ImportedFile file =
      quillora::ReadTimewarriorExport(bytes, quillora::Settings{}, {u"C", u""});
  if (!file.error.empty() && (!file.rows.empty() || file.error_line < 1))
    __builtin_trap();
  int lines = 1;
  for (char c : bytes) lines += c == '\n';
  if (file.error_line > lines) __builtin_trap();
  for (const quillora::ImportedEntry& row : file.rows) {
    if (row.skip.empty() && (row.entry.client.empty() || row.entry.task.empty() ||
                             row.entry.duration > 0xFFFF)) {
      __builtin_trap();
    }
  }
  return 0;
}
