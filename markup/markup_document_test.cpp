#include "markup/markup_document.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "platform/text.h"

namespace quillora {

void PrintTo(const ElementPosition& p, std::ostream* os) {
  *os << "{" << p.start_left << "," << p.start_right << "," << p.end_left << ","
      << p.end_right << "," << p.following << " parent " << p.parent << " child "
      << p.first_child << " next " << p.next_sibling << "}";
}

namespace {

std::string Narrow(const std::u16string& text) { return ToUtf8(text); }

// One element as found by walking the tree: what a reader and a writer must
// agree on.
struct Node {
  std::u16string name;
  ElementPosition position;
  int index = 0;
  int depth = 0;
};

// The elements in document order (depth first, siblings in order).
std::vector<Node> Walk(const MarkupDocument& doc) {
  std::vector<Node> nodes;
  std::vector<std::pair<int, int>> stack;  // index, depth
  for (int top = doc.Position(0).first_child; top != 0;
       top = doc.Position(top).next_sibling) {
    stack.emplace_back(top, 0);
    while (!stack.empty()) {
      auto [index, depth] = stack.back();
      stack.pop_back();
      nodes.push_back({doc.TagName(index), doc.Position(index), index, depth});
      std::vector<int> children;
      for (int c = doc.Position(index).first_child; c != 0;
           c = doc.Position(c).next_sibling) {
        children.push_back(c);
      }
      for (auto it = children.rbegin(); it != children.rend(); ++it)
        stack.emplace_back(*it, depth + 1);
    }
  }
  return nodes;
}

class MarkupReaderTest : public ::testing::Test {
 protected:
  MarkupDocument doc_;
};

TEST_F(MarkupReaderTest, EachMessageOnTheSmallestTextThatCausesIt) {
  struct Case {
    std::u16string text;
    std::u16string error;
  };
  const Case cases[] = {
      {u"x", u"Element tag not found"},
      {u"<", u"Abrupt end within tag"},
      {u"<\"\">", u"Tag starts with quote"},
      {u"<a ", u"End of tag not found"},
      {u"<a>", u"End tag of a element not found"},
      {u"<a><!>", u"Expecting end tag of element a"},
      {u"<a><!-- x -->", u"Expecting end tag of element a"},
      {u"<a></>", u"End tag does not correspond to a"},
      {u"<a></a", u"End tag not completed for element a"},
      // And a few more that name the element where it went wrong.
      {u"<a></b>", u"End tag does not correspond to a"},
      {u"<a></A>", u"End tag does not correspond to a"},
      {u"<\"a\">", u"Tag starts with quote"},
      {u"<row><cell></row>", u"End tag does not correspond to cell"},
      {u"<row><cell>", u"End tag of cell element not found"},
      {u"<a></ ", u"End tag not completed for element a"},
      {u"<a></a \"x>\"", u"End tag not completed for element a"},
      {u"<a", u"Abrupt end within tag"},
      {u"<a/", u"End of tag not found"},
      {u"<!-- never closed ->", u"End of tag not found"},
      {u"<![CDATA[ ]]", u"End of tag not found"},
      {u"<?pi ?", u"End of tag not found"},
      {u"<?xml version=\"1.0\"?><!-- only -->", u"Element tag not found"},
      {u"</a>", u"Element tag not found"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Narrow(c.text));
    EXPECT_FALSE(doc_.SetDocument(c.text));
    EXPECT_EQ(Narrow(doc_.ErrorText()), Narrow(c.error));
    EXPECT_FALSE(doc_.IsWellFormed());
    EXPECT_EQ(doc_.NextFreeIndex(), 1);
    EXPECT_EQ(doc_.Position(0), ElementPosition{});
    EXPECT_EQ(doc_.DocumentText(), c.text);  // the text is kept as given
    EXPECT_FALSE(doc_.FindElement());
  }
}

TEST_F(MarkupReaderTest, SuccessAndEmptyTextClearTheLastMessage) {
  EXPECT_FALSE(doc_.SetDocument(u"<a>"));
  EXPECT_TRUE(doc_.SetDocument(u"<a/>"));
  EXPECT_EQ(doc_.ErrorText(), u"");
  EXPECT_FALSE(doc_.SetDocument(u""));  // empty text is not well formed
  EXPECT_EQ(doc_.ErrorText(), u"");
  EXPECT_FALSE(doc_.IsWellFormed());
  EXPECT_FALSE(doc_.FindElement());
}

TEST_F(MarkupReaderTest, NestedElementWithEmptyChild) {
  // <a><b/></a>: offsets 0..10.
  ASSERT_TRUE(doc_.SetDocument(u"<a><b/></a>"));
  EXPECT_EQ(doc_.NextFreeIndex(), 3);
  EXPECT_EQ(doc_.Position(0), (ElementPosition{0, 0, 0, 0, 0, 0, 1, 0}));
  EXPECT_EQ(doc_.Position(1), (ElementPosition{0, 2, 7, 10, 10, 0, 2, 0}));
  EXPECT_EQ(doc_.Position(2), (ElementPosition{3, 6, 5, 6, 6, 1, 0, 0}));
  EXPECT_EQ(doc_.TagName(0), u"");
  EXPECT_EQ(doc_.TagName(1), u"a");
  EXPECT_EQ(doc_.TagName(2), u"b");
}

TEST_F(MarkupReaderTest, SkipsInstructionsCommentsCdataAndDeclarations) {
  const std::u16string text = u"<?xml version=\"1.0\"?><!-- c --><a/>";
  ASSERT_TRUE(doc_.SetDocument(text));
  EXPECT_EQ(doc_.NextFreeIndex(), 2);
  EXPECT_EQ(doc_.Position(1), (ElementPosition{31, 34, 33, 34, 34, 0, 0, 0}));

  ASSERT_TRUE(
      doc_.SetDocument(u"<r><![CDATA[<x>]]><!DOCTYPE r><!-- <y/> --><c k=\"v\"/><?p "
                       u"<z/>?></r> trailing <b/>"));
  const std::vector<Node> nodes = Walk(doc_);
  ASSERT_EQ(nodes.size(), 2u);
  EXPECT_EQ(nodes[0].name, u"r");
  EXPECT_EQ(nodes[1].name, u"c");
  EXPECT_EQ(doc_.NextFreeIndex(), 3);
}

TEST_F(MarkupReaderTest, TagsEndWhereTheTokensSay) {
  // A quoted token in an end tag is counted but not checked.
  ASSERT_TRUE(doc_.SetDocument(u"<a></\"x\" a>"));
  EXPECT_EQ(doc_.Position(1).end_right, 10);
  // A start tag ends at the first '>' behind its name, quoted or not.
  ASSERT_TRUE(doc_.SetDocument(u"<a b=\">\"></a>"));
  EXPECT_EQ(doc_.Position(1).start_right, 6);
  // An end tag may close on the last character of the text.
  ASSERT_TRUE(doc_.SetDocument(u"<a></a>"));
  EXPECT_EQ(doc_.Position(1), (ElementPosition{0, 2, 3, 6, 6, 0, 0, 0}));
}

TEST_F(MarkupReaderTest, WhitespaceAndQuotedTokensInTags) {
  ASSERT_TRUE(doc_.SetDocument(u"lead <r\tid=\"1\" >\r\n <c></c  > </ r\n>"));
  const std::vector<Node> nodes = Walk(doc_);
  ASSERT_EQ(nodes.size(), 2u);
  EXPECT_EQ(nodes[0].position.start_left, 5);
  EXPECT_EQ(nodes[0].position.start_right, 15);
  EXPECT_EQ(nodes[0].position.end_left, 29);
  EXPECT_EQ(nodes[0].position.end_right, 34);
  EXPECT_EQ(nodes[1].position.end_left, 22);
  EXPECT_EQ(nodes[1].position.end_right, 27);
}

TEST_F(MarkupReaderTest, DeepNestingNeitherOverflowsNorLosesTheMessage) {
  constexpr int kDepth = 200000;
  std::u16string open;
  std::u16string close;
  for (int i = 0; i < kDepth; ++i) {
    open += u"<e>";
    close += u"</e>";
  }
  ASSERT_TRUE(doc_.SetDocument(open + u"<x/>" + close));
  EXPECT_EQ(doc_.NextFreeIndex(), kDepth + 2);
  EXPECT_EQ(doc_.Position(1).end_left, 3 * kDepth + 4 + 4 * (kDepth - 1));

  EXPECT_FALSE(doc_.SetDocument(open));
  EXPECT_EQ(doc_.ErrorText(), u"End tag of e element not found");
}

class MarkupNavigationTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(doc_.SetDocument(u"<r><a/><b><c/><c></c></b><a x=\"1\"></a><B/></r>"));
  }
  MarkupDocument doc_;
};

