// The report editor: a two-column property list over the logic's
// ReportEditor. Every change goes through the editor; the list is then drawn
// again from its rows, so enabling follows the editor's rules.
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include "app/gui/dialog_support.h"
#include "app/gui/help.h"
#include "app/gui/main_window.h"
#include "app/gui/report_dialogs.h"
#include "store/string_table.h"

namespace quillora {
namespace {

std::optional<std::u16string> AskReportName(QWidget* parent,
                                            const std::u16string& current) {
  QDialog dialog(parent);
  dialog.setWindowTitle(ToQString(kAppTitle));
  auto* layout = new QVBoxLayout(&dialog);
  auto* label = new QLabel(ToQString(LoadString(kIdsEnterReportName)), &dialog);
  label->setWordWrap(true);
  auto* edit = new QLineEdit(ToQString(current), &dialog);
  edit->setMaxLength(static_cast<int>(kReportNameChars));
  edit->selectAll();
  layout->addWidget(label);
  layout->addWidget(edit);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  layout->addWidget(buttons);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return FromQString(edit->text());
}

bool IsFieldRow(int row) {
  return row >= kRowFirstField && row < kRowFirstField + kReportFieldCount;
}

}  // namespace

ReportEditorDialog::ReportEditorDialog(MainWindow* window)
    : QDialog(window), window_(window) {
  setWindowTitle(tr("Report Editor"));
  ask_name = [this](const std::u16string& current) {
    return AskReportName(this, current);
  };
  auto* layout = new QVBoxLayout(this);
  list_ = new QTreeWidget(this);
  list_->setObjectName("properties");
  list_->setColumnCount(2);
  list_->setHeaderHidden(true);
  list_->setRootIsDecorated(false);
  list_->setIndentation(0);
  list_->setEditTriggers(QAbstractItemView::DoubleClicked |
                         QAbstractItemView::EditKeyPressed |
                         QAbstractItemView::SelectedClicked);
  // Label and value share the width, so nothing scrolls sideways on a
  // handheld's screen.
  list_->header()->setStretchLastSection(false);
  list_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  list_->header()->setSectionResizeMode(1, QHeaderView::Stretch);
  list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_->setTextElideMode(Qt::ElideRight);
  layout->addWidget(list_, 1);

  auto* grid = new QGridLayout();
  up_ = new QToolButton(this);
  down_ = new QToolButton(this);
  up_->setArrowType(Qt::UpArrow);
  down_->setArrowType(Qt::DownArrow);
  up_->setToolTip(tr("Move the field up"));
  down_->setToolTip(tr("Move the field down"));
  up_->setObjectName("up");
  down_->setObjectName("down");
  auto* save = new QPushButton(tr("Save..."), this);
  auto* saved = new QPushButton(tr("Saved..."), this);
  auto* generate = new QPushButton(tr("Report..."), this);
  save->setObjectName("save");
  saved->setObjectName("saved");
  generate->setObjectName("generate");
  grid->addWidget(save, 0, 0);
  grid->addWidget(saved, 0, 1);
  grid->addWidget(generate, 0, 2);
  for (QPushButton* b : {save, saved, generate}) {
    b->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  }
  layout->addLayout(grid);
  // The arrows move the selected field; Close and Help sit beside them.
  auto* bottom = new QHBoxLayout();
  bottom->addWidget(up_);
  bottom->addWidget(down_);
  auto* buttons =
      new QDialogButtonBox(QDialogButtonBox::Close | QDialogButtonBox::Help, this);
  ConnectHelpButton(buttons, "reports");
  bottom->addWidget(buttons, 1);
  layout->addLayout(bottom);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(up_, &QToolButton::clicked, this, [this] { MoveSelectedField(-1); });
  connect(down_, &QToolButton::clicked, this, [this] { MoveSelectedField(1); });
  connect(save, &QPushButton::clicked, this, [this] { Save(); });
  connect(saved, &QPushButton::clicked, this, &ReportEditorDialog::ShowSavedReports);
  connect(generate, &QPushButton::clicked, this, &ReportEditorDialog::Generate);
  connect(list_, &QTreeWidget::itemChanged, this, &ReportEditorDialog::ItemChanged);
  connect(list_, &QTreeWidget::currentItemChanged, this,
          &ReportEditorDialog::UpdateButtons);

  report_.definition = NewReportDefinition();
  editor_.Load(report_.definition);
  const std::u16string& preferred = window_->data().settings.default_report;
  if (!preferred.empty()) {
    AuxStore aux(*window_->data().volume);
    ReportDefinition definition;
    ObjectId record_id = 0;
    if (OpenSavedReports(aux) &&
        LoadSavedReport(aux, preferred, &definition, &record_id) ==
            SavedReportLookup::kFound) {
      report_ = {preferred, record_id, definition};
      editor_.Load(definition);
    }
  }
  Refresh();
  FitNarrowScreens(this);
}

QComboBox* ReportEditorDialog::ChoiceBox(int row) const {
  QTreeWidgetItem* item = list_->topLevelItem(row);
  return item ? qobject_cast<QComboBox*>(list_->itemWidget(item, 1)) : nullptr;
}

void ReportEditorDialog::Refresh() {
  filling_ = true;
  const int current =
      list_->currentItem() ? list_->indexOfTopLevelItem(list_->currentItem()) : -1;
  list_->clear();
  QFont bold = list_->font();
  bold.setBold(true);
  for (int row = 0; row < kReportEditorRowCount; ++row) {
    const ReportEditorItem& source = editor_.item(row);
    auto* item = new QTreeWidgetItem(list_);
    item->setText(0, ToQString(source.label));
    const bool enabled = editor_.IsEnabled(row);
    switch (source.kind) {
      case ReportItemKind::kHeading:
        item->setFont(0, bold);
        item->setFlags(Qt::ItemIsEnabled);
        item->setFirstColumnSpanned(true);
        break;
      case ReportItemKind::kText:
        item->setText(1, ToQString(source.text));
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable);
        break;
      case ReportItemKind::kChoice: {
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        auto* box = new QComboBox(list_);
        for (const std::u16string& choice : source.choices) box->addItem(ToQString(choice));
        box->setCurrentIndex(source.choice);
        box->setEnabled(enabled);
        list_->setItemWidget(item, 1, box);
        connect(box, &QComboBox::currentIndexChanged, this, [this, row](int index) {
          if (filling_) return;
          editor_.SetChoice(row, index);
          // The type enables or disables the group rows: draw them again.
          QTimer::singleShot(0, this, &ReportEditorDialog::Refresh);
        });
        break;
      }
      case ReportItemKind::kCheck:
      case ReportItemKind::kDurationCheck:
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable |
                       Qt::ItemIsUserCheckable);
        item->setCheckState(0, source.checked ? Qt::Checked : Qt::Unchecked);
        item->setFirstColumnSpanned(true);
        if (source.field == kFieldCustom1 || source.field == kFieldCustom2 ||
            source.field == kFieldCustom3) {
          item->setToolTip(0, tr("Shown with the name you gave the custom field."));
        }
        break;
    }
    if (source.kind != ReportItemKind::kHeading) {
      item->setData(0, Qt::UserRole, row);
      if (!enabled) item->setDisabled(true);
    }
  }
  if (current >= 0) list_->setCurrentItem(list_->topLevelItem(current));
  filling_ = false;
  UpdateButtons();
  const QString name = report_.name.empty() ? tr("(unsaved)") : ToQString(report_.name);
  setWindowTitle(tr("Report Editor - %1").arg(name));
}

