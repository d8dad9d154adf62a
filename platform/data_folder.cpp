#include "platform/data_folder.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace quillora {

std::string ResolveDataFolder(const std::string& explicit_folder) {
  if (!explicit_folder.empty()) return explicit_folder;
  if (const char* dir = std::getenv("QUILLORA_DATA_DIR"); dir && *dir) return dir;
  if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg == '/') {
    return std::string(xdg) + "/quillora";
  }
  const char* home = std::getenv("HOME");
  if (!home || !*home) {
    const passwd* pw = getpwuid(getuid());
    home = pw ? pw->pw_dir : "/tmp";
  }
  return std::string(home) + "/.local/share/quillora";
}

bool PrepareDataFolder(const std::string& folder, std::string* error) {
  if (folder.empty()) {
    *error = "no data folder";
    return false;
  }
  // Create each missing component in turn; only what we create gets 0700.
  for (std::size_t pos = 1; pos <= folder.size(); ++pos) {
    if (pos != folder.size() && folder[pos] != '/') continue;
    const std::string part = folder.substr(0, pos);
    struct stat st {};
    if (stat(part.c_str(), &st) == 0) {
      if (!S_ISDIR(st.st_mode)) {
        *error = part + " is not a folder";
        return false;
      }
      continue;
    }
    if (mkdir(part.c_str(), 0700) != 0 && errno != EEXIST) {
      *error = part + ": " + std::strerror(errno);
      return false;
    }
  }
  if (access(folder.c_str(), R_OK | W_OK | X_OK) != 0) {
    *error = folder + ": " + std::strerror(errno);
    return false;
  }
  return true;
}

namespace {

// The path a write would land on: symbolic links followed, the last one
// even when it dangles, then made absolute and canonical as far as it exists.
std::filesystem::path WriteTarget(const std::string& path) {
  namespace fs = std::filesystem;
  std::error_code error;
  fs::path target = fs::absolute(path, error);
  if (error) return {};
  // A bounded chain, as the kernel bounds it (ELOOP).
  for (int hop = 0; hop < 40; ++hop) {
    const fs::file_status status = fs::symlink_status(target, error);
    if (error || !fs::is_symlink(status)) break;
    const fs::path link = fs::read_symlink(target, error);
    if (error) break;
    target = link.is_absolute() ? link : target.parent_path() / link;
  }
  fs::path canonical = fs::weakly_canonical(target, error);
  return error ? target.lexically_normal() : canonical;
}

}  // namespace

bool IsOwnDataFile(const std::string& folder, const std::string& path) {
  if (folder.empty() || path.empty()) return false;
  static constexpr const char* kNames[] = {kVolumeFileName, kRegistryFileName};
  static constexpr const char* kSuffixes[] = {"", "-wal", "-shm", "-journal"};
  struct stat written {};
  const bool exists = ::stat(path.c_str(), &written) == 0;
  const std::filesystem::path target = WriteTarget(path);
  for (const char* name : kNames) {
    for (const char* suffix : kSuffixes) {
      const std::string own = folder + "/" + name + suffix;
      struct stat st {};
      if (exists && ::stat(own.c_str(), &st) == 0 && st.st_dev == written.st_dev &&
          st.st_ino == written.st_ino) {
        return true;
      }
      if (!target.empty() && WriteTarget(own) == target) return true;
    }
  }
  return false;
}

}  // namespace quillora
