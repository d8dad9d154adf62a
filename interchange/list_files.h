// Catalogue list files: plain text files of names, one a line, that the
// catalogue tree imports (clients, a client's projects, tasks or bill-to
// contacts) and exports (the names of one level of the tree).
//
// A list file is either in the ANSI code page of the locale or UTF-16LE
// starting with the byte order mark FF FE. Lines end with CR, LF or any run
// of them; empty lines are skipped.
#ifndef QUILLORA_INTERCHANGE_LIST_FILES_H_
#define QUILLORA_INTERCHANGE_LIST_FILES_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/file.h"
#include "platform/locale.h"
#include "platform/user_prompt.h"
#include "store/catalogue.h"

namespace quillora {

// The import kinds, by their index in the import dialog ("Select the type to
// import:").
enum class ListKind : int {
  kClients = 0,              // "Clients"
  kProjects = 1,             // "Projects for a selected client"
  kTasks = 2,                // "Tasks for a selected client or project"
  kContacts = 3,             // "Contacts (Bill To) for a selected client"
  kContactsApplication = 4,  // "Import contacts from Contacts Application"
};

// One list of the catalogue: the clients, or the projects, tasks or bill-to
// contacts of one client; tasks with a project are that project's tasks.
struct CatalogueList {
  CatalogueList() = default;
  CatalogueList(ListKind kind, ClientId client = 0, std::u16string project = {})
      : kind(kind), client(client), project(std::move(project)) {}

  ListKind kind = ListKind::kClients;
  ClientId client = 0;
  std::u16string project;  // kTasks only; empty: the client's own tasks
  friend bool operator==(const CatalogueList&, const CatalogueList&) = default;
};

// An item of the catalogue tree, as the selection when an import or export
// starts: a client, one of its groups "Projects", "Tasks", "Contacts", or an
// item in a group (a project, a project's task, a task, a contact).
struct CatalogueTreeItem {
  enum class Kind {
    kNone,  // nothing selected: the top of the tree
    kClient,
    kProjectsGroup,
    kProject,
    kProjectTask,
    kTasksGroup,
    kTask,
    kContactsGroup,
    kContact,
  };
  CatalogueTreeItem() = default;
  CatalogueTreeItem(Kind kind, ClientId client = 0, std::u16string project = {})
      : kind(kind), client(client), project(std::move(project)) {}

  Kind kind = Kind::kNone;
  ClientId client = 0;
  std::u16string project;  // kProject, kProjectTask
};

// The import dialog's choices, by kind.
inline constexpr const char16_t* kListKindLabels[] = {
    u"Clients", u"Projects for a selected client",
    u"Tasks for a selected client or project",
    u"Contacts (Bill To) for a selected client",
    u"Import contacts from Contacts Application"};
inline constexpr char16_t kSelectImportTypeLabel[] = u"Select the type to import:";

// The open dialog of the import and the save dialog of the export.
inline constexpr char16_t kListImportFilter[] = u"List File (*.txt)|*.txt|";
inline constexpr char16_t kListExportFilter[] =
    u"Text Files (*.txt)|*.txt|Unicode Text|*.txt|";
inline constexpr char16_t kListFileExtension[] = u"txt";

// A list file larger than this is refused before it is read: far more names
// than any real catalogue or address book holds.
inline constexpr std::size_t kListFileMaxBytes = std::size_t{64} << 20;

// A line longer than kListNameLimit characters becomes its first
// kListNameCut characters; a line of exactly kListNameLimit is kept whole.
inline constexpr std::size_t kListNameLimit = 128;
inline constexpr std::size_t kListNameCut = 127;

// The text of a list file: after FF FE the UTF-16LE units, otherwise the
// bytes converted from `code_page`. The text ends at the file's end or at its
// first zero character, whichever comes first. A narrow file starting with
// the UTF-8 mark EF BB BF is read as UTF-8. Nothing (the import fails)
// for a UTF-16 file whose first character after the mark is zero, such as a
// file holding only the mark.
std::optional<std::u16string> DecodeListFile(std::string_view bytes, int code_page);

// The names of a list text: split at CR and LF, runs of them being one
// break, no empty names; each name cut by the 128/127 rule.
std::vector<std::u16string> SplitListNames(std::u16string_view text);

// DecodeListFile then SplitListNames; false for an empty UTF-16 file.
bool ParseListFile(std::string_view bytes, int code_page,
                   std::vector<std::u16string>* names);

// Adds one name to `list` through the catalogue's own add operations:
// AddClient, AddProject (project with no task, or a project's task), AddItem
// on the tasks or contacts. The name is cut by the 128/127 rule first. True
// when a record was written; false when the catalogue refused it (empty, or
// already there) or the write failed. kContactsApplication adds nothing.
bool AddListName(Catalogue& catalogue, const Locale& locale, const CatalogueList& list,
                 std::u16string name);

// AddListName for many names into one list: the list's client's names are
// read once (ProjectAdder, ItemAdder), so N names cost O(N log N) instead of
// a walk of the client's records each. Only this adder may add to the list
// while it lives.
class ListNameAdder {
 public:
  ListNameAdder(Catalogue& catalogue, const Locale& locale, const CatalogueList& list);
  // AddListName's answer for `name`.
  bool Add(std::u16string name) { return AddName(std::move(name)) == kAdded; }

