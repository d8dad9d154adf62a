// The saved reports: report definitions kept by name in "Quillora Data 2",
// and the report window's save, delete and rename commands over them.
#ifndef QUILLORA_REPORTS_SAVED_REPORTS_H_
#define QUILLORA_REPORTS_SAVED_REPORTS_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/object_store.h"
#include "platform/user_prompt.h"
#include "reports/report_definition.h"
#include "reports/report_editor.h"
#include "store/record_store.h"
#include "store/settings.h"

namespace quillora {

// Record kind (property 1102) of a saved report, and its block (1103).
inline constexpr std::uint16_t kSavedReportKind = 10;
inline constexpr PropId kPropReportDefinition = MakePropId(1103, kPropBlob);

// "Quillora Data 2" opened on the report name (1101), created with both sort
// orders when missing. False when it cannot be opened.
bool OpenSavedReports(AuxStore& aux);

struct SavedReportName {
  std::u16string name;
  ObjectId record_id = 0;
};

// The saved reports in name order (the store's order: alphabetical, letter
// case telling names apart). Empty when there are none or the walk fails.
std::vector<SavedReportName> ListSavedReports(AuxStore& aux);

enum class SavedReportLookup {
  kFound,
  kNoSavedReport,  // the store holds no saved report at all
  kNotFound,       // none of that name
  kDamaged,        // its block does not parse
};

// Finds the first saved report named exactly `name` in the store's order and
// reads its definition. `record_id` gets its record id whenever one is found
// (damaged too).
SavedReportLookup LoadSavedReport(AuxStore& aux, std::u16string_view name,
                                  ReportDefinition* definition, ObjectId* record_id);

// Writes a saved report record {1102 = 10, 1101 = name, 1103 = block} into
// record `record_id` (a new record when 0). The record id written, 0 on
// failure.
ObjectId WriteSavedReport(AuxStore& aux, ObjectId record_id, std::u16string_view name,
                          const ReportDefinition& definition);

// The report window's current report.
struct CurrentReport {
  std::u16string name;
  ObjectId record_id = 0;  // 0 while unsaved
  ReportDefinition definition;
};

enum class SaveReportResult {
  kSaved,
  kDeclined,  // No to the overwrite question: ask for the name again
  kFailed,    // the write failed; record_id is 0
};

// The save command once the name has been asked for ("Enter a name for the
// report:", at most 64 characters, starting from report->name). A name other
// than the current one becomes current and the report is saved as a new
// record. If the name seek of the saved-reports store reaches a saved report,
// "The report already exists. Do you want to overwrite it?" is asked (Yes/No,
// question icon). Then the definition is filled from the editor and written
// into the current record (or a new one); the id the write returns becomes
// current. The write never goes to the record that the question was about.
SaveReportResult SaveReport(ObjectStore& volume, UserPrompt& prompt,
                            std::u16string_view entered_name, const ReportEditor& editor,
                            CurrentReport* report);

// The name check of the save command on an open store: seek the last record
// whose name is smaller than or equal to `name`, then on to greater names
// until a saved report is reached. True when one is, whatever its name; the
// name is not compared again.
bool SaveNameSeekReachesReport(AuxStore& aux, std::u16string_view name);

enum class SavedReportChange {
  kDone,
  kNoSavedReport,
  kNotFound,
  kDeclined,  // No to the question of the change
  kFailed,
};

// Deletes every saved report named `name` once "Are you sure to permanently
// delete this item?" is answered Yes (warning icon, No by default). When the
// default report ("DefReport") named it, settings->default_report is emptied
// (the caller saves the settings).
SavedReportChange DeleteSavedReports(ObjectStore& volume, UserPrompt& prompt,
                                     std::u16string_view name, Settings* settings);

// Renames the saved reports named `old_name`. When others already bear
// `new_name`, "This report already exists. Do you wish to overwrite it?" is
// asked (Yes/No, question icon) and on Yes they are deleted first. A default
// report of the old name follows the rename.
SavedReportChange RenameSavedReports(ObjectStore& volume, UserPrompt& prompt,
                                     std::u16string_view old_name,
                                     std::u16string_view new_name, Settings* settings);

}  // namespace quillora

#endif  // QUILLORA_REPORTS_SAVED_REPORTS_H_
