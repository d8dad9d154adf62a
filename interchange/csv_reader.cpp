#include "interchange/csv_reader.h"

#include "platform/code_page.h"
#include "platform/text.h"

namespace quillora {
namespace {

std::string FieldCountText(const CsvRecord& record, std::size_t header) {
  return "the record has " + std::to_string(record.fields.size()) +
         " fields; the header has " + std::to_string(header);
}

}  // namespace

bool DecodeCsvText(std::string_view bytes, int code_page, std::u16string* text,
                   CsvError* error) {
  text->clear();
  const bool le = bytes.substr(0, 2) == "\xFF\xFE";
  const bool be = bytes.substr(0, 2) == "\xFE\xFF";
  if (le || be) {
    const std::string_view units = bytes.substr(2);
    if (units.size() % 2 != 0) {
      error->line = 0;
      error->what = "the UTF-16 text has an odd number of bytes";
      return false;
    }
    text->reserve(units.size() / 2);
    for (std::size_t i = 0; i < units.size(); i += 2) {
      const auto a = static_cast<unsigned char>(units[i]);
      const auto b = static_cast<unsigned char>(units[i + 1]);
      text->push_back(static_cast<char16_t>(le ? (b << 8) | a : (a << 8) | b));
    }
    return true;
  }
  if (bytes.substr(0, 3) == "\xEF\xBB\xBF") bytes.remove_prefix(3);
  if (!FromUtf8Strict(bytes, text)) *text = FromAnsi(bytes, code_page);
  return true;
}

char16_t DetectCsvSeparator(std::u16string_view text) {
  int commas = 0;
  int semicolons = 0;
  bool quoted = false;
  for (char16_t c : text) {
    if (c == u'"') {
      quoted = !quoted;
    } else if (!quoted && (c == u'\n' || c == u'\r')) {
      break;
    } else if (!quoted && c == u',') {
      ++commas;
    } else if (!quoted && c == u';') {
      ++semicolons;
    }
  }
  return semicolons > commas ? u';' : u',';
}

bool ReadCsv(std::u16string_view text, const CsvSink& sink, CsvError* error) {
  const char16_t separator = DetectCsvSeparator(text);
  auto fail = [&](int line, std::string what) {
    error->line = line;
    error->what = std::move(what);
    return false;
  };

  bool have_header = false;
  std::size_t header_size = 0;
  CsvRecord record;
  std::u16string field;
  int line = 1;
  std::size_t i = 0;
  const std::size_t n = text.size();
  auto end_record = [&]() -> bool {
    record.fields.push_back(std::move(field));
    field.clear();
    // A blank line is no record.
    const bool blank = record.fields.size() == 1 && record.fields[0].empty();
    if (!blank) {
      if (!have_header) {
        have_header = true;
        header_size = record.fields.size();
        if (!sink.header(std::move(record.fields))) return fail(0, "");
      } else if (record.fields.size() != header_size) {
        return fail(record.line, FieldCountText(record, header_size));
      } else {
        sink.record(std::move(record));
      }
    }
    record = CsvRecord();
    return true;
  };
  // Ends the field at a separator.
  auto next_field = [&]() -> bool {
    if (record.fields.size() + 1 >= kCsvMaxFields) {
      return fail(record.line,
                  "a record has more than " + std::to_string(kCsvMaxFields) + " fields");
    }
    record.fields.push_back(std::move(field));
    field.clear();
    ++i;
    return true;
  };
  // One line break at text[i] (CR LF, LF or CR); moves past it.
  auto skip_break = [&] {
    if (text[i] == u'\r' && i + 1 < n && text[i + 1] == u'\n') ++i;
    ++i;
    ++line;
  };

  record.line = line;
  while (i < n) {
    const char16_t c = text[i];
    if (c == u'"' && field.empty()) {
      const int opened = line;
      ++i;
      for (;;) {
        if (i >= n) return fail(opened, "a quoted field is not closed");
        if (text[i] == u'"') {
          if (i + 1 < n && text[i + 1] == u'"') {
            field.push_back(u'"');
            i += 2;
            continue;
          }
          ++i;
          break;
        }
        if (text[i] == u'\r' || text[i] == u'\n') {
          // A line break inside quotes belongs to the field, as CR LF.
          field.append(u"\r\n");
          skip_break();
          continue;
        }
        field.push_back(text[i++]);
      }
      if (i < n && text[i] != separator && text[i] != u'\r' && text[i] != u'\n') {
        return fail(line, "text after the closing quote of a field");
      }
      continue;
    }
    if (c == u'"') return fail(line, "a quote inside a field that is not quoted");
    if (c == separator) {
      if (!next_field()) return false;
    } else if (c == u'\r' || c == u'\n') {
      if (!end_record()) return false;
      skip_break();
      record.line = line;
    } else {
      field.push_back(c);
      ++i;
    }
  }
  if (!end_record()) return false;
  if (!have_header) return fail(1, "the file has no header line");
  return true;
}

}  // namespace quillora
