// MarkupDocument: setting a document, the position table and walking the
// elements. The tokenizer and parser are in markup_reader.cpp, the writer in
// markup_writer.cpp.
#include "markup/markup_document.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace quillora {

// --- Position table ---

void MarkupDocument::EnsureTable(std::size_t records) {
  if (positions_.size() < records) positions_.resize(records);
}

int MarkupDocument::TakeFreeRecord() {
  if (static_cast<std::size_t>(next_free_) >= positions_.size()) {
    // Full: grow by half, never by less than the one record asked for. The
    // storage is reserved four-fold ahead, so the records are moved seldom;
    // only the records in use are written.
    const std::size_t size = positions_.size();
    const std::size_t grown =
        std::max(size + size / 2, static_cast<std::size_t>(next_free_) + 1);
    if (grown > positions_.capacity()) positions_.reserve(std::max(grown, size * 4));
    EnsureTable(grown);
  }
  return next_free_++;
}

void MarkupDocument::GiveBackRecord() {
  if (next_free_ > 1) --next_free_;
}

void MarkupDocument::ClearDocumentRecord() {
  EnsureTable(1);
  positions_[0] = ElementPosition{};
}

bool MarkupDocument::IsEmptyElement(int index) const {
  const ElementPosition& element = positions_[index];
  return element.start_right == element.end_left + 1;
}

bool MarkupDocument::IsWellFormed() const {
  return !positions_.empty() && positions_[0].first_child != 0;
}

ElementPosition MarkupDocument::Position(int index) const {
  if (index < 0 || index >= next_free_ ||
      static_cast<std::size_t>(index) >= positions_.size()) {
    return {};
  }
  return positions_[index];
}

// --- Reader ---

bool MarkupDocument::SetDocument(std::u16string_view text) {
  text_.assign(text);
  current_ = 0;
  child_ = 0;
  level_ = 0;
  error_.clear();
  // Offsets are 32-bit: a longer text cannot be indexed at all.
  const bool too_long =
      text_.size() >= static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max());
  if (!too_long) EnsureTable(text_.size() / 64 + 8);
  // The whole index is rebuilt: records of an earlier document are reused.
  ClearDocumentRecord();
  next_free_ = 1;
  if (text_.empty()) return false;
  if (too_long) {
    error_ = u"Element tag not found";
    return false;
  }

  const int top = ParseElement(0);
  if (top > 0) {
    positions_[0].first_child = top;
    return true;
  }
  // A text that opens with an end tag has no element to offer.
  if (top == 0) error_ = u"Element tag not found";
  ClearDocumentRecord();
  next_free_ = 1;
  return false;
}

bool MarkupDocument::FindElement(std::u16string_view name) {
  int index = 0;
  if (current_ == 0) {
    if (positions_.empty()) return false;
    index = positions_[0].first_child;
  } else {
    index = positions_[current_].next_sibling;
  }
  for (; index > 0 && index < next_free_; index = positions_[index].next_sibling) {
    if (name.empty() || TagNameIs(index, name)) {
      current_ = index;
      child_ = 0;
      return true;
    }
  }
  return false;
}

bool MarkupDocument::FindChildElement(std::u16string_view name) {
  if (current_ == 0 && !FindElement()) return false;
  if (IsEmptyElement(current_)) return false;
  int index =
      child_ != 0 ? positions_[child_].next_sibling : positions_[current_].first_child;
  for (; index > 0 && index < next_free_; index = positions_[index].next_sibling) {
    if (name.empty() || TagNameIs(index, name)) {
      child_ = index;
      return true;
    }
  }
  return false;
}

bool MarkupDocument::IntoElement() {
  if (child_ == 0 && !FindChildElement()) return false;
  current_ = child_;
  child_ = 0;
  ++level_;
  return true;
}

bool MarkupDocument::OutOfElement() {
  if (current_ == 0 || level_ < 1) return false;
  child_ = current_;
  current_ = positions_[current_].parent;
  --level_;
  return true;
}

}  // namespace quillora
