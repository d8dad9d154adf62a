#include "platform/registry.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unicode/uchar.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <map>
#include <vector>

namespace quillora {

RegistryKey::RegistryKey(RegistryKey&& other) noexcept
    : registry_(other.registry_), id_(other.id_) {
  other.registry_ = nullptr;
}

RegistryKey& RegistryKey::operator=(RegistryKey&& other) noexcept {
  if (this != &other) {
    Close();
    registry_ = other.registry_;
    id_ = other.id_;
    other.registry_ = nullptr;
  }
  return *this;
}

long RegistryKey::Close() {
  if (registry_ == nullptr) return kErrorInvalidHandle;
  Registry* owner = registry_;
  registry_ = nullptr;
  owner->ReleaseKey(id_);
  return kErrorSuccess;
}

void Registry::BindKey(RegistryKey* key, Registry* owner, std::int64_t id) {
  key->Close();
  key->registry_ = owner;
  key->id_ = id;
}

long Registry::KeyId(const RegistryKey& key, std::int64_t* id) const {
  if (key.registry_ != this) return kErrorInvalidHandle;
  *id = key.id_;
  return kErrorSuccess;
}

namespace {

constexpr std::int64_t kCurrentUserRoot = 1;
constexpr std::int64_t kLocalMachineRoot = 2;
constexpr int kApplicationId = 0x51524547;  // "QREG"
constexpr int kSchemaVersion = 1;
constexpr int kBusyTimeoutMs = 10000;
constexpr std::size_t kMaxKeyNameChars = 255;

constexpr char kSchema[] = R"sql(
CREATE TABLE IF NOT EXISTS reg_key(
  id INTEGER PRIMARY KEY,
  parent INTEGER NOT NULL,
  name TEXT NOT NULL,
  folded BLOB NOT NULL,
  UNIQUE(parent, folded));
CREATE TABLE IF NOT EXISTS reg_value(
  key_id INTEGER NOT NULL,
  name TEXT NOT NULL,
  folded BLOB NOT NULL,
  type INTEGER NOT NULL,
  data BLOB NOT NULL,
  PRIMARY KEY(key_id, folded)) WITHOUT ROWID;
INSERT OR IGNORE INTO reg_key(id, parent, name, folded)
  VALUES(1, 0, 'HKEY_CURRENT_USER', x''), (2, 0, 'HKEY_LOCAL_MACHINE', x'');
)sql";

// The one place where SQLite's result codes become the registry's error codes.
long SqliteError(sqlite3* db, const char* context, int rc, std::string* message) {
  if (message != nullptr) {
    *message = std::string(context) + ": " +
               (db != nullptr ? sqlite3_errmsg(db) : sqlite3_errstr(rc));
  }
  switch (rc & 0xff) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
      return kErrorSuccess;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_FORMAT:
      return kErrorRegistryCorrupt;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return kErrorBusy;
    case SQLITE_NOMEM:
      return kErrorNotEnoughMemory;
    case SQLITE_FULL:
      return kErrorDiskFull;
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
      return kErrorAccessDenied;
    case SQLITE_TOOBIG:
    case SQLITE_RANGE:
    case SQLITE_MISUSE:
      return kErrorInvalidParameter;
    default:
      return kErrorRegistryIoFailed;
  }
}

// A prepared statement borrowed from the registry's cache: settings are read
// one value at a time, and preparing the same SQL for each value cost more
// than the reads. Released by a reset, so the next borrower starts clean.
class Statement {
 public:
  Statement(sqlite3_stmt* stmt, int rc) : stmt_(stmt), rc_(rc) {}
  ~Statement() {
    if (stmt_ == nullptr) return;  // prepare failed
    sqlite3_reset(stmt_);
    sqlite3_clear_bindings(stmt_);
  }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  // The first failure of prepare, bind or step; SQLITE_OK while all went well.
  int rc() const { return rc_; }
  void Bind(int index, std::int64_t value) {
    Keep(sqlite3_bind_int64(stmt_, index, value));
  }
  void Bind(int index, std::u16string_view text) {
    // The device's unnamed default value has an empty name, which a null
    // pointer would turn into NULL.
    Keep(sqlite3_bind_text16(stmt_, index, text.empty() ? u"" : text.data(),
                             static_cast<int>(text.size() * sizeof(char16_t)),
                             SQLITE_TRANSIENT));
  }
  void BindBlob(int index, const void* data, std::size_t size) {
    // A null pointer would bind NULL; an empty value is an empty blob.
    static const unsigned char kEmpty = 0;
    Keep(sqlite3_bind_blob64(stmt_, index, size == 0 ? &kEmpty : data, size,
                             SQLITE_TRANSIENT));
  }
  // True for a row; false at the end or on failure (see rc()).
  bool Step() {
    if (rc_ != SQLITE_OK) return false;
    int rc = sqlite3_step(stmt_);
    if (rc == SQLITE_ROW) return true;
    if (rc != SQLITE_DONE) rc_ = rc;
    return false;
  }
  sqlite3_stmt* get() { return stmt_; }

