#include "interchange/xml_export.h"

#include "markup/markup_stream.h"
#include "platform/narrow_text_writer.h"
#include "platform/text_pipe.h"
#include "store/name_text.h"
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

// Data from before names were checked (an old backup) may hold control
// characters, which XML 1.0 cannot hold even as references: each becomes "?"
// so that every export is well-formed.
std::u16string Xml(TextField field, const std::u16string& text) {
  if (!HoldsControlCharacter(field, text) &&
      text.find_first_of(u"\uFFFE\uFFFF") == std::u16string::npos) {
    return text;
  }
  return ReplaceControlCharacters(field, text);
}

void BuildXmlItem(MarkupDocument* doc, const TimeEntry& entry, const Settings& settings,
                  const Locale& locale) {
  SystemTime when;
  const bool dated = FileTimeToSystemTime(entry.start, &when);
  doc->Clear();
  doc->AddElement(u"ITEM");
  doc->AddAttribute(u"Billable", entry.billable ? u"Y" : u"N");
  doc->AddAttribute(u"Paid", entry.paid ? u"Y" : u"N");
  doc->AddChildElement(u"DATE", dated ? locale.FormatDate(when, u"yyyy-MM-dd") : u"");
  doc->AddChildElement(u"CLIENT", Xml(TextField::kClient, entry.client));
  doc->AddChildElement(u"PROJECT", Xml(TextField::kProject, entry.project));
  doc->AddChildElement(u"PHASE", Xml(TextField::kPhase, entry.phase));
  doc->AddChildElement(u"TASK", Xml(TextField::kTask, entry.task));
  if (dated && when.second == kStartTimeMark) {
    // "hh" is the 12-hour clock and the picture has no AM/PM marker, so 14:05
    // is written 02:05:00. Files that others read were written so; kept.
    SystemTime start = when;
    start.second = 0;
    doc->AddChildElement(u"START", locale.FormatTime(start, u"hh:mm:ss"));
  }
  doc->AddChildElement(u"DURATION", FormatHundredths(entry.duration));
  doc->AddChildElement(u"CURRENCY", Xml(TextField::kCurrency, entry.currency));
  if (entry.rate != 0) {
    doc->AddChildElement(u"RATE", FormatHundredths(entry.rate));
    doc->AddChildAttribute(u"Type", FormatInteger(entry.rateType));
  }
  // Written for every entry, billable or not.
  doc->AddChildElement(u"AMOUNT", FormatTwoDecimals(EntryAmount(entry, settings)));
  doc->AddChildElement(u"BILLTO", Xml(TextField::kBillTo, entry.billTo));
  doc->AddChildElement(u"CUSTOM1", Xml(TextField::kCustom1, entry.custom1));
  doc->AddChildElement(u"CUSTOM2", Xml(TextField::kCustom2, entry.custom2));
  doc->AddChildElement(u"CUSTOM3", Xml(TextField::kCustom3, entry.custom3));
  // The note keeps its line breaks here; "BreakSub" is for CSV only.
  const std::u16string note = ExportNoteText(entry);
  if (!note.empty()) doc->AddChildElement(u"NOTES", Xml(TextField::kNote, note));
}

bool ExportXml(const std::string& path, const EntryFilter& criteria,
               ExportSources& sources) {
  NarrowTextWriter writer(sources.files, sources.locale.AnsiCodePage());
  sources.exported = 0;
  if (!writer.Open(path)) return false;
  const std::uint16_t encoding = sources.settings.encoding;
  const bool utf16 = encoding == kXmlEncodingUtf16;
  const std::u16string declaration = XmlDeclaration(encoding);
  if (utf16) {
    if (!writer.WriteByteOrderMark() || !writer.WriteRaw(declaration)) return false;
  } else if (!writer.Write(declaration)) {
    return false;
  }

  // The pieces are converted and written on a second thread while the next
  // ones are built.
  TextPipe pipe([&](std::u16string_view piece) {
    return utf16 ? writer.WriteRaw(piece) : writer.WritePart(piece);
  });
  MarkupStream stream([&](std::u16string_view piece) { return pipe.Put(piece); });
  stream.Open(u"ITEMS");
  MarkupDocument item;
  // The walk ends at the first write that fails: the disk will not take more.
  const ExportWalkResult walked = WalkExportRange(
      sources.entries, criteria, sources.locale, [&](const TimeEntry& entry) {
        BuildXmlItem(&item, entry, sources.settings, sources.locale);
        stream.Add(item);
        ++sources.exported;
        return stream.ok();
      });
  const bool streamed = stream.Finish();
  const bool piped = pipe.Finish();
  const bool written = streamed && piped && (utf16 || writer.EndParts());
  const bool closed = writer.Close();
  if (walked == ExportWalkResult::kReadFailed) return false;
  // The UTF-16 document has always been reported written whatever its write
  // answered; only a file that then cannot be closed counts as failed.
  if (utf16) return closed || !written;
  return written && closed;
}

}  // namespace quillora
