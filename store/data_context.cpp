#include "store/data_context.h"

#include "platform/data_folder.h"
#include "platform/text.h"
#include "store/string_table.h"

namespace quillora {

bool OpenDataContext(const std::string& folder, DataContext* context, std::string* error) {
  if (!PrepareDataFolder(folder, error)) return false;
  context->folder = folder;
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

bool RefuseOwnDataFile(const std::string& folder, const std::string& path,
                       UserPrompt& prompt) {
  if (!IsOwnDataFile(folder, path)) return false;
  prompt.ShowMessage(
      kAppTitle,
      FromUtf8(path) + u" is one of Quillora's own data files; choose another file.",
      MessageIcon::kError);
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
