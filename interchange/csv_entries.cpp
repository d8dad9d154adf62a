#include "interchange/csv_entries.h"

#include <charconv>
#include <cstdint>

#include "interchange/csv_reader.h"
#include "platform/text.h"
#include "timekeeping/duration.h"

namespace quillora {
namespace {

constexpr const char16_t* kDateFormatNames[] = {u"YYYY-MM-DD", u"MM/DD/YYYY",
                                                u"DD/MM/YYYY", u"DD.MM.YYYY"};

std::u16string_view Trimmed(std::u16string_view text) {
  while (!text.empty() && (text.front() == u' ' || text.front() == u'\t')) {
    text.remove_prefix(1);
  }
  while (!text.empty() && (text.back() == u' ' || text.back() == u'\t')) {
    text.remove_suffix(1);
  }
  return text;
}

bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

// Reads 1 to `most` digits at the front of `text`.
bool TakeNumber(std::u16string_view* text, int most, int* value) {
  int n = 0;
  *value = 0;
  while (n < most && n < static_cast<int>(text->size()) && IsDigit((*text)[n])) {
    *value = *value * 10 + ((*text)[n] - u'0');
    ++n;
  }
  text->remove_prefix(static_cast<std::size_t>(n));
  return n > 0;
}

bool TakeChar(std::u16string_view* text, char16_t c) {
  if (text->empty() || text->front() != c) return false;
  text->remove_prefix(1);
  return true;
}

// A date at the front of `text` in `format`; `text` keeps what follows.
bool TakeDate(std::u16string_view* text, CsvDateFormat format, SystemTime* date) {
  int y = 0, m = 0, d = 0;
  bool ok = false;
  switch (format) {
    case CsvDateFormat::kIso:
      ok = TakeNumber(text, 4, &y) && TakeChar(text, u'-') && TakeNumber(text, 2, &m) &&
           TakeChar(text, u'-') && TakeNumber(text, 2, &d);
      break;
    case CsvDateFormat::kMonthDayYear:
      ok = TakeNumber(text, 2, &m) && TakeChar(text, u'/') && TakeNumber(text, 2, &d) &&
           TakeChar(text, u'/') && TakeNumber(text, 4, &y);
      break;
    case CsvDateFormat::kDayMonthYear:
      ok = TakeNumber(text, 2, &d) && TakeChar(text, u'/') && TakeNumber(text, 2, &m) &&
           TakeChar(text, u'/') && TakeNumber(text, 4, &y);
      break;
    case CsvDateFormat::kDayMonthYearDots:
      ok = TakeNumber(text, 2, &d) && TakeChar(text, u'.') && TakeNumber(text, 2, &m) &&
           TakeChar(text, u'.') && TakeNumber(text, 4, &y);
      break;
  }
  if (!ok || y < 1601 || m < 1 || m > 12 || d < 1 || d > DaysInMonth(y, m)) return false;
  *date = MakeSystemTime(y, m, d);
  return true;
}

// "H:MM[:SS]" (24-hour) or the same with AM/PM behind it (12-hour), all of
// `text`.
bool ParseTimeOfDay(std::u16string_view text, SystemTime* time) {
  int h = 0, m = 0, s = 0;
  if (!TakeNumber(&text, 2, &h) || !TakeChar(&text, u':') || !TakeNumber(&text, 2, &m) ||
      m > 59) {
    return false;
  }
  if (TakeChar(&text, u':') && (!TakeNumber(&text, 2, &s) || s > 59)) return false;
  // Fractions of a second ("10:00:00.000") are dropped.
  if (TakeChar(&text, u'.')) {
    int ignored = 0;
    TakeNumber(&text, 9, &ignored);
  }
  text = Trimmed(text);
  if (!text.empty()) {
    if (text.size() != 2 || (text[1] != u'M' && text[1] != u'm')) return false;
    const bool pm = text[0] == u'P' || text[0] == u'p';
    if (!pm && text[0] != u'A' && text[0] != u'a') return false;
    if (h < 1 || h > 12) return false;
    h = h % 12 + (pm ? 12 : 0);
  } else if (h > 23) {
    return false;
  }
  *time = MakeSystemTime(1601, 1, 1, h, m, s);
  return true;
}

// A start or end cell: a time of day, or a date and a time separated by a
// blank or "T".
struct Moment {
  std::optional<SystemTime> date;
  SystemTime time;
};

bool ParseMoment(std::u16string_view text, CsvDateFormat format, Moment* moment) {
  std::u16string_view rest = text;
  SystemTime date;
  if (TakeDate(&rest, format, &date) && !rest.empty() &&
      (rest.front() == u' ' || rest.front() == u'T')) {
    rest.remove_prefix(1);
    moment->date = date;
    return ParseTimeOfDay(Trimmed(rest), &moment->time);
  }
  return ParseTimeOfDay(text, &moment->time);
}

// "H:MM:SS" or "H:MM" as seconds times 1/3600, or decimal hours with a point
// or a comma; false for anything else.
bool ParseDurationCell(std::u16string_view text, double* hours) {
  if (text.find(u':') != std::u16string_view::npos) {
    int h = 0, m = 0, s = 0;
    std::u16string_view rest = text;
    if (!TakeNumber(&rest, 6, &h) || !TakeChar(&rest, u':') ||
        !TakeNumber(&rest, 2, &m) || m > 59) {
      return false;
    }
    if (TakeChar(&rest, u':') && (!TakeNumber(&rest, 2, &s) || s > 59)) return false;
    if (!rest.empty()) return false;
    const std::int64_t seconds = std::int64_t{h} * 3600 + m * 60 + s;
    *hours = static_cast<double>(seconds) * kHoursPerSecond;
    return true;
  }
  std::string narrow;
  for (char16_t c : text) {
    if (!IsDigit(c) && c != u'.' && c != u',') return false;
    narrow.push_back(c == u',' ? '.' : static_cast<char>(c));
  }
  if (narrow.empty()) return false;
  const auto [end, ec] =
      std::from_chars(narrow.data(), narrow.data() + narrow.size(), *hours);
  return ec == std::errc() && end == narrow.data() + narrow.size();
}

// Yes/No, true/false, 1/0 in any letter case.
std::optional<bool> ParseFlag(std::u16string_view text) {
  std::u16string folded(text);
  for (char16_t& c : folded) {
    if (c >= u'A' && c <= u'Z') c += u'a' - u'A';
  }
  if (folded == u"yes" || folded == u"true" || folded == u"1") return true;
  if (folded == u"no" || folded == u"false" || folded == u"0") return false;
  return std::nullopt;
}

std::u16string Quoted(std::u16string_view text) {
  return u"\"" + std::u16string(text) + u"\"";
}

class RowReader {
 public:
  RowReader(const CsvImportOptions& options, const Settings& settings, int code_page,
            const std::vector<EntryColumn>& columns)
      : options_(options),
        settings_(settings),
        code_page_(code_page),
        columns_(columns) {}

