// Conversions between wide text and the device's ANSI code pages, and the
// UTF-16 little-endian bytes of the list files.
#ifndef QUILLORA_PLATFORM_CODE_PAGE_H_
#define QUILLORA_PLATFORM_CODE_PAGE_H_

#include <string>
#include <string_view>

namespace quillora {

// True when `code_page` (1252, 1250, 932, ...) can be converted.
bool IsCodePageSupported(int code_page);

// Wide text to the code page. Every UTF-16 unit that the code page cannot
// hold becomes one "?" (an emoji, a surrogate pair, gives "??"; an unpaired
// surrogate one "?"), so a single-byte code page always gives exactly one
// byte per unit. No best-fit mappings: "Ā" is "?" in 1252, not "A". An
// unsupported code page converts as 1252.
std::string ToAnsi(std::u16string_view text, int code_page);

// Code page bytes to wide text. Every byte that does not start a character
// of the code page becomes U+FFFD. An unsupported code page converts as 1252.
std::u16string FromAnsi(std::string_view bytes, int code_page);

// Wide text as UTF-16LE bytes (two a unit, no byte order mark).
std::string ToUtf16Le(std::u16string_view text);

// UTF-16LE bytes (no byte order mark) to wide text; an odd last byte is
// ignored. Unpaired surrogates are kept as they are.
std::u16string FromUtf16Le(std::string_view bytes);

}  // namespace quillora

#endif  // QUILLORA_PLATFORM_CODE_PAGE_H_
