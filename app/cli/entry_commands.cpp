// Commands on single time entries: show, delete.
#include <charconv>
#include <cstdio>

#include "app/cli/cli_commands.h"
#include "platform/text.h"
#include "store/note_text.h"
#include "store/time_entry.h"
#include "timekeeping/duration.h"

namespace quillora {
namespace {

// Reads a record id argument; 0 when it is not a positive number.
ObjectId ParseRecordId(const std::string& text) {
  unsigned long value = 0;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (ec != std::errc() || end != text.data() + text.size() || value == 0 ||
      value > 0xFFFFFFFFul) {
    return 0;
  }
  return static_cast<ObjectId>(value);
}

// Takes the one positional argument, a record id. Answers an exit status
// other than 0 when it is missing or not a record id.
int TakeRecordId(Arguments& args, ObjectId* id) {
  const auto words = args.Positionals();
  if (!args.error().empty()) return UsageError(args.error());
  if (words.size() != 1) return UsageError("expected one record id");
  *id = ParseRecordId(words[0]);
  if (*id == 0) return UsageError("not a record id: " + words[0]);
  return kExitDone;
}

// Reads the entry with record id `id`, leaving the store on its record.
int LoadEntry(CliContext& context, EntryStore& store, ObjectId id, TimeEntry* entry) {
  if (!store.Open()) return context.Fail(u"Unable to load database.");
  if (store.Seek(SeekType::kObjectId, id) != id || ReadEntry(store, entry) != 0) {
    return context.Fail(u"There is no time entry with record id " +
                        WidenAscii(std::to_string(id)) + u".");
  }
  return kExitDone;
}

// The amount as the shortest text that reads back as the same double.
std::string AmountText(double amount) {
  char buf[64];
  const auto [end, ec] = std::to_chars(buf, buf + sizeof buf, amount);
  return ec == std::errc() ? std::string(buf, end) : std::string();
}

std::string EscapeNote(const std::u16string& text) {
  std::string out;
  for (char c : ToUtf8(text)) {
    switch (c) {
      case '\r': out += "\\r"; break;
      case '\n': out += "\\n"; break;
      case '\\': out += "\\\\"; break;
      default: out += c; break;
    }
  }
  return out;
}

int Show(CliContext& context, Arguments& args) {
  ObjectId id = 0;
  if (const int status = TakeRecordId(args, &id)) return status;
  if (!context.OpenData()) return kExitFailed;
  EntryStore store(*context.data.volume);
  TimeEntry e;
  if (const int status = LoadEntry(context, store, id, &e)) return status;
  SystemTime start;
  FileTimeToSystemTime(e.start, &start);
  const std::u16string note = NoteBlobToText(e.note.data(), e.note.size());
  std::printf(
      "recordId=%u\nstart=%s\nclient=%s\nproject=%s\nphase=%s\ntask=%s\nduration=%u\n"
      "rate=%u\nrateType=%u\ncurrency=%s\nbillable=%d\npaid=%d\nbillTo=%s\ncustom1=%s\n"
      "custom2=%s\ncustom3=%s\nnoteSize=%d\nnote=%s\namount=%s\n",
      e.recordId, FormatIsoDateTime(start).c_str(), ToUtf8(e.client).c_str(),
      ToUtf8(e.project).c_str(), ToUtf8(e.phase).c_str(), ToUtf8(e.task).c_str(),
      e.duration, e.rate, e.rateType, ToUtf8(e.currency).c_str(), e.billable ? 1 : 0,
      e.paid ? 1 : 0, ToUtf8(e.billTo).c_str(), ToUtf8(e.custom1).c_str(),
      ToUtf8(e.custom2).c_str(), ToUtf8(e.custom3).c_str(), e.noteSize,
      EscapeNote(note).c_str(), AmountText(EntryAmount(e, context.data.settings)).c_str());
  return kExitDone;
}

int Delete(CliContext& context, Arguments& args) {
  ObjectId id = 0;
  if (const int status = TakeRecordId(args, &id)) return status;
  if (!context.OpenData()) return kExitFailed;
  EntryStore store(*context.data.volume);
  TimeEntry e;
  if (const int status = LoadEntry(context, store, id, &e)) return status;
  if (context.prompt->Ask(u"Quillora", u"Are you sure to permanently delete this item?",
                          MessageIcon::kWarning, QuestionButtons::kYesNo,
                          Answer::kNo) != Answer::kYes) {
    return kExitFailed;
  }
  if (!DeleteEntry(store, e)) return context.Fail(u"Unable to delete the time entry.");
  return kExitDone;
}

}  // namespace

const Command kShowCommand = {"show", "show ID", "print one time entry, a field a line", "",
                              Show};
const Command kDeleteCommand = {"delete", "delete ID", "delete one time entry (asks first)",
                                "", Delete};

}  // namespace quillora
