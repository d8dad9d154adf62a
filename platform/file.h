// Files as the device's file calls gave them: create-always and write, read
// a whole file. Everything that writes or reads a user's file takes a
// FileSystem, so a test can make the disk fill up in the middle.
#ifndef QUILLORA_PLATFORM_FILE_H_
#define QUILLORA_PLATFORM_FILE_H_

#include <cstddef>
#include <memory>
#include <string>

namespace quillora {

// A file open for writing. Write returns false when not every byte could be
// written (disk full); Close returns false when the data could not be made
// durable. Both keep whatever was written: a failed export leaves its partly
// written file in place.
class WritableFile {
 public:
  virtual ~WritableFile() = default;
  virtual bool Write(const char* data, std::size_t size) = 0;
  virtual bool Close() = 0;
};

class FileSystem {
 public:
  virtual ~FileSystem() = default;
  // Creates the file, or truncates it when it exists; null when it cannot.
  virtual std::unique_ptr<WritableFile> CreateAlways(const std::string& path) = 0;
  // The whole file; false when it cannot be read (the bytes are then empty).
  virtual bool ReadWholeFile(const std::string& path, std::string* bytes) = 0;
  virtual bool Exists(const std::string& path) = 0;

  // The machine's files.
  static FileSystem& Posix();
};

}  // namespace quillora

#endif  // QUILLORA_PLATFORM_FILE_H_
