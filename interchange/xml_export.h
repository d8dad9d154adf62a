// The XML export: the time entries of a date range that pass the entry
// filter, one "ITEM" element each under "ITEMS", built with the markup writer
// and written behind an XML declaration as the entries are read.
#ifndef QUILLORA_INTERCHANGE_XML_EXPORT_H_
#define QUILLORA_INTERCHANGE_XML_EXPORT_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "interchange/csv_export.h"
#include "markup/markup_document.h"

namespace quillora {

// The "Encoding:" list of the "Export" options page, by "Encoding" index.
// The name is only a label in the declaration: the file is in the device's
// ANSI code page whatever it says, except for "UTF-16" (index 2).
inline constexpr std::u16string_view kXmlEncodingNames[] = {
    u"(Default)", u"UTF-8", u"UTF-16", u"ISO-8859-1", u"Shift-JIS", u"Big-5"};
inline constexpr std::uint16_t kXmlEncodingUtf16 = 2;

// The first line of the file, CR LF included: the version, and for an index
// from 1 to 5 the encoding attribute with its name. An index outside 0..5 is
// taken as 0, "(Default)".
std::u16string XmlDeclaration(std::uint16_t encoding);

// Makes `item` (emptied first) the "ITEM" element of one entry.
void BuildXmlItem(MarkupDocument* item, const TimeEntry& entry, const Settings& settings,
                  const Locale& locale);

// Writes the file at `path` (replacing one that exists): for "UTF-16" a byte
// order mark and UTF-16LE, otherwise the ANSI code page, one byte per
// character. The document goes to the file element by element as the entries
// are read, with the very bytes of the document built whole. False when the
// file cannot be created (no file is left then), an entry cannot be read, or
// the declaration or (not UTF-16) the document cannot be written; a partly
// written file is left in place. Whether the UTF-16 document was written is
// not looked at.
bool ExportXml(const std::string& path, const EntryFilter& criteria,
               ExportSources& sources);

}  // namespace quillora

#endif  // QUILLORA_INTERCHANGE_XML_EXPORT_H_
