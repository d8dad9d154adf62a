#include "reports/html_report.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "platform/narrow_text_writer.h"
#include "reports/markup_document.h"
#include "store/note_text.h"
#include "store/string_table.h"
#include "store/time_entry.h"
#include "timekeeping/duration.h"

namespace quillora {
namespace {

constexpr char16_t kStyleText[] =
    u"table.Data { border : 2px solid Black; border-collapse : collapse; font-size : "
    u"10pt; "
    u"}\r\n"
    u"th.Data, td.Data { border : 1px solid black;  }\r\n";
constexpr char16_t kTotalText[] = u"Total";

// The label a column or heading shows for a field: the user's own names for
// the three custom fields, the field table's label for the others.
std::u16string FieldLabel(int field, const Settings& settings) {
  if (field >= kFieldCustom1 && field <= kFieldCustom3) {
    return settings.custom_labels[field - kFieldCustom1];
  }
  return kReportFields[field].label;
}

SystemTime EntrySystemTime(const TimeEntry& entry) {
  SystemTime st;
  FileTimeToSystemTime(entry.start, &st);
  return st;
}

const std::u16string& FieldText(const TimeEntry& entry, int field) {
  switch (field) {
    case kFieldClient:
      return entry.client;
    case kFieldProject:
      return entry.project;
    case kFieldPhase:
      return entry.phase;
    case kFieldTask:
      return entry.task;
    case kFieldCurrency:
      return entry.currency;
    case kFieldBillTo:
      return entry.billTo;
    case kFieldCustom1:
      return entry.custom1;
    case kFieldCustom2:
      return entry.custom2;
    default:
      return entry.custom3;
  }
}

std::u16string RateTypeName(std::uint16_t rate_type) {
  return rate_type <= kRateDiscount ? LoadString(kIdsNormalRate + rate_type)
                                    : std::u16string();
}

// "%.2f" of value * 0.01, written from the integer: the product lies within
// far less than half a hundredth of the exact decimal, so printf's rounding
// would give back exactly these digits.
std::u16string FormatHundredthsOf(std::uint32_t value) {
  char16_t buf[16];  // at most 42949672.95
  char16_t* const end = buf + std::size(buf);
  char16_t* p = end;
  std::uint32_t rest = value;
  for (int i = 0; i < 2; ++i, rest /= 10) *--p = static_cast<char16_t>(u'0' + rest % 10);
  *--p = u'.';
  do {
    *--p = static_cast<char16_t>(u'0' + rest % 10);
    rest /= 10;
  } while (rest != 0);
  return std::u16string(p, end);
}

bool IsTextField(int field) {
  switch (field) {
    case kFieldClient:
    case kFieldProject:
    case kFieldPhase:
    case kFieldTask:
    case kFieldCurrency:
    case kFieldBillTo:
    case kFieldCustom1:
    case kFieldCustom2:
    case kFieldCustom3:
      return true;
    default:
      return false;
  }
}

std::u16string CellText(const TimeEntry& entry, int field, const Settings& settings,
                        const Locale& locale) {
  switch (field) {
    case kFieldEntryDate:
      return locale.FormatShortDate(EntrySystemTime(entry));
    case kFieldDuration:
      return FormatHundredthsOf(entry.duration);
    case kFieldBillable:
      return entry.billable ? u"Yes" : u"No";
    case kFieldPaid:
      return entry.paid ? u"Yes" : u"No";
    case kFieldStartTime:
      return locale.FormatTime(EntrySystemTime(entry), kTimeNoSeconds);
    case kFieldRateType:
      return RateTypeName(entry.rateType);
    case kFieldAmount:
      return FormatTwoDecimals(EntryAmount(entry, settings));
    case kFieldNotes:
      return NoteBlobToText(entry.note.data(), entry.note.size());
    case kFieldRate:
      return FormatHundredthsOf(entry.rate);
    default:
      return FieldText(entry, field);
  }
}

// --- Grouping ---

// What an entry is grouped by: one or two texts, or a number.
struct GroupValue {
  std::u16string text;
  std::u16string second_text;
  std::uint64_t number = 0;
};

// The group-key object of a report: chosen by the kind of the group-by
// property, it gives an entry's group value, orders values and writes a
// group's heading ("Client: Acme").
class GroupKey {
 public:
  GroupKey(const ReportDefinition& definition, const Settings& settings,
           const Locale& locale)
      : settings_(settings), locale_(locale) {
    field_ = ReportFieldOfProperty(definition.group_by_property);
    if (field_ < 0) {
      kind_ = Kind::kNone;
      return;
    }
    label_ = FieldLabel(field_, settings);
    switch (PropTypeOf(kReportFields[field_].property)) {
      case kPropString:
        kind_ = Kind::kText;
        break;
      case kPropBool:
        kind_ = Kind::kFlag;
        break;
      case kPropFileTime:
        kind_ = Kind::kDate;
        break;
      default:
        kind_ = Kind::kNumber;
        break;
    }
    if (field_ == kFieldProject && definition.group_by_project_task == 1) {
      kind_ = Kind::kProjectTask;
      label_ = kGroupByChoices[kGroupByProjectTask].label;
    }
  }

