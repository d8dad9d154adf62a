#include "reports/html_report.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <functional>
#include <iterator>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "markup/markup_document.h"
#include "markup/markup_stream.h"
#include "platform/narrow_text_writer.h"
#include "platform/text_pipe.h"
#include "reports/report_editor.h"
#include "store/entry_read_ahead.h"
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
      return FormatHundredths(entry.duration);
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
      return FormatHundredths(entry.rate);
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
    if (IsText()) return CompareTexts(a.text, a.second_text, b.text, b.second_text);
    return a.number < b.number ? -1 : a.number > b.number ? 1 : 0;
  }

  // True for the first entry and whenever the entry's value differs from the
  // open group's; the entry's value then becomes the open group's.
  bool StartsNewGroup(const TimeEntry& entry) {
    if (kind_ == Kind::kNone && open_) return false;
    if (open_ && SameAsOpenGroup(entry)) return false;
    current_ = ValueOf(entry);
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

  // The same spelling always collates equal; only differing texts need the
  // locale.
  int CompareTexts(std::u16string_view a, std::u16string_view a_second,
                   std::u16string_view b, std::u16string_view b_second) const {
    if (a == b && a_second == b_second) return 0;
    const int first = locale_.Compare(a, b);
    return first != 0 ? first : locale_.Compare(a_second, b_second);
  }

  // Compares the entry's texts where they stand, without copying them.
  bool SameAsOpenGroup(const TimeEntry& entry) const {
    switch (kind_) {
      case Kind::kText:
        return CompareTexts(FieldText(entry, field_), {}, current_.text, {}) == 0;
      case Kind::kProjectTask:
        return CompareTexts(entry.project, entry.task, current_.text,
                            current_.second_text) == 0;
      default:
        return Compare(ValueOf(entry), current_) == 0;
    }
  }

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

// What one entry adds to the sums of its group and of the report.
struct RowSums {
  double hours;
  double amount;
  bool billable;
  bool paid;
};

struct Sums {
  double billable_hours = 0;
  double non_billable_hours = 0;
  double paid_amount = 0;
  double unpaid_amount = 0;
};

// Builds the document element by element into a MarkupStream: "html" and
// "body" and each group's "table" stay open while their rows are written.
class ReportBuilder {
 public:
  ReportBuilder(const HtmlReportRequest& request, const Settings& settings,
                const Locale& locale, MarkupStream& stream)
      : request_(request), settings_(settings), locale_(locale), stream_(stream) {
    const ReportDefinition& d = request.definition;
    for (int slot = 0; slot < kReportFieldCount; ++slot) {
      const int field = d.ColumnField(slot);
      if (field >= 0 && d.IsShown(field)) columns_.push_back(field);
    }
  }

  void Head() {
    const std::u16string title = request_.definition.Title();
    stream_.Open(u"html");
    stream_.Attribute(u"xmlns", kXhtmlNamespace);
    doc_.Clear();
    doc_.AddElement(u"head");
    doc_.AddChildElement(u"title", title);
    doc_.AddChildElement(u"meta");
    doc_.AddChildAttribute(u"name", u"Generator");
    doc_.AddChildAttribute(u"content", u"Quillora");
    doc_.AddChildElement(u"style", kStyleText);
    doc_.AddChildAttribute(u"type", u"text/css");
    stream_.Add(doc_);
    stream_.Open(u"body");
    Element(u"h1", title);
    Element(u"h2", DateLine());
  }

  void OpenGroup(const std::u16string* heading) {
    group_hours_ = 0;
    group_amount_ = 0;
    if (heading != nullptr) {
      if (request_.definition.hide_group_title == 1) {
        Element(u"hr", {});
      } else {
        Element(u"h3", *heading);
      }
    }
    stream_.Open(u"table");
    stream_.Attribute(u"border", u"0");
    stream_.Attribute(u"class", u"Data");
    stream_.Attribute(u"cellpadding", u"2");
    doc_.Clear();
    doc_.AddElement(u"tr");
    for (int field : columns_) {
      doc_.AddChildElement(u"th", FieldLabel(field, settings_));
      doc_.AddChildAttribute(u"class", u"Data");
    }
    stream_.Add(doc_);
  }

  // The row of an entry and what it adds to the sums.
  RowSums SumsOf(const TimeEntry& entry) const {
    return {entry.duration * 0.01, EntryAmount(entry, settings_), entry.billable,
            entry.paid};
  }

  // Builds the row of an entry; its text stays valid until the next row.
  std::u16string_view Row(const TimeEntry& entry, double amount) {
    doc_.Clear();
    doc_.AddElement(u"tr");
    for (int field : columns_) {
      if (IsTextField(field)) {
        Cell(FieldText(entry, field), false);
      } else {
        Cell(field == kFieldAmount ? FormatTwoDecimals(amount)
                                   : CellText(entry, field, settings_, locale_),
             IsRightAligned(field));
      }
    }
    return doc_.DocumentText();
  }

  void Entry(const TimeEntry& entry) {
    const RowSums sums = SumsOf(entry);
    BuiltEntry(Row(entry, sums.amount), sums);
  }

  // A row built earlier, counted in the sums where it is written.
  void BuiltEntry(std::u16string_view row, const RowSums& sums) {
    group_hours_ += sums.hours;
    group_amount_ += sums.amount;
    if (sums.billable) {
      sums_.billable_hours += sums.hours;
      (sums.paid ? sums_.paid_amount : sums_.unpaid_amount) += sums.amount;
    } else {
      sums_.non_billable_hours += sums.hours;
    }
    stream_.Add(row);
  }

  // The total row of the open table, which it closes; when no table was
  // opened the row goes into "body", and "body" is closed instead.
  void CloseGroup() {
    doc_.Clear();
    doc_.AddElement(u"tr");
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
    stream_.Add(doc_);
    stream_.Close();
  }

  void Footer() {
    const ReportDefinition& d = request_.definition;
    doc_.Clear();
    doc_.AddElement(u"p");
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
    stream_.Add(doc_);
  }

 private:
  static bool IsRightAligned(int field) {
    return field == kFieldAmount || field == kFieldDuration || field == kFieldRate;
  }

  // An element of its own with a text (or none).
  void Element(std::u16string_view name, std::u16string_view text) {
    doc_.Clear();
    doc_.AddElement(name, text);
    stream_.Add(doc_);
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
  MarkupStream& stream_;
  // The element being built: the head, a heading, a row, the footer.
  MarkupDocument doc_;
  std::vector<int> columns_;
  Sums sums_;
  double group_hours_ = 0;
  double group_amount_ = 0;
};

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
  EntryReadAhead read(entries, start, end);
  while (TimeEntry* entry = read.Next()) {
    if (Matches(request.criteria, *entry, locale)) visit(*entry);
  }
}

// The rows of a sorted report, built during the walk and kept in one bucket
// per distinct group value (walk order within each), then handed out in
// report order: the order of a stable sort by the group key. The locale
// orders only the distinct values; values it finds equal make one group,
// whose rows come in walk order. A row does not depend on its place, so
// building the rows overlaps the reading of the entries.
class GroupBuckets {
 public:
  explicit GroupBuckets(const GroupKey& key) : key_(key) {}

  void Add(const TimeEntry& entry, std::u16string_view row, const RowSums& sums) {
    const auto [it, added] = index_.try_emplace(key_.ValueOf(entry), buckets_.size());
    if (added) buckets_.push_back({&it->first, entry, walked_, {}, {}});
    Bucket& bucket = buckets_[it->second];
    // The rows lie in blocks that are never moved once written.
    if (bucket.blocks.empty() ||
        bucket.blocks.back().size() + row.size() > bucket.blocks.back().capacity()) {
      bucket.blocks.emplace_back().reserve(std::max(kBlockSize, row.size()));
    }
    std::u16string& block = bucket.blocks.back();
    bucket.rows.push_back(
        {walked_++, bucket.blocks.size() - 1, block.size(), row.size(), sums});
    block.append(row);
  }

  // Calls visit(first entry of the group, row, sums) for every row in
  // report order.
  template <typename Visit>
  void ForEachInOrder(Visit&& visit) {
    std::vector<std::size_t> order(buckets_.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
      return key_.Compare(*buckets_[a].value, *buckets_[b].value) < 0;
    });
    for (std::size_t first = 0; first < order.size();) {
      std::size_t last = first + 1;
      while (last < order.size() && key_.Compare(*buckets_[order[first]].value,
                                                 *buckets_[order[last]].value) == 0) {
        ++last;
      }
      if (last == first + 1) {
        const Bucket& bucket = buckets_[order[first]];
        for (const Row& row : bucket.rows) {
          visit(bucket.first, TextOf(bucket, row), row.sums);
        }
      } else {
        VisitMerged(order.begin() + first, order.begin() + last, visit);
      }
      first = last;
    }
  }

 private:
  static constexpr std::size_t kBlockSize = std::size_t{32} * 1024;

  struct Row {
    std::size_t walked;
    std::size_t block;
    std::size_t at;
    std::size_t length;
    RowSums sums;
  };
  struct Bucket {
    const GroupValue* value;
    TimeEntry first;
    std::size_t first_walked;
    std::vector<Row> rows;
    std::vector<std::u16string> blocks;
  };

  static std::u16string_view TextOf(const Bucket& bucket, const Row& row) {
    return std::u16string_view(bucket.blocks[row.block]).substr(row.at, row.length);
  }

  // The rows of buckets that make one group, merged back into walk order;
  // the group's first entry is the earliest of theirs.
  template <typename Iterator, typename Visit>
  void VisitMerged(Iterator begin, Iterator end, Visit& visit) {
    const Bucket* earliest = &buckets_[*begin];
    std::vector<std::pair<const Row*, const Bucket*>> merged;
    for (Iterator it = begin; it != end; ++it) {
      const Bucket& bucket = buckets_[*it];
      if (bucket.first_walked < earliest->first_walked) earliest = &bucket;
      for (const Row& row : bucket.rows) merged.emplace_back(&row, &bucket);
    }
    std::sort(merged.begin(), merged.end(), [](const auto& a, const auto& b) {
      return a.first->walked < b.first->walked;
    });
    for (const auto& [row, bucket] : merged) {
      visit(earliest->first, TextOf(*bucket, *row), row->sums);
    }
  }

  struct ValueHash {
    std::size_t operator()(const GroupValue& v) const {
      const std::size_t h =
          std::hash<std::u16string>()(v.text) ^ std::hash<std::uint64_t>()(v.number);
      return h ^ (std::hash<std::u16string>()(v.second_text) + 0x9e3779b97f4a7c15ULL +
                  (h << 6) + (h >> 2));
    }
  };
  struct ValueEqual {
    bool operator()(const GroupValue& a, const GroupValue& b) const {
      return a.number == b.number && a.text == b.text && a.second_text == b.second_text;
    }
  };

  const GroupKey& key_;
  std::unordered_map<GroupValue, std::size_t, ValueHash, ValueEqual> index_;
  std::deque<Bucket> buckets_;
  std::size_t walked_ = 0;
};

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
    StartGroupIfNew(entry);
    builder_.Entry(entry);
  }

  // A row built earlier; `group_first` is the first entry of its group.
  void AddBuilt(const TimeEntry& group_first, std::u16string_view row,
                const RowSums& sums) {
    StartGroupIfNew(group_first);
    builder_.BuiltEntry(row, sums);
  }

  void StartGroupIfNew(const TimeEntry& entry) {
    if (grouped_ && key_.StartsNewGroup(entry)) {
      if (open_) builder_.CloseGroup();
      const std::u16string heading = key_.HeadingText();
      builder_.OpenGroup(&heading);
      open_ = true;
    }
  }

  void Finish() {
    // Without any group the total row goes straight into "body" and "body"
    // is closed, so the footer follows it inside "html".
    builder_.CloseGroup();
    builder_.Footer();
  }

 private:
  ReportBuilder& builder_;
  bool grouped_;
  GroupKey key_;
  bool open_ = false;
};

