// Conversions between the wide text of the logic (UTF-16) and the UTF-8 of the
// terminal, the command line and file names.
#ifndef QUILLORA_PLATFORM_TEXT_H_
#define QUILLORA_PLATFORM_TEXT_H_

#include <string>
#include <string_view>

namespace quillora {

// UTF-16 to UTF-8; an unpaired surrogate becomes U+FFFD.
std::string ToUtf8(std::u16string_view text);

// UTF-8 to UTF-16; an invalid sequence becomes U+FFFD.
std::u16string FromUtf8(std::string_view text);

// UTF-8 to UTF-16 when the text is valid UTF-8; false (with `out` empty)
// when it holds an invalid sequence.
bool FromUtf8Strict(std::string_view text, std::u16string* out);

// Widens text made of ASCII characters only (printf output), one unit each.
std::u16string WidenAscii(std::string_view text);

}  // namespace quillora

#endif  // QUILLORA_PLATFORM_TEXT_H_