  // Entries come sorted already when they are grouped by the day of their
  // start, and there is nothing to sort by without a group-by field.
  bool NeedsSort() const { return kind_ != Kind::kNone && field_ != kFieldEntryDate; }

  GroupValue ValueOf(const TimeEntry& entry) const {
    GroupValue v;
    switch (kind_) {
      case Kind::kNone:
        break;
      case Kind::kText:
        v.text = FieldText(entry, field_);
        break;
      case Kind::kProjectTask:
        v.text = entry.project;
        v.second_text = entry.task;
        break;
      case Kind::kFlag:
        v.number = field_ == kFieldBillable ? entry.billable : entry.paid;
        break;
      case Kind::kNumber:
        v.number = field_ == kFieldDuration ? entry.duration : entry.rateType;
        break;
      case Kind::kDate:
        // The entry date groups by day, the start time by hour and minute.
        v.number = field_ == kFieldEntryDate
                       ? entry.start / kTicksPerDay
                       : entry.start % kTicksPerDay / kTicksPerMinute;
        break;
    }
    return v;
  }

  bool IsText() const { return kind_ == Kind::kText || kind_ == Kind::kProjectTask; }

  int Compare(const GroupValue& a, const GroupValue& b) const {
    if (IsText()) {
      // The same spelling always collates equal; only differing texts need
      // the locale.
      if (a.text == b.text && a.second_text == b.second_text) return 0;
      const int first = locale_.Compare(a.text, b.text);
      return first != 0 ? first : locale_.Compare(a.second_text, b.second_text);
    }
    return a.number < b.number ? -1 : a.number > b.number ? 1 : 0;
  }

  // True for the first entry and whenever the entry's value differs from the
  // open group's; the entry's value then becomes the open group's.
  bool StartsNewGroup(const TimeEntry& entry) {
    if (kind_ == Kind::kNone && open_) return false;
    GroupValue v = ValueOf(entry);
    if (open_ && Compare(v, current_) == 0) return false;
    current_ = std::move(v);
    first_entry_ = entry;
    open_ = true;
    return true;
  }

  std::u16string HeadingText() const {
    if (kind_ == Kind::kNone) return {};
    std::u16string value;
    if (kind_ == Kind::kProjectTask) {
      value = current_.text + u" - " + current_.second_text;
    } else if (kind_ == Kind::kText) {
      value = current_.text;
    } else {
      value = CellText(first_entry_, field_, settings_, locale_);
    }
    return label_ + u": " + value;
  }

 private:
  enum class Kind { kNone, kText, kProjectTask, kFlag, kNumber, kDate };

  const Settings& settings_;
  const Locale& locale_;
  int field_ = -1;
  Kind kind_ = Kind::kNone;
  std::u16string label_;
  bool open_ = false;
  GroupValue current_;
  TimeEntry first_entry_;
};

// --- The document ---

struct Sums {
  double billable_hours = 0;
  double non_billable_hours = 0;
  double paid_amount = 0;
  double unpaid_amount = 0;
};

class ReportBuilder {
 public:
  ReportBuilder(const HtmlReportRequest& request, const Settings& settings,
                const Locale& locale)
      : request_(request), settings_(settings), locale_(locale) {
    const ReportDefinition& d = request.definition;
    for (int slot = 0; slot < kReportFieldCount; ++slot) {
      const int field = d.ColumnField(slot);
      if (field >= 0 && d.IsShown(field)) columns_.push_back(field);
    }
  }

  void Head() {
    const std::u16string title = request_.definition.Title();
    doc_.AddElement(u"html");
    doc_.AddAttribute(u"xmlns", kXhtmlNamespace);
    doc_.AddChildElement(u"head");
    doc_.IntoElement();
    doc_.AddChildElement(u"title", title);
    doc_.AddChildElement(u"meta");
    doc_.AddChildAttribute(u"name", u"Generator");
    doc_.AddChildAttribute(u"content", u"Quillora");
    doc_.AddChildElement(u"style", kStyleText);
    doc_.AddChildAttribute(u"type", u"text/css");
    doc_.OutOfElement();
    doc_.AddChildElement(u"body");
    doc_.IntoElement();
    doc_.AddChildElement(u"h1", title);
    doc_.AddChildElement(u"h2", DateLine());
  }

