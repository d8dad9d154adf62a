#include "tests/run_quillora.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "tests/temp_dir.h"

namespace quillora::testing {

RunResult RunQuillora(const std::string& data_dir, const std::vector<std::string>& args,
                      const std::string& now) {
  TempDir capture;
  const std::string out_path = capture.File("out"), err_path = capture.File("err");
  RunResult result;
  const pid_t pid = fork();
  if (pid == 0) {
    const int in = open("/dev/null", O_RDONLY);
    const int out = open(out_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    const int err = open(err_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(in, 0);
    dup2(out, 1);
    dup2(err, 2);
    setenv("QUILLORA_LOCALE", "en-US", 1);
    if (now.empty()) {
      unsetenv("QUILLORA_NOW");
    } else {
      setenv("QUILLORA_NOW", now.c_str(), 1);
    }
    std::vector<std::string> words = {QUILLORA_BINARY};
    if (!data_dir.empty()) {
      words.push_back("--data-dir");
      words.push_back(data_dir);
    }
    words.insert(words.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (std::string& w : words) argv.push_back(w.data());
    argv.push_back(nullptr);
    execv(argv[0], argv.data());
    _exit(127);
  }
  int status = 0;
  waitpid(pid, &status, 0);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  result.out = ReadFileBytes(out_path);
  result.err = ReadFileBytes(err_path);
  return result;
}

}  // namespace quillora::testing
