#include "interchange/list_files.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/text.h"
#include "store/client_store.h"
#include "tests/fake_prompt.h"
#include "tests/temp_dir.h"
#include "tests/test_volume.h"

namespace quillora {
namespace {

using Names = std::vector<std::u16string>;

std::string Utf16File(std::u16string_view text) {
  std::string bytes("\xFF\xFE", 2);
  for (char16_t c : text) {
    bytes.push_back(static_cast<char>(c & 0xFF));
    bytes.push_back(static_cast<char>(c >> 8));
  }
  return bytes;
}

std::string Printable(const std::string& bytes) {
  std::string out;
  for (unsigned char c : bytes) {
    if (c >= 0x20 && c < 0x7F) {
      out.push_back(static_cast<char>(c));
    } else {
      char hex[8];
      std::snprintf(hex, sizeof hex, "\\x%02X", c);
      out += hex;
    }
  }
  return out;
}

TEST(ListFileTest, LinesSplitLikeTheDeviceTokenizer) {
  const std::u16string name128(128, u'b');
  const std::u16string name129(129, u'c');
  struct Case {
    std::string bytes;
    Names names;
  } cases[] = {
      {"Acme\r\nBeta\nGamma\rDelta", {u"Acme", u"Beta", u"Gamma", u"Delta"}},
      {"\r\n\r\nAcme\n\n\r\r\nBeta\r\n\r\n", {u"Acme", u"Beta"}},
      {"  padded \t\r\n", {u"  padded \t"}},
      {"", {}},
      {"\r\n\n\r", {}},
      {std::string(200, 'a'), {std::u16string(127, u'a')}},
      {ToUtf8(name128) + "\n" + ToUtf8(name129), {name128, std::u16string(127, u'c')}},
      {std::string("one\0two", 7), {u"one"}},
      {"Caf\xE9\r\nna\xEFve", {u"Caf\u00E9", u"na\u00EFve"}},
      {"\xEF\xBB\xBF"
       "Caf\xC3\xA9\nZ\xC3\xBCrich",
       {u"Caf\u00E9", u"Z\u00FCrich"}},
      {Utf16File(u"\u00C5sa\r\nB\u0142a\u017Cej\n"), {u"\u00C5sa", u"B\u0142a\u017Cej"}},
      {Utf16File(u"Tail") + "X", {u"TailX"}},
      {Utf16File(u"First") + std::string("\0\0", 2) + Utf16File(u"Second"), {u"First"}},
      {"\xFF", {u"\u00FF"}},
  };
  for (const Case& c : cases) {
    Names names;
    EXPECT_TRUE(ParseListFile(c.bytes, 1252, &names)) << Printable(c.bytes);
    EXPECT_EQ(names, c.names) << Printable(c.bytes);
  }
}

TEST(ListFileTest, AUtf16FileWithNothingAfterItsMarkIsRefused) {
  for (const std::string& bytes :
       {std::string("\xFF\xFE", 2), std::string("\xFF\xFE\0\0Acme", 8),
        std::string("\xFF\xFE\0", 3)}) {
    Names names{u"stale"};
    EXPECT_FALSE(ParseListFile(bytes, 1252, &names)) << Printable(bytes);
    EXPECT_TRUE(names.empty());
  }
}

TEST(ListFileTest, ExportJoinsWithCrLfAndNothingAfterTheLast) {
  EXPECT_EQ(JoinListNames({}), u"");
  EXPECT_EQ(JoinListNames({u"One"}), u"One");
  EXPECT_EQ(JoinListNames({u"One", u"", u"Three"}), u"One\r\n\r\nThree");
}

class ListImportTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(catalogue_.Open()); }

  ClientId NewClient(const std::u16string& name) {
    AddClient(catalogue_.clients, name);
    Client client;
    EXPECT_TRUE(FindClient(catalogue_.clients, name, &client));
    return client.number;
  }
  std::string File(const std::string& name, const std::string& bytes) {
    const std::string path = dir_.File(name);
    testing::WriteFileBytes(path, bytes);
    return path;
  }
  bool Import(const std::string& path, const CatalogueList& list, int* added = nullptr) {
    return ImportListFile(catalogue_, *locale_, FileSystem::Posix(), path, list, added);
  }
  quillora::Names Names(const CatalogueList& list) {
    return ListNames(catalogue_, *locale_, list);
  }

  testing::TempDir dir_;
  testing::TestVolume volume_;
  Catalogue catalogue_{volume_.store(), nullptr};
  std::unique_ptr<Locale> locale_ = Locale::UsEnglish();
};

