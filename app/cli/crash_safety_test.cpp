// Crash safety: the binary is killed with SIGKILL at random moments while it
// adds entries, restores a backup, replaces text and sets a registry value.
// Afterwards both SQLite files pass the integrity check, every entry whose
// record id had been printed is there and whole, and no entry is half
// written.
//
// The default rounds keep the test short; QUILLORA_CRASH_ROUNDS=N (e.g.
// 2000) runs N kills per operation instead.
#include <fcntl.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/data_folder.h"
#include "platform/text.h"
#include "store/data_context.h"
#include "store/note_text.h"
#include "store/time_entry.h"
#include "tests/run_quillora.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

using testing::RunQuillora;

int Rounds(int normal) {
  const char* text = std::getenv("QUILLORA_CRASH_ROUNDS");
  return text != nullptr && std::atoi(text) > 0 ? std::atoi(text) : normal;
}

struct Killed {
  std::string out;  // what the process had printed before it died
  bool finished = false;  // it exited on its own before the kill
};

// Starts the binary with `args` and kills it after `delay` (unless it has
// exited by then).
Killed RunAndKill(const std::string& data_dir, const std::vector<std::string>& args,
                  std::chrono::microseconds delay) {
  int pipe_fds[2];
  if (pipe2(pipe_fds, O_CLOEXEC) != 0) return {};
  std::vector<std::string> all{QUILLORA_BINARY, "--data-dir", data_dir};
  all.insert(all.end(), args.begin(), args.end());
  std::vector<char*> argv;
  for (std::string& a : all) argv.push_back(a.data());
  argv.push_back(nullptr);
  const pid_t pid = fork();
  if (pid == 0) {
    dup2(pipe_fds[1], STDOUT_FILENO);
    const int null_fd = open("/dev/null", O_RDWR);
    dup2(null_fd, STDIN_FILENO);
    dup2(null_fd, STDERR_FILENO);
    setenv("QUILLORA_LOCALE", "en-US", 1);
    setenv("QUILLORA_NOW", "2026-11-21T10:00:00", 1);
    execv(argv[0], argv.data());
    _exit(127);
  }
  close(pipe_fds[1]);
  const timespec pause{0, static_cast<long>(delay.count() * 1000)};
  nanosleep(&pause, nullptr);
  int status = 0;
  Killed result;
  if (waitpid(pid, &status, WNOHANG) == pid) {
    result.finished = true;
  } else {
    kill(pid, SIGKILL);
    waitpid(pid, &status, 0);
  }
  char buffer[4096];
  for (ssize_t n; (n = read(pipe_fds[0], buffer, sizeof buffer)) > 0;) result.out.append(buffer, n);
  close(pipe_fds[0]);
  return result;
}

// SQLite's own check of a whole file ("ok" when sound).
std::string IntegrityCheck(const std::string& path) {
  sqlite3* db = nullptr;
  if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
    sqlite3_close(db);
    return "cannot open " + path;
  }
  sqlite3_busy_timeout(db, 5000);
  std::string answer;
  sqlite3_stmt* st = nullptr;
  if (sqlite3_prepare_v2(db, "PRAGMA integrity_check", -1, &st, nullptr) == SQLITE_OK) {
    while (sqlite3_step(st) == SQLITE_ROW) {
      if (!answer.empty()) answer += "; ";
      answer += reinterpret_cast<const char*>(sqlite3_column_text(st, 0));
    }
  }
  sqlite3_finalize(st);
  sqlite3_close(db);
  return answer;
}

// The note every entry of tag `tag` carries: long enough to span pages.
std::u16string NoteFor(const std::string& tag) {
  std::string text;
  for (int i = 0; i < 200; ++i) text += tag + " line " + std::to_string(i) + "\n";
  return FromUtf8(text);
}

// Every entry of the volume, by record id.
std::map<ObjectId, TimeEntry> AllEntries(const std::string& data_dir) {
  std::map<ObjectId, TimeEntry> all;
  DataContext data;
  std::string error;
  EXPECT_TRUE(OpenDataContext(data_dir, &data, &error)) << error;
  if (!data.volume) return all;
  EntryStore store(*data.volume);
  if (!store.Open()) return all;
  store.Seek(SeekType::kBeginning, 0);
  for (;;) {
    TimeEntry entry;
    const int read = ReadEntry(store, &entry);
    EXPECT_NE(read, -1) << "an entry cannot be read";
    if (read != 0) break;
    all[entry.recordId] = entry;
    if (store.Seek(SeekType::kCurrent, 1) == 0) break;
  }
  return all;
}

