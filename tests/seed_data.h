// Writes straight into a data folder, as the window would have, and reads its
// entries back: what the command-line tests seed before they run the binary
// and check after it.
#ifndef QUILLORA_TESTS_SEED_DATA_H_
#define QUILLORA_TESTS_SEED_DATA_H_

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/clock.h"
#include "store/client_store.h"
#include "store/data_context.h"
#include "store/note_text.h"
#include "store/time_entry.h"

namespace quillora::testing {

// An entry starting at `iso` ("YYYY-MM-DDTHH:MM:SS", local time).
inline TimeEntry EntryAt(const std::string& iso, const std::u16string& client,
                         const std::u16string& task = u"Work") {
  TimeEntry e;
  const auto start = ParseIsoDateTime(iso);
  EXPECT_TRUE(start && SystemTimeToFileTime(*start, &e.start)) << iso;
  e.client = client;
  e.task = task;
  return e;
}

// Gives `e` a note of the note editor holding `text`.
inline void SetNoteText(TimeEntry* e, const std::u16string& text) {
  const std::vector<std::uint8_t> blob = NoteBlobFromText(text);
  SetNote(e, static_cast<std::int32_t>(blob.size()), blob.data());
}

// Adds each entry to the folder's store; their record ids.
inline std::vector<ObjectId> SeedEntries(const std::string& data_dir,
                                         const std::vector<TimeEntry>& entries) {
  DataContext data;
  std::string error;
  EXPECT_TRUE(OpenDataContext(data_dir, &data, &error)) << error;
  EntryStore store(*data.volume);
  EXPECT_TRUE(store.Open());
  std::vector<ObjectId> ids;
  for (const TimeEntry& e : entries) {
    EXPECT_TRUE(AddEntry(store, e));
    ids.push_back(store.current_record_id());
  }
  return ids;
}

inline ObjectId SeedEntry(const std::string& data_dir, const TimeEntry& entry) {
  return SeedEntries(data_dir, {entry}).at(0);
}

// Adds clients in this order, each with the task `task` when it is not empty.
inline void SeedClients(const std::string& data_dir,
                        const std::vector<std::u16string>& names,
                        const std::u16string& task = u"") {
  DataContext data;
  std::string error;
  EXPECT_TRUE(OpenDataContext(data_dir, &data, &error)) << error;
  EXPECT_TRUE(OpenCatalogue(&data));
  for (const std::u16string& name : names) {
    const ClientId number = AddClient(data.catalogue->clients, name);
    EXPECT_NE(number, 0u);
    if (!task.empty()) AddItem(data.catalogue->tasks, *data.locale, number, task + name);
  }
}

// Every entry of the folder, in store order.
inline std::vector<TimeEntry> StoredEntries(const std::string& data_dir) {
  DataContext data;
  std::string error;
  EXPECT_TRUE(OpenDataContext(data_dir, &data, &error)) << error;
  EntryStore store(*data.volume);
  EXPECT_TRUE(store.Open());
  std::vector<TimeEntry> entries;
  store.Seek(SeekType::kBeginning, 0);
  for (TimeEntry e; ReadEntry(store, &e) == 0; store.Seek(SeekType::kCurrent, 1)) {
    entries.push_back(e);
  }
  return entries;
}

}  // namespace quillora::testing

#endif  // QUILLORA_TESTS_SEED_DATA_H_
