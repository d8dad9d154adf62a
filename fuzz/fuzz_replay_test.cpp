// Replays a fuzz target's kept corpus in the normal build: every file in the
// folder goes once through the target's LLVMFuzzerTestOneInput, compiled
// here without libFuzzer. A finding the campaign kept as a regression file
// fails (or crashes) this test until it is fixed.
#include <dirent.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::string> CorpusFiles(const std::string& folder) {
  std::vector<std::string> files;
  DIR* dir = opendir(folder.c_str());
  if (dir == nullptr) return files;
  while (const dirent* e = readdir(dir)) {
    const std::string name = e->d_name;
    if (name == "." || name == "..") continue;
    files.push_back(folder + "/" + name);
  }
  closedir(dir);
  std::sort(files.begin(), files.end());
  return files;
}

TEST(FuzzCorpusReplay, EveryKeptInputRunsThroughTheTarget) {
  const std::vector<std::string> files = CorpusFiles(QUILLORA_FUZZ_CORPUS);
  ASSERT_FALSE(files.empty()) << "no corpus in " << QUILLORA_FUZZ_CORPUS;
  for (const std::string& path : files) {
    SCOPED_TRACE(path);
    std::ifstream in(path, std::ios::binary);
    ASSERT_TRUE(in) << "cannot read " << path;
    const std::vector<char> bytes((std::istreambuf_iterator<char>(in)),
                                  std::istreambuf_iterator<char>());
    // An exact-size heap copy, so that a read past the end shows under ASan.
    std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
    EXPECT_EQ(LLVMFuzzerTestOneInput(input.data(), input.size()), 0);
  }
}

}  // namespace
