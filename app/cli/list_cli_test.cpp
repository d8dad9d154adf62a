// The list-file and contacts commands end to end: the binary on a fresh data
// folder, the files it writes compared byte for byte.
#include <gtest/gtest.h>

#include <filesystem>

#include "interchange/contacts_import.h"
#include "store/data_context.h"
#include "tests/cli_fixture.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

using testing::CommandLine;
using testing::ReadFileBytes;
using testing::RunResult;
using testing::WriteFileBytes;
using Args = std::vector<std::string>;

constexpr char kImportFailed[] =
    "Quillora: Unable to import data. Please close some applications and try again.\n";

class ListCliTest : public testing::CliFixture {
 protected:
  void Refused(const Args& args, const std::string& err) {
    const RunResult r = Run(args);
    EXPECT_EQ(r.status, 1) << CommandLine(args);
    EXPECT_EQ(r.err, err) << CommandLine(args);
  }
};

// How lines are split, cut and merged is pinned in interchange/list_files_test.cpp.
TEST_F(ListCliTest, ClientListsImportAndExportInBothFormats) {
  WriteFileBytes(File("clients.txt"), "Zeta\r\nAcme");
  Ok({"import", "clients", File("clients.txt")});
  EXPECT_EQ(Ok({"client", "list"}), "Acme\t2\nZeta\t1\n");

  Ok({"export-list", "clients", File("out.txt")});
  EXPECT_EQ(ReadFileBytes(File("out.txt")), "Acme\r\nZeta");
  Ok({"--yes", "export-list", "--unicode", "clients", File("out.txt")});
  EXPECT_EQ(ReadFileBytes(File("out.txt")),
            std::string("\xFF\xFE"
                        "A\0c\0m\0e\0\r\0\n\0Z\0e\0t\0a\0",
                        22));

  // The UTF-16 file reads back as a contacts list of a client.
  Ok({"import", "contacts", "--client", "Zeta", File("out.txt")});
  EXPECT_EQ(Ok({"contact", "list", "Zeta"}), "Acme\nZeta\n");
}

TEST_F(ListCliTest, ProjectsAndProjectTasksRoundTrip) {
  Ok({"client", "add", "Acme"});
  WriteFileBytes(File("projects.txt"), "Web\nPrint\n");
  Ok({"import", "projects", "--client", "Acme", File("projects.txt")});
  const char kTasks[] =
      "\xFF\xFE"
      "D\0e\0s\0i\0g\0n\0\r\0\n\0B\0u\0i\0l\0d\0";
  WriteFileBytes(File("tasks.txt"), std::string(kTasks, sizeof kTasks - 1));
  Ok({"import", "tasks", "--client", "Acme", "--project", "Web", File("tasks.txt")});
  Ok({"import", "tasks", "--client", "Acme", File("projects.txt")});
  EXPECT_EQ(Ok({"project", "list", "Acme"}), "Web\nWeb\tDesign\nWeb\tBuild\nPrint\n");
  EXPECT_EQ(Ok({"task", "list", "Acme"}), "Web\nPrint\n");

  Ok({"export-list", "tasks", "--client", "Acme", "--project", "Web", File("t.txt")});
  EXPECT_EQ(ReadFileBytes(File("t.txt")), "Design\r\nBuild");
  Ok({"export-list", "projects", "--client", "Acme", File("p.txt")});
  EXPECT_EQ(ReadFileBytes(File("p.txt")), "Web\r\nPrint");
  Ok({"export-list", "contacts", "--client", "Acme", File("c.txt")});
  EXPECT_EQ(ReadFileBytes(File("c.txt")), "");
}

