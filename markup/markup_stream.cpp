#include "markup/markup_stream.h"

#include <utility>

namespace quillora {

MarkupStream::MarkupStream(Sink sink, std::size_t piece_size)
    : sink_(std::move(sink)), piece_size_(piece_size) {
  buffer_.reserve(piece_size_ + piece_size_ / 4);
}

bool MarkupStream::Open(std::u16string_view name) {
  if (open_.empty()) {
    if (top_level_written_) return false;
    top_level_written_ = true;
  } else {
    StartContent();
  }
  buffer_.append(u"<").append(name);
  open_.push_back({std::u16string(name), false});
  return true;
}

bool MarkupStream::Attribute(std::u16string_view name, std::u16string_view value) {
  if (open_.empty() || open_.back().has_content) return false;
  buffer_.append(u" ").append(name).append(u"=\"");
  AppendEscapedMarkup(&buffer_, value, MarkupEscapeMode::kAttribute);
  buffer_.append(u"\"");
  return true;
}

void MarkupStream::Add(std::u16string_view element_text) {
  if (!open_.empty()) StartContent();
  buffer_.append(element_text);
  FlushIfFull();
}

bool MarkupStream::Close() {
  if (open_.empty()) return false;
  const OpenElement& element = open_.back();
  if (element.has_content) {
    buffer_.append(u"</").append(element.name).append(u">\r\n");
  } else {
    buffer_.append(u"/>\r\n");
  }
  open_.pop_back();
  FlushIfFull();
  return true;
}

bool MarkupStream::Finish() {
  while (Close()) {
  }
  Flush();
  return ok_;
}

void MarkupStream::StartContent() {
  OpenElement& element = open_.back();
  if (element.has_content) return;
  element.has_content = true;
  buffer_.append(u">\r\n");
}

void MarkupStream::FlushIfFull() {
  if (buffer_.size() >= piece_size_) Flush();
}

void MarkupStream::Flush() {
  if (ok_ && !buffer_.empty()) ok_ = sink_(buffer_);
  buffer_.clear();
}

}  // namespace quillora
