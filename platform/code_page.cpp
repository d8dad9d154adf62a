#include "platform/code_page.h"

#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>

#include <array>
#include <map>
#include <memory>

namespace quillora {
namespace {

struct ConverterCloser {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using ConverterPtr = std::unique_ptr<UConverter, ConverterCloser>;

ConverterPtr OpenConverter(int code_page) {
  std::string name = "windows-" + std::to_string(code_page);
  UErrorCode status = U_ZERO_ERROR;
  ConverterPtr converter(ucnv_open(name.c_str(), &status));
  if (U_FAILURE(status)) return nullptr;
  return converter;
}

// One "?" for every UTF-16 unit the code page has no byte for.
void QuestionMarkPerUnit(const void*, UConverterFromUnicodeArgs* args, const UChar*,
                         int32_t length, UChar32, UConverterCallbackReason reason,
                         UErrorCode* error) {
  if (reason > UCNV_IRREGULAR) return;  // reset, close or clone
  *error = U_ZERO_ERROR;
  for (int32_t i = 0; i < length && U_SUCCESS(*error); ++i) {
    ucnv_cbFromUWriteBytes(args, "?", 1, 0, error);
  }
}

// One U+FFFD for every byte that does not start a character.
void ReplacementPerByte(const void*, UConverterToUnicodeArgs* args, const char*,
                        int32_t length, UConverterCallbackReason reason,
                        UErrorCode* error) {
  if (reason > UCNV_IRREGULAR) return;
  *error = U_ZERO_ERROR;
  static const UChar kReplacement = 0xFFFD;
  for (int32_t i = 0; i < length && U_SUCCESS(*error); ++i) {
    ucnv_cbToUWriteUChars(args, &kReplacement, 1, 0, error);
  }
}

// The converter of a code page, opened once per thread with the callbacks
// set; nullptr when neither the code page nor 1252 can be opened.
UConverter* ConverterFor(int code_page) {
  thread_local std::map<int, ConverterPtr> cache;
  auto found = cache.find(code_page);
  if (found == cache.end()) {
    ConverterPtr converter = OpenConverter(code_page);
    if (converter != nullptr) {
      UErrorCode status = U_ZERO_ERROR;
      ucnv_setFallback(converter.get(), false);  // no best-fit mappings
      ucnv_setFromUCallBack(converter.get(), QuestionMarkPerUnit, nullptr, nullptr,
                            nullptr, &status);
      ucnv_setToUCallBack(converter.get(), ReplacementPerByte, nullptr, nullptr, nullptr,
                          &status);
      if (U_FAILURE(status)) converter.reset();
    }
    found = cache.emplace(code_page, std::move(converter)).first;
  }
  if (found->second == nullptr) return code_page == 1252 ? nullptr : ConverterFor(1252);
  ucnv_reset(found->second.get());
  return found->second.get();
}

}  // namespace

bool IsCodePageSupported(int code_page) { return OpenConverter(code_page) != nullptr; }

// For a single-byte code page, every UTF-16 unit's byte in one table: the
// byte whose character the unit is ("?" when none), built from the code
// page's own byte-to-character mapping so that only round-trip mappings are
// used, as the converter does without best fit.
const std::array<char, 65536>* SingleByteTable(int code_page) {
  thread_local std::map<int, std::unique_ptr<std::array<char, 65536>>> tables;
  auto found = tables.find(code_page);
  if (found != tables.end()) return found->second.get();
  std::unique_ptr<std::array<char, 65536>> table;
  UConverter* converter = ConverterFor(code_page);
  if (converter != nullptr && ucnv_getMaxCharSize(converter) == 1) {
    table = std::make_unique<std::array<char, 65536>>();
    table->fill('?');
    for (int b = 255; b >= 0; --b) {
      const std::u16string unit = FromAnsi(std::string(1, static_cast<char>(b)), code_page);
      if (unit.size() == 1 && unit[0] != 0xFFFD) (*table)[unit[0]] = static_cast<char>(b);
    }
  }
  return tables.emplace(code_page, std::move(table)).first->second.get();
}

std::string ToAnsi(std::u16string_view text, int code_page) {
  if (text.empty()) return {};
  if (const auto* table = SingleByteTable(code_page)) {
    std::string out(text.size(), '?');
    for (std::size_t i = 0; i < text.size(); ++i) out[i] = (*table)[text[i]];
    return out;
  }
  UConverter* converter = ConverterFor(code_page);
  if (converter == nullptr) return {};
  std::string out(
      UCNV_GET_MAX_BYTES_FOR_STRING(text.size(), ucnv_getMaxCharSize(converter)), '\0');
  const UChar* source = text.data();
  const UChar* source_end = source + text.size();
  char* target = out.data();
  for (;;) {
    UErrorCode status = U_ZERO_ERROR;
    ucnv_fromUnicode(converter, &target, out.data() + out.size(), &source, source_end,
                     nullptr, true, &status);
    if (status != U_BUFFER_OVERFLOW_ERROR) break;
    std::size_t written = static_cast<std::size_t>(target - out.data());
    out.resize(out.size() * 2);
    target = out.data() + written;
  }
  out.resize(static_cast<std::size_t>(target - out.data()));
  return out;
}

std::u16string FromAnsi(std::string_view bytes, int code_page) {
  UConverter* converter = ConverterFor(code_page);
  if (converter == nullptr || bytes.empty()) return {};
  std::u16string out(bytes.size() + 1, u'\0');
  const char* source = bytes.data();
  const char* source_end = source + bytes.size();
  UChar* target = out.data();
  for (;;) {
    UErrorCode status = U_ZERO_ERROR;
    ucnv_toUnicode(converter, &target, out.data() + out.size(), &source, source_end,
                   nullptr, true, &status);
    if (status != U_BUFFER_OVERFLOW_ERROR) break;
    std::size_t written = static_cast<std::size_t>(target - out.data());
    out.resize(out.size() * 2);
    target = out.data() + written;
  }
  out.resize(static_cast<std::size_t>(target - out.data()));
  return out;
}

std::string ToUtf16Le(std::u16string_view text) {
  std::string out;
  out.reserve(text.size() * 2);
  for (char16_t unit : text) {
    out += static_cast<char>(unit & 0xFF);
    out += static_cast<char>(unit >> 8);
  }
  return out;
}

std::u16string FromUtf16Le(std::string_view bytes) {
  std::u16string out;
  out.reserve(bytes.size() / 2);
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    out += static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) |
                                 static_cast<unsigned char>(bytes[i + 1]) << 8);
  }
  return out;
}

}  // namespace quillora
