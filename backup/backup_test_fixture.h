// A fixture for the backup and archive tests: two data stores (the one backed
// up and the one restored into), a locale, a folder for the files and a
// scripted prompt, with helpers that describe the stores as text.
#ifndef QUILLORA_BACKUP_BACKUP_TEST_FIXTURE_H_
#define QUILLORA_BACKUP_BACKUP_TEST_FIXTURE_H_

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "backup/backup_test_files.h"
#include "platform/clock.h"
#include "platform/locale.h"
#include "platform/registry.h"
#include "platform/text.h"
#include "store/catalogue.h"
#include "store/client_store.h"
#include "store/rates.h"
#include "store/time_entry.h"
#include "tests/fake_prompt.h"
#include "tests/temp_dir.h"
#include "tests/test_time.h"
#include "tests/test_volume.h"

namespace quillora::testing {

// One data store with its entry store and catalogue open.
struct TestData {
  TestData() {
    EXPECT_TRUE(catalogue.Open());
    EXPECT_TRUE(entries.Open());
  }
  TestVolume volume;
  std::unique_ptr<Registry> registry = OpenMemoryRegistry();
  Catalogue catalogue{volume.store(), registry.get()};
  EntryStore entries{volume.store()};
};

class BackupFixture : public ::testing::Test {
 protected:
  // Adds an entry to `data`; `start` as ticks.
  static void AddAt(TestData& data, FileTime start, const std::u16string& client,
                    std::uint32_t duration = 100) {
    TimeEntry e;
    e.start = start;
    e.client = client;
    e.task = u"Work";
    e.duration = duration;
    ASSERT_TRUE(AddEntry(data.entries, e));
  }

  // One line an entry, in store order, every field but the record id.
  static std::string EntryTexts(TestData& data) {
    std::string out;
    TimeEntry e;
    data.entries.Seek(SeekType::kBeginning, 0);
    while (ReadEntry(data.entries, &e) == 0) {
      SystemTime st;
      FileTimeToSystemTime(e.start, &st);
      out += FormatIsoDateTime(st) + " " + ToUtf8(e.client) + "|" + ToUtf8(e.project) +
             "|" + ToUtf8(e.phase) + "|" + ToUtf8(e.task) + "|" + ToUtf8(e.currency) +
             "|" + ToUtf8(e.billTo) + "|" + ToUtf8(e.custom1) + "|" + ToUtf8(e.custom2) +
             "|" + ToUtf8(e.custom3) + " d" + std::to_string(e.duration) + " r" +
             std::to_string(e.rate) + " t" + std::to_string(e.rateType) + " b" +
             std::to_string(e.billable) + " p" + std::to_string(e.paid) + " note" +
             std::to_string(e.noteSize) + ":" +
             Hex(std::string(e.note.begin(), e.note.end())) + "\n";
      data.entries.Seek(SeekType::kCurrent, 1);
    }
    return out;
  }

  static int EntryCount(TestData& data) {
    DatabaseInfo info;
    data.volume.store().GetDatabaseInfo(data.entries.database_id(), &info);
    return static_cast<int>(info.record_count);
  }

  // Every client in name order with its number and catalogue records; rates
  // as type:value:flag:description.
  static std::string CatalogueText(TestData& data) {
    Catalogue& c = data.catalogue;
    std::string out;
    for (const Client& client : ClientList(c.clients)) {
      out += ToUtf8(client.name) + "#" + std::to_string(client.number) + " projects[";
      for (const ProjectRecord& r : ProjectRecords(c.projects, client.number))
        out += ToUtf8(r.project) + "/" + ToUtf8(r.task) + " ";
      out += "] tasks[";
      for (const CatalogueItem& i : ItemsOf(c.tasks, client.number))
        out += ToUtf8(i.name) + " ";
      out += "] contacts[";
      for (const CatalogueItem& i : ItemsOf(c.contacts, client.number))
        out += ToUtf8(i.name) + " ";
      out += "] rates[";
      for (const Rate& r : RatesOf(c.rates, client.number)) {
        out += std::to_string(r.type) + ":" + std::to_string(r.value) + ":" +
               std::to_string(r.flag) + ":" + ToUtf8(r.description) + " ";
      }
      out += "]\n";
    }
    return out;
  }

  // Adds a client with a project and its task, a task, a contact and a rate.
  void AddClientWithCatalogue(TestData& data, const std::u16string& name) {
    Catalogue& c = data.catalogue;
    const ClientId number = AddClient(c.clients, name);
    ASSERT_NE(number, 0u);
    AddProject(c.projects, *locale_, number, u"Web", u"");
    AddProject(c.projects, *locale_, number, u"Web", u"Design");
    AddItem(c.tasks, *locale_, number, u"Admin");
    AddItem(c.contacts, *locale_, number, u"Bob " + name);
    ASSERT_NE(AddRate(c.rates, kRateOvertime, 45.5, number, u"Evening", true), 0u);
  }

  ObjectId ClientRecord(TestData& data, const std::u16string& name) {
    Client client;
    EXPECT_TRUE(FindClient(data.catalogue.clients, name, &client)) << ToUtf8(name);
    return client.record_id;
  }

  std::string File(const std::string& name) const { return dir_.File(name); }

  std::unique_ptr<Locale> locale_ = Locale::UsEnglish();
  TempDir dir_;
  TestData a_;  // backed up
  TestData b_;  // restored into
  FakePrompt prompt_;
};

}  // namespace quillora::testing

#endif  // QUILLORA_BACKUP_BACKUP_TEST_FIXTURE_H_
