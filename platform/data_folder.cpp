#include "platform/data_folder.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace quillora {

std::string ResolveDataFolder(const std::string& explicit_folder) {
  if (!explicit_folder.empty()) return explicit_folder;
  if (const char* dir = std::getenv("QUILLORA_DATA_DIR"); dir && *dir) return dir;
  if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg) {
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

}  // namespace quillora
