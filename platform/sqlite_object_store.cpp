// The object store on SQLite.
//
// One table holds the databases, one the records of all of them. A record row
// keeps its properties as one encoded value (property_codec.h) and, for each
// of its database's sort orders, a sort key (k0..k3) with a "missing" mark
// (m0..m3, 1 when the record lacks the sort property, so such records come
// last). An index on (db, mN, kN, oid) serves every seek and step in the
// order of sort order N; no walk ever scans the table.
//
// Wide-string keys are the root collation's sort key followed by the string's
// UTF-16 units, so the order is alphabetical and letter case still tells two
// names apart: an equal-value seek finds only the exact same string.
//
// Forward steps are served from a batch of rows read ahead in one query; the
// batch is dropped whenever this process writes, so a walk always sees its own
// changes. Changes committed by another process show up at the next batch or
// the next seek.
#include <sqlite3.h>
#include <sys/stat.h>
#include <fcntl.h>
#include <unistd.h>
#include <unicode/ucol.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <map>
#include <unordered_map>
#include <variant>

#include "platform/object_store.h"
#include "platform/property_codec.h"

namespace quillora {
namespace {

thread_local std::uint32_t g_last_error = 0;

constexpr std::int64_t kApplicationId = 0x51554C52;  // "QULR"
constexpr int kSchemaVersion = 1;

// The one place where SQLite result codes become the store's last error.
std::uint32_t SqliteError(const char* context, int rc) {
  (void)context;
  switch (rc & 0xFF) {
    case SQLITE_FULL:
      return kErrorDiskFull;
    case SQLITE_NOMEM:
      return kErrorNotEnoughMemory;
    case SQLITE_CONSTRAINT:
    case SQLITE_MISMATCH:
    case SQLITE_RANGE:
      return kErrorInvalidParameter;
    default:
      return kErrorInternal;
  }
}

struct SortKey {
  int missing = 1;
  std::variant<std::int64_t, double, std::string> value = std::int64_t{0};
  friend bool operator==(const SortKey&, const SortKey&) = default;
};

struct Row {
  ObjectId oid = 0;
  SortKey key;
  std::string props;
};

class Collator {
 public:
  Collator() {
    UErrorCode status = U_ZERO_ERROR;
    collator_ = ucol_open("", &status);
    if (U_FAILURE(status)) collator_ = nullptr;
    if (collator_) {
      ucol_setStrength(collator_, UCOL_TERTIARY);
    }
  }
  ~Collator() {
    if (collator_) ucol_close(collator_);
  }
  Collator(const Collator&) = delete;
  Collator& operator=(const Collator&) = delete;

  std::string Key(const std::u16string& text) const {
    std::string key;
    if (collator_) {
      const auto* s = reinterpret_cast<const UChar*>(text.data());
      const auto n = static_cast<int32_t>(text.size());
      key.resize(static_cast<std::size_t>(std::max<int32_t>(64, n * 4)));
      int32_t size = ucol_getSortKey(collator_, s, n, reinterpret_cast<uint8_t*>(key.data()),
                                     static_cast<int32_t>(key.size()));
      if (size > static_cast<int32_t>(key.size())) {
        key.resize(static_cast<std::size_t>(size));
        size = ucol_getSortKey(collator_, s, n, reinterpret_cast<uint8_t*>(key.data()),
                               static_cast<int32_t>(key.size()));
      }
      key.resize(static_cast<std::size_t>(size));
    }
    // The collation key ends in a zero byte and holds no other; the raw units
    // behind it only break ties between strings the collation calls equal.
    for (char16_t c : text) {
      key.push_back(static_cast<char>(c >> 8));
      key.push_back(static_cast<char>(c & 0xFF));
    }
    return key;
  }

 private:
  UCollator* collator_ = nullptr;
};

// A prepared statement borrowed from the store's cache; reset on release.
class Statement {
 public:
  explicit Statement(sqlite3_stmt* stmt) : stmt_(stmt) {}
  ~Statement() {
    if (stmt_) {
      sqlite3_reset(stmt_);
      sqlite3_clear_bindings(stmt_);
    }
  }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  bool ok() const { return stmt_ != nullptr; }
  sqlite3_stmt* get() const { return stmt_; }
  void Bind(int i, std::int64_t v) { sqlite3_bind_int64(stmt_, i, v); }
  void BindBlob(int i, const std::string& v) {
    sqlite3_bind_blob(stmt_, i, v.data(), static_cast<int>(v.size()), SQLITE_TRANSIENT);
  }
  void BindKey(int i, const SortKey& key) {
    if (const auto* n = std::get_if<std::int64_t>(&key.value)) {
      sqlite3_bind_int64(stmt_, i, *n);
    } else if (const auto* r = std::get_if<double>(&key.value)) {
      sqlite3_bind_double(stmt_, i, *r);
    } else {
      BindBlob(i, std::get<std::string>(key.value));
    }
  }
  int Step() { return sqlite3_step(stmt_); }
  std::int64_t Int(int col) { return sqlite3_column_int64(stmt_, col); }
  std::string Blob(int col) {
    const void* p = sqlite3_column_blob(stmt_, col);
    const int n = sqlite3_column_bytes(stmt_, col);
    return p ? std::string(static_cast<const char*>(p), static_cast<std::size_t>(n))
             : std::string();
  }
  SortKey Key(int missing_col, int key_col) {
    SortKey key;
    key.missing = static_cast<int>(Int(missing_col));
    switch (sqlite3_column_type(stmt_, key_col)) {
      case SQLITE_FLOAT:
        key.value = sqlite3_column_double(stmt_, key_col);
        break;
      case SQLITE_BLOB:
      case SQLITE_TEXT:
        key.value = Blob(key_col);
        break;
      default:
        key.value = Int(key_col);
        break;
    }
    return key;
  }