TEST_F(MarkupNavigationTest, FindsSiblingsAndChildrenByExactName) {
  EXPECT_FALSE(doc_.FindElement(u"a"));  // the top level holds only r
  EXPECT_EQ(doc_.CurrentElement(), 0);
  ASSERT_TRUE(doc_.FindElement(u"r"));
  EXPECT_FALSE(doc_.FindElement());  // r has no sibling
  EXPECT_EQ(doc_.TagName(doc_.CurrentElement()), u"r");

  ASSERT_TRUE(doc_.FindChildElement(u"a"));
  const int first_a = doc_.CurrentChild();
  ASSERT_TRUE(doc_.FindChildElement(u"a"));
  EXPECT_NE(doc_.CurrentChild(), first_a);
  const int second_a = doc_.CurrentChild();
  EXPECT_FALSE(doc_.FindChildElement(u"a"));
  EXPECT_EQ(doc_.CurrentChild(), second_a);  // unchanged on failure
  ASSERT_TRUE(doc_.FindChildElement(u"B"));
  EXPECT_FALSE(doc_.FindChildElement(u"b"));  // b lies behind, and case counts
}

TEST_F(MarkupNavigationTest, IntoAndOutOfElementsTrackTheLevel) {
  // Into with nothing found yet takes the top element's first child.
  ASSERT_TRUE(doc_.IntoElement());
  EXPECT_EQ(doc_.TagName(doc_.CurrentElement()), u"a");
  EXPECT_EQ(doc_.CurrentLevel(), 1);
  EXPECT_FALSE(doc_.IntoElement());  // <a/> is empty
  EXPECT_FALSE(doc_.FindChildElement());

  ASSERT_TRUE(doc_.FindElement(u"b"));
  ASSERT_TRUE(doc_.IntoElement());
  EXPECT_EQ(doc_.CurrentLevel(), 2);
  ASSERT_TRUE(doc_.FindElement());
  EXPECT_FALSE(doc_.IntoElement());  // <c></c> has no child, but is not empty
  EXPECT_EQ(doc_.CurrentLevel(), 2);

  ASSERT_TRUE(doc_.OutOfElement());
  EXPECT_EQ(doc_.TagName(doc_.CurrentElement()), u"b");
  EXPECT_EQ(doc_.TagName(doc_.CurrentChild()), u"c");
  ASSERT_TRUE(doc_.OutOfElement());
  EXPECT_EQ(doc_.TagName(doc_.CurrentElement()), u"r");
  EXPECT_EQ(doc_.CurrentLevel(), 0);
  EXPECT_FALSE(doc_.OutOfElement());
  // The child that was left is where the next child search goes on.
  ASSERT_TRUE(doc_.FindChildElement());
  EXPECT_EQ(doc_.TagName(doc_.CurrentChild()), u"a");
  EXPECT_EQ(doc_.Position(doc_.CurrentChild()).start_left, 25);
}