  void OpenGroup(const std::u16string* heading) {
    group_hours_ = 0;
    group_amount_ = 0;
    if (heading != nullptr) {
      if (request_.definition.hide_group_title == 1) {
        doc_.AddChildElement(u"hr");
      } else {
        doc_.AddChildElement(u"h3", *heading);
      }
    }
    doc_.AddChildElement(u"table");
    doc_.AddChildAttribute(u"border", u"0");
    doc_.AddChildAttribute(u"class", u"Data");
    doc_.AddChildAttribute(u"cellpadding", u"2");
    doc_.IntoElement();
    doc_.AddChildElement(u"tr");
    doc_.IntoElement();
    for (int field : columns_) {
      doc_.AddChildElement(u"th", FieldLabel(field, settings_));
      doc_.AddChildAttribute(u"class", u"Data");
    }
    doc_.OutOfElement();
  }

  void Entry(const TimeEntry& entry) {
    const double hours = entry.duration * 0.01;
    const double amount = EntryAmount(entry, settings_);
    group_hours_ += hours;
    group_amount_ += amount;
    if (entry.billable) {
      sums_.billable_hours += hours;
      (entry.paid ? sums_.paid_amount : sums_.unpaid_amount) += amount;
    } else {
      sums_.non_billable_hours += hours;
    }
    doc_.AddChildElement(u"tr");
    doc_.IntoElement();
    for (int field : columns_) {
      if (IsTextField(field)) {
        Cell(FieldText(entry, field), false);
      } else {
        Cell(field == kFieldAmount ? FormatTwoDecimals(amount)
                                   : CellText(entry, field, settings_, locale_),
             IsRightAligned(field));
      }
    }
    doc_.OutOfElement();
  }

  // The total row of the open table (or of "body" when none was opened), then
  // one step out.
  void CloseGroup() {
    doc_.AddChildElement(u"tr");
    doc_.IntoElement();
    // The word stands in the first cell whatever its column holds.
    Cell(kTotalText, false);
    for (std::size_t i = 1; i < columns_.size(); ++i) {
      if (columns_[i] == kFieldDuration) {
        Cell(FormatTwoDecimals(group_hours_) + u"h", true);
      } else if (columns_[i] == kFieldAmount) {
        Cell(FormatTwoDecimals(group_amount_), true);
      } else {
        Cell(u" ", false);
      }
    }
    doc_.OutOfElement();
    doc_.OutOfElement();
  }

  void Footer() {
    const ReportDefinition& d = request_.definition;
    doc_.AddChildElement(u"p");
    doc_.IntoElement();
    const struct {
      std::uint16_t hidden;
      const char16_t* label;
      double value;
      const char16_t* unit;
    } totals[] = {
        {d.hide_total_billable_hours, kTotalBillableHoursLabel, sums_.billable_hours,
         u"h"},
        {d.hide_total_unpaid_amount, kTotalUnpaidAmountLabel, sums_.unpaid_amount, u""},
        {d.hide_total_paid_amount, kTotalPaidAmountLabel, sums_.paid_amount, u""},
        {d.hide_total_non_billable_hours, kTotalNonBillableHoursLabel,
         sums_.non_billable_hours, u"h"},
    };
    for (const auto& t : totals) {
      if (t.hidden == 1) continue;
      doc_.AddChildElement(
          u"span", std::u16string(t.label) + u": " + FormatTwoDecimals(t.value) + t.unit);
      doc_.AddChildElement(u"br");
    }
    if (d.hide_report_date != 1) {
      doc_.AddChildElement(u"span", std::u16string(kReportDateLabel) + u": " +
                                        locale_.FormatShortDate(request_.today));
      doc_.AddChildAttribute(u"style", u"font-size : xx-small;");
    }
  }

  std::u16string Text() const { return doc_.DocumentText(); }

 private:
  static bool IsRightAligned(int field) {
    return field == kFieldAmount || field == kFieldDuration || field == kFieldRate;
  }

  void Cell(std::u16string_view text, bool right) {
    doc_.AddChildElement(u"td", text);
    doc_.AddChildAttribute(u"class", u"Data");
    if (right) doc_.AddChildAttribute(u"align", u"right");
  }

