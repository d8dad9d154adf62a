#include "interchange/export_format.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "platform/text.h"

namespace quillora {
namespace {

std::u16string Printf(std::uint32_t hundredths) {
  char buf[64];
  const int n = std::snprintf(buf, sizeof buf, "%.2f", hundredths / 100.0);
  return WidenAscii(std::string(buf, static_cast<std::size_t>(n)));
}

// The hundredths are written from the integer; they must stay exactly what
// the C library prints for the quotient, at the edges and across the range.
TEST(ExportFormatTest, HundredthsMatchTheCLibrary) {
  for (std::uint32_t v : {0u, 1u, 5u, 9u, 10u, 99u, 100u, 101u, 105u, 995u, 999u, 1000u,
                          12345u, 65535u, 99999995u, 4294967294u, 4294967295u}) {
    EXPECT_EQ(FormatExportHundredths(v), Printf(v)) << v;
  }
  for (std::uint64_t v = 0; v <= 0xFFFFFFFFu; v += 999983) {
    const auto value = static_cast<std::uint32_t>(v);
    ASSERT_EQ(FormatExportHundredths(value), Printf(value)) << value;
  }
  EXPECT_EQ(FormatExportHundredths(4294967295u), u"42949672.95");
  EXPECT_EQ(FormatInteger(-3), u"-3");
}

}  // namespace
}  // namespace quillora
