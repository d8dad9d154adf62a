// A small reader of JSON text (RFC 8259), for the exports of other time
// trackers. It builds the whole document as a tree of values, each with the
// line it starts on, and refuses anything that is not JSON with the line and
// what was wrong there. It never reads outside the text it is given and
// never nests deeper than kJsonMaxDepth, whatever the bytes are.
#ifndef QUILLORA_INTERCHANGE_JSON_READER_H_
#define QUILLORA_INTERCHANGE_JSON_READER_H_

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillora {

inline constexpr int kJsonMaxDepth = 64;

struct JsonValue {
  enum class Type { kNull, kBool, kNumber, kString, kArray, kObject };
  Type type = Type::kNull;
  int line = 0;  // 1-based
  bool boolean = false;
  double number = 0;
  std::u16string text;                                        // kString
  std::vector<JsonValue> items;                               // kArray
  std::vector<std::pair<std::u16string, JsonValue>> members;  // kObject, in order

  // The first member named `name`; null when there is none.
  const JsonValue* Member(std::u16string_view name) const;
};

struct JsonError {
  int line = 0;
  std::string what;  // "expected ',' or ']'", "unterminated string", ...
};

// Reads UTF-8 JSON text (a byte order mark is skipped). False with `error`
// set when the text is not one JSON value, possibly surrounded by blanks;
// `value` is then left empty.
bool ReadJson(std::string_view text, JsonValue* value, JsonError* error);

}  // namespace quillora

#endif  // QUILLORA_INTERCHANGE_JSON_READER_H_
