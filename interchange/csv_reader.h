// A reader of CSV files as spreadsheets and time trackers write them
// (RFC 4180): fields separated by commas or semicolons, a field in double
// quotes may hold separators, line breaks and doubled quotes; records end
// with CR LF, LF or CR. The file is UTF-8 (with or without its byte order
// mark), UTF-16 with a byte order mark, or, when it is not valid UTF-8, text
// in the ANSI code page of the locale.
//
// Malformed text is refused with the line and what was wrong there; the
// reader never reads outside the bytes it is given.
#ifndef QUILLORA_INTERCHANGE_CSV_READER_H_
#define QUILLORA_INTERCHANGE_CSV_READER_H_

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quillora {

struct CsvRecord {
  int line = 0;  // 1-based line on which the record starts
  std::vector<std::u16string> fields;
};

// A record holds at most this many fields.
inline constexpr std::size_t kCsvMaxFields = 1024;

// Where the records go as they are read: the header (the first record)
// first, then each later record; blank lines are left out. Header answers
// false to stop the reading.
struct CsvSink {
  std::function<bool(std::vector<std::u16string>&& header)> header;
  std::function<void(CsvRecord&& record)> record;
};

struct CsvError {
  int line = 0;
  std::string what;
};

// The text of a CSV file: after EF BB BF, or without a mark when the bytes
// are valid UTF-8, UTF-8; after FF FE UTF-16LE, after FE FF UTF-16BE;
// otherwise the bytes in `code_page`. False for UTF-16 with an odd number of
// bytes.
bool DecodeCsvText(std::string_view bytes, int code_page, std::u16string* text,
                   CsvError* error);

// The separator of a CSV text: a semicolon when its first line (outside
// quotes) holds more semicolons than commas, else a comma.
char16_t DetectCsvSeparator(std::u16string_view text);

// Splits `text` into records and hands them to `sink` as they are read, so
// a large file never stands in memory as fields. False with `error` set for
// text after a closing quote, a quote inside an unquoted field, a quote left
// open at the end, no header, a record of more than kCsvMaxFields fields or
// with more or fewer fields than the header; false with `error->what` empty
// when the sink's header answered false.
bool ReadCsv(std::u16string_view text, const CsvSink& sink, CsvError* error);

}  // namespace quillora

#endif  // QUILLORA_INTERCHANGE_CSV_READER_H_