// Whether the writer's index matches what the reader builds from the text is
// checked after every step of the random mixes below.
class MarkupWriterTest : public ::testing::Test {
 protected:
  MarkupDocument doc_;
};

TEST_F(MarkupWriterTest, EscapesDataAndAttributeValues) {
  struct Case {
    std::u16string text;
    std::u16string data;
    std::u16string attribute;
  };
  const Case cases[] = {
      {u"", u"", u""},
      {u"plain", u"plain", u"plain"},
      {u"1<2", u"1&lt;2", u"1&lt;2"},
      {u"a&b>c", u"a&amp;b&gt;c", u"a&amp;b&gt;c"},
      {u"it's \"so\"", u"it's \"so\"", u"it&apos;s &quot;so&quot;"},
      {u"\u00e9\u4e2d", u"\u00e9\u4e2d", u"\u00e9\u4e2d"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Narrow(c.text));
    EXPECT_EQ(EscapeMarkup(c.text, MarkupEscapeMode::kData), c.data);
    EXPECT_EQ(EscapeMarkup(c.text, MarkupEscapeMode::kAttribute), c.attribute);
  }
  // Far more replacements than the first buffer holds.
  std::u16string many(1000, u'"');
  std::u16string expected;
  for (int i = 0; i < 1000; ++i) expected += u"&quot;";
  EXPECT_EQ(EscapeMarkup(many, MarkupEscapeMode::kAttribute), expected);
}

