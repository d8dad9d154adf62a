// Compound files: storages and streams inside one file, in the Microsoft
// Compound File Binary format (version 3, 512-byte sectors). Backups and
// archives are written and read through these classes; they stand in for the
// handheld's structured storage (create a docfile, open it, create and open
// storages and streams, enumerate a storage's elements).
//
// Names are at most 31 UTF-16 units and unique within their storage, compared
// the container's way: a shorter name sorts first, names of equal length
// compare unit by unit after conversion to upper case. docs/compound_file.md
// lists what is written and what the reader checks.
#ifndef QUILLORA_PLATFORM_COMPOUND_FILE_H_
#define QUILLORA_PLATFORM_COMPOUND_FILE_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file.h"

namespace quillora {

enum class CompoundResult {
  kOk = 0,
  kFileError,        // the file could not be created, opened or read
  kWriteFailed,      // writing the file failed (disk full); the partial file stays
  kNotCompoundFile,  // no signature, or a version or sector size we do not read
  kCorrupt,          // the structure is damaged; nothing of the file is trusted
  kNotFound,         // no element of that name in the storage
  kWrongType,        // the name belongs to a stream where a storage was asked, or back
  kInvalidName,      // empty, longer than 31 units, or holding one of '/', '\', ':', '!'
  kNameExists,       // the storage already has an element of that name (any case)
  kInvalidHandle,    // a handle this object did not give out
  kNotOpen,          // the writer has no file (before Create, or after Commit)
  kTooLarge,         // beyond the format's limits (a stream of 4 GB or more)
};

// A short English description of a result ("ok", "file is damaged", ...).
const char* CompoundResultText(CompoundResult result);

// The largest file the format can address: the header and 0xFFFFFFFA
// sectors of 512 bytes. A larger file is no backup or archive and is refused
// before it is read.
inline constexpr std::uint64_t kCompoundFileMaxBytes =
    512 + std::uint64_t{0xFFFFFFFA} * 512;

// Maximum length of an element name in UTF-16 units.
inline constexpr size_t kCompoundMaxNameLength = 31;

// The container's name order: negative, zero or positive as a sorts before,
// equal to or after b (shorter first, then upper-cased units).
int CompareCompoundNames(std::u16string_view a, std::u16string_view b);

// Handles given out by one CompoundWriter or CompoundReader, valid only with
// the object that gave them.
struct CompoundStorage {
  uint32_t id = 0;
};
struct CompoundStream {
  uint32_t id = 0;
};

enum class CompoundElementType : uint8_t { kStorage = 1, kStream = 2 };

// One element of a storage, as enumeration gives it.
struct CompoundElement {
  std::u16string name;
  CompoundElementType type = CompoundElementType::kStream;
  uint64_t size = 0;  // bytes of a stream; 0 for a storage
};

// Where a written compound file's bytes go.
using CompoundSink = WritableFile;

// Creates or truncates the file at path (permissions 0666 less the umask);
// nullptr when it cannot be created.
std::unique_ptr<CompoundSink> CreateFileSink(const std::string& path);

// Builds a compound file in memory and writes it whole on Commit.
//
//   CompoundWriter writer;
//   if (writer.Create(path) != CompoundResult::kOk) ...
//   CompoundStorage records;  writer.CreateStorage(writer.root(), u"Records", &records);
//   CompoundStream record;    writer.CreateStream(records, u"Record0", &record);
//   writer.Write(record, bytes.data(), bytes.size());
//   if (writer.Commit() != CompoundResult::kOk) ...   // the partial file stays
class CompoundWriter {
 public:
  CompoundWriter();
  ~CompoundWriter();
  CompoundWriter(const CompoundWriter&) = delete;
  CompoundWriter& operator=(const CompoundWriter&) = delete;

  // Creates (or truncates) the file now, so that a path that cannot be
  // written fails at once (kFileError). Forgets anything built before.
  CompoundResult Create(const std::string& path);
  // The same with a sink of the caller's (tests inject failing writes).
  CompoundResult Create(std::unique_ptr<CompoundSink> sink);

