// The edges of the command line that guard the user's data: writers aimed at
// the data folder's own files, FIFOs, empty arguments, a full standard
// output, control characters, oversized note files. The rules themselves are
// tested beside their code; here only that the command line reaches them and
// answers with the message and the exit status.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/cli_fixture.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

using testing::RunQuillora;

class GuardsCliTest : public testing::CliFixture {
 protected:
  void SetUp() override {
    ASSERT_EQ(Run({"client", "add", "Acme"}).status, 0);
    id_ = Ok({"add", "--client", "Acme", "--task", "Work", "--duration", "1"});
    ASSERT_EQ(Run({"--yes", "report-def", "save", "R", "--type", "Tabular"}).status, 0);
  }
  // The store still opens and holds its one entry.
  void ExpectStoreWhole() {
    const auto r = Run({"list", "--day", "2026-11-21", "--ids"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, id_);
  }

  const std::string data_ = Data();
  std::string id_;  // the one entry's id as printed, with its line break
};

// Every writer of a user-chosen file, its output file appended.
const std::vector<std::vector<std::string>> kWriters = {
    {"export", "csv", "--month"},
    {"export", "xml", "--month"},
    {"summary", "--month", "--csv"},
    {"export-list", "clients"},
    {"report", "R", "--month"},
    {"backup"},
    {"archive", "--data", "--month", "--delete"},
};

// Each writer asks the prompt for its file, and the prompt refuses the data
// folder's own files (which paths lead to them: platform/data_folder_test.cpp).
TEST_F(GuardsCliTest, NoWriterWritesOverTheDataFolderOwnFiles) {
  const std::string target = data_ + "/quillora.db";
  for (std::vector<std::string> args : kWriters) {
    args.insert(args.begin(), "--yes");
    args.push_back(target);
    const auto r = Run(args);
    EXPECT_EQ(r.status, 1) << args[1];
    EXPECT_NE(r.err.find("Quillora: " + target +
                         " is one of Quillora's own data files; choose another file."),
              std::string::npos)
        << r.err;
  }
  ExpectStoreWhole();
}

TEST_F(GuardsCliTest, AFifoAsAnyFileIsRefusedAtOnce) {
  const std::string fifo = dir_.File("x.vcf");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  std::vector<std::vector<std::string>> cases;
  for (auto writer : kWriters) {
    writer.insert(writer.begin(), "--yes");
    writer.push_back(fifo);
    cases.push_back(writer);
  }
  cases.push_back({"restore", fifo});
  cases.push_back({"archive-restore", fifo});
  cases.push_back({"import", "clients", fifo});
  cases.push_back({"add", "--client", "Acme", "--task", "Work", "--duration", "1",
                   "--note-file", fifo});
  cases.push_back({"contacts", "list", "--dir", dir_.path()});
  for (const auto& args : cases) {
    const auto start = std::chrono::steady_clock::now();
    const auto r = Run(args);
    const auto took = std::chrono::steady_clock::now() - start;
    SCOPED_TRACE(args[0] + " " + args[1]);
    EXPECT_LT(took, std::chrono::seconds(1));
    if (args[0] == "contacts") continue;  // the FIFO is skipped; no contacts
    EXPECT_EQ(r.status, 1) << r.err;
    EXPECT_NE(r.err.find("quillora: " + fifo + ": not a regular file"), std::string::npos)
        << r.err;
  }
  ExpectStoreWhole();
}

TEST_F(GuardsCliTest, EmptyArgumentsAreWrongUsage) {
  const std::vector<std::vector<std::string>> cases = {{"export", "csv", ""},
                                                       {"backup", ""},
                                                       {"restore", ""},
                                                       {"import", "clients", ""},
                                                       {"report", "R", ""},
                                                       {"summary", "--csv", ""},
                                                       {"add", "--note-file", ""},
                                                       {"contacts", "list", "--dir", ""}};
  for (const auto& args : cases) {
    const auto r = Run(args);
    EXPECT_EQ(r.status, 2) << args[0] << r.err;
    EXPECT_NE(r.err.find("quillora: "), std::string::npos) << r.err;
  }
  for (const std::vector<std::string>& args :
       {std::vector<std::string>{"--data-dir", "", "list"}, {"--data-dir=", "list"}}) {
    const auto r = RunQuillora("", args);
    EXPECT_EQ(r.status, 2) << r.err;
    EXPECT_NE(r.err.find("--data-dir needs a folder"), std::string::npos) << r.err;
  }
}

TEST_F(GuardsCliTest, ControlCharactersAreRefusedNamingTheField) {
  const std::string list = dir_.File("clients.txt");
  testing::WriteFileBytes(list, "Good\r\nBad\x1b[31m\r\n");
  struct Case {
    std::vector<std::string> args;
    const char* field;
  };
  const Case cases[] = {
      {{"client", "add", "A\nB"}, "client name"},
      {{"value", "add", "currency", "E\x7f"}, "currency"},
      {{"add", "--client", "Acme", "--task", "T\tX", "--duration", "1"}, "task"},
      {{"add", "--client", "Acme", "--task", "T", "--duration", "1", "--note", "a\x1b"},
       "note"},
      {{"import", "clients", list}, "client name"},
  };
  for (const Case& c : cases) {
    const auto r = Run(c.args);
    EXPECT_EQ(r.status, 1) << c.field << r.err;
    EXPECT_NE(r.err.find(std::string("The ") + c.field + " holds a control character"),
              std::string::npos)
        << r.err;
  }
  // A note keeps its tabs and line breaks; the file import added nothing.
  EXPECT_EQ(Run({"add", "--client", "Acme", "--task", "T", "--duration", "1", "--note",
                 "a\tb\\nc"})
                .status,
            0);
  EXPECT_EQ(Run({"client", "list"}).out.find("Good"), std::string::npos);
}

TEST_F(GuardsCliTest, AHugeNoteFileIsRefusedBeforeItIsRead) {
  const std::string big = dir_.File("big.txt");
  testing::WriteFileBytes(big, "");
  ASSERT_EQ(truncate(big.c_str(), 2LL << 30), 0);  // sparse: takes no disk
  const auto start = std::chrono::steady_clock::now();
  const auto r = Run(
      {"add", "--client", "Acme", "--task", "T", "--duration", "1", "--note-file", big});
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.err.find("quillora: " + big + ": File too large"), std::string::npos)
      << r.err;
  ExpectStoreWhole();
}

