// Commands on single time entries: show, delete.
#include <charconv>
#include <cstdio>
#include <memory>

#include "app/cli/cli_commands.h"
#include "app/cli/entry_lookup.h"
#include "platform/text.h"
#include "store/note_text.h"
#include "store/string_table.h"
#include "store/time_entry.h"
#include "timekeeping/duration.h"

namespace quillora {
namespace {

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

// Reads the entry of the record id argument, leaving `store` on it.
int TakeEntry(CliContext& context, Arguments& args, std::unique_ptr<EntryStore>* store,
              TimeEntry* entry) {
  ObjectId id = 0;
  if (const int status = TakeRecordId(args, &id)) return status;
  if (!context.OpenData()) return kExitFailed;
  *store = std::make_unique<EntryStore>(*context.data.volume);
  return LoadEntryById(context, **store, id, entry);
}

int Show(CliContext& context, Arguments& args) {
  std::unique_ptr<EntryStore> store;
  TimeEntry e;
  if (const int status = TakeEntry(context, args, &store, &e)) return status;
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
  std::unique_ptr<EntryStore> store;
  TimeEntry e;
  if (const int status = TakeEntry(context, args, &store, &e)) return status;
  if (context.prompt->Ask(kAppTitle, LoadString(kIdsDeleteItemQuestion),
                          MessageIcon::kWarning, QuestionButtons::kYesNo,
                          Answer::kNo) != Answer::kYes) {
    return kExitFailed;
  }
  if (!DeleteEntry(*store, e)) return context.Fail(u"Unable to delete the time entry.");
  return kExitDone;
}

}  // namespace

const Command kShowCommand = {"show", "show ID", "print one time entry, a field a line", "",
                              Show};
const Command kDeleteCommand = {"delete", "delete ID", "delete one time entry (asks first)",
                                "", Delete};

}  // namespace quillora
