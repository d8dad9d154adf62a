// A small reader of JSON text (RFC 8259), for the exports of other time
// trackers: a document that is an array of records. Each item of the array
// is built as a tree of values, each with the line it starts on, handed over
// and dropped, so a large export never stands in memory as a whole tree.
// Anything that is not JSON is refused with the line and what was wrong
// there. The reader never reads outside the text it is given, never nests
// deeper than kJsonMaxDepth and never builds an item of more than
// kJsonMaxItemValues values, whatever the bytes are.
#ifndef QUILLORA_INTERCHANGE_JSON_READER_H_
#define QUILLORA_INTERCHANGE_JSON_READER_H_

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quillora {

inline constexpr int kJsonMaxDepth = 64;
inline constexpr int kJsonMaxItemValues = 4096;

struct JsonValue {
  enum class Type { kNull, kBool, kNumber, kString, kArray, kObject };
  Type type = Type::kNull;
  int line = 0;  // 1-based
  bool boolean = false;
  double number = 0;
  std::u16string text;  // kString
  // The items of an array, or the values of an object's members in their
  // order with the members' names in `names`.
  std::vector<JsonValue> items;
  std::vector<std::u16string> names;  // kObject

  // The first member named `name`; null when there is none.
  const JsonValue* Member(std::u16string_view name) const;
};

struct JsonError {
  int line = 0;
  std::string what;  // "expected ',' or ']'", "unterminated string", ...
};

// Reads UTF-8 JSON text (a byte order mark is skipped) that must be one
// array, possibly surrounded by blanks, and calls `item` with each of its
// items in order. False with `error` set when the text is not such an array;
// false with `error->what` empty as soon as `item` answers false.
bool ReadJsonArray(std::string_view text, const std::function<bool(JsonValue&&)>& item,
                   JsonError* error);

}  // namespace quillora

#endif  // QUILLORA_INTERCHANGE_JSON_READER_H_
