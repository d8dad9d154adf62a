#include "store/entry_read_ahead.h"

#include <utility>

namespace quillora {

EntryReadAhead::EntryReadAhead(EntryStore& entries, FileTime after, FileTime until,
                               std::size_t batch_size)
    : entries_(entries),
      batch_size_(batch_size == 0 ? 1 : batch_size),
      thread_([this, after, until] { Run(after, until); }) {}

EntryReadAhead::~EntryReadAhead() {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    stop_ = true;
  }
  changed_.notify_all();
  thread_.join();
}

TimeEntry* EntryReadAhead::Next() {
  if (at_ < current_count_) return &current_[at_++];
  std::unique_lock<std::mutex> lock(mutex_);
  changed_.wait(lock, [&] { return ready_full_ || done_; });
  if (!ready_full_) return nullptr;
  // The read batch is taken; the handed-out one goes back to be read into.
  std::swap(current_, ready_);
  current_count_ = ready_count_;
  ready_full_ = false;
  at_ = 0;
  lock.unlock();
  changed_.notify_all();
  return current_count_ == 0 ? nullptr : &current_[at_++];
}

void EntryReadAhead::Run(FileTime after, FileTime until) {
  std::vector<TimeEntry> batch;
  std::size_t count = 0;
  bool more = entries_.SeekValue(SeekType::kValueGreater,
                                 PropValue::Number(entry_prop::kStart, after)) != 0;
  bool failed = false;
  while (more) {
    if (count == batch.size()) batch.emplace_back();
    TimeEntry& entry = batch[count];
    const int read = ReadEntry(entries_, &entry);
    if (read != 0 || entry.start > until) {
      failed = read != 0 && read != 1;
      more = false;
    } else {
      ++count;
      more = entries_.Seek(SeekType::kCurrent, 1) != 0;
    }
    if (count < batch_size_ && more) continue;
    // Hand the batch over once the one before it has been taken.
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [&] { return !ready_full_ || stop_; });
    if (stop_) return;
    if (count > 0) {
      std::swap(ready_, batch);
      ready_count_ = count;
      ready_full_ = true;
      count = 0;
    }
    lock.unlock();
    changed_.notify_all();
  }
  std::lock_guard<std::mutex> lock(mutex_);
  read_failed_ = failed;
  done_ = true;
  changed_.notify_all();
}

}  // namespace quillora
