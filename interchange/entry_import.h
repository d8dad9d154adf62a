// Importing the entries read from another tracker's file (a Timewarrior
// export or a CSV export) into the entry store: each entry that passed the
// editor's checks is added unless one equal to it is stored already (same
// start, client, task and duration), the client is added to the catalogue
// first when it lacks it, and the catalogue grows as the editor's save makes
// it grow. Entries are committed in batches, as restore commits them.
#ifndef QUILLORA_INTERCHANGE_ENTRY_IMPORT_H_
#define QUILLORA_INTERCHANGE_ENTRY_IMPORT_H_

#include <array>
#include <string>
#include <vector>

#include "interchange/imported_entry.h"
#include "platform/file.h"
#include "platform/locale.h"
#include "platform/user_prompt.h"
#include "store/catalogue.h"
#include "store/record_store.h"

namespace quillora {

// The title of the import's progress.
inline constexpr char16_t kImportProgressTitle[] = u"Importing entries";

// A file given to the import cannot be read, or is larger than
// kImportFileLimit: the bytes are then empty. `path` "-" is not special here.
enum class ImportFileRead { kRead, kUnreadable, kTooLarge };
ImportFileRead ReadImportFile(FileSystem& files, const std::string& path,
                              std::string* bytes);
// The message for a file that could not be read ("Unable to read the file
// "PATH"." or "The file "PATH" is larger than 64 MB.").
std::u16string ImportFileReadMessage(ImportFileRead result, const std::u16string& path);
// The message for a malformed file: "The file "PATH" cannot be imported:
// line N: WHAT."
std::u16string MalformedImportMessage(const ImportedFile& file,
                                      const std::u16string& path);

struct ImportSkip {
  int line = 0;
  std::u16string reason;
};

struct ImportSummary {
  int imported = 0;  // added; in a dry run, would be added
  int present = 0;   // equal to an entry stored (or met earlier in the file)
  int skipped = 0;
  std::vector<ImportSkip> skips;          // every skipped row, in file order
  bool failed = false;                    // a write failed: the message was shown
  std::vector<std::size_t> would_import;  // dry run: the rows it would add
};

struct ImportTarget {
  EntryStore& entries;   // open
  Catalogue& catalogue;  // its five stores open
  const Locale& locale;
  UserPrompt& prompt;  // progress, and the message when a write fails
};

// Imports the rows of a file read without error. Progress goes to the
// prompt, one step a row. A dry run writes nothing and answers what an import
// would do now. When a write fails, "Unable to save the time entry." is
// shown, the import stops, and what was committed before stays.
ImportSummary ImportEntries(const ImportTarget& target,
                            const std::vector<ImportedEntry>& rows, bool dry_run);

// The lines that report an import: "Imported N entries; M already present;
// K skipped." ("Would import ..." for a dry run), then "line L: REASON" for
// the first 20 skipped rows and, when there were more, "... and N more
// skipped.".
std::vector<std::u16string> ImportSummaryLines(const ImportSummary& summary,
                                               bool dry_run);

// An entry as the import preview shows it: date "YYYY-MM-DD", start "HH:MM"
// (empty without a start time), client, project, task, duration "%.02f",
// the first line of the note.
std::array<std::u16string, 7> ImportPreviewCells(const TimeEntry& entry);
inline constexpr const char16_t* kImportPreviewHeadings[7] = {
    u"Date", u"Start", u"Client", u"Project", u"Task", u"Duration", u"Note"};

}  // namespace quillora

#endif  // QUILLORA_INTERCHANGE_ENTRY_IMPORT_H_