// An entry is whole when its fields agree with the tag in custom1.
void ExpectWhole(const TimeEntry& entry, const std::set<std::u16string>& clients) {
  const std::string tag = ToUtf8(entry.custom1);
  ASSERT_FALSE(tag.empty()) << "entry " << entry.recordId << " has no tag";
  EXPECT_EQ(ToUtf8(NoteBlobToText(entry.note.data(), entry.note.size())),
            ToUtf8(NoteBlobToText(NoteBlobFromText(NoteFor(tag)).data(),
                                  NoteBlobFromText(NoteFor(tag)).size())))
      << "entry " << entry.recordId << " tag " << tag;
  EXPECT_EQ(entry.duration, 150u) << "entry " << entry.recordId;
  EXPECT_TRUE(clients.count(entry.client)) << "entry " << entry.recordId << " client "
                                            << ToUtf8(entry.client);
  EXPECT_EQ(ToUtf8(entry.project), "Proj " + tag) << "entry " << entry.recordId;
}

// How long a full run of `args` takes, as the upper end of the kill delays.
std::chrono::microseconds TimeOf(const std::string& data_dir,
                                 const std::vector<std::string>& args) {
  const auto start = std::chrono::steady_clock::now();
  const auto result = RunQuillora(data_dir, args);
  EXPECT_EQ(result.status, 0) << result.err;
  return std::chrono::duration_cast<std::chrono::microseconds>(
      std::chrono::steady_clock::now() - start);
}

std::vector<std::string> AddArgs(const std::string& tag) {
  return {"add", "--date", "2026-11-20", "--task", "Work", "--client", "Acme", "--project", "Proj " + tag,
          "--duration", "1.5", "--custom1", tag, "--note",
          // --note takes "\n" as a line break
          [&] {
            std::string text;
            for (int i = 0; i < 200; ++i) text += tag + " line " + std::to_string(i) + "\\n";
            return text;
          }()};
}

class CrashSafetyTest : public ::testing::Test {
 protected:
  std::string Data() const { return dir_.File("data"); }
  std::string Volume() const { return Data() + "/" + kVolumeFileName; }
  std::string RegistryFile() const { return Data() + "/" + kRegistryFileName; }

  // `count` entries of client "Acme" in one batch, tagged PREFIX0, PREFIX1...
  // in their project, first custom field and note.
  void Seed(int count, const std::string& prefix) {
    DataContext data;
    std::string error;
    ASSERT_TRUE(OpenDataContext(Data(), &data, &error)) << error;
    EntryStore store(*data.volume);
    ASSERT_TRUE(store.Open());
    data.volume->BeginBatch();
    for (int i = 0; i < count; ++i) {
      const std::string tag = prefix + std::to_string(i);
      TimeEntry e;
      SystemTimeToFileTime(MakeSystemTime(2026, 11, 1 + i % 28, 9, 0, 0), &e.start);
      e.client = u"Acme";
      e.project = FromUtf8("Proj " + tag);
      e.custom1 = FromUtf8(tag);
      e.duration = 150;
      const auto note = NoteBlobFromText(NoteFor(tag));
      SetNote(&e, static_cast<std::int32_t>(note.size()), note.data());
      ASSERT_TRUE(AddEntry(store, e));
    }
    ASSERT_TRUE(data.volume->CommitBatch());
  }

  std::mt19937 random_{20261121};
  testing::TempDir dir_;
};

