// The folder that holds the user's data: the record volume and the registry.
#ifndef QUILLORA_PLATFORM_DATA_FOLDER_H_
#define QUILLORA_PLATFORM_DATA_FOLDER_H_

#include <string>

namespace quillora {

// File names inside the data folder.
inline constexpr char kVolumeFileName[] = "quillora.db";
inline constexpr char kRegistryFileName[] = "registry.db";

// `explicit_folder` when given, else $QUILLORA_DATA_DIR, else
// $XDG_DATA_HOME/quillora, else ~/.local/share/quillora. A relative
// $XDG_DATA_HOME is ignored, as the XDG base directory rules say.
std::string ResolveDataFolder(const std::string& explicit_folder);

// Creates the folder (and its missing parents) private to the user (0700).
// False with a reason when it cannot be created or is not a folder.
bool PrepareDataFolder(const std::string& folder, std::string* error);

// True when writing `path` would write over one of the data folder's own
// files: the volume, the registry, or the -wal, -shm and -journal files of
// either. Symbolic links are followed (a dangling one to where such a file
// would be counts too), and an existing file is compared by device and inode,
// so a hard link is found as well. Every writer of a user-chosen file asks
// this before it creates the file.
bool IsOwnDataFile(const std::string& folder, const std::string& path);

}  // namespace quillora

#endif  // QUILLORA_PLATFORM_DATA_FOLDER_H_
