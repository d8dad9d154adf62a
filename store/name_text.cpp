#include "store/name_text.h"

namespace quillora {
namespace {

bool IsControl(TextField field, char16_t c) {
  if (field == TextField::kNote && (c == u'\t' || c == u'\r' || c == u'\n')) return false;
  return c < 0x20 || c == 0x7F;
}

const char16_t* FieldLabel(TextField field) {
  switch (field) {
    case TextField::kName:
      return u"name";
    case TextField::kClient:
      return u"client name";
    case TextField::kProject:
      return u"project name";
    case TextField::kPhase:
      return u"phase";
    case TextField::kTask:
      return u"task";
    case TextField::kContact:
      return u"contact name";
    case TextField::kBillTo:
      return u"bill-to contact";
    case TextField::kCurrency:
      return u"currency";
    case TextField::kCustom1:
      return u"custom field 1";
    case TextField::kCustom2:
      return u"custom field 2";
    case TextField::kCustom3:
      return u"custom field 3";
    case TextField::kTitle:
      return u"title";
    case TextField::kDescription:
      return u"description";
    case TextField::kNote:
      return u"note";
  }
  return u"name";
}

}  // namespace

bool HoldsControlCharacter(TextField field, std::u16string_view text) {
  for (char16_t c : text) {
    if (IsControl(field, c)) return true;
  }
  return false;
}

std::optional<TextField> FindControlCharacter(std::initializer_list<FieldText> texts) {
  for (const FieldText& t : texts) {
    if (HoldsControlCharacter(t.field, t.text)) return t.field;
  }
  return std::nullopt;
}

std::u16string ControlCharacterMessage(TextField field) {
  return std::u16string(u"The ") + FieldLabel(field) +
         (field == TextField::kNote
              ? u" holds a control character other than a tab or a line break; remove it "
                u"and try again."
              : u" holds a control character (such as a line break or an escape); "
                u"remove it and try again.");
}

std::u16string ReplaceControlCharacters(TextField field, std::u16string text) {
  for (char16_t& c : text) {
    // U+FFFE and U+FFFF are no XML characters either.
    if (IsControl(field, c) || c == 0xFFFE || c == 0xFFFF) c = u'?';
  }
  return text;
}

}  // namespace quillora
