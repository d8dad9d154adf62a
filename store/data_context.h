// The data the program works on, opened from one data folder: the record
// volume, the registry and the settings, loaded once.
#ifndef QUILLORA_STORE_DATA_CONTEXT_H_
#define QUILLORA_STORE_DATA_CONTEXT_H_

#include <memory>
#include <string>

#include "platform/locale.h"
#include "platform/object_store.h"
#include "platform/registry.h"
#include "platform/user_prompt.h"
#include "store/catalogue.h"
#include "store/settings.h"

namespace quillora {

struct DataContext {
  std::string folder;  // set by OpenDataContext
  std::unique_ptr<ObjectStore> volume;
  std::unique_ptr<Registry> registry;
  Settings settings;
  std::unique_ptr<Locale> locale;        // the user's locale profile
  std::unique_ptr<Catalogue> catalogue;  // set by OpenCatalogue
};

// Creates the folder when missing (0700), opens its volume and registry
// (created 0600 when missing), loads the settings and the locale. False with
// a reason in `error` when any of them cannot be opened; a damaged file is
// left as it is.
bool OpenDataContext(const std::string& folder, DataContext* context, std::string* error);

// The guard of every save chooser: when `path` is one of the data folder's
// own files (IsOwnDataFile), shows "Quillora: PATH is one of Quillora's own
// data files; choose another file." and answers true; nothing is written.
bool RefuseOwnDataFile(const std::string& folder, const std::string& path,
                       UserPrompt& prompt);

// Opens the five catalogue stores of an open context (once); false when one
// of them cannot be opened.
bool OpenCatalogue(DataContext* context);

}  // namespace quillora

#endif  // QUILLORA_STORE_DATA_CONTEXT_H_