 private:
  void Keep(int rc) {
    if (rc_ == SQLITE_OK) rc_ = rc;
  }
  sqlite3_stmt* stmt_ = nullptr;
  int rc_ = SQLITE_OK;
};

// Key and value names are matched by their upper-cased UTF-16 units, kept as
// little-endian bytes so that the match never depends on SQLite's text
// conversions.
std::string FoldName(std::u16string_view name) {
  std::string out;
  out.reserve(name.size() * 2);
  for (char16_t unit : name) {
    UChar32 upper = u_toupper(unit);
    if (upper > 0xFFFF) upper = unit;
    out.push_back(static_cast<char>(upper & 0xFF));
    out.push_back(static_cast<char>(upper >> 8));
  }
  return out;
}

class SqliteRegistry : public Registry {
 public:
  explicit SqliteRegistry(sqlite3* db) : db_(db) {}
  ~SqliteRegistry() override {
    for (const auto& [sql, stmt] : statements_) sqlite3_finalize(stmt);
    sqlite3_close_v2(db_);
  }

  // Checks the file and readies it; false (with *error) when it cannot serve.
  bool Initialise(bool on_disk, const std::string& label, std::string* error);

  long CreateKey(RegistryHive hive, std::u16string_view path, RegistryKey* key) override {
    return ResolveKey(hive, path, /*create=*/true, key);
  }
  long OpenKey(RegistryHive hive, std::u16string_view path, RegistryKey* key) override {
    return ResolveKey(hive, path, /*create=*/false, key);
  }
  long QueryValue(const RegistryKey& key, std::u16string_view name, std::uint32_t* type,
                  void* data, std::uint32_t* size) override;
  long SetValue(const RegistryKey& key, std::u16string_view name, std::uint32_t type,
                const void* data, std::uint32_t size) override;
  long DeleteValue(const RegistryKey& key, std::u16string_view name) override;

 private:
  long ResolveKey(RegistryHive hive, std::u16string_view path, bool create,
                  RegistryKey* key);
  long Fail(const char* context, int rc) {
    return SqliteError(db_, context, rc, &last_error_);
  }
  int Exec(const char* sql) { return sqlite3_exec(db_, sql, nullptr, nullptr, nullptr); }
  // `sql` is a literal: the cache is keyed by its address.
  Statement Prepare(const char* sql) {
    sqlite3_stmt*& stmt = statements_[sql];
    int rc = SQLITE_OK;
    if (stmt == nullptr) {
      rc = sqlite3_prepare_v3(db_, sql, -1, SQLITE_PREPARE_PERSISTENT, &stmt, nullptr);
    }
    return Statement(stmt, rc);
  }

  sqlite3* db_;
  std::map<const char*, sqlite3_stmt*> statements_;
  std::string last_error_;
};

