// Groups the record writes of one long operation (restore, archive deletion,
// find and replace, mark paid, delete data) into a few transactions instead
// of one durable transaction a record.
#ifndef QUILLORA_TIMEKEEPING_WRITE_BATCH_H_
#define QUILLORA_TIMEKEEPING_WRITE_BATCH_H_

#include "platform/object_store.h"

namespace quillora {

// Begins a batch at construction and commits it every `chunk` writes, so that
// a crash loses at most the writes since the last commit and never more than
// one chunk. When a batch cannot begin (another one is under way) every write
// keeps its own transaction and nothing here commits.
class WriteBatch {
 public:
  static constexpr int kDefaultChunk = 1024;

  explicit WriteBatch(ObjectStore& volume, int chunk = kDefaultChunk)
      : volume_(volume), chunk_(chunk > 0 ? chunk : 1), open_(volume.BeginBatch()) {}
  ~WriteBatch() { Finish(); }
  WriteBatch(const WriteBatch&) = delete;
  WriteBatch& operator=(const WriteBatch&) = delete;

  // Counts one write; every `chunk` writes the batch is committed and a new
  // one begun. False when a commit failed: the writes of that chunk are gone.
  bool Step() {
    if (!open_ || ++pending_ < chunk_) return ok_;
    pending_ = 0;
    if (!volume_.CommitBatch()) ok_ = false;
    open_ = volume_.BeginBatch();
    return ok_;
  }

  // Commits what is pending. False when this or an earlier commit failed.
  bool Finish() {
    if (open_) {
      open_ = false;
      if (!volume_.CommitBatch()) ok_ = false;
    }
    return ok_;
  }

 private:
  ObjectStore& volume_;
  int chunk_;
  int pending_ = 0;
  bool open_;
  bool ok_ = true;
};

}  // namespace quillora

#endif  // QUILLORA_TIMEKEEPING_WRITE_BATCH_H_
