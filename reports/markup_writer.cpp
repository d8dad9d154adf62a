// The writing side of MarkupDocument: escaping, adding elements and
// attributes, and keeping every offset of the index exact after an insertion.
#include <algorithm>
#include <string>
#include <string_view>

#include "reports/markup_document.h"

namespace quillora {
namespace {

std::int32_t Length(std::u16string_view text) {
  return static_cast<std::int32_t>(text.size());
}

std::u16string_view Replacement(char16_t c, MarkupEscapeMode mode) {
  switch (c) {
    case u'<':
      return u"&lt;";
    case u'&':
      return u"&amp;";
    case u'>':
      return u"&gt;";
    case u'\'':
      return mode == MarkupEscapeMode::kAttribute ? u"&apos;" : std::u16string_view();
    case u'"':
      return mode == MarkupEscapeMode::kAttribute ? u"&quot;" : std::u16string_view();
    default:
      return {};
  }
}

void MoveAll(ElementPosition& element, std::int32_t delta) {
  element.start_left += delta;
  element.start_right += delta;
  element.end_left += delta;
  element.end_right += delta;
  element.following += delta;
}

void MoveEnds(ElementPosition& element, std::int32_t delta) {
  element.end_left += delta;
  element.end_right += delta;
  element.following += delta;
}

// Appends `text` to `out` escaped as EscapeMarkup does. Runs of characters
// that need no replacement are copied in one piece, so text without any
// (nearly all report and export data) costs one append.
void AppendEscaped(std::u16string* out, std::u16string_view text, MarkupEscapeMode mode) {
  std::size_t copied = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t c = text[i];
    // Every replaced character is below '?'; most text is above it.
    if (c > u'>') continue;
    const std::u16string_view replacement = Replacement(c, mode);
    if (replacement.empty()) continue;
    out->append(text.substr(copied, i - copied));
    out->append(replacement);
    copied = i + 1;
  }
  out->append(text.substr(copied));
}

}  // namespace

std::u16string EscapeMarkup(std::u16string_view text, MarkupEscapeMode mode) {
  std::u16string out;
  AppendEscaped(&out, text, mode);
  return out;
}

bool MarkupDocument::AddElement(std::u16string_view name, std::u16string_view data) {
  if (current_ == 0 || positions_[current_].parent == 0) {
    // There is only ever one top-level element.
    if (IsWellFormed()) return false;
    text_.clear();
    EnsureTable(8);
    ClearDocumentRecord();
    next_free_ = 1;
    current_ = AddElementUnder(0, 0, name, data);
  } else {
    current_ = AddElementUnder(positions_[current_].parent, current_, name, data);
  }
  child_ = 0;
  return true;
}

bool MarkupDocument::AddChildElement(std::u16string_view name, std::u16string_view data) {
  if (current_ == 0) return false;
  int before = child_;
  if (before == 0) {
    for (int index = positions_[current_].first_child; index != 0;
         index = positions_[index].next_sibling) {
      before = index;
    }
  }
  child_ = AddElementUnder(current_, before, name, data);
  return true;
}

bool MarkupDocument::AddAttribute(std::u16string_view name, std::u16string_view value) {
  if (current_ == 0) return false;
  return SetAttribute(current_, name, value);
}

bool MarkupDocument::AddChildAttribute(std::u16string_view name,
                                       std::u16string_view value) {
  if (child_ == 0) return false;
  return SetAttribute(child_, name, value);
}

