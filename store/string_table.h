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
  kIdsUnableToLoadDatabase = 49,  // "Unable to load database."
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
  // The catalogue's refusals and failures ("%s" is the name given).
  kIdsNoClientNamed = 1316,         // "There is no client named "%s"."
  kIdsClientExists = 1317,          // "A client named "%s" already exists."
  kIdsProjectExists = 1318,         // "This project already exists for this client."
  kIdsProjectTaskExists = 1319,     // "This task already exists in this project."
  kIdsTaskExists = 1320,            // "This task already exists for this client."
  kIdsContactExists = 1321,         // "This contact already exists for this client."
  kIdsNoProjectNamed = 1322,        // "There is no project named "%s" for this client."
  kIdsNoProjectTaskNamed = 1323,    // "There is no task named "%s" in this project."
  kIdsNoTaskNamed = 1324,           // "There is no task named "%s" for this client."
  kIdsNoContactNamed = 1325,        // "There is no contact named "%s" for this client."
  kIdsValueInList = 1326,           // ""%s" is already in the list."
  kIdsValueNotInList = 1327,        // ""%s" is not in the list."
  kIdsSaveClientFailed = 1328,      // "Unable to save the client."
  kIdsDeleteClientFailed = 1329,    // "Unable to delete the client."
  kIdsSaveProjectFailed = 1330,     // "Unable to save the project."
  kIdsDeleteProjectFailed = 1331,   // "Unable to delete the project."
  kIdsSaveTaskFailed = 1332,        // "Unable to save the task."
  kIdsSaveContactFailed = 1333,     // "Unable to save the contact."
  kIdsSaveValueFailed = 1334,       // "Unable to save the item."
  // Rates.
  kIdsDefaultRates = 1400,          // "(Default Rates)"
  kIdsCustomRate = 1401,            // "(Custom Rate)"
  kIdsSelectRateType = 1402,        // "Please select a type."
  kIdsEnterRateDescription = 1403,  // "Please enter a description."
  kIdsInvalidRate = 1404,           // "This is not a valid rate. ..."
  kIdsDuplicateRate = 1405,         // "This type of rate with this description ..."
  kIdsNoSuchRate = 1406,            // "There is no such rate for this client."
  kIdsSaveRateFailed = 1407,        // "Unable to save the rate."
  kIdsDeleteRateFailed = 1408,      // "Unable to delete the rate."
  // The entry editor and copy entry.
  kIdsTaskNameRequired = 2000,   // "Please enter a task name.  You cannot have ..."
  kIdsSaveEntryFailed = 2001,    // "Unable to save the time entry."
  kIdsGeneralPage = 2002,        // "General", "Billing", "Custom Fields", "Notes"
  kIdsBillingPage = 2003,
  kIdsCustomFieldsPage = 2004,
  kIdsNotesPage = 2005,
  kIdsEditInWordPrompt = 2006,   // "When finished editing and saving the note ..."
  kIdsExportNoteFailed = 2007,   // "Export note failed. ..."
  kIdsCopyEntryTo = 2008,        // "Copy entry to:"
  kIdsRestOfWeek = 2009,         // "Rest of the week"
  kIdsSpecificEndDate = 2010,    // "Specific end date:"
  kIdsIncludeWeekend = 2011,     // "Include Weekend"
  // The quick summary.
  kIdsSummaryPeriodType = 2100,     // "Period Type:"
  kIdsSummaryPeriod = 2101,         // "Period:"
  kIdsSummaryNumberOfItems = 2102,  // "Number of Items:"
  kIdsSummaryTotal = 2103,          // "Total" (the heading adds ":")
  kIdsSummaryBillable = 2104,       // "Billable", "Non Billable", "Unpaid", "Paid":
  kIdsSummaryNonBillable = 2105,    //   each followed by " " and "Hours:"
  kIdsSummaryUnpaid = 2106,
  kIdsSummaryPaid = 2107,
  kIdsSummaryHours = 2108,          // "Hours:"
  kIdsSummaryAmount = 2109,         // "Amount:"
  kIdsSummaryCsvFilter = 2110,      // "CSV Files (*.csv)|*.csv|"
  kIdsSummarySaveAsCsv = 2111,      // "Save as CSV...": the dialog's command 40101
  // Exports.
  kIdsExportFailed = 2200,          // "Export failed. Please make sure there is ..."
  // Reports.
  kIdsEnterReportName = 2300,             // "Enter a name for the report:"
  kIdsReportExistsQuestion = 2301,        // "The report already exists. Do you want to ..."
  kIdsReportExistsRenameQuestion = 2302,  // "This report already exists. Do you wish to ..."
  kIdsNoSavedReport = 2303,               // "There is no saved report."
  kIdsReportGenerationFailed = 2304,      // "Report generation has failed."
  kIdsNoSavedReportNamed = 2305,          // "There is no saved report of that name."
  kIdsSavedReportDamaged = 2306,          // "The saved report is damaged and cannot be used."
  kIdsReportNotSaved = 2307,              // "The report could not be saved."
  kIdsReportTitleTooLong = 2308,          // "A report title holds at most 63 characters."
  kIdsReportNameTooLong = 2309,           // "A report name holds at most 64 characters."
  kIdsSavedReportsNotChanged = 2310,      // "The saved reports could not be changed."
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
  // List files, contacts import and the entry timers.
  kIdsImportFailed = 2500,          // "Unable to import data. Please close some ..."
  kIdsListExportFailed = 2501,      // "Unable to export the list."
  kIdsResetTimerQuestion = 2502,    // "Are you sure to reset the timer?"
  kIdsContactsNotFound = 2503,      // "Unable to open the contacts."
  kIdsCustom1Label = 5012,     // "Custom 1"
  kIdsCustom2Label = 5013,
  kIdsCustom3Label = 5014,
};

// The text of a string id; empty for an id the table does not hold.
const std::u16string& LoadString(int id);

// The text of `id` with its "%s" replaced by `text`.
std::u16string FormatString(int id, const std::u16string& text);

// The title of every message box.
inline constexpr char16_t kAppTitle[] = u"Quillora";

}  // namespace quillora

#endif  // QUILLORA_STORE_STRING_TABLE_H_
