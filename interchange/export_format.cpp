#include "interchange/export_format.h"

#include <cstdio>
#include <iterator>

#include "platform/text.h"

namespace quillora {

std::u16string FormatExportHundredths(std::uint32_t hundredths) {
  // hundredths / 100.0 lies within far less than half a hundredth of the
  // exact decimal, so printf's rounding gives back exactly the integer's
  // digits: they are written from the integer, without printf.
  char16_t buf[16];  // at most 42949672.95
  char16_t* const end = buf + std::size(buf);
  char16_t* p = end;
  std::uint32_t rest = hundredths;
  for (int i = 0; i < 2; ++i, rest /= 10) *--p = static_cast<char16_t>(u'0' + rest % 10);
  *--p = u'.';
  do {
    *--p = static_cast<char16_t>(u'0' + rest % 10);
    rest /= 10;
  } while (rest != 0);
  return std::u16string(p, end);
}

std::u16string FormatInteger(int value) {
  char buf[16];
  const int n = std::snprintf(buf, sizeof buf, "%d", value);
  return n > 0 ? WidenAscii(std::string_view(buf, static_cast<std::size_t>(n))) : u"";
}

}  // namespace quillora
