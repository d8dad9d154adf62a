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
      {kIdsCustom1Label, u"Custom 1"},
      {kIdsCustom2Label, u"Custom 2"},
      {kIdsCustom3Label, u"Custom 3"},
  };
  static const std::u16string kEmpty;
  auto it = kTable.find(id);
  return it == kTable.end() ? kEmpty : it->second;
}

}  // namespace quillora
