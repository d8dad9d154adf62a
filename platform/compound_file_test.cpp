#include "platform/compound_file.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

#include "platform/text.h"
#include "tests/outside_tools.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

// "PREFIX" followed by the number: appended, since GCC 12 at -O3 takes
// "literal" + std::string&& for an overlapping copy (-Wrestrict).
std::string Numbered(const char* prefix, std::size_t number) {
  return std::string(prefix).append(std::to_string(number));
}

using testing::TempDir;

constexpr uint32_t kEnd = 0xFFFFFFFE;
constexpr uint32_t kNone = 0xFFFFFFFF;

// Keeps written bytes in memory; refuses every write past `limit` bytes.
class MemorySink : public CompoundSink {
 public:
  MemorySink(std::string* out, size_t limit, bool close_ok)
      : out_(out), limit_(limit), close_ok_(close_ok) {}
  bool Write(const char* data, size_t size) override {
    const size_t room = limit_ - std::min(limit_, out_->size());
    out_->append(data, std::min(size, room));
    return size <= room;
  }
  bool Close() override { return close_ok_; }

 private:
  std::string* out_;
  size_t limit_;
  bool close_ok_;
};

std::u16string U(const std::string& ascii) { return WidenAscii(ascii); }

std::string Pattern(size_t size, unsigned seed) {
  std::string bytes(size, '\0');
  for (size_t i = 0; i < size; ++i)
    bytes[i] = static_cast<char>((i * 131 + seed * 7 + i / 251) & 0xFF);
  return bytes;
}

// Writes into memory whatever `fill` adds; fails the test on any error.
std::string Build(const std::function<void(CompoundWriter&)>& fill) {
  std::string bytes;
  CompoundWriter writer;
  EXPECT_EQ(writer.Create(std::make_unique<MemorySink>(&bytes, SIZE_MAX, true)),
            CompoundResult::kOk);
  fill(writer);
  EXPECT_EQ(writer.Commit(), CompoundResult::kOk);
  return bytes;
}

void AddStream(CompoundWriter& w, CompoundStorage parent, const std::string& name,
               const std::string& data) {
  CompoundStream stream;
  ASSERT_EQ(w.CreateStream(parent, U(name), &stream), CompoundResult::kOk) << name;
  // Two writes, to check that they append.
  ASSERT_EQ(w.Write(stream, data.data(), data.size() / 3), CompoundResult::kOk);
  ASSERT_EQ(w.Write(stream, data.data() + data.size() / 3, data.size() - data.size() / 3),
            CompoundResult::kOk);
}

CompoundStorage AddStorage(CompoundWriter& w, CompoundStorage parent,
                           const std::string& name) {
  CompoundStorage storage;
  EXPECT_EQ(w.CreateStorage(parent, U(name), &storage), CompoundResult::kOk) << name;
  return storage;
}

// Lists a storage's tree as "path size crc" lines in enumeration order,
// reading every stream.
void Dump(const CompoundReader& r, CompoundStorage storage, const std::string& prefix,
          std::string* out) {
  CompoundEnumerator it = r.EnumElements(storage);
  CompoundElement e;
  while (it.Next(&e)) {
    const std::string path = prefix + ToUtf8(e.name);
    if (e.type == CompoundElementType::kStorage) {
      *out += path + "/\n";
      CompoundStorage child;
      ASSERT_EQ(r.OpenStorage(storage, e.name, &child), CompoundResult::kOk) << path;
      Dump(r, child, path + "/", out);
    } else {
      CompoundStream stream;
      ASSERT_EQ(r.OpenStream(storage, e.name, &stream), CompoundResult::kOk) << path;
      std::string bytes;
      ASSERT_EQ(r.ReadStream(stream, &bytes), CompoundResult::kOk) << path;
      ASSERT_EQ(bytes.size(), e.size) << path;
      *out += path + " " + std::to_string(e.size) + " " +
              std::to_string(testing::Crc32(bytes)) + "\n";
    }
  }
}

