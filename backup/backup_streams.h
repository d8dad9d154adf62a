// The bytes inside the streams of a backup or archive file: little-endian
// integers, one-byte flags, FILETIMEs low word first, and strings as a 32-bit
// count of UTF-16 units followed by the units, without a terminator.
#ifndef QUILLORA_BACKUP_BACKUP_STREAMS_H_
#define QUILLORA_BACKUP_BACKUP_STREAMS_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/clock.h"
#include "store/catalogue.h"
#include "store/rates.h"
#include "store/time_entry.h"

namespace quillora {

// Appends encoded values to a byte string.
class StreamBuilder {
 public:
  void U32(std::uint32_t value);
  void I32(std::int32_t value) { U32(static_cast<std::uint32_t>(value)); }
  void Flag(bool value) { bytes_.push_back(value ? 1 : 0); }
  void Time(FileTime value);
  void String(std::u16string_view text);
  void Bytes(const std::uint8_t* data, std::size_t size);

  const std::string& bytes() const { return bytes_; }
  std::string Take() { return std::move(bytes_); }

 private:
  std::string bytes_;
};

// Takes encoded values from the front of a byte string. Every call checks
// that the bytes are there and answers false (taking nothing) when they are
// not, so a damaged stream is never read past its end.
class StreamParser {
 public:
  explicit StreamParser(std::string_view bytes) : bytes_(bytes) {}

  bool U32(std::uint32_t* value);
  bool I32(std::int32_t* value);
  // Any byte but 1 reads as false, as a stored flag does.
  bool Flag(bool* value);
  bool Time(FileTime* value);
  bool String(std::u16string* text);
  bool Bytes(std::size_t size, std::vector<std::uint8_t>* data);

  std::size_t remaining() const { return bytes_.size() - pos_; }

 private:
  std::string_view bytes_;
  std::size_t pos_ = 0;
};

// One "Record%d" stream: billable, paid, start, client, project, phase, task,
// currency, duration (32-bit), rate (32-bit), rate type (32-bit), bill-to,
// the three custom fields, the note's byte count and, when it is 1 or more,
// the note's bytes.
std::string EncodeEntryRecord(const TimeEntry& entry);
// Reads a "Record%d" stream into a cleared entry (record id 0). The duration
// and rate type keep the low bits that their record properties hold (16
// each). False when the stream ends before the last field; bytes after it
// are ignored.
bool DecodeEntryRecord(std::string_view bytes, TimeEntry* entry);

// The streams of one "Client%d" storage.

// "Name": one string.
std::string EncodeClientName(const std::u16string& name);
bool DecodeClientName(std::string_view bytes, std::u16string* name);

// "ProjectTasks": a count, then the project name and task name of each record.
std::string EncodeProjectTasks(const std::vector<ProjectRecord>& records);
bool DecodeProjectTasks(std::string_view bytes, std::vector<ProjectRecord>* records);

// "Tasks" and "Contacts": a count, then one name each.
std::string EncodeNames(const std::vector<CatalogueItem>& items);
bool DecodeNames(std::string_view bytes, std::vector<std::u16string>* names);

// "Rates": a count, then each rate's type (32-bit), value in hundredths
// (32-bit) and flag (one byte). The description is not in the file.
std::string EncodeRates(const std::vector<Rate>& rates);
bool DecodeRates(std::string_view bytes, std::vector<Rate>* rates);

}  // namespace quillora

#endif  // QUILLORA_BACKUP_BACKUP_STREAMS_H_
