// A fresh folder under the system's temporary folder, removed with everything
// in it when the object goes.
#ifndef QUILLORA_TESTS_TEMP_DIR_H_
#define QUILLORA_TESTS_TEMP_DIR_H_

#include <string>

namespace quillora::testing {

class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return path_; }
  // path() + "/" + name.
  std::string File(const std::string& name) const;

 private:
  std::string path_;
};

// Whole contents of a file ("" when it cannot be read).
std::string ReadFileBytes(const std::string& path);
// Replaces a file with the given bytes.
void WriteFileBytes(const std::string& path, const std::string& bytes);

}  // namespace quillora::testing

#endif  // QUILLORA_TESTS_TEMP_DIR_H_