 private:
  sqlite3_stmt* stmt_;
};

class SqliteObjectStore;

class SqliteDatabaseHandle : public DatabaseHandle {
 public:
  SqliteDatabaseHandle(SqliteObjectStore* store, ObjectId db, PropId sort_prop, int slot,
                       std::optional<NotificationRequest> request);
  ~SqliteDatabaseHandle() override;

  ObjectId Seek(SeekType type, std::int64_t offset_or_id) override;
  ObjectId SeekValue(SeekType type, const PropValue& value) override;
  ObjectId ReadProps(const std::vector<PropId>* wanted, PropList* out) override;
  ObjectId WriteProps(ObjectId id, const PropList& values) override;
  bool DeleteRecord(ObjectId id) override;
  ObjectId database_id() const override { return db_; }
  PropId sort_property() const override { return sort_prop_; }

  int slot() const { return slot_; }
  const std::optional<NotificationRequest>& request() const { return request_; }

 private:
  ObjectId Land(const Row& row);
  ObjectId Fail(std::uint32_t error);
  ObjectId StepForward(std::int64_t count);
  ObjectId StepBackward(std::int64_t count);
  // Reads up to `limit` rows after (or before) the current position.
  bool FetchFrom(bool forward, std::int64_t limit, std::vector<Row>* rows);
  std::string MissingColumn() const;
  std::string KeyColumn() const;
  std::string SelectColumns() const;

  SqliteObjectStore* store_;
  ObjectId db_;
  PropId sort_prop_;
  int slot_;  // index of the sort order, -1 for object-id order
  std::optional<NotificationRequest> request_;

  bool on_record_ = false;
  bool has_position_ = false;
  Row current_;
  std::uint64_t current_generation_ = 0;
  std::deque<Row> ahead_;
  std::uint64_t ahead_generation_ = 0;
  std::int64_t batch_size_ = 8;
  std::optional<SortKey> last_value_;
};

class SqliteDatabaseSearch : public DatabaseSearch {
 public:
  explicit SqliteDatabaseSearch(std::vector<ObjectId> ids) : ids_(std::move(ids)) {}
  ObjectId Next() override {
    if (next_ >= ids_.size()) {
      g_last_error = kErrorNoMoreItems;
      return 0;
    }
    g_last_error = kErrorSuccess;
    return ids_[next_++];
  }

 private:
  std::vector<ObjectId> ids_;
  std::size_t next_ = 0;
};

class SqliteObjectStore : public ObjectStore {
 public:
  explicit SqliteObjectStore(sqlite3* db) : db_(db) {}
  ~SqliteObjectStore() override {
    for (auto& [sql, stmt] : statements_) sqlite3_finalize(stmt);
    sqlite3_close_v2(db_);
  }

  bool Initialize(std::string* error);

  std::unique_ptr<DatabaseSearch> FindFirstDatabase(std::uint32_t type) override;
  bool GetDatabaseInfo(ObjectId id, DatabaseInfo* info) override;
  bool GetDatabaseName(ObjectId id, std::u16string* name) override;
  ObjectId CreateDatabase(const DatabaseInfo& info) override;
  std::unique_ptr<DatabaseHandle> OpenDatabase(ObjectId* id, const std::u16string& name,
                                               PropId sort_prop, std::uint32_t flags,
                                               const NotificationRequest* request) override;
  std::uint64_t ExternalChangeCounter() override;
  bool BeginBatch() override;
  bool CommitBatch() override;

  Statement Prepare(const std::string& sql) {
    auto it = statements_.find(sql);
    if (it == statements_.end()) {
      sqlite3_stmt* stmt = nullptr;
      if (sqlite3_prepare_v3(db_, sql.c_str(), static_cast<int>(sql.size()),
                             SQLITE_PREPARE_PERSISTENT, &stmt, nullptr) != SQLITE_OK) {
        return Statement(nullptr);
      }
      it = statements_.emplace(sql, stmt).first;
    }
    return Statement(it->second);
  }