  std::u16string DateLine() const {
    switch (request_.definition.date_selection) {
      case kReportDateRange:
        return u"From " + locale_.FormatShortDate(request_.range.start) + u" To " +
               locale_.FormatShortDate(request_.range.end);
      case kReportDateStartOnly:
        return u"Date: " + locale_.FormatShortDate(request_.range.start);
      default:
        return {};
    }
  }

  const HtmlReportRequest& request_;
  const Settings& settings_;
  const Locale& locale_;
  MarkupDocument doc_;
  std::vector<int> columns_;
  Sums sums_;
  double group_hours_ = 0;
  double group_amount_ = 0;
};

bool ReadEntryById(EntryStore& entries, ObjectId id, TimeEntry* entry) {
  return entries.Seek(SeekType::kObjectId, id) == id && ReadEntry(entries, entry) == 0;
}

// The report's walk: from the first entry whose start is strictly later than
// the range's start (an entry that starts exactly there is not reached, as in
// the exports) to the last one not later than its end; every entry that passes
// the criteria goes to `visit`. A range that is not a calendar range walks
// nothing.
template <typename Visit>
void WalkReportRange(EntryStore& entries, const HtmlReportRequest& request,
                     const Locale& locale, Visit&& visit) {
  FileTime start = 0;
  FileTime end = 0;
  if (!RangeToFileTimes(request.range, &start, &end)) return;
  TimeEntry entry;
  for (ObjectId id = entries.SeekValue(SeekType::kValueGreater,
                                       PropValue::Number(kPropStart, start));
       id != 0; id = entries.Seek(SeekType::kCurrent, 1)) {
    if (ReadEntry(entries, &entry) != 0 || entry.start > end) break;
    if (Matches(request.criteria, entry, locale)) visit(entry);
  }
}

// The places of `values` in report order: a stable sort by the group key.
// Text values are ranked once per distinct spelling (the locale orders the
// few distinct spellings, spellings it finds equal share a rank), then the
// entries are ordered by rank, which gives exactly the order of a stable sort
// with the locale's comparison at a fraction of the comparisons.
std::vector<std::size_t> ReportOrder(const GroupKey& key,
                                     const std::vector<GroupValue>& values) {
  std::vector<std::size_t> order(values.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  if (!key.IsText()) {
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
      return values[a].number < values[b].number;
    });
    return order;
  }
  struct SpellingHash {
    std::size_t operator()(const GroupValue& v) const {
      const std::size_t h = std::hash<std::u16string>()(v.text);
      return h ^ (std::hash<std::u16string>()(v.second_text) + 0x9e3779b97f4a7c15ULL +
                  (h << 6) + (h >> 2));
    }
  };
  struct SpellingEqual {
    bool operator()(const GroupValue& a, const GroupValue& b) const {
      return a.text == b.text && a.second_text == b.second_text;
    }
  };
  std::unordered_map<GroupValue, std::size_t, SpellingHash, SpellingEqual> spelling;
  std::vector<std::size_t> spelling_of(values.size());
  std::vector<const GroupValue*> distinct;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const auto [it, added] = spelling.try_emplace(values[i], distinct.size());
    if (added) distinct.push_back(&it->first);
    spelling_of[i] = it->second;
  }
  std::vector<std::size_t> by_value(distinct.size());
  for (std::size_t i = 0; i < by_value.size(); ++i) by_value[i] = i;
  std::stable_sort(by_value.begin(), by_value.end(), [&](std::size_t a, std::size_t b) {
    return key.Compare(*distinct[a], *distinct[b]) < 0;
  });
  std::vector<std::size_t> rank(distinct.size());
  for (std::size_t i = 0; i < by_value.size(); ++i) {
    const bool same =
        i > 0 && key.Compare(*distinct[by_value[i - 1]], *distinct[by_value[i]]) == 0;
    rank[by_value[i]] = same ? rank[by_value[i - 1]] : i;
  }
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return rank[spelling_of[a]] < rank[spelling_of[b]];
  });
  return order;
}

// Feeds the builder entry by entry in report order, opening and closing the
// groups of a "Group By Field" report.
class ReportFeed {
 public:
  ReportFeed(ReportBuilder& builder, const HtmlReportRequest& request,
             const Settings& settings, const Locale& locale)
      : builder_(builder),
        grouped_(request.definition.detail_type != kReportTabular),
        key_(request.definition, settings, locale) {
    builder_.Head();
    if (!grouped_) builder_.OpenGroup(nullptr);
  }

