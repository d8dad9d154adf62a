#include "interchange/json_reader.h"

#include <charconv>
#include <cstdint>

namespace quillora {
namespace {

class JsonParser {
 public:
  explicit JsonParser(std::string_view text) : text_(text) {}

  bool ParseArrayDocument(const std::function<bool(JsonValue&&)>& item,
                          JsonError* error) {
    if (text_.substr(0, 3) == "\xEF\xBB\xBF") at_ = 3;
    SkipBlanks();
    if (AtEnd()) {
      Fail("unexpected end of the text");
      return Report(error);
    }
    if (Peek() != '[') {
      Fail("the text is not a JSON array");
      return Report(error);
    }
    ++at_;
    SkipBlanks();
    if (Peek() == ']') {
      ++at_;
    } else {
      for (;;) {
        SkipBlanks();
        JsonValue value;
        values_ = 0;
        if (!ParseValue(&value, 1)) return Report(error);
        if (!item(std::move(value))) {
          error->line = 0;
          error->what.clear();
          return false;
        }
        SkipBlanks();
        if (Peek() == ',') {
          ++at_;
        } else if (Peek() == ']') {
          ++at_;
          break;
        } else {
          Fail("expected ',' or ']'");
          return Report(error);
        }
      }
    }
    SkipBlanks();
    if (at_ != text_.size()) {
      Fail("unexpected text after the end of the document");
      return Report(error);
    }
    return true;
  }

 private:
  bool Report(JsonError* error) {
    error->line = error_line_;
    error->what = error_;
    return false;
  }

  bool Fail(const char* what) {
    if (error_.empty()) {
      error_ = what;
      error_line_ = line_;
    }
    return false;
  }

  bool AtEnd() const { return at_ >= text_.size(); }
  char Peek() const { return AtEnd() ? '\0' : text_[at_]; }

  void SkipBlanks() {
    while (!AtEnd()) {
      const char c = text_[at_];
      if (c == '\n') {
        ++line_;
      } else if (c != ' ' && c != '\t' && c != '\r') {
        return;
      }
      ++at_;
    }
  }

  bool Expect(std::string_view word) {
    if (text_.substr(at_, word.size()) != word) return Fail("unknown word");
    at_ += word.size();
    return true;
  }

  bool ParseValue(JsonValue* value, int depth) {
    value->line = line_;
    if (++values_ > kJsonMaxItemValues) return Fail("an item holds too many values");
    if (AtEnd()) return Fail("unexpected end of the text");
    switch (Peek()) {
      case '{':
        return ParseObject(value, depth);
      case '[':
        return ParseArray(value, depth);
      case '"':
        value->type = JsonValue::Type::kString;
        return ParseString(&value->text);
      case 't':
        value->type = JsonValue::Type::kBool;
        value->boolean = true;
        return Expect("true");
      case 'f':
        value->type = JsonValue::Type::kBool;
        return Expect("false");
      case 'n':
        return Expect("null");
      default:
        return ParseNumber(value);
    }
  }

  bool ParseObject(JsonValue* value, int depth) {
    if (depth >= kJsonMaxDepth) return Fail("nested too deeply");
    value->type = JsonValue::Type::kObject;
    ++at_;
    SkipBlanks();
    if (Peek() == '}') {
      ++at_;
      return true;
    }
    for (;;) {
      SkipBlanks();
      if (Peek() != '"') return Fail("expected a member name in quotes");
      std::u16string name;
      if (!ParseString(&name)) return false;
      SkipBlanks();
      if (Peek() != ':') return Fail("expected ':' after a member name");
      ++at_;
      SkipBlanks();
      JsonValue member;
      if (!ParseValue(&member, depth + 1)) return false;
      value->names.push_back(std::move(name));
      value->items.push_back(std::move(member));
      SkipBlanks();
      if (Peek() == ',') {
        ++at_;
      } else if (Peek() == '}') {
        ++at_;
        return true;
      } else {
        return Fail("expected ',' or '}'");
      }
    }
  }

  bool ParseArray(JsonValue* value, int depth) {
    if (depth >= kJsonMaxDepth) return Fail("nested too deeply");
    value->type = JsonValue::Type::kArray;
    ++at_;
    SkipBlanks();
    if (Peek() == ']') {
      ++at_;
      return true;
    }
    for (;;) {
      SkipBlanks();
      value->items.emplace_back();
      if (!ParseValue(&value->items.back(), depth + 1)) return false;
      SkipBlanks();
      if (Peek() == ',') {
        ++at_;
      } else if (Peek() == ']') {
        ++at_;
        return true;
      } else {
        return Fail("expected ',' or ']'");
      }
    }
  }

