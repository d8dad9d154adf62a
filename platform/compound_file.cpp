#include "platform/compound_file.h"

#include <unicode/uchar.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>
#include <unordered_set>

namespace quillora {
namespace {

constexpr uint32_t kFreeSect = 0xFFFFFFFF;
constexpr uint32_t kEndOfChain = 0xFFFFFFFE;
constexpr uint32_t kFatSect = 0xFFFFFFFD;
constexpr uint32_t kDifSect = 0xFFFFFFFC;
constexpr uint32_t kMaxRegSect = 0xFFFFFFFA;
constexpr uint32_t kNoStream = 0xFFFFFFFF;

constexpr uint32_t kSectorSize = 512;
constexpr uint32_t kMiniSectorSize = 64;
constexpr uint32_t kMiniStreamCutoff = 4096;
constexpr uint32_t kHeaderSize = 512;
constexpr uint32_t kEntrySize = 128;
constexpr uint32_t kEntriesPerSector = kSectorSize / kEntrySize;
constexpr uint32_t kIdsPerSector = kSectorSize / 4;
constexpr uint32_t kHeaderDifatEntries = 109;
constexpr uint32_t kIdsPerDifatSector = kIdsPerSector - 1;  // the last one links on

constexpr uint8_t kTypeUnused = 0;
constexpr uint8_t kTypeStorage = 1;
constexpr uint8_t kTypeStream = 2;
constexpr uint8_t kTypeRoot = 5;
constexpr uint8_t kRed = 0;
constexpr uint8_t kBlack = 1;

constexpr unsigned char kSignature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};

uint64_t CeilDiv(uint64_t value, uint64_t unit) { return (value + unit - 1) / unit; }

uint16_t Get16(const char* p) {
  return static_cast<uint16_t>(static_cast<unsigned char>(p[0]) |
                               static_cast<unsigned char>(p[1]) << 8);
}
uint32_t Get32(const char* p) {
  return static_cast<uint32_t>(Get16(p)) | static_cast<uint32_t>(Get16(p + 2)) << 16;
}

char16_t UpperUnit(char16_t c) {
  if (c < 0x80) return (c >= u'a' && c <= u'z') ? static_cast<char16_t>(c - 32) : c;
  if (c >= 0xD800 && c <= 0xDFFF) return c;  // surrogates keep their value
  const UChar32 upper = u_toupper(c);
  return upper <= 0xFFFF ? static_cast<char16_t>(upper) : c;
}

std::u16string UpperName(std::u16string_view name) {
  std::u16string upper(name);
  for (char16_t& c : upper) c = UpperUnit(c);
  return upper;
}

bool ValidName(std::u16string_view name) {
  if (name.empty() || name.size() > kCompoundMaxNameLength) return false;
  return std::none_of(name.begin(), name.end(), [](char16_t c) {
    return c == 0 || c == u'/' || c == u'\\' || c == u':' || c == u'!';
  });
}

// Collects output in blocks so that the sink sees few large writes; remembers
// the first failure and drops everything after it.
class BlockWriter {
 public:
  explicit BlockWriter(CompoundSink* sink) : sink_(sink) { block_.reserve(kBlock); }

  void Put(const void* data, size_t size) {
    const char* p = static_cast<const char*>(data);
    while (size > 0 && ok_) {
      const size_t n = std::min(size, kBlock - block_.size());
      block_.append(p, n);
      p += n;
      size -= n;
      written_ += n;
      if (block_.size() == kBlock) Flush();
    }
  }
  void Put16(uint16_t v) {
    const char b[2] = {static_cast<char>(v), static_cast<char>(v >> 8)};
    Put(b, 2);
  }
  void Put32(uint32_t v) {
    Put16(static_cast<uint16_t>(v));
    Put16(static_cast<uint16_t>(v >> 16));
  }
  void Put64(uint64_t v) {
    Put32(static_cast<uint32_t>(v));
    Put32(static_cast<uint32_t>(v >> 32));
  }
  void Zeros(uint64_t count) {
    static const char kZeros[kSectorSize] = {};
    while (count > 0 && ok_) {
      const size_t n = static_cast<size_t>(std::min<uint64_t>(count, sizeof kZeros));
      Put(kZeros, n);
      count -= n;
    }
  }
  // Zero-fills up to the next multiple of `unit` of the bytes written so far.
  void PadTo(uint32_t unit) { Zeros((unit - written_ % unit) % unit); }

  bool Flush() {
    if (ok_ && !block_.empty()) ok_ = sink_->Write(block_.data(), block_.size());
    block_.clear();
    return ok_;
  }

 private:
  static constexpr size_t kBlock = size_t{64} * 1024;
  CompoundSink* sink_;
  std::string block_;
  uint64_t written_ = 0;
  bool ok_ = true;
};

}  // namespace

