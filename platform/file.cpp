#include "platform/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

namespace quillora {
namespace {

thread_local FileFailure g_last_failure;

constexpr char kNotRegular[] = "not a regular file";

void FailWithErrno(const std::string& path) {
  SetLastFileFailure(path, std::strerror(errno));
}

// Clears O_NONBLOCK once the file is known to be one that never blocks, so
// that the reads and writes that follow behave as on any file.
void MakeBlocking(int fd) {
  const int flags = ::fcntl(fd, F_GETFL);
  if (flags >= 0) ::fcntl(fd, F_SETFL, flags & ~O_NONBLOCK);
}

// Writes are gathered into blocks of 64 KiB: an export writes a line at a
// time, and a system call per line would cost more than the rest of the
// export. A write that fails (disk full) reports the failure at the call that
// sends the block; what the disk took stays in the file.
class PosixWritableFile : public WritableFile {
 public:
  PosixWritableFile(int fd, std::string path) : fd_(fd), path_(std::move(path)) {
    buffer_.reserve(kBlock);
  }
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
    if (!ok) FailWithErrno(path_);
    if (::close(fd_) != 0) {
      FailWithErrno(path_);
      ok = false;
    }
    fd_ = -1;
    return ok && flushed;
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
      if (n <= 0) {
        if (n == 0) errno = ENOSPC;
        FailWithErrno(path_);
        return false;
      }
      data += n;
      size -= static_cast<std::size_t>(n);
    }
    return true;
  }

  int fd_;
  std::string path_;
  std::string buffer_;
  bool failed_ = false;
};

class PosixFileSystem : public FileSystem {
 public:
  std::unique_ptr<WritableFile> CreateAlways(const std::string& path) override {
    // A FIFO is refused before it is opened: opening one for writing waits
    // for a reader, or fails with a reason that names no FIFO.
    struct stat st {};
    const bool existed = ::stat(path.c_str(), &st) == 0;
    if (existed && !S_ISREG(st.st_mode) && !S_ISCHR(st.st_mode)) {
      SetLastFileFailure(path, kNotRegular);
      return nullptr;
    }
    // Not truncated on opening: what the path names is checked first.
    const int fd =
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_NONBLOCK | O_CLOEXEC, 0600);
    if (fd < 0) {
      FailWithErrno(path);
      return nullptr;
    }
    if (::fstat(fd, &st) != 0 || !(S_ISREG(st.st_mode) || S_ISCHR(st.st_mode))) {
      SetLastFileFailure(path, kNotRegular);
      ::close(fd);
      return nullptr;
    }
    // The umask may have taken more than the group's and others' bits.
    if (!existed && S_ISREG(st.st_mode)) ::fchmod(fd, 0600);
    if (S_ISREG(st.st_mode) && ::ftruncate(fd, 0) != 0) {
      FailWithErrno(path);
      ::close(fd);
      return nullptr;
    }
    MakeBlocking(fd);
    return std::make_unique<PosixWritableFile>(fd, path);
  }

  bool ReadWholeFile(const std::string& path, std::string* bytes,
                     std::size_t max_size) override {
    bytes->clear();
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
      FailWithErrno(path);
      return false;
    }
    const bool ok = ReadOpenFile(fd, path, bytes, max_size);
    ::close(fd);
    if (!ok) bytes->clear();
    return ok;
  }

  bool Exists(const std::string& path) override {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0;
  }

 private:
  static bool ReadOpenFile(int fd, const std::string& path, std::string* bytes,
                           std::size_t max_size) {
    struct stat st {};
    if (::fstat(fd, &st) != 0) {
      FailWithErrno(path);
      return false;
    }
    if (!S_ISREG(st.st_mode)) {
      SetLastFileFailure(path, S_ISDIR(st.st_mode) ? std::strerror(EISDIR) : kNotRegular);
      return false;
    }
    if (static_cast<std::uint64_t>(st.st_size) > max_size) {
      SetLastFileFailure(path, std::strerror(EFBIG));
      return false;
    }
    MakeBlocking(fd);
    try {
      bytes->reserve(static_cast<std::size_t>(st.st_size));
    } catch (const std::bad_alloc&) {
      SetLastFileFailure(path, std::strerror(ENOMEM));
      return false;
    }
    char buffer[64 * 1024];
    for (;;) {
      const ssize_t n = ::read(fd, buffer, sizeof buffer);
      if (n < 0 && errno == EINTR) continue;
      if (n < 0) {
        FailWithErrno(path);
        return false;
      }
      if (n == 0) break;
      // The file may have grown since it was measured.
      if (bytes->size() + static_cast<std::size_t>(n) > max_size) {
        SetLastFileFailure(path, std::strerror(EFBIG));
        return false;
      }
      bytes->append(buffer, static_cast<std::size_t>(n));
    }
    return true;
  }
};

}  // namespace

FileSystem& FileSystem::Posix() {
  static PosixFileSystem posix;
  return posix;
}

const FileFailure& LastFileFailure() { return g_last_failure; }

void SetLastFileFailure(const std::string& path, std::string reason) {
  g_last_failure.path = path;
  g_last_failure.reason = std::move(reason);
}

void ClearLastFileFailure() { g_last_failure = FileFailure{}; }

std::string DescribeLastFileFailure() {
  if (g_last_failure.reason.empty()) return {};
  return g_last_failure.path + ": " + g_last_failure.reason;
}

}  // namespace quillora
