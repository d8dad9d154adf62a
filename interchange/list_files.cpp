#include "interchange/list_files.h"

#include <algorithm>
#include <new>

#include "platform/code_page.h"
#include "platform/narrow_text_writer.h"
#include "platform/text.h"
#include "store/client_store.h"
#include "store/name_text.h"
#include "store/string_table.h"

namespace quillora {
namespace {

// The device mapped a list file with two zero bytes after its end, so that
// the content was terminated both as narrow and as wide text; reading stops
// at the first zero character either way.
constexpr char kTerminator[] = {'\0', '\0'};

bool IsLineBreak(char16_t c) { return c == u'\r' || c == u'\n'; }

const Project* FindProject(const std::vector<Project>& projects, const Locale& locale,
                           const std::u16string& name) {
  for (const Project& p : projects) {
    if (locale.Equal(p.name, name)) return &p;
  }
  return nullptr;
}

std::vector<std::u16string> NamesOf(std::vector<CatalogueItem> items) {
  std::vector<std::u16string> names;
  names.reserve(items.size());
  for (CatalogueItem& item : items) names.push_back(std::move(item.name));
  return names;
}

}  // namespace

std::optional<std::u16string> DecodeListFile(std::string_view bytes, int code_page) {
  std::string buffer(bytes);
  buffer.append(kTerminator, sizeof kTerminator);
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(buffer[i]); };
  if (byte(0) == 0xFF && byte(1) == 0xFE) {
    // The units after the mark; with an odd size the last byte pairs with
    // the first terminating zero, as it did in the device's mapping.
    std::u16string text;
    text.reserve((buffer.size() - 2) / 2);
    for (std::size_t i = 2; i + 1 < buffer.size(); i += 2) {
      const auto unit = static_cast<char16_t>(byte(i) | (byte(i + 1) << 8));
      if (unit == 0) break;
      text.push_back(unit);
    }
    if (text.empty()) return std::nullopt;
    return text;
  }
  const std::string_view narrow(buffer.data(), buffer.find('\0'));
  // Text editors of today save UTF-8 with a mark; such a file would
  // otherwise import its names as ANSI mojibake.
  if (narrow.starts_with("\xEF\xBB\xBF")) return FromUtf8(narrow.substr(3));
  return FromAnsi(narrow, code_page);
}

std::vector<std::u16string> SplitListNames(std::u16string_view text) {
  text = text.substr(0, text.find(u'\0'));
  std::vector<std::u16string> names;
  std::size_t i = 0;
  while (i < text.size()) {
    while (i < text.size() && IsLineBreak(text[i])) ++i;
    const std::size_t begin = i;
    while (i < text.size() && !IsLineBreak(text[i])) ++i;
    if (i == begin) break;
    std::size_t length = i - begin;
    // The limit and the cut differ by one: a name of 128 characters stays
    // whole, one of 129 loses two.
    if (length > kListNameLimit) length = kListNameCut;
    names.emplace_back(text.substr(begin, length));
  }
  return names;
}

bool ParseListFile(std::string_view bytes, int code_page,
                   std::vector<std::u16string>* names) {
  names->clear();
  const std::optional<std::u16string> text = DecodeListFile(bytes, code_page);
  if (!text) return false;
  *names = SplitListNames(*text);
  return true;
}

ListNameAdder::ListNameAdder(Catalogue& catalogue, const Locale& locale,
                             const CatalogueList& list)
    : catalogue_(catalogue), list_(list) {
  switch (list.kind) {
    case ListKind::kProjects:
      projects_.emplace(catalogue.projects, locale, list.client);
      break;
    case ListKind::kTasks:
      if (!list.project.empty()) {
        projects_.emplace(catalogue.projects, locale, list.client);
      } else {
        items_.emplace(catalogue.tasks, locale, list.client);
      }
      break;
    case ListKind::kContacts:
      items_.emplace(catalogue.contacts, locale, list.client);
      break;
    case ListKind::kClients:
    case ListKind::kContactsApplication:
      break;
  }
}

ListNameAdder::Result ListNameAdder::AddName(std::u16string name) {
  if (name.size() > kListNameLimit) name.resize(kListNameCut);
  auto written = [](bool ok) { return ok ? kAdded : kWriteFailed; };
  switch (list_.kind) {
    case ListKind::kClients:
      // AddClient answers the new number, which is 0 for every client added
      // while the counter is missing; whether the client is there tells.
      if (name.empty() || FindClient(catalogue_.clients, name)) return kRefused;
      AddClient(catalogue_.clients, name);
      return written(FindClient(catalogue_.clients, name));
    case ListKind::kProjects:
      if (projects_->Refuses(name, u"")) return kRefused;
      return written(projects_->Add(name, u"") != 0);
    case ListKind::kTasks:
      if (projects_) {
        if (projects_->Refuses(list_.project, name)) return kRefused;
        return written(projects_->Add(list_.project, name) != 0);
      }
      [[fallthrough]];
    case ListKind::kContacts:
      if (items_->Refuses(name)) return kRefused;
      return written(items_->Add(name) != 0);
    case ListKind::kContactsApplication:
      break;
  }
  return kRefused;
}

