// The one record id that show, delete, edit and copy take, and reading the
// entry it names.
#ifndef QUILLORA_APP_CLI_ENTRY_LOOKUP_H_
#define QUILLORA_APP_CLI_ENTRY_LOOKUP_H_

#include <string>

#include "app/cli/arguments.h"
#include "app/cli/cli_context.h"
#include "store/record_store.h"
#include "store/time_entry.h"

namespace quillora {

// A record id argument: a positive number that fits 32 bits; 0 otherwise.
ObjectId ParseRecordId(const std::string& text);

// Takes the one positional argument, a record id. An exit status other than
// 0 (after the usage error) when it is missing, not alone or not a record id.
int TakeRecordId(Arguments& args, ObjectId* id);

// Opens `store` and reads the entry `id`, leaving the store on its record; an
// exit status other than 0 after the message when that fails.
int LoadEntryById(CliContext& context, EntryStore& store, ObjectId id, TimeEntry* entry);

}  // namespace quillora

#endif  // QUILLORA_APP_CLI_ENTRY_LOOKUP_H_
