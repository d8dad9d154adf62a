// A FileSystem that passes everything to the machine's files but can fail:
// the k-th Write of any file, or every write once a number of bytes is on the
// "disk" (the write that crosses the limit keeps the bytes that fit).
#ifndef QUILLORA_TESTS_FAULTY_FILE_SYSTEM_H_
#define QUILLORA_TESTS_FAULTY_FILE_SYSTEM_H_

#include <cstdint>
#include <memory>
#include <string>

#include "platform/file.h"

namespace quillora::testing {

class FaultyFileSystem : public FileSystem {
 public:
  // 0: never. The count runs over every file this object creates.
  int fail_write_number = 0;
  std::uint64_t disk_bytes = UINT64_MAX;
  bool fail_close = false;
  bool fail_create = false;

  int writes() const { return writes_; }
  std::uint64_t bytes_written() const { return bytes_; }

  std::unique_ptr<WritableFile> CreateAlways(const std::string& path) override {
    if (fail_create) return nullptr;
    auto file = FileSystem::Posix().CreateAlways(path);
    if (!file) return nullptr;
    return std::make_unique<Faulty>(this, std::move(file));
  }
  bool ReadWholeFile(const std::string& path, std::string* bytes,
                     std::size_t max_size) override {
    return FileSystem::Posix().ReadWholeFile(path, bytes, max_size);
  }
  bool Exists(const std::string& path) override { return FileSystem::Posix().Exists(path); }

 private:
  class Faulty : public WritableFile {
   public:
    Faulty(FaultyFileSystem* fs, std::unique_ptr<WritableFile> file)
        : fs_(fs), file_(std::move(file)) {}
    bool Write(const char* data, std::size_t size) override {
      if (++fs_->writes_ == fs_->fail_write_number) return false;
      const std::uint64_t room = fs_->disk_bytes - fs_->bytes_;
      const std::size_t fits = size < room ? size : static_cast<std::size_t>(room);
      if (fits > 0 && !file_->Write(data, fits)) return false;
      fs_->bytes_ += fits;
      return fits == size;
    }
    bool Close() override { return file_->Close() && !fs_->fail_close; }

   private:
    FaultyFileSystem* fs_;
    std::unique_ptr<WritableFile> file_;
  };

  int writes_ = 0;
  std::uint64_t bytes_ = 0;
};

}  // namespace quillora::testing

#endif  // QUILLORA_TESTS_FAULTY_FILE_SYSTEM_H_
