#include "interchange/vcard.h"

#include <algorithm>
#include <optional>

#include "platform/text.h"

namespace quillora {
namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

bool EqualsIgnoreCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    const auto upper = [](char c) { return c >= 'a' && c <= 'z' ? c - 32 : c; };
    if (upper(a[i]) != upper(b[i])) return false;
  }
  return true;
}

// Splits a value at every `separator` that no backslash escapes; the parts
// keep their escapes.
std::vector<std::string_view> SplitUnescaped(std::string_view value, char separator) {
  std::vector<std::string_view> parts;
  std::size_t begin = 0;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] == '\\') {
      ++i;
    } else if (value[i] == separator) {
      parts.push_back(value.substr(begin, i - begin));
      begin = i + 1;
    }
  }
  parts.push_back(value.substr(begin));
  return parts;
}

// Undoes the text escapes. A line break inside a name is of no use in the
// catalogue, so \n becomes a blank; an unknown escape keeps the character
// behind the backslash, and a backslash at the very end is dropped.
std::string Unescape(std::string_view value) {
  std::string text;
  text.reserve(value.size());
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] != '\\') {
      text.push_back(value[i]);
    } else if (i + 1 < value.size()) {
      const char next = value[++i];
      text.push_back(next == 'n' || next == 'N' ? ' ' : next);
    }
  }
  return text;
}

// One text component: its comma-separated values joined by blanks.
std::u16string ComponentText(std::string_view component) {
  std::string text;
  for (std::string_view part : SplitUnescaped(component, ',')) {
    const std::string value(Trim(Unescape(part)));
    if (value.empty()) continue;
    if (!text.empty()) text.push_back(' ');
    text += value;
  }
  return FromUtf8(text);
}

// The card being read.
struct CardFields {
  std::optional<std::u16string> formatted;
  std::optional<std::u16string> family;
  std::u16string given;
  std::optional<std::u16string> company;
};

class CardReader {
 public:
  explicit CardReader(std::vector<VCard>* cards) : cards_(cards) {}

  // One unfolded line: [group.]NAME[;PARAM...]:VALUE.
  void Line(std::string_view line) {
    std::size_t colon = std::string_view::npos;
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
      if (line[i] == '"') quoted = !quoted;
      if (line[i] == ':' && !quoted) {
        colon = i;
        break;
      }
    }
    if (colon == std::string_view::npos) return;
    std::string_view name = line.substr(0, std::min(line.find(';'), colon));
    if (const std::size_t dot = name.rfind('.'); dot != std::string_view::npos) {
      name.remove_prefix(dot + 1);
    }
    name = Trim(name);
    const std::string_view value = line.substr(colon + 1);

    if (EqualsIgnoreCase(name, "BEGIN") && EqualsIgnoreCase(Trim(value), "VCARD")) {
      // A card that never ended is dropped for the one that begins.
      card_.emplace();
      return;
    }
    if (!card_) return;
    if (EqualsIgnoreCase(name, "END") && EqualsIgnoreCase(Trim(value), "VCARD")) {
      Finish();
    } else if (EqualsIgnoreCase(name, "FN")) {
      if (!card_->formatted) card_->formatted = FromUtf8(Trim(Unescape(value)));
    } else if (EqualsIgnoreCase(name, "N")) {
      if (card_->family) return;
      const auto parts = SplitUnescaped(value, ';');
      card_->family = ComponentText(parts[0]);
      card_->given = parts.size() > 1 ? ComponentText(parts[1]) : u"";
    } else if (EqualsIgnoreCase(name, "ORG")) {
      if (!card_->company) card_->company = ComponentText(SplitUnescaped(value, ';')[0]);
    }
  }

 private:
  void Finish() {
    const CardFields& c = *card_;
    const std::u16string company = c.company.value_or(u"");
    VCard card{
        FileAsName(c.family.value_or(u""), c.given, c.formatted.value_or(u""), company),
        company};
    if (!card.file_as.empty()) cards_->push_back(std::move(card));
    card_.reset();
  }

  std::vector<VCard>* cards_;
  std::optional<CardFields> card_;
};

}  // namespace

std::u16string FileAsName(std::u16string_view family, std::u16string_view given,
                          std::u16string_view formatted, std::u16string_view company) {
  if (!family.empty() && !given.empty()) {
    std::u16string name(family);
    name += u", ";
    name += given;
    return name;
  }
  if (!family.empty()) return std::u16string(family);
  if (!given.empty()) return std::u16string(given);
  if (!formatted.empty()) return std::u16string(formatted);
  return std::u16string(company);
}

std::vector<VCard> ReadVCards(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  std::vector<VCard> cards;
  CardReader reader(&cards);
  // Folding: a line that starts with a blank or a tab continues the line
  // before it, less that one character. A continuation with no line to
  // continue (at the start, or after an empty line) is dropped.
  std::string logical;
  bool have_logical = false;
  std::size_t i = 0;
  while (i < bytes.size()) {
    std::size_t end = bytes.find_first_of("\r\n", i);
    if (end == std::string_view::npos) end = bytes.size();
    const std::string_view line = bytes.substr(i, end - i);
    i = end;
    if (i < bytes.size() && bytes[i] == '\r') ++i;
    if (i < bytes.size() && bytes[i] == '\n' && (i == end || bytes[i - 1] == '\r')) ++i;

    if (!line.empty() && IsBlank(line.front())) {
      if (have_logical) logical.append(line.substr(1));
      continue;
    }
    if (have_logical) reader.Line(logical);
    have_logical = !line.empty();
    logical.assign(line);
  }
  if (have_logical) reader.Line(logical);
  return cards;
}

}  // namespace quillora
