// The byte form in which the object store keeps a record's properties, and the
// sort keys by which records are ordered.
#ifndef QUILLORA_PLATFORM_PROPERTY_CODEC_H_
#define QUILLORA_PLATFORM_PROPERTY_CODEC_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/object_store.h"

namespace quillora {

// Record bytes: a 16-bit count, then per property its 32-bit id and its value:
// 8 bytes for numbers, booleans, FILETIMEs and doubles; a 32-bit unit count
// and UTF-16LE units for strings; a 32-bit byte count and the bytes for BLOBs.
// All little-endian.
std::string EncodeProps(const PropList& props);

// Decodes record bytes; false for bytes that are not a whole, well-formed
// record (every length is checked against what is left).
bool DecodeProps(std::string_view bytes, PropList* out);

// True for the value types the store can hold.
bool IsKnownPropType(PropType type);

// Brings a written number to its type's width (UI2 keeps 16 bits, I2 is
// sign-extended from 16 bits, ...), as the device's value union did.
std::uint64_t NormalizeNumber(PropType type, std::uint64_t number);

}  // namespace quillora

#endif  // QUILLORA_PLATFORM_PROPERTY_CODEC_H_