  void Read(const CsvRecord& record, ImportedEntry* row) {
    row->line = record.line;
    std::u16string_view cells[std::size(kEntryColumns)] = {};
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      cells[static_cast<std::size_t>(columns_[i])] = Trimmed(record.fields[i]);
    }
    row->skip = Map(cells, &row->entry);
  }

  static constexpr EntryColumn kEntryColumns[] = {
      EntryColumn::kIgnore,   EntryColumn::kDate,        EntryColumn::kStart,
      EntryColumn::kEndDate,  EntryColumn::kEnd,         EntryColumn::kDuration,
      EntryColumn::kClient,   EntryColumn::kProject,     EntryColumn::kPhase,
      EntryColumn::kTask,     EntryColumn::kDescription, EntryColumn::kNote,
      EntryColumn::kBillable, EntryColumn::kPaid,        EntryColumn::kBillTo,
      EntryColumn::kRate,     EntryColumn::kCurrency,    EntryColumn::kTags,
      EntryColumn::kCustom1,  EntryColumn::kCustom2,     EntryColumn::kCustom3};

 private:
  using Cells = std::u16string_view[std::size(kEntryColumns)];
  static std::u16string_view Cell(const Cells& cells, EntryColumn column) {
    return cells[static_cast<std::size_t>(column)];
  }