  // The root storage.
  CompoundStorage root() const { return CompoundStorage{0}; }

  // Add an empty storage or stream named `name` to `parent`. Fail with
  // kInvalidName, kNameExists (compared without regard to case),
  // kInvalidHandle or kNotOpen; *out is set only on success.
  CompoundResult CreateStorage(CompoundStorage parent, std::u16string_view name,
                               CompoundStorage* out);
  CompoundResult CreateStream(CompoundStorage parent, std::u16string_view name,
                              CompoundStream* out);

  // Appends bytes to a stream. kTooLarge when the stream would reach 4 GB.
  CompoundResult Write(CompoundStream stream, const void* data, size_t size);

  // Writes the container to the file and closes it. kWriteFailed when a
  // write or the close fails; the bytes already written stay. Afterwards the
  // writer is empty and needs Create again.
  CompoundResult Commit();

 private:
  struct Node;
  void GiveNameSet(Node& storage) const;
  CompoundResult AddNode(CompoundStorage parent, std::u16string_view name, bool storage,
                         uint32_t* id);
  CompoundResult WriteAll();

  std::unique_ptr<CompoundSink> sink_;
  std::vector<Node> nodes_;  // node 0 is the root; a node's id is its directory entry
};

class CompoundReader;

// Steps through a storage's elements in the container's order. Use it only
// while its reader holds the file it came from (not after another Open).
class CompoundEnumerator {
 public:
  // The next element; false after the last.
  bool Next(CompoundElement* element);

 private:
  friend class CompoundReader;
  CompoundEnumerator(const CompoundReader* reader, uint32_t begin, uint32_t end)
      : reader_(reader), next_(begin), end_(end) {}
  const CompoundReader* reader_;
  uint32_t next_;
  uint32_t end_;
};

// Reads a compound file. Open reads the whole file into memory and checks all
// of its structure (every sector index, chain, size and the directory trees);
// a file that fails any check is refused, so later calls work on trusted data.
class CompoundReader {
 public:
  CompoundReader();
  ~CompoundReader();
  CompoundReader(const CompoundReader&) = delete;
  CompoundReader& operator=(const CompoundReader&) = delete;

  // kFileError when the file cannot be read, kNotCompoundFile or kCorrupt
  // when it cannot be trusted (error_detail() says why).
  CompoundResult Open(const std::string& path);
  CompoundResult OpenBytes(std::string bytes);

  // Why the last Open refused the file ("" after success).
  const std::string& error_detail() const { return error_detail_; }

  CompoundStorage root() const { return CompoundStorage{0}; }

  // Find an element of `parent` by name (the container's comparison, so
  // without regard to case). kNotFound, kWrongType, kInvalidHandle, kNotOpen.
  CompoundResult OpenStorage(CompoundStorage parent, std::u16string_view name,
                             CompoundStorage* out) const;
  CompoundResult OpenStream(CompoundStorage parent, std::u16string_view name,
                            CompoundStream* out) const;

  // The elements of a storage in the container's order (empty for a bad handle).
  CompoundEnumerator EnumElements(CompoundStorage storage) const;

  // Size and whole contents of a stream.
  uint64_t StreamSize(CompoundStream stream) const;
  CompoundResult ReadStream(CompoundStream stream, std::string* bytes) const;

 private:
  friend class CompoundEnumerator;
  struct Entry;
  class Checker;
  CompoundResult Find(CompoundStorage parent, std::u16string_view name, uint8_t type,
                      uint32_t* id) const;
  const Entry* EntryOf(uint32_t id, uint8_t type) const;
  std::u16string_view NameOf(const Entry& entry) const;

  std::string bytes_;
  std::vector<Entry> entries_;
  std::vector<uint32_t> fat_;
  std::vector<uint32_t> mini_fat_;
  std::vector<uint32_t> mini_stream_sectors_;
  std::vector<uint32_t> children_;  // each storage's children, in order, one run each
  std::u16string names_;            // their names, in the same order
  std::string error_detail_;
};

}  // namespace quillora

#endif  // QUILLORA_PLATFORM_COMPOUND_FILE_H_
