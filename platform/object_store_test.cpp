#include "platform/object_store.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "platform/property_codec.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

constexpr PropId kKey = MakePropId(1201, kPropUI4);
constexpr PropId kName = MakePropId(1101, kPropString);
constexpr PropId kNote = MakePropId(1012, kPropBlob);

class ObjectStoreTest : public ::testing::Test {
 protected:
  void SetUp() override { Reopen(); }

  void Reopen() {
    store_.reset();
    std::string error;
    store_ = OpenSqliteObjectStore(dir_.File("store.db"), &error);
    ASSERT_NE(store_, nullptr) << error;
  }

  ObjectId Create(const std::u16string& name, std::vector<SortOrder> orders) {
    DatabaseInfo info;
    info.name = name;
    info.type = 79990006;
    info.sort_orders = std::move(orders);
    return store_->CreateDatabase(info);
  }

  std::unique_ptr<DatabaseHandle> Open(const std::u16string& name, PropId sort,
                                       const NotificationRequest* request = nullptr) {
    ObjectId id = 0;
    return store_->OpenDatabase(&id, name, sort, 0, request);
  }

  // Adds a record {kKey = key (unless key < 0), kName = name}.
  ObjectId Add(DatabaseHandle* h, long key, const std::u16string& name) {
    PropList props;
    if (key >= 0) props.push_back(PropValue::Number(kKey, static_cast<std::uint64_t>(key)));
    props.push_back(PropValue::Text(kName, name));
    return h->WriteProps(0, props);
  }

  std::u16string NameOfCurrent(DatabaseHandle* h) {
    PropList props;
    std::vector<PropId> wanted = {kName};
    if (h->ReadProps(&wanted, &props) == 0) return u"<unread>";
    return props[0].text;
  }

  // Every name in the handle's order.
  std::vector<std::u16string> Walk(DatabaseHandle* h) {
    std::vector<std::u16string> names;
    for (ObjectId id = h->Seek(SeekType::kBeginning, 0); id != 0;
         id = h->Seek(SeekType::kCurrent, 1)) {
      names.push_back(NameOfCurrent(h));
    }
    EXPECT_EQ(GetLastStoreError(), kErrorNoMoreItems);
    return names;
  }

  testing::TempDir dir_;
  std::unique_ptr<ObjectStore> store_;
};

TEST_F(ObjectStoreTest, DatabasesAreFoundByExactNameOnly) {
  ASSERT_NE(Create(u"Quillora Tasks", {{kKey, 0}}), 0u);
  EXPECT_EQ(Create(u"Quillora Tasks", {{kKey, 0}}), 0u);
  EXPECT_EQ(GetLastStoreError(), kErrorDupName);
  EXPECT_NE(Create(u"quillora tasks", {{kKey, 0}}), 0u) << "letter case makes a new name";
  EXPECT_EQ(Create(std::u16string(32, u'x'), {}), 0u);
  EXPECT_NE(Create(std::u16string(31, u'x'), {}), 0u);
  EXPECT_EQ(Create(u"five orders", {{kKey, 0}, {kKey, 0}, {kKey, 0}, {kKey, 0}, {kKey, 0}}),
            0u);

  auto search = store_->FindFirstDatabase(0);
  ASSERT_NE(search, nullptr);
  std::vector<std::u16string> names;
  for (ObjectId id = search->Next(); id != 0; id = search->Next()) {
    DatabaseInfo info;
    ASSERT_TRUE(store_->GetDatabaseInfo(id, &info));
    names.push_back(info.name);
    EXPECT_EQ(info.type, 79990006u);
  }
  EXPECT_EQ(names, (std::vector<std::u16string>{u"Quillora Tasks", u"quillora tasks",
                                                std::u16string(31, u'x')}));
  EXPECT_EQ(store_->FindFirstDatabase(1234)->Next(), 0u);

  EXPECT_EQ(Open(u"QUILLORA TASKS", kKey), nullptr);
  EXPECT_EQ(GetLastStoreError(), kErrorFileNotFound);
  EXPECT_EQ(Open(u"Quillora Tasks", kName), nullptr) << "not one of its sort orders";
  EXPECT_NE(Open(u"Quillora Tasks", kKey), nullptr);
}

