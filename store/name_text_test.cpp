#include "store/name_text.h"

#include <gtest/gtest.h>

namespace quillora {
namespace {

TEST(NameTextTest, NamesHoldNoControlCharacterAndNotesKeepTabsAndBreaks) {
  const struct {
    TextField field;
    std::u16string text;
    bool refused;
    std::u16string in_xml;
  } cases[] = {
      {TextField::kClient, u"Acme & Co", false, u"Acme & Co"},
      {TextField::kClient, u"A\nB", true, u"A?B"},
      {TextField::kTask, u"a\tb", true, u"a?b"},
      {TextField::kPhase, u"\x1b[31m", true, u"?[31m"},
      {TextField::kCurrency, u"E\x7f", true, u"E?"},
      {TextField::kCustom1, std::u16string(u"a\0b", 3), true, u"a?b"},
      {TextField::kTitle, u"Caf\u00e9 \u20ac", false, u"Caf\u00e9 \u20ac"},
      {TextField::kNote, u"one\r\ntwo\tthree", false, u"one\r\ntwo\tthree"},
      {TextField::kNote, u"bell\x07", true, u"bell?"},
      {TextField::kName, u"x\uFFFE", false, u"x?"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(HoldsControlCharacter(c.field, c.text), c.refused) << int(c.field);
    EXPECT_EQ(ReplaceControlCharacters(c.field, c.text), c.in_xml) << int(c.field);
  }
  EXPECT_EQ(FindControlCharacter({{TextField::kClient, u"ok"},
                                  {TextField::kNote, u"a\nb"},
                                  {TextField::kBillTo, u"x\ry"},
                                  {TextField::kTask, u"\x01"}}),
            TextField::kBillTo);
  EXPECT_EQ(FindControlCharacter({{TextField::kNote, u"a\tb"}}), std::nullopt);
  EXPECT_EQ(ControlCharacterMessage(TextField::kBillTo),
            u"The bill-to contact holds a control character (such as a line break or an "
            u"escape); remove it and try again.");
}

}  // namespace
}  // namespace quillora
