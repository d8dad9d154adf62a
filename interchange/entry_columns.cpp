#include "interchange/entry_columns.h"

#include <climits>

namespace quillora {
namespace {

struct FieldName {
  EntryColumn column;
  const char16_t* name;
};

constexpr FieldName kFieldNames[] = {
    {EntryColumn::kIgnore, u"ignore"},
    {EntryColumn::kDate, u"date"},
    {EntryColumn::kStart, u"start"},
    {EntryColumn::kEndDate, u"endDate"},
    {EntryColumn::kEnd, u"end"},
    {EntryColumn::kDuration, u"duration"},
    {EntryColumn::kClient, u"client"},
    {EntryColumn::kProject, u"project"},
    {EntryColumn::kPhase, u"phase"},
    {EntryColumn::kTask, u"task"},
    {EntryColumn::kDescription, u"description"},
    {EntryColumn::kNote, u"note"},
    {EntryColumn::kBillable, u"billable"},
    {EntryColumn::kPaid, u"paid"},
    {EntryColumn::kBillTo, u"billTo"},
    {EntryColumn::kRate, u"rate"},
    {EntryColumn::kCurrency, u"currency"},
    {EntryColumn::kTags, u"tags"},
    {EntryColumn::kCustom1, u"custom1"},
    {EntryColumn::kCustom2, u"custom2"},
    {EntryColumn::kCustom3, u"custom3"},
};

// The recognised headers, lower case, in rank order: where a file has
// several columns for one field, the earlier header here wins. "(*)" at the
// end stands for any text in parentheses ("Billable Rate (USD)"). Sources:
// docs/import.md.
struct KnownHeader {
  std::u16string_view header;
  EntryColumn column;
};

constexpr KnownHeader kKnownHeaders[] = {
    {u"start date", EntryColumn::kDate},              // Toggl Track, Clockify
    {u"date", EntryColumn::kDate},                    // Kimai
    {u"start time", EntryColumn::kStart},             // Toggl Track, Clockify
    {u"from", EntryColumn::kStart},                   // Kimai
    {u"start", EntryColumn::kStart},                  // solidtime (date and time)
    {u"end date", EntryColumn::kEndDate},             // Toggl Track, Clockify
    {u"end time", EntryColumn::kEnd},                 // Toggl Track, Clockify
    {u"to", EntryColumn::kEnd},                       // Kimai
    {u"end", EntryColumn::kEnd},                      // solidtime (date and time)
    {u"duration (h)", EntryColumn::kDuration},        // Clockify, H:MM:SS
    {u"duration", EntryColumn::kDuration},            // Toggl Track, Kimai, solidtime
    {u"duration (decimal)", EntryColumn::kDuration},  // Clockify, solidtime
    {u"client", EntryColumn::kClient},                // Toggl Track, Clockify, solidtime
    {u"customer", EntryColumn::kClient},              // Kimai
    {u"project", EntryColumn::kProject},              // all four
    {u"phase", EntryColumn::kPhase},
    {u"task", EntryColumn::kTask},                // Toggl Track, Clockify, solidtime
    {u"activity", EntryColumn::kTask},            // Kimai
    {u"description", EntryColumn::kDescription},  // all four
    {u"note", EntryColumn::kNote},
    {u"notes", EntryColumn::kNote},
    {u"billable", EntryColumn::kBillable},  // Toggl Track, Clockify, Kimai, solidtime
    {u"paid", EntryColumn::kPaid},
    {u"bill to", EntryColumn::kBillTo},
    {u"hourly rate", EntryColumn::kRate},        // Kimai
    {u"billable rate (*)", EntryColumn::kRate},  // Clockify
    {u"rate", EntryColumn::kRate},
    {u"currency", EntryColumn::kCurrency},  // Kimai
    {u"tags", EntryColumn::kTags},          // all four
};

char16_t Lower(char16_t c) { return c >= u'A' && c <= u'Z' ? c + (u'a' - u'A') : c; }

std::u16string Folded(std::u16string_view text) {
  while (!text.empty() && (text.front() == u' ' || text.front() == u'\t')) {
    text.remove_prefix(1);
  }
  while (!text.empty() && (text.back() == u' ' || text.back() == u'\t')) {
    text.remove_suffix(1);
  }
  std::u16string out(text);
  for (char16_t& c : out) c = Lower(c);
  return out;
}

bool HeaderMatches(std::u16string_view known, const std::u16string& folded) {
  constexpr std::u16string_view kAny = u"(*)";
  if (known.size() >= kAny.size() && known.substr(known.size() - kAny.size()) == kAny) {
    const std::u16string_view stem = known.substr(0, known.size() - kAny.size());
    return folded.size() > stem.size() + 1 && folded.compare(0, stem.size(), stem) == 0 &&
           folded[stem.size()] == u'(' && folded.back() == u')';
  }
  return folded == known;
}

}  // namespace

bool SameHeader(std::u16string_view a, std::u16string_view b) {
  return Folded(a) == Folded(b);
}

std::optional<EntryColumn> EntryColumnNamed(std::u16string_view name) {
  const std::u16string folded = Folded(name);
  for (const FieldName& f : kFieldNames) {
    if (Folded(f.name) == folded) return f.column;
  }
  return std::nullopt;
}

const char16_t* EntryColumnName(EntryColumn column) {
  for (const FieldName& f : kFieldNames) {
    if (f.column == column) return f.name;
  }
  return u"ignore";
}

std::u16string EntryColumnNames() {
  std::u16string out;
  for (const FieldName& f : kFieldNames) {
    if (!out.empty()) out += u", ";
    out += f.name;
  }
  return out;
}

std::optional<ColumnMapping> ParseColumnMapping(std::u16string_view text) {
  const std::size_t eq = text.rfind(u'=');
  if (eq == std::u16string_view::npos || eq == 0) return std::nullopt;
  const auto column = EntryColumnNamed(text.substr(eq + 1));
  if (!column) return std::nullopt;
  return ColumnMapping{std::u16string(text.substr(0, eq)), *column};
}

std::vector<EntryColumn> RecognizeColumns(const std::vector<std::u16string>& header,
                                          const std::vector<ColumnMapping>& mappings) {
  std::vector<EntryColumn> columns(header.size(), EntryColumn::kIgnore);
  std::vector<int> ranks(header.size(), INT_MAX);
  for (std::size_t i = 0; i < header.size(); ++i) {
    const std::u16string folded = Folded(header[i]);
    bool mapped = false;
    // The user's mappings rank above the table, the last one given first.
    for (std::size_t m = mappings.size(); m-- > 0;) {
      if (Folded(mappings[m].header) == folded) {
        columns[i] = mappings[m].column;
        ranks[i] = -1;
        mapped = true;
        break;
      }
    }
    if (mapped) continue;
    for (std::size_t k = 0; k < std::size(kKnownHeaders); ++k) {
      if (HeaderMatches(kKnownHeaders[k].header, folded)) {
        columns[i] = kKnownHeaders[k].column;
        ranks[i] = static_cast<int>(k);
        break;
      }
    }
  }
  // One column a field: the best rank, then the leftmost.
  std::vector<std::size_t> best(std::size(kFieldNames), header.size());
  for (std::size_t i = 0; i < columns.size(); ++i) {
    std::size_t& b = best[static_cast<std::size_t>(columns[i])];
    if (b == header.size() || ranks[i] < ranks[b]) b = i;
  }
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (best[static_cast<std::size_t>(columns[i])] != i)
      columns[i] = EntryColumn::kIgnore;
  }
  return columns;
}

}  // namespace quillora
