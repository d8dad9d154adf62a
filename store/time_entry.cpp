#include "store/time_entry.h"

#include <new>

namespace quillora {

void Clear(TimeEntry* entry) { *entry = TimeEntry{}; }

bool HasStartTime(const TimeEntry& entry) {
  SystemTime st;
  return FileTimeToSystemTime(entry.start, &st) && st.second != 0;
}

bool SetNote(TimeEntry* entry, std::int32_t size, const std::uint8_t* bytes) {
  entry->note.clear();
  entry->note.shrink_to_fit();
  entry->noteSize = size;
  if (size <= 0) {
    entry->noteSize = 0;
    return true;
  }
  try {
    entry->note.assign(bytes, bytes + size);
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

namespace {

// Keeps the date of `start` and takes the time of day of `legacy`: records of
// an earlier data version kept the start time in a property of its own.
FileTime MergeLegacyStartTime(FileTime start, FileTime legacy) {
  SystemTime date, time;
  if (!FileTimeToSystemTime(start, &date) || !FileTimeToSystemTime(legacy, &time)) {
    return start;
  }
  date.hour = time.hour;
  date.minute = time.minute;
  date.second = time.second;
  date.milliseconds = time.milliseconds;
  FileTime merged = start;
  SystemTimeToFileTime(date, &merged);
  return merged;
}

}  // namespace

int ReadEntry(EntryStore& store, TimeEntry* entry) {
  namespace p = entry_prop;
  Clear(entry);
  PropList props;
  store.ReadProps(nullptr, &props);
  // The seek decides, not the read: a record that could not be read counts
  // as read with no properties.
  const ObjectId id = store.current_record_id();
  if (id == 0) return GetLastStoreError() == kErrorNoMoreItems ? 1 : -1;
  entry->recordId = id;
  for (PropValue& v : props) {
    switch (v.id) {
      case p::kStart: entry->start = v.number; break;
      case p::kClient: entry->client = std::move(v.text); break;
      case p::kProject: entry->project = std::move(v.text); break;
      case p::kPhase: entry->phase = std::move(v.text); break;
      case p::kTask: entry->task = std::move(v.text); break;
      case p::kCurrency: entry->currency = std::move(v.text); break;
      case p::kBillTo: entry->billTo = std::move(v.text); break;
      case p::kCustom1: entry->custom1 = std::move(v.text); break;
      case p::kCustom2: entry->custom2 = std::move(v.text); break;
      case p::kCustom3: entry->custom3 = std::move(v.text); break;
      case p::kDuration: entry->duration = static_cast<std::uint16_t>(v.number); break;
      case p::kRate: entry->rate = static_cast<std::uint32_t>(v.number); break;
      case p::kRateType: entry->rateType = static_cast<std::uint16_t>(v.number); break;
      // Only a stored 1 is true; any other value reads as false on purpose.
      case p::kBillable: entry->billable = v.number == 1; break;
      case p::kPaid: entry->paid = v.number == 1; break;
      case p::kNote:
        if (!SetNote(entry, static_cast<std::int32_t>(v.blob.size()), v.blob.data())) {
          SetNote(entry, 0, nullptr);
        }
        break;
      case p::kLegacyStartTime:
        entry->start = MergeLegacyStartTime(entry->start, v.number);
        break;
      default:
        break;
    }
  }
  return 0;
}

namespace {

PropValue TextOrDelete(PropId id, const std::u16string& text) {
  return text.empty() ? PropValue::Delete(id) : PropValue::Text(id, text);
}

PropValue Flag(PropId id, bool on) { return PropValue::Number(id, on ? 1 : 0); }

}  // namespace

bool AddEntry(EntryStore& store, const TimeEntry& e) {
  namespace p = entry_prop;
  PropList props;
  props.reserve(16);
  props.push_back(PropValue::Number(p::kStart, e.start));
  props.push_back(PropValue::Text(p::kClient, e.client));
  if (!e.project.empty()) props.push_back(PropValue::Text(p::kProject, e.project));
  if (!e.phase.empty()) props.push_back(PropValue::Text(p::kPhase, e.phase));
  props.push_back(PropValue::Text(p::kTask, e.task));
  props.push_back(PropValue::Number(p::kDuration, e.duration));
  props.push_back(Flag(p::kBillable, e.billable));
  if (!e.currency.empty()) props.push_back(PropValue::Text(p::kCurrency, e.currency));
  props.push_back(PropValue::Number(p::kRate, e.rate));
  props.push_back(Flag(p::kPaid, e.paid));
  if (e.noteSize > 0) props.push_back(PropValue::Blob(p::kNote, e.note));
  if (!e.billTo.empty()) props.push_back(PropValue::Text(p::kBillTo, e.billTo));
  if (!e.custom1.empty()) props.push_back(PropValue::Text(p::kCustom1, e.custom1));
  if (!e.custom2.empty()) props.push_back(PropValue::Text(p::kCustom2, e.custom2));
  if (!e.custom3.empty()) props.push_back(PropValue::Text(p::kCustom3, e.custom3));
  props.push_back(PropValue::Number(p::kRateType, e.rateType));
  return store.WriteProps(0, props) != 0;
}

bool UpdateEntry(EntryStore& store, const TimeEntry& e) {
  namespace p = entry_prop;
  // Writing to record id 0 would add a record; an update never does.
  if (store.current_record_id() == 0) return false;
  const PropList props = {
      PropValue::Number(p::kStart, e.start),
      PropValue::Text(p::kClient, e.client),
      TextOrDelete(p::kProject, e.project),
      TextOrDelete(p::kPhase, e.phase),
      PropValue::Text(p::kTask, e.task),
      PropValue::Number(p::kDuration, e.duration),
      Flag(p::kBillable, e.billable),
      TextOrDelete(p::kCurrency, e.currency),
      PropValue::Number(p::kRate, e.rate),
      Flag(p::kPaid, e.paid),
      e.noteSize < 1 ? PropValue::Delete(p::kNote) : PropValue::Blob(p::kNote, e.note),
      // Every update stores the record in the current form.
      PropValue::Delete(p::kLegacyStartTime),
      TextOrDelete(p::kBillTo, e.billTo),
      TextOrDelete(p::kCustom1, e.custom1),
      TextOrDelete(p::kCustom2, e.custom2),
      TextOrDelete(p::kCustom3, e.custom3),
      PropValue::Number(p::kRateType, e.rateType),
  };
  return store.WriteProps(store.current_record_id(), props) != 0;
}

bool DeleteEntry(EntryStore& store, const TimeEntry& entry) {
  return entry.recordId != 0 && store.DeleteRecord(entry.recordId);
}

}  // namespace quillora
