#include "store/record_store.h"

#include "store/string_table.h"

namespace quillora {

RecordStore::~RecordStore() = default;

void RecordStore::LoadName() { name_ = LoadString(NameId()); }

bool RecordStore::Exists(const std::u16string& name) {
  if (name.empty()) LoadName();
  const std::u16string& wanted = name.empty() ? name_ : name;
  auto search = volume_.FindFirstDatabase(0);
  if (!search) return false;
  // By name only: the full information would count every database's records
  // and make each open cost a pass over the whole volume.
  for (ObjectId id = search->Next(); id != 0; id = search->Next()) {
    std::u16string found;
    if (volume_.GetDatabaseName(id, &found) && found == wanted) return true;
  }
  return false;
}

bool RecordStore::Create() {
  LoadName();
  DatabaseInfo info;
  info.name = name_;
  info.type = DatabaseType();
  info.sort_orders = SortOrders();
  database_id_ = volume_.CreateDatabase(info);
  return database_id_ != 0;
}

bool RecordStore::OpenDatabase(const std::u16string& name, PropId sort_prop,
                               std::uint32_t flags, const NotificationRequest* request) {
  if (request) request_ = *request;
  ObjectId id = 0;
  handle_ = volume_.OpenDatabase(&id, name, sort_prop, flags,
                                 request_ ? &*request_ : nullptr);
  if (!handle_) return false;
  database_id_ = id;
  return true;
}

bool RecordStore::Open(std::uint32_t flags, const NotificationRequest* request) {
  LoadName();
  // Another process may create the database between the check and the
  // create (two command lines on a new data folder): its database is the
  // one to open.
  if (!Exists(name_) && !Create() && !Exists(name_)) return false;
  return OpenDatabase(name_, OpenSortProperty(), flags, request);
}

ObjectId RecordStore::Seek(SeekType type, std::int64_t offset_or_id) {
  if (!handle_) {
    SetLastStoreError(kErrorInvalidParameter);
    return current_record_id_ = 0;
  }
  return current_record_id_ = handle_->Seek(type, offset_or_id);
}

ObjectId RecordStore::SeekValue(SeekType type, const PropValue& value) {
  if (!handle_) {
    SetLastStoreError(kErrorInvalidParameter);
    return current_record_id_ = 0;
  }
  return current_record_id_ = handle_->SeekValue(type, value);
}

ObjectId RecordStore::ReadProps(const std::vector<PropId>* wanted, PropList* out) {
  out->clear();
  if (!handle_) {
    SetLastStoreError(kErrorInvalidParameter);
    return 0;
  }
  // A read never moves: the current record id stays what the seek left.
  return handle_->ReadProps(wanted, out);
}

ObjectId RecordStore::WriteProps(ObjectId id, const PropList& values) {
  if (!handle_) {
    SetLastStoreError(kErrorInvalidParameter);
    return current_record_id_ = 0;
  }
  return current_record_id_ = handle_->WriteProps(id, values);
}

bool RecordStore::DeleteRecord(ObjectId id) {
  if (!handle_) {
    SetLastStoreError(kErrorInvalidParameter);
    return false;
  }
  return handle_->DeleteRecord(id);
}

}  // namespace quillora
