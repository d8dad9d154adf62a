// Rates in "Quillora Rates": named charge rates of one client, or default
// rates (client number 0) that apply to every client. An entry copies a
// rate's value and type; it never links to the rate record.
#ifndef QUILLORA_STORE_RATES_H_
#define QUILLORA_STORE_RATES_H_

#include <cstdint>
#include <string>
#include <vector>

#include "platform/locale.h"
#include "store/client_store.h"
#include "store/record_store.h"

namespace quillora {

// Properties of a rate record (1102 rate type, 1008 value, 1201 client).
inline constexpr PropId kPropRateType = kPropListKind;
inline constexpr PropId kPropRateDescription = MakePropId(1202, kPropString);
inline constexpr PropId kPropRateFlag = MakePropId(1203, kPropBool);

inline constexpr int kRateTypeCount = 5;  // "Normal Rate" .. "Discount Rate"

struct Rate {
  ObjectId record_id = 0;
  ClientId client = 0;
  std::u16string description;
  std::uint16_t type = 0;   // RateType
  std::uint32_t value = 0;  // hundredths of the currency unit
  bool flag = false;
  friend bool operator==(const Rate&, const Rate&) = default;
};

// Writes a new rate {1102 type, 1008 value, 1201 client, 1202 description,
// 1203 flag}. The value is stored as value × 100.0 truncated toward zero: the
// caller checks the text first (ParseRateText), and 1.15 is stored as 114,
// as the device did. The record id, 0 when the write fails or the value does
// not fit in 32 bits.
ObjectId AddRate(RateStore& rates, std::uint16_t type, double value, ClientId client,
                 const std::u16string& description, bool flag);
// Rewrites the five properties of the store's current record (an empty
// description removes 1202). The record id, 0 on failure.
ObjectId UpdateRate(RateStore& rates, std::uint16_t type, double value, ClientId client,
                    const std::u16string& description, bool flag);
// Reads the current record; unlike the other readers it goes by the read's
// own result: 0 read, 1 when the read failed at the end of the records
// (last error 259), -1 on any other failure.
int ReadRate(RateStore& rates, Rate* rate);
// The rates of one client (0: the default rates) in store order.
std::vector<Rate> RatesOf(RateStore& rates, ClientId client);
// Deletes one rate.
bool DeleteRate(RateStore& rates, ObjectId record_id);
// Deleting every rate of a client is DeleteByClient (store/catalogue.h).

// "Normal Rate" .. "Discount Rate"; empty for a type out of range.
const std::u16string& RateTypeName(std::uint16_t type);
// The label of a rate item: "%s (%.02f)" of the description and value / 100.
std::u16string RateLabel(const Rate& rate);

// A group of the rate tree: "(Default Rates)" (client 0) or a client's name.
struct RateGroup {
  std::u16string heading;
  ClientId client = 0;
  std::vector<Rate> rates;
  friend bool operator==(const RateGroup&, const RateGroup&) = default;
};

struct RateTree {
  bool custom_rate = false;  // the chooser's first item "(Custom Rate)"
  std::vector<RateGroup> groups;
};

// The rate setup page's tree: "(Default Rates)", then every client in name
// order, each with its rates (clients without rates too).
RateTree SetupRateTree(RateStore& rates, ClientStore& clients);
// The entry editor's chooser: "(Custom Rate)", "(Default Rates)", then the
// entry's client when it is in the catalogue.
RateTree ChooserRateTree(RateStore& rates, ClientStore& clients,
                         const std::u16string& entry_client);

// Reads a rate as typed: digits with at most two decimals after a point
// ("25", "25.5", ".75", "12.50"), blanks around it allowed, no sign, at most
// 42949672.95 so that it fits the record. False for anything else.
bool ParseRateText(const std::u16string& text, double* value);

// What the rate setup page is asked to save. `type` -1 means none chosen.
struct RateInput {
  int type = -1;
  std::u16string description;
  std::u16string value_text;
  ClientId client = 0;
  ObjectId record_id = 0;  // the rate being edited, 0 for a new one
};

// The setup page's checks in its order: a type, a description, a valid value,
// and no other rate of the client with the same type and description. The
// message of the first that fails ("Please select a type.", ...), or empty
// text when the rate may be saved.
std::u16string CheckRate(RateStore& rates, const Locale& locale, const RateInput& input);

}  // namespace quillora

#endif  // QUILLORA_STORE_RATES_H_
