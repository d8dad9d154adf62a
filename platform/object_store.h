// The object store: named record databases whose records are sets of typed
// properties, visited through open handles in the order of one sort property.
//
// This is the Linux stand-in for the handheld's record-database interface and
// keeps its semantics: object ids, sort orders fixed at creation, a handle with
// a current position, seeks by object id, to the beginning, relative, and by
// value, reads that never move the position, writes that replace or delete
// single properties, and a per-thread last error (259 at the end of records).
#ifndef QUILLORA_PLATFORM_OBJECT_STORE_H_
#define QUILLORA_PLATFORM_OBJECT_STORE_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/error_codes.h"

namespace quillora {

using ObjectId = std::uint32_t;
// (property number << 16) | value type.
using PropId = std::uint32_t;

enum PropType : std::uint16_t {
  kPropI2 = 2,
  kPropI4 = 3,
  kPropR8 = 5,
  kPropBool = 11,
  kPropUI2 = 18,
  kPropUI4 = 19,
  kPropString = 31,
  kPropFileTime = 64,
  kPropBlob = 65,
};

constexpr PropId MakePropId(std::uint16_t number, PropType type) {
  return (static_cast<PropId>(number) << 16) | type;
}
constexpr PropType PropTypeOf(PropId id) { return static_cast<PropType>(id & 0xFFFF); }

// Property flags: remove the property from the record (on write); the listed
// property is not in the record (on a read of listed properties).
inline constexpr std::uint16_t kPropDelete = 0x0200;
inline constexpr std::uint16_t kPropNotFound = 0x0400;


// The calling thread's last error, set by every store call.
std::uint32_t GetLastStoreError();
void SetLastStoreError(std::uint32_t error);

// One property value. Numbers of every integer type, booleans and FILETIMEs
// live in `number` (signed types sign-extended); doubles in `real`; wide
// strings in `text`; BLOBs in `blob`.
struct PropValue {
  PropId id = 0;
  std::uint16_t flags = 0;
  std::uint64_t number = 0;
  double real = 0;
  std::u16string text;
  std::vector<std::uint8_t> blob;

  static PropValue Number(PropId id, std::uint64_t value) {
    PropValue v;
    v.id = id;
    v.number = value;
    return v;
  }
  static PropValue Real(PropId id, double value) {
    PropValue v;
    v.id = id;
    v.real = value;
    return v;
  }
  static PropValue Text(PropId id, std::u16string value) {
    PropValue v;
    v.id = id;
    v.text = std::move(value);
    return v;
  }
  static PropValue Blob(PropId id, std::vector<std::uint8_t> value) {
    PropValue v;
    v.id = id;
    v.blob = std::move(value);
    return v;
  }
  // A value that removes property `id` from the record it is written to.
  static PropValue Delete(PropId id) {
    PropValue v;
    v.id = id;
    v.flags = kPropDelete;
    return v;
  }

  friend bool operator==(const PropValue&, const PropValue&) = default;
};

using PropList = std::vector<PropValue>;

struct SortOrder {
  PropId prop = 0;
  std::uint32_t flags = 0;  // 0: ascending, case-sensitive
  friend bool operator==(const SortOrder&, const SortOrder&) = default;
};

inline constexpr std::size_t kMaxSortOrders = 4;
// Database names hold at most 31 characters (32 with the terminator).
inline constexpr std::size_t kMaxDatabaseName = 31;

struct DatabaseInfo {
  std::u16string name;
  std::uint32_t type = 0;
  std::vector<SortOrder> sort_orders;  // at most four
  std::uint32_t record_count = 0;      // filled by GetDatabaseInfo
};

enum class SeekType : std::uint32_t {
  kObjectId = 1,           // the record with this object id
  kBeginning = 2,          // the record `offset` places from the first
  kEnd = 4,                // the record `offset` places back from the last
  kCurrent = 8,            // the record `offset` places from the current one
  kValueSmaller = 16,      // the last record whose value is smaller
  kValueFirstEqual = 32,   // the first record whose value is equal
  kValueGreater = 64,      // the first record whose value is strictly greater
  kValueNextEqual = 128,   // the next record whose value equals the last seek's
  kValueSmallerOrEqual = 256,  // the last record whose value is smaller or equal
  kValueGreaterOrEqual = 512,  // the first record whose value is greater or equal
};

enum class ChangeKind { kCreated, kChanged, kDeleted };

struct StoreChange {
  ChangeKind kind;
  ObjectId database;
  ObjectId record;
};

// A change-notification request: the callback is called synchronously, after
// the write's transaction has committed, for every record created, changed or
// deleted through any handle of this process on the handle's database.
struct NotificationRequest {
  std::uint32_t flags = 0;  // 1: extended notifications
  std::function<void(const StoreChange&)> notify;
};

// An open database. Closing is destruction.
class DatabaseHandle {
 public:
  virtual ~DatabaseHandle() = default;

