#include "store/catalogue_edit.h"

#include <algorithm>
#include <vector>

namespace quillora {
namespace {

bool HasItem(RecordStore& store, const Locale& locale, ClientId client,
             const std::u16string& name, ObjectId except) {
  const std::vector<CatalogueItem> items = ItemsOf(store, client);
  return std::any_of(items.begin(), items.end(), [&](const CatalogueItem& i) {
    return i.record_id != except && locale.Equal(i.name, name);
  });
}

// Writes `record` over its own id, or drops it when its triple is there
// already under another record.
bool RewriteProject(ProjectStore& projects, const Locale& locale,
                    const ProjectRecord& record) {
  for (const ProjectRecord& r : ProjectRecords(projects, record.client)) {
    if (r.record_id != record.record_id && locale.Equal(r.project, record.project) &&
        locale.Equal(r.task, record.task)) {
      return projects.DeleteRecord(record.record_id);
    }
  }
  if (projects.Seek(SeekType::kObjectId, record.record_id) != record.record_id) return false;
  return UpdateProject(projects, record);
}

}  // namespace

int RenameProject(ProjectStore& projects, const Locale& locale, ClientId client,
                  const std::u16string& from, const std::u16string& to) {
  if (to.empty()) return 0;
  int done = 0;
  for (ProjectRecord r : ProjectRecords(projects, client)) {
    if (!locale.Equal(r.project, from)) continue;
    r.project = to;
    if (!RewriteProject(projects, locale, r)) return -1;
    ++done;
  }
  return done;
}

bool RenameProjectTask(ProjectStore& projects, const Locale& locale,
                       const ProjectRecord& record, const std::u16string& to) {
  if (to.empty()) return false;
  ProjectRecord renamed = record;
  renamed.task = to;
  return RewriteProject(projects, locale, renamed);
}

bool RenameItem(RecordStore& store, const Locale& locale, const CatalogueItem& item,
                const std::u16string& to) {
  if (to.empty()) return false;
  if (HasItem(store, locale, item.client, to, item.record_id)) {
    return store.DeleteRecord(item.record_id);
  }
  return store.WriteProps(item.record_id, {PropValue::Number(kPropClientId, item.client),
                                           PropValue::Text(kPropItemName, to)}) != 0;
}

int MoveProject(ProjectStore& projects, const Locale& locale, ClientId from, ClientId to,
                const std::u16string& project) {
  if (from == to) return 0;
  int done = 0;
  for (const ProjectRecord& r : ProjectRecords(projects, from)) {
    if (!locale.Equal(r.project, project)) continue;
    if (AddProject(projects, locale, to, r.project, r.task) == 0 &&
        !IsDuplicate(projects, locale, to, r.project, r.task)) {
      return -1;
    }
    if (!projects.DeleteRecord(r.record_id)) return -1;
    ++done;
  }
  return done;
}

bool MoveItem(RecordStore& store, const Locale& locale, const CatalogueItem& item,
              ClientId to) {
  if (item.client == to) return true;
  if (AddItem(store, locale, to, item.name) == 0 &&
      !HasItem(store, locale, to, item.name, 0)) {
    return false;
  }
  return store.DeleteRecord(item.record_id);
}

}  // namespace quillora
