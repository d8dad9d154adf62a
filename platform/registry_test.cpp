#include "platform/registry.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <cstring>
#include <string>

#include "platform/text.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

constexpr char16_t kKeyPath[] = u"Software\\Quillora";

class RegistryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    registry_ = OpenMemoryRegistry();
    ASSERT_TRUE(registry_);
    ASSERT_EQ(registry_->CreateKey(RegistryHive::kCurrentUser, kKeyPath, &key_), 0);
  }
  // The raw bytes of a value, or "<error N>".
  std::string Raw(std::u16string_view name) {
    std::uint32_t type = 0, size = 0;
    long rc = registry_->QueryValue(key_, name, &type, nullptr, &size);
    if (rc != 0) return "<error " + std::to_string(rc) + ">";
    std::string bytes(size, '\0');
    rc = registry_->QueryValue(key_, name, &type, bytes.data(), &size);
    if (rc != 0) return "<error " + std::to_string(rc) + ">";
    return std::to_string(type) + ":" + bytes;
  }
  std::unique_ptr<Registry> registry_;
  RegistryKey key_;
};

TEST_F(RegistryTest, QueryFollowsTheDeviceBufferRules) {
  ASSERT_EQ(WriteString(*registry_, key_, u"DefCurr", u"EUR"), 0);
  // Stored as UTF-16LE with its terminator.
  EXPECT_EQ(Raw(u"DefCurr"), std::string("1:E\0U\0R\0\0\0", 10));

  std::uint32_t type = 0, size = 0;
  EXPECT_EQ(registry_->QueryValue(key_, u"DefCurr", &type, nullptr, &size), 0);
  EXPECT_EQ(type, kRegSz);
  EXPECT_EQ(size, 8u);

  char small[6];
  size = sizeof small;
  type = 0;
  EXPECT_EQ(registry_->QueryValue(key_, u"DefCurr", &type, small, &size), kErrorMoreData);
  EXPECT_EQ(size, 8u) << "the needed size is reported";
  EXPECT_EQ(type, kRegSz);

  char exact[8];
  size = sizeof exact;
  EXPECT_EQ(registry_->QueryValue(key_, u"DefCurr", nullptr, exact, &size), 0);
  EXPECT_EQ(registry_->QueryValue(key_, u"DefCurr", nullptr, exact, nullptr),
            kErrorInvalidParameter);

  EXPECT_EQ(registry_->QueryValue(key_, u"Missing", &type, nullptr, &size),
            kErrorFileNotFound);
  EXPECT_EQ(registry_->DeleteValue(key_, u"Missing"), kErrorFileNotFound);
  EXPECT_EQ(registry_->DeleteValue(key_, u"DEFCURR"), 0);
  EXPECT_EQ(Raw(u"DefCurr"), "<error 2>");

  // The unnamed value is a value like any other.
  ASSERT_EQ(WriteDword(*registry_, key_, std::u16string_view(), 5), 0);
  EXPECT_EQ(Raw(u""), std::string("4:\x05\0\0\0", 6));

  // An empty binary value exists and has no bytes.
  ASSERT_EQ(WriteBinary(*registry_, key_, u"Empty", nullptr, 0), 0);
  EXPECT_EQ(Raw(u"Empty"), "3:");
}