const char* CompoundResultText(CompoundResult result) {
  switch (result) {
    case CompoundResult::kOk:
      return "ok";
    case CompoundResult::kFileError:
      return "file cannot be opened or read";
    case CompoundResult::kWriteFailed:
      return "file could not be written";
    case CompoundResult::kNotCompoundFile:
      return "not a compound file of a supported version";
    case CompoundResult::kCorrupt:
      return "compound file is damaged";
    case CompoundResult::kNotFound:
      return "no element of that name";
    case CompoundResult::kWrongType:
      return "element is of the other type";
    case CompoundResult::kInvalidName:
      return "invalid element name";
    case CompoundResult::kNameExists:
      return "element name already used";
    case CompoundResult::kInvalidHandle:
      return "invalid storage or stream";
    case CompoundResult::kNotOpen:
      return "no compound file open";
    case CompoundResult::kTooLarge:
      return "too large for a compound file";
  }
  return "unknown result";
}

int CompareCompoundNames(std::u16string_view a, std::u16string_view b) {
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  for (size_t i = 0; i < a.size(); ++i) {
    const char16_t ua = UpperUnit(a[i]);
    const char16_t ub = UpperUnit(b[i]);
    if (ua != ub) return ua < ub ? -1 : 1;
  }
  return 0;
}

std::unique_ptr<CompoundSink> CreateFileSink(const std::string& path) {
  return FileSystem::Posix().CreateAlways(path);
}

// ---------------------------------------------------------------------------
// Writer

struct CompoundWriter::Node {
  // A storage's set of names holds node ids only; these hash and compare the
  // ids by their nodes' upper-cased names, and take a name before it has a node.
  struct KeyHash {
    using is_transparent = void;
    size_t operator()(std::u16string_view key) const {
      return std::hash<std::u16string_view>()(key);
    }
    size_t operator()(uint32_t id) const { return (*this)((*nodes)[id].key); }
    const std::vector<Node>* nodes;
  };
  struct KeyEqual {
    using is_transparent = void;
    std::u16string_view Key(std::u16string_view key) const { return key; }
    std::u16string_view Key(uint32_t id) const { return (*nodes)[id].key; }
    template <typename A, typename B>
    bool operator()(const A& a, const B& b) const {
      return Key(a) == Key(b);
    }
    const std::vector<Node>* nodes;
  };
  using NameSet = std::unordered_set<uint32_t, KeyHash, KeyEqual>;

  std::u16string name;
  std::u16string key;  // upper-cased name: duplicates and order
  bool storage = false;
  std::string data;                // a stream's bytes
  std::vector<uint32_t> children;  // a storage's elements, as created
  std::unique_ptr<NameSet> taken;  // a storage's names
  // Laid out by Commit.
  uint32_t left = kNoStream, right = kNoStream, child = kNoStream;
  uint8_t color = kBlack;
  uint32_t start = kEndOfChain;
};

CompoundWriter::CompoundWriter() = default;
CompoundWriter::~CompoundWriter() = default;

CompoundResult CompoundWriter::Create(const std::string& path) {
  std::unique_ptr<CompoundSink> sink = CreateFileSink(path);
  if (sink == nullptr) {
    sink_.reset();
    nodes_.clear();
    return CompoundResult::kFileError;
  }
  return Create(std::move(sink));
}

CompoundResult CompoundWriter::Create(std::unique_ptr<CompoundSink> sink) {
  nodes_.clear();
  sink_ = std::move(sink);
  if (sink_ == nullptr) return CompoundResult::kFileError;
  Node& root = nodes_.emplace_back();
  root.name = u"Root Entry";
  root.storage = true;
  GiveNameSet(root);
  return CompoundResult::kOk;
}

void CompoundWriter::GiveNameSet(Node& storage) const {
  storage.taken =
      std::make_unique<Node::NameSet>(8, Node::KeyHash{&nodes_}, Node::KeyEqual{&nodes_});
}

CompoundResult CompoundWriter::AddNode(CompoundStorage parent, std::u16string_view name,
                                       bool storage, uint32_t* id) {
  if (sink_ == nullptr) return CompoundResult::kNotOpen;
  if (parent.id >= nodes_.size() || !nodes_[parent.id].storage) {
    return CompoundResult::kInvalidHandle;
  }
  if (!ValidName(name)) return CompoundResult::kInvalidName;
  if (nodes_.size() >= kMaxRegSect) return CompoundResult::kTooLarge;
  std::u16string key = UpperName(name);
  if (nodes_[parent.id].taken->contains(std::u16string_view(key))) {
    return CompoundResult::kNameExists;
  }
  *id = static_cast<uint32_t>(nodes_.size());
  nodes_[parent.id].children.push_back(*id);
  Node& node = nodes_.emplace_back();
  node.name = name;
  node.key = std::move(key);
  node.storage = storage;
  if (storage) GiveNameSet(node);
  nodes_[parent.id].taken->insert(*id);
  return CompoundResult::kOk;
}

