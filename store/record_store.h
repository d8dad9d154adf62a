// The record store family: one class per database of the program, each
// knowing its database's name, type, sort orders and the sort property it is
// opened on. A store owns its open database handle for as long as it lives;
// the other parts borrow it for one operation at a time.
#ifndef QUILLORA_STORE_RECORD_STORE_H_
#define QUILLORA_STORE_RECORD_STORE_H_

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/object_store.h"
#include "store/string_table.h"

namespace quillora {

// Property ids shared by several record kinds.
inline constexpr PropId kPropStart = MakePropId(1001, kPropFileTime);
inline constexpr PropId kPropClientName = MakePropId(1002, kPropString);
inline constexpr PropId kPropTaskName = MakePropId(1005, kPropString);
inline constexpr PropId kPropRateValue = MakePropId(1008, kPropUI4);
inline constexpr PropId kPropItemName = MakePropId(1101, kPropString);
inline constexpr PropId kPropListKind = MakePropId(1102, kPropUI2);
inline constexpr PropId kPropClientId = MakePropId(1201, kPropUI4);

// The number of a client, carried by every project, task, contact and rate
// record; never reused. Rates of client number 0 are the default rates.
using ClientId = std::uint32_t;

class Registry;

class RecordStore {
 public:
  explicit RecordStore(ObjectStore& volume) : volume_(volume) {}
  virtual ~RecordStore();
  RecordStore(const RecordStore&) = delete;
  RecordStore& operator=(const RecordStore&) = delete;

  // Loads the name; creates the database when no database of exactly that
  // name exists; opens it on the open sort property. True on success.
  virtual bool Open(std::uint32_t flags = 0, const NotificationRequest* request = nullptr);
  // Creates the database with this store's type and sort orders and keeps its
  // object id; true when the id is not 0.
  virtual bool Create();

  // Loads this store's database name from the string table.
  void LoadName();
  // True when a database of exactly `name` exists (empty: this store's name).
  bool Exists(const std::u16string& name = {});
  bool OpenDatabase(const std::u16string& name, PropId sort_prop, std::uint32_t flags,
                    const NotificationRequest* request);

  // The store's operations on its open database. Each sets the current record
  // id to the object id landed on, read or written (0 on failure; the
  // platform's last error tells why).
  ObjectId Seek(SeekType type, std::int64_t offset_or_id);
  ObjectId SeekValue(SeekType type, const PropValue& value);
  ObjectId ReadProps(const std::vector<PropId>* wanted, PropList* out);
  ObjectId WriteProps(ObjectId id, const PropList& values);
  bool DeleteRecord(ObjectId id);

  bool is_open() const { return handle_ != nullptr; }
  const std::u16string& name() const { return name_; }
  ObjectId current_record_id() const { return current_record_id_; }
  ObjectId database_id() const { return database_id_; }
  ObjectStore& volume() { return volume_; }

  // What distinguishes the databases.
  virtual int NameId() const = 0;
  virtual std::uint32_t DatabaseType() const = 0;
  virtual std::vector<SortOrder> SortOrders() const = 0;
  virtual PropId OpenSortProperty() const = 0;

 protected:
  ObjectStore& volume_;
  std::u16string name_;
  std::optional<NotificationRequest> request_;
  ObjectId current_record_id_ = 0;
  std::unique_ptr<DatabaseHandle> handle_;
  ObjectId database_id_ = 0;
};

// Generates one store class: its string id, type, sort orders and open sort
// property.
#define QUILLORA_RECORD_STORE(Name, name_id, type, open_sort, ...)            \
  class Name : public RecordStore {                                           \
   public:                                                                    \
    using RecordStore::RecordStore;                                           \
    int NameId() const override { return name_id; }                           \
    std::uint32_t DatabaseType() const override { return type; }              \
    std::vector<SortOrder> SortOrders() const override { return __VA_ARGS__; } \
    PropId OpenSortProperty() const override { return open_sort; }            \
  }

// Time entries, by start.
QUILLORA_RECORD_STORE(EntryStore, kIdsEntriesDatabase, 79990001, kPropStart, {{kPropStart, 0}});
// The client-number counter, value lists and saved report definitions.
QUILLORA_RECORD_STORE(AuxStore, kIdsAuxDatabase, 79990002, kPropListKind,
                      {{kPropListKind, 0}, {kPropItemName, 0}});
QUILLORA_RECORD_STORE(RateStore, kIdsRatesDatabase, 79990003, kPropClientId, {{kPropClientId, 0}});
QUILLORA_RECORD_STORE(ProjectStore, kIdsProjectsDatabase, 79990005, kPropClientId, {{kPropClientId, 0}});
QUILLORA_RECORD_STORE(TaskStore, kIdsTasksDatabase, 79990006, kPropClientId, {{kPropClientId, 0}});
QUILLORA_RECORD_STORE(ContactStore, kIdsContactsDatabase, 79990007, kPropClientId, {{kPropClientId, 0}});

// Clients, by name. Opening it also makes sure that "Quillora Data 2" holds the
// client-number counter (store/client_store.cpp): a new clients database
// starts the counter at 1; an existing one without a counter takes the
// registry's "NextClient" once. Without a registry an existing database's
// missing counter is left missing, so that a later opening with the registry
// can still carry "NextClient" over.
class ClientStore : public RecordStore {
 public:
  explicit ClientStore(ObjectStore& volume, Registry* registry = nullptr)
      : RecordStore(volume), registry_(registry) {}
  bool Open(std::uint32_t flags = 0, const NotificationRequest* request = nullptr) override;
  int NameId() const override { return kIdsClientsDatabase; }
  std::uint32_t DatabaseType() const override { return 79990004; }
  std::vector<SortOrder> SortOrders() const override { return {{kPropClientName, 0}}; }
  PropId OpenSortProperty() const override { return kPropClientName; }

 private:
  Registry* registry_;
};

#undef QUILLORA_RECORD_STORE

}  // namespace quillora

#endif  // QUILLORA_STORE_RECORD_STORE_H_