void ReportEditorDialog::ItemChanged(QTreeWidgetItem* item, int column) {
  if (filling_) return;
  const int row = list_->indexOfTopLevelItem(item);
  const ReportEditorItem& source = editor_.item(row);
  if (source.kind == ReportItemKind::kText && column == 1) {
    if (!editor_.SetText(row, FromQString(item->text(1)))) {
      window_->prompt().ShowMessage(kAppTitle, LoadString(kIdsReportTitleTooLong),
                                    MessageIcon::kExclamation);
    }
  } else if (source.kind == ReportItemKind::kCheck ||
             source.kind == ReportItemKind::kDurationCheck) {
    editor_.SetChecked(row, item->checkState(0) == Qt::Checked);
  }
  QTimer::singleShot(0, this, &ReportEditorDialog::Refresh);
}

void ReportEditorDialog::UpdateButtons() {
  const int row =
      list_->currentItem() ? list_->indexOfTopLevelItem(list_->currentItem()) : -1;
  up_->setEnabled(IsFieldRow(row) && row > kRowFirstField);
  down_->setEnabled(IsFieldRow(row) && row < kRowFirstField + kReportFieldCount - 1);
}

void ReportEditorDialog::MoveSelectedField(int step) {
  const int row =
      list_->currentItem() ? list_->indexOfTopLevelItem(list_->currentItem()) : -1;
  if (!IsFieldRow(row) || !IsFieldRow(row + step)) return;
  if (!editor_.MoveFieldRow(row, row + step)) return;
  Refresh();
  list_->setCurrentItem(list_->topLevelItem(row + step));
}

bool ReportEditorDialog::OpenSaved(const std::u16string& name) {
  AuxStore aux(*window_->data().volume);
  ReportDefinition definition;
  ObjectId record_id = 0;
  SavedReportLookup lookup = SavedReportLookup::kNoSavedReport;
  if (OpenSavedReports(aux)) lookup = LoadSavedReport(aux, name, &definition, &record_id);
  if (!ReportFound(window_->prompt(), lookup)) return false;
  report_ = {name, record_id, definition};
  editor_.Load(definition);
  Refresh();
  return true;
}

bool ReportEditorDialog::Save() {
  for (;;) {
    const auto name = ask_name(report_.name);
    if (!name) return false;
    if (name->empty()) {
      window_->prompt().ShowMessage(kAppTitle, LoadString(kIdsBlankName),
                                    MessageIcon::kExclamation);
      continue;
    }
    if (name->size() > kReportNameChars) {
      window_->prompt().ShowMessage(kAppTitle, LoadString(kIdsReportNameTooLong),
                                    MessageIcon::kExclamation);
      continue;
    }
    switch (SaveReport(*window_->data().volume, window_->prompt(), *name, editor_,
                       &report_)) {
      case SaveReportResult::kSaved:
        Refresh();
        return true;
      case SaveReportResult::kDeclined:
        continue;  // the name is asked again
      case SaveReportResult::kFailed:
        window_->prompt().ShowMessage(kAppTitle, LoadString(kIdsReportNotSaved),
                                      MessageIcon::kError);
        Refresh();
        return false;
    }
  }
}

void ReportEditorDialog::ShowSavedReports() {
  SavedReportsDialog dialog(window_, this);
  if (dialog.exec() == QDialog::Accepted && !dialog.chosen().empty()) {
    OpenSaved(dialog.chosen());
  }
}

void ReportEditorDialog::Generate() {
  ReportDefinition definition = report_.definition;
  editor_.Fill(&definition);
  GenerateReportFromWindow(window_, definition, window_->period().GetRange());
}

void ReportEditorFromWindow(MainWindow* window) {
  ReportEditorDialog dialog(window);
  dialog.resize(window->size());
  dialog.exec();
}

}  // namespace quillora
