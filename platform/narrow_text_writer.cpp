#include "platform/narrow_text_writer.h"

#include "platform/code_page.h"

namespace quillora {

NarrowTextWriter::~NarrowTextWriter() {
  if (file_) file_->Close();
}

bool NarrowTextWriter::Open(const std::string& path) {
  file_ = files_.CreateAlways(path);
  any_failed_ = false;
  return file_ != nullptr;
}

bool NarrowTextWriter::WriteBytes(const std::string& bytes) {
  last_written_ = 0;
  last_ok_ = file_ != nullptr && file_->Write(bytes.data(), bytes.size());
  if (last_ok_) last_written_ = bytes.size();
  if (!last_ok_) any_failed_ = true;
  return last_ok_;
}

bool NarrowTextWriter::Write(std::u16string_view text) {
  std::string bytes = ToAnsi(text, code_page_);
  // One byte per character, whatever the conversion gave.
  bytes.resize(text.size(), '\0');
  return WriteBytes(bytes);
}

bool NarrowTextWriter::WriteByteOrderMark() { return WriteBytes(std::string("\xFF\xFE", 2)); }

bool NarrowTextWriter::WriteRaw(std::u16string_view text) {
  return WriteBytes(ToUtf16Le(text));
}

bool NarrowTextWriter::Close() {
  if (!file_) return false;
  const bool closed = file_->Close();
  file_.reset();
  return closed && !any_failed_;
}

}  // namespace quillora
