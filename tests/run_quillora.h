// Runs the quillora binary as a script would, on a given data folder, and
// gives back what it printed and its exit status.
#ifndef QUILLORA_TESTS_RUN_QUILLORA_H_
#define QUILLORA_TESTS_RUN_QUILLORA_H_

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/temp_dir.h"

namespace quillora::testing {

struct RunResult {
  int status = -1;
  std::string out;
  std::string err;
};

// Runs `quillora --data-dir DATA_DIR ARGS...` with no terminal on standard
// input, QUILLORA_LOCALE=en-US and, when `now` is not empty, QUILLORA_NOW=now.
RunResult RunQuillora(const std::string& data_dir, const std::vector<std::string>& args,
                      const std::string& now = "2026-11-21T10:00:00");

// The words of a command line, for failure messages.
std::string CommandLine(const std::vector<std::string>& args);

// A fresh data folder, and the binary run on it at `now_`.
class CliFixture : public ::testing::Test {
 protected:
  std::string Data() const { return dir_.File("data"); }
  std::string File(const std::string& name) const { return dir_.File(name); }
  RunResult Run(const std::vector<std::string>& args) {
    return RunQuillora(Data(), args, now_);
  }
  // Runs a command that must succeed and answers what it printed.
  std::string Ok(const std::vector<std::string>& args) {
    const RunResult r = Run(args);
    EXPECT_EQ(r.status, 0) << CommandLine(args) << r.err;
    return r.out;
  }

  TempDir dir_;
  std::string now_ = "2026-11-21T10:00:00";
};

}  // namespace quillora::testing

#endif  // QUILLORA_TESTS_RUN_QUILLORA_H_