TEST_F(CrashSafetyTest, KilledAddsLoseNothingPrintedAndLeaveNoHalfEntry) {
  const auto full = TimeOf(Data(), AddArgs("t0"));
  std::map<std::string, ObjectId> printed{{"t0", 0}};
  const int rounds = Rounds(150);
  int finished = 0;
  for (int i = 1; i <= rounds; ++i) {
    const std::string tag = "t" + std::to_string(i);
    std::uniform_int_distribution<long> delay(0, full.count() * 5 / 4);
    const Killed k = RunAndKill(Data(), AddArgs(tag), std::chrono::microseconds(delay(random_)));
    finished += k.finished;
    if (!k.out.empty()) printed[tag] = std::stoll(k.out);
  }
  ASSERT_EQ(IntegrityCheck(Volume()), "ok");
  ASSERT_EQ(IntegrityCheck(RegistryFile()), "ok");
  const auto all = AllEntries(Data());
  for (const auto& [id, entry] : all) ExpectWhole(entry, {u"Acme"});
  std::map<std::string, ObjectId> stored;
  for (const auto& [id, entry] : all) stored[ToUtf8(entry.custom1)] = id;
  for (const auto& [tag, id] : printed) {
    ASSERT_TRUE(stored.count(tag)) << "printed entry " << tag << " is lost";
    if (id != 0) {
      EXPECT_EQ(stored[tag], id) << tag;
    }
  }
  // The kills must have hit runs in the middle, not only before or after.
  EXPECT_LT(finished, rounds);
  EXPECT_GT(all.size(), 1u);
  // The data folder still works after all that.
  EXPECT_EQ(RunQuillora(Data(), AddArgs("after")).status, 0);
}

// A backup of 600 entries (tags b0..b599), restored again and again into the
// same folder while being killed.
TEST_F(CrashSafetyTest, KilledRestoresLeaveOnlyWholeEntries) {
  ASSERT_NO_FATAL_FAILURE(Seed(600, "b"));
  const std::string backup = dir_.File("all.qbk");
  ASSERT_EQ(RunQuillora(Data(), {"backup", backup}).status, 0);
  const std::string target = dir_.File("target");
  const auto full = TimeOf(target, {"restore", backup});
  const int rounds = Rounds(25);
  for (int i = 0; i < rounds; ++i) {
    std::uniform_int_distribution<long> delay(0, full.count() * 5 / 4);
    RunAndKill(target, {"restore", backup}, std::chrono::microseconds(delay(random_)));
  }
  ASSERT_EQ(IntegrityCheck(target + "/" + kVolumeFileName), "ok");
  const auto all = AllEntries(target);
  EXPECT_GE(all.size(), 600u);
  for (const auto& [id, entry] : all) ExpectWhole(entry, {u"Acme"});
}

// Replaces the client of 300 entries back and forth while being killed: each
// entry keeps one of the two names, whole.
TEST_F(CrashSafetyTest, KilledReplacesLeaveEveryEntryWhole) {
  ASSERT_NO_FATAL_FAILURE(Seed(300, "r"));
  ASSERT_EQ(RunQuillora(Data(), {"client", "add", "Acme"}).status, 0);
  const std::vector<std::string> there{"--yes", "replace", "--type", "Client", "--find", "Acme",
                                       "--with", "Globex"};
  const std::vector<std::string> back{"--yes", "replace", "--type", "Client", "--find", "Globex",
                                      "--with", "Acme"};
  const auto full = TimeOf(Data(), there);
  TimeOf(Data(), back);
  const int rounds = Rounds(40);
  for (int i = 0; i < rounds; ++i) {
    std::uniform_int_distribution<long> delay(0, full.count() * 5 / 4);
    RunAndKill(Data(), i % 2 ? back : there, std::chrono::microseconds(delay(random_)));
  }
  ASSERT_EQ(IntegrityCheck(Volume()), "ok");
  const auto all = AllEntries(Data());
  EXPECT_EQ(all.size(), 300u);
  for (const auto& [id, entry] : all) ExpectWhole(entry, {u"Acme", u"Globex"});
}

TEST_F(CrashSafetyTest, KilledSettingsSetsKeepTheRegistrySound) {
  const auto full = TimeOf(Data(), {"settings", "set", "MinTime", "15"});
  const int rounds = Rounds(80);
  for (int i = 0; i < rounds; ++i) {
    std::uniform_int_distribution<long> delay(0, full.count() * 5 / 4);
    RunAndKill(Data(), {"settings", "set", "MinTime", i % 2 ? "15" : "30"},
               std::chrono::microseconds(delay(random_)));
  }
  ASSERT_EQ(IntegrityCheck(RegistryFile()), "ok");
  const auto shown = RunQuillora(Data(), {"settings", "show"});
  ASSERT_EQ(shown.status, 0) << shown.err;
  EXPECT_TRUE(shown.out.find("MinTime=15") != std::string::npos ||
              shown.out.find("MinTime=30") != std::string::npos)
      << shown.out;
  EXPECT_EQ(RunQuillora(Data(), {"settings", "set", "MinTime", "30"}).status, 0);
}

}  // namespace
}  // namespace quillora