// The raw structures of a file, parsed independently of CompoundReader
// (files of at most 109 FAT sectors).
uint32_t Get32(const std::string& b, size_t at) {
  uint32_t v = 0;
  for (int i = 3; i >= 0; --i) v = v << 8 | static_cast<unsigned char>(b.at(at + i));
  return v;
}
void Put32(std::string& b, size_t at, uint32_t v) {
  for (int i = 0; i < 4; ++i) b.at(at + i) = static_cast<char>(v >> (8 * i));
}
size_t SectorOffset(uint32_t s) { return 512 + size_t{s} * 512; }
size_t FatEntry(const std::string& b, uint32_t s) {
  return SectorOffset(Get32(b, 0x4C + 4 * (s / 128))) + 4 * (s % 128);
}
std::vector<uint32_t> RawChain(const std::string& b, uint32_t s) {
  std::vector<uint32_t> chain;
  for (; s != kEnd && chain.size() < 100000; s = Get32(b, FatEntry(b, s)))
    chain.push_back(s);
  return chain;
}
size_t MiniFatEntry(const std::string& b, uint32_t m) {
  return SectorOffset(RawChain(b, Get32(b, 0x3C)).at(m / 128)) + 4 * (m % 128);
}

struct RawEntry {
  std::u16string name;
  uint8_t type, color;
  uint32_t left, right, child, start, size;
  size_t offset;  // of the entry in the file
};

std::vector<RawEntry> RawDirectory(const std::string& b) {
  std::vector<RawEntry> entries;
  for (uint32_t s : RawChain(b, Get32(b, 0x30))) {
    for (size_t at = SectorOffset(s); at < SectorOffset(s) + 512; at += 128) {
      RawEntry e{};
      const size_t units = (b.at(at + 0x40) & 0xFF) / 2;
      for (size_t k = 0; k + 1 < units; ++k)
        e.name.push_back(static_cast<char16_t>(Get32(b, at + 2 * k) & 0xFFFF));
      e.type = static_cast<uint8_t>(b.at(at + 0x42));
      e.color = static_cast<uint8_t>(b.at(at + 0x43));
      e.left = Get32(b, at + 0x44);
      e.right = Get32(b, at + 0x48);
      e.child = Get32(b, at + 0x4C);
      e.start = Get32(b, at + 0x74);
      e.size = Get32(b, at + 0x78);
      e.offset = at;
      entries.push_back(e);
    }
  }
  return entries;
}

const RawEntry& Named(const std::vector<RawEntry>& dir, const std::string& name) {
  for (const RawEntry& e : dir) {
    if (e.name == U(name) && e.type != 0) return e;
  }
  ADD_FAILURE() << "no entry " << name;
  return dir.at(0);
}

// Checks the red-black rules below `id` and appends the names in order.
// Returns the black height, or -1 after recording a fault in *why.
int CheckRedBlack(const std::vector<RawEntry>& dir, uint32_t id, bool parent_red,
                  std::vector<std::u16string>* order, std::string* why) {
  if (id == kNone) return 1;
  const RawEntry& e = dir.at(id);
  const bool red = e.color == 0;
  if (red && parent_red) *why = "red child of a red node: " + ToUtf8(e.name);
  const int left = CheckRedBlack(dir, e.left, red, order, why);
  order->push_back(e.name);
  const int right = CheckRedBlack(dir, e.right, red, order, why);
  if (left != right) *why = "unequal black heights below " + ToUtf8(e.name);
  return why->empty() ? left + (red ? 0 : 1) : -1;
}

