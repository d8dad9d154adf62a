// Backups of a large data store read by outside compound-file readers: libgsf's
// `gsf` tool and Python's olefile must take every file we write without
// complaint, also with tens of thousands of records in one storage.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "backup/backup.h"
#include "backup/backup_streams.h"
#include "backup/backup_test_fixture.h"
#include "store/note_text.h"
#include "tests/outside_tools.h"

namespace quillora {
namespace {

using testing::At;
using testing::CommandOutput;
using testing::Crc32;
using testing::RunCommand;

bool HaveGsf() { return RunCommand("command -v gsf >/dev/null 2>&1").ok; }

// The outside readers are slow with many elements in one storage (both search
// their children linearly for each one added), far slower than our own code:
// `gsf list` needs about half a minute for 50,000 records, olefile ten
// seconds. So the tests use 5,000 entries unless QUILLORA_LARGE_READER_TESTS
// is set, which asks for the full 50,000.
int EntryCount() {
  static const int count =
      std::getenv("QUILLORA_LARGE_READER_TESTS") != nullptr ? 50000 : 5000;
  return count;
}

// A note that lives in a stream of its own, outside the mini stream.
constexpr int kLargeNoteEvery = 1499;
constexpr std::size_t kLargeNoteSize = 5000;

// One volume of entries and a few clients, backed up once for all the tests
// of this file: building it is the costly part.
class BackupReadersTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { shared_ = new Shared; }
  static void TearDownTestSuite() {
    delete shared_;
    shared_ = nullptr;
  }

  struct Shared {
    Shared() {
      const std::unique_ptr<Locale> locale = Locale::UsEnglish();
      ObjectStore& volume = data.volume.store();
      EXPECT_TRUE(volume.BeginBatch());
      TimeEntry e;
      for (int i = 0; i < EntryCount(); ++i) {
        e.start = At(2020, 1, 1) + static_cast<FileTime>(i) * kTicksPerMinute;
        e.client = i % 7 == 0 ? u"" : u"Client " + WidenAscii(std::to_string(i % 13));
        e.task = u"Task";
        e.duration = static_cast<std::uint32_t>(i % 1000);
        e.rate = static_cast<std::uint32_t>(i);
        if (i % kLargeNoteEvery == 0) {
          const std::vector<std::uint8_t> big(kLargeNoteSize,
                                              static_cast<std::uint8_t>(i));
          SetNote(&e, static_cast<std::int32_t>(big.size()), big.data());
        } else if (i % 97 == 0) {
          const std::vector<std::uint8_t> blob = NoteBlobFromText(u"note");
          SetNote(&e, static_cast<std::int32_t>(blob.size()), blob.data());
        } else {
          SetNote(&e, 0, nullptr);
        }
        EXPECT_TRUE(AddEntry(data.entries, e)) << i;
      }
      EXPECT_TRUE(volume.CommitBatch());
      for (const char16_t* name : {u"Acme", u"Beta", u"Gamma"}) {
        const ClientId number = AddClient(data.catalogue.clients, name);
        AddProject(data.catalogue.projects, *locale, number, u"Web", u"Design");
        AddItem(data.catalogue.contacts, *locale, number, u"Bob");
      }
      BackupWriter writer(data.entries, data.catalogue, *locale);
      ok = Backup(writer, FileSystem::Posix(), dir.File("big.qrd"));
      // What the records should hold, in store order ("Record0" first).
      data.entries.Seek(SeekType::kBeginning, 0);
      for (TimeEntry entry; ReadEntry(data.entries, &entry) == 0;
           data.entries.Seek(SeekType::kCurrent, 1)) {
        records.push_back(EncodeEntryRecord(entry));
      }
      EXPECT_EQ(records.size(), static_cast<std::size_t>(EntryCount()));
    }
    testing::TempDir dir;
    testing::TestData data;
    std::vector<std::string> records;
    bool ok = false;
  };
  static Shared* shared_;

