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
      {kIdsImportFailed,
       u"Unable to import data. Please close some applications and try again."},
      {kIdsListExportFailed, u"Unable to export the list."},
      {kIdsResetTimerQuestion, u"Are you sure to reset the timer?"},
      {kIdsContactsNotFound, u"Unable to open the contacts."},
      {kIdsCustom1Label, u"Custom 1"},
      {kIdsCustom2Label, u"Custom 2"},
      {kIdsCustom3Label, u"Custom 3"},
  };
  static const std::u16string kEmpty;
  auto it = kTable.find(id);
  return it == kTable.end() ? kEmpty : it->second;
}

}  // namespace quillora
