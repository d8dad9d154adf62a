#include "app/gui/screenshots_catalogue.h"

#include <QApplication>
#include <QTreeWidget>

#include "app/gui/catalogue_dialog.h"
#include "app/gui/contacts_import_dialog.h"
#include "app/gui/import_dialog.h"
#include "app/gui/move_dialog.h"
#include "app/gui/rate_edit_dialog.h"
#include "app/gui/rate_setup_dialog.h"
#include "app/gui/screenshots_shot.h"
#include "tests/fake_prompt.h"

namespace quillora {
namespace {

class SampleContacts : public ContactsSource {
 public:
  bool ReadContacts(std::vector<ContactRow>* rows) override {
    *rows = {{1, u"Wilson, Grace", u"Northwind Traders"},
             {2, u"Adams, Sam", u"Acme Corp"},
             {3, u"Lopez, Maria", u"Globex"},
             {4, u"Brown, Lee", u""},
             {5, u"Chen, Wei", u"Initech"}};
    return true;
  }
};

void AddSampleCatalogue(DataContext& data) {
  Catalogue& c = *data.catalogue;
  const Locale& locale = *data.locale;
  const ClientId acme = AddClient(c.clients, u"Acme Corp");
  const ClientId northwind = AddClient(c.clients, u"Northwind");
  const ClientId globex = AddClient(c.clients, u"Globex");
  AddProject(c.projects, locale, acme, u"Website", u"");
  AddProject(c.projects, locale, acme, u"Website", u"Wireframes");
  AddProject(c.projects, locale, acme, u"Website", u"Client meeting");
  AddProject(c.projects, locale, acme, u"Mobile app", u"");
  AddProject(c.projects, locale, northwind, u"Data migration", u"Import scripts");
  AddItem(c.tasks, locale, acme, u"Phone support");
  AddItem(c.tasks, locale, acme, u"Invoicing");
  AddItem(c.tasks, locale, northwind, u"Internal planning");
  AddItem(c.contacts, locale, acme, u"Adams, Sam");
  AddItem(c.contacts, locale, globex, u"Lopez, Maria");
  AddRate(c.rates, 0, 95.0, 0, u"Consulting", false);
  AddRate(c.rates, 1, 142.5, 0, u"Consulting", false);
  AddRate(c.rates, 2, 190.0, 0, u"Consulting", false);
  AddRate(c.rates, 3, 500.0, acme, u"Website audit", false);
  AddRate(c.rates, 4, 10.0, acme, u"Loyalty", false);
  AddRate(c.rates, 0, 120.0, northwind, u"Data work", false);
}

}  // namespace

void ShootCatalogueDialogs(DataContext& data, const QString& out) {
  if (!data.catalogue) return;
  AddSampleCatalogue(data);
  testing::FakePrompt prompt;

  CatalogueDialog clients(data, prompt);
  clients.Select({"Acme Corp", "Projects", "Website", "Wireframes"});
  clients.Select({"Acme Corp", "Tasks"});
  clients.tree()->expandItem(clients.tree()->topLevelItem(0)->child(1));
  clients.Select({"Acme Corp", "Projects", "Website", "Wireframes"});
  ShootBoth(&clients, out, "catalogue", QSize(420, 520));

  ImportDialog import(CatalogueTreeItem(CatalogueTreeItem::Kind::kClient, 1));
  ShootBoth(&import, out, "catalogue-import", QSize(420, 300));

  SampleContacts source;
  ContactsDialog model;
  model.Load(source, *data.locale);
  model.SetChecked(0, true);
  model.SetChecked(2, true);
  ContactsImportDialog contacts(model);
  ShootBoth(&contacts, out, "catalogue-contacts", QSize(420, 360));

  const std::vector<Client> all = ClientList(data.catalogue->clients);
  const Client& acme = all[0];
  const std::vector<Client> others(all.begin() + 1, all.end());
  MoveDialog move(acme, others, ProjectsOf(data.catalogue->projects, *data.locale, 1),
                  ItemsOf(data.catalogue->tasks, 1), u"Website", 0);
  ShootBoth(&move, out, "catalogue-move", QSize(420, 480));

  RateSetupDialog rates(data, prompt);
  for (int i = 0; i < rates.tree()->topLevelItemCount(); ++i) {
    rates.tree()->topLevelItem(i)->setExpanded(true);
  }
  rates.Select(1, "Website audit (500.00)");
  ShootBoth(&rates, out, "rate-setup", QSize(420, 480));

  Rate rate = RatesOf(data.catalogue->rates, 0).front();
  CatalogueService catalogue(*data.catalogue, *data.locale, prompt);
  RateEditDialog edit(catalogue, rate);
  ShootBoth(&edit, out, "rate-edit", QSize(360, 220));
}

}  // namespace quillora