TEST(CompoundFileTest, RoundTripsStreamsAroundTheMiniStreamCutoff) {
  const size_t sizes[] = {0, 1, 63, 64, 65, 511, 512, 513, 4095, 4096, 4097, 9000};
  const std::string bytes = Build([&](CompoundWriter& w) {
    for (size_t size : sizes)
      AddStream(w, w.root(), Numbered("S", size), Pattern(size, size));
    CompoundStorage deep =
        AddStorage(w, AddStorage(w, AddStorage(w, w.root(), "A"), "B"), "C");
    AddStream(w, deep, "Deep", Pattern(4100, 1));
    AddStorage(w, deep, "Empty");
  });
  CompoundReader r;
  ASSERT_EQ(r.OpenBytes(bytes), CompoundResult::kOk) << r.error_detail();
  for (size_t size : sizes) {
    CompoundStream s;
    ASSERT_EQ(r.OpenStream(r.root(), U(Numbered("s", size)), &s), CompoundResult::kOk)
        << size;
    std::string data = "stale";
    ASSERT_EQ(r.ReadStream(s, &data), CompoundResult::kOk) << size;
    EXPECT_EQ(data, Pattern(size, size)) << size;
    EXPECT_EQ(r.StreamSize(s), size);
  }
  std::string dump;
  Dump(r, r.root(), "", &dump);
  ASSERT_NE(dump.find("A/B/C/Empty/\n"), std::string::npos) << dump;
  EXPECT_LT(dump.find("A/B/C/Deep 4100 "), dump.find("A/B/C/Empty/\n")) << dump;
}

TEST(CompoundFileTest, EmptyFileHasRootDirectoryAndFatOnly) {
  const std::string bytes = Build([](CompoundWriter&) {});
  ASSERT_EQ(bytes.size(), 3u * 512);
  EXPECT_EQ(bytes.substr(0, 8), "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1");
  EXPECT_EQ(Get32(bytes, 0x18), 0x0003003Eu);  // minor 0x3E, major 3
  EXPECT_EQ(Get32(bytes, 0x1C), 0x0009FFFEu);  // byte order, sector shift 9
  EXPECT_EQ(Get32(bytes, 0x2C), 1u);           // one FAT sector
  EXPECT_EQ(Get32(bytes, 0x38), 4096u);
  EXPECT_EQ(Get32(bytes, 0x3C), kEnd);  // no mini FAT
  EXPECT_EQ(Get32(bytes, 0x44), kEnd);  // no DIFAT
  EXPECT_EQ(Get32(bytes, 0x4C), 1u);    // the FAT is sector 1
  EXPECT_EQ(Get32(bytes, 0x50), kNone);
  const std::vector<RawEntry> dir = RawDirectory(bytes);
  ASSERT_EQ(dir.size(), 4u);
  EXPECT_EQ(dir[0].name, u"Root Entry");
  EXPECT_EQ(dir[0].type, 5);
  EXPECT_EQ(dir[0].child, kNone);
  EXPECT_EQ(dir[1].type, 0);
  EXPECT_EQ(dir[1].left, kNone);
  EXPECT_EQ(Get32(bytes, SectorOffset(1)), kEnd);             // directory chain
  EXPECT_EQ(Get32(bytes, SectorOffset(1) + 4), 0xFFFFFFFDu);  // the FAT itself
  CompoundReader r;
  ASSERT_EQ(r.OpenBytes(bytes), CompoundResult::kOk) << r.error_detail();
  CompoundElement e;
  EXPECT_FALSE(r.EnumElements(r.root()).Next(&e));
}