// The text with every "/>" written as " />". A '/' that ends a piece waits
// for the next one.
class SpacedCloser {
 public:
  // The piece as it is written; valid until the next call.
  std::u16string_view Spaced(std::u16string_view piece) {
    text_.clear();
    if (held_) text_.append(!piece.empty() && piece[0] == u'>' ? u" /" : u"/");
    held_ = !piece.empty() && piece.back() == u'/';
    if (held_) piece.remove_suffix(1);
    // The runs between the "/>" are copied whole.
    std::size_t copied = 0;
    for (std::size_t i = 0; i + 1 < piece.size(); ++i) {
      if (piece[i] == u'/' && piece[i + 1] == u'>') {
        text_.append(piece.substr(copied, i - copied)).push_back(u' ');
        copied = i;
      }
    }
    text_.append(piece.substr(copied));
    return text_;
  }

  // What is still held at the end.
  std::u16string_view Rest() const { return held_ ? u"/" : u""; }

 private:
  std::u16string text_;
  bool held_ = false;
};

}  // namespace

bool StreamHtmlReport(EntryStore& entries, const HtmlReportRequest& request,
                      const Settings& settings, const Locale& locale,
                      const MarkupStream::Sink& sink) {
  MarkupStream stream(sink);
  ReportBuilder builder(request, settings, locale, stream);
  ReportFeed feed(builder, request, settings, locale);
  const GroupKey key(request.definition, settings, locale);
  const bool sort =
      request.definition.detail_type == kReportGroupByField && key.NeedsSort();
  if (!sort) {
    // Entries in store order go to the document as they are read.
    WalkReportRange(entries, request, locale, [&](const TimeEntry& entry) {
      if (stream.ok()) feed.Add(entry);
    });
  } else {
    // A sorted report builds its rows as the entries are read and writes
    // them in order once the walk has ended; each entry is read once.
    GroupBuckets buckets(key);
    WalkReportRange(entries, request, locale, [&](const TimeEntry& entry) {
      const RowSums sums = builder.SumsOf(entry);
      buckets.Add(entry, builder.Row(entry, sums.amount), sums);
    });
    buckets.ForEachInOrder(
        [&](const TimeEntry& group_first, std::u16string_view row, const RowSums& sums) {
          if (stream.ok()) feed.AddBuilt(group_first, row, sums);
        });
  }
  feed.Finish();
  return stream.Finish();
}