  bool ParseNumber(JsonValue* value) {
    // The grammar of RFC 8259: -?(0|[1-9][0-9]*)(\.[0-9]+)?([eE][+-]?[0-9]+)?
    const std::size_t begin = at_;
    auto digits = [this] {
      std::size_t n = 0;
      while (!AtEnd() && text_[at_] >= '0' && text_[at_] <= '9') ++at_, ++n;
      return n;
    };
    if (Peek() == '-') ++at_;
    if (Peek() == '0') {
      ++at_;
    } else if (digits() == 0) {
      return Fail("unexpected character");
    }
    if (Peek() == '.') {
      ++at_;
      if (digits() == 0) return Fail("a number needs digits after its point");
    }
    if (Peek() == 'e' || Peek() == 'E') {
      ++at_;
      if (Peek() == '+' || Peek() == '-') ++at_;
      if (digits() == 0) return Fail("a number needs digits in its exponent");
    }
    value->type = JsonValue::Type::kNumber;
    std::from_chars(text_.data() + begin, text_.data() + at_, value->number);
    return true;
  }

  // Four hex digits of a \u escape.
  bool ParseHex4(char16_t* unit) {
    if (text_.size() - at_ < 4) return Fail("a \\u escape needs four hex digits");
    unsigned v = 0;
    for (int i = 0; i < 4; ++i) {
      const char c = text_[at_++];
      v <<= 4;
      if (c >= '0' && c <= '9') {
        v |= static_cast<unsigned>(c - '0');
      } else if (c >= 'a' && c <= 'f') {
        v |= static_cast<unsigned>(c - 'a' + 10);
      } else if (c >= 'A' && c <= 'F') {
        v |= static_cast<unsigned>(c - 'A' + 10);
      } else {
        return Fail("a \\u escape needs four hex digits");
      }
    }
    *unit = static_cast<char16_t>(v);
    return true;
  }

  // One UTF-8 sequence starting at at_, appended as UTF-16.
  bool ParseUtf8(std::u16string* out) {
    const auto lead = static_cast<unsigned char>(text_[at_]);
    int extra = 0;
    std::uint32_t cp = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
      extra = 1, cp = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
      extra = 2, cp = lead & 0x0F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
      extra = 3, cp = lead & 0x07;
    } else {
      return Fail("the text is not UTF-8");
    }
    if (text_.size() - at_ <= static_cast<std::size_t>(extra)) {
      return Fail("the text is not UTF-8");
    }
    for (int i = 1; i <= extra; ++i) {
      const auto c = static_cast<unsigned char>(text_[at_ + i]);
      if ((c & 0xC0) != 0x80) return Fail("the text is not UTF-8");
      cp = (cp << 6) | (c & 0x3F);
    }
    static constexpr std::uint32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
    if (cp < kSmallest[extra] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
      return Fail("the text is not UTF-8");
    }
    at_ += extra + 1;
    if (cp >= 0x10000) {
      cp -= 0x10000;
      out->push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
      out->push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
    } else {
      out->push_back(static_cast<char16_t>(cp));
    }
    return true;
  }

  bool ParseString(std::u16string* out) {
    ++at_;  // the opening quote
    for (;;) {
      if (AtEnd()) return Fail("unterminated string");
      const char c = text_[at_];
      if (c == '"') {
        ++at_;
        return true;
      }
      if (static_cast<unsigned char>(c) < 0x20) {
        return Fail("a control character or line break inside a string");
      }
      if (c == '\\') {
        ++at_;
        if (AtEnd()) return Fail("unterminated string");
        const char e = text_[at_++];
        switch (e) {
          case '"':
            out->push_back(u'"');
            break;
          case '\\':
            out->push_back(u'\\');
            break;
          case '/':
            out->push_back(u'/');
            break;
          case 'b':
            out->push_back(u'\b');
            break;
          case 'f':
            out->push_back(u'\f');
            break;
          case 'n':
            out->push_back(u'\n');
            break;
          case 'r':
            out->push_back(u'\r');
            break;
          case 't':
            out->push_back(u'\t');
            break;
          case 'u': {
            char16_t unit = 0;
            if (!ParseHex4(&unit)) return false;
            out->push_back(unit);
            break;
          }
          default:
            return Fail("unknown escape in a string");
        }
      } else if (static_cast<unsigned char>(c) < 0x80) {
        out->push_back(static_cast<char16_t>(c));
        ++at_;
      } else if (!ParseUtf8(out)) {
        return false;
      }
    }
  }

  std::string_view text_;
  std::size_t at_ = 0;
  int line_ = 1;
  int values_ = 0;  // in the item being read
  std::string error_;
  int error_line_ = 0;
};

}  // namespace

const JsonValue* JsonValue::Member(std::u16string_view name) const {
  for (std::size_t i = 0; i < names.size() && i < items.size(); ++i) {
    if (names[i] == name) return &items[i];
  }
  return nullptr;
}

bool ReadJsonArray(std::string_view text, const std::function<bool(JsonValue&&)>& item,
                   JsonError* error) {
  return JsonParser(text).ParseArrayDocument(item, error);
}

}  // namespace quillora