TEST(CompoundFileTest, FindsByNameWithoutCaseAndChecksTypes) {
  const std::string bytes = Build([](CompoundWriter& w) {
    for (const char* name : {"b", "A", "_", "aa", "Record10", "Record2", "Z"})
      AddStream(w, w.root(), name, "x");
    AddStorage(w, w.root(), "Clients");
  });
  CompoundReader r;
  ASSERT_EQ(r.OpenBytes(bytes), CompoundResult::kOk);
  std::string names;
  CompoundEnumerator it = r.EnumElements(r.root());
  for (CompoundElement e; it.Next(&e);) names += ToUtf8(e.name) + ",";
  EXPECT_EQ(names, "A,b,Z,_,aa,Clients,Record2,Record10,");  // compared upper-cased
  CompoundStream s;
  CompoundStorage st;
  EXPECT_EQ(r.OpenStream(r.root(), u"RECORD2", &s), CompoundResult::kOk);
  EXPECT_EQ(r.OpenStream(r.root(), u"Record3", &s), CompoundResult::kNotFound);
  EXPECT_EQ(r.OpenStream(r.root(), u"clients", &s), CompoundResult::kWrongType);
  EXPECT_EQ(r.OpenStorage(r.root(), u"aa", &st), CompoundResult::kWrongType);
  EXPECT_EQ(r.OpenStorage(r.root(), u"CLIENTS", &st), CompoundResult::kOk);
  EXPECT_EQ(r.OpenStorage(CompoundStorage{s.id}, u"x", &st),
            CompoundResult::kInvalidHandle);
  EXPECT_EQ(r.OpenStorage(CompoundStorage{99999}, u"x", &st),
            CompoundResult::kInvalidHandle);
  EXPECT_EQ(r.ReadStream(CompoundStream{st.id}, &names), CompoundResult::kInvalidHandle);
}

TEST(CompoundFileTest, WriterRefusesBadNamesDuplicatesAndHandles) {
  std::string bytes;
  CompoundWriter w;
  CompoundStream s;
  CompoundStorage st;
  EXPECT_EQ(w.CreateStream(w.root(), u"a", &s), CompoundResult::kNotOpen);
  ASSERT_EQ(w.Create(std::make_unique<MemorySink>(&bytes, SIZE_MAX, true)),
            CompoundResult::kOk);
  const std::u16string name31(31, u'n');
  struct Case {
    std::u16string name;
    CompoundResult expected;
  } cases[] = {
      {name31, CompoundResult::kOk},
      {name31 + u"n", CompoundResult::kInvalidName},
      {u"", CompoundResult::kInvalidName},
      {u"a/b", CompoundResult::kInvalidName},
      {u"a!", CompoundResult::kInvalidName},
      {u"Name", CompoundResult::kOk},
      {u"NAME", CompoundResult::kNameExists},
      {u"name", CompoundResult::kNameExists},
      {u"\u00e4", CompoundResult::kOk},
      {u"\u00c4", CompoundResult::kNameExists},
      {std::u16string(31, u'N'), CompoundResult::kNameExists},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(w.CreateStream(w.root(), c.name, &s), c.expected) << ToUtf8(c.name);
  }
  EXPECT_EQ(w.CreateStorage(w.root(), u"name", &st), CompoundResult::kNameExists);
  ASSERT_EQ(w.CreateStorage(w.root(), u"Sub", &st), CompoundResult::kOk);
  EXPECT_EQ(w.CreateStream(st, u"Name", &s), CompoundResult::kOk);  // another storage
  EXPECT_EQ(w.CreateStream(CompoundStorage{s.id}, u"x", &s),
            CompoundResult::kInvalidHandle);
  EXPECT_EQ(w.Write(CompoundStream{st.id}, "x", 1), CompoundResult::kInvalidHandle);
  EXPECT_EQ(w.Write(CompoundStream{12345}, "x", 1), CompoundResult::kInvalidHandle);
  ASSERT_EQ(w.Commit(), CompoundResult::kOk);
  EXPECT_EQ(w.Write(s, "x", 1), CompoundResult::kNotOpen);
  EXPECT_EQ(w.Commit(), CompoundResult::kNotOpen);

  CompoundReader r;
  ASSERT_EQ(r.OpenBytes(bytes), CompoundResult::kOk) << r.error_detail();
  EXPECT_EQ(r.OpenStream(r.root(), name31, &s), CompoundResult::kOk);
  EXPECT_EQ(r.OpenStream(r.root(), u"\u00c4", &s), CompoundResult::kOk);
}