  std::u16string DateFault(std::u16string_view text) const {
    return u"the date " + Quoted(text) + u" is not of the form " +
           CsvDateFormatName(options_.date_format);
  }

  std::u16string Map(const Cells& cells, TimeEntry* entry) const {
    const CsvDateFormat format = options_.date_format;
    std::optional<SystemTime> date;
    if (const auto text = Cell(cells, EntryColumn::kDate); !text.empty()) {
      SystemTime d;
      std::u16string_view rest = text;
      // A date column may carry a time behind the date; the date counts.
      if (!TakeDate(&rest, format, &d)) return DateFault(text);
      date = d;
    }
    std::optional<Moment> start;
    if (const auto text = Cell(cells, EntryColumn::kStart); !text.empty()) {
      Moment m;
      if (!ParseMoment(text, format, &m))
        return u"the start " + Quoted(text) + u" is not a time";
      start = m;
      if (!date) date = m.date;
    }
    if (!date) return u"no date";
    std::optional<Moment> end;
    if (const auto text = Cell(cells, EntryColumn::kEnd); !text.empty()) {
      Moment m;
      if (!ParseMoment(text, format, &m))
        return u"the end " + Quoted(text) + u" is not a time";
      end = m;
    }
    if (const auto text = Cell(cells, EntryColumn::kEndDate); !text.empty() && end) {
      SystemTime d;
      std::u16string_view rest = text;
      if (!TakeDate(&rest, format, &d)) return DateFault(text);
      end->date = d;
    }

    SystemTime at = *date;
    if (start) {
      at.hour = start->time.hour;
      at.minute = start->time.minute;
      at.second = start->time.second;
    }
    if (!StartImportedEntry(settings_, at, start.has_value(), entry))
      return u"date outside the calendar";

    double hours = 0;
    if (const auto text = Cell(cells, EntryColumn::kDuration); !text.empty()) {
      if (!ParseDurationCell(text, &hours)) {
        return u"the duration " + Quoted(text) + u" is not H:MM:SS, H:MM or hours";
      }
    } else if (start && end) {
      // Whole seconds from start to end; without an end date an end earlier
      // than the start lies on the next day.
      SystemTime from = at;
      SystemTime to = end->date.value_or(*date);
      to.hour = end->time.hour;
      to.minute = end->time.minute;
      to.second = end->time.second;
      FileTime a = 0, b = 0;
      SystemTimeToFileTime(from, &a);
      if (!SystemTimeToFileTime(to, &b)) return u"date outside the calendar";
      if (!end->date && b < a) b += kTicksPerDay;
      const std::int64_t seconds =
          (static_cast<std::int64_t>(b) - static_cast<std::int64_t>(a)) /
          static_cast<std::int64_t>(kTicksPerSecond);
      hours = static_cast<double>(seconds) * kHoursPerSecond;
    } else {
      return u"no duration, nor a start and an end";
    }
    if (auto fault = SetImportedDuration(entry, hours, settings_); !fault.empty())
      return fault;

    entry->client = Cell(cells, EntryColumn::kClient);
    entry->project = Cell(cells, EntryColumn::kProject);
    entry->phase = Cell(cells, EntryColumn::kPhase);
    entry->task = Cell(cells, EntryColumn::kTask);
    entry->billTo = Cell(cells, EntryColumn::kBillTo);
    entry->custom1 = Cell(cells, EntryColumn::kCustom1);
    entry->custom2 = Cell(cells, EntryColumn::kCustom2);
    entry->custom3 = Cell(cells, EntryColumn::kCustom3);
    if (entry->custom1.empty()) entry->custom1 = Cell(cells, EntryColumn::kTags);
    if (const auto text = Cell(cells, EntryColumn::kCurrency); !text.empty()) {
      entry->currency = text;
    }
    for (auto [column, flag] : {std::pair{EntryColumn::kBillable, &entry->billable},
                                std::pair{EntryColumn::kPaid, &entry->paid}}) {
      const auto text = Cell(cells, column);
      if (text.empty()) continue;
      const std::optional<bool> value = ParseFlag(text);
      if (!value) return Quoted(text) + u" is not Yes or No";
      *flag = *value;
    }
    if (const auto text = Cell(cells, EntryColumn::kRate); !text.empty()) {
      if (!IsNumericText(text)) return u"the rate " + Quoted(text) + u" is not a number";
      SetRateFromText(entry, text, code_page_);
    }
    std::u16string note(Cell(cells, EntryColumn::kNote));
    if (const auto text = Cell(cells, EntryColumn::kDescription); !text.empty()) {
      if (entry->task.empty()) {
        entry->task = text;
      } else {
        note =
            note.empty() ? std::u16string(text) : std::u16string(text) + u"\r\n" + note;
      }
    }
    SetImportedNote(note, entry);
    return FinishImportedEntry(options_.defaults, entry);
  }

