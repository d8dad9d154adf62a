#include "interchange/contacts_import.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "interchange/list_files.h"
#include "interchange/vcard.h"
#include "store/string_table.h"

namespace quillora {
namespace {

bool IsVCardFile(const std::filesystem::path& path) {
  std::string extension = path.extension().string();
  for (char& c : extension) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
  return extension == ".vcf";
}

}  // namespace

std::u16string DeviceContactsSource::DatabaseName() const {
  if (registry_ != nullptr) {
    RegistryKey key;
    std::u16string name;
    if (registry_->OpenKey(RegistryHive::kLocalMachine, kContactsRegistryKey, &key) ==
            0 &&
        ReadString(*registry_, key, kContactsRegistryValue, kContactsNameChars, &name) ==
            0) {
      return name;
    }
  }
  return kDefaultContactsDatabase;
}

ObjectId DeviceContactsSource::FindDatabase() const {
  const std::u16string wanted = DatabaseName();
  std::unique_ptr<DatabaseSearch> search = volume_.FindFirstDatabase(0);
  if (!search) return 0;
  std::u16string name;
  for (ObjectId id = search->Next(); id != 0; id = search->Next()) {
    if (volume_.GetDatabaseName(id, &name) && name == wanted) return id;
  }
  return 0;
}

bool DeviceContactsSource::ReadContacts(std::vector<ContactRow>* rows) {
  rows->clear();
  ObjectId id = FindDatabase();
  if (id == 0) return false;
  std::unique_ptr<DatabaseHandle> db = volume_.OpenDatabase(&id, u"", 0, 0, nullptr);
  if (!db) return false;
  const std::vector<PropId> wanted = {kPropContactFileAs, kPropContactCompany};
  PropList props;
  for (ObjectId record = db->Seek(SeekType::kBeginning, 0); record != 0;
       record = db->Seek(SeekType::kCurrent, 1)) {
    if (db->ReadProps(&wanted, &props) == 0 || props.size() != wanted.size()) break;
    ContactRow row;
    row.record_id = record;
    for (PropValue& value : props) {
      if (value.flags & kPropNotFound) continue;
      if (value.id == kPropContactFileAs)
        row.file_as = std::move(value.text);
      else if (value.id == kPropContactCompany)
        row.company = std::move(value.text);
    }
    rows->push_back(std::move(row));
  }
  return true;
}

bool VCardContactsSource::ReadContacts(std::vector<ContactRow>* rows) {
  rows->clear();
  std::error_code error;
  std::filesystem::directory_iterator it(folder_, error);
  if (error) return false;
  std::vector<std::filesystem::path> paths;
  for (; it != std::filesystem::directory_iterator(); it.increment(error)) {
    if (error) return false;
    std::error_code kind_error;
    if (IsVCardFile(it->path()) && !it->is_directory(kind_error)) {
      paths.push_back(it->path());
    }
  }
  // A folder lists in no particular order; file names give a stable one.
  std::sort(paths.begin(), paths.end());
  ObjectId number = 0;
  for (const std::filesystem::path& path : paths) {
    std::string bytes;
    if (!files_.ReadWholeFile(path.string(), &bytes, kVCardFileMaxBytes)) continue;
    for (VCard& card : ReadVCards(bytes)) {
      rows->push_back({++number, std::move(card.file_as), std::move(card.company)});
    }
  }
  return true;
}

void SortContactRows(const Locale& locale, std::vector<ContactRow>* rows) {
  std::stable_sort(rows->begin(), rows->end(),
                   [&](const ContactRow& a, const ContactRow& b) {
                     return locale.Compare(a.file_as, b.file_as) < 0;
                   });
}

bool ContactsDialog::Load(ContactsSource& source, const Locale& locale) {
  const bool read = source.ReadContacts(&rows_);
  SortContactRows(locale, &rows_);
  checked_.assign(rows_.size(), false);
  return read;
}

void ContactsDialog::SetChecked(std::size_t row, bool checked) {
  if (row < checked_.size()) checked_[row] = checked;
}

void ContactsDialog::CheckAll() { checked_.assign(rows_.size(), true); }

std::vector<std::u16string> ContactsDialog::CheckedNames() const {
  std::vector<std::u16string> names;
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    if (checked_[i]) names.push_back(rows_[i].file_as);
  }
  return names;
}

int AddContactNames(Catalogue& catalogue, const Locale& locale, ClientId client,
                    const std::vector<std::u16string>& names) {
  int added = 0;
  AddListNames(catalogue, locale, {ListKind::kContacts, client, {}}, names, &added);
  return added;
}

bool ImportContactNames(Catalogue& catalogue, const Locale& locale, ClientId client,
                        const std::vector<std::u16string>& names, UserPrompt& prompt) {
  for (const std::u16string& name : names) {
    if (HoldsControlCharacter(TextField::kContact, name)) {
      prompt.ShowMessage(kAppTitle, ControlCharacterMessage(TextField::kContact),
                         MessageIcon::kError);
      return false;
    }
  }
  int added = 0;
  if (AddListNames(catalogue, locale, {ListKind::kContacts, client, {}}, names, &added)) {
    return true;
  }
  prompt.ShowMessage(kAppTitle, LoadString(kIdsImportFailed), MessageIcon::kError);
  return false;
}

}  // namespace quillora