TEST(CompoundFileTest, ManyChildrenFormValidRedBlackTreesInContainerOrder) {
  for (int count : {1, 2, 3, 4, 5, 6, 7, 8, 9, 15, 16, 17, 31, 100, 1000, 1500}) {
    const std::string bytes = Build([&](CompoundWriter& w) {
      CompoundStorage records = AddStorage(w, w.root(), "Records");
      for (int i = count - 1; i >= 0; --i)
        AddStream(w, records, Numbered("Record", i), "r");
    });
    const std::vector<RawEntry> dir = RawDirectory(bytes);
    const RawEntry& records = Named(dir, "Records");
    std::vector<std::u16string> order;
    std::string why;
    EXPECT_EQ(dir.at(records.child).color, 1) << count << ": the tree's root is black";
    EXPECT_GT(CheckRedBlack(dir, records.child, false, &order, &why), 0)
        << count << ": " << why;
    ASSERT_EQ(order.size(), static_cast<size_t>(count));
    for (size_t i = 1; i < order.size(); ++i) {
      ASSERT_LT(CompareCompoundNames(order[i - 1], order[i]), 0) << count << " at " << i;
    }
    // The reader gives the same order.
    CompoundReader r;
    ASSERT_EQ(r.OpenBytes(bytes), CompoundResult::kOk) << r.error_detail();
    CompoundStorage st;
    ASSERT_EQ(r.OpenStorage(r.root(), u"Records", &st), CompoundResult::kOk);
    CompoundEnumerator it = r.EnumElements(st);
    CompoundElement e;
    for (const std::u16string& name : order) {
      ASSERT_TRUE(it.Next(&e));
      EXPECT_EQ(e.name, name);
    }
    EXPECT_FALSE(it.Next(&e));
  }
}

TEST(CompoundFileTest, ReadsADegenerateTreeWithoutRecursion) {
  // Another writer may link a storage's children as one long chain; the
  // reader needs order, not balance, and must not recurse 50,000 deep.
  const int count = 50'000;
  std::string bytes = Build([&](CompoundWriter& w) {
    for (int i = 0; i < count; ++i) {
      AddStream(w, w.root(), Numbered("R", i), "");
    }
  });
  const std::vector<RawEntry> dir = RawDirectory(bytes);
  std::vector<uint32_t> sorted;
  for (uint32_t id = 1; id <= count; ++id) sorted.push_back(id);
  std::sort(sorted.begin(), sorted.end(), [&dir](uint32_t a, uint32_t b) {
    return CompareCompoundNames(dir[a].name, dir[b].name) < 0;
  });
  Put32(bytes, dir[0].offset + 0x4C, sorted.back());
  for (size_t i = 0; i < sorted.size();
       ++i) {  // each node's left child is the one before
    Put32(bytes, dir[sorted[i]].offset + 0x44, i > 0 ? sorted[i - 1] : kNone);
    Put32(bytes, dir[sorted[i]].offset + 0x48, kNone);
  }
  CompoundReader r;
  ASSERT_EQ(r.OpenBytes(bytes), CompoundResult::kOk) << r.error_detail();
  CompoundEnumerator it = r.EnumElements(r.root());
  CompoundElement e;
  for (uint32_t id : sorted) {
    ASSERT_TRUE(it.Next(&e));
    ASSERT_EQ(e.name, dir[id].name);
  }
  EXPECT_FALSE(it.Next(&e));
  CompoundStream s;
  EXPECT_EQ(r.OpenStream(r.root(), u"r49999", &s), CompoundResult::kOk);
}

