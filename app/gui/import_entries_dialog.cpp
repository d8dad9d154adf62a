#include "app/gui/import_entries_dialog.h"

#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/gui/dialog_support.h"
#include "app/gui/main_window.h"
#include "interchange/entry_import.h"
#include "interchange/timewarrior_export.h"
#include "platform/text.h"
#include "store/string_table.h"

namespace quillora {
namespace {

// How a Timewarrior interval's parts become an entry's fields.
constexpr const char16_t* kTimewarriorMapping[][2] = {
    {u"start (UTC)", u"date and start, in local time"},
    {u"end - start", u"duration"},
    {u"client:NAME, project:NAME, phase:NAME, task:NAME tags", u"those fields"},
    {u"other tags", u"task (Custom 1 when a task: tag is there)"},
    {u"annotation", u"note"},
};

QTableWidgetItem* Cell(const std::u16string& text) {
  auto* item = new QTableWidgetItem(ToQString(text));
  item->setFlags(item->flags() & ~Qt::ItemIsEditable);
  return item;
}

QTableWidget* MakeTable(const QStringList& headings, QWidget* parent) {
  auto* table = new QTableWidget(0, static_cast<int>(headings.size()), parent);
  table->setHorizontalHeaderLabels(headings);
  table->verticalHeader()->setVisible(false);
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  table->horizontalHeader()->setStretchLastSection(true);
  return table;
}

}  // namespace

ImportEntriesDialog::ImportEntriesDialog(MainWindow* window)
    : QDialog(window), window_(window) {
  setWindowTitle(tr("Import Entries"));
  source_ = new QComboBox(this);
  source_->addItems({tr("Timewarrior export (timew export)"),
                     tr("CSV export (Toggl Track, Clockify, Kimai, solidtime, ...)")});
  file_ = new QLineEdit(this);
  auto* browse = new QPushButton(tr("Browse..."), this);
  auto* file_row = new QHBoxLayout;
  file_row->addWidget(file_, 1);
  file_row->addWidget(browse);
  date_format_ = new QComboBox(this);
  for (auto format : {CsvDateFormat::kIso, CsvDateFormat::kMonthDayYear,
                      CsvDateFormat::kDayMonthYear, CsvDateFormat::kDayMonthYearDots}) {
    date_format_->addItem(ToQString(CsvDateFormatName(format)));
  }
  client_ = new QLineEdit(this);
  client_->setMaxLength(127);
  client_->setPlaceholderText(tr("for entries without a client"));
  task_ = new QLineEdit(this);
  task_->setMaxLength(127);
  task_->setPlaceholderText(tr("for entries without a task"));

  auto* form = new QFormLayout;
  form->addRow(tr("Source:"), source_);
  form->addRow(tr("File:"), file_row);
  form->addRow(tr("Date format:"), date_format_);
  form->addRow(tr("Client:"), client_);
  form->addRow(tr("Task:"), task_);

  QStringList headings;
  for (const char16_t* heading : kImportPreviewHeadings) headings << ToQString(heading);
  headings << tr("Line") << tr("Skipped because");
  preview_ = MakeTable(headings, this);
  mapping_ = MakeTable({tr("In the file"), tr("Fills")}, this);
  mapping_->setMaximumHeight(160);
  status_ = new QLabel(this);
  status_->setWordWrap(true);
  buttons_ = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
  import_ = buttons_->addButton(tr("&Import"), QDialogButtonBox::AcceptRole);
  import_->setEnabled(false);

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  layout->addWidget(new QLabel(tr("The first rows as they will be stored:"), this));
  layout->addWidget(preview_, 1);
  layout->addWidget(new QLabel(tr("Columns:"), this));
  layout->addWidget(mapping_);
  layout->addWidget(status_);
  layout->addWidget(buttons_);
  resize(900, 600);

  connect(browse, &QPushButton::clicked, this, &ImportEntriesDialog::Browse);
  connect(file_, &QLineEdit::editingFinished, this, &ImportEntriesDialog::Reread);
  for (QComboBox* box : {source_, date_format_}) {
    connect(box, &QComboBox::currentIndexChanged, this, &ImportEntriesDialog::Reread);
  }
  for (QLineEdit* edit : {client_, task_}) {
    connect(edit, &QLineEdit::editingFinished, this, &ImportEntriesDialog::Reread);
  }
  connect(buttons_, &QDialogButtonBox::accepted, this, [this] {
    if (Import()) accept();
  });
  connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
  Reread();
}

void ImportEntriesDialog::Browse() {
  const QString filter = source_->currentIndex() == kTimewarrior
                             ? tr("Timewarrior export (*.json);;All files (*)")
                             : tr("CSV files (*.csv *.txt);;All files (*)");
  const QString path =
      QFileDialog::getOpenFileName(this, tr("Import Entries"), file_->text(), filter);
  if (path.isEmpty()) return;
  file_->setText(path);
  Reread();
}

std::optional<ImportedFile> ImportEntriesDialog::Read() {
  const std::string path = file_->text().toStdString();
  if (path.empty()) {
    status_->setText(tr("Choose the file to import."));
    return std::nullopt;
  }
  std::string bytes;
  const ImportFileRead read = ReadImportFile(FileSystem::Posix(), path, &bytes);
  if (read != ImportFileRead::kRead) {
    status_->setText(ToQString(ImportFileReadMessage(read, FromQString(file_->text()))));
    return std::nullopt;
  }
  const ImportDefaults defaults{FromQString(client_->text()), FromQString(task_->text())};
  const DataContext& data = window_->data();
  if (source_->currentIndex() == kTimewarrior) {
    ShowMapping(nullptr);
    return ReadTimewarriorExport(bytes, data.settings, defaults);
  }
  CsvImportOptions options;
  options.date_format = static_cast<CsvDateFormat>(date_format_->currentIndex());
  options.defaults = defaults;
  CsvImportedFile csv =
      ReadCsvEntries(bytes, options, data.settings, data.locale->AnsiCodePage());
  ShowMapping(&csv);
  return std::move(csv.file);
}

void ImportEntriesDialog::Reread() {
  date_format_->setEnabled(source_->currentIndex() == kCsv);
  preview_->setRowCount(0);
  import_->setEnabled(false);
  WaitCursor wait;
  const std::optional<ImportedFile> file = Read();
  if (!file) return;
  if (!file->error.empty()) {
    status_->setText(
        ToQString(MalformedImportMessage(*file, FromQString(file_->text()))));
    return;
  }
  ShowPreview(*file);
}

void ImportEntriesDialog::ShowPreview(const ImportedFile& file) {
  const int shown = std::min(static_cast<int>(file.rows.size()), kPreviewRows);
  int skipped = 0;
  for (const ImportedEntry& row : file.rows) skipped += row.skip.empty() ? 0 : 1;
  preview_->setRowCount(shown);
  for (int r = 0; r < shown; ++r) {
    const ImportedEntry& row = file.rows[static_cast<std::size_t>(r)];
    if (row.skip.empty()) {
      const auto cells = ImportPreviewCells(row.entry);
      for (int c = 0; c < 7; ++c)
        preview_->setItem(r, c, Cell(cells[static_cast<std::size_t>(c)]));
    }
    preview_->setItem(r, 7, Cell(WidenAscii(std::to_string(row.line))));
    preview_->setItem(r, 8, Cell(row.skip));
  }
  preview_->resizeColumnsToContents();
  status_->setText(
      tr("%1 rows read, %2 of them to be skipped. Entries already stored are "
         "not added again.")
          .arg(file.rows.size())
          .arg(skipped));
  import_->setEnabled(!file.rows.empty());
}

void ImportEntriesDialog::ShowMapping(const CsvImportedFile* csv) {
  mapping_->setRowCount(0);
  if (csv == nullptr) {
    for (const auto& [from, to] : kTimewarriorMapping) {
      const int r = mapping_->rowCount();
      mapping_->insertRow(r);
      mapping_->setItem(r, 0, Cell(from));
      mapping_->setItem(r, 1, Cell(to));
    }
    return;
  }
  for (std::size_t i = 0; i < csv->header.size() && i < csv->columns.size(); ++i) {
    const int r = mapping_->rowCount();
    mapping_->insertRow(r);
    mapping_->setItem(r, 0, Cell(csv->header[i]));
    mapping_->setItem(r, 1,
                      Cell(csv->columns[i] == EntryColumn::kIgnore
                               ? std::u16string(u"(ignored)")
                               : std::u16string(EntryColumnName(csv->columns[i]))));
  }
}

bool ImportEntriesDialog::Import() {
  const std::optional<ImportedFile> file = Read();
  if (!file) return false;
  UserPrompt& prompt = window_->prompt();
  if (!file->error.empty()) {
    prompt.ShowMessage(kAppTitle,
                       MalformedImportMessage(*file, FromQString(file_->text())),
                       MessageIcon::kError);
    return false;
  }
  Catalogue* catalogue = CatalogueOf(window_);
  if (catalogue == nullptr) return false;
  const ImportSummary result =
      ImportEntries({window_->entries(), *catalogue, *window_->data().locale, prompt},
                    file->rows, false);
  window_->Reload();
  summary_ = ImportSummaryLines(result, false);
  std::u16string text;
  for (const std::u16string& line : summary_) text += (text.empty() ? u"" : u"\n") + line;
  prompt.ShowMessage(
      kAppTitle, text,
      result.skipped == 0 ? MessageIcon::kInformation : MessageIcon::kWarning);
  return true;
}

void ImportEntriesFromWindow(MainWindow* window) {
  ImportEntriesDialog dialog(window);
  dialog.exec();
}

}  // namespace quillora
