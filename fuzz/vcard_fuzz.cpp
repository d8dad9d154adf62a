// vCard files come from anywhere: any bytes give the cards that could be
// read, each with a name to file it as, without reading outside the input.
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "interchange/vcard.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // A copy of exactly `size` bytes, so that any read past the end is caught.
  const std::vector<char> bytes(data, data + size);
  const auto cards = quillora::ReadVCards(std::string_view(bytes.data(), bytes.size()));
  for (const quillora::VCard& card : cards) {
    if (card.file_as.empty()) __builtin_trap();
  }
  return 0;
}
