// Character classes of the Unicode character database, for the checks of
// typed text that must not hold letters.
#ifndef QUILLORA_PLATFORM_CHAR_CLASS_H_
#define QUILLORA_PLATFORM_CHAR_CLASS_H_

namespace quillora {

// True when the code point is a letter of any letter class: upper case, lower
// case, title case, modifier or other letter (Lu, Ll, Lt, Lm, Lo). Digits,
// punctuation, blanks, symbols and surrogate halves are not letters.
bool IsLetter(char32_t code_point);

}  // namespace quillora

#endif  // QUILLORA_PLATFORM_CHAR_CLASS_H_