bool AddListNames(Catalogue& catalogue, const Locale& locale, const CatalogueList& list,
                  std::vector<std::u16string> names, int* added) {
  *added = 0;
  ObjectStore& volume = catalogue.volume;
  ListNameAdder adder(catalogue, locale, list);
  // A batch may not begin when the caller holds one; its writes then go into
  // the caller's batch.
  bool batch = volume.BeginBatch();
  int pending = 0;   // names written since the last commit
  int in_chunk = 0;  // names tried since the last commit
  auto commit = [&] {
    if (batch && !volume.CommitBatch()) return false;
    batch = false;
    *added += pending;
    pending = 0;
    in_chunk = 0;
    return true;
  };
  for (std::u16string& name : names) {
    const ListNameAdder::Result result = adder.AddName(std::move(name));
    if (result == ListNameAdder::kWriteFailed) {
      // The failed write undid itself; what the chunk wrote before it is
      // kept when the disk still takes the commit.
      commit();
      return false;
    }
    if (result == ListNameAdder::kAdded) ++pending;
    if (++in_chunk == kImportChunk) {
      if (!commit()) return false;
      batch = volume.BeginBatch();
    }
  }
  return commit();
}

bool AddListName(Catalogue& catalogue, const Locale& locale, const CatalogueList& list,
                 std::u16string name) {
  return ListNameAdder(catalogue, locale, list).Add(std::move(name));
}

TextField ListNameField(const CatalogueList& list) {
  switch (list.kind) {
    case ListKind::kClients:
      return TextField::kClient;
    case ListKind::kProjects:
      return TextField::kProject;
    case ListKind::kTasks:
      return TextField::kTask;
    case ListKind::kContacts:
    case ListKind::kContactsApplication:
      return TextField::kContact;
  }
  return TextField::kName;
}

ListImportResult ImportListFile(Catalogue& catalogue, const Locale& locale,
                                FileSystem& files, const std::string& path,
                                const CatalogueList& list, int* added) {
  int count = 0;
  if (added == nullptr) added = &count;
  *added = 0;
  std::vector<std::u16string> names;
  try {
    std::string bytes;
    if (!files.ReadWholeFile(path, &bytes, kListFileMaxBytes)) {
      return ListImportResult::kUnreadable;
    }
    if (!ParseListFile(bytes, locale.AnsiCodePage(), &names)) {
      return ListImportResult::kUnreadable;
    }
  } catch (const std::bad_alloc&) {
    return ListImportResult::kUnreadable;
  }
  const TextField field = ListNameField(list);
  for (const std::u16string& name : names) {
    if (HoldsControlCharacter(field, name)) return ListImportResult::kControlCharacter;
  }
  if (!AddListNames(catalogue, locale, list, std::move(names), added)) {
    return ListImportResult::kWriteFailed;
  }
  return ListImportResult::kImported;
}

ListFileOutcome RunListImport(Catalogue& catalogue, const Locale& locale,
                              FileSystem& files, UserPrompt& prompt,
                              const CatalogueList& list, int* added) {
  if (added != nullptr) *added = 0;
  FileChooser chooser;
  chooser.filter = kListImportFilter;
  chooser.default_extension = kListFileExtension;
  chooser.flags = kFileMustExist | kFileHideReadOnly;
  const std::optional<std::string> path = prompt.ChooseFileToOpen(chooser);
  if (!path) return ListFileOutcome::kCancelled;
  switch (ImportListFile(catalogue, locale, files, *path, list, added)) {
    case ListImportResult::kImported:
      return ListFileOutcome::kDone;
    case ListImportResult::kControlCharacter:
      prompt.ShowMessage(kAppTitle, ControlCharacterMessage(ListNameField(list)),
                         MessageIcon::kError);
      return ListFileOutcome::kFailed;
    case ListImportResult::kUnreadable:
    case ListImportResult::kWriteFailed:
      break;
  }
  prompt.ShowMessage(kAppTitle, LoadString(kIdsImportFailed), MessageIcon::kError);
  return ListFileOutcome::kFailed;
}

