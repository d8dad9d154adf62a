// The data the program works on, opened from one data folder: the record
// volume, the registry and the settings, loaded once.
#ifndef QUILLORA_STORE_DATA_CONTEXT_H_
#define QUILLORA_STORE_DATA_CONTEXT_H_

#include <memory>
#include <string>

#include "platform/object_store.h"
#include "platform/registry.h"
#include "store/settings.h"

namespace quillora {

struct DataContext {
  std::unique_ptr<ObjectStore> volume;
  std::unique_ptr<Registry> registry;
  Settings settings;
};

// Creates the folder when missing (0700), opens its volume and registry
// (created 0600 when missing) and loads the settings. False with a reason in
// `error` when any of them cannot be opened; a damaged file is left as it is.
bool OpenDataContext(const std::string& folder, DataContext* context, std::string* error);

}  // namespace quillora

#endif  // QUILLORA_STORE_DATA_CONTEXT_H_