TEST_F(GuardsCliTest, AFailedStandardOutputFailsTheCommand) {
  const std::string err = dir_.File("err");
  const std::string command =
      std::string("QUILLORA_LOCALE=en-US QUILLORA_NOW=2026-11-21T10:00:00 ") +
      QUILLORA_BINARY + " --data-dir " + data_ + " ";
  const int add = std::system(
      (command + "add --client Acme --task T --duration 1 >/dev/full 2>" + err).c_str());
  EXPECT_EQ(WEXITSTATUS(add), 1);
  const std::string said = testing::ReadFileBytes(err);
  EXPECT_EQ(said.rfind("quillora: the entry was saved as record ", 0), 0u) << said;
  EXPECT_NE(said.find(" but its id could not be printed: No space left on device"),
            std::string::npos)
      << said;
  const int list = std::system((command + "list --ids >/dev/full 2>" + err).c_str());
  EXPECT_EQ(WEXITSTATUS(list), 1);
  EXPECT_NE(testing::ReadFileBytes(err).find("standard output could not be written"),
            std::string::npos);
}

TEST_F(GuardsCliTest, AClockThatIsNoTimeIsWrongUsage) {
  const auto bad_now = RunQuillora(data_, {"list"}, "2026-13-45");
  EXPECT_EQ(bad_now.status, 2);
  EXPECT_NE(bad_now.err.find("QUILLORA_NOW"), std::string::npos);
}

}  // namespace
}  // namespace quillora
