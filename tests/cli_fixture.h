// The command line's end-to-end tests: a fresh data folder, and the binary run
// on it.
#ifndef QUILLORA_TESTS_CLI_FIXTURE_H_
#define QUILLORA_TESTS_CLI_FIXTURE_H_

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/run_quillora.h"
#include "tests/temp_dir.h"

namespace quillora::testing {

// The words of a command line, for failure messages.
inline std::string CommandLine(const std::vector<std::string>& args) {
  std::string line;
  for (const auto& a : args) line += a + " ";
  return line;
}

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

#endif  // QUILLORA_TESTS_CLI_FIXTURE_H_
