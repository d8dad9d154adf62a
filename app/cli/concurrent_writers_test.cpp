// Two command lines writing the same data folder at the same moment: every
// write of both lands, and neither ever shows the user a locking error.
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/run_quillora.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

using testing::RunQuillora;

// Runs `count` commands made by `make(i)` one after another in a child
// process; each line of `log` is "status TAB stdout TAB stderr".
template <typename Make>
pid_t StartWriter(const std::string& data, const std::string& log, int count, Make make) {
  const pid_t pid = fork();
  if (pid != 0) return pid;
  std::ofstream out(log);
  for (int i = 0; i < count; ++i) {
    const auto result = RunQuillora(data, make(i));
    std::string err = result.err, printed = result.out;
    for (std::string* s : {&err, &printed})
      for (char& c : *s)
        if (c == '\n' || c == '\t') c = ' ';
    out << result.status << '\t' << printed << '\t' << err << '\n';
  }
  out.close();
  _exit(0);
}

struct Line {
  int status;
  std::string out, err;
};

std::vector<Line> ReadLog(const std::string& path) {
  std::vector<Line> lines;
  std::ifstream in(path);
  for (std::string text; std::getline(in, text);) {
    std::istringstream fields(text);
    Line line;
    std::string status;
    std::getline(fields, status, '\t');
    std::getline(fields, line.out, '\t');
    std::getline(fields, line.err);
    line.status = std::stoi(status);
    lines.push_back(line);
  }
  return lines;
}

TEST(ConcurrentWritersTest, TwoCommandLinesAddingAtOnceLoseNothing) {
  testing::TempDir dir;
  const std::string data = dir.File("data");
  ASSERT_EQ(RunQuillora(data, {"client", "add", "Acme"}).status, 0);
  constexpr int kEach = 40;
  auto adds = [](const std::string& who) {
    return [who](int i) {
      return std::vector<std::string>{"add", "--date", "2026-11-20", "--task", "Work", "--client",
                                      "Acme", "--project", who + std::to_string(i),
                                      "--duration", "1"};
    };
  };
  // The third writer changes settings and the catalogue in the meantime
  // (an add files new projects under an existing client only).
  auto others = [](int i) {
    return i % 2 ? std::vector<std::string>{"settings", "set", "MinTime", i % 4 ? "15" : "30"}
                 : std::vector<std::string>{"client", "add", "Other" + std::to_string(i)};
  };
  const pid_t a = StartWriter(data, dir.File("a.log"), kEach, adds("A"));
  const pid_t b = StartWriter(data, dir.File("b.log"), kEach, adds("B"));
  const pid_t c = StartWriter(data, dir.File("c.log"), kEach, others);
  for (pid_t pid : {a, b, c}) {
    int status = 0;
    ASSERT_EQ(waitpid(pid, &status, 0), pid);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  }
  std::set<std::string> printed;
  for (const char* log : {"a.log", "b.log", "c.log"}) {
    const auto lines = ReadLog(dir.File(log));
    ASSERT_EQ(lines.size(), static_cast<std::size_t>(kEach)) << log;
    for (const Line& line : lines) {
      EXPECT_EQ(line.status, 0) << log << ": " << line.err;
      EXPECT_EQ(line.err, "") << log;
      if (std::string(log) != "c.log") printed.insert(line.out);
    }
  }
  EXPECT_EQ(printed.size(), 2u * kEach) << "two adds printed the same record id";

  const auto listed = RunQuillora(data, {"list", "--day", "2026-11-20", "--ids"});
  ASSERT_EQ(listed.status, 0) << listed.err;
  std::set<std::string> ids;
  std::istringstream lines(listed.out);
  for (std::string id; std::getline(lines, id);) ids.insert(id + " ");
  for (const std::string& id : printed) EXPECT_TRUE(ids.count(id)) << "lost entry " << id;

  const auto clients = RunQuillora(data, {"client", "list"});
  const auto projects = RunQuillora(data, {"project", "list", "Acme"});
  for (int i = 0; i < kEach; ++i) {
    EXPECT_NE(projects.out.find("A" + std::to_string(i) + "\n"), std::string::npos) << i;
    EXPECT_NE(projects.out.find("B" + std::to_string(i) + "\n"), std::string::npos) << i;
  }
  for (int i = 0; i < kEach; i += 2) {
    EXPECT_NE(clients.out.find("Other" + std::to_string(i) + "\t"), std::string::npos) << i;
  }
}

}  // namespace
}  // namespace quillora
