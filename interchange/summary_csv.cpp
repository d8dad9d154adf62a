#include "interchange/summary_csv.h"

#include "platform/narrow_text_writer.h"
#include "store/string_table.h"

namespace quillora {

std::u16string QuickSummaryCsvLine(const QuickSummaryRow& row) {
  // The hours cells end in "h"; a spreadsheet reads the number when the
  // suffix is a blank. Every "h" of the cell goes, whatever the cell holds:
  // the kind "Month" is written "Mont ".
  std::u16string middle = row[1];
  for (char16_t& c : middle) {
    if (c == u'h') c = u' ';
  }
  std::u16string line;
  line.reserve(row[0].size() + middle.size() + row[2].size() + 12);
  line += u'"';
  line += row[0];
  line += u"\",\"";
  line += middle;
  line += u"\",\"";
  line += row[2];
  line += u"\"\r\n";
  return line;
}

SummaryCsvResult WriteQuickSummaryCsv(const std::vector<QuickSummaryRow>& rows,
                                      const std::string& path, FileSystem& files,
                                      int code_page) {
  NarrowTextWriter writer(files, code_page);
  if (!writer.Open(path)) return SummaryCsvResult::kNotCreated;
  for (const QuickSummaryRow& row : rows) {
    if (!writer.Write(QuickSummaryCsvLine(row))) {
      writer.Close();
      return SummaryCsvResult::kWriteFailed;
    }
  }
  return writer.Close() ? SummaryCsvResult::kWritten : SummaryCsvResult::kWriteFailed;
}

SummaryCsvResult ExportQuickSummaryCsv(const std::vector<QuickSummaryRow>& rows,
                                       UserPrompt& prompt, FileSystem& files,
                                       int code_page) {
  FileChooser chooser;
  chooser.filter = LoadString(kIdsSummaryCsvFilter);
  chooser.default_extension = u"csv";
  chooser.flags = kFileOverwritePrompt | kFileHideReadOnly;
  const std::optional<std::string> path = prompt.ChooseFileToSave(chooser);
  if (!path) return SummaryCsvResult::kCancelled;
  return WriteQuickSummaryCsv(rows, *path, files, code_page);
}

}  // namespace quillora
