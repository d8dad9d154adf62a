// One time entry in memory, and its record in "Quillora Data 1".
#ifndef QUILLORA_STORE_TIME_ENTRY_H_
#define QUILLORA_STORE_TIME_ENTRY_H_

#include <cstdint>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/object_store.h"
#include "store/record_store.h"

namespace quillora {

// The properties of an entry record.
namespace entry_prop {
inline constexpr PropId kStart = kPropStart;                        // 1001
inline constexpr PropId kClient = kPropClientName;                  // 1002
inline constexpr PropId kProject = MakePropId(1003, kPropString);
inline constexpr PropId kPhase = MakePropId(1004, kPropString);
inline constexpr PropId kTask = kPropTaskName;                      // 1005
inline constexpr PropId kDuration = MakePropId(1006, kPropUI2);
inline constexpr PropId kCurrency = MakePropId(1007, kPropString);
inline constexpr PropId kRate = kPropRateValue;                     // 1008
inline constexpr PropId kBillable = MakePropId(1009, kPropBool);
inline constexpr PropId kPaid = MakePropId(1010, kPropBool);
inline constexpr PropId kNote = MakePropId(1012, kPropBlob);
inline constexpr PropId kLegacyStartTime = MakePropId(1013, kPropFileTime);
inline constexpr PropId kBillTo = MakePropId(1014, kPropString);
inline constexpr PropId kCustom1 = MakePropId(1015, kPropString);
inline constexpr PropId kCustom2 = MakePropId(1016, kPropString);
inline constexpr PropId kCustom3 = MakePropId(1017, kPropString);
inline constexpr PropId kRateType = MakePropId(1018, kPropUI2);
}  // namespace entry_prop

// Rate types, by index: "Normal Rate" .. "Discount Rate".
enum RateType : std::uint16_t {
  kRateNormal = 0,
  kRateOvertime = 1,
  kRateWeekend = 2,
  kRateFixed = 3,
  kRateDiscount = 4,
};

// The seconds of `start` mark an entered start time of day (1) or none (0).
inline constexpr std::uint16_t kStartTimeMark = 1;

struct TimeEntry {
  bool billable = false;
  bool paid = false;
  std::u16string client;
  std::u16string project;
  std::u16string phase;
  std::u16string task;
  std::u16string currency;
  std::u16string billTo;
  std::u16string custom1;
  std::u16string custom2;
  std::u16string custom3;
  std::uint16_t rateType = 0;
  FileTime start = 0;
  std::int32_t noteSize = 0;
  std::vector<std::uint8_t> note;  // noteSize bytes, owned; copied, never shared
  std::uint32_t duration = 0;      // hundredths of an hour, 16 bits stored
  std::uint32_t rate = 0;          // hundredths of the currency unit
  ObjectId recordId = 0;           // 0 until stored
};

// True when the entry carries a start time of day: its seconds are not 0
// (the views' reading of the mark; the CSV export asks for exactly 1).
bool HasStartTime(const TimeEntry& entry);

// Both flags false, every string empty, every number 0, no note.
void Clear(TimeEntry* entry);

// Replaces the note with a copy of `size` bytes (size 0: no note). Fails only
// when the copy cannot be made; the entry then has no note.
bool SetNote(TimeEntry* entry, std::int32_t size, const std::uint8_t* bytes);

// Reads the entry store's current record: 0 when the store stands on a record,
// 1 when it stands on none at the end of the records (last error 259), -1
// otherwise.
int ReadEntry(EntryStore& store, TimeEntry* entry);

// Writes the entry as a new record; true when the store gave a record id, which
// becomes the store's current record id (the entry itself is not changed).
bool AddEntry(EntryStore& store, const TimeEntry& entry);

// Rewrites the store's current record (seek to the entry's record id first)
// with every property of the entry; clearing a field removes its property and
// the legacy start time is always removed. False when the store stands on no
// record or the write fails.
bool UpdateEntry(EntryStore& store, const TimeEntry& entry);

// Removes the entry's record from the store.
bool DeleteEntry(EntryStore& store, const TimeEntry& entry);

}  // namespace quillora

#endif  // QUILLORA_STORE_TIME_ENTRY_H_
