#include "interchange/export_format.h"

#include <cstdio>

#include "platform/text.h"

namespace quillora {

std::u16string FormatExportHundredths(std::uint32_t hundredths) {
  char buf[64];  // at most 42949672.95
  const int n = std::snprintf(buf, sizeof buf, "%.2f", hundredths / 100.0);
  return n > 0 ? WidenAscii(std::string_view(buf, static_cast<std::size_t>(n))) : u"";
}

std::u16string FormatInteger(int value) {
  char buf[16];
  const int n = std::snprintf(buf, sizeof buf, "%d", value);
  return n > 0 ? WidenAscii(std::string_view(buf, static_cast<std::size_t>(n))) : u"";
}

}  // namespace quillora