TEST_F(ObjectStoreTest, EmptyDatabaseEndsEveryWalkAtOnce) {
  Create(u"empty", {{kKey, 0}});
  auto h = Open(u"empty", kKey);
  EXPECT_EQ(h->Seek(SeekType::kBeginning, 0), 0u);
  EXPECT_EQ(GetLastStoreError(), kErrorNoMoreItems);
  PropList props;
  EXPECT_EQ(h->ReadProps(nullptr, &props), 0u);
  EXPECT_EQ(GetLastStoreError(), kErrorNoMoreItems);
  EXPECT_EQ(h->SeekValue(SeekType::kValueGreater, PropValue::Number(kKey, 0)), 0u);
  EXPECT_EQ(h->Seek(SeekType::kCurrent, 1), 0u);
  EXPECT_EQ(GetLastStoreError(), kErrorNoMoreItems);
}

TEST_F(ObjectStoreTest, ValueSeeksOnDuplicateAndMissingValues) {
  Create(u"db", {{kKey, 0}});
  auto h = Open(u"db", kKey);
  Add(h.get(), 7, u"seven");
  Add(h.get(), -1, u"no key");
  Add(h.get(), 5, u"five a");
  Add(h.get(), 5, u"five b");
  Add(h.get(), 9, u"nine");

  EXPECT_EQ(Walk(h.get()),
            (std::vector<std::u16string>{u"five a", u"five b", u"seven", u"nine", u"no key"}));

  struct Case {
    SeekType type;
    long value;
    const char16_t* lands_on;  // null: no record
  } cases[] = {
      {SeekType::kValueFirstEqual, 5, u"five a"},
      {SeekType::kValueFirstEqual, 6, nullptr},
      {SeekType::kValueGreater, 5, u"seven"},  // strictly greater
      {SeekType::kValueGreater, 4, u"five a"},
      {SeekType::kValueGreater, 9, nullptr},  // records without the key are not greater
      {SeekType::kValueGreaterOrEqual, 7, u"seven"},
      {SeekType::kValueSmaller, 7, u"five b"},
      {SeekType::kValueSmaller, 5, nullptr},
      {SeekType::kValueSmallerOrEqual, 6, u"five b"},
      {SeekType::kValueSmallerOrEqual, 100, u"nine"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::Message() << "seek " << static_cast<int>(c.type) << " " << c.value);
    const ObjectId id = h->SeekValue(c.type, PropValue::Number(kKey, c.value));
    if (c.lands_on == nullptr) {
      EXPECT_EQ(id, 0u);
      EXPECT_EQ(GetLastStoreError(), kErrorNoMoreItems);
    } else {
      ASSERT_NE(id, 0u);
      EXPECT_EQ(NameOfCurrent(h.get()), c.lands_on);
    }
  }

  ASSERT_NE(h->SeekValue(SeekType::kValueFirstEqual, PropValue::Number(kKey, 5)), 0u);
  ASSERT_NE(h->Seek(SeekType::kValueNextEqual, 0), 0u);
  EXPECT_EQ(NameOfCurrent(h.get()), u"five b");
  EXPECT_EQ(h->Seek(SeekType::kValueNextEqual, 0), 0u);
  EXPECT_EQ(GetLastStoreError(), kErrorNoMoreItems);

  EXPECT_EQ(h->SeekValue(SeekType::kValueFirstEqual, PropValue::Number(kName, 5)), 0u);
  EXPECT_EQ(GetLastStoreError(), kErrorInvalidParameter) << "value is not the sort property";
}

