#include "store/data_context.h"

#include "platform/data_folder.h"

namespace quillora {

bool OpenDataContext(const std::string& folder, DataContext* context, std::string* error) {
  if (!PrepareDataFolder(folder, error)) return false;
  context->volume = OpenSqliteObjectStore(folder + "/" + kVolumeFileName, error);
  if (!context->volume) return false;
  context->registry = OpenSqliteRegistry(folder + "/" + kRegistryFileName, error);
  if (!context->registry) {
    context->volume.reset();
    return false;
  }
  LoadSettings(*context->registry, &context->settings);
  return true;
}

}  // namespace quillora