CompoundResult CompoundWriter::CreateStorage(CompoundStorage parent,
                                             std::u16string_view name,
                                             CompoundStorage* out) {
  return AddNode(parent, name, true, &out->id);
}

CompoundResult CompoundWriter::CreateStream(CompoundStorage parent,
                                            std::u16string_view name,
                                            CompoundStream* out) {
  return AddNode(parent, name, false, &out->id);
}

CompoundResult CompoundWriter::Write(CompoundStream stream, const void* data,
                                     size_t size) {
  if (sink_ == nullptr) return CompoundResult::kNotOpen;
  if (stream.id >= nodes_.size() || nodes_[stream.id].storage) {
    return CompoundResult::kInvalidHandle;
  }
  std::string& bytes = nodes_[stream.id].data;
  if (size == 0) return CompoundResult::kOk;
  // The size field of a version 3 file holds 32 bits.
  if (size > 0xFFFFFFFFu - bytes.size()) return CompoundResult::kTooLarge;
  bytes.append(static_cast<const char*>(data), size);
  return CompoundResult::kOk;
}

CompoundResult CompoundWriter::Commit() {
  if (sink_ == nullptr) return CompoundResult::kNotOpen;
  CompoundResult result = WriteAll();
  if (!sink_->Close() && result == CompoundResult::kOk) {
    result = CompoundResult::kWriteFailed;
  }
  sink_.reset();
  nodes_.clear();
  return result;
}

namespace {

// Links a storage's children, sorted in the container's order, into a
// balanced binary tree by splitting every range at its middle. Such a tree
// has its empty links on two adjacent levels only, so colouring the nodes of
// the deepest level red (all others black) gives every path the same number
// of black nodes: a valid red-black tree. Iterative, for storages of any size.
template <typename NodeT>
void LinkTree(std::vector<NodeT>& nodes, uint32_t storage,
              const std::vector<uint32_t>& sorted) {
  struct Range {
    uint32_t lo, hi, depth;
    uint32_t* link;
  };
  std::vector<uint32_t> depth(sorted.size());
  uint32_t max_depth = 0;
  std::vector<Range> todo{
      {0, static_cast<uint32_t>(sorted.size()), 0, &nodes[storage].child}};
  while (!todo.empty()) {
    const Range r = todo.back();
    todo.pop_back();
    if (r.lo == r.hi) {
      *r.link = kNoStream;
      continue;
    }
    const uint32_t mid = r.lo + (r.hi - r.lo) / 2;
    NodeT& node = nodes[sorted[mid]];
    *r.link = sorted[mid];
    depth[mid] = r.depth;
    max_depth = std::max(max_depth, r.depth);
    todo.push_back({r.lo, mid, r.depth + 1, &node.left});
    todo.push_back({mid + 1, r.hi, r.depth + 1, &node.right});
  }
  for (size_t i = 0; i < sorted.size(); ++i) {
    nodes[sorted[i]].color = (depth[i] == max_depth && depth[i] > 0) ? kRed : kBlack;
  }
}

}  // namespace