TEST(CompoundFileTest, LargeFileUsesDifatSectorsAndRefusesALoopInThem) {
  // 7.5 MB needs 116 FAT sectors: 109 in the header, 7 in one DIFAT sector.
  const std::string big = Pattern(7'500'000, 3);
  std::string bytes =
      Build([&](CompoundWriter& w) { AddStream(w, w.root(), "Big", big); });
  EXPECT_EQ(Get32(bytes, 0x2C), 116u);
  EXPECT_EQ(Get32(bytes, 0x48), 1u);
  CompoundReader r;
  ASSERT_EQ(r.OpenBytes(bytes), CompoundResult::kOk) << r.error_detail();
  CompoundStream s;
  std::string data;
  ASSERT_EQ(r.OpenStream(r.root(), u"Big", &s), CompoundResult::kOk);
  ASSERT_EQ(r.ReadStream(s, &data), CompoundResult::kOk);
  EXPECT_TRUE(data == big);

  // Claim more FAT sectors, so that the DIFAT chain must go on, and link the
  // DIFAT sector to itself.
  const uint32_t difat = Get32(bytes, 0x44);
  Put32(bytes, 0x2C, 116 + 127);
  Put32(bytes, SectorOffset(difat) + 127 * 4, difat);
  EXPECT_EQ(r.OpenBytes(bytes), CompoundResult::kCorrupt);
  EXPECT_NE(r.error_detail().find("DIFAT"), std::string::npos) << r.error_detail();
}

// A small file with every kind of chain: mini streams, a large stream, a
// nested storage.
void FillSample(CompoundWriter& w) {
  AddStream(w, w.root(), "Small", Pattern(100, 1));
  AddStream(w, w.root(), "Big", Pattern(5000, 2));
  AddStream(w, AddStorage(w, w.root(), "Sub"), "Inner", Pattern(300, 3));
}
std::string SampleFile() { return Build(FillSample); }

