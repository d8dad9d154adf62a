// A backup or archive file being written: the compound file, plus a ledger of
// every storage and stream put into it, so that the written file can be read
// back and compared before the backup is reported as done.
#ifndef QUILLORA_BACKUP_BACKUP_FILE_H_
#define QUILLORA_BACKUP_BACKUP_FILE_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/compound_file.h"
#include "platform/file.h"

namespace quillora {

class BackupFile {
 public:
  // Creates (or truncates) the file through `files`; false when it cannot.
  bool Create(FileSystem& files, const std::string& path);

  CompoundStorage root() const { return CompoundStorage{0}; }

  // Each is false when the compound writer refuses (a name twice, a bad
  // handle, a stream too large).
  bool CreateStorage(CompoundStorage parent, std::u16string_view name,
                     CompoundStorage* out);
  bool CreateStream(CompoundStorage parent, std::u16string_view name,
                    CompoundStream* out);
  bool Write(CompoundStream stream, std::string_view bytes);
  // CreateStream and one Write.
  bool WriteStream(CompoundStorage parent, std::u16string_view name,
                   std::string_view bytes);

  // Writes the file out and closes it; false when a write or the close failed
  // (the partly written file stays).
  bool Commit();

  // Reads the committed file back through `files` and compares it with the
  // ledger: every storage holds exactly the elements written, of the same
  // kinds, and every stream the same bytes (size and a 64-bit FNV-1a digest).
  // False when the file cannot be read, is refused by the reader or differs.
  bool Verify(FileSystem& files) const;

 private:
  struct Node {
    std::uint32_t parent = 0;  // ledger index of the storage holding it
    std::u16string name;       // empty for the root
    bool storage = true;
    std::uint32_t children = 0;  // storages: elements written into it
    std::uint64_t size = 0;      // streams: bytes written
    std::uint64_t digest = 0;    // streams: FNV-1a of the bytes
  };
  bool Add(CompoundStorage parent, std::u16string_view name, bool storage,
           std::uint32_t id, std::uint32_t* ledger_index);

  std::string path_;
  CompoundWriter writer_;
  std::vector<Node> nodes_;
  // The writer numbers storages and streams together; id -> ledger index.
  std::vector<std::uint32_t> ledger_of_id_;
};

// The 64-bit FNV-1a digest of `bytes`, continued from `digest`.
std::uint64_t Fnv1a(std::uint64_t digest, std::string_view bytes);
inline constexpr std::uint64_t kFnv1aSeed = 0xcbf29ce484222325ull;

}  // namespace quillora

#endif  // QUILLORA_BACKUP_BACKUP_FILE_H_
