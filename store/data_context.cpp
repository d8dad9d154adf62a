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
  context->locale = Locale::FromEnvironment();
  return true;
}

bool OpenCatalogue(DataContext* context) {
  if (context->catalogue) return true;
  if (!context->volume) return false;
  auto catalogue = std::make_unique<Catalogue>(*context->volume, context->registry.get());
  if (!catalogue->Open()) return false;
  context->catalogue = std::move(catalogue);
  return true;
}

}  // namespace quillora