std::u16string HtmlReportDocument(EntryStore& entries, const HtmlReportRequest& request,
                                  const Settings& settings, const Locale& locale) {
  std::u16string document;
  StreamHtmlReport(entries, request, settings, locale, [&](std::u16string_view piece) {
    document.append(piece);
    return true;
  });
  return document;
}

bool GenerateHtmlReport(EntryStore& entries, FileSystem& files, const std::string& path,
                        const HtmlReportRequest& request, const Settings& settings,
                        const Locale& locale) {
  NarrowTextWriter writer(files, locale.AnsiCodePage());
  if (!writer.Open(path)) return false;
  // The document is written even when the document type could not be.
  const bool doctype_ok = writer.Write(kHtmlReportDoctype);
  SpacedCloser closer;
  // The pieces are converted and written on a second thread while the next
  // ones are built.
  TextPipe pipe(
      [&](std::u16string_view piece) { return writer.WritePart(closer.Spaced(piece)); });
  const bool streamed =
      StreamHtmlReport(entries, request, settings, locale,
                       [&](std::u16string_view piece) { return pipe.Put(piece); });
  const bool piped = pipe.Finish();
  const std::u16string_view rest = closer.Rest();
  const bool document_ok =
      streamed && piped && (rest.empty() || writer.WritePart(rest)) && writer.EndParts();
  return writer.Close() && doctype_ok && document_ok;
}

}  // namespace quillora
