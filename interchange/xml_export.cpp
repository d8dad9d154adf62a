#include "interchange/xml_export.h"

#include "interchange/export_format.h"
#include "platform/narrow_text_writer.h"
#include "timekeeping/duration.h"

namespace quillora {

std::u16string XmlDeclaration(std::uint16_t encoding) {
  std::u16string line = u"<?xml version=\"1.0\"";
  if (encoding > 0 && encoding < std::size(kXmlEncodingNames)) {
    line += u" encoding=\"";
    line += kXmlEncodingNames[encoding];
    line += u"\"";
  }
  line += u"?>\r\n";
  return line;
}

void AddXmlItem(MarkupDocument* doc, const TimeEntry& entry, const Settings& settings,
                const Locale& locale) {
  SystemTime when;
  const bool dated = FileTimeToSystemTime(entry.start, &when);
  doc->AddChildElement(u"ITEM");
  doc->AddChildAttribute(u"Billable", entry.billable ? u"Y" : u"N");
  doc->AddChildAttribute(u"Paid", entry.paid ? u"Y" : u"N");
  doc->IntoElement();
  doc->AddChildElement(u"DATE", dated ? locale.FormatDate(when, u"yyyy-MM-dd") : u"");
  doc->AddChildElement(u"CLIENT", entry.client);
  doc->AddChildElement(u"PROJECT", entry.project);
  doc->AddChildElement(u"PHASE", entry.phase);
  doc->AddChildElement(u"TASK", entry.task);
  if (dated && when.second == kStartTimeMark) {
    // "hh" is the 12-hour clock and the picture has no AM/PM marker, so 14:05
    // is written 02:05:00. Files that others read were written so; kept.
    SystemTime start = when;
    start.second = 0;
    doc->AddChildElement(u"START", locale.FormatTime(start, u"hh:mm:ss"));
  }
  doc->AddChildElement(u"DURATION", FormatExportHundredths(entry.duration));
  doc->AddChildElement(u"CURRENCY", entry.currency);
  if (entry.rate != 0) {
    doc->AddChildElement(u"RATE", FormatExportHundredths(entry.rate));
    doc->AddChildAttribute(u"Type", FormatInteger(entry.rateType));
  }
  // Written for every entry, billable or not.
  doc->AddChildElement(u"AMOUNT", FormatTwoDecimals(EntryAmount(entry, settings)));
  doc->AddChildElement(u"BILLTO", entry.billTo);
  doc->AddChildElement(u"CUSTOM1", entry.custom1);
  doc->AddChildElement(u"CUSTOM2", entry.custom2);
  doc->AddChildElement(u"CUSTOM3", entry.custom3);
  // The note keeps its line breaks here; "BreakSub" is for CSV only.
  const std::u16string note = ExportNoteText(entry);
  if (!note.empty()) doc->AddChildElement(u"NOTES", note);
  doc->OutOfElement();
}

bool ExportXml(const std::string& path, const EntryFilter& criteria,
               ExportSources& sources) {
  MarkupDocument doc;
  doc.AddElement(u"ITEMS");
  // The entries are read before the file is created: a walk that fails
  // leaves no file behind.
  const ExportWalkResult walked = WalkExportRange(
      sources.entries, criteria, sources.locale, [&](const TimeEntry& entry) {
        AddXmlItem(&doc, entry, sources.settings, sources.locale);
        return true;
      });
  if (walked != ExportWalkResult::kDone) return false;

  NarrowTextWriter writer(sources.files, sources.locale.AnsiCodePage());
  if (!writer.Open(path)) return false;
  const std::uint16_t encoding = sources.settings.encoding;
  const std::u16string declaration = XmlDeclaration(encoding);
  if (encoding != kXmlEncodingUtf16) {
    if (!writer.Write(declaration)) return false;
    if (!writer.Write(doc.DocumentText())) return false;
    return writer.Close();
  }
  if (!writer.WriteByteOrderMark()) return false;
  if (!writer.WriteRaw(declaration)) return false;
  // The UTF-16 document has always been reported written whatever its write
  // answered; only a file that then cannot be closed counts as failed.
  const bool document_written = writer.WriteRaw(doc.DocumentText());
  const bool closed = writer.Close();
  return closed || !document_written;
}

}  // namespace quillora
