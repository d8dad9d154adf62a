// Saved report definitions come back from backups: any bytes must either be
// refused or read into a definition that writes back as the same block and
// that the report editor can load and fill.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "reports/report_editor.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // A copy of exactly `size` bytes, so that any read past the end is caught.
  std::vector<std::uint8_t> block(data, data + size);
  quillora::ReportDefinition definition;
  if (!quillora::ParseReportDefinition(block.data(), block.size(), &definition)) return 0;
  const auto again = quillora::SerializeReportDefinition(definition);
  if (std::memcmp(again.data(), block.data(), again.size()) != 0) __builtin_trap();
  quillora::ReportEditor editor;
  editor.Load(definition);
  editor.Fill(&definition);
  quillora::ReportDefinition reread;
  const auto filled = quillora::SerializeReportDefinition(definition);
  if (!quillora::ParseReportDefinition(filled.data(), filled.size(), &reread))
    __builtin_trap();
  return 0;
}