TEST_F(RegistryTest, TypedReadersRefuseOtherTypesAndSizes) {
  ASSERT_EQ(WriteString(*registry_, key_, u"Str", u"1"), 0);  // 4 bytes, like a DWORD
  ASSERT_EQ(WriteDword(*registry_, key_, u"Num", 0x01020304), 0);
  const unsigned char bin[5] = {1, 2, 3, 4, 5};
  ASSERT_EQ(WriteBinary(*registry_, key_, u"Bin", bin, 4), 0);
  ASSERT_EQ(WriteBinary(*registry_, key_, u"Bin5", bin, 5), 0);
  EXPECT_EQ(Raw(u"Num"), std::string("4:\x04\x03\x02\x01"));

  std::uint32_t number = 7;
  EXPECT_EQ(ReadDword(*registry_, key_, u"Str", &number), kErrorUnsupportedType);
  EXPECT_EQ(ReadDword(*registry_, key_, u"Bin", &number), kErrorUnsupportedType);
  EXPECT_EQ(ReadDword(*registry_, key_, u"Nothing", &number), kErrorFileNotFound);
  EXPECT_EQ(number, 7u);
  EXPECT_EQ(ReadDword(*registry_, key_, u"num", &number), 0);
  EXPECT_EQ(number, 0x01020304u);

  std::u16string text = u"keep";
  EXPECT_EQ(ReadString(*registry_, key_, u"Num", 16, &text), kErrorUnsupportedType);
  EXPECT_EQ(ReadString(*registry_, key_, u"Bin5", 16, &text), kErrorUnsupportedType);
  EXPECT_EQ(text, u"keep");

  unsigned char out[4] = {9, 9, 9, 9};
  EXPECT_EQ(ReadBinary(*registry_, key_, u"Bin5", out, 4), kErrorMoreData);
  EXPECT_EQ(ReadBinary(*registry_, key_, u"Bin", out, 3), kErrorMoreData);
  unsigned char wide[6] = {};
  EXPECT_EQ(ReadBinary(*registry_, key_, u"Bin", wide, 6), kErrorUnsupportedType);
  EXPECT_EQ(ReadBinary(*registry_, key_, u"Num", out, 4), kErrorUnsupportedType);
  EXPECT_EQ(out[0], 9);
  EXPECT_EQ(ReadBinary(*registry_, key_, u"Bin", out, 4), 0);
  EXPECT_EQ(std::memcmp(out, bin, 4), 0);
}

TEST_F(RegistryTest, StringBufferCountsTheTerminator) {
  struct Case {
    std::u16string stored;
    std::size_t buffer_chars;
    long rc;
  } cases[] = {
      {u"123456789012345", 16, 0},                // 15 characters fit a 16-unit buffer
      {u"1234567890123456", 16, kErrorMoreData},  // 16 do not
      {u"", 16, 0},
      {std::u16string(300, u'x'), 0, 0},  // 0 reads whole
  };
  for (const auto& c : cases) {
    ASSERT_EQ(WriteString(*registry_, key_, u"S", c.stored), 0);
    std::u16string out = u"old";
    EXPECT_EQ(ReadString(*registry_, key_, u"S", c.buffer_chars, &out), c.rc)
        << c.stored.size() << " chars in " << c.buffer_chars;
    EXPECT_EQ(out, c.rc == 0 ? c.stored : u"old") << c.stored.size();
  }
}

TEST_F(RegistryTest, KeysAreCaseInsensitivePathsPerHive) {
  ASSERT_EQ(WriteDword(*registry_, key_, u"View", 3), 0);
  RegistryKey other;
  ASSERT_EQ(registry_->OpenKey(RegistryHive::kCurrentUser, u"SOFTWARE\\quillora", &other),
            0);
  std::uint32_t view = 0;
  EXPECT_EQ(ReadDword(*registry_, other, u"VIEW", &view), 0);
  EXPECT_EQ(view, 3u);
  // Writing through another spelling replaces the same value.
  ASSERT_EQ(WriteDword(*registry_, other, u"view", 4), 0);
  EXPECT_EQ(ReadDword(*registry_, key_, u"View", &view), 0);
  EXPECT_EQ(view, 4u);

  // Parents were created; the other hive and a sibling are separate.
  EXPECT_EQ(registry_->OpenKey(RegistryHive::kCurrentUser, u"software", &other), 0);
  EXPECT_EQ(ReadDword(*registry_, other, u"View", &view), kErrorFileNotFound);
  EXPECT_EQ(registry_->OpenKey(RegistryHive::kLocalMachine, kKeyPath, &other),
            kErrorFileNotFound);
  EXPECT_FALSE(other.is_open()) << "a failed open leaves the key closed";
  EXPECT_EQ(
      registry_->OpenKey(RegistryHive::kCurrentUser, u"Software\\Quillora2", &other),
      kErrorFileNotFound);

  for (const char16_t* bad : {u"\\Software", u"Software\\", u"a\\\\b"}) {
    EXPECT_EQ(registry_->CreateKey(RegistryHive::kCurrentUser, bad, &other),
              kErrorInvalidParameter)
        << ToUtf8(bad);
  }
  EXPECT_EQ(
      registry_->CreateKey(RegistryHive::kCurrentUser, std::u16string(256, u'k'), &other),
      kErrorInvalidParameter);
}

