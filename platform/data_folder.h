// The folder that holds the user's data: the record volume and the registry.
#ifndef QUILLORA_PLATFORM_DATA_FOLDER_H_
#define QUILLORA_PLATFORM_DATA_FOLDER_H_

#include <string>

namespace quillora {

// File names inside the data folder.
inline constexpr char kVolumeFileName[] = "quillora.db";
inline constexpr char kRegistryFileName[] = "registry.db";

// `explicit_folder` when given, else $QUILLORA_DATA_DIR, else
// $XDG_DATA_HOME/quillora, else ~/.local/share/quillora.
std::string ResolveDataFolder(const std::string& explicit_folder);

// Creates the folder (and its missing parents) private to the user (0700).
// False with a reason when it cannot be created or is not a folder.
bool PrepareDataFolder(const std::string& folder, std::string* error);

}  // namespace quillora

#endif  // QUILLORA_PLATFORM_DATA_FOLDER_H_