TEST(CompoundFileTest, RefusesDamagedFiles) {
  const std::string good = SampleFile();
  const std::vector<RawEntry> dir = RawDirectory(good);
  const RawEntry& root = dir[0];
  const RawEntry& small = Named(dir, "Small");
  const RawEntry& big = Named(dir, "Big");
  const RawEntry& sub = Named(dir, "Sub");
  const RawEntry& inner = Named(dir, "Inner");
  const std::vector<uint32_t> big_chain = RawChain(good, big.start);
  ASSERT_EQ(big_chain.size(), 10u);
  const uint32_t root_child = root.child;

  using Mutation = std::function<void(std::string&)>;
  struct Case {
    const char* what;
    Mutation mutate;
  } cases[] = {
      {"signature", [](std::string& b) { b[0] = 'x'; }},
      {"version 4", [](std::string& b) { b[0x1A] = 4; }},
      {"sector shift", [](std::string& b) { b[0x1E] = 12; }},
      {"no FAT", [](std::string& b) { Put32(b, 0x2C, 0); }},
      {"FAT count beyond file", [](std::string& b) { Put32(b, 0x2C, 1000); }},
      {"FAT sector out of range", [](std::string& b) { Put32(b, 0x4C, 5000); }},
      {"FAT sector is directory", [](std::string& b) { Put32(b, 0x4C, 0); }},
      {"no directory", [](std::string& b) { Put32(b, 0x30, kEnd); }},
      {"directory out of range", [](std::string& b) { Put32(b, 0x30, 0x00FFFFFF); }},
      {"mini FAT count", [](std::string& b) { Put32(b, 0x40, 7); }},
      {"free sector in chain",
       [&](std::string& b) { Put32(b, FatEntry(b, big_chain[0]), kNone); }},
      {"chain ends early",
       [&](std::string& b) { Put32(b, FatEntry(b, big_chain[4]), kEnd); }},
      {"sector loops to itself",
       [&](std::string& b) { Put32(b, FatEntry(b, big_chain[0]), big_chain[0]); }},
      {"chain loops back",
       [&](std::string& b) { Put32(b, FatEntry(b, big_chain[9]), big_chain[2]); }},
      {"chain goes into the directory",
       [&](std::string& b) { Put32(b, FatEntry(b, big_chain[9]), 0); }},
      {"stream start out of range",
       [&](std::string& b) { Put32(b, big.offset + 0x74, 0x00FFFFFF); }},
      {"stream start in directory",
       [&](std::string& b) { Put32(b, big.offset + 0x74, 0); }},
      {"size beyond chain", [&](std::string& b) { Put32(b, big.offset + 0x78, 5200); }},
      {"size short of chain", [&](std::string& b) { Put32(b, big.offset + 0x78, 4500); }},
      {"mini sector loops",
       [&](std::string& b) { Put32(b, MiniFatEntry(b, small.start), small.start); }},
      {"mini sector out of range",
       [&](std::string& b) { Put32(b, MiniFatEntry(b, small.start), 4000); }},
      {"mini chains shared",
       [&](std::string& b) { Put32(b, inner.offset + 0x74, small.start); }},
      {"mini size beyond chain",
       [&](std::string& b) { Put32(b, small.offset + 0x78, 200); }},
      {"no mini stream", [&](std::string& b) { Put32(b, root.offset + 0x78, 0); }},
      {"root is not first", [&](std::string& b) { b[root.offset + 0x42] = 1; }},
      {"child link back to root",
       [&](std::string& b) { Put32(b, sub.offset + 0x4C, 0); }},
      {"tree loops",
       [&](std::string& b) { Put32(b, dir.at(root_child).offset + 0x44, root_child); }},
      {"link out of range", [&](std::string& b) { Put32(b, sub.offset + 0x4C, 1000); }},
      {"unused entry in tree", [&](std::string& b) { Put32(b, sub.offset + 0x4C, 7); }},
      {"entry of unknown type", [&](std::string& b) { b[inner.offset + 0x42] = 0; }},
      {"name too long", [&](std::string& b) { b[inner.offset + 0x40] = 66; }},
      {"name without end", [&](std::string& b) { b[inner.offset + 10] = 'x'; }},
      {"names out of order", [&](std::string& b) { b[sub.offset] = 'A'; }},
      {"duplicate name",
       [&](std::string& b) {
         for (int k = 0; k < 3; ++k) b[sub.offset + 2 * k] = "BIG"[k];
       }},
  };
  CompoundReader r;
  for (const Case& c : cases) {
    std::string bytes = good;
    c.mutate(bytes);
    // A wrong header is no compound file at all; the rest is a damaged one.
    const CompoundResult expected =
        &c < cases + 3 ? CompoundResult::kNotCompoundFile : CompoundResult::kCorrupt;
    EXPECT_EQ(r.OpenBytes(bytes), expected) << c.what << ": " << r.error_detail();
    EXPECT_FALSE(r.error_detail().empty()) << c.what;
    CompoundStream s;
    EXPECT_EQ(r.OpenStream(r.root(), u"Big", &s), CompoundResult::kNotOpen) << c.what;
  }
  EXPECT_EQ(r.OpenBytes(good), CompoundResult::kOk) << r.error_detail();
  EXPECT_TRUE(r.error_detail().empty());
}

TEST(CompoundFileTest, RefusesEveryTruncationAndIgnoresTrailingBytes) {
  const std::string good = SampleFile();
  CompoundReader r;
  // The FAT is the last sector, so no shorter file can be read.
  for (size_t size = 0; size < good.size(); ++size) {
    ASSERT_NE(r.OpenBytes(good.substr(0, size)), CompoundResult::kOk) << size;
  }
  EXPECT_EQ(r.OpenBytes(good + "tail"), CompoundResult::kOk) << r.error_detail();
}

