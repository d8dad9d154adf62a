// The file object through which exports, reports and list files are written: wide
// text converted to the ANSI code page with exactly one byte written per
// character, or a UTF-16 byte order mark followed by raw UTF-16LE.
#ifndef QUILLORA_PLATFORM_NARROW_TEXT_WRITER_H_
#define QUILLORA_PLATFORM_NARROW_TEXT_WRITER_H_

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "platform/file.h"

namespace quillora {

class NarrowTextWriter {
 public:
  // `code_page` is the ANSI code page of the locale (1252 for US English).
  NarrowTextWriter(FileSystem& files, int code_page) : files_(files), code_page_(code_page) {}
  ~NarrowTextWriter();
  NarrowTextWriter(const NarrowTextWriter&) = delete;
  NarrowTextWriter& operator=(const NarrowTextWriter&) = delete;

  // Creates the file, replacing one that exists. False when it cannot.
  bool Open(const std::string& path);

  // Converts `text` to the ANSI code page and writes exactly as many bytes as
  // the text has characters: a conversion that yields more bytes (a double-
  // byte code page) is cut there, on purpose. False when the write fails.
  bool Write(std::u16string_view text);
  // A text handed over in parts: WritePart for each, then EndParts. The file
  // receives exactly the bytes one Write of the parts joined would give, the
  // cut at the character count included, written as the parts arrive, so a
  // long document never has to be held whole. Once a write has failed the
  // remaining parts are not written and both answer false.
  bool WritePart(std::u16string_view part);
  bool EndParts();
  // The two bytes FF FE.
  bool WriteByteOrderMark();
  // Two bytes per character, UTF-16LE.
  bool WriteRaw(std::u16string_view text);

  // Makes the file durable and closes it; false when that fails or any
  // write failed. The file keeps what was written either way.
  bool Close();

  // Bytes written by the last write, and whether it succeeded.
  std::size_t last_written() const { return last_written_; }
  bool last_ok() const { return last_ok_; }

 private:
  bool WriteBytes(const std::string& bytes);
  bool WriteBytes(const char* data, std::size_t size);
  // Writes the converted bytes of the parts that one byte per character
  // allows so far.
  bool WritePending();

  FileSystem& files_;
  int code_page_;
  std::unique_ptr<WritableFile> file_;
  std::size_t last_written_ = 0;
  bool last_ok_ = false;
  bool any_failed_ = false;
  // The text written in parts: a high surrogate that ended the last part
  // (converted with the character that follows it), bytes converted but not
  // yet due, the characters handed over and the bytes written.
  std::u16string held_;
  std::string pending_;
  std::size_t part_chars_ = 0;
  std::size_t part_bytes_ = 0;
  bool parts_failed_ = false;
};

}  // namespace quillora

#endif  // QUILLORA_PLATFORM_NARROW_TEXT_WRITER_H_
