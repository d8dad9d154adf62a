#include "app/cli/window_launch.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace quillora {
namespace {

// The folder of the running binary, from /proc/self/exe; empty when unknown.
std::string OwnFolder() {
  std::vector<char> path(4096);
  const ssize_t n = readlink("/proc/self/exe", path.data(), path.size());
  if (n <= 0 || static_cast<std::size_t>(n) >= path.size()) return {};
  const std::string exe(path.data(), static_cast<std::size_t>(n));
  const std::size_t slash = exe.rfind('/');
  return slash == std::string::npos ? std::string() : exe.substr(0, slash);
}

}  // namespace

int StartWindow(const std::string& data_folder, const std::vector<std::string>& files) {
  std::vector<std::string> words = {kWindowProgram, "--data-dir", data_folder};
  if (!files.empty()) words.push_back("--");
  words.insert(words.end(), files.begin(), files.end());
  std::vector<char*> argv;
  for (std::string& w : words) argv.push_back(w.data());
  argv.push_back(nullptr);

  const std::string folder = OwnFolder();
  if (!folder.empty()) {
    const std::string beside = folder + "/" + kWindowProgram;
    if (access(beside.c_str(), X_OK) == 0) execv(beside.c_str(), argv.data());
  }
  execvp(kWindowProgram, argv.data());
  const int error = errno;
  std::fprintf(stderr,
               "quillora: cannot start the window: %s (%s, looked for beside this "
               "program and on PATH).\n'quillora --help' lists the commands.\n",
               kWindowProgram, std::strerror(error));
  return 1;
}

}  // namespace quillora