TEST_F(MarkupWriterTest, ChildWithDataOpensAnEmptyParent) {
  ASSERT_TRUE(doc_.SetDocument(u"<r/>"));
  ASSERT_TRUE(doc_.FindElement());
  ASSERT_TRUE(doc_.AddChildElement(u"x", u"1<2"));
  EXPECT_EQ(doc_.DocumentText(), u"<r>\r\n<x>1&lt;2</x>\r\n</r>");
  EXPECT_EQ(doc_.TagName(doc_.CurrentChild()), u"x");

  MarkupDocument built;
  ASSERT_TRUE(built.AddElement(u"r"));
  ASSERT_TRUE(built.AddChildElement(u"x", u"1<2"));
  EXPECT_EQ(built.DocumentText(), u"<r>\r\n<x>1&lt;2</x>\r\n</r>\r\n");
}

TEST_F(MarkupWriterTest, AttributesGoInTheOrderAdded) {
  ASSERT_TRUE(doc_.AddElement(u"r"));
  ASSERT_TRUE(doc_.AddAttribute(u"v", u"a\"b"));
  EXPECT_EQ(doc_.DocumentText(), u"<r v=\"a&quot;b\"/>\r\n");
  ASSERT_TRUE(doc_.AddAttribute(u"v", u"2"));
  ASSERT_TRUE(doc_.AddChildElement(u"c", u"d"));
  ASSERT_TRUE(doc_.AddChildAttribute(u"k", u"<"));
  ASSERT_TRUE(doc_.AddAttribute(u"w", u""));
  EXPECT_EQ(doc_.DocumentText(),
            u"<r v=\"a&quot;b\" v=\"2\" w=\"\">\r\n<c k=\"&lt;\">d</c>\r\n</r>\r\n");
}