CompoundResult CompoundWriter::WriteAll() {
  const uint32_t count = static_cast<uint32_t>(nodes_.size());

  // Directory trees, one per storage.
  std::vector<uint32_t> sorted;
  for (uint32_t i = 0; i < count; ++i) {
    if (!nodes_[i].storage) continue;
    sorted = nodes_[i].children;
    std::sort(sorted.begin(), sorted.end(), [this](uint32_t a, uint32_t b) {
      const std::u16string& ka = nodes_[a].key;
      const std::u16string& kb = nodes_[b].key;
      return ka.size() != kb.size() ? ka.size() < kb.size() : ka < kb;
    });
    LinkTree(nodes_, i, sorted);
  }

  // Sector plan: directory, mini FAT, mini stream, large streams, FAT, DIFAT.
  auto in_mini_stream = [](const Node& node) {
    return !node.storage && !node.data.empty() && node.data.size() < kMiniStreamCutoff;
  };
  auto large = [](const Node& node) {
    return !node.storage && node.data.size() >= kMiniStreamCutoff;
  };
  uint64_t mini_sectors = 0;
  uint64_t large_sectors = 0;
  for (Node& node : nodes_) {
    if (in_mini_stream(node)) {
      node.start = static_cast<uint32_t>(mini_sectors);
      mini_sectors += CeilDiv(node.data.size(), kMiniSectorSize);
    } else if (large(node)) {
      large_sectors += CeilDiv(node.data.size(), kSectorSize);
    }
  }
  const uint64_t dir_sectors = CeilDiv(count, kEntriesPerSector);
  const uint64_t mini_fat_sectors = CeilDiv(mini_sectors, kIdsPerSector);
  const uint64_t mini_stream_bytes = mini_sectors * kMiniSectorSize;
  const uint64_t mini_stream_sectors = CeilDiv(mini_stream_bytes, kSectorSize);
  const uint64_t data_sectors =
      dir_sectors + mini_fat_sectors + mini_stream_sectors + large_sectors;
  uint64_t fat_sectors = 0;
  uint64_t difat_sectors = 0;
  do {
    ++fat_sectors;
    difat_sectors = fat_sectors <= kHeaderDifatEntries
                        ? 0
                        : CeilDiv(fat_sectors - kHeaderDifatEntries, kIdsPerDifatSector);
  } while (fat_sectors * kIdsPerSector < data_sectors + fat_sectors + difat_sectors);
  const uint64_t total_sectors = data_sectors + fat_sectors + difat_sectors;
  if (total_sectors >= kMaxRegSect || mini_stream_bytes > 0xFFFFFFFFu) {
    return CompoundResult::kTooLarge;
  }

  const uint32_t mini_fat_start = static_cast<uint32_t>(dir_sectors);
  const uint32_t mini_stream_start =
      static_cast<uint32_t>(mini_fat_start + mini_fat_sectors);
  uint32_t next = static_cast<uint32_t>(mini_stream_start + mini_stream_sectors);
  for (Node& node : nodes_) {
    if (large(node)) {
      node.start = next;
      next += static_cast<uint32_t>(CeilDiv(node.data.size(), kSectorSize));
    }
  }
  const uint32_t fat_start = next;
  const uint32_t difat_start = static_cast<uint32_t>(fat_start + fat_sectors);

  std::vector<uint32_t> fat(fat_sectors * kIdsPerSector, kFreeSect);
  auto chain = [&fat](uint32_t first, uint64_t length) {
    for (uint64_t i = 0; i < length; ++i) {
      fat[first + i] =
          i + 1 < length ? static_cast<uint32_t>(first + i + 1) : kEndOfChain;
    }
  };
  chain(0, dir_sectors);
  chain(mini_fat_start, mini_fat_sectors);
  chain(mini_stream_start, mini_stream_sectors);
  for (const Node& node : nodes_) {
    if (large(node)) chain(node.start, CeilDiv(node.data.size(), kSectorSize));
  }
  for (uint64_t i = 0; i < fat_sectors; ++i) fat[fat_start + i] = kFatSect;
  for (uint64_t i = 0; i < difat_sectors; ++i) fat[difat_start + i] = kDifSect;

  BlockWriter out(sink_.get());
  // Header.
  out.Put(kSignature, sizeof kSignature);
  out.Zeros(16);      // CLSID
  out.Put16(0x003E);  // minor version
  out.Put16(0x0003);  // major version
  out.Put16(0xFFFE);  // byte order
  out.Put16(9);       // sector shift
  out.Put16(6);       // mini sector shift
  out.Zeros(6);
  out.Put32(0);  // directory sectors (always 0 in version 3)
  out.Put32(static_cast<uint32_t>(fat_sectors));
  out.Put32(0);  // first directory sector
  out.Put32(0);  // transaction signature
  out.Put32(kMiniStreamCutoff);
  out.Put32(mini_fat_sectors > 0 ? mini_fat_start : kEndOfChain);
  out.Put32(static_cast<uint32_t>(mini_fat_sectors));
  out.Put32(difat_sectors > 0 ? difat_start : kEndOfChain);
  out.Put32(static_cast<uint32_t>(difat_sectors));
  for (uint32_t i = 0; i < kHeaderDifatEntries; ++i) {
    out.Put32(i < fat_sectors ? fat_start + i : kFreeSect);
  }

  // Directory.
  for (uint32_t i = 0; i < dir_sectors * kEntriesPerSector; ++i) {
    if (i >= count) {
      out.Zeros(0x44);
      for (int k = 0; k < 3; ++k) out.Put32(kNoStream);
      out.Zeros(kEntrySize - 0x50);
      continue;
    }
    const Node& node = nodes_[i];
    for (char16_t c : node.name) out.Put16(c);
    out.Zeros(64 - 2 * node.name.size());
    out.Put16(static_cast<uint16_t>(2 * (node.name.size() + 1)));
    const uint8_t type_color[2] = {i == 0         ? kTypeRoot
                                   : node.storage ? kTypeStorage
                                                  : kTypeStream,
                                   node.color};
    out.Put(type_color, 2);
    out.Put32(node.left);
    out.Put32(node.right);
    out.Put32(node.storage ? node.child : kNoStream);
    out.Zeros(16 + 4 + 8 + 8);  // CLSID, state bits, creation and modification times
    if (i == 0) {
      out.Put32(mini_stream_sectors > 0 ? mini_stream_start : kEndOfChain);
      out.Put64(mini_stream_bytes);
    } else if (node.storage) {
      out.Put32(0);
      out.Put64(0);
    } else {
      out.Put32(node.data.empty() ? kEndOfChain : node.start);
      out.Put64(node.data.size());
    }
  }

  // Mini FAT, then the mini stream.
  for (const Node& node : nodes_) {
    if (!in_mini_stream(node)) continue;
    const uint64_t length = CeilDiv(node.data.size(), kMiniSectorSize);
    for (uint64_t i = 0; i < length; ++i) {
      out.Put32(i + 1 < length ? static_cast<uint32_t>(node.start + i + 1) : kEndOfChain);
    }
  }
  for (uint64_t i = mini_sectors; i < mini_fat_sectors * kIdsPerSector; ++i) {
    out.Put32(kFreeSect);
  }
  for (const Node& node : nodes_) {
    if (!in_mini_stream(node)) continue;
    out.Put(node.data.data(), node.data.size());
    out.PadTo(kMiniSectorSize);
  }
  out.PadTo(kSectorSize);

  // Large streams, FAT, DIFAT.
  for (const Node& node : nodes_) {
    if (!large(node)) continue;
    out.Put(node.data.data(), node.data.size());
    out.PadTo(kSectorSize);
  }
  for (uint32_t id : fat) out.Put32(id);
  for (uint64_t d = 0; d < difat_sectors; ++d) {
    for (uint64_t k = 0; k < kIdsPerDifatSector; ++k) {
      const uint64_t index = kHeaderDifatEntries + d * kIdsPerDifatSector + k;
      out.Put32(index < fat_sectors ? static_cast<uint32_t>(fat_start + index)
                                    : kFreeSect);
    }
    out.Put32(d + 1 < difat_sectors ? static_cast<uint32_t>(difat_start + d + 1)
                                    : kEndOfChain);
  }
  return out.Flush() ? CompoundResult::kOk : CompoundResult::kWriteFailed;
}

