// The device registry: hives of keys addressed by backslash paths, each key
// holding named values of a type (DWORD, string, binary) and a byte payload.
//
// The calls mirror the device's RegCreateKeyExW, RegOpenKeyExW,
// RegQueryValueExW, RegSetValueExW, RegDeleteValueW and RegCloseKey and answer
// with the same error codes (0 on success). Key and value names compare
// without regard to letter case, as on the device; the case of a name's first
// writing is kept. The Linux store is a SQLite file of its own in the data
// folder (docs/registry.md); an in-memory instance serves the tests.
#ifndef QUILLORA_PLATFORM_REGISTRY_H_
#define QUILLORA_PLATFORM_REGISTRY_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/error_codes.h"

namespace quillora {

// Value types.
inline constexpr std::uint32_t kRegSz = 1;      // UTF-16 text with its terminator
inline constexpr std::uint32_t kRegBinary = 3;  // raw bytes
inline constexpr std::uint32_t kRegDword = 4;   // 32-bit little-endian number

enum class RegistryHive { kCurrentUser, kLocalMachine };

class Registry;

// An open key. Move-only; closes itself when it goes. A key must not outlive
// the registry that opened it.
class RegistryKey {
 public:
  RegistryKey() = default;
  ~RegistryKey() { Close(); }
  RegistryKey(RegistryKey&& other) noexcept;
  RegistryKey& operator=(RegistryKey&& other) noexcept;
  RegistryKey(const RegistryKey&) = delete;
  RegistryKey& operator=(const RegistryKey&) = delete;

  bool is_open() const { return registry_ != nullptr; }

  // RegCloseKey: 0, or kErrorInvalidHandle when the key is not open.
  long Close();

 private:
  friend class Registry;
  Registry* registry_ = nullptr;
  std::int64_t id_ = 0;
};

class Registry {
 public:
  virtual ~Registry() = default;

  // RegCreateKeyExW: opens the key at `path` under `hive` (e.g.
  // u"Software\\Quillora"), creating it and any missing parents. An empty path
  // is the hive itself; an empty component or one over 255 characters is
  // kErrorInvalidParameter. Replaces whatever `key` held.
  virtual long CreateKey(RegistryHive hive, std::u16string_view path,
                         RegistryKey* key) = 0;

  // RegOpenKeyExW: as CreateKey, but kErrorFileNotFound when the key is missing.
  virtual long OpenKey(RegistryHive hive, std::u16string_view path, RegistryKey* key) = 0;

  // RegQueryValueExW. `type`, `data` may be null. With `data` null, reports
  // the value's size in *size and succeeds. Otherwise *size is the buffer
  // size in bytes on entry and the value's size on return; when the value is
  // larger than the buffer the call fails with kErrorMoreData (*type and
  // *size still set, buffer contents unspecified). kErrorFileNotFound when
  // the value is missing; kErrorInvalidParameter when `data` is given
  // without `size`.
  virtual long QueryValue(const RegistryKey& key, std::u16string_view name,
                          std::uint32_t* type, void* data, std::uint32_t* size) = 0;

  // RegSetValueExW: stores `size` bytes of `data` as the value's payload and
  // type, replacing the old value. A string carries its terminator in `size`
  // (the caller's business, as on the device). The write is durable when the
  // call returns 0.
  virtual long SetValue(const RegistryKey& key, std::u16string_view name,
                        std::uint32_t type, const void* data, std::uint32_t size) = 0;

  // RegDeleteValueW: kErrorFileNotFound when the value is missing.
  virtual long DeleteValue(const RegistryKey& key, std::u16string_view name) = 0;

 protected:
  // Implementations hand out keys through these.
  static void BindKey(RegistryKey* key, Registry* owner, std::int64_t id);
  // kErrorInvalidHandle unless `key` is open on this registry; else 0 and *id.
  long KeyId(const RegistryKey& key, std::int64_t* id) const;
  // Called once when a key of this registry is closed.
  virtual void ReleaseKey(std::int64_t /*id*/) {}

 private:
  friend class RegistryKey;
};

// Opens (creating 0600 if missing) the registry file at `path`. A file that is
// not a registry of ours, damaged, or unreadable is refused: nothing is
// returned, *error (when given) says why, and the file is left untouched.
std::unique_ptr<Registry> OpenSqliteRegistry(const std::string& path, std::string* error);

// A fresh, empty registry that lives in memory only.
std::unique_ptr<Registry> OpenMemoryRegistry();

// Convenience calls over QueryValue / SetValue. Each returns the registry's
// error code, 0 on success, and leaves its output untouched on failure.

// A REG_DWORD value of exactly 4 bytes; kErrorUnsupportedType for any other.
long ReadDword(Registry& registry, const RegistryKey& key, std::u16string_view name,
               std::uint32_t* value);

// A REG_SZ value read into a buffer of `buffer_chars` UTF-16 units (the
// terminator included), as the device's fixed buffers did: kErrorMoreData
// when the stored value is larger. `buffer_chars` 0 reads the value whole.
// The text ends at the first terminator.
long ReadString(Registry& registry, const RegistryKey& key, std::u16string_view name,
                std::size_t buffer_chars, std::u16string* value);

// A REG_BINARY value of exactly `size` bytes; kErrorMoreData when larger,
// kErrorUnsupportedType for another type or a smaller size.
long ReadBinary(Registry& registry, const RegistryKey& key, std::u16string_view name,
                void* data, std::uint32_t size);

long WriteDword(Registry& registry, const RegistryKey& key, std::u16string_view name,
                std::uint32_t value);
// Writes the text and its terminator.
long WriteString(Registry& registry, const RegistryKey& key, std::u16string_view name,
                 std::u16string_view value);
long WriteBinary(Registry& registry, const RegistryKey& key, std::u16string_view name,
                 const void* data, std::uint32_t size);

}  // namespace quillora

#endif  // QUILLORA_PLATFORM_REGISTRY_H_
