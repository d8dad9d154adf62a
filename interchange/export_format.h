// The number texts that the CSV and XML exports write, printf-style with the
// C library's rounding.
#ifndef QUILLORA_INTERCHANGE_EXPORT_FORMAT_H_
#define QUILLORA_INTERCHANGE_EXPORT_FORMAT_H_

#include <cstdint>
#include <string>

namespace quillora {

// "%.2f" of a value kept in hundredths (a duration or a rate) divided by 100.
std::u16string FormatExportHundredths(std::uint32_t hundredths);
// "%d".
std::u16string FormatInteger(int value);

}  // namespace quillora

#endif  // QUILLORA_INTERCHANGE_EXPORT_FORMAT_H_