TEST(CompoundFileTest, ReportsFilesThatCannotBeCreatedOrRead) {
  // Failed writes and a failed close: tests/write_failure_test.cpp (backups).
  CompoundWriter w;
  TempDir dir;
  EXPECT_EQ(w.Create(dir.File("missing/x.qrd")), CompoundResult::kFileError);
  EXPECT_EQ(w.Create(std::unique_ptr<CompoundSink>()), CompoundResult::kFileError);
  CompoundReader r;
  EXPECT_EQ(r.Open(dir.File("none.qrd")), CompoundResult::kFileError);
  EXPECT_EQ(r.Open(dir.path()), CompoundResult::kFileError);

  CompoundWriter file;
  ASSERT_EQ(file.Create(CreateFileSink(dir.File("ok.qrd"))), CompoundResult::kOk);
  FillSample(file);
  ASSERT_EQ(file.Commit(), CompoundResult::kOk);
  EXPECT_EQ(testing::ReadFileBytes(dir.File("ok.qrd")), SampleFile());
  EXPECT_EQ(r.Open(dir.File("ok.qrd")), CompoundResult::kOk);
}

// The file the outside readers are given: nested storages, mini and large
// streams, many children, and enough data to need a DIFAT sector.
std::string CrossCheckFile(const TempDir& dir) {
  const std::string path = dir.File("cross.qrd");
  CompoundWriter w;
  EXPECT_EQ(w.Create(path), CompoundResult::kOk);
  AddStream(w, w.root(), "DataVersion", std::string("\xDC\0\0\0\1\0\0\0", 8));
  CompoundStorage records = AddStorage(w, w.root(), "Records");
  for (int i = 0; i < 1200; ++i)
    AddStream(w, records, Numbered("Record", i), Pattern(90 + i % 50, i));
  CompoundStorage clients = AddStorage(w, w.root(), "Clients");
  for (int i = 0; i < 3; ++i) {
    CompoundStorage client = AddStorage(w, clients, Numbered("Client", i));
    for (const char* name : {"Name", "ProjectTasks", "Tasks", "Contacts", "Rates"}) {
      AddStream(w, client, name, Pattern(i == 2 ? 6000 : 4 * i, i));
    }
  }
  AddStream(w, w.root(), "Large", Pattern(7'400'000, 9));
  EXPECT_EQ(w.Commit(), CompoundResult::kOk);
  return path;
}

TEST(CompoundFileTest, OlefileReadsWhatWeWrite) {
  const std::string python = testing::PythonWithOlefile();
  if (python.empty()) GTEST_SKIP() << "python3 with olefile not installed";
  TempDir dir;
  const std::string path = CrossCheckFile(dir);
  CompoundReader r;
  ASSERT_EQ(r.Open(path), CompoundResult::kOk) << r.error_detail();
  std::string ours;
  Dump(r, r.root(), "", &ours);

  // olefile lists in an order of its own: compare sorted "path size crc" lines.
  const std::string script = dir.File("list.py");
  testing::WriteFileBytes(
      script,
      "import olefile, sys, zlib\n"
      "ole = olefile.OleFileIO(sys.argv[1], raise_defects=olefile.DEFECT_INCORRECT)\n"
      "for p in ole.listdir(streams=True, storages=True):\n"
      "    name = '/'.join(p)\n"
      "    if ole.get_type(p) == olefile.STGTY_STORAGE:\n"
      "        print(name + '/')\n"
      "        continue\n"
      "    data = ole.openstream(p).read()\n"
      "    print(name, len(data), zlib.crc32(data))\n");
  const testing::CommandOutput listed =
      testing::RunCommand(python + " " + script + " " + path);
  ASSERT_TRUE(listed.ok) << listed.out.substr(0, 2000);
  const std::string& theirs = listed.out;
  auto sorted_lines = [](const std::string& text) {
    std::vector<std::string> lines;
    size_t begin = 0;
    for (size_t end; (end = text.find('\n', begin)) != std::string::npos;
         begin = end + 1) {
      lines.push_back(text.substr(begin, end - begin));
    }
    std::sort(lines.begin(), lines.end());
    return lines;
  };
  EXPECT_EQ(sorted_lines(theirs), sorted_lines(ours)) << theirs.substr(0, 2000);
}

}  // namespace
}  // namespace quillora
