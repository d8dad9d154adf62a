// The entries of a date range read on a thread of their own: while the
// caller formats and writes one batch of entries, the next batch is read from
// the store. Exports and reports walk this way.
//
// While it runs, the reader is the only user of the entry store: the caller
// touches the store again only after Next() has answered null or the reader
// is destroyed.
#ifndef QUILLORA_STORE_ENTRY_READ_AHEAD_H_
#define QUILLORA_STORE_ENTRY_READ_AHEAD_H_

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <thread>
#include <vector>

#include "store/record_store.h"
#include "store/time_entry.h"

namespace quillora {

class EntryReadAhead {
 public:
  // Seeks the entry store on the start for the first entry strictly later
  // than `after` and reads forward, ending before the first entry later than
  // `until`, at the end of the store, or at an entry that cannot be read.
  EntryReadAhead(EntryStore& entries, FileTime after, FileTime until,
                 std::size_t batch_size = 256);
  // Stops the reading where it stands.
  ~EntryReadAhead();
  EntryReadAhead(const EntryReadAhead&) = delete;
  EntryReadAhead& operator=(const EntryReadAhead&) = delete;

  // The next entry in store order, or null at the end. The entry may be
  // changed or moved from; it stays valid until the next call.
  TimeEntry* Next();
  // After the end: whether an entry could not be read.
  bool read_failed() const { return read_failed_; }

 private:
  void Run(FileTime after, FileTime until);

  EntryStore& entries_;
  std::size_t batch_size_;
  std::mutex mutex_;
  std::condition_variable changed_;
  // The batch being handed out and the batch read next (handed over when
  // full or at the end), each with the count of entries it holds. The entry
  // objects go back and forth between the two threads and are read into
  // again, so what the reading thread allocates it also frees.
  std::vector<TimeEntry> current_;
  std::vector<TimeEntry> ready_;
  std::size_t current_count_ = 0;
  std::size_t ready_count_ = 0;
  std::size_t at_ = 0;
  bool ready_full_ = false;
  bool done_ = false;
  bool stop_ = false;
  bool read_failed_ = false;
  std::thread thread_;
};

}  // namespace quillora

#endif  // QUILLORA_STORE_ENTRY_READ_AHEAD_H_