std::optional<CatalogueList> ImportListFor(ListKind kind,
                                           const CatalogueTreeItem& selected) {
  using Kind = CatalogueTreeItem::Kind;
  if (kind == ListKind::kClients) return CatalogueList{kind, 0, {}};
  if (kind == ListKind::kContactsApplication || selected.kind == Kind::kNone) {
    return std::nullopt;
  }
  CatalogueList list{kind, selected.client, {}};
  if (kind == ListKind::kTasks &&
      (selected.kind == Kind::kProject || selected.kind == Kind::kProjectTask)) {
    list.project = selected.project;
  }
  return list;
}

CatalogueList ExportListFor(Catalogue& catalogue, const Locale& locale,
                            const CatalogueTreeItem& selected) {
  using Kind = CatalogueTreeItem::Kind;
  const ClientId client = selected.client;
  switch (selected.kind) {
    case Kind::kNone:
    case Kind::kClient:
      // A client's children are its three groups, whose names are no list
      // worth a file: the client stands for the list it belongs to.
      break;
    case Kind::kProjectsGroup:
      return {ListKind::kProjects, client, {}};
    case Kind::kProject: {
      const auto projects = ProjectsOf(catalogue.projects, locale, client);
      const Project* project = FindProject(projects, locale, selected.project);
      if (project != nullptr && !project->tasks.empty()) {
        return {ListKind::kTasks, client, selected.project};
      }
      return {ListKind::kProjects, client, {}};
    }
    case Kind::kProjectTask:
      return {ListKind::kTasks, client, selected.project};
    case Kind::kTasksGroup:
    case Kind::kTask:
      return {ListKind::kTasks, client, {}};
    case Kind::kContactsGroup:
    case Kind::kContact:
      return {ListKind::kContacts, client, {}};
  }
  return {ListKind::kClients, 0, {}};
}

std::vector<std::u16string> ListNames(Catalogue& catalogue, const Locale& locale,
                                      const CatalogueList& list) {
  std::vector<std::u16string> names;
  switch (list.kind) {
    case ListKind::kClients:
      for (Client& c : ClientList(catalogue.clients)) names.push_back(std::move(c.name));
      break;
    case ListKind::kProjects:
      for (Project& p : ProjectsOf(catalogue.projects, locale, list.client)) {
        names.push_back(std::move(p.name));
      }
      break;
    case ListKind::kTasks:
      if (list.project.empty()) return NamesOf(ItemsOf(catalogue.tasks, list.client));
      {
        const auto projects = ProjectsOf(catalogue.projects, locale, list.client);
        if (const Project* p = FindProject(projects, locale, list.project))
          names = p->tasks;
      }
      break;
    case ListKind::kContacts:
      return NamesOf(ItemsOf(catalogue.contacts, list.client));
    case ListKind::kContactsApplication:
      break;
  }
  return names;
}

std::u16string JoinListNames(const std::vector<std::u16string>& names) {
  std::u16string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += u"\r\n";
    text += names[i];
  }
  return text;
}

bool WriteListFile(FileSystem& files, int code_page, const std::string& path,
                   const std::vector<std::u16string>& names, ListFileFormat format) {
  NarrowTextWriter writer(files, code_page);
  if (!writer.Open(path)) return false;
  const std::u16string text = JoinListNames(names);
  bool ok = true;
  if (format == ListFileFormat::kUnicode) {
    // The mark is what tells the import that the file is UTF-16.
    ok = writer.WriteByteOrderMark() && writer.WriteRaw(text);
  } else if (!text.empty()) {
    ok = writer.Write(text);
  }
  return writer.Close() && ok;
}

ListFileOutcome RunListExport(Catalogue& catalogue, const Locale& locale,
                              FileSystem& files, UserPrompt& prompt,
                              const CatalogueList& list, ListFileFormat format) {
  FileChooser chooser;
  chooser.filter = kListExportFilter;
  chooser.default_extension = kListFileExtension;
  chooser.flags = kFileOverwritePrompt | kFileHideReadOnly;
  const std::optional<std::string> path = prompt.ChooseFileToSave(chooser);
  if (!path) return ListFileOutcome::kCancelled;
  const std::vector<std::u16string> names = ListNames(catalogue, locale, list);
  if (WriteListFile(files, locale.AnsiCodePage(), *path, names, format)) {
    return ListFileOutcome::kDone;
  }
  prompt.ShowMessage(kAppTitle, LoadString(kIdsListExportFailed), MessageIcon::kError);
  return ListFileOutcome::kFailed;
}

}  // namespace quillora
