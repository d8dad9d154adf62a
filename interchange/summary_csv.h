// The quick summary's CSV file: the rows of the summary list, one line each,
// written by the dialog's command 40101 ("Save as CSV...") and by
// `quillora summary --csv FILE`.
#ifndef QUILLORA_INTERCHANGE_SUMMARY_CSV_H_
#define QUILLORA_INTERCHANGE_SUMMARY_CSV_H_

#include <string>
#include <vector>

#include "periods/quick_summary.h"
#include "platform/file.h"
#include "platform/user_prompt.h"

namespace quillora {

// One line of the file: the three cells each in double quotes, separated by
// commas, ended by CR LF. Every "h" of the middle cell becomes a blank first
// (12.50h is written "12.50 "); no character inside a cell is escaped, so a
// double quote in a project name is written as it stands.
std::u16string QuickSummaryCsvLine(const QuickSummaryRow& row);

enum class SummaryCsvResult {
  kWritten,      // every line written and the file closed
  kCancelled,    // no file chosen (or the replace question declined)
  kNotCreated,   // the file could not be created
  kWriteFailed,  // a line could not be written (the lines before it stay),
                 // or the file could not be closed
};

// The command: asks for the file to save (filter "CSV Files (*.csv)|*.csv|",
// default extension "csv", asking before an existing file is replaced, no
// read-only option), creates it, and writes every row's line in the ANSI
// code page of `code_page`, one byte per character. A failed write ends the
// command at that line. Shows no message whatever happens; the result tells
// the caller.
SummaryCsvResult ExportQuickSummaryCsv(const std::vector<QuickSummaryRow>& rows,
                                       UserPrompt& prompt, FileSystem& files,
                                       int code_page);

// Writes the lines to `path` without asking: creates (or truncates) the
// file and writes as above.
SummaryCsvResult WriteQuickSummaryCsv(const std::vector<QuickSummaryRow>& rows,
                                      const std::string& path, FileSystem& files,
                                      int code_page);

}  // namespace quillora

#endif  // QUILLORA_INTERCHANGE_SUMMARY_CSV_H_
