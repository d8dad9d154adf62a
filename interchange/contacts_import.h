// The contacts import: people picked from a contacts source and added as
// bill-to contacts of one client, exactly as the lines of an imported
// contacts list.
//
// Two sources: the device-style contacts database of the object store, whose
// name the registry gives, and a folder of vCard files for a system without
// that database. The dialog shows the rows sorted by their file-as name.
#ifndef QUILLORA_INTERCHANGE_CONTACTS_IMPORT_H_
#define QUILLORA_INTERCHANGE_CONTACTS_IMPORT_H_

#include <cstddef>
#include <string>
#include <vector>

#include "platform/file.h"
#include "platform/locale.h"
#include "platform/object_store.h"
#include "platform/registry.h"
#include "store/catalogue.h"

namespace quillora {

// One row of the contacts dialog. `record_id` is the contact's object id in
// the contacts database (for vCards: the card's number, from 1, over the
// files in name order).
struct ContactRow {
  ObjectId record_id = 0;
  std::u16string file_as;
  std::u16string company;
  friend bool operator==(const ContactRow&, const ContactRow&) = default;
};

// Where contacts come from.
class ContactsSource {
 public:
  virtual ~ContactsSource() = default;
  // Every contact in the source's own order into *rows; false (no rows)
  // when the source cannot be opened.
  virtual bool ReadContacts(std::vector<ContactRow>* rows) = 0;
};

// The device contacts database: a record database of the object store.
inline constexpr char16_t kContactsRegistryKey[] = u"Explorer\\Database";
inline constexpr char16_t kContactsRegistryValue[] = u"ContactsDatabase";
inline constexpr char16_t kDefaultContactsDatabase[] = u"Contacts Database";
// The registry value is read into a buffer of this many characters.
inline constexpr std::size_t kContactsNameChars = 260;
// A vCard file larger than this is refused (skipped) before it is read: more
// than any real address book exports.
inline constexpr std::size_t kVCardFileMaxBytes = std::size_t{64} << 20;
// "File as" (0x4013, string) and PR_COMPANY_NAME.
inline constexpr PropId kPropContactFileAs = 0x4013001F;
inline constexpr PropId kPropContactCompany = 0x3A16001F;

class DeviceContactsSource : public ContactsSource {
 public:
  // `registry` may be null: the default name is used.
  DeviceContactsSource(ObjectStore& volume, Registry* registry)
      : volume_(volume), registry_(registry) {}

  // The configured name: the local machine's "Explorer\Database" value
  // "ContactsDatabase", or "Contacts Database" when it cannot be read (it is
  // missing, not a string, or longer than the buffer).
  std::u16string DatabaseName() const;
  // Enumerates the databases of the volume and compares each name with
  // DatabaseName() exactly; its object id, 0 when there is none.
  ObjectId FindDatabase() const;

  // Walks the database from its beginning one record at a time and reads
  // the two properties of each (a missing one is empty); stops at the first
  // record that cannot be read. False when there is no such database or it
  // cannot be opened.
  bool ReadContacts(std::vector<ContactRow>* rows) override;

 private:
  ObjectStore& volume_;
  Registry* registry_;
};

// The cards of every "*.vcf" file (any letter case) directly in a folder.
// A file that cannot be read and a card that cannot be filed are skipped.
class VCardContactsSource : public ContactsSource {
 public:
  VCardContactsSource(FileSystem& files, std::string folder)
      : files_(files), folder_(std::move(folder)) {}

  // False when the folder cannot be listed.
  bool ReadContacts(std::vector<ContactRow>* rows) override;

 private:
  FileSystem& files_;
  std::string folder_;
};

// The contacts dialog: "File As" and "Company" columns, check boxes, rows
// sorted ascending by the file-as name.
inline constexpr char16_t kFileAsColumn[] = u"File As";
inline constexpr char16_t kCompanyColumn[] = u"Company";
inline constexpr int kFileAsColumnWidth = 130;
inline constexpr int kCompanyColumnWidth = 140;

// The rows in the dialog's order: by file-as name with the locale
// comparison, rows of equal names in source order.
void SortContactRows(const Locale& locale, std::vector<ContactRow>* rows);

class ContactsDialog {
 public:
  // Reads the source and sorts its rows; every row starts unchecked. False
  // when the source cannot be opened (the dialog then has no rows).
  bool Load(ContactsSource& source, const Locale& locale);

  const std::vector<ContactRow>& rows() const { return rows_; }
  bool checked(std::size_t row) const { return row < checked_.size() && checked_[row]; }
  // Out-of-range rows are ignored.
  void SetChecked(std::size_t row, bool checked);
  void CheckAll();

  // OK: the file-as names of the checked rows, in row order.
  std::vector<std::u16string> CheckedNames() const;

 private:
  std::vector<ContactRow> rows_;
  std::vector<bool> checked_;
};

// Adds the names, in order, as bill-to contacts of `client` through the
// list import's kind 3 (cut at 128/127, a name the client has is not added
// again) with AddListNames; the number of contacts written (those committed
// before a store failure).
int AddContactNames(Catalogue& catalogue, const Locale& locale, ClientId client,
                    const std::vector<std::u16string>& names);

// The OK of the contacts dialog: AddContactNames, unless a name holds a
// control character (then ControlCharacterMessage for the contact name and
// nothing added). When the store fails part-way, shows "Unable to import
// data. Please close some applications and try again." (what was committed
// stays). False after either message.
bool ImportContactNames(Catalogue& catalogue, const Locale& locale, ClientId client,
                        const std::vector<std::u16string>& names, UserPrompt& prompt);

}  // namespace quillora

#endif  // QUILLORA_INTERCHANGE_CONTACTS_IMPORT_H_