  // Moves the current position and returns the object id landed on, or 0
  // (last error 259 when there is no such record). `offset_or_id` is the
  // object id for kObjectId and the count for kBeginning, kEnd, kCurrent.
  // A failed seek leaves the handle on no record.
  virtual ObjectId Seek(SeekType type, std::int64_t offset_or_id) = 0;
  // Value seeks: `value.id` must be the handle's sort property (last error 87
  // otherwise). kValueNextEqual ignores `value` and uses the last value seek's.
  virtual ObjectId SeekValue(SeekType type, const PropValue& value) = 0;

  // Reads the current record without moving: every property in the stored
  // order, or, with `wanted`, exactly those in that order (absent ones flagged
  // kPropNotFound). Returns the object id, 0 with the last error set on
  // failure (259 when the handle stands on no record).
  virtual ObjectId ReadProps(const std::vector<PropId>* wanted, PropList* out) = 0;

  // Object id 0 writes a new record (values flagged kPropDelete are skipped);
  // otherwise updates that record of this database: listed properties are
  // replaced in place, flagged ones removed, new ones appended, the rest kept.
  // One durable transaction. Returns the record's object id, 0 on failure.
  // The handle then stands on the written record.
  virtual ObjectId WriteProps(ObjectId id, const PropList& values) = 0;

  // Removes one record of this database. The handle keeps its place in the
  // order, so a relative seek after deleting the current record lands on the
  // record that followed it.
  virtual bool DeleteRecord(ObjectId id) = 0;

  virtual ObjectId database_id() const = 0;
  virtual PropId sort_property() const = 0;
};

class DatabaseSearch {
 public:
  virtual ~DatabaseSearch() = default;
  // The next database's object id, 0 at the end.
  virtual ObjectId Next() = 0;
};

// A volume of record databases.
class ObjectStore {
 public:
  virtual ~ObjectStore() = default;

  // Begins an enumeration of the databases of `type` (0 = any); null when it
  // cannot begin.
  virtual std::unique_ptr<DatabaseSearch> FindFirstDatabase(std::uint32_t type) = 0;
  virtual bool GetDatabaseInfo(ObjectId id, DatabaseInfo* info) = 0;
  // The name of a database alone: what a search by name needs, without the
  // record count that GetDatabaseInfo pays for with a pass over the records.
  virtual bool GetDatabaseName(ObjectId id, std::u16string* name) {
    DatabaseInfo info;
    if (!GetDatabaseInfo(id, &info)) return false;
    *name = std::move(info.name);
    return true;
  }
  // Creates a database; its object id, or 0 (duplicate name: 52; bad name or
  // more than four sort orders: 87).
  virtual ObjectId CreateDatabase(const DatabaseInfo& info) = 0;
  // Opens the database `*id`, or by exact name when `*id` is 0 (the id found
  // is stored back). `sort_prop` must be one of its sort orders, or 0 for
  // object-id order. Null on failure (2: no such database).
  virtual std::unique_ptr<DatabaseHandle> OpenDatabase(
      ObjectId* id, const std::u16string& name, PropId sort_prop, std::uint32_t flags,
      const NotificationRequest* request) = 0;

  // Groups the writes that follow into one transaction, made durable by
  // CommitBatch; for bulk work (restore, import) where each record needs no
  // transaction of its own. Without CommitBatch the batch is rolled back when
  // the store closes. False when a batch cannot begin or commit.
  virtual bool BeginBatch() = 0;
  virtual bool CommitBatch() = 0;

  // A number that changes whenever another process has committed a change
  // to the volume since the last call; the window polls it to reload.
  virtual std::uint64_t ExternalChangeCounter() = 0;
};

// Opens (creating when missing) the volume file at `path`. Null with a reason
// in `error` when the file cannot be opened or is not a volume; a file that
// is not a volume is never modified.
std::unique_ptr<ObjectStore> OpenSqliteObjectStore(const std::string& path,
                                                   std::string* error);

}  // namespace quillora

#endif  // QUILLORA_PLATFORM_OBJECT_STORE_H_