  bool Exec(const char* sql) {
    return sqlite3_exec(db_, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
  }

  // One write's transaction; inside a batch the batch's transaction serves.
  bool BeginWrite() { return in_batch_ || Exec("BEGIN IMMEDIATE"); }
  bool CommitWrite() { return in_batch_ || Exec("COMMIT"); }
  void RollbackWrite() {
    // A failed statement inside a batch undoes itself; the batch goes on.
    if (!in_batch_) Exec("ROLLBACK");
  }

  // One column of a database's row; false when there is no such database.
  bool ReadDatabaseColumn(ObjectId id, const char* column, std::string* bytes);
  // The sort orders of a database; false when there is no such database.
  bool SortOrdersOf(ObjectId db, std::vector<SortOrder>* orders);
  SortKey KeyOf(const PropList& props, PropId sort_prop) const;
  SortKey KeyOfValue(const PropValue& value) const;

  ObjectId Write(SqliteDatabaseHandle* handle, ObjectId id, const PropList& values, Row* row);
  bool Delete(SqliteDatabaseHandle* handle, ObjectId id);

  std::uint64_t generation() const { return generation_; }
  void Register(SqliteDatabaseHandle* h) { handles_.push_back(h); }
  void Unregister(SqliteDatabaseHandle* h) { std::erase(handles_, h); }

 private:
  void Notify(const StoreChange& change);

  sqlite3* db_;
  std::unordered_map<std::string, sqlite3_stmt*> statements_;
  std::uint64_t generation_ = 1;
  std::vector<SqliteDatabaseHandle*> handles_;
  Collator collator_;
  std::map<ObjectId, std::vector<SortOrder>> sort_cache_;
  bool in_batch_ = false;
};

// --- the store -------------------------------------------------------------

bool SqliteObjectStore::Initialize(std::string* error) {
  sqlite3_busy_timeout(db_, 10000);
  sqlite3_extended_result_codes(db_, 1);
  // The first read tells a volume from a file that is something else; a
  // file that is not ours is never written to.
  sqlite3_stmt* probe = nullptr;
  int rc = sqlite3_prepare_v2(db_, "PRAGMA application_id", -1, &probe, nullptr);
  std::int64_t app_id = 0;
  if (rc == SQLITE_OK) {
    rc = sqlite3_step(probe);
    if (rc == SQLITE_ROW) app_id = sqlite3_column_int64(probe, 0);
  }
  sqlite3_finalize(probe);
  if (rc != SQLITE_ROW) {
    *error = sqlite3_errmsg(db_);
    return false;
  }
  sqlite3_stmt* count_stmt = nullptr;
  std::int64_t objects = 0;
  if (sqlite3_prepare_v2(db_, "SELECT count(*) FROM sqlite_schema", -1, &count_stmt,
                         nullptr) == SQLITE_OK &&
      sqlite3_step(count_stmt) == SQLITE_ROW) {
    objects = sqlite3_column_int64(count_stmt, 0);
  } else {
    *error = sqlite3_errmsg(db_);
    sqlite3_finalize(count_stmt);
    return false;
  }
  sqlite3_finalize(count_stmt);
  if (app_id != kApplicationId && (app_id != 0 || objects != 0)) {
    *error = "not a Quillora data store";
    return false;
  }
  if (!Exec("PRAGMA journal_mode=WAL") || !Exec("PRAGMA synchronous=FULL")) {
    *error = sqlite3_errmsg(db_);
    return false;
  }
  if (app_id == 0) {
    const std::string schema =
        "BEGIN IMMEDIATE;"
        "CREATE TABLE IF NOT EXISTS databases(oid INTEGER PRIMARY KEY AUTOINCREMENT,"
        " name BLOB NOT NULL, type INTEGER NOT NULL, sort_orders BLOB NOT NULL);"
        "CREATE TABLE IF NOT EXISTS records(oid INTEGER PRIMARY KEY AUTOINCREMENT,"
        " db INTEGER NOT NULL, props BLOB NOT NULL,"
        " m0 INTEGER NOT NULL, k0, m1 INTEGER NOT NULL, k1,"
        " m2 INTEGER NOT NULL, k2, m3 INTEGER NOT NULL, k3);"
        "CREATE INDEX IF NOT EXISTS records_by_id ON records(db, oid);"
        "CREATE INDEX IF NOT EXISTS records_by_sort0 ON records(db, m0, k0, oid);"
        "CREATE INDEX IF NOT EXISTS records_by_sort1 ON records(db, m1, k1, oid);"
        "CREATE INDEX IF NOT EXISTS records_by_sort2 ON records(db, m2, k2, oid);"
        "CREATE INDEX IF NOT EXISTS records_by_sort3 ON records(db, m3, k3, oid);"
        "PRAGMA application_id=" +
        std::to_string(kApplicationId) + ";PRAGMA user_version=" +
        std::to_string(kSchemaVersion) + ";COMMIT;";
    if (!Exec(schema.c_str())) {
      *error = sqlite3_errmsg(db_);
      Exec("ROLLBACK");
      return false;
    }
  }
  return true;
}

std::unique_ptr<DatabaseSearch> SqliteObjectStore::FindFirstDatabase(std::uint32_t type) {
  Statement st = Prepare("SELECT oid FROM databases WHERE ?1 = 0 OR type = ?1 ORDER BY oid");
  if (!st.ok()) {
    g_last_error = kErrorInternal;
    return nullptr;
  }
  st.Bind(1, type);
  std::vector<ObjectId> ids;
  int rc;
  while ((rc = st.Step()) == SQLITE_ROW) ids.push_back(static_cast<ObjectId>(st.Int(0)));
  if (rc != SQLITE_DONE) {
    g_last_error = SqliteError("find databases", rc);
    return nullptr;
  }
  g_last_error = kErrorSuccess;
  return std::make_unique<SqliteDatabaseSearch>(std::move(ids));
}

namespace {

std::string EncodeName(const std::u16string& name) {
  return std::string(reinterpret_cast<const char*>(name.data()), name.size() * 2);
}

std::u16string DecodeName(const std::string& bytes) {
  std::u16string name(bytes.size() / 2, u'\0');
  std::memcpy(name.data(), bytes.data(), name.size() * 2);
  return name;
}

std::string EncodeSortOrders(const std::vector<SortOrder>& orders) {
  std::string out;
  for (const SortOrder& o : orders) {
    out.append(reinterpret_cast<const char*>(&o.prop), 4);
    out.append(reinterpret_cast<const char*>(&o.flags), 4);
  }
  return out;
}

std::vector<SortOrder> DecodeSortOrders(const std::string& bytes) {
  std::vector<SortOrder> orders;
  for (std::size_t i = 0; i + 8 <= bytes.size() && orders.size() < kMaxSortOrders; i += 8) {
    SortOrder o;
    std::memcpy(&o.prop, bytes.data() + i, 4);
    std::memcpy(&o.flags, bytes.data() + i + 4, 4);
    orders.push_back(o);
  }
  return orders;
}

}  // namespace

bool SqliteObjectStore::ReadDatabaseColumn(ObjectId id, const char* column,
                                           std::string* bytes) {
  Statement st = Prepare(std::string("SELECT ") + column + " FROM databases WHERE oid = ?1");
  if (!st.ok()) {
    g_last_error = kErrorInternal;
    return false;
  }
  st.Bind(1, id);
  const int rc = st.Step();
  if (rc != SQLITE_ROW) {
    g_last_error = rc == SQLITE_DONE ? kErrorInvalidParameter : SqliteError("info", rc);
    return false;
  }
  *bytes = st.Blob(0);
  g_last_error = kErrorSuccess;
  return true;
}

bool SqliteObjectStore::GetDatabaseName(ObjectId id, std::u16string* name) {
  std::string bytes;
  if (!ReadDatabaseColumn(id, "name", &bytes)) return false;
  *name = DecodeName(bytes);
  return true;
}

bool SqliteObjectStore::GetDatabaseInfo(ObjectId id, DatabaseInfo* info) {
  Statement st = Prepare(
      "SELECT name, type, sort_orders, (SELECT count(*) FROM records WHERE db = ?1)"
      " FROM databases WHERE oid = ?1");
  if (!st.ok()) {
    g_last_error = kErrorInternal;
    return false;
  }
  st.Bind(1, id);
  const int rc = st.Step();
  if (rc != SQLITE_ROW) {
    g_last_error = rc == SQLITE_DONE ? kErrorInvalidParameter : SqliteError("info", rc);
    return false;
  }
  info->name = DecodeName(st.Blob(0));
  info->type = static_cast<std::uint32_t>(st.Int(1));
  info->sort_orders = DecodeSortOrders(st.Blob(2));
  info->record_count = static_cast<std::uint32_t>(st.Int(3));
  g_last_error = kErrorSuccess;
  return true;
}

ObjectId SqliteObjectStore::CreateDatabase(const DatabaseInfo& info) {
  if (info.name.empty() || info.name.size() > kMaxDatabaseName ||
      info.sort_orders.size() > kMaxSortOrders) {
    g_last_error = kErrorInvalidParameter;
    return 0;
  }
  for (const SortOrder& o : info.sort_orders) {
    if (!IsKnownPropType(PropTypeOf(o.prop))) {
      g_last_error = kErrorInvalidParameter;
      return 0;
    }
  }
  if (!BeginWrite()) {
    g_last_error = SqliteError("create database", sqlite3_errcode(db_));
    return 0;
  }
  ObjectId id = 0;
  std::uint32_t error = kErrorSuccess;
  {
    Statement find = Prepare("SELECT 1 FROM databases WHERE name = ?1");
    find.BindBlob(1, EncodeName(info.name));
    const int rc = find.Step();
    if (rc == SQLITE_ROW) {
      error = kErrorDupName;
    } else if (rc != SQLITE_DONE) {
      error = SqliteError("create database", rc);
    }
  }
  if (error == kErrorSuccess) {
    Statement insert =
        Prepare("INSERT INTO databases(name, type, sort_orders) VALUES(?1, ?2, ?3)");
    insert.BindBlob(1, EncodeName(info.name));
    insert.Bind(2, info.type);
    insert.BindBlob(3, EncodeSortOrders(info.sort_orders));
    const int rc = insert.Step();
    if (rc == SQLITE_DONE) {
      id = static_cast<ObjectId>(sqlite3_last_insert_rowid(db_));
    } else {
      error = SqliteError("create database", rc);
    }
  }
  if (error != kErrorSuccess || !CommitWrite()) {
    if (error == kErrorSuccess) error = SqliteError("create database", sqlite3_errcode(db_));
    RollbackWrite();
    g_last_error = error;
    return 0;
  }
  g_last_error = kErrorSuccess;
  return id;
}

bool SqliteObjectStore::SortOrdersOf(ObjectId db, std::vector<SortOrder>* orders) {
  auto it = sort_cache_.find(db);
  if (it != sort_cache_.end()) {
    *orders = it->second;
    return true;
  }
  // The sort orders alone: GetDatabaseInfo would also count the records,
  // a pass over the whole database on every open.
  std::string bytes;
  if (!ReadDatabaseColumn(db, "sort_orders", &bytes)) return false;
  *orders = DecodeSortOrders(bytes);
  sort_cache_[db] = *orders;
  return true;
}

std::unique_ptr<DatabaseHandle> SqliteObjectStore::OpenDatabase(
    ObjectId* id, const std::u16string& name, PropId sort_prop, std::uint32_t flags,
    const NotificationRequest* request) {
  (void)flags;
  if (*id == 0) {
    Statement find = Prepare("SELECT oid FROM databases WHERE name = ?1");
    find.BindBlob(1, EncodeName(name));
    const int rc = find.Step();
    if (rc != SQLITE_ROW) {
      g_last_error = rc == SQLITE_DONE ? kErrorFileNotFound : SqliteError("open", rc);
      return nullptr;
    }
    *id = static_cast<ObjectId>(find.Int(0));
  }
  std::vector<SortOrder> orders;
  if (!SortOrdersOf(*id, &orders)) {
    g_last_error = kErrorFileNotFound;
    return nullptr;
  }
  int slot = -1;
  if (sort_prop != 0) {
    for (std::size_t i = 0; i < orders.size(); ++i) {
      if (orders[i].prop == sort_prop) {
        slot = static_cast<int>(i);
        break;
      }
    }
    if (slot < 0) {
      g_last_error = kErrorInvalidParameter;
      return nullptr;
    }
  }
  std::optional<NotificationRequest> copy;
  if (request) copy = *request;
  g_last_error = kErrorSuccess;
  return std::make_unique<SqliteDatabaseHandle>(this, *id, sort_prop, slot, std::move(copy));
}

bool SqliteObjectStore::BeginBatch() {
  if (in_batch_ || !Exec("BEGIN IMMEDIATE")) return false;
  in_batch_ = true;
  return true;
}

bool SqliteObjectStore::CommitBatch() {
  if (!in_batch_) return false;
  in_batch_ = false;
  if (Exec("COMMIT")) return true;
  Exec("ROLLBACK");
  return false;
}

std::uint64_t SqliteObjectStore::ExternalChangeCounter() {
  Statement st = Prepare("PRAGMA data_version");
  if (!st.ok() || st.Step() != SQLITE_ROW) return 0;
  return static_cast<std::uint64_t>(st.Int(0));
}

SortKey SqliteObjectStore::KeyOfValue(const PropValue& v) const {
  SortKey key;
  key.missing = 0;
  const PropType type = PropTypeOf(v.id);
  switch (type) {
    case kPropString:
      key.value = collator_.Key(v.text);
      break;
    case kPropBlob:
      key.value = std::string(v.blob.begin(), v.blob.end());
      break;
    case kPropR8:
      key.value = v.real;
      break;
    default:
      key.value = static_cast<std::int64_t>(NormalizeNumber(type, v.number));
      break;
  }
  return key;
}

SortKey SqliteObjectStore::KeyOf(const PropList& props, PropId sort_prop) const {
  for (const PropValue& p : props) {
    if (p.id == sort_prop) return KeyOfValue(p);
  }
  return SortKey{};
}

ObjectId SqliteObjectStore::Write(SqliteDatabaseHandle* handle, ObjectId id,
                                  const PropList& values, Row* row) {
  for (const PropValue& v : values) {
    if (!IsKnownPropType(PropTypeOf(v.id))) {
      g_last_error = kErrorInvalidParameter;
      return 0;
    }
  }
  std::vector<SortOrder> orders;
  if (!SortOrdersOf(handle->database_id(), &orders)) return 0;
  if (!BeginWrite()) {
    g_last_error = SqliteError("write", sqlite3_errcode(db_));
    return 0;
  }
  std::uint32_t error = kErrorSuccess;
  const bool is_new = id == 0;
  PropList props;
  if (id != 0) {
    Statement read = Prepare("SELECT props FROM records WHERE oid = ?1 AND db = ?2");
    read.Bind(1, id);
    read.Bind(2, handle->database_id());
    const int rc = read.Step();
    if (rc == SQLITE_ROW) {
      if (!DecodeProps(read.Blob(0), &props)) error = kErrorInternal;
    } else {
      error = rc == SQLITE_DONE ? kErrorInvalidParameter : SqliteError("write", rc);
    }
  }
  if (error == kErrorSuccess) {
    for (const PropValue& v : values) {
      auto it = std::find_if(props.begin(), props.end(),
                             [&](const PropValue& p) { return p.id == v.id; });
      if (v.flags & kPropDelete) {
        if (it != props.end()) props.erase(it);
      } else if (it != props.end()) {
        *it = v;
        it->flags = 0;
      } else {
        props.push_back(v);
        props.back().flags = 0;
      }
    }
    if (props.size() > 0xFFFF) error = kErrorInvalidParameter;
  }
  SortKey keys[kMaxSortOrders];
  for (std::size_t i = 0; i < orders.size(); ++i) keys[i] = KeyOf(props, orders[i].prop);
  const std::string encoded = EncodeProps(props);
  if (error == kErrorSuccess) {
    Statement write = Prepare(
        is_new ? "INSERT INTO records(db, props, m0, k0, m1, k1, m2, k2, m3, k3)"
                  " VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10)"
                : "UPDATE records SET props = ?2, m0 = ?3, k0 = ?4, m1 = ?5, k1 = ?6,"
                  " m2 = ?7, k2 = ?8, m3 = ?9, k3 = ?10 WHERE oid = ?11 AND db = ?1");
    write.Bind(1, handle->database_id());
    write.BindBlob(2, encoded);
    for (std::size_t i = 0; i < kMaxSortOrders; ++i) {
      write.Bind(static_cast<int>(3 + 2 * i), keys[i].missing);
      write.BindKey(static_cast<int>(4 + 2 * i), keys[i]);
    }
    if (!is_new) write.Bind(11, id);
    const int rc = write.Step();
    if (rc != SQLITE_DONE) {
      error = SqliteError("write", rc);
    } else if (is_new) {
      const sqlite3_int64 new_id = sqlite3_last_insert_rowid(db_);
      if (new_id <= 0 || new_id > 0xFFFFFFFFll) {
        error = kErrorInvalidParameter;
      } else {
        id = static_cast<ObjectId>(new_id);
      }
    }
  }
  if (error != kErrorSuccess || !CommitWrite()) {
    if (error == kErrorSuccess) error = SqliteError("commit", sqlite3_errcode(db_));
    RollbackWrite();
    g_last_error = error;
    return 0;
  }
  ++generation_;
  row->oid = id;
  row->key = handle->slot() < 0 ? SortKey{0, std::int64_t{0}} : keys[handle->slot()];
  row->props = encoded;
  g_last_error = kErrorSuccess;
  Notify({is_new ? ChangeKind::kCreated : ChangeKind::kChanged,
          handle->database_id(), id});
  return id;
}

bool SqliteObjectStore::Delete(SqliteDatabaseHandle* handle, ObjectId id) {
  Statement del = Prepare("DELETE FROM records WHERE oid = ?1 AND db = ?2");
  del.Bind(1, id);
  del.Bind(2, handle->database_id());
  const int rc = del.Step();
  if (rc != SQLITE_DONE) {
    g_last_error = SqliteError("delete", rc);
    return false;
  }
  if (sqlite3_changes(db_) == 0) {
    g_last_error = kErrorInvalidParameter;
    return false;
  }
  ++generation_;
  g_last_error = kErrorSuccess;
  Notify({ChangeKind::kDeleted, handle->database_id(), id});
  return true;
}

void SqliteObjectStore::Notify(const StoreChange& change) {
  // Copied first: a callback may open or close handles.
  std::vector<std::function<void(const StoreChange&)>> callbacks;
  for (SqliteDatabaseHandle* h : handles_) {
    if (h->database_id() == change.database && h->request() && h->request()->notify) {
      callbacks.push_back(h->request()->notify);
    }
  }
  for (const auto& callback : callbacks) callback(change);
}

// --- a handle --------------------------------------------------------------

SqliteDatabaseHandle::SqliteDatabaseHandle(SqliteObjectStore* store, ObjectId db,
                                           PropId sort_prop, int slot,
                                           std::optional<NotificationRequest> request)
    : store_(store), db_(db), sort_prop_(sort_prop), slot_(slot),
      request_(std::move(request)) {
  store_->Register(this);
}

SqliteDatabaseHandle::~SqliteDatabaseHandle() { store_->Unregister(this); }

std::string SqliteDatabaseHandle::MissingColumn() const {
  return slot_ < 0 ? "0" : "m" + std::to_string(slot_);
}
std::string SqliteDatabaseHandle::KeyColumn() const {
  return slot_ < 0 ? "0" : "k" + std::to_string(slot_);
}
std::string SqliteDatabaseHandle::SelectColumns() const {
  return "SELECT oid, " + MissingColumn() + ", " + KeyColumn() + ", props FROM records ";
}

ObjectId SqliteDatabaseHandle::Land(const Row& row) {
  current_ = row;
  current_generation_ = store_->generation();
  on_record_ = true;
  has_position_ = true;
  g_last_error = kErrorSuccess;
  return row.oid;
}

ObjectId SqliteDatabaseHandle::Fail(std::uint32_t error) {
  on_record_ = false;
  has_position_ = false;
  ahead_.clear();
  g_last_error = error;
  return 0;
}

bool SqliteDatabaseHandle::FetchFrom(bool forward, std::int64_t limit,
                                     std::vector<Row>* rows) {
  std::string sql = SelectColumns() + "WHERE db = ?1 AND ";
  const char* cmp = forward ? ">" : "<";
  const char* dir = forward ? "" : " DESC";
  if (slot_ < 0) {
    sql += std::string("oid ") + cmp + " ?4 ORDER BY oid" + dir;
  } else {
    const std::string m = MissingColumn(), k = KeyColumn();
    sql += "(" + m + ", " + k + ", oid) " + cmp + " (?2, ?3, ?4) ORDER BY " + m + dir +
           ", " + k + dir + ", oid" + dir;
  }
  sql += " LIMIT ?5";
  Statement st = store_->Prepare(sql);
  if (!st.ok()) return false;
  st.Bind(1, db_);
  if (slot_ >= 0) {
    st.Bind(2, current_.key.missing);
    st.BindKey(3, current_.key);
  }
  st.Bind(4, current_.oid);
  st.Bind(5, limit);
  int rc;
  while ((rc = st.Step()) == SQLITE_ROW) {
    rows->push_back(Row{static_cast<ObjectId>(st.Int(0)), st.Key(1, 2), st.Blob(3)});
  }
  if (rc != SQLITE_DONE) {
    g_last_error = SqliteError("seek", rc);
    return false;
  }
  return true;
}

ObjectId SqliteDatabaseHandle::StepForward(std::int64_t count) {
  while (count > 0) {
    if (ahead_.empty() || ahead_generation_ != store_->generation()) {
      ahead_.clear();
      std::vector<Row> rows;
      if (!FetchFrom(true, std::max(batch_size_, count), &rows)) return Fail(g_last_error);
      if (rows.empty()) return Fail(kErrorNoMoreItems);
      batch_size_ = std::min<std::int64_t>(batch_size_ * 2, 1024);
      ahead_.assign(std::make_move_iterator(rows.begin()), std::make_move_iterator(rows.end()));
      ahead_generation_ = store_->generation();
    }
    current_ = std::move(ahead_.front());
    ahead_.pop_front();
    --count;
  }
  return Land(current_);
}

ObjectId SqliteDatabaseHandle::StepBackward(std::int64_t count) {
  ahead_.clear();
  std::vector<Row> rows;
  if (!FetchFrom(false, count, &rows)) return Fail(g_last_error);
  if (static_cast<std::int64_t>(rows.size()) < count) return Fail(kErrorNoMoreItems);
  return Land(rows.back());
}

ObjectId SqliteDatabaseHandle::Seek(SeekType type, std::int64_t offset_or_id) {
  switch (type) {
    case SeekType::kObjectId: {
      ahead_.clear();
      Statement st = store_->Prepare(SelectColumns() + "WHERE oid = ?1 AND db = ?2");
      st.Bind(1, offset_or_id);
      st.Bind(2, db_);
      const int rc = st.Step();
      if (rc != SQLITE_ROW) {
        return Fail(rc == SQLITE_DONE ? kErrorNoMoreItems : SqliteError("seek", rc));
      }
      return Land(Row{static_cast<ObjectId>(st.Int(0)), st.Key(1, 2), st.Blob(3)});
    }
    case SeekType::kBeginning:
    case SeekType::kEnd: {
      if (offset_or_id < 0) return Fail(kErrorInvalidParameter);
      ahead_.clear();
      const bool forward = type == SeekType::kBeginning;
      // Fetching from before the first record (or after the last).
      current_ = Row{};
      current_.key.missing = forward ? -1 : 2;
      current_.oid = forward ? 0 : 0xFFFFFFFFu;
      if (slot_ >= 0) current_.key.value = std::int64_t{forward ? INT64_MIN : INT64_MAX};
      if (forward) {
        batch_size_ = 8;
        return StepForward(offset_or_id + 1);
      }
      return StepBackward(offset_or_id + 1);
    }
    case SeekType::kCurrent:
      if (!has_position_) return Fail(kErrorNoMoreItems);
      if (offset_or_id == 0) {
        Statement st = store_->Prepare("SELECT 1 FROM records WHERE oid = ?1 AND db = ?2");
        st.Bind(1, current_.oid);
        st.Bind(2, db_);
        if (st.Step() != SQLITE_ROW) return Fail(kErrorNoMoreItems);
        return Land(current_);
      }
      return offset_or_id > 0 ? StepForward(offset_or_id) : StepBackward(-offset_or_id);
    case SeekType::kValueNextEqual: {
      if (!has_position_ || !last_value_ || slot_ < 0) return Fail(kErrorNoMoreItems);
      const SortKey wanted = *last_value_;
      const ObjectId id = StepForward(1);
      if (id == 0) return 0;
      if (!(current_.key == wanted)) return Fail(kErrorNoMoreItems);
      return id;
    }
    default:
      return Fail(kErrorInvalidParameter);
  }
}

ObjectId SqliteDatabaseHandle::SeekValue(SeekType type, const PropValue& value) {
  if (type == SeekType::kValueNextEqual) return Seek(type, 0);
  if (slot_ < 0 || value.id != sort_prop_) return Fail(kErrorInvalidParameter);
  const SortKey key = store_->KeyOfValue(value);
  last_value_ = key;
  ahead_.clear();
  batch_size_ = 8;
  const std::string m = MissingColumn(), k = KeyColumn();
  std::string where;
  bool descending = false;
  switch (type) {
    case SeekType::kValueFirstEqual:
      where = k + " = ?2";
      break;
    case SeekType::kValueGreater:
      where = k + " > ?2";
      break;
    case SeekType::kValueGreaterOrEqual:
      where = k + " >= ?2";
      break;
    case SeekType::kValueSmaller:
      where = k + " < ?2";
      descending = true;
      break;
    case SeekType::kValueSmallerOrEqual:
      where = k + " <= ?2";
      descending = true;
      break;
    default:
      return Fail(kErrorInvalidParameter);
  }
  const char* dir = descending ? " DESC" : "";
  Statement st = store_->Prepare(SelectColumns() + "WHERE db = ?1 AND " + m + " = 0 AND " +
                                 where + " ORDER BY " + m + dir + ", " + k + dir + ", oid" +
                                 dir + " LIMIT 1");
  if (!st.ok()) return Fail(kErrorInternal);
  st.Bind(1, db_);
  st.BindKey(2, key);
  const int rc = st.Step();
  if (rc != SQLITE_ROW) {
    return Fail(rc == SQLITE_DONE ? kErrorNoMoreItems : SqliteError("seek", rc));
  }
  return Land(Row{static_cast<ObjectId>(st.Int(0)), st.Key(1, 2), st.Blob(3)});
}

ObjectId SqliteDatabaseHandle::ReadProps(const std::vector<PropId>* wanted, PropList* out) {
  out->clear();
  if (!on_record_) {
    g_last_error = kErrorNoMoreItems;
    return 0;
  }
  if (current_generation_ != store_->generation()) {
    Statement st = store_->Prepare("SELECT props FROM records WHERE oid = ?1 AND db = ?2");
    st.Bind(1, current_.oid);
    st.Bind(2, db_);
    const int rc = st.Step();
    if (rc != SQLITE_ROW) {
      g_last_error = rc == SQLITE_DONE ? kErrorInvalidParameter : SqliteError("read", rc);
      return 0;
    }
    current_.props = st.Blob(0);
    current_generation_ = store_->generation();
  }
  PropList all;
  if (!DecodeProps(current_.props, wanted ? &all : out)) {
    out->clear();
    g_last_error = kErrorInternal;
    return 0;
  }
  if (wanted) {
    out->reserve(wanted->size());
    for (PropId id : *wanted) {
      auto it = std::find_if(all.begin(), all.end(),
                             [&](const PropValue& p) { return p.id == id; });
      if (it != all.end()) {
        out->push_back(std::move(*it));
      } else {
        PropValue missing;
        missing.id = id;
        missing.flags = kPropNotFound;
        out->push_back(std::move(missing));
      }
    }
  }
  g_last_error = kErrorSuccess;
  return current_.oid;
}

ObjectId SqliteDatabaseHandle::WriteProps(ObjectId id, const PropList& values) {
  Row row;
  const ObjectId written = store_->Write(this, id, values, &row);
  if (written == 0) return 0;
  ahead_.clear();
  return Land(row);
}

bool SqliteDatabaseHandle::DeleteRecord(ObjectId id) {
  if (!store_->Delete(this, id)) return false;
  if (on_record_ && current_.oid == id) on_record_ = false;
  return true;
}

}  // namespace

std::uint32_t GetLastStoreError() { return g_last_error; }
void SetLastStoreError(std::uint32_t error) { g_last_error = error; }

std::unique_ptr<ObjectStore> OpenSqliteObjectStore(const std::string& path,
                                                   std::string* error) {
  // A new volume file is created private to the user before SQLite sees it.
  const int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (fd < 0) {
    *error = "cannot open " + path;
    return nullptr;
  }
  ::close(fd);
  sqlite3* db = nullptr;
  const int rc = sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
  if (rc != SQLITE_OK) {
    *error = db ? sqlite3_errmsg(db) : "cannot open " + path;
    sqlite3_close_v2(db);
    return nullptr;
  }
  auto store = std::make_unique<SqliteObjectStore>(db);
  if (!store->Initialize(error)) return nullptr;
  return store;
}

}  // namespace quillora