TEST_F(MarkupWriterTest, BuildsAReportShapedDocument) {
  ASSERT_TRUE(doc_.AddElement(u"html"));
  ASSERT_TRUE(doc_.AddAttribute(u"xmlns", u"x"));
  ASSERT_TRUE(doc_.AddChildElement(u"head"));
  ASSERT_TRUE(doc_.IntoElement());
  ASSERT_TRUE(doc_.AddChildElement(u"title", u"T&C"));
  ASSERT_TRUE(doc_.AddChildElement(u"meta"));
  ASSERT_TRUE(doc_.AddChildAttribute(u"name", u"Generator"));
  ASSERT_TRUE(doc_.OutOfElement());
  ASSERT_TRUE(doc_.AddChildElement(u"body"));
  ASSERT_TRUE(doc_.IntoElement());
  ASSERT_TRUE(doc_.AddChildElement(u"h2"));
  ASSERT_TRUE(doc_.AddChildElement(u"table"));
  ASSERT_TRUE(doc_.IntoElement());
  ASSERT_TRUE(doc_.AddChildElement(u"tr"));
  ASSERT_TRUE(doc_.OutOfElement());
  ASSERT_TRUE(doc_.OutOfElement());
  ASSERT_TRUE(doc_.AddChildElement(u"p"));
  EXPECT_EQ(
      doc_.DocumentText(),
      u"<html xmlns=\"x\">\r\n"
      u"<head>\r\n<title>T&amp;C</title>\r\n<meta name=\"Generator\"/>\r\n</head>\r\n"
      u"<body>\r\n<h2/>\r\n<table>\r\n<tr/>\r\n</table>\r\n</body>\r\n"
      u"<p/>\r\n"
      u"</html>\r\n");
}

TEST_F(MarkupWriterTest, RefusesWhatHasNoElement) {
  EXPECT_FALSE(doc_.AddChildElement(u"x"));
  EXPECT_FALSE(doc_.AddAttribute(u"a", u"b"));
  EXPECT_FALSE(doc_.AddChildAttribute(u"a", u"b"));
  ASSERT_TRUE(doc_.AddElement(u"r"));
  EXPECT_FALSE(doc_.AddChildAttribute(u"a", u"b"));
  const std::u16string before = doc_.DocumentText();
  EXPECT_FALSE(doc_.AddElement(u"second"));  // only one top-level element
  EXPECT_EQ(doc_.DocumentText(), before);
}

TEST_F(MarkupWriterTest, ANewTopElementReplacesTextThatDidNotParse) {
  EXPECT_FALSE(doc_.SetDocument(u"<broken>"));
  ASSERT_TRUE(doc_.AddElement(u"r", u"ok"));
  EXPECT_EQ(doc_.DocumentText(), u"<r>ok</r>\r\n");
}

TEST_F(MarkupWriterTest, ChildOfAParsedElementWithAnEndTag) {
  ASSERT_TRUE(doc_.SetDocument(u"<r><a></a><z/></r>"));
  ASSERT_TRUE(doc_.FindChildElement(u"a"));
  ASSERT_TRUE(doc_.IntoElement());
  ASSERT_TRUE(doc_.AddChildElement(u"x", u"1"));
  EXPECT_EQ(doc_.DocumentText(), u"<r><a><x>1</x>\r\n</a><z/></r>");
  // The parsed elements keep following == end_right; x is the writer's.
  const std::vector<Node> nodes = Walk(doc_);
  ASSERT_EQ(nodes.size(), 4u);
  EXPECT_EQ(nodes[1].position, (ElementPosition{3, 5, 16, 19, 19, 1, 4, 3}));
  EXPECT_EQ(nodes[2].position, (ElementPosition{6, 8, 10, 13, 16, 2, 0, 0}));
  EXPECT_EQ(nodes[3].position.start_left, 20);
  EXPECT_EQ(nodes[0].position.end_left, 24);
}

// A parsed element's `following` is its closing '>', so a sibling written
// behind an element that came from the reader lands before that '>'.
TEST_F(MarkupWriterTest, SiblingBehindAParsedElementGoesAtItsClosingBracket) {
  ASSERT_TRUE(doc_.SetDocument(u"<r><a/></r>"));
  ASSERT_TRUE(doc_.FindChildElement(u"a"));
  ASSERT_TRUE(doc_.AddChildElement(u"x"));
  EXPECT_EQ(doc_.DocumentText(), u"<r><a/<x/>\r\n></r>");
}