TEST_F(RegistryTest, ClosedKeysAreInvalidHandles) {
  RegistryKey moved = std::move(key_);
  EXPECT_FALSE(key_.is_open());
  EXPECT_EQ(WriteDword(*registry_, key_, u"View", 1), kErrorInvalidHandle);
  EXPECT_EQ(WriteDword(*registry_, moved, u"View", 1), 0);
  EXPECT_EQ(moved.Close(), 0);
  EXPECT_EQ(moved.Close(), kErrorInvalidHandle);
  std::uint32_t size = 0;
  EXPECT_EQ(registry_->QueryValue(moved, u"View", nullptr, nullptr, &size),
            kErrorInvalidHandle);
  // A key of another registry is not a handle of this one.
  auto other = OpenMemoryRegistry();
  RegistryKey foreign;
  ASSERT_EQ(other->CreateKey(RegistryHive::kCurrentUser, kKeyPath, &foreign), 0);
  EXPECT_EQ(registry_->DeleteValue(foreign, u"View"), kErrorInvalidHandle);
}

class RegistryFileTest : public ::testing::Test {
 protected:
  std::unique_ptr<Registry> Open(std::string* error = nullptr) {
    return OpenSqliteRegistry(dir_.File("registry.db"), error);
  }
  testing::TempDir dir_;
};

TEST_F(RegistryFileTest, PersistsPrivatelyAndSharesBetweenInstances) {
  auto first = Open();
  auto second = Open();
  ASSERT_TRUE(first && second);
  struct stat st {};
  ASSERT_EQ(::stat(dir_.File("registry.db").c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0600u);

  RegistryKey a, b;
  ASSERT_EQ(first->CreateKey(RegistryHive::kCurrentUser, kKeyPath, &a), 0);
  ASSERT_EQ(second->CreateKey(RegistryHive::kCurrentUser, kKeyPath, &b), 0);
  ASSERT_EQ(WriteDword(*first, a, u"View", 1), 0);
  ASSERT_EQ(WriteDword(*second, b, u"Sort", 2), 0);
  ASSERT_EQ(WriteDword(*second, b, u"View", 3), 0);
  std::uint32_t value = 0;
  EXPECT_EQ(ReadDword(*first, a, u"Sort", &value), 0);
  EXPECT_EQ(value, 2u);
  EXPECT_EQ(ReadDword(*first, a, u"View", &value), 0);
  EXPECT_EQ(value, 3u);
  a.Close();
  b.Close();
  first.reset();
  second.reset();

  auto again = Open();
  ASSERT_TRUE(again);
  RegistryKey c;
  ASSERT_EQ(again->OpenKey(RegistryHive::kCurrentUser, u"software\\QUILLORA", &c), 0);
  EXPECT_EQ(ReadDword(*again, c, u"View", &value), 0);
  EXPECT_EQ(value, 3u);
}

TEST_F(RegistryFileTest, RefusesDamagedOrForeignFilesWithoutTouchingThem) {
  const std::string path = dir_.File("registry.db");
  {
    // A sound registry with a few values, to be damaged below.
    auto registry = Open();
    ASSERT_TRUE(registry);
    RegistryKey key;
    ASSERT_EQ(registry->CreateKey(RegistryHive::kCurrentUser, kKeyPath, &key), 0);
    for (int i = 0; i < 50; ++i) {
      ASSERT_EQ(WriteString(*registry, key,
                            std::u16string(u"v").append(WidenAscii(std::to_string(i))),
                            std::u16string(100, u'x')),
                0);
    }
  }
  std::string sound = testing::ReadFileBytes(path);
  ASSERT_GT(sound.size(), 8192u);
  std::string damaged_pages = sound;
  std::memset(damaged_pages.data() + 4096 + 8, 0xA5, 2000);

  // A valid SQLite database of someone else.
  const std::string foreign_path = dir_.File("foreign.db");
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(foreign_path.c_str(), &db), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(db, "CREATE TABLE t(x)", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(db);
  std::string foreign = testing::ReadFileBytes(foreign_path);

  struct Case {
    const char* what;
    std::string bytes;
  } cases[] = {
      {"garbage", std::string(5000, '\x5a')},
      {"short garbage", "not a registry"},
      {"truncated header", sound.substr(0, 60)},
      {"damaged pages", damaged_pages},
      {"foreign database", foreign},
  };
  for (const auto& c : cases) {
    testing::WriteFileBytes(path, c.bytes);
    std::string error;
    EXPECT_EQ(Open(&error), nullptr) << c.what;
    EXPECT_FALSE(error.empty()) << c.what;
    EXPECT_EQ(testing::ReadFileBytes(path) == c.bytes, true) << c.what << " was changed";
  }
}

}  // namespace
}  // namespace quillora
