#include "platform/property_codec.h"

#include <cstring>

namespace quillora {
namespace {

void PutU32(std::string* out, std::uint32_t v) {
  for (int i = 0; i < 4; ++i) out->push_back(static_cast<char>((v >> (8 * i)) & 0xFF));
}

void PutU64(std::string* out, std::uint64_t v) {
  for (int i = 0; i < 8; ++i) out->push_back(static_cast<char>((v >> (8 * i)) & 0xFF));
}

class Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {}
  bool U16(std::uint16_t* v) { return Take(2, v); }
  bool U32(std::uint32_t* v) { return Take(4, v); }
  bool U64(std::uint64_t* v) { return Take(8, v); }
  bool Bytes(std::size_t n, const char** p) {
    if (bytes_.size() - pos_ < n) return false;
    *p = bytes_.data() + pos_;
    pos_ += n;
    return true;
  }
  bool AtEnd() const { return pos_ == bytes_.size(); }

 private:
  template <typename T>
  bool Take(std::size_t n, T* v) {
    if (bytes_.size() - pos_ < n) return false;
    T value = 0;
    for (std::size_t i = 0; i < n; ++i) {
      value |= static_cast<T>(static_cast<unsigned char>(bytes_[pos_ + i])) << (8 * i);
    }
    pos_ += n;
    *v = value;
    return true;
  }
  std::string_view bytes_;
  std::size_t pos_ = 0;
};

}  // namespace

bool IsKnownPropType(PropType type) {
  switch (type) {
    case kPropI2:
    case kPropI4:
    case kPropR8:
    case kPropBool:
    case kPropUI2:
    case kPropUI4:
    case kPropString:
    case kPropFileTime:
    case kPropBlob:
      return true;
  }
  return false;
}

std::uint64_t NormalizeNumber(PropType type, std::uint64_t number) {
  switch (type) {
    case kPropI2:
      return static_cast<std::uint64_t>(
          static_cast<std::int64_t>(static_cast<std::int16_t>(number & 0xFFFF)));
    case kPropI4:
      return static_cast<std::uint64_t>(
          static_cast<std::int64_t>(static_cast<std::int32_t>(number & 0xFFFFFFFF)));
    case kPropUI2:
      return number & 0xFFFF;
    case kPropUI4:
    case kPropBool:
      return number & 0xFFFFFFFF;
    default:
      return number;
  }
}

std::string EncodeProps(const PropList& props) {
  std::string out;
  out.reserve(16 + props.size() * 24);
  const auto count = static_cast<std::uint16_t>(props.size());
  out.push_back(static_cast<char>(count & 0xFF));
  out.push_back(static_cast<char>(count >> 8));
  for (const PropValue& p : props) {
    PutU32(&out, p.id);
    switch (PropTypeOf(p.id)) {
      case kPropString:
        PutU32(&out, static_cast<std::uint32_t>(p.text.size()));
        for (char16_t c : p.text) {
          out.push_back(static_cast<char>(c & 0xFF));
          out.push_back(static_cast<char>(c >> 8));
        }
        break;
      case kPropBlob:
        PutU32(&out, static_cast<std::uint32_t>(p.blob.size()));
        out.append(reinterpret_cast<const char*>(p.blob.data()), p.blob.size());
        break;
      case kPropR8: {
        std::uint64_t bits;
        std::memcpy(&bits, &p.real, sizeof bits);
        PutU64(&out, bits);
        break;
      }
      default:
        PutU64(&out, NormalizeNumber(PropTypeOf(p.id), p.number));
        break;
    }
  }
  return out;
}

bool DecodeProps(std::string_view bytes, PropList* out) {
  out->clear();
  Reader in(bytes);
  std::uint16_t count;
  if (!in.U16(&count)) return false;
  out->reserve(count);
  for (std::uint16_t i = 0; i < count; ++i) {
    PropValue p;
    if (!in.U32(&p.id)) return false;
    const PropType type = PropTypeOf(p.id);
    if (!IsKnownPropType(type)) return false;
    if (type == kPropString || type == kPropBlob) {
      std::uint32_t n;
      const char* data;
      if (!in.U32(&n)) return false;
      const std::size_t size = type == kPropString ? std::size_t{n} * 2 : n;
      if (!in.Bytes(size, &data)) return false;
      if (type == kPropString) {
        p.text.resize(n);
        for (std::uint32_t k = 0; k < n; ++k) {
          p.text[k] = static_cast<char16_t>(
              static_cast<unsigned char>(data[2 * std::size_t{k}]) |
              static_cast<unsigned char>(data[2 * std::size_t{k} + 1]) << 8);
        }
      } else {
        p.blob.assign(reinterpret_cast<const std::uint8_t*>(data),
                      reinterpret_cast<const std::uint8_t*>(data) + n);
      }
    } else {
      std::uint64_t v;
      if (!in.U64(&v)) return false;
      if (type == kPropR8) {
        std::memcpy(&p.real, &v, sizeof v);
      } else {
        p.number = v;
      }
    }
    out->push_back(std::move(p));
  }
  return in.AtEnd();
}

}  // namespace quillora