// Random mixes of reader and writer calls; after every step the written text
// read back must give the same elements at the same offsets.
TEST(MarkupDocumentPropertyTest, IndexStaysExactUnderRandomMixes) {
  const std::u16string names[] = {u"a", u"bb", u"row", u"Cell"};
  const std::u16string values[] = {u"",      u"x",    u"1<2",
                                   u"a&b>c", u"\"q'", u"long text here"};
  std::mt19937 rng(20240611);
  auto pick = [&](std::size_t n) { return static_cast<std::size_t>(rng() % n); };

  for (int run = 0; run < 150; ++run) {
    MarkupDocument doc;
    // Records below this index came from the reader; a sibling is only
    // written behind the writer's own elements (see the test above).
    int parsed_below = 1;
    std::string log;
    for (int step = 0; step < 50; ++step) {
      const std::u16string& name = names[pick(4)];
      const std::u16string& value = values[pick(6)];
      const std::u16string& search = pick(3) == 0 ? std::u16string() : names[pick(4)];
      const int current = doc.CurrentElement();
      int behind = doc.CurrentChild();
      if (current != 0 && behind == 0) {
        for (int c = doc.Position(current).first_child; c != 0;
             c = doc.Position(c).next_sibling) {
          behind = c;
        }
      }
      const std::size_t op = pick(10);
      log += std::to_string(op) + " ";
      switch (op) {
        case 0:
        case 1:
          if (current == 0 || current >= parsed_below) doc.AddElement(name, value);
          break;
        case 2:
        case 3:
          if (behind == 0 || behind >= parsed_below) doc.AddChildElement(name, value);
          break;
        case 4:
          doc.AddAttribute(name, value);
          break;
        case 5:
          doc.AddChildAttribute(name, value);
          break;
        case 6:
          doc.FindElement(search);
          break;
        case 7:
          doc.FindChildElement(search);
          break;
        case 8:
          if (pick(2) == 0)
            doc.IntoElement();
          else
            doc.OutOfElement();
          break;
        case 9:
          if (pick(4) == 0) {
            const std::u16string text = doc.DocumentText();
            doc.SetDocument(text);
            parsed_below = doc.NextFreeIndex();
          }
          break;
      }
      if (!doc.IsWellFormed()) continue;
      SCOPED_TRACE("run " + std::to_string(run) + " ops " + log);

      MarkupDocument read;
      ASSERT_TRUE(read.SetDocument(doc.DocumentText())) << Narrow(doc.DocumentText());
      const std::vector<Node> written = Walk(doc);
      const std::vector<Node> parsed = Walk(read);
      ASSERT_EQ(written.size(), parsed.size()) << Narrow(doc.DocumentText());
      // No record is lost: every record in use is an element of the tree.
      EXPECT_EQ(static_cast<int>(written.size()), doc.NextFreeIndex() - 1);
      for (std::size_t i = 0; i < written.size(); ++i) {
        const ElementPosition& w = written[i].position;
        const ElementPosition& p = parsed[i].position;
        EXPECT_EQ(w.start_left, p.start_left) << i << " " << Narrow(doc.DocumentText());
        EXPECT_EQ(w.start_right, p.start_right) << i;
        EXPECT_EQ(w.end_left, p.end_left) << i;
        EXPECT_EQ(w.end_right, p.end_right) << i;
        const int gap = written[i].index >= parsed_below ? 3 : 0;
        EXPECT_EQ(w.following, w.end_right + gap) << i;
        EXPECT_EQ(written[i].name, parsed[i].name) << i;
        EXPECT_EQ(written[i].depth, parsed[i].depth) << i;
      }
      // The navigation state stays inside the tree.
      if (doc.CurrentElement() != 0) {
        int depth = 0;
        for (int up = doc.Position(doc.CurrentElement()).parent; up != 0;
             up = doc.Position(up).parent) {
          ++depth;
        }
        EXPECT_EQ(depth, doc.CurrentLevel());
      } else {
        EXPECT_EQ(doc.CurrentLevel(), 0);
      }
      if (doc.CurrentChild() != 0) {
        EXPECT_EQ(doc.Position(doc.CurrentChild()).parent, doc.CurrentElement());
      }
      if (::testing::Test::HasFailure()) return;
    }
  }
}

}  // namespace
}  // namespace quillora
