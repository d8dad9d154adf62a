#include "platform/text.h"

#include <unicode/ustring.h>

namespace quillora {

std::string ToUtf8(std::u16string_view text) {
  if (text.empty()) return {};
  std::string out(text.size() * 3, '\0');
  int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strToUTF8WithSub(out.data(), static_cast<int32_t>(out.size()), &length,
                     reinterpret_cast<const UChar*>(text.data()),
                     static_cast<int32_t>(text.size()), 0xFFFD, nullptr, &status);
  if (U_FAILURE(status)) return {};
  out.resize(static_cast<std::size_t>(length));
  return out;
}

std::u16string FromUtf8(std::string_view text) {
  if (text.empty()) return {};
  std::u16string out(text.size(), u'\0');
  int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8WithSub(reinterpret_cast<UChar*>(out.data()), static_cast<int32_t>(out.size()),
                       &length, text.data(), static_cast<int32_t>(text.size()), 0xFFFD,
                       nullptr, &status);
  if (U_FAILURE(status)) return {};
  out.resize(static_cast<std::size_t>(length));
  return out;
}

bool FromUtf8Strict(std::string_view text, std::u16string* out) {
  out->assign(text.size(), u'\0');
  int32_t length = 0;
  int32_t substitutions = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8WithSub(
      reinterpret_cast<UChar*>(out->data()), static_cast<int32_t>(out->size()), &length,
      text.data(), static_cast<int32_t>(text.size()), 0xFFFD, &substitutions, &status);
  if (U_FAILURE(status) || substitutions != 0) {
    out->clear();
    return false;
  }
  out->resize(static_cast<std::size_t>(length));
  return true;
}

std::u16string WidenAscii(std::string_view text) {
  return std::u16string(text.begin(), text.end());
}

}  // namespace quillora