TEST_F(ListImportTest, ImportingAClientListTwiceAddsEachClientOnce) {
  const std::string path = File("clients.txt", "Zeta\r\nAcme\r\n\r\nZeta\nacme\n");
  int added = 0;
  ASSERT_TRUE(Import(path, {ListKind::kClients}, &added));
  EXPECT_EQ(added, 3);
  ASSERT_TRUE(Import(path, {ListKind::kClients}, &added));
  EXPECT_EQ(added, 0);
  std::vector<Client> clients = ClientList(catalogue_.clients);
  ASSERT_EQ(clients.size(), 3u);
  EXPECT_EQ(Names({ListKind::kClients}), (quillora::Names{u"acme", u"Acme", u"Zeta"}));
  // Numbers follow the file's order: Zeta first.
  for (const Client& c : clients) {
    EXPECT_EQ(c.number, c.name == u"Zeta"   ? 1u
                        : c.name == u"Acme" ? 2u
                                            : 3u)
        << ToUtf8(c.name);
  }
  EXPECT_EQ(testing::ReadFileBytes(path), "Zeta\r\nAcme\r\n\r\nZeta\nacme\n")
      << "the source file is never changed";
}

TEST_F(ListImportTest, EachKindGoesUnderTheChosenClientOrProject) {
  const ClientId acme = NewClient(u"Acme");
  const ClientId beta = NewClient(u"Beta");
  const std::string path = File("list.txt", "Design\nBuild\nDesign\n");
  const CatalogueList lists[] = {
      {ListKind::kProjects, acme, {}},
      {ListKind::kTasks, acme, {}},
      {ListKind::kTasks, acme, u"Web"},
      {ListKind::kContacts, beta, {}},
  };
  for (const CatalogueList& list : lists) {
    SCOPED_TRACE(static_cast<int>(list.kind));
    int added = 0;
    ASSERT_TRUE(Import(path, list, &added));
    EXPECT_EQ(added, 2);
    EXPECT_EQ(Names(list), (quillora::Names{u"Design", u"Build"}));
  }
  // The project "Web" came with its tasks; the other client got nothing else.
  EXPECT_EQ(Names({ListKind::kProjects, acme}),
            (quillora::Names{u"Design", u"Build", u"Web"}));
  EXPECT_TRUE(Names({ListKind::kProjects, beta}).empty());
  EXPECT_TRUE(Names({ListKind::kContacts, acme}).empty());
}

TEST_F(ListImportTest, ExportThenImportGivesTheSameNamesInBothFormats) {
  const ClientId acme = NewClient(u"Acme");
  const ClientId beta = NewClient(u"Beta");
  const quillora::Names names = {u"Caf\u00E9 Noir", u"M\u00FCller & S\u00F6hne", u"Plain",
                                 u"Łukasz"};
  for (const auto& n : names)
    AddListName(catalogue_, *locale_, {ListKind::kContacts, acme}, n);

  const std::string ansi = dir_.File("ansi.txt");
  const std::string wide = dir_.File("wide.txt");
  ASSERT_TRUE(
      WriteListFile(FileSystem::Posix(), 1252, ansi, names, ListFileFormat::kAnsi));
  ASSERT_TRUE(
      WriteListFile(FileSystem::Posix(), 1252, wide, names, ListFileFormat::kUnicode));
  EXPECT_EQ(testing::ReadFileBytes(ansi),
            "Caf\xE9 Noir\r\nM\xFCller & S\xF6hne\r\nPlain\r\n?ukasz");
  EXPECT_EQ(testing::ReadFileBytes(wide),
            Utf16File(u"Caf\u00E9 Noir\r\nM\u00FCller & S\u00F6hne\r\nPlain\r\nŁukasz"));

  ASSERT_TRUE(Import(wide, {ListKind::kContacts, beta}));
  EXPECT_EQ(Names({ListKind::kContacts, beta}), names);
  ASSERT_TRUE(Import(ansi, {ListKind::kProjects, beta}));
  EXPECT_EQ(Names({ListKind::kProjects, beta}),
            (quillora::Names{u"Caf\u00E9 Noir", u"M\u00FCller & S\u00F6hne", u"Plain",
                             u"?ukasz"}));
}