// ---------------------------------------------------------------------------
// Reader

struct CompoundReader::Entry {
  uint32_t name_begin = 0;  // in names_
  uint8_t name_length = 0;
  uint8_t type = kTypeUnused;
  bool reached = false;  // found in a storage's tree (handles point only to these)
  uint32_t left = kNoStream, right = kNoStream, child = kNoStream;
  uint32_t start = 0;
  uint32_t size = 0;
  uint32_t children_begin = 0, children_end = 0;  // a storage's run in children_
};

// Checks a file's structure once, filling the reader's tables. Every sector
// and mini sector may belong to one chain only; a sector met twice is a loop
// or a shared sector, and either way the file is refused. So each check is
// linear in the file's size and no chain can be longer than the file.
class CompoundReader::Checker {
 public:
  explicit Checker(CompoundReader* r) : r_(r), bytes_(r->bytes_) {}

  CompoundResult Run() {
    if (bytes_.size() < kHeaderSize) return Refuse(false, "shorter than a header");
    const char* h = bytes_.data();
    if (std::memcmp(h, kSignature, sizeof kSignature) != 0) {
      return Refuse(false, "no signature");
    }
    if (Get16(h + 0x1A) != 3) return Refuse(false, "not version 3");
    if (Get16(h + 0x1C) != 0xFFFE) return Refuse(false, "bad byte order mark");
    if (Get16(h + 0x1E) != 9 || Get16(h + 0x20) != 6) {
      return Refuse(false, "bad sector sizes");
    }
    if (Get32(h + 0x38) != kMiniStreamCutoff) {
      return Refuse(false, "bad mini stream cutoff");
    }

    // Only whole sectors count; a partial last sector cannot be addressed.
    const uint64_t whole = (bytes_.size() - kHeaderSize) / kSectorSize;
    if (whole >= kMaxRegSect) return Refuse(true, "file too large");
    sectors_ = static_cast<uint32_t>(whole);
    used_.assign(sectors_, false);

    if (!ReadFat(h) || !ReadMiniFat(h) || !ReadDirectory(h) || !WalkTrees()) {
      return CompoundResult::kCorrupt;
    }
    return CompoundResult::kOk;
  }

