// Renaming and moving in the catalogue tree: a project (with its tasks), a
// project's task, a task or a contact gets a new name, or goes over to
// another client. Entries copy names as text, so none of this touches a time
// entry. Where the new name or the other client has the item already, the
// two become one: the moved or renamed record is dropped, never doubled.
#ifndef QUILLORA_STORE_CATALOGUE_EDIT_H_
#define QUILLORA_STORE_CATALOGUE_EDIT_H_

#include <string>

#include "platform/locale.h"
#include "store/catalogue.h"

namespace quillora {

// Renames the project `from` of `client` (every record of it: the project and
// its tasks). The number of records renamed or merged; -1 when a write fails
// (the records done before stay done).
int RenameProject(ProjectStore& projects, const Locale& locale, ClientId client,
                  const std::u16string& from, const std::u16string& to);

// Rewrites one record of the projects database (a project's task) with the
// task name `to`; merged (deleted) when the project has that task already.
bool RenameProjectTask(ProjectStore& projects, const Locale& locale,
                       const ProjectRecord& record, const std::u16string& to);

// Renames one task or contact record ({1201, 1101}); merged (deleted) when
// the client has that name already.
bool RenameItem(RecordStore& store, const Locale& locale, const CatalogueItem& item,
                const std::u16string& to);

// Moves the project `project` of `from`, with all its tasks, to client `to`.
// The number of records moved or merged; -1 when a write fails (a record is
// deleted only after its copy was written).
int MoveProject(ProjectStore& projects, const Locale& locale, ClientId from, ClientId to,
                const std::u16string& project);

// Moves one task or contact record to client `to`; merged when `to` has it.
bool MoveItem(RecordStore& store, const Locale& locale, const CatalogueItem& item,
              ClientId to);

}  // namespace quillora

#endif  // QUILLORA_STORE_CATALOGUE_EDIT_H_
