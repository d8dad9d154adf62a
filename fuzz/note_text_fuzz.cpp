// Note blobs come from backups and archives: any bytes must decode to some
// text, or none, without reading outside the blob.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "store/note_text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // A copy of exactly `size` bytes, so that any read past the end is caught.
  std::vector<std::uint8_t> blob(data, data + size);
  const std::u16string text = quillora::NoteBlobToText(blob.data(), blob.size());
  if (text.size() > size) __builtin_trap();
  std::u16string typed;
  std::vector<quillora::NoteStroke> strokes;
  if (quillora::ReadNoteBlob(blob.data(), blob.size(), &typed, &strokes)) {
    // What was read writes back to the same bytes.
    if (!blob.empty() && quillora::NoteBlobFromParts(typed, strokes) != blob &&
        !strokes.empty()) {
      __builtin_trap();
    }
  }
  return 0;
}
