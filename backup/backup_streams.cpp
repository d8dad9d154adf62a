#include "backup/backup_streams.h"

namespace quillora {

void StreamBuilder::U32(std::uint32_t value) {
  for (int i = 0; i < 4; ++i)
    bytes_.push_back(static_cast<char>((value >> (8 * i)) & 0xFF));
}

void StreamBuilder::Time(FileTime value) {
  U32(static_cast<std::uint32_t>(value & 0xFFFFFFFFu));
  U32(static_cast<std::uint32_t>(value >> 32));
}

void StreamBuilder::String(std::u16string_view text) {
  U32(static_cast<std::uint32_t>(text.size()));
  for (char16_t c : text) {
    bytes_.push_back(static_cast<char>(c & 0xFF));
    bytes_.push_back(static_cast<char>(c >> 8));
  }
}

void StreamBuilder::Bytes(const std::uint8_t* data, std::size_t size) {
  bytes_.append(reinterpret_cast<const char*>(data), size);
}

bool StreamParser::U32(std::uint32_t* value) {
  if (remaining() < 4) return false;
  std::uint32_t v = 0;
  for (int i = 0; i < 4; ++i) {
    v |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes_[pos_ + i]))
         << (8 * i);
  }
  pos_ += 4;
  *value = v;
  return true;
}

bool StreamParser::I32(std::int32_t* value) {
  std::uint32_t v;
  if (!U32(&v)) return false;
  *value = static_cast<std::int32_t>(v);
  return true;
}

bool StreamParser::Flag(bool* value) {
  if (remaining() < 1) return false;
  *value = bytes_[pos_++] == 1;
  return true;
}

bool StreamParser::Time(FileTime* value) {
  if (remaining() < 8) return false;
  std::uint32_t low = 0, high = 0;
  U32(&low);
  U32(&high);
  *value = (static_cast<FileTime>(high) << 32) | low;
  return true;
}

bool StreamParser::String(std::u16string* text) {
  const std::size_t start = pos_;
  std::uint32_t count;
  // The count is checked against the bytes left before anything is
  // allocated, so a damaged count cannot ask for gigabytes.
  if (!U32(&count) || remaining() / 2 < count) {
    pos_ = start;
    return false;
  }
  text->resize(count);
  for (std::uint32_t i = 0; i < count; ++i) {
    const auto lo = static_cast<unsigned char>(bytes_[pos_]);
    const auto hi = static_cast<unsigned char>(bytes_[pos_ + 1]);
    (*text)[i] = static_cast<char16_t>(lo | (hi << 8));
    pos_ += 2;
  }
  return true;
}

bool StreamParser::Bytes(std::size_t size, std::vector<std::uint8_t>* data) {
  if (remaining() < size) return false;
  const auto* first = reinterpret_cast<const std::uint8_t*>(bytes_.data() + pos_);
  data->assign(first, first + size);
  pos_ += size;
  return true;
}

std::string EncodeEntryRecord(const TimeEntry& e) {
  StreamBuilder b;
  b.Flag(e.billable);
  b.Flag(e.paid);
  b.Time(e.start);
  b.String(e.client);
  b.String(e.project);
  b.String(e.phase);
  b.String(e.task);
  b.String(e.currency);
  b.I32(static_cast<std::int32_t>(e.duration));
  b.I32(static_cast<std::int32_t>(e.rate));
  b.U32(e.rateType);
  b.String(e.billTo);
  b.String(e.custom1);
  b.String(e.custom2);
  b.String(e.custom3);
  const std::int32_t note_size =
      e.noteSize > 0 && static_cast<std::size_t>(e.noteSize) <= e.note.size() ? e.noteSize
                                                                              : 0;
  b.I32(note_size);
  if (note_size > 0) b.Bytes(e.note.data(), static_cast<std::size_t>(note_size));
  return b.Take();
}

bool DecodeEntryRecord(std::string_view bytes, TimeEntry* e) {
  Clear(e);
  StreamParser p(bytes);
  std::int32_t duration, rate, note_size;
  std::uint32_t rate_type;
  if (!p.Flag(&e->billable) || !p.Flag(&e->paid) || !p.Time(&e->start) ||
      !p.String(&e->client) || !p.String(&e->project) || !p.String(&e->phase) ||
      !p.String(&e->task) || !p.String(&e->currency) || !p.I32(&duration) ||
      !p.I32(&rate) || !p.U32(&rate_type) || !p.String(&e->billTo) ||
      !p.String(&e->custom1) || !p.String(&e->custom2) || !p.String(&e->custom3) ||
      !p.I32(&note_size)) {
    return false;
  }
  // The record stores the duration and the rate type in 16 bits.
  e->duration = static_cast<std::uint16_t>(duration);
  e->rate = static_cast<std::uint32_t>(rate);
  e->rateType = static_cast<std::uint16_t>(rate_type);
  if (note_size > 0) {
    if (!p.Bytes(static_cast<std::size_t>(note_size), &e->note)) return false;
    e->noteSize = note_size;
  }
  return true;
}

std::string EncodeClientName(const std::u16string& name) {
  StreamBuilder b;
  b.String(name);
  return b.Take();
}

bool DecodeClientName(std::string_view bytes, std::u16string* name) {
  StreamParser p(bytes);
  return p.String(name);
}

std::string EncodeProjectTasks(const std::vector<ProjectRecord>& records) {
  StreamBuilder b;
  b.U32(static_cast<std::uint32_t>(records.size()));
  for (const ProjectRecord& r : records) {
    b.String(r.project);
    b.String(r.task);
  }
  return b.Take();
}

bool DecodeProjectTasks(std::string_view bytes, std::vector<ProjectRecord>* records) {
  records->clear();
  StreamParser p(bytes);
  std::uint32_t count;
  if (!p.U32(&count)) return false;
  // No reserve by the count: a damaged count ends at the first missing record.
  for (std::uint32_t i = 0; i < count; ++i) {
    ProjectRecord r;
    if (!p.String(&r.project) || !p.String(&r.task)) return false;
    records->push_back(std::move(r));
  }
  return true;
}

std::string EncodeNames(const std::vector<CatalogueItem>& items) {
  StreamBuilder b;
  b.U32(static_cast<std::uint32_t>(items.size()));
  for (const CatalogueItem& item : items) b.String(item.name);
  return b.Take();
}

bool DecodeNames(std::string_view bytes, std::vector<std::u16string>* names) {
  names->clear();
  StreamParser p(bytes);
  std::uint32_t count;
  if (!p.U32(&count)) return false;
  for (std::uint32_t i = 0; i < count; ++i) {
    std::u16string name;
    if (!p.String(&name)) return false;
    names->push_back(std::move(name));
  }
  return true;
}

std::string EncodeRates(const std::vector<Rate>& rates) {
  StreamBuilder b;
  b.U32(static_cast<std::uint32_t>(rates.size()));
  for (const Rate& r : rates) {
    b.U32(r.type);
    b.U32(r.value);
    b.Flag(r.flag);
  }
  return b.Take();
}

bool DecodeRates(std::string_view bytes, std::vector<Rate>* rates) {
  rates->clear();
  StreamParser p(bytes);
  std::uint32_t count;
  if (!p.U32(&count)) return false;
  for (std::uint32_t i = 0; i < count; ++i) {
    std::uint32_t type;
    Rate r;
    if (!p.U32(&type) || !p.U32(&r.value) || !p.Flag(&r.flag)) return false;
    r.type = static_cast<std::uint16_t>(type);
    rates->push_back(std::move(r));
  }
  return true;
}

}  // namespace quillora
