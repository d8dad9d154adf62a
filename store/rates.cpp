#include "store/rates.h"

#include <charconv>
#include <cstdio>

#include "platform/text.h"
#include "store/catalogue.h"
#include "store/string_table.h"

namespace quillora {
namespace {

// Hundredths must fit the record's 32 bits.
constexpr double kRateLimit = 4294967296.0;

PropList RateProps(std::uint16_t type, std::uint32_t hundredths, ClientId client,
                   const std::u16string& description, bool flag) {
  return {PropValue::Number(kPropRateType, type),
          PropValue::Number(kPropRateValue, hundredths),
          PropValue::Number(kPropClientId, client),
          description.empty() ? PropValue::Delete(kPropRateDescription)
                              : PropValue::Text(kPropRateDescription, description),
          PropValue::Number(kPropRateFlag, flag ? 1 : 0)};
}

// The value in hundredths, truncated toward zero on purpose (1.15 gives 114);
// false when it does not fit.
bool Hundredths(double value, std::uint32_t* hundredths) {
  const double product = value * 100.0;
  if (!(product >= 0 && product < kRateLimit)) return false;
  *hundredths = static_cast<std::uint32_t>(product);
  return true;
}

bool IsBlank(char16_t c) { return c == u' ' || c == u'\t'; }

RateGroup GroupOf(RateStore& rates, std::u16string heading, ClientId client) {
  return {std::move(heading), client, RatesOf(rates, client)};
}

}  // namespace

ObjectId AddRate(RateStore& rates, std::uint16_t type, double value, ClientId client,
                 const std::u16string& description, bool flag) {
  std::uint32_t hundredths = 0;
  if (!Hundredths(value, &hundredths)) return 0;
  // A new record simply leaves out an empty description.
  return rates.WriteProps(0, RateProps(type, hundredths, client, description, flag));
}

ObjectId UpdateRate(RateStore& rates, std::uint16_t type, double value, ClientId client,
                    const std::u16string& description, bool flag) {
  std::uint32_t hundredths = 0;
  const ObjectId id = rates.current_record_id();
  if (id == 0 || !Hundredths(value, &hundredths)) return 0;
  return rates.WriteProps(id, RateProps(type, hundredths, client, description, flag));
}

int ReadRate(RateStore& rates, Rate* rate) {
  *rate = Rate{};
  PropList props;
  const ObjectId id = rates.ReadProps(nullptr, &props);
  if (id == 0) return GetLastStoreError() == kErrorNoMoreItems ? 1 : -1;
  rate->record_id = id;
  for (PropValue& v : props) {
    switch (v.id) {
      case kPropClientId:
        rate->client = static_cast<ClientId>(v.number);
        break;
      case kPropRateValue:
        rate->value = static_cast<std::uint32_t>(v.number);
        break;
      case kPropRateType:
        rate->type = static_cast<std::uint16_t>(v.number);
        break;
      case kPropRateDescription:
        rate->description = std::move(v.text);
        break;
      // Only a stored 1 is true.
      case kPropRateFlag:
        rate->flag = v.number == 1;
        break;
      default:
        break;
    }
  }
  return 0;
}

std::vector<Rate> RatesOf(RateStore& rates, ClientId client) {
  std::vector<Rate> list;
  const PropValue key = PropValue::Number(kPropClientId, client);
  Rate rate;
  for (ObjectId id = rates.SeekValue(SeekType::kValueFirstEqual, key); id != 0;
       id = rates.SeekValue(SeekType::kValueNextEqual, key)) {
    if (ReadRate(rates, &rate) == 0) list.push_back(std::move(rate));
  }
  return list;
}

bool DeleteRate(RateStore& rates, ObjectId record_id) {
  return rates.DeleteRecord(record_id);
}

const std::u16string& RateTypeName(std::uint16_t type) {
  static const std::u16string kNone;
  return type < kRateTypeCount ? LoadString(kIdsNormalRate + type) : kNone;
}

std::u16string RateLabel(const Rate& rate) {
  char number[64];
  std::snprintf(number, sizeof number, "%.02f", rate.value / 100.0);
  return rate.description + u" (" + WidenAscii(number) + u")";
}

RateTree SetupRateTree(RateStore& rates, ClientStore& clients) {
  RateTree tree;
  tree.groups.push_back(GroupOf(rates, LoadString(kIdsDefaultRates), 0));
  for (Client& client : ClientList(clients)) {
    tree.groups.push_back(GroupOf(rates, std::move(client.name), client.number));
  }
  return tree;
}

RateTree ChooserRateTree(RateStore& rates, ClientStore& clients,
                         const std::u16string& entry_client) {
  RateTree tree;
  tree.custom_rate = true;
  tree.groups.push_back(GroupOf(rates, LoadString(kIdsDefaultRates), 0));
  Client client;
  // A client numbered 0 would list the default rates a second time.
  if (!entry_client.empty() && FindClient(clients, entry_client, &client) &&
      client.number != 0) {
    tree.groups.push_back(GroupOf(rates, std::move(client.name), client.number));
  }
  return tree;
}

bool ParseRateText(const std::u16string& text, double* value) {
  std::size_t begin = 0, end = text.size();
  while (begin < end && IsBlank(text[begin])) ++begin;
  while (end > begin && IsBlank(text[end - 1])) --end;
  std::string narrow;
  int digits = 0, decimals = -1;  // -1: no point yet
  for (std::size_t i = begin; i < end; ++i) {
    const char16_t c = text[i];
    if (c == u'.' && decimals < 0) {
      decimals = 0;
    } else if (c >= u'0' && c <= u'9' && decimals < 2) {
      ++digits;
      if (decimals >= 0) ++decimals;
    } else {
      return false;
    }
    narrow += static_cast<char>(c);
  }
  if (digits == 0) return false;
  // from_chars reads like the C library's strtod, whatever locale is set.
  double parsed = 0;
  const auto [ptr, ec] =
      std::from_chars(narrow.data(), narrow.data() + narrow.size(), parsed);
  if (ec != std::errc() || ptr != narrow.data() + narrow.size()) return false;
  if (!(parsed * 100.0 < kRateLimit)) return false;
  *value = parsed;
  return true;
}

std::u16string CheckRate(RateStore& rates, const Locale& locale, const RateInput& input) {
  if (input.type < 0 || input.type >= kRateTypeCount)
    return LoadString(kIdsSelectRateType);
  if (input.description.empty()) return LoadString(kIdsEnterRateDescription);
  double value = 0;
  if (!ParseRateText(input.value_text, &value)) return LoadString(kIdsInvalidRate);
  for (const Rate& rate : RatesOf(rates, input.client)) {
    if (rate.record_id != input.record_id && rate.type == input.type &&
        locale.Equal(rate.description, input.description)) {
      return LoadString(kIdsDuplicateRate);
    }
  }
  return {};
}

}  // namespace quillora
