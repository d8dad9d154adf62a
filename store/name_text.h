// The one rule for the characters of the texts a user gives the catalogue
// and the entries: names, phases, tasks, contacts, currencies, custom values,
// titles and descriptions hold no control character (U+0000 to U+001F and
// U+007F): a line break would split the lines of every list and export, and
// an escape would reach the terminal. A note keeps its tabs and line breaks.
// Every edge where such texts come in (the command line, list import,
// contacts import) asks here.
#ifndef QUILLORA_STORE_NAME_TEXT_H_
#define QUILLORA_STORE_NAME_TEXT_H_

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace quillora {

enum class TextField {
  kName,  // a name of no particular field
  kClient,
  kProject,
  kPhase,
  kTask,
  kContact,
  kBillTo,
  kCurrency,
  kCustom1,
  kCustom2,
  kCustom3,
  kTitle,
  kDescription,
  kNote,
};

// True when `text` holds a character that `field` may not hold.
bool HoldsControlCharacter(TextField field, std::u16string_view text);

struct FieldText {
  TextField field;
  std::u16string_view text;
};

// The first of `texts` that holds a character its field may not hold;
// nothing when none does.
std::optional<TextField> FindControlCharacter(std::initializer_list<FieldText> texts);

// "The client name holds a control character (such as a line break or an
// escape); remove it and try again."
std::u16string ControlCharacterMessage(TextField field);

// A text as an XML file may hold it: each character that no name may hold
// (and, in a note, each but tab, CR and LF), U+FFFE and U+FFFF become "?".
// XML 1.0 has no way to write them.
std::u16string ReplaceControlCharacters(TextField field, std::u16string text);

}  // namespace quillora

#endif  // QUILLORA_STORE_NAME_TEXT_H_
