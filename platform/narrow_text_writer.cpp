#include "platform/narrow_text_writer.h"

#include <algorithm>

#include "platform/code_page.h"

namespace quillora {

NarrowTextWriter::~NarrowTextWriter() {
  if (file_) file_->Close();
}

bool NarrowTextWriter::Open(const std::string& path) {
  file_ = files_.CreateAlways(path);
  any_failed_ = false;
  held_.clear();
  pending_.clear();
  part_chars_ = 0;
  part_bytes_ = 0;
  parts_failed_ = false;
  return file_ != nullptr;
}

bool NarrowTextWriter::WriteBytes(const std::string& bytes) {
  return WriteBytes(bytes.data(), bytes.size());
}

bool NarrowTextWriter::WriteBytes(const char* data, std::size_t size) {
  last_written_ = 0;
  last_ok_ = file_ != nullptr && file_->Write(data, size);
  if (last_ok_) last_written_ = size;
  if (!last_ok_) any_failed_ = true;
  return last_ok_;
}

bool NarrowTextWriter::Write(std::u16string_view text) {
  std::string bytes = ToAnsi(text, code_page_);
  // One byte per character, whatever the conversion gave.
  bytes.resize(text.size(), '\0');
  return WriteBytes(bytes);
}

bool NarrowTextWriter::WritePart(std::u16string_view part) {
  if (parts_failed_) return false;
  part_chars_ += part.size();
  std::u16string joined;
  if (!held_.empty() && !part.empty()) {
    joined = held_;
    joined.append(part);
    part = joined;
    held_.clear();
  }
  // A surrogate pair split between two parts is converted as one character.
  if (!part.empty() && part.back() >= 0xD800 && part.back() <= 0xDBFF) {
    held_.assign(1, part.back());
    part.remove_suffix(1);
  }
  if (pending_.empty()) {
    pending_ = ToAnsi(part, code_page_);
  } else {
    pending_.append(ToAnsi(part, code_page_));
  }
  return WritePending();
}

bool NarrowTextWriter::WritePending() {
  // Every character gives at least one byte, except where a conversion gives
  // nothing; bytes beyond the characters handed over wait for more text.
  const std::size_t due = std::min(pending_.size(), part_chars_ - part_bytes_);
  if (due == 0) return true;
  if (!WriteBytes(pending_.data(), due)) {
    parts_failed_ = true;
    return false;
  }
  part_bytes_ += due;
  pending_.erase(0, due);
  return true;
}

bool NarrowTextWriter::EndParts() {
  bool ok = !parts_failed_;
  if (ok && !held_.empty()) {
    pending_.append(ToAnsi(held_, code_page_));
    ok = WritePending();
  }
  // What the conversion gave short of one byte a character is made up with
  // NULs, as Write does.
  if (ok && part_bytes_ < part_chars_) {
    ok = WriteBytes(std::string(part_chars_ - part_bytes_, '\0'));
  }
  held_.clear();
  pending_.clear();
  part_chars_ = 0;
  part_bytes_ = 0;
  parts_failed_ = false;
  return ok;
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