TEST_F(ObjectStoreTest, StringOrderIsAlphabeticalAndEqualityKeepsLetterCase) {
  Create(u"clients", {{kName, 0}});
  auto h = Open(u"clients", kName);
  for (const char16_t* n : {u"beta", u"Alpha", u"alpha", u"Beta", u"\u00e9clair", u"zeta"}) {
    Add(h.get(), 0, n);
  }
  EXPECT_EQ(Walk(h.get()), (std::vector<std::u16string>{u"alpha", u"Alpha", u"beta", u"Beta",
                                                        u"\u00e9clair", u"zeta"}));
  ASSERT_NE(h->SeekValue(SeekType::kValueFirstEqual, PropValue::Text(kName, u"Beta")), 0u);
  EXPECT_EQ(NameOfCurrent(h.get()), u"Beta");
  EXPECT_EQ(h->SeekValue(SeekType::kValueFirstEqual, PropValue::Text(kName, u"BETA")), 0u);
}

TEST_F(ObjectStoreTest, UpdatesReplaceDeleteAndKeepProperties) {
  Create(u"db", {{kKey, 0}});
  auto h = Open(u"db", kKey);
  const PropId extra = MakePropId(1404, kPropUI4);
  const ObjectId id =
      h->WriteProps(0, {PropValue::Number(kKey, 3), PropValue::Text(kName, u"one"),
                        PropValue::Delete(extra), PropValue::Blob(kNote, {1, 2, 3})});
  ASSERT_NE(id, 0u);

  ASSERT_EQ(h->WriteProps(id, {PropValue::Delete(kName), PropValue::Number(extra, 77),
                               PropValue::Number(kKey, 4)}),
            id);
  PropList props;
  ASSERT_EQ(h->ReadProps(nullptr, &props), id);
  EXPECT_EQ(props, (PropList{PropValue::Number(kKey, 4), PropValue::Blob(kNote, {1, 2, 3}),
                             PropValue::Number(extra, 77)}));

  std::vector<PropId> wanted = {kName, kKey};
  ASSERT_EQ(h->ReadProps(&wanted, &props), id);
  EXPECT_EQ(props[0].flags, kPropNotFound);
  EXPECT_EQ(props[1].number, 4u);

  EXPECT_EQ(h->WriteProps(id + 100, {PropValue::Number(kKey, 1)}), 0u) << "no such record";
  // The sort key follows the update.
  EXPECT_NE(h->SeekValue(SeekType::kValueFirstEqual, PropValue::Number(kKey, 4)), 0u);
  EXPECT_EQ(h->SeekValue(SeekType::kValueFirstEqual, PropValue::Number(kKey, 3)), 0u);
}

TEST_F(ObjectStoreTest, DeletingDuringAWalkContinuesAfterTheDeletedRecord) {
  Create(u"db", {{kKey, 0}});
  auto h = Open(u"db", kKey);
  std::vector<ObjectId> ids;
  for (int i = 0; i < 40; ++i) ids.push_back(Add(h.get(), i, std::u16string(1, u'a' + i % 26)));

  // Delete every record whose key is even, the current one, while walking.
  int visited = 0;
  for (ObjectId id = h->Seek(SeekType::kBeginning, 0); id != 0;
       id = h->Seek(SeekType::kCurrent, 1)) {
    ++visited;
    PropList props;
    ASSERT_EQ(h->ReadProps(nullptr, &props), id);
    if (props[0].number % 2 == 0) {
      ASSERT_TRUE(h->DeleteRecord(id));
    }
  }
  EXPECT_EQ(visited, 40);
  DatabaseInfo info;
  ASSERT_TRUE(store_->GetDatabaseInfo(h->database_id(), &info));
  EXPECT_EQ(info.record_count, 20u);
  EXPECT_FALSE(h->DeleteRecord(ids[0])) << "already deleted";

  // A record written through another handle mid-walk is seen by the walk.
  ASSERT_NE(h->SeekValue(SeekType::kValueFirstEqual, PropValue::Number(kKey, 1)), 0u);
  auto other = Open(u"db", kKey);
  Add(other.get(), 2, u"late");
  ASSERT_NE(h->Seek(SeekType::kCurrent, 1), 0u);
  EXPECT_EQ(NameOfCurrent(h.get()), u"late");
}

