// The catalogue grown by many entries at once (imports): what the entry
// editor's save does for one entry (GrowCatalogue), and the client added as a
// list import of clients adds one, with each client's names and each value
// list read once instead of once an entry.
#ifndef QUILLORA_INTERCHANGE_CATALOGUE_GROWTH_H_
#define QUILLORA_INTERCHANGE_CATALOGUE_GROWTH_H_

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "platform/locale.h"
#include "store/catalogue.h"
#include "store/time_entry.h"

namespace quillora {

class CatalogueGrowth {
 public:
  // The five catalogue stores must be open. Only this object may add to the
  // catalogue while it lives.
  CatalogueGrowth(Catalogue& catalogue, const Locale& locale);

  // True when the catalogue has a client named exactly `name`.
  bool HasClient(const std::u16string& name);
  // Adds the client when the catalogue lacks it, as the list import of
  // clients does (the next client number). False when it could not be added.
  bool AddMissingClient(const std::u16string& name);
  // GrowCatalogue for a saved entry: its project (with the task), its task
  // when there is no project, its bill-to, and its phase, currency and
  // custom texts in their value lists. False when "Quillora Data 2" cannot
  // be opened.
  bool Grow(const TimeEntry& entry);

 private:
  struct ClientNames {
    ClientId number = 0;
    std::optional<ProjectAdder> projects;
    std::optional<ItemAdder> tasks;
    std::optional<ItemAdder> contacts;
  };
  // The client's names, read when first asked for; null when the catalogue
  // has no such client.
  ClientNames* Find(const std::u16string& name);

  Catalogue& catalogue_;
  const Locale& locale_;
  std::map<std::u16string, std::unique_ptr<ClientNames>> clients_;
  AuxStore aux_;
  bool aux_open_ = false;
  std::array<std::optional<std::set<std::u16string, LocaleLess>>, 5> values_;
};

}  // namespace quillora

#endif  // QUILLORA_INTERCHANGE_CATALOGUE_GROWTH_H_
