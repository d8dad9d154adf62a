// Files as the device's file calls gave them: create-always and write, read
// a whole file. Everything that writes or reads a user's file takes a
// FileSystem, so a test can make the disk fill up in the middle.
//
// Only regular files are read, and only regular files and character devices
// (such as /dev/null) are written: a FIFO, a socket or a folder is refused at
// once, before a byte moves, so that nothing waits forever on a pipe that no
// one writes or reads. Files are opened non-blocking for that check.
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
  // Creates the file (mode 0600: the files hold the user's billing data), or
  // truncates it when it exists (its mode is kept); null when it cannot, or
  // when the path is neither a regular file nor a character device.
  virtual std::unique_ptr<WritableFile> CreateAlways(const std::string& path) = 0;
  // The whole file; false when it cannot be read, is no regular file, or is
  // larger than `max_size` bytes (refused before a byte is read). The bytes
  // are then empty.
  virtual bool ReadWholeFile(const std::string& path, std::string* bytes,
                             std::size_t max_size) = 0;
  virtual bool Exists(const std::string& path) = 0;

  // The machine's files.
  static FileSystem& Posix();
};

// Why the last file operation of the calling thread failed: the file and the
// operating system's reason ("No such file or directory"). The machine's
// file system sets it on every failure; messages about a file show it as
// their detail and then clear it.
struct FileFailure {
  std::string path;
  std::string reason;  // empty: no failure recorded
};
const FileFailure& LastFileFailure();
void SetLastFileFailure(const std::string& path, std::string reason);
void ClearLastFileFailure();
// "PATH: REASON", or empty when no failure is recorded.
std::string DescribeLastFileFailure();

}  // namespace quillora

#endif  // QUILLORA_PLATFORM_FILE_H_
