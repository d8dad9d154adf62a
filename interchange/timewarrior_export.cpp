#include "interchange/timewarrior_export.h"

#include <cstdint>
#include <optional>

#include "interchange/json_reader.h"
#include "platform/text.h"
#include "timekeeping/duration.h"

namespace quillora {
namespace {

// "YYYYMMDDTHHMMSSZ" as a UTC calendar time; nothing for any other text or
// an impossible date.
std::optional<SystemTime> ParseTimewarriorTime(const std::u16string& text) {
  if (text.size() != 16 || text[8] != u'T' || text[15] != u'Z') return std::nullopt;
  int parts[6] = {};
  static constexpr int kAt[6] = {0, 4, 6, 9, 11, 13};
  static constexpr int kWidth[6] = {4, 2, 2, 2, 2, 2};
  for (int p = 0; p < 6; ++p) {
    for (int i = 0; i < kWidth[p]; ++i) {
      const char16_t c = text[kAt[p] + i];
      if (c < u'0' || c > u'9') return std::nullopt;
      parts[p] = parts[p] * 10 + (c - u'0');
    }
  }
  if (parts[0] < 1601 || parts[1] < 1 || parts[1] > 12 || parts[2] < 1 ||
      parts[2] > DaysInMonth(parts[0], parts[1]) || parts[3] > 23 || parts[4] > 59 ||
      parts[5] > 59) {
    return std::nullopt;
  }
  return MakeSystemTime(parts[0], parts[1], parts[2], parts[3], parts[4], parts[5]);
}

struct Tags {
  std::u16string* field;
  std::u16string_view prefix;
  bool set = false;
};

class IntervalReader {
 public:
  IntervalReader(const Settings& settings, const ImportDefaults& defaults)
      : settings_(settings), defaults_(defaults) {}

  // False with the error set for an interval of the wrong shape.
  bool Read(const JsonValue& interval, ImportedEntry* row, ImportedFile* file) {
    row->line = interval.line;
    auto refuse = [&](const char16_t* what) {
      file->error = what;
      file->error_line = interval.line;
      return false;
    };
    if (interval.type != JsonValue::Type::kObject) {
      return refuse(u"an interval is not a JSON object");
    }
    const JsonValue* start = interval.Member(u"start");
    const JsonValue* end = interval.Member(u"end");
    const JsonValue* tags = interval.Member(u"tags");
    const JsonValue* annotation = interval.Member(u"annotation");
    std::optional<SystemTime> start_utc;
    if (start == nullptr || start->type != JsonValue::Type::kString ||
        !(start_utc = ParseTimewarriorTime(start->text))) {
      return refuse(u"the interval has no start of the form YYYYMMDDTHHMMSSZ");
    }
    std::optional<SystemTime> end_utc;
    if (end != nullptr && (end->type != JsonValue::Type::kString ||
                           !(end_utc = ParseTimewarriorTime(end->text)))) {
      return refuse(u"the interval's end is not of the form YYYYMMDDTHHMMSSZ");
    }
    if (tags != nullptr && tags->type != JsonValue::Type::kArray) {
      return refuse(u"the interval's tags are not an array");
    }
    if (tags != nullptr) {
      for (const JsonValue& tag : tags->items) {
        if (tag.type != JsonValue::Type::kString) {
          return refuse(u"a tag of the interval is not a text");
        }
      }
    }
    if (annotation != nullptr && annotation->type != JsonValue::Type::kString) {
      return refuse(u"the interval's annotation is not a text");
    }

    TimeEntry& entry = row->entry;
    if (!end_utc) {
      row->skip = u"still running (no end)";
      return true;
    }
    const std::optional<SystemTime> local = LocalTimeFromUtc(*start_utc);
    if (!local || !StartImportedEntry(settings_, *local, true, &entry)) {
      row->skip = u"start outside the calendar";
      return true;
    }
    FileTime from = 0;
    FileTime to = 0;
    SystemTimeToFileTime(*start_utc, &from);
    SystemTimeToFileTime(*end_utc, &to);
    const std::int64_t seconds =
        (static_cast<std::int64_t>(to) - static_cast<std::int64_t>(from)) /
        static_cast<std::int64_t>(kTicksPerSecond);
    row->skip = SetImportedDuration(
        &entry, static_cast<double>(seconds) * kHoursPerSecond, settings_);
    if (!row->skip.empty()) return true;

    if (tags != nullptr) ApplyTags(tags->items, &entry);
    if (annotation != nullptr) SetImportedNote(annotation->text, &entry);
    row->skip = FinishImportedEntry(defaults_, &entry);
    return true;
  }

 private:
  static void ApplyTags(const std::vector<JsonValue>& items, TimeEntry* entry) {
    Tags kinds[] = {{&entry->client, u"client:"},
                    {&entry->project, u"project:"},
                    {&entry->phase, u"phase:"},
                    {&entry->task, u"task:"}};
    std::u16string rest;
    for (const JsonValue& tag : items) {
      bool kind_tag = false;
      for (Tags& kind : kinds) {
        if (std::u16string_view(tag.text).substr(0, kind.prefix.size()) != kind.prefix) {
          continue;
        }
        kind_tag = true;
        if (!kind.set) *kind.field = tag.text.substr(kind.prefix.size());
        kind.set = true;
        break;
      }
      if (kind_tag) continue;
      if (!rest.empty()) rest.push_back(u' ');
      rest += tag.text;
    }
    if (kinds[3].set) {
      entry->custom1 = std::move(rest);
    } else {
      entry->task = std::move(rest);
    }
  }

  const Settings& settings_;
  const ImportDefaults& defaults_;
};

}  // namespace

ImportedFile ReadTimewarriorExport(std::string_view bytes, const Settings& settings,
                                   const ImportDefaults& defaults) {
  ImportedFile file;
  IntervalReader reader(settings, defaults);
  JsonError error;
  const bool read = ReadJsonArray(
      bytes,
      [&](JsonValue&& interval) {
        file.rows.emplace_back();
        return reader.Read(interval, &file.rows.back(), &file);
      },
      &error);
  if (!read) {
    file.rows.clear();
    file.rows.shrink_to_fit();
    if (file.error.empty()) {
      file.error = FromUtf8(error.what);
      file.error_line = error.line;
    }
  }
  return file;
}

}  // namespace quillora
