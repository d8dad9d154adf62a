#include "store/string_table.h"

#include <unordered_map>

namespace quillora {

const std::u16string& LoadString(int id) {
  static const std::unordered_map<int, std::u16string> kTable = {
      {kIdsClientsDatabase, u"Quillora Clients"},
      {kIdsEntriesDatabase, u"Quillora Data 1"},
      {kIdsProjectsDatabase, u"Quillora Projects"},
      {kIdsTasksDatabase, u"Quillora Tasks"},
      {kIdsContactsDatabase, u"Quillora Contacts"},
      {kIdsRatesDatabase, u"Quillora Rates"},
      {kIdsAuxDatabase, u"Quillora Data 2"},
      {kIdsNormalRate, u"Normal Rate"},
      {kIdsOvertimeRate, u"Overtime Rate"},
      {kIdsWeekendRate, u"Weekend Rate"},
      {kIdsFixedRate, u"Fixed Rate"},
      {kIdsDiscountRate, u"Discount Rate"},
      {kIdsNewClient, u"New Client"},
      {kIdsEnterClientName, u"Enter Client Name:"},
      {kIdsEnterProjectName, u"Enter Project Name:"},
      {kIdsEnterTaskName, u"Enter Task Name:"},
      {kIdsEnterContactName, u"Enter Contact Name:"},
      {kIdsClientNameRequired,
       u"Please enter a client name.  You cannot leave Client field blank."},
      {kIdsDeleteItemQuestion, u"Are you sure to permanently delete this item?"},
      {kIdsDeleteListQuestion, u"Are you to delete the entire list?"},
      {kIdsMigrateProjects, u"Check Projects to migrate:"},
      {kIdsMigrateTasks, u"Check Tasks to migrate:"},
      {kIdsDeleteClientQuestion,
       u"This will also delete all associated projects, tasks, contacts, and rates. "
       u"However, time entries are preserved. Are you sure?"},
      {kIdsDeleteProjectQuestion, u"Are you sure to delete this project and all its tasks?"},
      {kIdsBlankName, u"Please enter some text. Blank is not allowed."},
      {kIdsProjectsGroup, u"Projects"},
      {kIdsTasksGroup, u"Tasks"},
      {kIdsContactsGroup, u"Contacts"},
      {kIdsDefaultRates, u"(Default Rates)"},
      {kIdsCustomRate, u"(Custom Rate)"},
      {kIdsSelectRateType, u"Please select a type."},
      {kIdsEnterRateDescription, u"Please enter a description."},
      {kIdsInvalidRate, u"This is not a valid rate. Rate can have up to 2 decimal places."},
      {kIdsDuplicateRate,
       u"This type of rate with this description already exists for this client. "
       u"Please either choose a different type or alter the description."},
      {kIdsBackupInProgress,
       u"Please wait while backup is in progress. You must not turn off the Pocket PC. "
       u"This may take a few minutes."},
      {kIdsBackingUpRecord, u"Backing up record %d..."},
      {kIdsBackupFailed,
       u"Backup has failed. Please make sure you have enough space on the storage device."},
      {kIdsRestoreInProgress,
       u"Data restore is in progress. Please do not turn off the Pocket PC. Please wait..."},
      {kIdsRestoreFailed,
       u"Restore has failed. Please select a different backup and try again."},
      {kIdsBackupNotSupported,
       u"This backup file is not supported and cannot be used to restore data. Please "
       u"select a different backup file."},
      {kIdsBackupFilter, u"Backup Files (*.qrd)|*.qrd|"},
      {kIdsArchiveFilter, u"Archive Files (*.qra)|*.qra|"},
      {kIdsArchiveFailed,
       u"Archive operation has failed. Please make sure you have enough space on storage "
       u"device and try again."},
      {kIdsArchiveRestored, u"Archive file has been restored."},
      {kIdsArchiveCannotLoad,
       u"Archive file cannot be loaded. The file may be created by Quillora prior to "
       u"version 2.3."},
      {kIdsArchiveDataOnly, u"Only Archive file with data can be restored."},
      {kIdsArchiveTypeData, u"Data"},
      {kIdsArchiveTypeClientData, u"Client Data Only"},
      {kIdsArchiveDeleteBox, u"Delete when archived"},
      {kIdsTypeLabel, u"Type:"},
      {kIdsStartLabel, u"Start:"},
      {kIdsEndLabel, u"End:"},
      {kIdsClientsLabel, u"Client(s):"},
      {kIdsReplaceTypeClient, u"Client"},
      {kIdsReplaceTypeProject, u"Project"},
      {kIdsReplaceTypePhase, u"Phase"},
      {kIdsReplaceTypeTask, u"Task"},
      {kIdsReplaceTypeCurrency, u"Currency"},
      {kIdsReplaceTypeBillTo, u"Bill To"},
      {kIdsReplaceTypeProjectTask, u"Project-Task"},
      {kIdsFindLabel, u"Find:"},
      {kIdsReplaceWithLabel, u"Replace With:"},
      {kIdsSelectFindText, u"Please select a string to search for."},
      {kIdsEnterReplaceText, u"Please enter a string to replace with."},
      {kIdsReplaceQuestion,
       u"Are you sure to replace the text? Depending of the number of time entries, this "
       u"may take several minutes."},
      {kIdsUpdatingRecords, u"Updating Records. Please Wait..."},
      {kIdsMarkPaidQuestion,
       u"Do you want to mark all entries paid using the filter from the current view?"},
      {kIdsDeleteDataQuestion,
       u"All data within the selected criteria will be permanently deleted.  Tap OK to "
       u"delete or Cancel to cancel the operation."},
      {kIdsCustom1Label, u"Custom 1"},
      {kIdsCustom2Label, u"Custom 2"},
      {kIdsCustom3Label, u"Custom 3"},
  };
  static const std::u16string kEmpty;
  auto it = kTable.find(id);
  return it == kTable.end() ? kEmpty : it->second;
}

}  // namespace quillora
