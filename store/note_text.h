// The note editor's byte form of a note, and the plain text in it.
//
// A note blob is: the four bytes "QNT1"; a 32-bit little-endian count of
// UTF-16 units; the typed text as that many UTF-16LE units; then, optionally,
// a drawing section ("DRW1", a 32-bit byte count, the stroke bytes). Entries
// keep notes byte for byte whatever they hold; only the text is ever read.
#ifndef QUILLORA_STORE_NOTE_TEXT_H_
#define QUILLORA_STORE_NOTE_TEXT_H_

#include <cstdint>
#include <string>
#include <vector>

namespace quillora {

// A note blob holding `text` as its typed text and no drawing.
std::vector<std::uint8_t> NoteBlobFromText(const std::u16string& text);

// The typed text of a note blob with every line break as CR LF. A blob that is
// not in the note editor's form, or whose counts run past its end, gives empty
// text; nothing outside the blob is ever read.
std::u16string NoteBlobToText(const std::uint8_t* bytes, std::size_t size);

}  // namespace quillora

#endif  // QUILLORA_STORE_NOTE_TEXT_H_