  void Add(const TimeEntry& entry) {
    if (grouped_ && key_.StartsNewGroup(entry)) {
      if (open_) builder_.CloseGroup();
      const std::u16string heading = key_.HeadingText();
      builder_.OpenGroup(&heading);
      open_ = true;
    }
    builder_.Entry(entry);
  }

  std::u16string Finish() {
    // Without any group the total row goes straight into "body" and the step
    // out leaves "body", so the footer follows it inside "html".
    builder_.CloseGroup();
    builder_.Footer();
    return builder_.Text();
  }

 private:
  ReportBuilder& builder_;
  bool grouped_;
  GroupKey key_;
  bool open_ = false;
};

// The report in one pass over the store: each entry is read once. Entries in
// store order go to the document as they are read; a sorted report keeps them
// with their group values until the walk ends.
std::u16string SelectAndBuild(EntryStore& entries, const HtmlReportRequest& request,
                              const Settings& settings, const Locale& locale) {
  const GroupKey key(request.definition, settings, locale);
  const bool sort =
      request.definition.detail_type == kReportGroupByField && key.NeedsSort();
  ReportBuilder builder(request, settings, locale);
  ReportFeed feed(builder, request, settings, locale);
  if (!sort) {
    WalkReportRange(entries, request, locale,
                    [&](const TimeEntry& entry) { feed.Add(entry); });
    return feed.Finish();
  }
  std::vector<TimeEntry> kept;
  std::vector<GroupValue> values;
  WalkReportRange(entries, request, locale, [&](const TimeEntry& entry) {
    values.push_back(key.ValueOf(entry));
    kept.push_back(entry);
  });
  for (std::size_t i : ReportOrder(key, values)) feed.Add(kept[i]);
  return feed.Finish();
}

}  // namespace

std::vector<ObjectId> SelectReportEntries(EntryStore& entries,
                                          const HtmlReportRequest& request,
                                          const Settings& settings,
                                          const Locale& locale) {
  const GroupKey key(request.definition, settings, locale);
  const bool sort =
      request.definition.detail_type == kReportGroupByField && key.NeedsSort();
  std::vector<ObjectId> ids;
  std::vector<GroupValue> values;
  WalkReportRange(entries, request, locale, [&](const TimeEntry& entry) {
    ids.push_back(entry.recordId);
    if (sort) values.push_back(key.ValueOf(entry));
  });
  if (!sort) return ids;
  std::vector<ObjectId> sorted;
  sorted.reserve(ids.size());
  for (std::size_t i : ReportOrder(key, values)) sorted.push_back(ids[i]);
  return sorted;
}

std::u16string BuildHtmlReport(EntryStore& entries, const std::vector<ObjectId>& ids,
                               const HtmlReportRequest& request, const Settings& settings,
                               const Locale& locale) {
  ReportBuilder builder(request, settings, locale);
  ReportFeed feed(builder, request, settings, locale);
  TimeEntry entry;
  for (ObjectId id : ids) {
    if (ReadEntryById(entries, id, &entry)) feed.Add(entry);
  }
  return feed.Finish();
}

bool WriteHtmlReport(FileSystem& files, const std::string& path,
                     const std::u16string& document, int code_page) {
  // Counted first, so the text is allocated once at its final size; the runs
  // between the "/>" are copied whole.
  const std::size_t size = document.size();
  std::size_t closers = 0;
  for (std::size_t i = 0; i + 1 < size; ++i) {
    if (document[i] == u'/' && document[i + 1] == u'>') ++closers;
  }
  std::u16string text;
  text.reserve(size + closers);
  std::size_t copied = 0;
  for (std::size_t i = 0; i + 1 < size; ++i) {
    if (document[i] == u'/' && document[i + 1] == u'>') {
      text.append(document, copied, i - copied).push_back(u' ');
      copied = i;
    }
  }
  text.append(document, copied, size - copied);
  NarrowTextWriter writer(files, code_page);
  if (!writer.Open(path)) return false;
  const bool doctype_ok = writer.Write(kHtmlReportDoctype);
  const bool document_ok = writer.Write(text);
  return writer.Close() && doctype_ok && document_ok;
}

bool GenerateHtmlReport(EntryStore& entries, FileSystem& files, const std::string& path,
                        const HtmlReportRequest& request, const Settings& settings,
                        const Locale& locale) {
  const std::u16string document = SelectAndBuild(entries, request, settings, locale);
  return WriteHtmlReport(files, path, document, locale.AnsiCodePage());
}

}  // namespace quillora
