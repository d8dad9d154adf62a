#include "store/entry_read_ahead.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/test_volume.h"

namespace quillora {
namespace {

class EntryReadAheadTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(store_.Open()); }

  void AddAt(FileTime start, const std::u16string& task) {
    TimeEntry e;
    e.start = start;
    e.task = task;
    ASSERT_TRUE(AddEntry(store_, e));
  }

  std::vector<std::u16string> Read(FileTime after, FileTime until, std::size_t batch) {
    EntryReadAhead read(store_, after, until, batch);
    std::vector<std::u16string> tasks;
    while (TimeEntry* e = read.Next()) tasks.push_back(e->task);
    EXPECT_FALSE(read.read_failed());
    EXPECT_EQ(read.Next(), nullptr) << "the end stays the end";
    return tasks;
  }

  testing::TestVolume volume_;
  EntryStore store_{volume_.store()};
};

// Strictly after the first bound, up to and with the second, in store order,
// whatever the batch size.
TEST_F(EntryReadAheadTest, ReadsTheRangeInStoreOrderAcrossBatches) {
  std::vector<std::u16string> inside;
  for (int i = 0; i < 50; ++i) {
    const std::u16string task = u"t" + std::u16string(1, static_cast<char16_t>(u'A' + i));
    AddAt(1000 + i * 10, task);
    if (i > 0 && i <= 40) inside.push_back(task);
  }
  for (std::size_t batch :
       {std::size_t{1}, std::size_t{3}, std::size_t{7}, std::size_t{256}}) {
    EXPECT_EQ(Read(1000, 1400, batch), inside) << "batch " << batch;
  }
  EXPECT_TRUE(Read(5000, 6000, 4).empty());
  EXPECT_TRUE(Read(1400, 1000, 4).empty());
}

TEST_F(EntryReadAheadTest, StopsWhereItStandsWhenLeftEarly) {
  for (int i = 0; i < 200; ++i) AddAt(1000 + i, u"x");
  {
    EntryReadAhead read(store_, 0, 5000, 8);
    ASSERT_NE(read.Next(), nullptr);
  }
  // The store is usable again at once.
  EXPECT_NE(store_.Seek(SeekType::kBeginning, 0), 0u);
}

}  // namespace
}  // namespace quillora