TEST_F(ObjectStoreTest, NotificationsReachEveryRequestingHandle) {
  Create(u"db", {{kKey, 0}});
  std::vector<std::pair<ChangeKind, ObjectId>> seen;
  NotificationRequest request;
  request.flags = 1;
  request.notify = [&](const StoreChange& c) { seen.emplace_back(c.kind, c.record); };
  auto watcher = Open(u"db", kKey, &request);
  auto writer = Open(u"db", kKey);
  const ObjectId id = Add(writer.get(), 1, u"x");
  writer->WriteProps(id, {PropValue::Number(kKey, 2)});
  writer->DeleteRecord(id);
  EXPECT_EQ(seen, (std::vector<std::pair<ChangeKind, ObjectId>>{
                      {ChangeKind::kCreated, id}, {ChangeKind::kChanged, id},
                      {ChangeKind::kDeleted, id}}));
  watcher.reset();
  Add(writer.get(), 1, u"y");
  EXPECT_EQ(seen.size(), 3u) << "a closed handle hears nothing";
}

TEST_F(ObjectStoreTest, RecordsSurviveReopeningAndAnotherProcessSeesThem) {
  Create(u"db", {{kKey, 0}});
  const std::uint64_t before = store_->ExternalChangeCounter();
  constexpr int kChildren = 2, kEach = 100;
  for (int c = 0; c < kChildren; ++c) {
    const pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
      std::string error;
      auto store = OpenSqliteObjectStore(dir_.File("store.db"), &error);
      ObjectId id = 0;
      auto h = store ? store->OpenDatabase(&id, u"db", kKey, 0, nullptr) : nullptr;
      bool ok = h != nullptr;
      for (int i = 0; ok && i < kEach; ++i) {
        ok = h->WriteProps(0, {PropValue::Number(kKey, static_cast<std::uint64_t>(i))}) != 0;
      }
      _exit(ok ? 0 : 1);
    }
  }
  for (int c = 0; c < kChildren; ++c) {
    int status = 0;
    wait(&status);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  }
  EXPECT_NE(store_->ExternalChangeCounter(), before);
  Reopen();
  auto h = Open(u"db", kKey);
  int count = 0;
  for (ObjectId id = h->Seek(SeekType::kBeginning, 0); id != 0;
       id = h->Seek(SeekType::kCurrent, 1)) {
    ++count;
  }
  EXPECT_EQ(count, kChildren * kEach);
  struct stat st {};
  ASSERT_EQ(stat(dir_.File("store.db").c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0600u);
}

TEST_F(ObjectStoreTest, ADamagedFileIsRefusedAndLeftAsItWas) {
  store_.reset();
  const std::string garbage(8192, '\x5a');
  testing::WriteFileBytes(dir_.File("bad.db"), garbage);
  std::string error;
  EXPECT_EQ(OpenSqliteObjectStore(dir_.File("bad.db"), &error), nullptr);
  EXPECT_FALSE(error.empty());
  EXPECT_EQ(testing::ReadFileBytes(dir_.File("bad.db")), garbage);
  EXPECT_EQ(OpenSqliteObjectStore(dir_.path() + "/missing/x.db", &error), nullptr);
}

TEST(PropertyCodecTest, RefusesEveryTruncationOfAValidRecord) {
  const PropList props = {PropValue::Number(MakePropId(1001, kPropFileTime), 1234),
                          PropValue::Text(MakePropId(1002, kPropString), u"Acme"),
                          PropValue::Blob(MakePropId(1012, kPropBlob), {9, 8, 7}),
                          PropValue::Real(MakePropId(1300, kPropR8), 0.5)};
  const std::string bytes = EncodeProps(props);
  PropList back;
  ASSERT_TRUE(DecodeProps(bytes, &back));
  EXPECT_EQ(back, props);
  for (std::size_t n = 0; n < bytes.size(); ++n) {
    EXPECT_FALSE(DecodeProps(std::string_view(bytes).substr(0, n), &back)) << n;
  }
  EXPECT_FALSE(DecodeProps(bytes + "x", &back));
  EXPECT_EQ(NormalizeNumber(kPropI2, 0xFFFF), static_cast<std::uint64_t>(-1));
  EXPECT_EQ(NormalizeNumber(kPropUI2, 0x12345), 0x2345u);
}

}  // namespace
}  // namespace quillora
