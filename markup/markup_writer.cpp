// The writing side of MarkupDocument: escaping, adding elements and
// attributes, and keeping every offset of the index exact after an insertion.
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "markup/markup_document.h"

namespace quillora {
namespace {

using std::literals::string_view_literals::operator""sv;

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

// How many characters longer EscapeMarkup makes `text`. Counted without a
// branch, so the compiler can look at many characters at once.
std::size_t EscapedExtra(std::u16string_view text, MarkupEscapeMode mode) {
  std::size_t extra = 0;
  for (char16_t c : text) {
    extra += 3 * static_cast<std::size_t>(c == u'<') +
             4 * static_cast<std::size_t>(c == u'&') +
             3 * static_cast<std::size_t>(c == u'>');
  }
  if (mode == MarkupEscapeMode::kAttribute) {
    for (char16_t c : text) {
      extra += 5 * static_cast<std::size_t>(c == u'\'') +
               5 * static_cast<std::size_t>(c == u'"');
    }
  }
  return extra;
}

char16_t* Put(char16_t* p, std::u16string_view text) {
  std::char_traits<char16_t>::copy(p, text.data(), text.size());
  return p + text.size();
}

// Writes `text` escaped at `p`, `extra` characters longer than it is;
// returns the end.
char16_t* PutEscaped(char16_t* p, std::u16string_view text, MarkupEscapeMode mode,
                     std::size_t extra) {
  if (extra == 0) return Put(p, text);
  for (char16_t c : text) {
    const std::u16string_view replacement =
        c < 64 ? Replacement(c, mode) : std::u16string_view();
    if (replacement.empty()) {
      *p++ = c;
    } else {
      p = Put(p, replacement);
    }
  }
  return p;
}

}  // namespace

// Runs of characters that need no replacement are copied in one piece, so
// text without any (nearly all report and export data) costs one append.
void AppendEscapedMarkup(std::u16string* out, std::u16string_view text,
                         MarkupEscapeMode mode) {
  // One bit for each character below 64 that is replaced.
  constexpr std::uint64_t kData = (1ull << u'<') | (1ull << u'&') | (1ull << u'>');
  constexpr std::uint64_t kAttribute = kData | (1ull << u'\'') | (1ull << u'"');
  const std::uint64_t replaced =
      mode == MarkupEscapeMode::kAttribute ? kAttribute : kData;
  std::size_t copied = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t c = text[i];
    if (c >= 64 || ((replaced >> c) & 1) == 0) continue;
    out->append(text.substr(copied, i - copied));
    out->append(Replacement(c, mode));
    copied = i + 1;
  }
  out->append(text.substr(copied));
}

std::u16string EscapeMarkup(std::u16string_view text, MarkupEscapeMode mode) {
  std::u16string out;
  AppendEscapedMarkup(&out, text, mode);
  return out;
}

void MarkupDocument::Clear() {
  text_.clear();
  error_.clear();
  ClearDocumentRecord();
  next_free_ = 1;
  current_ = 0;
  child_ = 0;
  level_ = 0;
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

  element.start_left = offset;
  const std::size_t extra = EscapedExtra(data, MarkupEscapeMode::kData);
  if (!data.empty()) {
    element.start_right = element.start_left + Length(name) + 1;
    const std::size_t escaped = data.size() + extra;
    element.end_left = element.start_right + static_cast<std::int32_t>(escaped) + 1;
    element.end_right = element.end_left + Length(name) + 2;
  } else {
    element.start_right = element.start_left + Length(name) + 2;
    element.end_left = element.start_right - 1;
    element.end_right = element.end_left + 1;
  }
  element.following = element.end_right + 3;
  const std::int32_t length = element.following - element.start_left;

  if (open_parent) {
    // <P/> becomes <P>, a line break, the new line and </P>: the '/' is
    // replaced, so the new element's offsets above are already final.
    const std::u16string parent_name = TagName(parent);
    const std::int32_t inserted = 3 + length + 2 + Length(parent_name);
    char16_t* p = Put(MakeRoom(offset - 3, 1, inserted), u">\r\n"sv);
    WriteElement(p, name, data, extra);
    Put(Put(p + length, u"</"sv), parent_name);
    up.start_right -= 1;
    up.end_left -= Length(parent_name) + 1;
    ShiftIndex(index, inserted - 1);
  } else {
    WriteElement(MakeRoom(offset, 0, length), name, data, extra);
    ShiftIndex(index, length);
  }
  return index;
}

// Writes <name>escaped data</name> or <name/>, and the line break; escaping
// makes the data `extra` characters longer.
void MarkupDocument::WriteElement(char16_t* p, std::u16string_view name,
                                  std::u16string_view data, std::size_t extra) {
  *p++ = u'<';
  p = Put(p, name);
  if (data.empty()) {
    Put(p, u"/>\r\n"sv);
    return;
  }
  *p++ = u'>';
  p = PutEscaped(p, data, MarkupEscapeMode::kData, extra);
  p = Put(p, u"</"sv);
  p = Put(p, name);
  Put(p, u">\r\n"sv);
}

bool MarkupDocument::SetAttribute(int index, std::u16string_view name,
                                  std::u16string_view value) {
  ElementPosition& element = positions_[index];
  // Before the '/' of an empty element; behind earlier attributes either way.
  const std::int32_t offset =
      IsEmptyElement(index) ? element.start_right - 1 : element.start_right;
  const std::size_t extra = EscapedExtra(value, MarkupEscapeMode::kAttribute);
  const auto delta = static_cast<std::int32_t>(name.size() + 4 + value.size() + extra);
  char16_t* p = MakeRoom(offset, 0, delta);
  *p++ = u' ';
  p = Put(p, name);
  p = Put(p, u"=\""sv);
  p = PutEscaped(p, value, MarkupEscapeMode::kAttribute, extra);
  *p = u'"';
  element.start_right += delta;
  element.end_left += delta;
  element.end_right += delta;
  element.following += delta;
  ShiftIndex(index, delta);
  return true;
}

// Makes room for `length` characters at `offset` in place of `replaced`
// characters, both clamped to the text, and returns where the room begins.
// Nearly every change is an insertion a few characters before the end: the
// tail moves up by hand, cheaper than a general replace.
char16_t* MarkupDocument::MakeRoom(std::int32_t offset, std::int32_t replaced,
                                   std::int32_t length) {
  const std::int32_t size = Length(text_);
  offset = std::clamp(offset, std::int32_t{0}, size);
  replaced = std::clamp(replaced, std::int32_t{0}, size - offset);
  const auto at = static_cast<std::size_t>(offset);
  const auto old_size = static_cast<std::size_t>(size);
  const std::size_t tail = old_size - at - static_cast<std::size_t>(replaced);
  const std::size_t new_size =
      old_size - static_cast<std::size_t>(replaced) + static_cast<std::size_t>(length);
  if (new_size > text_.capacity()) {
    // A document is written by many small insertions: growing four-fold
    // copies the text a third as often as doubling.
    text_.reserve(std::max(new_size, text_.capacity() * 4));
  }
  if (new_size > old_size) text_.resize(new_size);
  char16_t* const data = text_.data();
  std::char_traits<char16_t>::move(data + at + length, data + old_size - tail, tail);
  if (new_size < old_size) text_.resize(new_size);
  return text_.data() + at;
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
