#include "interchange/xml_export.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "interchange/export_test_fixture.h"
#include "platform/code_page.h"
#include "tests/faulty_file_system.h"
#include "tests/outside_tools.h"

namespace quillora {
namespace {

// The document of the four sample entries inside the range, one element a
// line as the markup writer writes it; the project's e acute is written as
// one character.
constexpr char16_t kItems[] =
    u"<ITEMS>\r\n"
    u"<ITEM Billable=\"Y\" Paid=\"N\">\r\n"
    u"<DATE>2026-11-20</DATE>\r\n"
    u"<CLIENT>Acme \"Big\" &amp; Co, &lt;Ltd&gt;</CLIENT>\r\n"
    u"<PROJECT>Caf\u00e9</PROJECT>\r\n"
    u"<PHASE/>\r\n"
    u"<TASK>Design</TASK>\r\n"
    u"<START>02:05:00</START>\r\n"
    u"<DURATION>1.50</DURATION>\r\n"
    u"<CURRENCY>EUR</CURRENCY>\r\n"
    u"<RATE Type=\"0\">60.00</RATE>\r\n"
    u"<AMOUNT>90.00</AMOUNT>\r\n"
    u"<BILLTO>Jane</BILLTO>\r\n"
    u"<CUSTOM1>c1</CUSTOM1>\r\n"
    u"<CUSTOM2/>\r\n"
    u"<CUSTOM3>c3</CUSTOM3>\r\n"
    u"<NOTES>line one\r\ntwo</NOTES>\r\n"
    u"</ITEM>\r\n"
    u"<ITEM Billable=\"N\" Paid=\"Y\">\r\n"
    u"<DATE>2026-11-21</DATE>\r\n"
    u"<CLIENT>Beta</CLIENT>\r\n"
    u"<PROJECT/>\r\n"
    u"<PHASE/>\r\n"
    u"<TASK/>\r\n"
    u"<DURATION>0.25</DURATION>\r\n"
    u"<CURRENCY>USD</CURRENCY>\r\n"
    u"<RATE Type=\"3\">45.50</RATE>\r\n"
    u"<AMOUNT>45.50</AMOUNT>\r\n"
    u"<BILLTO/>\r\n"
    u"<CUSTOM1/>\r\n"
    u"<CUSTOM2/>\r\n"
    u"<CUSTOM3/>\r\n"
    u"</ITEM>\r\n"
    u"<ITEM Billable=\"Y\" Paid=\"Y\">\r\n"
    u"<DATE>2026-11-21</DATE>\r\n"
    u"<CLIENT>Delta</CLIENT>\r\n"
    u"<PROJECT/>\r\n"
    u"<PHASE/>\r\n"
    u"<TASK/>\r\n"
    u"<START>09:00:00</START>\r\n"
    u"<DURATION>1.00</DURATION>\r\n"
    u"<CURRENCY/>\r\n"
    u"<AMOUNT>0.00</AMOUNT>\r\n"
    u"<BILLTO/>\r\n"
    u"<CUSTOM1/>\r\n"
    u"<CUSTOM2/>\r\n"
    u"<CUSTOM3/>\r\n"
    u"</ITEM>\r\n"
    u"<ITEM Billable=\"Y\" Paid=\"N\">\r\n"
    u"<DATE>2026-11-22</DATE>\r\n"
    u"<CLIENT>Last</CLIENT>\r\n"
    u"<PROJECT/>\r\n"
    u"<PHASE/>\r\n"
    u"<TASK/>\r\n"
    u"<DURATION>0.00</DURATION>\r\n"
    u"<CURRENCY/>\r\n"
    u"<RATE Type=\"3\">100.00</RATE>\r\n"
    u"<AMOUNT>100.00</AMOUNT>\r\n"
    u"<BILLTO/>\r\n"
    u"<CUSTOM1/>\r\n"
    u"<CUSTOM2/>\r\n"
    u"<CUSTOM3/>\r\n"
    u"</ITEM>\r\n"
    u"</ITEMS>\r\n";

// The text as the narrow writer writes it for US English: Windows-1252, where
// every character of these texts is one byte.
std::string Narrow(std::u16string_view text) { return ToAnsi(text, 1252); }

using XmlExportTest = testing::ExportTest;

TEST_F(XmlExportTest, EachEncodingWritesItsDeclarationAndTheSameDocument) {
  AddSamples();
  struct Case {
    std::uint16_t encoding;
    std::u16string declaration;
  };
  for (const Case& c : {
           Case{0, u"<?xml version=\"1.0\"?>\r\n"},
           Case{1, u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"},
           Case{3, u"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\r\n"},
           Case{4, u"<?xml version=\"1.0\" encoding=\"Shift-JIS\"?>\r\n"},
           Case{5, u"<?xml version=\"1.0\" encoding=\"Big-5\"?>\r\n"},
           Case{6, u"<?xml version=\"1.0\"?>\r\n"},
       }) {
    settings_.encoding = c.encoding;
    auto sources = Sources();
    ASSERT_TRUE(ExportXml(Path(), SampleDays(), sources)) << c.encoding;
    // No conversion to the named encoding: the name is only a label.
    EXPECT_EQ(Bytes(), Narrow(c.declaration + kItems)) << "encoding " << c.encoding;
  }
}

TEST_F(XmlExportTest, Utf16IsAByteOrderMarkThenLittleEndianUnits) {
  AddSamples();
  settings_.encoding = kXmlEncodingUtf16;
  auto sources = Sources();
  ASSERT_TRUE(ExportXml(Path(), SampleDays(), sources));
  const std::u16string text =
      std::u16string(u"<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n") + kItems;
  std::string expected = "\xff\xfe";
  for (char16_t c : text) {
    expected.push_back(static_cast<char>(c & 0xff));
    expected.push_back(static_cast<char>(c >> 8));
  }
  EXPECT_EQ(Bytes(), expected);
  EXPECT_EQ(Bytes().substr(0, 8), std::string("\xff\xfe<\0?\0x\0", 8));
}

TEST_F(XmlExportTest, NoEntriesGiveAnEmptyItemsElement) {
  AddSamples();
  auto sources = Sources();
  ASSERT_TRUE(ExportXml(Path(), Days(2026, 12, 1, 2026, 12, 31), sources));
  EXPECT_EQ(Bytes(), "<?xml version=\"1.0\"?>\r\n<ITEMS/>\r\n");
}

TEST_F(XmlExportTest, AFailedUtf16DocumentWriteIsStillReportedWritten) {
  AddSamples();
  settings_.encoding = kXmlEncodingUtf16;
  testing::FaultyFileSystem files;
  files.fail_write_number = 3;  // mark, declaration, document
  auto sources = Sources(files);
  EXPECT_TRUE(ExportXml(Path(), SampleDays(), sources));
  EXPECT_EQ(
      Bytes().size(),
      2 + 2 * std::u16string_view(u"<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n")
                  .size());

  // The mark and the declaration count, and so does a file that cannot be
  // closed.
  for (int failing : {1, 2}) {
    testing::FaultyFileSystem early;
    early.fail_write_number = failing;
    auto early_sources = Sources(early);
    EXPECT_FALSE(ExportXml(Path(), SampleDays(), early_sources)) << "write " << failing;
  }
  testing::FaultyFileSystem unsynced;
  unsynced.fail_close = true;
  auto unsynced_sources = Sources(unsynced);
  EXPECT_FALSE(ExportXml(Path(), SampleDays(), unsynced_sources));
}

// The path of xmllint, or empty when it is not installed.
std::string XmlLintPath() {
  for (const char* path : {"/usr/bin/xmllint", "/usr/local/bin/xmllint"}) {
    if (::access(path, X_OK) == 0) return path;
  }
  return {};
}

// A real XML parser reads the file of every encoding back. The file holds the
// ANSI code page whatever its declaration names, so text outside ASCII is
// only readable where the named encoding agrees with those bytes: ISO-8859-1
// (Windows-1252's letters lie at the same codes) and UTF-16.
TEST_F(XmlExportTest, XmlLintParsesTheFileOfEachEncoding) {
  const std::string xmllint = XmlLintPath();
  if (xmllint.empty()) GTEST_SKIP() << "xmllint (libxml2-utils) is not installed";

  TimeEntry marked = At(2026, 11, 20, 14, 5, 1);
  marked.client = u"A&B <\"quoted\"> 'co'";
  marked.task = u"x > y & y < z";
  marked.billable = true;
  marked.rate = 5000;
  marked.rateType = kRateOvertime;
  marked.duration = 125;
  SetNoteText(&marked, u"first & second\n<third>");
  Add(marked);
  TimeEntry plain = At(2026, 11, 21);
  plain.client = u"Plain";
  Add(plain);
  // Control characters from before names were checked (an old backup): each
  // becomes "?", the note keeps its tab and line breaks.
  TimeEntry old = At(2026, 11, 21, 10, 0, 1);
  old.client = u"A\nB";
  old.project =
      u"\x1b"
      u"[31mred";
  old.phase = u"\x01";
  old.task = u"t\x7f";
  old.currency = u"\tE";
  old.billTo = u"\x0c";
  old.custom1 = u"\x1f";
  old.custom2 = u"\r";
  old.custom3 = u"\x08";
  SetNoteText(&old,
              u"a\tb\x02"
              u"c\nd");
  Add(old);

  for (bool non_ascii : {false, true}) {
    if (non_ascii) {
      TimeEntry accented = At(2026, 11, 22, 8, 0, 1);
      accented.client = u"Caf\u00e9 M\u00fcller";
      Add(accented);
    }
    for (std::uint16_t encoding = 0; encoding < std::size(kXmlEncodingNames);
         ++encoding) {
      const bool agrees = encoding == 3 || encoding == kXmlEncodingUtf16;
      if (non_ascii && !agrees) continue;
      settings_.encoding = encoding;
      auto sources = Sources();
      const std::string path = Path("export-" + std::to_string(encoding) + ".xml");
      ASSERT_TRUE(ExportXml(path, SampleDays(), sources)) << "encoding " << encoding;
      const testing::CommandOutput lint =
          testing::RunCommand(xmllint + " --noout '" + path + "' 2>&1");
      EXPECT_TRUE(lint.ok) << "encoding " << encoding
                           << (non_ascii ? " with accents" : "") << ": " << lint.out;
      EXPECT_EQ(lint.out, "") << "encoding " << encoding;
      if (encoding == 0) {
        const std::string bytes = testing::ReadFileBytes(path);
        EXPECT_NE(bytes.find("<CLIENT>A?B</CLIENT>"), std::string::npos);
        EXPECT_NE(bytes.find("<NOTES>a\tb?c"), std::string::npos) << bytes;
      }
    }
  }
}

}  // namespace
}  // namespace quillora
