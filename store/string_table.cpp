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
      {kIdsTaskNameRequired,
       u"Please enter a task name.  You cannot have a blank Task field."},
      {kIdsSaveEntryFailed, u"Unable to save the time entry."},
      {kIdsGeneralPage, u"General"},
      {kIdsBillingPage, u"Billing"},
      {kIdsCustomFieldsPage, u"Custom Fields"},
      {kIdsNotesPage, u"Notes"},
      {kIdsEditInWordPrompt,
       u"When finished editing and saving the note in Pocket Word, tap OK to update "
       u"Quillora."},
      {kIdsExportNoteFailed,
       u"Export note failed. Please make sure there is enough storage space and try "
       u"again."},
      {kIdsCopyEntryTo, u"Copy entry to:"},
      {kIdsRestOfWeek, u"Rest of the week"},
      {kIdsSpecificEndDate, u"Specific end date:"},
      {kIdsIncludeWeekend, u"Include Weekend"},
      {kIdsSummaryPeriodType, u"Period Type:"},
      {kIdsSummaryPeriod, u"Period:"},
      {kIdsSummaryNumberOfItems, u"Number of Items:"},
      {kIdsSummaryTotal, u"Total"},
      {kIdsSummaryBillable, u"Billable"},
      {kIdsSummaryNonBillable, u"Non Billable"},
      {kIdsSummaryUnpaid, u"Unpaid"},
      {kIdsSummaryPaid, u"Paid"},
      {kIdsSummaryHours, u"Hours:"},
      {kIdsSummaryAmount, u"Amount:"},
      {kIdsSummaryCsvFilter, u"CSV Files (*.csv)|*.csv|"},
      {kIdsSummarySaveAsCsv, u"Save as CSV..."},
      {kIdsExportFailed,
       u"Export failed. Please make sure there is enough storage space and try agin."},
      {kIdsCustom1Label, u"Custom 1"},
      {kIdsCustom2Label, u"Custom 2"},
      {kIdsCustom3Label, u"Custom 3"},
  };
  static const std::u16string kEmpty;
  auto it = kTable.find(id);
  return it == kTable.end() ? kEmpty : it->second;
}

}  // namespace quillora
