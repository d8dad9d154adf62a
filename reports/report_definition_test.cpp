#include "reports/report_definition.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "reports/report_editor.h"

namespace quillora {
namespace {

std::string Hex(const std::uint8_t* bytes, std::size_t size) {
  std::string out;
  char buf[3];
  for (std::size_t i = 0; i < size; ++i) {
    std::snprintf(buf, sizeof buf, "%02x", bytes[i]);
    out += buf;
  }
  return out;
}

std::string Zeros(std::size_t bytes) { return std::string(2 * bytes, '0'); }

// Wide ASCII text as little-endian hex.
std::string Wide(const std::string& ascii) {
  std::string out;
  char buf[5];
  for (char c : ascii) {
    std::snprintf(buf, sizeof buf, "%02x00", static_cast<unsigned char>(c));
    out += buf;
  }
  return out;
}

// "Hours", tabular, start date only, grouped by client, the group title,
// the unpaid and the non-billable footer items hidden, Bill To first in the
// table and then the other fields in their own order; Bill To, Entry Date and
// Amount shown.
ReportDefinition KnownDefinition() {
  ReportDefinition d;
  d.SetTitle(u"Hours");
  d.detail_type = kReportTabular;
  d.date_selection = kReportDateStartOnly;
  d.group_by_property = MakePropId(1002, kPropString);
  d.hide_group_title = 1;
  d.hide_total_unpaid_amount = 1;
  d.hide_total_non_billable_hours = 1;
  const std::u16string order = u"a0123456789bcdefgh";
  std::copy(order.begin(), order.end(), d.column_order.begin());
  d.shown_fields = (1u << 10) | (1u << 0) | (1u << 15);
  return d;
}

// clang-format off
const std::string kKnownBlockHex =
    Wide("Hours") + Zeros(118) +                        // title
    "0100" + "0200" + "1f00ea03" +                      // type, dates, group-by 1002
    "0100" "0000" "0000" "0100" "0000" "0100" "0000" +  // hide flags 136..148
    "0000" +                                            // reserved 150
    Wide("a0123456789bcdefgh") + Zeros(28) +            // column order, reserved
    "01840000";                                         // shown fields
// clang-format on

TEST(ReportDefinitionBlock, SerialisesByteForByte) {
  const auto block = SerializeReportDefinition(KnownDefinition());
  EXPECT_EQ(Hex(block.data(), block.size()), kKnownBlockHex);

  ReportDefinition back;
  ASSERT_TRUE(ParseReportDefinition(block.data(), block.size(), &back));
  EXPECT_EQ(back, KnownDefinition());
  EXPECT_EQ(back.Title(), u"Hours");
  EXPECT_EQ(back.ColumnField(0), kFieldBillTo) << "field 10 is stored as the letter a";
  EXPECT_EQ(back.ColumnField(17), kFieldRate);
}

TEST(ReportDefinitionBlock, ZeroBlockParsesAndShowsEverything) {
  const std::vector<std::uint8_t> zero(kReportDefinitionSize, 0);
  ReportDefinition d = KnownDefinition();
  ASSERT_TRUE(ParseReportDefinition(zero.data(), zero.size(), &d));
  EXPECT_EQ(d, ZeroReportDefinition());
  EXPECT_EQ(d.Title(), u"");
  EXPECT_EQ(d.group_by_property, 0u);
  EXPECT_EQ(ReportFieldOfProperty(d.group_by_property), -1);
  EXPECT_EQ(d.ColumnField(5), kFieldEntryDate) << "an empty slot reads as 0";
}

TEST(ReportDefinitionBlock, KeepsReservedBytesAndTitleTail) {
  auto block = SerializeReportDefinition(KnownDefinition());
  for (std::size_t i = 188; i < 216; ++i) block[i] = static_cast<std::uint8_t>(i);
  block[20] = 'x';  // behind the title's terminator
  block[150] = 7;
  ReportDefinition d;
  ASSERT_TRUE(ParseReportDefinition(block.data(), block.size(), &d));
  EXPECT_EQ(d.Title(), u"Hours");
  const auto again = SerializeReportDefinition(d);
  EXPECT_EQ(Hex(again.data(), again.size()), Hex(block.data(), block.size()));
}

TEST(ReportDefinitionBlock, RefusesDamagedBlocks) {
  const auto good = SerializeReportDefinition(KnownDefinition());
  struct Case {
    const char* what;
    std::size_t offset;
    std::vector<std::uint8_t> bytes;
  };
  const Case cases[] = {
      {"detail type 2", 128, {2, 0}},
      {"date selection 3", 130, {3, 0}},
      {"group-by property of no field", 132, {0x1f, 0, 0x7f, 0}},
      {"group-by property of the note", 132, {0x41, 0, 0xf4, 0x03}},
      {"group-by right number, wrong type", 132, {0x13, 0, 0xea, 0x03}},
      {"group title flag 2", 136, {2, 0}},
      {"report date flag 0x100", 148, {0, 1}},
      {"column digit i (18)", 152, {'i', 0}},
      {"column digit space", 160, {' ', 0}},
      {"column digit beyond a byte", 186, {'1', 1}},
      {"shown field bit 18", 218, {4, 0}},
      {"shown field bit 31", 219, {0x80}},
  };
  for (const Case& c : cases) {
    auto block = good;
    std::copy(c.bytes.begin(), c.bytes.end(), block.begin() + c.offset);
    ReportDefinition d = ZeroReportDefinition();
    EXPECT_FALSE(ParseReportDefinition(block.data(), block.size(), &d)) << c.what;
    EXPECT_EQ(d, ZeroReportDefinition()) << c.what << ": untouched";
  }

  auto unterminated = good;
  for (std::size_t i = 0; i < 128; i += 2) unterminated[i] = 'T';
  ReportDefinition d;
  EXPECT_FALSE(ParseReportDefinition(unterminated.data(), unterminated.size(), &d));
  EXPECT_FALSE(ParseReportDefinition(good.data(), 219, &d));
  std::vector<std::uint8_t> longer(good.begin(), good.end());
  longer.push_back(0);
  EXPECT_FALSE(ParseReportDefinition(longer.data(), longer.size(), &d));
  EXPECT_FALSE(ParseReportDefinition(nullptr, 220, &d));

  auto upper = good;
  upper[152] = 'A';  // a base-32 digit of either case reads
  ASSERT_TRUE(ParseReportDefinition(upper.data(), upper.size(), &d));
  EXPECT_EQ(d.ColumnField(0), kFieldBillTo);
}

// --- The editor ---

TEST(ReportEditorTest, ZeroDefinitionLoadsEveryItemShown) {
  ReportEditor editor;
  ASSERT_EQ(editor.items().size(), static_cast<std::size_t>(kReportEditorRowCount));
  const std::vector<std::pair<int, std::u16string>> labels = {
      {0, u"Header Area"},
      {1, u"Title: "},
      {2, u"Date Selection: "},
      {3, u"Detail Area"},
      {4, u"Type:"},
      {5, u"Group By: "},
      {6, u"Group By Title"},
      {7, u"Group Total Hours"},
      {8, u"Table Fields"},
      {27, u"Footer Area"},
      {28, u"Total Billable Hours"},
      {29, u"Total Unpaid Amount"},
      {30, u"Total Paid Amount"},
      {31, u"Total Non-Billable Hours"},
      {32, u"Report Date"}};
  for (const auto& [row, label] : labels) {
    EXPECT_EQ(editor.item(row).label, label) << row;
    if (editor.item(row).kind == ReportItemKind::kCheck) {
      EXPECT_TRUE(editor.item(row).checked) << row;
    }
  }
  for (int row = kRowFirstField; row < kRowFooterArea; ++row) {
    EXPECT_EQ(editor.item(row).label, u"Entry Date") << row;
    EXPECT_FALSE(editor.item(row).checked) << row;
  }
  EXPECT_EQ(editor.item(kRowGroupBy).choices.size(), 10u);
  EXPECT_EQ(editor.item(kRowGroupBy).choices[9], u"Project-Task");
  EXPECT_TRUE(editor.IsEnabled(kRowGroupBy));
  EXPECT_FALSE(editor.IsEnabled(kRowHeaderArea));
}

TEST(ReportEditorTest, LoadsFieldRowsInColumnOrder) {
  ReportEditor editor;
  editor.Load(KnownDefinition());
  EXPECT_EQ(editor.item(kRowTitle).text, u"Hours");
  EXPECT_EQ(editor.item(kRowDateSelection).choice, 2);
  EXPECT_EQ(editor.item(kRowType).choice, 1);
  EXPECT_EQ(editor.item(kRowGroupBy).choice, 0) << "Client";
  EXPECT_FALSE(editor.item(kRowGroupByTitle).checked);
  EXPECT_TRUE(editor.item(kRowGroupTotalHours).checked);
  EXPECT_FALSE(editor.item(kRowTotalUnpaidAmount).checked);
  EXPECT_TRUE(editor.item(kRowTotalPaidAmount).checked);
  const std::vector<std::pair<std::u16string, bool>> fields = {
      {u"Bill To", true},      {u"Entry Date", true},  {u"Client", false},
      {u"Project", false},     {u"Phase", false},      {u"Task", false},
      {u"Duration", false},    {u"Currency", false},   {u"Billable/Non-Billable", false},
      {u"Paid/Unpaid", false}, {u"Start Time", false}, {u"Custom 1", false},
      {u"Custom 2", false},    {u"Custom 3", false},   {u"Rate Type", false},
      {u"Amount", true},       {u"Notes", false},      {u"Rate", false}};
  for (int k = 0; k < kReportFieldCount; ++k) {
    EXPECT_EQ(editor.item(kRowFirstField + k).label, fields[k].first) << k;
    EXPECT_EQ(editor.item(kRowFirstField + k).checked, fields[k].second) << k;
  }
  EXPECT_EQ(editor.item(kRowFirstField + 6).kind, ReportItemKind::kDurationCheck);
  EXPECT_EQ(editor.item(kRowFirstField + 7).kind, ReportItemKind::kCheck);

  // Tabular: the group rows are disabled and keep their stored values.
  EXPECT_FALSE(editor.IsEnabled(kRowGroupByTitle));
  EXPECT_FALSE(editor.SetChecked(kRowGroupByTitle, true));
  EXPECT_FALSE(editor.SetChoice(kRowGroupBy, 3));
  ReportDefinition filled = ZeroReportDefinition();
  filled.group_by_property = MakePropId(1015, kPropString);
  filled.hide_group_total_hours = 1;
  editor.Fill(&filled);
  EXPECT_EQ(filled.group_by_property, MakePropId(1015, kPropString));
  EXPECT_EQ(filled.hide_group_title, 0);
  EXPECT_EQ(filled.hide_group_total_hours, 1);
  // Everything else is written from the rows.
  filled.group_by_property = KnownDefinition().group_by_property;
  filled.hide_group_title = 1;
  filled.hide_group_total_hours = 0;
  EXPECT_EQ(filled, KnownDefinition());
}

TEST(ReportEditorTest, FillsGroupFieldsOnlyForGroupByField) {
  ReportEditor editor;
  editor.Load(NewReportDefinition());
  ReportDefinition d = NewReportDefinition();
  editor.Fill(&d);
  EXPECT_EQ(d, NewReportDefinition()) << "an unchanged editor writes back its definition";

  ASSERT_TRUE(editor.SetChoice(kRowGroupBy, kGroupByProjectTask));
  ASSERT_TRUE(editor.SetChecked(kRowGroupByTitle, false));
  ASSERT_TRUE(editor.SetChecked(kRowReportDate, false));
  ASSERT_TRUE(editor.SetText(kRowTitle, std::u16string(63, u't')));
  EXPECT_FALSE(editor.SetText(kRowTitle, std::u16string(64, u't')));
  EXPECT_FALSE(editor.SetText(kRowType, u"x"));
  EXPECT_FALSE(editor.SetChoice(kRowType, 2));
  ASSERT_TRUE(editor.MoveFieldRow(kRowFirstField + 15, kRowFirstField));  // Amount first
  EXPECT_FALSE(editor.MoveFieldRow(kRowFooterArea, kRowFirstField));
  editor.Fill(&d);
  const auto block = SerializeReportDefinition(d);
  // Project property, group title and report date hidden, project-task word.
  // clang-format off
  const std::string expected =
      "1f00eb03" "0100" "0000" "0000" "0000" "0000" "0000" "0100" "0100";
  // clang-format on
  EXPECT_EQ(Hex(block.data() + 132, 20), expected)
      << "project property, group title and report date hidden, project-task word";
  EXPECT_EQ(Hex(block.data() + 152, 8), Wide("f012"));
  EXPECT_EQ(d.Title(), std::u16string(63, u't'));

  ReportEditor again;
  again.Load(d);
  EXPECT_EQ(again.item(kRowGroupBy).choice, kGroupByProjectTask);
  EXPECT_EQ(again.item(kRowFirstField).label, u"Amount");
  EXPECT_EQ(again.FindRow(u"Amount"), kRowFirstField);
  EXPECT_EQ(again.RowOfField(kFieldEntryDate), kRowFirstField + 1);
  EXPECT_EQ(again.FindRow(u"Title"), -1) << "labels are matched whole";
}

}  // namespace
}  // namespace quillora