TEST_F(ListCliTest, BadFilesAndBadArgumentsAreRefused) {
  Ok({"client", "add", "Acme"});
  WriteFileBytes(File("bom.txt"), "\xFF\xFE");
  WriteFileBytes(File("empty.txt"), "");
  Refused({"import", "clients", File("missing.txt")},
          std::string(kImportFailed) +
              ("quillora: " + File("missing.txt") + ": No such file or directory\n"));
  Refused({"import", "contacts", "--client", "Acme", File("bom.txt")}, kImportFailed);
  Ok({"import", "clients", File("empty.txt")});
  Refused({"import", "projects", "--client", "Nobody", File("empty.txt")},
          "Quillora: There is no client named \"Nobody\".\n");
  Refused({"import", "tasks", "--client", "Acme", "--project", "None", File("empty.txt")},
          "Quillora: There is no project named \"None\" for this client.\n");
  for (const Args& bad :
       {Args{"import"}, Args{"import", "clients"},
        Args{"import", "projects", File("empty.txt")},
        Args{"import", "clients", "--client", "Acme", File("empty.txt")},
        Args{"import", "contacts", "--client", "Acme", "--project", "P",
             File("empty.txt")},
        Args{"import", "rates", File("empty.txt")}, Args{"export-list", "clients"},
        Args{"export-list", "contacts", File("x.txt")}}) {
    EXPECT_EQ(Run(bad).status, 2) << CommandLine(bad);
  }
  EXPECT_EQ(Ok({"client", "list"}), "Acme\t1\n");
}

TEST_F(ListCliTest, ContactsComeFromVCardsUnlessTheDatabaseExists) {
  const std::string cards = dir_.File("cards");
  Ok({"client", "add", "Acme"});
  Refused({"contacts", "list"}, "Quillora: Unable to open the contacts.\n");
  Refused({"contacts", "list", "--dir", cards},
          "Quillora: Unable to open the contacts.\n");
  ASSERT_TRUE(std::filesystem::create_directory(cards));
  WriteFileBytes(
      cards + "/people.vcf",
      "BEGIN:VCARD\r\nVERSION:3.0\r\nN:Doe;John;;;\r\nORG:Doe Ltd\r\nEND:VCARD\r\n"
      "BEGIN:VCARD\r\nVERSION:4.0\r\nFN:Ann Able\r\nEND:VCARD\r\n");
  WriteFileBytes(cards + "/broken.vcf", "BEGIN:VCARD\r\n FN:half");
  EXPECT_EQ(Ok({"contacts", "list", "--dir", cards}), "Ann Able\t\nDoe, John\tDoe Ltd\n");
  Refused({"contacts", "import", "--client", "Acme", "Nobody", "--dir", cards},
          "Quillora: There is no contact filed as \"Nobody\".\n");
  Ok({"contacts", "import", "--client", "Acme", "Doe, John", "--dir", cards});
  Ok({"contacts", "import", "--client", "Acme", "--all", "--dir", cards});
  EXPECT_EQ(Ok({"contact", "list", "Acme"}), "Doe, John\nAnn Able\n");
  for (const Args& bad : {Args{"contacts"}, Args{"contacts", "import", "--all"},
                          Args{"contacts", "import", "--client", "Acme"},
                          Args{"contacts", "import", "--client", "Acme", "--all", "X"},
                          Args{"contacts", "show"}}) {
    EXPECT_EQ(Run(bad).status, 2) << CommandLine(bad);
  }

  {
    DataContext data;
    std::string error;
    ASSERT_TRUE(OpenDataContext(Data(), &data, &error)) << error;
    DatabaseInfo info;
    info.name = u"Contacts Database";
    ASSERT_NE(data.volume->CreateDatabase(info), 0u);
    ObjectId id = 0;
    auto db = data.volume->OpenDatabase(&id, info.name, 0, 0, nullptr);
    ASSERT_NE(db, nullptr);
    for (const char16_t* name : {u"Young, Al", u"Baker, Bea"}) {
      ASSERT_NE(db->WriteProps(0, {PropValue::Text(kPropContactFileAs, name),
                                   PropValue::Text(kPropContactCompany, u"Device Co")}),
                0u);
    }
  }
  EXPECT_EQ(Ok({"contacts", "list", "--dir", cards}),
            "Baker, Bea\tDevice Co\nYoung, Al\tDevice Co\n");
  Ok({"contacts", "import", "--client", "Acme", "--all"});
  EXPECT_EQ(Ok({"contact", "list", "Acme"}),
            "Doe, John\nAnn Able\nBaker, Bea\nYoung, Al\n");
}

}  // namespace
}  // namespace quillora