 private:
  CompoundResult Refuse(bool damaged, const std::string& why) {
    r_->error_detail_ = why;
    return damaged ? CompoundResult::kCorrupt : CompoundResult::kNotCompoundFile;
  }
  bool Fail(const std::string& why) {
    r_->error_detail_ = why;
    return false;
  }
  const char* Sector(uint32_t s) const {
    return bytes_.data() + kHeaderSize + uint64_t{s} * kSectorSize;
  }

  static std::string Name(const char* what, uint32_t id) {
    return id == kNoStream ? what : std::string(what) + " " + std::to_string(id);
  }

  // Takes sector s for one chain or table (`id`: the stream's directory entry).
  bool Claim(uint32_t s, const char* what, uint32_t id = kNoStream) {
    if (s >= sectors_) return Fail(Name(what, id) + ": sector index out of range");
    if (used_[s]) {
      return Fail(Name(what, id) + ": sector used twice (loop or shared sector)");
    }
    used_[s] = true;
    return true;
  }

  bool ReadFat(const char* h) {
    const uint32_t fat_count = Get32(h + 0x2C);
    if (fat_count == 0 || fat_count > sectors_) {
      return Fail("FAT sector count out of range");
    }
    std::vector<uint32_t> fat_sectors;
    for (uint32_t i = 0; i < fat_count && i < kHeaderDifatEntries; ++i) {
      fat_sectors.push_back(Get32(h + 0x4C + 4 * size_t{i}));
    }
    uint32_t difat = Get32(h + 0x44);
    while (fat_sectors.size() < fat_count) {
      if (!Claim(difat, "DIFAT chain")) return false;
      const char* p = Sector(difat);
      for (uint32_t k = 0; k < kIdsPerDifatSector && fat_sectors.size() < fat_count;
           ++k) {
        fat_sectors.push_back(Get32(p + 4 * size_t{k}));
      }
      difat = Get32(p + 4 * size_t{kIdsPerDifatSector});
    }
    r_->fat_.reserve(uint64_t{fat_count} * kIdsPerSector);
    for (uint32_t s : fat_sectors) {
      if (!Claim(s, "FAT")) return false;
      const char* p = Sector(s);
      for (uint32_t k = 0; k < kIdsPerSector; ++k)
        r_->fat_.push_back(Get32(p + 4 * size_t{k}));
    }
    // Sectors past the FAT's reach cannot belong to any chain.
    sectors_ = static_cast<uint32_t>(std::min<uint64_t>(sectors_, r_->fat_.size()));
    return true;
  }

  // Walks the chain from `start` through the FAT, claiming each sector. With
  // `length` set the chain must hold exactly that many sectors.
  bool Chain(uint32_t start, std::optional<uint64_t> length, const char* what,
             std::vector<uint32_t>* out, uint32_t id = kNoStream) {
    uint32_t s = start;
    for (uint64_t n = 0; length ? n < *length : s != kEndOfChain; ++n) {
      if (s == kEndOfChain) return Fail(Name(what, id) + ": chain shorter than its size");
      if (!Claim(s, what, id)) return false;
      if (out != nullptr) out->push_back(s);
      s = r_->fat_[s];
    }
    if (s != kEndOfChain) return Fail(Name(what, id) + ": chain longer than its size");
    return true;
  }

  bool ReadMiniFat(const char* h) {
    std::vector<uint32_t> sectors;
    const uint32_t count = Get32(h + 0x40);
    if (count > sectors_) return Fail("mini FAT sector count out of range");
    if (count > 0 && !Chain(Get32(h + 0x3C), count, "mini FAT", &sectors)) return false;
    r_->mini_fat_.reserve(uint64_t{count} * kIdsPerSector);
    for (uint32_t s : sectors) {
      for (uint32_t k = 0; k < kIdsPerSector; ++k) {
        r_->mini_fat_.push_back(Get32(Sector(s) + 4 * size_t{k}));
      }
    }
    return true;
  }

  bool ReadDirectory(const char* h) {
    std::vector<uint32_t> sectors;
    if (!Chain(Get32(h + 0x30), std::nullopt, "directory", &sectors)) return false;
    if (sectors.empty()) return Fail("no directory");
    r_->entries_.resize(sectors.size() * kEntriesPerSector);
    for (size_t i = 0; i < r_->entries_.size(); ++i) {
      const char* p =
          Sector(sectors[i / kEntriesPerSector]) + (i % kEntriesPerSector) * kEntrySize;
      Entry& e = r_->entries_[i];
      raw_.push_back(p);
      e.type = static_cast<uint8_t>(p[0x42]);
      e.left = Get32(p + 0x44);
      e.right = Get32(p + 0x48);
      e.child = Get32(p + 0x4C);
      e.start = Get32(p + 0x74);
      e.size = Get32(p + 0x78);  // version 3 readers ignore the high half
    }
    Entry& root = r_->entries_[0];
    if (root.type != kTypeRoot) return Fail("first directory entry is not the root");
    root.reached = true;
    // The mini stream is the root's stream; it always lives in sectors.
    mini_sectors_ = static_cast<uint32_t>(
        std::min<uint64_t>(CeilDiv(root.size, kMiniSectorSize), r_->mini_fat_.size()));
    mini_used_.assign(mini_sectors_, false);
    return root.size == 0 || Chain(root.start, CeilDiv(root.size, kSectorSize),
                                   "mini stream", &r_->mini_stream_sectors_);
  }

