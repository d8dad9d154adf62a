#include "platform/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace quillora {
namespace {

// Writes are gathered into blocks of 64 KiB: an export writes a line at a
// time, and a system call per line would cost more than the rest of the
// export. A write that fails (disk full) reports the failure at the call that
// sends the block; what the disk took stays in the file.
class PosixWritableFile : public WritableFile {
 public:
  explicit PosixWritableFile(int fd) : fd_(fd) { buffer_.reserve(kBlock); }
  ~PosixWritableFile() override {
    if (fd_ >= 0) {
      Flush();
      ::close(fd_);
    }
  }

  bool Write(const char* data, std::size_t size) override {
    if (fd_ < 0 || failed_) return false;
    if (buffer_.size() + size <= kBlock) {
      buffer_.append(data, size);
      return true;
    }
    if (!Flush()) return false;
    if (size <= kBlock) {
      buffer_.append(data, size);
      return true;
    }
    failed_ = !WriteAll(data, size);
    return !failed_;
  }

  bool Close() override {
    if (fd_ < 0) return false;
    const bool flushed = Flush();
    // A file reported written must survive a power loss. Devices such as
    // /dev/full cannot be synced (EINVAL); that is no failure of ours.
    bool ok = ::fsync(fd_) == 0 || errno == EINVAL || errno == EROFS;
    ok = ::close(fd_) == 0 && ok && flushed;
    fd_ = -1;
    return ok;
  }

 private:
  static constexpr std::size_t kBlock = std::size_t{64} * 1024;

  bool Flush() {
    if (failed_) return false;
    if (buffer_.empty()) return true;
    failed_ = !WriteAll(buffer_.data(), buffer_.size());
    buffer_.clear();
    return !failed_;
  }

  bool WriteAll(const char* data, std::size_t size) {
    while (size > 0) {
      const ssize_t n = ::write(fd_, data, size);
      if (n < 0 && errno == EINTR) continue;
      if (n <= 0) return false;
      data += n;
      size -= static_cast<std::size_t>(n);
    }
    return true;
  }

  int fd_;
  std::string buffer_;
  bool failed_ = false;
};

class PosixFileSystem : public FileSystem {
 public:
  std::unique_ptr<WritableFile> CreateAlways(const std::string& path) override {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd < 0) return nullptr;
    return std::make_unique<PosixWritableFile>(fd);
  }

  bool ReadWholeFile(const std::string& path, std::string* bytes) override {
    bytes->clear();
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    struct stat st {};
    if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
      ::close(fd);
      return false;
    }
    bytes->reserve(static_cast<std::size_t>(st.st_size));
    char buffer[64 * 1024];
    for (;;) {
      const ssize_t n = ::read(fd, buffer, sizeof buffer);
      if (n < 0 && errno == EINTR) continue;
      if (n < 0) {
        ::close(fd);
        bytes->clear();
        return false;
      }
      if (n == 0) break;
      bytes->append(buffer, static_cast<std::size_t>(n));
    }
    ::close(fd);
    return true;
  }

  bool Exists(const std::string& path) override {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0;
  }
};

}  // namespace

FileSystem& FileSystem::Posix() {
  static PosixFileSystem posix;
  return posix;
}

}  // namespace quillora
