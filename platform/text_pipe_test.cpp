#include "platform/text_pipe.h"

#include <gtest/gtest.h>

#include <string>

namespace quillora {
namespace {

TEST(TextPipeTest, PassesEveryPieceOnInOrder) {
  std::u16string written;
  std::u16string expected;
  {
    TextPipe pipe(
        [&](std::u16string_view piece) {
          written.append(piece);
          return true;
        },
        2);
    for (int i = 0; i < 1000; ++i) {
      const std::u16string piece(static_cast<std::size_t>(i % 7 + 1),
                                 static_cast<char16_t>(u'a' + i % 26));
      expected += piece;
      ASSERT_TRUE(pipe.Put(piece));
    }
    EXPECT_TRUE(pipe.Finish());
  }
  EXPECT_EQ(written, expected);
}

TEST(TextPipeTest, NothingIsPassedOnAfterARefusedPiece) {
  int calls = 0;
  TextPipe pipe([&](std::u16string_view piece) {
    ++calls;
    return piece != u"bad";
  });
  pipe.Put(u"one");
  pipe.Put(u"bad");
  for (int i = 0; i < 100; ++i) pipe.Put(u"after");
  EXPECT_FALSE(pipe.Finish());
  EXPECT_EQ(calls, 2);
  EXPECT_FALSE(pipe.Put(u"late")) << "a finished pipe takes nothing";
}

}  // namespace
}  // namespace quillora
