// Runs the quillora binary as a script would, on a given data folder, and
// gives back what it printed and its exit status.
#ifndef QUILLORA_TESTS_RUN_QUILLORA_H_
#define QUILLORA_TESTS_RUN_QUILLORA_H_

#include <string>
#include <vector>

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

}  // namespace quillora::testing

#endif  // QUILLORA_TESTS_RUN_QUILLORA_H_
