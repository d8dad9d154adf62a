#include "app/cli/entry_lookup.h"

#include <charconv>

#include "platform/text.h"
#include "store/string_table.h"

namespace quillora {

ObjectId ParseRecordId(const std::string& text) {
  unsigned long value = 0;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (ec != std::errc() || end != text.data() + text.size() || value == 0 ||
      value > 0xFFFFFFFFul) {
    return 0;
  }
  return static_cast<ObjectId>(value);
}

int TakeRecordId(Arguments& args, ObjectId* id) {
  const auto words = args.Positionals();
  if (!args.error().empty()) return UsageError(args.error());
  if (words.size() != 1) return UsageError("expected one record id");
  *id = ParseRecordId(words[0]);
  if (*id == 0) return UsageError("not a record id: " + words[0]);
  return kExitDone;
}

int LoadEntryById(CliContext& context, EntryStore& store, ObjectId id, TimeEntry* entry) {
  if (!store.Open()) return context.Fail(LoadString(kIdsUnableToLoadDatabase));
  if (store.Seek(SeekType::kObjectId, id) != id || ReadEntry(store, entry) != 0) {
    return context.Fail(u"There is no time entry with record id " +
                        WidenAscii(std::to_string(id)) + u".");
  }
  return kExitDone;
}

}  // namespace quillora