bool SqliteRegistry::Initialise(bool on_disk, const std::string& label,
                                std::string* error) {
  sqlite3_extended_result_codes(db_, 1);
  sqlite3_busy_timeout(db_, kBusyTimeoutMs);
  auto refuse = [&](const std::string& why) {
    *error = "The registry file " + label + " cannot be used: " + why;
    return false;
  };
  auto pragma_int = [&](const char* sql, std::int64_t* value) {
    Statement st = Prepare(sql);
    if (st.Step()) *value = sqlite3_column_int64(st.get(), 0);
    return st.rc() == SQLITE_OK;
  };
  // Only reads until the file is known to be ours and sound: a damaged or
  // foreign file is refused without a byte of it changed.
  std::int64_t app_id = 0, version = 0, objects = 0;
  if (!pragma_int("PRAGMA application_id", &app_id) ||
      !pragma_int("SELECT count(*) FROM sqlite_master", &objects) ||
      !pragma_int("PRAGMA user_version", &version)) {
    return refuse(sqlite3_errmsg(db_));
  }
  if (objects > 0 && app_id != kApplicationId) {
    return refuse("it is not a Quillora registry");
  }
  if (version > kSchemaVersion) {
    return refuse("it was written by a newer version of Quillora");
  }
  if (objects > 0) {
    Statement check = Prepare("PRAGMA quick_check");
    bool row = check.Step();
    if (check.rc() != SQLITE_OK) return refuse(sqlite3_errmsg(db_));
    const unsigned char* text = row ? sqlite3_column_text(check.get(), 0) : nullptr;
    if (text == nullptr || std::strcmp(reinterpret_cast<const char*>(text), "ok") != 0) {
      return refuse("the file is damaged");
    }
  }
  if (on_disk) {
    Statement wal = Prepare("PRAGMA journal_mode=WAL");
    bool row = wal.Step();
    const unsigned char* mode = row ? sqlite3_column_text(wal.get(), 0) : nullptr;
    if (wal.rc() != SQLITE_OK || mode == nullptr ||
        std::strcmp(reinterpret_cast<const char*>(mode), "wal") != 0) {
      return refuse("cannot switch it to write-ahead logging");
    }
    if (Exec("PRAGMA synchronous=FULL") != SQLITE_OK) return refuse(sqlite3_errmsg(db_));
  }
  if (objects == 0) {
    // Two processes may create the file at once; every statement here is
    // idempotent, and the immediate transaction makes the second one wait.
    std::string setup = std::string("BEGIN IMMEDIATE;") + kSchema +
                        "PRAGMA application_id=" + std::to_string(kApplicationId) +
                        ";PRAGMA user_version=" + std::to_string(kSchemaVersion) +
                        ";COMMIT;";
    if (Exec(setup.c_str()) != SQLITE_OK) {
      std::string why = sqlite3_errmsg(db_);
      Exec("ROLLBACK");
      return refuse(why);
    }
  }
  return true;
}

long SqliteRegistry::ResolveKey(RegistryHive hive, std::u16string_view path, bool create,
                                RegistryKey* key) {
  key->Close();
  std::vector<std::u16string_view> parts;
  if (!path.empty()) {
    std::size_t begin = 0;
    while (true) {
      std::size_t end = path.find(u'\\', begin);
      std::u16string_view part = path.substr(begin, end - begin);
      if (part.empty() || part.size() > kMaxKeyNameChars) return kErrorInvalidParameter;
      parts.push_back(part);
      if (end == std::u16string_view::npos) break;
      begin = end + 1;
    }
  }
  std::int64_t id =
      hive == RegistryHive::kCurrentUser ? kCurrentUserRoot : kLocalMachineRoot;
  if (create && !parts.empty()) {
    int rc = Exec("BEGIN IMMEDIATE");
    if (rc != SQLITE_OK) return Fail("begin create key", rc);
  }
  long result = kErrorSuccess;
  for (std::u16string_view part : parts) {
    std::string folded = FoldName(part);
    Statement find = Prepare("SELECT id FROM reg_key WHERE parent = ?1 AND folded = ?2");
    find.Bind(1, id);
    find.BindBlob(2, folded.data(), folded.size());
    if (find.Step()) {
      id = sqlite3_column_int64(find.get(), 0);
      continue;
    }
    if (find.rc() != SQLITE_OK) {
      result = Fail("find key", find.rc());
      break;
    }
    if (!create) {
      result = kErrorFileNotFound;
      break;
    }
    Statement add =
        Prepare("INSERT INTO reg_key(parent, name, folded) VALUES(?1, ?2, ?3)");
    add.Bind(1, id);
    add.Bind(2, part);
    add.BindBlob(3, folded.data(), folded.size());
    add.Step();
    if (add.rc() != SQLITE_OK) {
      result = Fail("create key", add.rc());
      break;
    }
    id = sqlite3_last_insert_rowid(db_);
  }
  if (create && !parts.empty()) {
    if (result == kErrorSuccess) {
      int rc = Exec("COMMIT");
      if (rc != SQLITE_OK) result = Fail("commit create key", rc);
    }
    if (result != kErrorSuccess) Exec("ROLLBACK");
  }
  if (result == kErrorSuccess) BindKey(key, this, id);
  return result;
}

