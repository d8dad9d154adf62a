#include "backup/backup_file.h"

namespace quillora {

std::uint64_t Fnv1a(std::uint64_t digest, std::string_view bytes) {
  for (char c : bytes) {
    digest ^= static_cast<unsigned char>(c);
    digest *= 0x100000001b3ull;
  }
  return digest;
}

bool BackupFile::Create(FileSystem& files, const std::string& path) {
  nodes_.assign(1, Node{});
  ledger_of_id_.assign(1, 0);
  path_ = path;
  std::unique_ptr<WritableFile> file = files.CreateAlways(path);
  if (!file) return false;
  return writer_.Create(std::move(file)) == CompoundResult::kOk;
}

bool BackupFile::Add(CompoundStorage parent, std::u16string_view name, bool storage,
                     std::uint32_t id, std::uint32_t* ledger_index) {
  if (parent.id >= ledger_of_id_.size()) return false;
  const std::uint32_t parent_index = ledger_of_id_[parent.id];
  Node node;
  node.parent = parent_index;
  node.name = name;
  node.storage = storage;
  node.digest = kFnv1aSeed;
  ++nodes_[parent_index].children;
  *ledger_index = static_cast<std::uint32_t>(nodes_.size());
  nodes_.push_back(std::move(node));
  if (ledger_of_id_.size() <= id) ledger_of_id_.resize(id + 1, 0);
  ledger_of_id_[id] = *ledger_index;
  return true;
}

bool BackupFile::CreateStorage(CompoundStorage parent, std::u16string_view name,
                               CompoundStorage* out) {
  CompoundStorage storage;
  if (writer_.CreateStorage(parent, name, &storage) != CompoundResult::kOk) return false;
  std::uint32_t index;
  if (!Add(parent, name, true, storage.id, &index)) return false;
  *out = storage;
  return true;
}

bool BackupFile::CreateStream(CompoundStorage parent, std::u16string_view name,
                              CompoundStream* out) {
  CompoundStream stream;
  if (writer_.CreateStream(parent, name, &stream) != CompoundResult::kOk) return false;
  std::uint32_t index;
  if (!Add(parent, name, false, stream.id, &index)) return false;
  *out = stream;
  return true;
}

bool BackupFile::Write(CompoundStream stream, std::string_view bytes) {
  if (stream.id >= ledger_of_id_.size() || ledger_of_id_[stream.id] == 0) return false;
  if (writer_.Write(stream, bytes.data(), bytes.size()) != CompoundResult::kOk)
    return false;
  Node& node = nodes_[ledger_of_id_[stream.id]];
  node.size += bytes.size();
  node.digest = Fnv1a(node.digest, bytes);
  return true;
}

bool BackupFile::WriteStream(CompoundStorage parent, std::u16string_view name,
                             std::string_view bytes) {
  CompoundStream stream;
  return CreateStream(parent, name, &stream) && Write(stream, bytes);
}

bool BackupFile::Commit() { return writer_.Commit() == CompoundResult::kOk; }

bool BackupFile::Verify(FileSystem& files) const {
  std::string bytes;
  if (nodes_.empty() || !files.ReadWholeFile(path_, &bytes, kCompoundFileMaxBytes))
    return false;
  CompoundReader reader;
  if (reader.OpenBytes(std::move(bytes)) != CompoundResult::kOk) return false;
  // The reader's handle of each ledger node; parents come before children.
  std::vector<std::uint32_t> handle(nodes_.size(), 0);
  std::string content;
  for (std::size_t i = 1; i < nodes_.size(); ++i) {
    const Node& node = nodes_[i];
    const CompoundStorage parent{handle[node.parent]};
    if (node.storage) {
      CompoundStorage storage;
      if (reader.OpenStorage(parent, node.name, &storage) != CompoundResult::kOk)
        return false;
      handle[i] = storage.id;
    } else {
      CompoundStream stream;
      if (reader.OpenStream(parent, node.name, &stream) != CompoundResult::kOk ||
          reader.StreamSize(stream) != node.size ||
          reader.ReadStream(stream, &content) != CompoundResult::kOk ||
          Fnv1a(kFnv1aSeed, content) != node.digest) {
        return false;
      }
    }
  }
  // Nothing more than was written: each storage holds exactly its elements.
  for (std::size_t i = 0; i < nodes_.size(); ++i) {
    if (!nodes_[i].storage) continue;
    CompoundEnumerator it = reader.EnumElements(CompoundStorage{handle[i]});
    std::uint32_t count = 0;
    for (CompoundElement element; it.Next(&element);) ++count;
    if (count != nodes_[i].children) return false;
  }
  return true;
}

}  // namespace quillora
