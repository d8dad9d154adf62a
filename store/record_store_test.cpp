#include "store/record_store.h"

#include <gtest/gtest.h>

#include "tests/test_volume.h"

namespace quillora {
namespace {

DatabaseInfo InfoOf(ObjectStore& volume, ObjectId id) {
  DatabaseInfo info;
  EXPECT_TRUE(volume.GetDatabaseInfo(id, &info));
  return info;
}

TEST(RecordStoreTest, OpeningCreatesEachDatabaseWithItsTypeAndSortOrders) {
  testing::TestVolume volume;
  struct Case {
    std::unique_ptr<RecordStore> store;
    const char16_t* name;
    std::uint32_t type;
    std::vector<SortOrder> orders;
  };
  Case cases[] = {
      {std::make_unique<EntryStore>(volume.store()), u"Quillora Data 1", 79990001,
       {{MakePropId(1001, kPropFileTime), 0}}},
      {std::make_unique<AuxStore>(volume.store()), u"Quillora Data 2", 79990002,
       {{MakePropId(1102, kPropUI2), 0}, {MakePropId(1101, kPropString), 0}}},
      {std::make_unique<RateStore>(volume.store()), u"Quillora Rates", 79990003,
       {{MakePropId(1201, kPropUI4), 0}}},
      {std::make_unique<ClientStore>(volume.store()), u"Quillora Clients", 79990004,
       {{MakePropId(1002, kPropString), 0}}},
      {std::make_unique<ProjectStore>(volume.store()), u"Quillora Projects", 79990005,
       {{MakePropId(1201, kPropUI4), 0}}},
      {std::make_unique<TaskStore>(volume.store()), u"Quillora Tasks", 79990006,
       {{MakePropId(1201, kPropUI4), 0}}},
      {std::make_unique<ContactStore>(volume.store()), u"Quillora Contacts", 79990007,
       {{MakePropId(1201, kPropUI4), 0}}},
  };
  for (auto& c : cases) {
    SCOPED_TRACE(static_cast<int>(c.type));
    EXPECT_FALSE(c.store->Exists());
    ASSERT_TRUE(c.store->Open());
    EXPECT_TRUE(c.store->Exists());
    const DatabaseInfo info = InfoOf(volume.store(), c.store->database_id());
    EXPECT_EQ(info.name, c.name);
    EXPECT_EQ(info.type, c.type);
    EXPECT_EQ(info.sort_orders, c.orders);
  }
  // Opening again finds the databases instead of creating new ones.
  EntryStore again(volume.store());
  ASSERT_TRUE(again.Open());
  EXPECT_EQ(again.database_id(), cases[0].store->database_id());
}

TEST(RecordStoreTest, ADatabaseNamedInOtherLetterCaseCountsAsMissing) {
  testing::TestVolume volume;
  DatabaseInfo info;
  info.name = u"quillora data 1";
  info.type = 79990001;
  const ObjectId foreign = volume.store().CreateDatabase(info);
  ASSERT_NE(foreign, 0u);
  EntryStore store(volume.store());
  EXPECT_FALSE(store.Exists());
  EXPECT_TRUE(store.Exists(u"quillora data 1"));
  ASSERT_TRUE(store.Open());
  EXPECT_NE(store.database_id(), foreign);
}

TEST(RecordStoreTest, CurrentRecordIdFollowsSeeksAndWrites) {
  testing::TestVolume volume;
  TaskStore store(volume.store());
  EXPECT_EQ(store.Seek(SeekType::kBeginning, 0), 0u) << "not open yet";
  ASSERT_TRUE(store.Open());
  const ObjectId id = store.WriteProps(0, {PropValue::Number(kPropClientId, 4)});
  ASSERT_NE(id, 0u);
  EXPECT_EQ(store.current_record_id(), id);
  EXPECT_EQ(store.Seek(SeekType::kCurrent, 1), 0u);
  EXPECT_EQ(store.current_record_id(), 0u);
  EXPECT_EQ(store.WriteProps(id + 1000, {}), 0u);
  EXPECT_EQ(store.current_record_id(), 0u) << "a failed write leaves no current record";
}

}  // namespace
}  // namespace quillora