long SqliteRegistry::QueryValue(const RegistryKey& key, std::u16string_view name,
                                std::uint32_t* type, void* data, std::uint32_t* size) {
  std::int64_t id = 0;
  if (long rc = KeyId(key, &id); rc != kErrorSuccess) return rc;
  if (data != nullptr && size == nullptr) return kErrorInvalidParameter;
  std::string folded = FoldName(name);
  Statement st =
      Prepare("SELECT type, data FROM reg_value WHERE key_id = ?1 AND folded = ?2");
  st.Bind(1, id);
  st.BindBlob(2, folded.data(), folded.size());
  if (!st.Step()) {
    return st.rc() == SQLITE_OK ? kErrorFileNotFound : Fail("query value", st.rc());
  }
  if (type != nullptr)
    *type = static_cast<std::uint32_t>(sqlite3_column_int64(st.get(), 0));
  const void* bytes = sqlite3_column_blob(st.get(), 1);
  auto length = static_cast<std::uint32_t>(sqlite3_column_bytes(st.get(), 1));
  if (data != nullptr) {
    if (length > *size) {
      *size = length;
      return kErrorMoreData;
    }
    if (length > 0) std::memcpy(data, bytes, length);
  }
  if (size != nullptr) *size = length;
  return kErrorSuccess;
}

long SqliteRegistry::SetValue(const RegistryKey& key, std::u16string_view name,
                              std::uint32_t type, const void* data, std::uint32_t size) {
  std::int64_t id = 0;
  if (long rc = KeyId(key, &id); rc != kErrorSuccess) return rc;
  if (data == nullptr && size > 0) return kErrorInvalidParameter;
  std::string folded = FoldName(name);
  // A value keeps the spelling of its first writing, as on the device.
  Statement st = Prepare(
      "INSERT INTO reg_value(key_id, name, folded, type, data) "
      "VALUES(?1, ?2, ?3, ?4, ?5) ON CONFLICT(key_id, folded) "
      "DO UPDATE SET type = excluded.type, data = excluded.data");
  st.Bind(1, id);
  st.Bind(2, name);
  st.BindBlob(3, folded.data(), folded.size());
  st.Bind(4, static_cast<std::int64_t>(type));
  st.BindBlob(5, data, size);
  st.Step();
  return st.rc() == SQLITE_OK ? kErrorSuccess : Fail("set value", st.rc());
}

long SqliteRegistry::DeleteValue(const RegistryKey& key, std::u16string_view name) {
  std::int64_t id = 0;
  if (long rc = KeyId(key, &id); rc != kErrorSuccess) return rc;
  std::string folded = FoldName(name);
  Statement st = Prepare("DELETE FROM reg_value WHERE key_id = ?1 AND folded = ?2");
  st.Bind(1, id);
  st.BindBlob(2, folded.data(), folded.size());
  st.Step();
  if (st.rc() != SQLITE_OK) return Fail("delete value", st.rc());
  return sqlite3_changes(db_) == 0 ? kErrorFileNotFound : kErrorSuccess;
}

}  // namespace

std::unique_ptr<Registry> OpenSqliteRegistry(const std::string& path,
                                             std::string* error) {
  std::string ignored;
  if (error == nullptr) error = &ignored;
  // Created here so that it is 0600 from the start (SQLite gives its journal
  // files the same mode); an existing file is neither truncated nor changed.
  int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (fd < 0) {
    *error = "The registry file " + path + " cannot be opened: " + std::strerror(errno);
    return nullptr;
  }
  ::close(fd);
  sqlite3* db = nullptr;
  int rc = sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                           nullptr);
  if (rc != SQLITE_OK) {
    SqliteError(db, ("The registry file " + path + " cannot be opened").c_str(), rc,
                error);
    sqlite3_close_v2(db);
    return nullptr;
  }
  auto registry = std::make_unique<SqliteRegistry>(db);
  if (!registry->Initialise(/*on_disk=*/true, path, error)) return nullptr;
  return registry;
}

