// Feeds arbitrary bytes to the markup reader, read once as UTF-16LE and once
// as one character per byte. Every parsed index must point at the characters
// it claims; every element must be reachable with the navigation calls; and
// writing into a parsed document and reading it again must not misbehave.
// Then the input drives the writer alone, whose output must always read back
// with the same number of elements.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "markup/markup_document.h"

namespace {

using quillora::ElementPosition;
using quillora::MarkupDocument;

void Check(bool ok) {
  if (!ok) __builtin_trap();
}

// Every record in use lies inside the text and on the characters it names.
void CheckIndex(const MarkupDocument& doc) {
  const std::u16string& text = doc.DocumentText();
  const auto length = static_cast<std::int32_t>(text.size());
  for (int i = 1; i < doc.NextFreeIndex(); ++i) {
    const ElementPosition p = doc.Position(i);
    Check(p.start_left >= 0 && p.end_right < length);
    Check(p.start_left < p.start_right && p.start_right <= p.end_right);
    Check(text[p.start_left] == u'<' && text[p.start_right] == u'>');
    if (p.start_right == p.end_left + 1) {
      Check(text[p.end_left] == u'/' && p.end_right == p.start_right);
    } else {
      Check(text[p.end_left] == u'<' && text[p.end_right] == u'>');
    }
    for (int c = p.first_child; c != 0; c = doc.Position(c).next_sibling) {
      const ElementPosition child = doc.Position(c);
      Check(child.parent == i);
      Check(child.start_left > p.start_right && child.end_right < p.end_left);
    }
  }
}

// Visits every element depth first with Find/Into/Out only; returns how
// many it saw. The current child is clear at the top of the loop, so Into
// always takes the first child.
int Navigate(MarkupDocument& doc) {
  int seen = 0;
  if (!doc.FindElement()) return 0;
  for (;;) {
    ++seen;
    Check(doc.CurrentChild() == 0);
    if (doc.IntoElement()) continue;
    while (!doc.FindElement()) {
      if (!doc.OutOfElement()) return seen;
    }
  }
}

// Searches by every name the document holds, from wherever the walk ended.
void SearchByName(MarkupDocument& doc) {
  for (int i = 1; i < doc.NextFreeIndex() && i < 64; ++i) {
    const std::u16string name = doc.TagName(i);
    if (doc.FindChildElement(name)) Check(doc.TagName(doc.CurrentChild()) == name);
    if (doc.FindElement(name)) Check(doc.TagName(doc.CurrentElement()) == name);
    if (i % 3 == 0) doc.IntoElement();
    if (i % 5 == 0) doc.OutOfElement();
  }
}

void ReadAndWrite(std::u16string_view text) {
  MarkupDocument doc;
  if (!doc.SetDocument(text)) {
    Check(!doc.ErrorText().empty() || text.empty());
    Check(doc.NextFreeIndex() == 1 && !doc.FindElement());
    return;
  }
  CheckIndex(doc);
  const int elements = doc.NextFreeIndex() - 1;
  Check(Navigate(doc) == elements);
  SearchByName(doc);
  CheckIndex(doc);

  // The writer over parsed records: no promise on the text, only on safety.
  doc.AddChildElement(u"w", u"1<2");
  doc.AddChildAttribute(u"k", u"\"'");
  doc.AddAttribute(u"t", u"&");
  doc.AddElement(u"s");
  doc.IntoElement();
  doc.AddChildElement(u"e");
  MarkupDocument again;
  if (again.SetDocument(doc.DocumentText())) Navigate(again);
}

// Builds a document with the writer from the input: names are runs of
// letters and digits, data and values any characters.
void WriteOnly(std::u16string_view input) {
  MarkupDocument doc;
  std::size_t at = 0;
  auto take = [&](bool name) {
    std::u16string out;
    while (at < input.size() && out.size() < 12) {
      const char16_t c = input[at++];
      if (c == u'|') break;
      if (!name || (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') ||
          (c >= u'0' && c <= u'9')) {
        out += c;
      }
    }
    // push_back, not `= u"n"`: gcc 12 -O2 takes that for an overlapping copy.
    if (name && out.empty()) out.push_back(u'n');
    return out;
  };
  doc.AddElement(take(true), take(false));
  while (at < input.size()) {
    const char16_t op = input[at++];
    switch (op % 6) {
      case 0:
        doc.AddElement(take(true), take(false));
        break;
      case 1: {
        const std::u16string name = take(true);
        doc.AddChildElement(name, take(false));
        break;
      }
      case 2: {
        const std::u16string name = take(true);
        doc.AddAttribute(name, take(false));
        break;
      }
      case 3: {
        const std::u16string name = take(true);
        doc.AddChildAttribute(name, take(false));
        break;
      }
      case 4:
        doc.IntoElement();
        break;
      default:
        doc.OutOfElement();
        break;
    }
  }
  CheckIndex(doc);
  MarkupDocument read;
  Check(read.SetDocument(doc.DocumentText()));
  Check(read.NextFreeIndex() == doc.NextFreeIndex());
  CheckIndex(read);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::u16string wide(size / 2, u'\0');
  for (std::size_t i = 0; i + 1 < size; i += 2) {
    wide[i / 2] = static_cast<char16_t>(data[i] | (data[i + 1] << 8));
  }
  std::u16string narrow(size, u'\0');
  for (std::size_t i = 0; i < size; ++i) narrow[i] = data[i];

  ReadAndWrite(wide);
  ReadAndWrite(narrow);
  WriteOnly(narrow);
  return 0;
}
