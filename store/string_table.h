// The program's string table: every fixed text that the logic shows, writes or
// names a database with, reached by its string id.
#ifndef QUILLORA_STORE_STRING_TABLE_H_
#define QUILLORA_STORE_STRING_TABLE_H_

#include <string>

namespace quillora {

// String ids. Add new texts here and in string_table.cpp.
enum StringId : int {
  kIdsClientsDatabase = 20,    // "Quillora Clients"
  kIdsEntriesDatabase = 43,    // "Quillora Data 1"
  kIdsProjectsDatabase = 44,   // "Quillora Projects"
  kIdsTasksDatabase = 45,      // "Quillora Tasks"
  kIdsContactsDatabase = 46,   // "Quillora Contacts"
  kIdsRatesDatabase = 47,      // "Quillora Rates"
  kIdsAuxDatabase = 48,        // "Quillora Data 2"
  kIdsNormalRate = 120,        // "Normal Rate" .. "Discount Rate" are 120..124
  kIdsOvertimeRate = 121,
  kIdsWeekendRate = 122,
  kIdsFixedRate = 123,
  kIdsDiscountRate = 124,
  // The catalogue.
  kIdsNewClient = 1300,             // "New Client"
  kIdsEnterClientName = 1301,       // "Enter Client Name:"
  kIdsEnterProjectName = 1302,
  kIdsEnterTaskName = 1303,
  kIdsEnterContactName = 1304,
  kIdsClientNameRequired = 1305,    // "Please enter a client name.  You cannot ..."
  kIdsDeleteItemQuestion = 1306,    // "Are you sure to permanently delete this item?"
  kIdsDeleteListQuestion = 1307,    // "Are you to delete the entire list?"
  kIdsMigrateProjects = 1308,       // "Check Projects to migrate:"
  kIdsMigrateTasks = 1309,
  kIdsDeleteClientQuestion = 1310,  // "This will also delete all associated ..."
  kIdsDeleteProjectQuestion = 1311, // "Are you sure to delete this project and ..."
  kIdsBlankName = 1312,             // "Please enter some text. Blank is not allowed."
  kIdsProjectsGroup = 1313,         // "Projects", "Tasks", "Contacts": tree groups
  kIdsTasksGroup = 1314,
  kIdsContactsGroup = 1315,
  // Rates.
  kIdsDefaultRates = 1400,          // "(Default Rates)"
  kIdsCustomRate = 1401,            // "(Custom Rate)"
  kIdsSelectRateType = 1402,        // "Please select a type."
  kIdsEnterRateDescription = 1403,  // "Please enter a description."
  kIdsInvalidRate = 1404,           // "This is not a valid rate. ..."
  kIdsDuplicateRate = 1405,         // "This type of rate with this description ..."
  // Backup, restore and archive.
  kIdsBackupInProgress = 2400,      // "Please wait while backup is in progress. ..."
  kIdsBackingUpRecord = 2401,       // "Backing up record %d..."
  kIdsBackupFailed = 2402,          // "Backup has failed. ..."
  kIdsRestoreInProgress = 2403,     // "Data restore is in progress. ..."
  kIdsRestoreFailed = 2404,         // "Restore has failed. ..."
  kIdsBackupNotSupported = 2405,    // "This backup file is not supported ..."
  kIdsBackupFilter = 2406,          // "Backup Files (*.qrd)|*.qrd|"
  kIdsArchiveFilter = 2407,         // "Archive Files (*.qra)|*.qra|"
  kIdsArchiveFailed = 2408,         // "Archive operation has failed. ..."
  kIdsArchiveRestored = 2409,       // "Archive file has been restored."
  kIdsArchiveCannotLoad = 2410,     // "Archive file cannot be loaded. ..."
  kIdsArchiveDataOnly = 2411,       // "Only Archive file with data can be restored."
  kIdsArchiveTypeData = 2412,       // "Data"
  kIdsArchiveTypeClientData = 2413, // "Client Data Only"
  kIdsArchiveDeleteBox = 2414,      // "Delete when archived"
  kIdsTypeLabel = 2415,             // "Type:"
  kIdsStartLabel = 2416,            // "Start:"
  kIdsEndLabel = 2417,              // "End:"
  kIdsClientsLabel = 2418,          // "Client(s):"
  // Bulk edits.
  kIdsReplaceTypeClient = 2430,     // "Client", "Project", "Phase", "Task",
  kIdsReplaceTypeProject = 2431,    // "Currency", "Bill To"; the custom types
  kIdsReplaceTypePhase = 2432,      // use the custom labels 5012..5014
  kIdsReplaceTypeTask = 2433,
  kIdsReplaceTypeCurrency = 2434,
  kIdsReplaceTypeBillTo = 2435,
  kIdsReplaceTypeProjectTask = 2436,  // "Project-Task"
  kIdsFindLabel = 2437,             // "Find:"
  kIdsReplaceWithLabel = 2438,      // "Replace With:"
  kIdsSelectFindText = 2439,        // "Please select a string to search for."
  kIdsEnterReplaceText = 2440,      // "Please enter a string to replace with."
  kIdsReplaceQuestion = 2441,       // "Are you sure to replace the text? ..."
  kIdsUpdatingRecords = 2442,       // "Updating Records. Please Wait..."
  kIdsMarkPaidQuestion = 2443,      // "Do you want to mark all entries paid ..."
  kIdsDeleteDataQuestion = 2444,    // "All data within the selected criteria ..."
  kIdsCustom1Label = 5012,     // "Custom 1"
  kIdsCustom2Label = 5013,
  kIdsCustom3Label = 5014,
};

// The text of a string id; empty for an id the table does not hold.
const std::u16string& LoadString(int id);

// The title of every message box.
inline constexpr char16_t kAppTitle[] = u"Quillora";

}  // namespace quillora

#endif  // QUILLORA_STORE_STRING_TABLE_H_
