#include "app/gui/quick_summary_dialog.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QEvent>
#include <QHeaderView>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>

#include "app/gui/file_command_prompt.h"
#include "app/gui/qt_text.h"
#include "app/gui/written_file_notice.h"
#include "store/string_table.h"

namespace quillora {
namespace {


// The room a cell's text needs beside it, and how far the font may shrink.
constexpr int kCellPadding = 8;
constexpr int kMostSmaller = 3;

bool IsHeading(const QuickSummaryRow& row) {
  return row[0] == LoadString(kIdsSummaryTotal) + u":" && row[1].empty() &&
         row[2].empty();
}

}  // namespace

QuickSummaryDialog::QuickSummaryDialog(std::vector<QuickSummaryRow> rows,
                                       std::vector<ProjectHours> projects,
                                       UserPrompt& prompt, FileSystem& files, int code_page,
                                       QWidget* parent)
    : QDialog(parent),
      rows_(std::move(rows)),
      prompt_(prompt),
      files_(files),
      code_page_(code_page) {
  setWindowTitle(ToQString(kAppTitle));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->setSpacing(4);

  table_ = new QTableWidget(static_cast<int>(rows_.size()), 3, this);
  table_->setObjectName("summaryList");
  table_->setShowGrid(true);
  table_->horizontalHeader()->hide();
  table_->verticalHeader()->hide();
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  table_->setWordWrap(false);
  table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().height() + 4);
  QFont heading = table_->font();
  heading.setBold(true);
  for (std::size_t r = 0; r < rows_.size(); ++r) {
    for (int c = 0; c < 3; ++c) {
      auto* item = new QTableWidgetItem(ToQString(rows_[r][static_cast<std::size_t>(c)]));
      item->setTextAlignment((c == 0 ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
      if (IsHeading(rows_[r])) item->setFont(heading);
      table_->setItem(static_cast<int>(r), c, item);
    }
  }
  layout->addWidget(table_, 1);

  chart_ = new ProjectHoursChart(std::move(projects), this);
  chart_->setObjectName("projectChart");
  chart_->setVisible(!chart_->projects().empty());
  chart_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
  layout->addWidget(chart_);
  table_->installEventFilter(this);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
  save_ = buttons->addButton(tr("Save as CSV..."), QDialogButtonBox::ActionRole);
  save_->setObjectName("saveCsv");
  save_->setProperty("command", kCommandExportSummaryCsv);
  connect(save_, &QPushButton::clicked, this, [this] { SaveAsCsv(); });
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  layout->addWidget(buttons);
}

SummaryCsvResult QuickSummaryDialog::SaveAsCsv() {
  FileCommandPrompt prompt(prompt_, registry_, suggested_name_);
  const SummaryCsvResult result =
      ExportQuickSummaryCsv(rows_, prompt, files_, code_page_);
  if (result == SummaryCsvResult::kWritten) {
    ShowNotice(this,
               tr("Saved the quick summary to %1")
                   .arg(QDir::toNativeSeparators(prompt.chosen())),
               prompt.chosen());
  }
  return result;
}

void QuickSummaryDialog::FitColumns() {
  // The device took its screen's width less a scroll bar; here the list's
  // own width stands for the screen, so the columns follow the dialog.
  const int scroll_bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, table_);
  const std::array<int, 3> widths =
      QuickSummaryColumnWidths(table_->contentsRect().width(), scroll_bar);
  for (int c = 0; c < 3; ++c) table_->setColumnWidth(c, widths[static_cast<std::size_t>(c)]);

  // On a narrow screen the font steps down, a point at a time and at most
  // kMostSmaller points, until every text fits its cell.
  QFont font = this->font();
  const qreal base = font.pointSizeF();
  for (int step = 0; step <= kMostSmaller && base > 0; ++step) {
    font.setPointSizeF(base - step);
    QFont bold = font;
    bold.setBold(true);
    const QFontMetrics plain_metrics(font);
    const QFontMetrics bold_metrics(bold);
    bool fits = true;
    for (const QuickSummaryRow& row : rows_) {
      const QFontMetrics& m = IsHeading(row) ? bold_metrics : plain_metrics;
      for (std::size_t c = 0; c < 3 && fits; ++c) {
        fits = m.horizontalAdvance(ToQString(row[c])) + kCellPadding <= widths[c];
      }
      if (!fits) break;
    }
    if (fits) break;
  }
  table_->setFont(font);
  chart_->setFont(font);
  QFont bold = font;
  bold.setBold(true);
  for (std::size_t r = 0; r < rows_.size(); ++r) {
    if (!IsHeading(rows_[r])) continue;
    for (int c = 0; c < 3; ++c) table_->item(static_cast<int>(r), c)->setFont(bold);
  }
  table_->verticalHeader()->setDefaultSectionSize(QFontMetrics(font).height() + 4);
}

bool QuickSummaryDialog::eventFilter(QObject* watched, QEvent* event) {
  if (watched == table_ && event->type() == QEvent::Resize) FitColumns();
  return QDialog::eventFilter(watched, event);
}

}  // namespace quillora