// Writes a new element under `parent`, behind `before` (or first when
// `before` is 0), and returns its record.
int MarkupDocument::AddElementUnder(int parent, int before, std::u16string_view name,
                                    std::u16string_view data) {
  const int index = TakeFreeRecord();
  ElementPosition& element = positions_[index];
  ElementPosition& up = positions_[parent];

  std::int32_t offset = 0;
  bool open_parent = false;
  if (before != 0) {
    offset = positions_[before].following;
  } else if (up.first_child != 0) {
    offset = positions_[up.first_child].start_left;
  } else if (IsEmptyElement(parent)) {
    offset = up.start_right + 2;
    open_parent = true;
  } else {
    offset = up.end_left;
  }

  element.parent = parent;
  element.first_child = 0;
  if (before != 0) {
    element.next_sibling = positions_[before].next_sibling;
    positions_[before].next_sibling = index;
  } else {
    element.next_sibling = up.first_child;
    up.first_child = index;
  }

  // The new text is put together in a buffer the document keeps, so adding
  // an element allocates nothing once the buffer has grown.
  std::u16string& insert = scratch_;
  insert.clear();
  element.start_left = offset;
  if (!data.empty()) {
    insert.append(u"<").append(name).append(u">");
    const std::int32_t data_start = Length(insert);
    AppendEscaped(&insert, data, MarkupEscapeMode::kData);
    const std::int32_t escaped_length = Length(insert) - data_start;
    insert.append(u"</").append(name).append(u">\r\n");
    element.start_right = element.start_left + Length(name) + 1;
    element.end_left = element.start_right + escaped_length + 1;
    element.end_right = element.end_left + Length(name) + 2;
  } else {
    insert.append(u"<").append(name).append(u"/>\r\n");
    element.start_right = element.start_left + Length(name) + 2;
    element.end_left = element.start_right - 1;
    element.end_right = element.end_left + 1;
  }
  element.following = element.end_right + 3;

  std::int32_t replaced = 0;
  if (open_parent) {
    // <P/> becomes <P>, a line break, the new line and </P>: the '/' is
    // replaced, so the new element's offsets above are already final.
    const std::u16string parent_name = TagName(parent);
    insert.insert(0, u">\r\n");
    insert.append(u"</").append(parent_name);
    offset -= 3;
    replaced = 1;
    up.start_right -= 1;
    up.end_left -= Length(parent_name) + 1;
  }
  replaced = ChangeDocument(offset, replaced, insert);
  ShiftIndex(index, Length(insert) - replaced);
  return index;
}

bool MarkupDocument::SetAttribute(int index, std::u16string_view name,
                                  std::u16string_view value) {
  std::u16string& insert = scratch_;
  insert.assign(u" ").append(name).append(u"=\"");
  AppendEscaped(&insert, value, MarkupEscapeMode::kAttribute);
  insert.append(u"\"");

  ElementPosition& element = positions_[index];
  // Before the '/' of an empty element; behind earlier attributes either way.
  const std::int32_t offset =
      IsEmptyElement(index) ? element.start_right - 1 : element.start_right;
  const std::int32_t delta = Length(insert);
  ChangeDocument(offset, 0, insert);
  element.start_right += delta;
  element.end_left += delta;
  element.end_right += delta;
  element.following += delta;
  ShiftIndex(index, delta);
  return true;
}

// Replaces `replaced` characters at `offset` by `insert`, both clamped to the
// text. Returns the count actually replaced.
std::int32_t MarkupDocument::ChangeDocument(std::int32_t offset, std::int32_t replaced,
                                            std::u16string_view insert) {
  const std::int32_t length = Length(text_);
  offset = std::clamp(offset, std::int32_t{0}, length);
  replaced = std::clamp(replaced, std::int32_t{0}, length - offset);
  const std::size_t needed =
      text_.size() - static_cast<std::size_t>(replaced) + insert.size();
  if (needed > text_.capacity()) {
    // A document is written by many small insertions: growing four-fold
    // copies the text a third as often as doubling, and the pages reserved
    // ahead cost nothing until they are written.
    text_.reserve(std::max(needed, text_.capacity() * 4));
  }
  text_.replace(static_cast<std::size_t>(offset), static_cast<std::size_t>(replaced),
                insert);
  return replaced;
}

// After an insertion at record `from`: every record behind it in document
// order moves by `delta`, its ancestors (record 0 last) only at their end, and
// the record itself, already placed by the caller, not at all.
void MarkupDocument::ShiftIndex(int from, std::int32_t delta) {
  if (delta == 0) return;
  int ancestor = positions_[from].parent;
  int index = from;
  int next = positions_[from].first_child;
  for (;;) {
    if (next == 0) next = positions_[index].next_sibling;
    while (next == 0) {
      index = positions_[index].parent;
      if (index == ancestor || index == 0) {
        MoveEnds(positions_[index], delta);
        if (index == 0) return;
        ancestor = positions_[index].parent;
      }
      // Any other record met on the way up was moved when it was entered.
      next = positions_[index].next_sibling;
    }
    index = next;
    MoveAll(positions_[index], delta);
    next = positions_[index].first_child;
  }
}

}  // namespace quillora
