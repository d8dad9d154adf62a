// Decodes arbitrary bytes as ANSI text of several code pages and as UTF-16LE,
// and encodes the result back: nothing may read out of bounds, and a
// single-byte code page must give one byte per UTF-16 unit.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/code_page.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view bytes(reinterpret_cast<const char*>(data), size);
  for (int code_page : {1252, 1250, 1253, 1255, 932, 936, 949, 950}) {
    std::u16string text = quillora::FromAnsi(bytes, code_page);
    quillora::ToAnsi(text, code_page);
  }
  std::u16string wide = quillora::FromUtf16Le(bytes);
  for (int code_page : {1252, 1251, 874}) {
    if (quillora::ToAnsi(wide, code_page).size() != wide.size()) std::abort();
  }
  quillora::ToAnsi(wide, 932);
  return 0;
}
