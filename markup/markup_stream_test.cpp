#include "markup/markup_stream.h"

#include <gtest/gtest.h>

namespace quillora {
namespace {

// The streamed text of a document equals the text MarkupDocument's writer
// gives when it builds the whole document, for every piece size.
TEST(MarkupStreamTest, GivesTheWritersTextOfTheWholeDocument) {
  MarkupDocument whole;
  whole.AddElement(u"html");
  whole.AddAttribute(u"xmlns", u"a'b\"<&>");
  whole.AddChildElement(u"head");
  whole.IntoElement();
  whole.AddChildElement(u"title", u"T <1>");
  whole.OutOfElement();
  whole.AddChildElement(u"body");
  whole.IntoElement();
  whole.AddChildElement(u"table");
  whole.AddChildAttribute(u"border", u"0");
  whole.IntoElement();
  for (int row = 0; row < 3; ++row) {
    whole.AddChildElement(u"tr");
    whole.IntoElement();
    whole.AddChildElement(u"td", row == 1 ? u"" : u"x&y");
    whole.AddChildAttribute(u"class", u"Data");
    whole.OutOfElement();
  }
  whole.OutOfElement();
  whole.AddChildElement(u"table");  // left empty
  whole.AddChildAttribute(u"border", u"1");
  whole.OutOfElement();
  whole.AddChildElement(u"p", u"after body");

  for (std::size_t piece_size : {std::size_t{1}, std::size_t{7}, std::size_t{4096}}) {
    std::u16string streamed;
    int pieces = 0;
    MarkupStream stream(
        [&](std::u16string_view piece) {
          ++pieces;
          streamed.append(piece);
          return true;
        },
        piece_size);
    MarkupDocument part;
    ASSERT_TRUE(stream.Open(u"html"));
    ASSERT_TRUE(stream.Attribute(u"xmlns", u"a'b\"<&>"));
    part.AddElement(u"head");
    part.AddChildElement(u"title", u"T <1>");
    stream.Add(part);
    ASSERT_TRUE(stream.Open(u"body"));
    ASSERT_TRUE(stream.Open(u"table"));
    ASSERT_TRUE(stream.Attribute(u"border", u"0"));
    for (int row = 0; row < 3; ++row) {
      part.Clear();
      part.AddElement(u"tr");
      part.AddChildElement(u"td", row == 1 ? u"" : u"x&y");
      part.AddChildAttribute(u"class", u"Data");
      stream.Add(part);
    }
    EXPECT_FALSE(stream.Attribute(u"late", u"1")) << "the start tag is closed";
    ASSERT_TRUE(stream.Close());
    ASSERT_TRUE(stream.Open(u"table"));
    ASSERT_TRUE(stream.Attribute(u"border", u"1"));
    ASSERT_TRUE(stream.Close());
    ASSERT_TRUE(stream.Close());
    part.Clear();
    part.AddElement(u"p", u"after body");
    stream.Add(part);
    ASSERT_TRUE(stream.Finish());
    EXPECT_FALSE(stream.Open(u"second")) << "one top-level element only";
    EXPECT_EQ(streamed, whole.DocumentText()) << "pieces of " << piece_size;
    if (piece_size == 1) {
      EXPECT_GT(pieces, 5);
    }
  }
}

TEST(MarkupStreamTest, AnEmptyTopLevelElementAndARefusedPiece) {
  std::u16string streamed;
  MarkupStream empty([&](std::u16string_view piece) {
    streamed.append(piece);
    return true;
  });
  empty.Open(u"ITEMS");
  ASSERT_TRUE(empty.Finish());
  MarkupDocument whole;
  whole.AddElement(u"ITEMS");
  EXPECT_EQ(streamed, whole.DocumentText());

  int calls = 0;
  MarkupStream refused(
      [&](std::u16string_view) {
        ++calls;
        return false;
      },
      1);
  refused.Open(u"a");
  MarkupDocument child;
  child.AddElement(u"b");
  refused.Add(child);
  refused.Add(child);
  EXPECT_FALSE(refused.Finish());
  EXPECT_EQ(calls, 1) << "nothing is handed on after a refused piece";
}

}  // namespace
}  // namespace quillora
