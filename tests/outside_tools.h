// Outside programs that read the files written here (olefile, gsf, xmllint):
// running them, and what is needed to compare with what they print.
#ifndef QUILLORA_TESTS_OUTSIDE_TOOLS_H_
#define QUILLORA_TESTS_OUTSIDE_TOOLS_H_

#include <cstdint>
#include <cstdio>
#include <string>

namespace quillora::testing {

// A shell command's standard output and whether it exited with 0.
struct CommandOutput {
  std::string out;
  bool ok = false;
};

inline CommandOutput RunCommand(const std::string& command) {
  CommandOutput result;
  if (FILE* pipe = popen(command.c_str(), "r")) {
    char buf[65536];
    for (std::size_t n; (n = std::fread(buf, 1, sizeof buf, pipe)) > 0;)
      result.out.append(buf, n);
    result.ok = pclose(pipe) == 0;
  }
  return result;
}

// The CRC-32 of zlib (and of Python's zlib.crc32).
inline std::uint32_t Crc32(const std::string& bytes) {
  std::uint32_t crc = 0xFFFFFFFFu;
  for (unsigned char c : bytes) {
    crc ^= c;
    for (int k = 0; k < 8; ++k) crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1)));
  }
  return ~crc;
}

// A python3 that can import olefile, or "" when there is none.
inline std::string PythonWithOlefile() {
  for (const char* python : {"/usr/bin/python3", "python3"}) {
    if (RunCommand(std::string(python) + " -c 'import olefile' >/dev/null 2>&1").ok)
      return python;
  }
  return "";
}

}  // namespace quillora::testing

#endif  // QUILLORA_TESTS_OUTSIDE_TOOLS_H_
