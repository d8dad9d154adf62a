#include "platform/char_class.h"

#include <unicode/uchar.h>

namespace quillora {

bool IsLetter(char32_t code_point) {
  if (code_point > 0x10FFFF) return false;
  return u_isalpha(static_cast<UChar32>(code_point)) != 0;
}

}  // namespace quillora
