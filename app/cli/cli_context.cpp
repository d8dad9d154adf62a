#include "app/cli/cli_context.h"

#include <cstdio>

#include "store/string_table.h"

namespace quillora {

bool CliContext::OpenData() {
  if (data.volume) return true;
  std::string error;
  if (!OpenDataContext(data_folder, &data, &error)) {
    prompt->ShowMessage(kAppTitle, LoadString(kIdsUnableToLoadDatabase),
                        MessageIcon::kError);
    std::fprintf(stderr, "quillora: %s\n", error.c_str());
    return false;
  }
  return true;
}

bool CliContext::OpenCatalogue() {
  if (!OpenData()) return false;
  if (quillora::OpenCatalogue(&data)) return true;
  prompt->ShowMessage(kAppTitle, LoadString(kIdsUnableToLoadDatabase),
                      MessageIcon::kError);
  return false;
}

CatalogueService* CliContext::OpenCatalogueService() {
  if (catalogue) return catalogue.get();
  if (!OpenCatalogue()) return nullptr;
  catalogue = std::make_unique<CatalogueService>(*data.catalogue, *data.locale, *prompt);
  return catalogue.get();
}

int CliContext::Fail(const std::u16string& text) {
  prompt->ShowMessage(kAppTitle, text, MessageIcon::kError);
  return kExitFailed;
}

int UsageError(const std::string& message) {
  std::fprintf(stderr, "quillora: %s\nTry 'quillora --help' for more information.\n",
               message.c_str());
  return kExitUsage;
}

int CheckPathArgument(const std::string& path, const char* what) {
  if (!path.empty()) return kExitDone;
  return UsageError(std::string(what) + " must not be an empty text");
}

}  // namespace quillora
