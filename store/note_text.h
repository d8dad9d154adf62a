// The note editor's byte form of a note, and the plain text in it.
//
// A note blob is: the four bytes "QNT1"; a 32-bit little-endian count of
// UTF-16 units; the typed text as that many UTF-16LE units; then, optionally,
// a drawing section ("DRW1", a 32-bit byte count, the stroke bytes). Entries
// keep notes byte for byte whatever they hold; the exports read only the text,
// the note control reads the strokes too.
#ifndef QUILLORA_STORE_NOTE_TEXT_H_
#define QUILLORA_STORE_NOTE_TEXT_H_

#include <cstddef>
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

// One point of a drawn stroke, in the note control's pixels from its top left.
struct NotePoint {
  std::int16_t x = 0;
  std::int16_t y = 0;
  friend bool operator==(const NotePoint&, const NotePoint&) = default;
};
using NoteStroke = std::vector<NotePoint>;

// The most strokes, and points in one stroke, a drawing section holds (each
// count is 16 bits); longer drawings are cut when written.
// A note read from a file (the command line's --note-file) is typed text: a
// larger file is refused before it is read.
inline constexpr std::size_t kNoteFileMaxBytes = std::size_t{1} << 20;
inline constexpr std::size_t kMaxNoteStrokes = 0xFFFF;
inline constexpr std::size_t kMaxStrokePoints = 0xFFFF;

// A note blob holding `text` exactly as typed and, when `strokes` is not
// empty, a drawing section with them (docs/notes.md gives the bytes).
std::vector<std::uint8_t> NoteBlobFromParts(const std::u16string& text,
                                            const std::vector<NoteStroke>& strokes);

// The typed text (line breaks as stored) and the strokes of a note blob. An
// empty blob is an empty note. False, with both emptied, for a blob that is
// not in the note editor's form or whose counts run past its end; nothing
// outside the blob is ever read.
bool ReadNoteBlob(const std::uint8_t* bytes, std::size_t size, std::u16string* text,
                  std::vector<NoteStroke>* strokes);

}  // namespace quillora

#endif  // QUILLORA_STORE_NOTE_TEXT_H_
