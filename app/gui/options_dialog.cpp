#include "app/gui/options_dialog.h"
#include "app/gui/qt_text.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollArea>
#include <QVBoxLayout>

#include "interchange/xml_export.h"
#include "timekeeping/duration.h"

namespace quillora {
namespace {



// A label that toggles its check box when tapped, so that a long option text
// can wrap on a narrow screen and still be hit anywhere.
class ToggleLabel : public QLabel {
 public:
  ToggleLabel(const QString& text, QCheckBox* box, QWidget* parent)
      : QLabel(text, parent), box_(box) {
    setWordWrap(true);
    setBuddy(box);
  }

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) {
      box_->toggle();
    }
  }

 private:
  QCheckBox* box_;
};

// A check box whose text wraps: the box, then the text beside it.
QCheckBox* AddWrappingCheck(QVBoxLayout* layout, const QString& name, const QString& text,
                            QWidget* parent) {
  auto* row = new QWidget(parent);
  auto* line = new QHBoxLayout(row);
  line->setContentsMargins(0, 0, 0, 0);
  auto* box = new QCheckBox(row);
  box->setObjectName(name);
  box->setAccessibleName(text);
  auto* label = new ToggleLabel(text, box, row);
  line->addWidget(box, 0, Qt::AlignTop);
  line->addWidget(label, 1);
  layout->addWidget(row);
  return box;
}

QComboBox* NewList(const QString& name, const QStringList& items, QWidget* parent) {
  auto* list = new QComboBox(parent);
  list->setObjectName(name);
  list->addItems(items);
  list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  list->setMinimumContentsLength(4);
  return list;
}

// A page that scrolls when the screen is too short for it.
QWidget* Scrolling(QWidget* content) {
  auto* area = new QScrollArea;
  area->setWidget(content);
  area->setWidgetResizable(true);
  area->setFrameShape(QFrame::NoFrame);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  return area;
}

QFormLayout* NewForm(QWidget* parent) {
  auto* form = new QFormLayout(parent);
  form->setRowWrapPolicy(QFormLayout::WrapLongRows);
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  return form;
}

// Puts `index` in the list when it holds it, else shows no item.
void Show(QComboBox* list, int index) {
  list->setCurrentIndex(index >= 0 && index < list->count() ? index : -1);
}

template <typename T>
void Take(const QComboBox* list, T* field) {
  if (list->currentIndex() >= 0) *field = static_cast<T>(list->currentIndex());
}

void SetBit(std::uint32_t* bits, std::uint32_t bit, bool on) {
  *bits = on ? (*bits | bit) : (*bits & ~bit);
}

constexpr int kSwatchWidth = 40;
constexpr int kSwatchHeight = 14;

}  // namespace

QColor OptionsDialog::ItemColour(int index, const QPalette& palette) {
  if (index <= 0 || index >= kPaletteSize) return palette.color(QPalette::Text);
  return QColor(static_cast<QRgb>(kItemPalette[static_cast<std::size_t>(index)]));
}