  static std::string Path() { return shared_->dir.File("big.qrd"); }
};
BackupReadersTest::Shared* BackupReadersTest::shared_ = nullptr;

TEST_F(BackupReadersTest, GsfListsEveryElementOfALargeBackup) {
  ASSERT_TRUE(shared_->ok);
  if (!HaveGsf()) GTEST_SKIP() << "gsf (libgsf-bin) is not installed";
  // Every call reads the whole directory again, so there are only two.
  const CommandOutput list = RunCommand("gsf list " + Path() + " 2>&1");
  ASSERT_TRUE(list.ok) << list.out.substr(0, 2000);
  // One line per element after the file's name: "d|f <size> <path>".
  auto line = [](bool storage, std::size_t size, const std::string& path) {
    char text[512];
    std::snprintf(text, sizeof text, "%c %32zu %s\n", storage ? 'd' : 'f', size,
                  path.c_str());
    return std::string(text);
  };
  std::vector<std::string> want = {line(true, 0, "*root*")};
  std::vector<std::string> got;
  for (std::size_t begin = list.out.find('\n') + 1, end;
       (end = list.out.find('\n', begin)) != std::string::npos; begin = end + 1) {
    got.push_back(list.out.substr(begin, end - begin + 1));
  }
  for (const testing::FileElement& e : testing::ReadCompoundFile(Path())) {
    const bool storage = e.path.back() == '/';
    want.push_back(line(storage, e.bytes.size(),
                        storage ? e.path.substr(0, e.path.size() - 1) : e.path));
  }
  ASSERT_EQ(want.size(), static_cast<std::size_t>(EntryCount()) + 1 + 3 + 3 * 6);
  // gsf keeps its own order: compare as sets.
  std::sort(want.begin(), want.end());
  std::sort(got.begin(), got.end());
  EXPECT_EQ(got, want) << list.out.substr(0, 2000);

  const std::string last = "Records/Record" + std::to_string(EntryCount() - 1);
  EXPECT_EQ(RunCommand("gsf cat " + Path() + " " + last).out, shared_->records.back());
}

TEST_F(BackupReadersTest, OlefileReadsEveryStreamOfALargeBackup) {
  ASSERT_TRUE(shared_->ok);
  const std::string python = testing::PythonWithOlefile();
  if (python.empty()) GTEST_SKIP() << "python3 with olefile is not installed";
  // Strict: any defect olefile notices makes it fail. It prints every record
  // stream's size and CRC-32 by number, then the other streams. The records
  // are read through their directory entries: a look-up by path searches the
  // storage's children linearly and would take minutes.
  const std::string script = shared_->dir.File("check.py");
  testing::WriteFileBytes(
      script,
      "import olefile, sys, zlib\n"
      "ole = olefile.OleFileIO(sys.argv[1], raise_defects=olefile.DEFECT_INCORRECT)\n"
      "records = [k for k in ole.root.kids if k.name == 'Records'][0]\n"
      "byname = {k.name: k for k in records.kids}\n"
      "for i in range(len(byname)):\n"
      "    k = byname['Record%d' % i]\n"
      "    data = ole._open(k.isectStart, k.size).read()\n"
      "    print(len(data), zlib.crc32(data))\n"
      "print(' '.join(sorted('/'.join(p) for p in ole.listdir() if p[0] != "
      "'Records')))\n");
  const CommandOutput out = RunCommand(python + " " + script + " " + Path() + " 2>&1");
  ASSERT_TRUE(out.ok) << out.out.substr(0, 2000);

  std::string expected;
  for (const std::string& r : shared_->records) {
    expected += std::to_string(r.size()) + " " + std::to_string(Crc32(r)) + "\n";
  }
  std::string clients;
  for (const char* client : {"Client0", "Client1", "Client2"}) {
    for (const char* stream : {"Contacts", "Name", "ProjectTasks", "Rates", "Tasks"}) {
      clients += std::string("Clients/") + client + "/" + stream + " ";
    }
  }
  expected += clients + "DataVersion\n";
  EXPECT_EQ(out.out, expected);
  EXPECT_EQ(shared_->records[kLargeNoteEvery].size() > kLargeNoteSize, true);
}

}  // namespace
}  // namespace quillora