  enum Result { kAdded, kRefused, kWriteFailed };
  // Add, telling a name the catalogue refused (empty, already there) from a
  // write that the store failed (a full disk).
  Result AddName(std::u16string name);

 private:
  Catalogue& catalogue_;
  CatalogueList list_;
  std::optional<ProjectAdder> projects_;
  std::optional<ItemAdder> items_;
};

// Adds `names` to `list` in file order through one ListNameAdder, in store
// batches committed every kImportChunk names, and stops at the first add or
// commit that the store fails: the batches committed before stay. *added
// counts the records committed. False after such a failure.
inline constexpr int kImportChunk = 1024;
bool AddListNames(Catalogue& catalogue, const Locale& locale, const CatalogueList& list,
                  std::vector<std::u16string> names, int* added);

enum class ListImportResult {
  kImported,
  kUnreadable,        // the file cannot be read, is an empty UTF-16 file, or
                      // memory ran out
  kControlCharacter,  // a name holds a control character: nothing was added
  kWriteFailed,       // the store failed part-way (AddListNames)
};

// Imports the list file at `path` into `list`: reads it whole (the file is
// never changed; at most kListFileMaxBytes), splits it, refuses it whole when
// a name holds a control character, and adds every name through
// AddListNames. *added (optional) counts the records written.
ListImportResult ImportListFile(Catalogue& catalogue, const Locale& locale,
                                FileSystem& files, const std::string& path,
                                const CatalogueList& list, int* added = nullptr);

// The field that the names of `list` fill: client, project, task or contact.
TextField ListNameField(const CatalogueList& list);

// What the import and export commands of the tree came to.
enum class ListFileOutcome {
  kDone,
  kCancelled,  // the user cancelled the file dialog: nothing happened
  kFailed,     // the message was shown
};

// The import command of the catalogue tree for kinds 0 to 3: asks for the
// file ("List File (*.txt)|*.txt|", extension "txt", must exist, hide
// read-only) and imports it. On failure shows "Unable to import data.
// Please close some applications and try again." (kIdsImportFailed, error
// icon); for a name holding a control character ControlCharacterMessage of
// the list's field instead. *added (optional) as for ImportListFile.
ListFileOutcome RunListImport(Catalogue& catalogue, const Locale& locale,
                              FileSystem& files, UserPrompt& prompt,
                              const CatalogueList& list, int* added = nullptr);

// The list an import of `kind` goes to from the tree item selected: clients
// anywhere; projects and contacts of the selected item's client; tasks of
// the selected project (a project or one of its tasks selected), else of the
// client. Nothing when the kind needs a client and no item of a client is
// selected, and for kContactsApplication.
std::optional<CatalogueList> ImportListFor(ListKind kind,
                                           const CatalogueTreeItem& selected);

// The level that the list export writes from the tree item selected: the
// clients for nothing or a client selected; the group's list for a group;
// a project's tasks for a project that has tasks or a project's task; the
// client's projects for a project without tasks; the client's tasks for a
// task and its contacts for a contact.
CatalogueList ExportListFor(Catalogue& catalogue, const Locale& locale,
                            const CatalogueTreeItem& selected);

// The names of one level in tree order: clients by name, projects in the
// order of their first record, tasks and contacts in store order.
std::vector<std::u16string> ListNames(Catalogue& catalogue, const Locale& locale,
                                      const CatalogueList& list);

// The two ways a list is saved: the first filter choice writes ANSI text,
// "Unicode Text" UTF-16LE after the mark FF FE.
enum class ListFileFormat { kAnsi = 0, kUnicode = 1 };

// The text of an exported list: the names joined by CR LF, no break after
// the last.
std::u16string JoinListNames(const std::vector<std::u16string>& names);

// Writes `names` to `path` through the narrow text writer (replacing a file
// that is there). False when the file cannot be created or a write or the
// close fails; what was written stays.
bool WriteListFile(FileSystem& files, int code_page, const std::string& path,
                   const std::vector<std::u16string>& names, ListFileFormat format);

// The export command of the catalogue tree: asks for the file
// (kListExportFilter, extension "txt", overwrite prompt, hide read-only) and
// writes the names of `list` in `format`, the filter choice the user made.
// When the file cannot be written shows "Unable to export the list."
// (kIdsListExportFailed, error icon).
ListFileOutcome RunListExport(Catalogue& catalogue, const Locale& locale,
                              FileSystem& files, UserPrompt& prompt,
                              const CatalogueList& list, ListFileFormat format);

}  // namespace quillora

#endif  // QUILLORA_INTERCHANGE_LIST_FILES_H_
