// Test helpers: compound files built from a listing, and the listing of a
// compound file, so that tests can write damaged files and compare layouts.
#ifndef QUILLORA_TESTS_BACKUP_TEST_FILES_H_
#define QUILLORA_TESTS_BACKUP_TEST_FILES_H_

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/compound_file.h"
#include "platform/text.h"

namespace quillora::testing {

// One element by its path: "Records/" is a storage, "Records/Record0" a
// stream with `bytes`. Parents must come before their children.
struct FileElement {
  std::string path;
  std::string bytes;
};

inline bool WriteCompoundFile(const std::string& file,
                              const std::vector<FileElement>& elements) {
  CompoundWriter writer;
  if (writer.Create(file) != CompoundResult::kOk) return false;
  std::map<std::string, CompoundStorage> storages{{"", writer.root()}};
  for (const FileElement& e : elements) {
    std::string path = e.path;
    const bool storage = !path.empty() && path.back() == '/';
    if (storage) path.pop_back();
    const auto slash = path.rfind('/');
    const std::string parent = slash == std::string::npos ? "" : path.substr(0, slash);
    const std::u16string name =
        FromUtf8(slash == std::string::npos ? path : path.substr(slash + 1));
    if (storage) {
      if (writer.CreateStorage(storages[parent], name, &storages[path]) !=
          CompoundResult::kOk)
        return false;
    } else {
      CompoundStream stream;
      if (writer.CreateStream(storages[parent], name, &stream) != CompoundResult::kOk ||
          writer.Write(stream, e.bytes.data(), e.bytes.size()) != CompoundResult::kOk)
        return false;
    }
  }
  return writer.Commit() == CompoundResult::kOk;
}

inline void ListStorage(const CompoundReader& reader, CompoundStorage storage,
                        const std::string& prefix, std::vector<FileElement>* out) {
  CompoundEnumerator it = reader.EnumElements(storage);
  for (CompoundElement e; it.Next(&e);) {
    const std::string path = prefix + ToUtf8(e.name);
    if (e.type == CompoundElementType::kStorage) {
      CompoundStorage child;
      reader.OpenStorage(storage, e.name, &child);
      out->push_back({path + "/", ""});
      ListStorage(reader, child, path + "/", out);
    } else {
      CompoundStream stream;
      std::string bytes;
      reader.OpenStream(storage, e.name, &stream);
      reader.ReadStream(stream, &bytes);
      out->push_back({path, bytes});
    }
  }
}

// Every element of the file in the container's order, each storage followed
// by its elements: storages as "path/", streams as "path" with their bytes.
// Empty when the file is refused.
inline std::vector<FileElement> ReadCompoundFile(const std::string& file) {
  std::vector<FileElement> out;
  CompoundReader reader;
  if (reader.Open(file) == CompoundResult::kOk)
    ListStorage(reader, reader.root(), "", &out);
  return out;
}

// The paths of the elements, one a line.
inline std::string Paths(const std::vector<FileElement>& elements) {
  std::string out;
  for (const FileElement& e : elements) out += e.path + "\n";
  return out;
}

// The bytes of one stream of the listing ("" when it is not there).
inline std::string StreamBytes(const std::vector<FileElement>& elements,
                               const std::string& path) {
  for (const FileElement& e : elements) {
    if (e.path == path) return e.bytes;
  }
  return "";
}

// Lowercase hex of bytes.
inline std::string Hex(const std::string& bytes) {
  static const char kDigits[] = "0123456789abcdef";
  std::string out;
  for (unsigned char c : bytes) {
    out += kDigits[c >> 4];
    out += kDigits[c & 15];
  }
  return out;
}

}  // namespace quillora::testing

#endif  // QUILLORA_TESTS_BACKUP_TEST_FILES_H_