  const CsvImportOptions& options_;
  const Settings& settings_;
  int code_page_;
  const std::vector<EntryColumn>& columns_;
};

bool Has(const std::vector<EntryColumn>& columns, EntryColumn column) {
  for (EntryColumn c : columns) {
    if (c == column) return true;
  }
  return false;
}

}  // namespace

std::optional<CsvDateFormat> CsvDateFormatNamed(std::u16string_view name) {
  for (int i = 0; i < 4; ++i) {
    const std::u16string_view known = kDateFormatNames[i];
    if (known.size() != name.size()) continue;
    bool same = true;
    for (std::size_t k = 0; k < known.size() && same; ++k) {
      char16_t c = name[k];
      if (c >= u'a' && c <= u'z') c -= u'a' - u'A';
      same = c == known[k];
    }
    if (same) return static_cast<CsvDateFormat>(i);
  }
  return std::nullopt;
}

const char16_t* CsvDateFormatName(CsvDateFormat format) {
  return kDateFormatNames[static_cast<int>(format)];
}

CsvImportedFile ReadCsvEntries(std::string_view bytes, const CsvImportOptions& options,
                               const Settings& settings, int code_page) {
  CsvImportedFile out;
  ImportedFile& file = out.file;
  std::u16string text;
  CsvError error;
  if (!DecodeCsvText(bytes, code_page, &text, &error)) {
    file.error = FromUtf8(error.what);
    file.error_line = error.line;
    return out;
  }
  std::optional<RowReader> reader;
  auto refuse = [&](std::u16string what) {
    file.error = std::move(what);
    file.error_line = 1;
    return false;
  };
  CsvSink sink;
  sink.header = [&](std::vector<std::u16string>&& header) {
    out.header = std::move(header);
    for (const ColumnMapping& mapping : options.mappings) {
      bool found = false;
      for (const std::u16string& h : out.header)
        found = found || SameHeader(h, mapping.header);
      if (!found) return refuse(u"the file has no column " + Quoted(mapping.header));
    }
    out.columns = RecognizeColumns(out.header, options.mappings);
    if (!Has(out.columns, EntryColumn::kDate) && !Has(out.columns, EntryColumn::kStart)) {
      return refuse(u"no column holds the date (name one with --map COLUMN=date)");
    }
    if (!Has(out.columns, EntryColumn::kDuration) &&
        !(Has(out.columns, EntryColumn::kStart) && Has(out.columns, EntryColumn::kEnd))) {
      return refuse(
          u"no column holds the duration, nor a start and an end (name them with --map)");
    }
    reader.emplace(options, settings, code_page, out.columns);
    return true;
  };
  sink.record = [&](CsvRecord&& record) {
    file.rows.emplace_back();
    reader->Read(record, &file.rows.back());
  };
  if (!ReadCsv(text, sink, &error)) {
    file.rows.clear();
    file.rows.shrink_to_fit();
    if (file.error.empty()) {
      file.error = FromUtf8(error.what);
      file.error_line = error.line;
    }
  }
  return out;
}

}  // namespace quillora