  bool CheckName(uint32_t id) {
    const char* p = raw_[id];
    const uint16_t bytes = Get16(p + 0x40);
    if (bytes < 4 || bytes > 64 || bytes % 2 != 0 || Get16(p + bytes - 2) != 0) {
      return Fail("directory entry " + std::to_string(id) + ": bad name");
    }
    Entry& e = r_->entries_[id];
    e.name_begin = static_cast<uint32_t>(r_->names_.size());
    e.name_length = static_cast<uint8_t>(bytes / 2 - 1);
    for (uint32_t k = 0; k + 2 < bytes; k += 2) {
      r_->names_.push_back(static_cast<char16_t>(Get16(p + k)));
    }
    return true;
  }

  bool CheckStream(uint32_t id) {
    const Entry& e = r_->entries_[id];
    if (e.size == 0) return true;
    if (e.size >= kMiniStreamCutoff) {
      return Chain(e.start, CeilDiv(e.size, kSectorSize), "stream", nullptr, id);
    }
    uint32_t s = e.start;
    for (uint64_t n = CeilDiv(e.size, kMiniSectorSize); n > 0; --n) {
      if (s >= mini_sectors_) {
        return Fail(Name("stream", id) + ": mini sector index out of range");
      }
      if (mini_used_[s]) {
        return Fail(Name("stream", id) + ": mini sector used twice (loop or shared)");
      }
      mini_used_[s] = true;
      s = r_->mini_fat_[s];
    }
    if (s != kEndOfChain) {
      return Fail(Name("stream", id) + ": mini chain longer than its size");
    }
    return true;
  }

  // Visits every storage's tree in order without recursion. Each directory
  // entry may be reached once; the children of a storage must come in strictly
  // rising name order (a repeated name is damage too).
  bool WalkTrees() {
    std::vector<Entry>& entries = r_->entries_;
    std::vector<uint32_t>& children = r_->children_;
    std::vector<uint32_t> storages{0};
    std::vector<uint32_t> stack;
    for (size_t q = 0; q < storages.size(); ++q) {
      Entry& storage = entries[storages[q]];
      storage.children_begin = static_cast<uint32_t>(children.size());
      uint32_t cur = storage.child;
      while (cur != kNoStream || !stack.empty()) {
        while (cur != kNoStream) {
          if (cur >= entries.size()) return Fail("directory link out of range");
          Entry& e = entries[cur];
          if (e.reached) {
            return Fail("directory entry " + std::to_string(cur) + " reached twice");
          }
          if (e.type != kTypeStorage && e.type != kTypeStream) {
            return Fail("directory entry " + std::to_string(cur) + ": bad type");
          }
          e.reached = true;
          stack.push_back(cur);
          cur = e.left;
        }
        cur = stack.back();
        stack.pop_back();
        // Names are taken in order, so that lookups read them side by side.
        if (!CheckName(cur)) return false;
        const Entry& e = entries[cur];
        if (children.size() > storage.children_begin &&
            CompareCompoundNames(r_->NameOf(entries[children.back()]), r_->NameOf(e)) >=
                0) {
          return Fail("directory entry " + std::to_string(cur) +
                      ": out of order or duplicate");
        }
        children.push_back(cur);
        if (e.type == kTypeStorage) {
          storages.push_back(cur);
        } else if (!CheckStream(cur)) {
          return false;
        }
        cur = e.right;
      }
      storage.children_end = static_cast<uint32_t>(children.size());
    }
    return true;
  }

  CompoundReader* r_;
  const std::string& bytes_;
  uint32_t sectors_ = 0;
  std::vector<bool> used_;
  uint32_t mini_sectors_ = 0;
  std::vector<bool> mini_used_;
  std::vector<const char*> raw_;  // each directory entry's bytes
};

CompoundReader::CompoundReader() = default;
CompoundReader::~CompoundReader() = default;

CompoundResult CompoundReader::Open(const std::string& path) {
  std::string bytes;
  if (!FileSystem::Posix().ReadWholeFile(path, &bytes, kCompoundFileMaxBytes)) {
    OpenBytes(std::string());
    error_detail_ = "cannot read the file";
    return CompoundResult::kFileError;
  }
  return OpenBytes(std::move(bytes));
}