OptionsDialog::OptionsDialog(const Settings& settings,
                             const std::vector<std::u16string>& currencies, QWidget* parent)
    : QDialog(parent), settings_(settings) {
  setWindowTitle(tr("Options"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  pages_ = new QTabWidget(this);
  pages_->setUsesScrollButtons(true);
  pages_->setElideMode(Qt::ElideNone);
  pages_->addTab(BuildGeneralPage(), tr("General"));
  pages_->addTab(BuildDefaultsPage(currencies), tr("Defaults"));
  pages_->addTab(BuildDisplayPage(), tr("Display Elements"));
  pages_->addTab(BuildCustomFieldsPage(), tr("Custom Fields"));
  pages_->addTab(BuildExportPage(), tr("Export"));
  layout->addWidget(pages_, 1);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);
}

QWidget* OptionsDialog::BuildGeneralPage() {
  auto* page = new QWidget;
  auto* column = new QVBoxLayout(page);
  auto* fields = new QWidget(page);
  QFormLayout* form = NewForm(fields);
  form->setContentsMargins(0, 0, 0, 0);
  week_start_ = NewList("weekStart", {tr("Sunday"), tr("Monday")}, fields);
  QStringList intervals;
  for (const char16_t* label : kDurationIntervalLabels) intervals << ToQString(label);
  duration_interval_ = NewList("durationInterval", intervals, fields);
  item_tap_ = NewList("itemTap", {tr("Edit Entry"), tr("Select Only")}, fields);
  form->addRow(tr("Week Start:"), week_start_);
  form->addRow(tr("Duration Interval:"), duration_interval_);
  form->addRow(tr("Item Click Option:"), item_tap_);
  column->addWidget(fields);
  precise_ = AddWrappingCheck(column, "precise",
                              tr("Enable Precise Calculations for minute 10, 20 , 40, and 50"),
                              page);
  week_number_ =
      AddWrappingCheck(column, "weekNumber", tr("Show Week Number (Week View Only)"), page);
  // Heeded only where the desktop has a tray; elsewhere closing quits.
  tray_on_close_ = AddWrappingCheck(
      column, "trayOnClose", tr("Keep running in the tray when the window is closed"), page);
  column->addStretch(1);

  const std::uint32_t bits = settings_.option_bits;
  week_start_->setCurrentIndex(bits & kOptionWeekStartsMonday ? 1 : 0);
  Show(duration_interval_, settings_.time_interval);
  item_tap_->setCurrentIndex(bits & kOptionItemTap ? 1 : 0);
  precise_->setChecked(bits & kOptionPreciseCalculation);
  week_number_->setChecked(bits & kOptionWeekNumber);
  tray_on_close_->setChecked(settings_.tray_on_close != 0);
  return Scrolling(page);
}

QWidget* OptionsDialog::BuildDefaultsPage(const std::vector<std::u16string>& currencies) {
  auto* page = new QWidget;
  auto* column = new QVBoxLayout(page);
  auto* group = new QGroupBox(tr("New Entry Defaults"), page);
  auto* inside = new QVBoxLayout(group);
  billable_ = new QCheckBox(tr("Billable"), group);
  billable_->setObjectName("billable");
  inside->addWidget(billable_);

  auto* currency_row = new QWidget(group);
  QFormLayout* form = NewForm(currency_row);
  form->setContentsMargins(0, 0, 0, 0);
  currency_ = NewList("currency", {}, currency_row);
  currency_->setEditable(true);
  currency_->setInsertPolicy(QComboBox::NoInsert);
  currency_->lineEdit()->setMaxLength(static_cast<int>(kDefaultCurrencyChars) - 1);
  for (const std::u16string& name : currencies) currency_->addItem(ToQString(name));
  currency_->setEditText(ToQString(settings_.default_currency));
  form->addRow(tr("Currency:"), currency_);
  inside->addWidget(currency_row);

  granularity_on_ =
      AddWrappingCheck(inside, "granularityOn", tr("Enable Duration Granularity of"), group);
  auto* minutes_row = new QHBoxLayout;
  minutes_row->setContentsMargins(24, 0, 0, 0);
  QStringList minutes;
  for (std::uint32_t m : kGranularityChoices) minutes << QString::number(m);
  granularity_ = NewList("granularity", minutes, group);
  minutes_row->addWidget(granularity_);
  minutes_row->addWidget(new QLabel(tr("Minutes"), group), 1);
  inside->addLayout(minutes_row);
  column->addWidget(group);
  column->addStretch(1);

  billable_->setChecked(settings_.option_bits & kOptionBillable);
  const bool on = settings_.option_bits & kOptionGranularity;
  granularity_on_->setChecked(on);
  granularity_->setCurrentIndex(granularity_->findText(QString::number(settings_.granularity)));
  granularity_->setEnabled(on);
  connect(granularity_on_, &QCheckBox::toggled, granularity_, &QWidget::setEnabled);
  return Scrolling(page);
}

QComboBox* OptionsDialog::ColourList(const QString& name) {
  auto* list = new QComboBox;
  list->setObjectName(name);
  list->setIconSize(QSize(kSwatchWidth, kSwatchHeight));
  list->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  for (int i = 0; i < kPaletteSize; ++i) {
    QPixmap swatch(kSwatchWidth, kSwatchHeight);
    QPainter painter(&swatch);
    if (i == 0) {
      // The window's own text colour: a sample of text on the window's base.
      swatch.fill(palette().color(QPalette::Base));
      QFont font = painter.font();
      font.setPixelSize(kSwatchHeight - 3);
      painter.setFont(font);
      painter.setPen(ItemColour(0, palette()));
      painter.drawText(swatch.rect(), Qt::AlignCenter, QStringLiteral("Aa"));
    } else {
      swatch.fill(ItemColour(i, palette()));
    }
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(0, 0, kSwatchWidth - 1, kSwatchHeight - 1);
    painter.end();
    list->addItem(QIcon(swatch), QString());
    const QString tip =
        i == 0 ? tr("Default")
               : QString("#%1")
                     .arg(kItemPalette[static_cast<std::size_t>(i)], 6, 16, QChar('0'))
                     .toUpper();
    list->setItemData(i, tip, Qt::ToolTipRole);
    list->setItemData(i, tip, Qt::AccessibleTextRole);
  }
  return list;
}

QWidget* OptionsDialog::BuildDisplayPage() {
  auto* page = new QWidget;
  auto* column = new QVBoxLayout(page);
  // The items are long for a handheld: the list sits under its label.
  auto* entry_time_label = new QLabel(tr("Entry Time:"), page);
  entry_time_ = NewList("entryTime",
                        {tr("Duration, Start"), tr("Duration, Start, End"), tr("Start, End")},
                        page);
  entry_time_label->setBuddy(entry_time_);
  column->addWidget(entry_time_label);
  column->addWidget(entry_time_);
  client_name_ = new QCheckBox(tr("Show Client Name"), page);
  client_name_->setObjectName("showClientName");
  status_icon_ = new QCheckBox(tr("Show Status Icon"), page);
  status_icon_->setObjectName("showStatusIcon");
  column->addWidget(client_name_);
  column->addWidget(status_icon_);

  auto* colours = new QWidget(page);
  QFormLayout* colour_form = NewForm(colours);
  colour_form->setContentsMargins(0, 0, 0, 0);
  colours_ = {ColourList("nonBillableColour"), ColourList("billableColour"),
              ColourList("paidColour")};
  colour_form->addRow(tr("Non-Billable Item:"), colours_[0]);
  colour_form->addRow(tr("Billable Item:"), colours_[1]);
  colour_form->addRow(tr("Paid Item:"), colours_[2]);
  font_size_ = NewList("fontSize", {tr("Small"), tr("Medium"), tr("Large")}, colours);
  colour_form->addRow(tr("Font Size:"), font_size_);
  column->addWidget(colours);
  bold_ = new QCheckBox(tr("Bold"), page);
  bold_->setObjectName("bold");
  column->addWidget(bold_);
  column->addStretch(1);

  const DisplayBlock& d = settings_.display;
  Show(entry_time_, static_cast<int>(d.entry_time_display));
  client_name_->setChecked(d.display_flags & kDisplayClientName);
  status_icon_->setChecked(d.display_flags & kDisplayStatusIcon);
  Show(colours_[0], static_cast<int>(d.non_billable_colour));
  Show(colours_[1], static_cast<int>(d.billable_colour));
  Show(colours_[2], static_cast<int>(d.paid_colour));
  Show(font_size_, settings_.font_size);
  bold_->setChecked(settings_.option_bits & kOptionBoldFont);
  return Scrolling(page);
}

QWidget* OptionsDialog::BuildCustomFieldsPage() {
  auto* page = new QWidget;
  auto* column = new QVBoxLayout(page);
  for (int i = 0; i < 3; ++i) {
    auto* label = new QLabel(tr("Description for custom field %1:").arg(i + 1), page);
    label->setWordWrap(true);
    auto* edit = new QLineEdit(ToQString(settings_.custom_labels[static_cast<std::size_t>(i)]), page);
    edit->setObjectName(QString("customLabel%1").arg(i + 1));
    edit->setMaxLength(static_cast<int>(kCustomLabelChars) - 1);
    label->setBuddy(edit);
    column->addWidget(label);
    column->addWidget(edit);
    custom_labels_[static_cast<std::size_t>(i)] = edit;
  }
  column->addStretch(1);
  return Scrolling(page);
}

QWidget* OptionsDialog::BuildExportPage() {
  auto* page = new QWidget;
  auto* column = new QVBoxLayout(page);

  auto* csv = new QGroupBox(tr("CSV Export"), page);
  QFormLayout* csv_form = NewForm(csv);
  QStringList breaks;
  for (std::u16string_view item : {u"1 space", u"2 space", u"~`", u"|"}) breaks << ToQString(item);
  break_sub_ = NewList("breakSub", breaks, csv);
  csv_form->addRow(tr("Line Breaks in Notes:"), break_sub_);
  // Kept with the page but never shown: the CSV file has no hour symbol.
  hour_symbol_ = NewList("hourSymbol", {tr("(None)"), tr("h"), tr("hr")}, csv);
  auto* hour_label = new QLabel(tr("Hour Symbol:"), csv);
  csv_form->addRow(hour_label, hour_symbol_);
  hour_label->setVisible(false);
  hour_label->setEnabled(false);
  hour_symbol_->setVisible(false);
  hour_symbol_->setEnabled(false);
  column->addWidget(csv);

  auto* xml = new QGroupBox(tr("XML Export"), page);
  QFormLayout* xml_form = NewForm(xml);
  QStringList encodings;
  for (std::u16string_view name : kXmlEncodingNames) encodings << ToQString(name);
  encoding_ = NewList("encoding", encodings, xml);
  xml_form->addRow(tr("Encoding:"), encoding_);
  column->addWidget(xml);
  column->addStretch(1);

  Show(break_sub_, settings_.break_sub);
  Show(encoding_, settings_.encoding);
  Show(hour_symbol_, settings_.hour_symbol);
  return Scrolling(page);
}

Settings OptionsDialog::Result() const {
  Settings s = settings_;
  std::uint32_t& bits = s.option_bits;
  // General.
  SetBit(&bits, kOptionWeekStartsMonday, week_start_->currentIndex() == 1);
  Take(duration_interval_, &s.time_interval);
  SetBit(&bits, kOptionItemTap, item_tap_->currentIndex() == 1);
  SetBit(&bits, kOptionPreciseCalculation, precise_->isChecked());
  SetBit(&bits, kOptionWeekNumber, week_number_->isChecked());
  s.tray_on_close = tray_on_close_->isChecked() ? 1 : 0;
  // Defaults.
  SetBit(&bits, kOptionBillable, billable_->isChecked());
  s.default_currency = FromQString(currency_->currentText().left(kDefaultCurrencyChars - 1));
  SetBit(&bits, kOptionGranularity, granularity_on_->isChecked());
  if (granularity_on_->isChecked() && granularity_->currentIndex() >= 0) {
    s.granularity = static_cast<std::uint16_t>(
        kGranularityChoices[static_cast<std::size_t>(granularity_->currentIndex())]);
  }
  // Display Elements.
  Take(entry_time_, &s.display.entry_time_display);
  std::uint32_t& flags = s.display.display_flags;
  SetBit(&flags, kDisplayClientName, client_name_->isChecked());
  SetBit(&flags, kDisplayStatusIcon, status_icon_->isChecked());
  Take(colours_[0], &s.display.non_billable_colour);
  Take(colours_[1], &s.display.billable_colour);
  Take(colours_[2], &s.display.paid_colour);
  Take(font_size_, &s.font_size);
  SetBit(&bits, kOptionBoldFont, bold_->isChecked());
  // Custom Fields.
  for (std::size_t i = 0; i < 3; ++i) s.custom_labels[i] = FromQString(custom_labels_[i]->text());
  // Export.
  Take(break_sub_, &s.break_sub);
  Take(encoding_, &s.encoding);
  Take(hour_symbol_, &s.hour_symbol);
  return s;
}

}  // namespace quillora