TEST_F(ListImportTest, LongLinesAreCutAndBadFilesFailWithTheMessage) {
  const ClientId acme = NewClient(u"Acme");
  const CatalogueList contacts{ListKind::kContacts, acme};
  std::string huge(10 * 1024 * 1024, 'x');
  ASSERT_TRUE(Import(File("huge.txt", huge), contacts));
  EXPECT_EQ(Names(contacts), (quillora::Names{std::u16string(127, u'x')}));

  testing::FakePrompt prompt;
  prompt.files = {File("bom.txt", "\xFF\xFE"), dir_.File("missing.txt"), std::nullopt,
                  File("ok.txt", "Second\n")};
  auto run = [&] {
    return RunListImport(catalogue_, *locale_, FileSystem::Posix(), prompt, contacts);
  };
  EXPECT_EQ(run(), ListFileOutcome::kFailed);
  EXPECT_EQ(run(), ListFileOutcome::kFailed);
  EXPECT_EQ(run(), ListFileOutcome::kCancelled);
  EXPECT_EQ(run(), ListFileOutcome::kDone);
  ASSERT_EQ(prompt.shown.size(), 2u);
  for (const auto& shown : prompt.shown) {
    EXPECT_EQ(shown.title, u"Quillora");
    EXPECT_EQ(shown.text,
              u"Unable to import data. Please close some applications and try again.");
    EXPECT_EQ(shown.icon, MessageIcon::kError);
  }
  ASSERT_FALSE(prompt.choosers.empty());
  EXPECT_EQ(prompt.choosers[0].filter, u"List File (*.txt)|*.txt|");
  EXPECT_EQ(prompt.choosers[0].default_extension, u"txt");
  EXPECT_EQ(prompt.choosers[0].flags, 0x1004u);
  EXPECT_EQ(Names(contacts), (quillora::Names{std::u16string(127, u'x'), u"Second"}));
}

TEST_F(ListImportTest, ExportAsksForTheFileOfTheFormat) {
  NewClient(u"Acme");
  NewClient(u"Beta");
  testing::FakePrompt prompt;
  const std::string path = dir_.File("out.txt");
  prompt.files = {path, std::nullopt};
  auto run = [&](ListFileFormat format) {
    return RunListExport(catalogue_, *locale_, FileSystem::Posix(), prompt,
                         {ListKind::kClients}, format);
  };
  ASSERT_EQ(run(ListFileFormat::kAnsi), ListFileOutcome::kDone);
  EXPECT_EQ(testing::ReadFileBytes(path), "Acme\r\nBeta");
  EXPECT_EQ(run(ListFileFormat::kAnsi), ListFileOutcome::kCancelled);
  EXPECT_EQ(prompt.choosers[0].filter, u"Text Files (*.txt)|*.txt|Unicode Text|*.txt|");
  EXPECT_EQ(prompt.choosers[0].flags, kFileOverwritePrompt | kFileHideReadOnly);
}

TEST_F(ListImportTest, TheSelectedTreeItemChoosesTheLevel) {
  using Kind = CatalogueTreeItem::Kind;
  const ClientId acme = NewClient(u"Acme");
  AddProject(catalogue_.projects, *locale_, acme, u"Web", u"Design");
  AddProject(catalogue_.projects, *locale_, acme, u"Print", u"");
  struct Case {
    CatalogueTreeItem selected;
    CatalogueList exported;
    std::optional<CatalogueList> tasks_import;
  } cases[] = {
      {{Kind::kNone}, {ListKind::kClients}, std::nullopt},
      {{Kind::kClient, acme},
       {ListKind::kClients},
       CatalogueList{ListKind::kTasks, acme}},
      {{Kind::kProjectsGroup, acme},
       {ListKind::kProjects, acme},
       CatalogueList{ListKind::kTasks, acme}},
      {{Kind::kProject, acme, u"Web"},
       {ListKind::kTasks, acme, u"Web"},
       CatalogueList{ListKind::kTasks, acme, u"Web"}},
      {{Kind::kProject, acme, u"Print"},
       {ListKind::kProjects, acme},
       CatalogueList{ListKind::kTasks, acme, u"Print"}},
      {{Kind::kProjectTask, acme, u"Web"},
       {ListKind::kTasks, acme, u"Web"},
       CatalogueList{ListKind::kTasks, acme, u"Web"}},
      {{Kind::kTask, acme},
       {ListKind::kTasks, acme},
       CatalogueList{ListKind::kTasks, acme}},
      {{Kind::kContact, acme},
       {ListKind::kContacts, acme},
       CatalogueList{ListKind::kTasks, acme}},
  };
  for (const Case& c : cases) {
    const int kind = static_cast<int>(c.selected.kind);
    EXPECT_EQ(ExportListFor(catalogue_, *locale_, c.selected), c.exported) << kind;
    EXPECT_EQ(ImportListFor(ListKind::kTasks, c.selected), c.tasks_import) << kind;
  }
  EXPECT_EQ(ImportListFor(ListKind::kClients, {}), CatalogueList{ListKind::kClients});
  EXPECT_EQ(ImportListFor(ListKind::kContactsApplication, {Kind::kClient, acme}),
            std::nullopt);
}

}  // namespace
}  // namespace quillora
