#include "interchange/catalogue_growth.h"

#include <array>
#include <utility>

#include "interchange/list_files.h"

namespace quillora {

CatalogueGrowth::CatalogueGrowth(Catalogue& catalogue, const Locale& locale)
    : catalogue_(catalogue), locale_(locale), aux_(catalogue.volume) {}

CatalogueGrowth::ClientNames* CatalogueGrowth::Find(const std::u16string& name) {
  auto it = clients_.find(name);
  if (it != clients_.end()) return it->second.get();
  Client client;
  std::unique_ptr<ClientNames> names;
  if (!name.empty() && FindClient(catalogue_.clients, name, &client)) {
    names = std::make_unique<ClientNames>();
    names->number = client.number;
  }
  return clients_.emplace(name, std::move(names)).first->second.get();
}

bool CatalogueGrowth::HasClient(const std::u16string& name) {
  return Find(name) != nullptr;
}

bool CatalogueGrowth::AddMissingClient(const std::u16string& name) {
  if (HasClient(name)) return true;
  clients_.erase(name);
  ListNameAdder(catalogue_, locale_, CatalogueList{ListKind::kClients}).Add(name);
  return HasClient(name);
}

bool CatalogueGrowth::Grow(const TimeEntry& entry) {
  if (ClientNames* client = Find(entry.client)) {
    if (!client->projects)
      client->projects.emplace(catalogue_.projects, locale_, client->number);
    client->projects->Add(entry.project, entry.task);
    if (entry.project.empty()) {
      if (!client->tasks)
        client->tasks.emplace(catalogue_.tasks, locale_, client->number);
      client->tasks->Add(entry.task);
    }
    if (!entry.billTo.empty()) {
      if (!client->contacts) {
        client->contacts.emplace(catalogue_.contacts, locale_, client->number);
      }
      client->contacts->Add(entry.billTo);
    }
  }
  if (!aux_open_) aux_open_ = aux_.Open();
  if (!aux_open_) return false;
  const std::array<EntryValue, 5> values = EntryValues(entry);
  for (std::size_t i = 0; i < std::size(values); ++i) {
    const auto& [kind, text] = values[i];
    if (text->empty()) continue;
    auto& have = values_[i];
    if (!have) {
      have.emplace(LocaleLess{&locale_});
      for (ValueItem& item : ValueList(aux_, kind)) have->insert(std::move(item.text));
    }
    if (have->count(*text) != 0) continue;
    AddValue(aux_, locale_, kind, *text);
    have->insert(*text);
  }
  return true;
}

}  // namespace quillora
