// The reading side of MarkupDocument: tokens and the element parser that
// builds the position index from a document text.
#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "markup/markup_document.h"

namespace quillora {
namespace {

// The two character classes of the tokenizer, built once on first use and
// kept for the life of the program.
struct CharClasses {
  std::array<bool, 128> whitespace{};
  std::array<bool, 128> breaks{};
};

const CharClasses& Classes() {
  static const CharClasses classes = [] {
    CharClasses c;
    for (char ch : std::string_view(" \t\n\r"))
      c.whitespace[static_cast<unsigned char>(ch)] = true;
    for (char ch : std::string_view("<>=\\/?!"))
      c.breaks[static_cast<unsigned char>(ch)] = true;
    return c;
  }();
  return classes;
}

bool IsWhitespace(char16_t c) { return c < 128 && Classes().whitespace[c]; }
bool IsBreak(char16_t c) { return c < 128 && Classes().breaks[c]; }

// The reader's messages. "%s" stands for the element's tag name.
constexpr std::u16string_view kElementTagNotFound = u"Element tag not found";
constexpr std::u16string_view kTagStartsWithQuote = u"Tag starts with quote";
constexpr std::u16string_view kEndOfTagNotFound = u"End of tag not found";
constexpr std::u16string_view kAbruptEndWithinTag = u"Abrupt end within tag";
constexpr std::u16string_view kEndTagNotFound = u"End tag of %s element not found";
constexpr std::u16string_view kExpectingEndTag = u"Expecting end tag of element %s";
constexpr std::u16string_view kEndTagDoesNotCorrespond =
    u"End tag does not correspond to %s";
constexpr std::u16string_view kEndTagNotCompleted =
    u"End tag not completed for element %s";

std::u16string FormatMessage(std::u16string_view message, std::u16string_view name) {
  std::u16string out(message);
  if (std::size_t at = out.find(u"%s"); at != std::u16string::npos)
    out.replace(at, 2, name);
  return out;
}

}  // namespace

bool MarkupDocument::FindChar(std::int32_t& offset, char16_t c) const {
  const auto length = static_cast<std::int32_t>(text_.size());
  offset = std::clamp(offset, std::int32_t{0}, length);
  while (offset < length && text_[offset] != c) ++offset;
  return offset < length;
}

std::int32_t MarkupDocument::FindString(std::int32_t from,
                                        std::u16string_view what) const {
  const auto length = static_cast<std::int32_t>(text_.size());
  from = std::clamp(from, std::int32_t{0}, length);
  const std::size_t at = text_.find(what, static_cast<std::size_t>(from));
  return at == std::u16string::npos ? -1 : static_cast<std::int32_t>(at);
}

// Reads the token that starts at token.next (after whitespace). True unless
// the scan ended at the end of the text, which a caller that needs more
// characters behind the token treats as an abrupt end.
bool MarkupDocument::FindToken(Token& token) const {
  const auto length = static_cast<std::int32_t>(text_.size());
  std::int32_t at = std::clamp(token.next, std::int32_t{0}, length);
  while (at < length && IsWhitespace(text_[at])) ++at;
  token.is_string = false;
  if (at < length && text_[at] == u'"') {
    token.is_string = true;
    token.left = ++at;
    FindChar(at, u'"');
    token.right = at - 1;
    token.next = at < length ? at + 1 : length;
  } else {
    token.left = at;
    while (at < length && !IsWhitespace(text_[at]) && !IsBreak(text_[at])) ++at;
    // A break character standing first is a token of its own.
    if (at == token.left && at < length) ++at;
    // At the end of the text this leaves an inverted, empty token.
    token.right = at - 1;
    token.next = at;
  }
  return token.next < length;
}

std::u16string MarkupDocument::TokenText(const Token& token) const {
  const auto length = static_cast<std::int32_t>(text_.size());
  const std::int32_t right = std::min(token.right, length - 1);
  if (token.left < 0 || right < token.left) return {};
  return text_.substr(static_cast<std::size_t>(token.left),
                      static_cast<std::size_t>(right - token.left) + 1);
}

bool MarkupDocument::TokenIs(const Token& token, std::u16string_view text) const {
  const auto length = static_cast<std::int32_t>(text_.size());
  const std::int32_t right = std::min(token.right, length - 1);
  if (token.left < 0 || right < token.left) return text.empty();
  return std::u16string_view(text_).substr(
             static_cast<std::size_t>(token.left),
             static_cast<std::size_t>(right - token.left) + 1) == text;
}

std::u16string MarkupDocument::TagName(int index) const {
  if (index <= 0 || index >= next_free_) return {};
  Token token;
  token.next = positions_[index].start_left + 1;
  FindToken(token);
  return TokenText(token);
}

bool MarkupDocument::TagNameIs(int index, std::u16string_view name) const {
  if (index <= 0 || index >= next_free_) return name.empty();
  Token token;
  token.next = positions_[index].start_left + 1;
  FindToken(token);
  return TokenIs(token, name);
}

int MarkupDocument::ParseError(std::u16string_view message, std::u16string_view name) {
  error_ = FormatMessage(message, name);
  GiveBackRecord();
  return -1;
}

// Takes a record for the next element under `parent` and reads its start
// tag, skipping processing instructions, comments, CDATA sections and
// declarations. Returns the record (with *complete set when it is an empty
// element that needs no end tag), 0 when an end tag (or, inside an element,
// the end of the text) came instead, or -1 after storing the error.
int MarkupDocument::ParseStartTag(int parent, bool* complete) {
  *complete = false;
  const int index = TakeFreeRecord();
  ElementPosition& element = positions_[index];
  element.start_left = positions_[parent].end_left;
  element.following = positions_[parent].start_right + 1;
  element.parent = parent;
  element.first_child = 0;
  element.next_sibling = 0;

  Token token;
  token.next = positions_[parent].end_left;
  bool have_name = false;
  while (!have_name) {
    element.start_left = token.next;
    if (!FindChar(element.start_left, u'<')) {
      // Inside an element the missing end tag is the better report: the
      // parent's own end tag search names the element that was left open.
      if (parent != 0) {
        GiveBackRecord();
        return 0;
      }
      return ParseError(kElementTagNotFound);
    }
    positions_[parent].end_left = element.start_left;
    token.next = element.start_left + 1;
    if (!FindToken(token)) return ParseError(kAbruptEndWithinTag);
    if (token.is_string) return ParseError(kTagStartsWithQuote);

    std::u16string_view closing = u">";
    switch (text_[token.left]) {
      case u'?':
        closing = u"?>";
        break;
      case u'!':
        // The token is the '!' alone, so token.next is the character after it.
        if (text_[token.next] == u'[') {
          closing = u"]]>";
        } else if (text_[token.next] == u'-') {
          closing = u"-->";
        }
        break;
      case u'/':
        GiveBackRecord();
        return 0;
      default:
        have_name = true;
        break;
    }
    const std::int32_t found = FindString(token.next, closing);
    if (found < 0) return ParseError(kEndOfTagNotFound);
    token.next = found;
  }

  element.start_right = token.next;
  if (text_[element.start_right - 1] == u'/') {
    element.end_left = element.start_right - 1;
    element.end_right = element.start_right;
    element.following = element.start_right;
    *complete = true;
  } else {
    element.end_left = element.start_right + 1;
  }
  return index;
}

// Reads the end tag of `index`, which its children have left at end_left.
bool MarkupDocument::ParseEndTag(int index) {
  const std::u16string name = TagName(index);
  auto fail = [&](std::u16string_view message) {
    ParseError(message, name);
    return false;
  };
  std::int32_t offset = positions_[index].end_left;
  if (!FindChar(offset, u'<')) return fail(kEndTagNotFound);

  const auto length = static_cast<std::int32_t>(text_.size());
  Token token;
  token.next = offset + 1;
  int count = 0;
  bool closed = false;
  for (;;) {
    const bool more = FindToken(token);
    if (!token.is_string && token.left >= length) break;  // only whitespace was left
    ++count;
    if (!token.is_string) {
      if (count == 1 && !TokenIs(token, u"/")) return fail(kExpectingEndTag);
      if (count == 2 && !TokenIs(token, name)) return fail(kEndTagDoesNotCorrespond);
      if (text_[token.left] == u'>') {
        closed = true;
        break;
      }
    }
    if (!more) break;
  }
  if (!closed || count < 2) return fail(kEndTagNotCompleted);

  positions_[index].end_right = token.left;
  positions_[index].following = token.left;
  return true;
}

// Parses one element (with all its descendants) under `parent`. Returns its
// record, 0 when the parent's end tag came first, or -1 on an error. Nesting
// is followed with a stack of open elements rather than recursion, so a
// hostile depth cannot exhaust the call stack.
int MarkupDocument::ParseElement(int parent) {
  bool complete = false;
  const int top = ParseStartTag(parent, &complete);
  if (top <= 0 || complete) return top;

  struct Open {
    int index;
    int last_child;
  };
  std::vector<Open> open{{top, 0}};
  for (;;) {
    const int index = open.back().index;
    const int child = ParseStartTag(index, &complete);
    if (child < 0) return -1;
    if (child > 0) {
      if (open.back().last_child == 0) {
        positions_[index].first_child = child;
      } else {
        positions_[open.back().last_child].next_sibling = child;
      }
      open.back().last_child = child;
      if (complete) {
        positions_[index].end_left = positions_[child].end_right + 1;
      } else {
        open.push_back({child, 0});
      }
      continue;
    }
    if (!ParseEndTag(index)) return -1;
    open.pop_back();
    if (open.empty()) return index;
    positions_[open.back().index].end_left = positions_[index].end_right + 1;
  }
}

}  // namespace quillora