CompoundResult CompoundReader::OpenBytes(std::string bytes) {
  bytes_ = std::move(bytes);
  entries_.clear();
  fat_.clear();
  mini_fat_.clear();
  mini_stream_sectors_.clear();
  children_.clear();
  names_.clear();
  error_detail_.clear();
  const CompoundResult result = Checker(this).Run();
  if (result != CompoundResult::kOk) {
    bytes_.clear();
    entries_.clear();
    fat_.clear();
    mini_fat_.clear();
    mini_stream_sectors_.clear();
    children_.clear();
    names_.clear();
  }
  return result;
}

const CompoundReader::Entry* CompoundReader::EntryOf(uint32_t id, uint8_t type) const {
  if (id >= entries_.size() || !entries_[id].reached) return nullptr;
  const Entry& e = entries_[id];
  const bool storage = e.type == kTypeStorage || e.type == kTypeRoot;
  return (type == kTypeStorage ? storage : e.type == kTypeStream) ? &e : nullptr;
}

std::u16string_view CompoundReader::NameOf(const Entry& entry) const {
  return std::u16string_view(names_).substr(entry.name_begin, entry.name_length);
}

CompoundResult CompoundReader::Find(CompoundStorage parent, std::u16string_view name,
                                    uint8_t type, uint32_t* id) const {
  if (entries_.empty()) return CompoundResult::kNotOpen;
  const Entry* storage = EntryOf(parent.id, kTypeStorage);
  if (storage == nullptr) return CompoundResult::kInvalidHandle;
  const auto begin = children_.begin() + storage->children_begin;
  const auto end = children_.begin() + storage->children_end;
  const auto it =
      std::lower_bound(begin, end, name, [this](uint32_t c, std::u16string_view n) {
        return CompareCompoundNames(NameOf(entries_[c]), n) < 0;
      });
  if (it == end || CompareCompoundNames(NameOf(entries_[*it]), name) != 0) {
    return CompoundResult::kNotFound;
  }
  if (EntryOf(*it, type) == nullptr) return CompoundResult::kWrongType;
  *id = *it;
  return CompoundResult::kOk;
}

CompoundResult CompoundReader::OpenStorage(CompoundStorage parent,
                                           std::u16string_view name,
                                           CompoundStorage* out) const {
  return Find(parent, name, kTypeStorage, &out->id);
}

CompoundResult CompoundReader::OpenStream(CompoundStorage parent,
                                          std::u16string_view name,
                                          CompoundStream* out) const {
  return Find(parent, name, kTypeStream, &out->id);
}

CompoundEnumerator CompoundReader::EnumElements(CompoundStorage storage) const {
  const Entry* e = EntryOf(storage.id, kTypeStorage);
  if (e == nullptr) return CompoundEnumerator(this, 0, 0);
  return CompoundEnumerator(this, e->children_begin, e->children_end);
}

bool CompoundEnumerator::Next(CompoundElement* element) {
  if (next_ >= end_) return false;
  const CompoundReader::Entry& e = reader_->entries_[reader_->children_[next_++]];
  element->name = reader_->NameOf(e);
  element->type = e.type == kTypeStream ? CompoundElementType::kStream
                                        : CompoundElementType::kStorage;
  element->size = e.type == kTypeStream ? e.size : 0;
  return true;
}

uint64_t CompoundReader::StreamSize(CompoundStream stream) const {
  const Entry* e = EntryOf(stream.id, kTypeStream);
  return e == nullptr ? 0 : e->size;
}

CompoundResult CompoundReader::ReadStream(CompoundStream stream,
                                          std::string* bytes) const {
  if (entries_.empty()) return CompoundResult::kNotOpen;
  const Entry* e = EntryOf(stream.id, kTypeStream);
  if (e == nullptr) return CompoundResult::kInvalidHandle;
  // Open checked this chain, so every index below is in range.
  bytes->clear();
  bytes->reserve(e->size);
  uint32_t s = e->start;
  while (bytes->size() < e->size) {
    const size_t left = e->size - bytes->size();
    if (e->size >= kMiniStreamCutoff) {
      bytes->append(bytes_, kHeaderSize + uint64_t{s} * kSectorSize,
                    std::min<size_t>(left, kSectorSize));
      s = fat_[s];
    } else {
      const uint64_t offset = uint64_t{s} * kMiniSectorSize;
      const uint32_t sector = mini_stream_sectors_[offset / kSectorSize];
      bytes->append(bytes_,
                    kHeaderSize + uint64_t{sector} * kSectorSize + offset % kSectorSize,
                    std::min<size_t>(left, kMiniSectorSize));
      s = mini_fat_[s];
    }
  }
  return CompoundResult::kOk;
}

}  // namespace quillora