std::unique_ptr<Registry> OpenMemoryRegistry() {
  sqlite3* db = nullptr;
  if (sqlite3_open_v2(":memory:", &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                      nullptr) != SQLITE_OK) {
    sqlite3_close_v2(db);
    return nullptr;
  }
  auto registry = std::make_unique<SqliteRegistry>(db);
  std::string error;
  if (!registry->Initialise(/*on_disk=*/false, ":memory:", &error)) return nullptr;
  return registry;
}

// ---- convenience calls ----------------------------------------------------

long ReadDword(Registry& registry, const RegistryKey& key, std::u16string_view name,
               std::uint32_t* value) {
  unsigned char bytes[4];
  std::uint32_t type = 0, size = sizeof bytes;
  long rc = registry.QueryValue(key, name, &type, bytes, &size);
  if (rc != kErrorSuccess && rc != kErrorMoreData) return rc;
  if (type != kRegDword || size != 4) return kErrorUnsupportedType;
  *value = std::uint32_t{bytes[0]} | std::uint32_t{bytes[1]} << 8 |
           std::uint32_t{bytes[2]} << 16 | std::uint32_t{bytes[3]} << 24;
  return kErrorSuccess;
}

long ReadString(Registry& registry, const RegistryKey& key, std::u16string_view name,
                std::size_t buffer_chars, std::u16string* value) {
  std::uint32_t type = 0, size = 0;
  if (buffer_chars == 0) {
    long rc = registry.QueryValue(key, name, &type, nullptr, &size);
    if (rc != kErrorSuccess) return rc;
  } else {
    size = static_cast<std::uint32_t>(buffer_chars * sizeof(char16_t));
  }
  std::vector<unsigned char> bytes(size);
  long rc = registry.QueryValue(key, name, &type, bytes.data(), &size);
  if (rc != kErrorSuccess && rc != kErrorMoreData) return rc;
  if (type != kRegSz) return kErrorUnsupportedType;
  if (rc != kErrorSuccess) return rc;
  std::u16string text;
  for (std::uint32_t i = 0; i + 1 < size; i += 2) {
    auto unit = static_cast<char16_t>(bytes[i] | bytes[i + 1] << 8);
    if (unit == u'\0') break;
    text.push_back(unit);
  }
  *value = std::move(text);
  return kErrorSuccess;
}

long ReadBinary(Registry& registry, const RegistryKey& key, std::u16string_view name,
                void* data, std::uint32_t size) {
  std::vector<unsigned char> bytes(size);
  std::uint32_t type = 0, got = size;
  long rc = registry.QueryValue(key, name, &type, bytes.data(), &got);
  if (rc != kErrorSuccess && rc != kErrorMoreData) return rc;
  if (type != kRegBinary) return kErrorUnsupportedType;
  if (rc != kErrorSuccess) return rc;
  if (got != size) return kErrorUnsupportedType;
  if (size > 0) std::memcpy(data, bytes.data(), size);
  return kErrorSuccess;
}

long WriteDword(Registry& registry, const RegistryKey& key, std::u16string_view name,
                std::uint32_t value) {
  const unsigned char bytes[4] = {
      static_cast<unsigned char>(value), static_cast<unsigned char>(value >> 8),
      static_cast<unsigned char>(value >> 16), static_cast<unsigned char>(value >> 24)};
  return registry.SetValue(key, name, kRegDword, bytes, sizeof bytes);
}

long WriteString(Registry& registry, const RegistryKey& key, std::u16string_view name,
                 std::u16string_view value) {
  std::vector<unsigned char> bytes;
  bytes.reserve((value.size() + 1) * 2);
  for (char16_t unit : value) {
    bytes.push_back(static_cast<unsigned char>(unit & 0xFF));
    bytes.push_back(static_cast<unsigned char>(unit >> 8));
  }
  bytes.push_back(0);
  bytes.push_back(0);
  return registry.SetValue(key, name, kRegSz, bytes.data(),
                           static_cast<std::uint32_t>(bytes.size()));
}

long WriteBinary(Registry& registry, const RegistryKey& key, std::u16string_view name,
                 const void* data, std::uint32_t size) {
  return registry.SetValue(key, name, kRegBinary, data, size);
}

}  // namespace quillora
