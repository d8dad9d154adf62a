#include "app/gui/bulk_edit_dialogs.h"

#include <QApplication>
#include <QFormLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/gui/dialog_support.h"
#include "app/gui/help.h"
#include "app/gui/main_window.h"
#include "periods/entry_filter.h"
#include "store/string_table.h"

namespace quillora {
namespace {

// Sends the run's progress to the dialog's own status line and bar.
class DialogProgressPrompt : public ForwardingPrompt {
 public:
  DialogProgressPrompt(UserPrompt& inner, QLabel* status, QProgressBar* bar)
      : ForwardingPrompt(inner), status_(status), bar_(bar) {}
  void BeginProgress(const std::u16string& title, int total) override {
    status_->setText(ToQString(title));
    bar_->setRange(0, total);
    bar_->setValue(0);
    QApplication::processEvents();
  }
  void StepProgress(int position, const std::u16string& text) override {
    status_->setText(ToQString(text));
    bar_->setValue(position);
    bar_->repaint();
    QApplication::processEvents();
  }
  void EndProgress() override {}

 private:
  QLabel* status_;
  QProgressBar* bar_;
};

}  // namespace

FindReplaceDialog::FindReplaceDialog(MainWindow* window)
    : QDialog(window), window_(window) {
  setWindowTitle(tr("Find and Replace"));
  auto* layout = new QVBoxLayout(this);
  auto* form = new QFormLayout();
  form->setRowWrapPolicy(QFormLayout::WrapLongRows);
  type_ = new QComboBox(this);
  type_->setObjectName("type");
  for (int i = 0; i < kReplaceTypeCount; ++i) {
    type_->addItem(ToQString(ReplaceTypeName(static_cast<ReplaceType>(i))));
  }
  find_ = new QComboBox(this);
  find_->setObjectName("find");
  replace_ = new QLineEdit(this);
  replace_->setObjectName("replace");
  replace_->setMaxLength(static_cast<int>(kReplaceTextLimit));
  form->addRow(ToQString(LoadString(kIdsTypeLabel)), type_);
  form->addRow(ToQString(LoadString(kIdsFindLabel)), find_);
  form->addRow(ToQString(LoadString(kIdsReplaceWithLabel)), replace_);
  layout->addLayout(form);
  status_ = new QLabel(this);
  status_->setObjectName("status");
  status_->setWordWrap(true);
  progress_ = new QProgressBar(this);
  progress_->setObjectName("progress");
  status_->hide();
  progress_->hide();
  layout->addWidget(status_);
  layout->addWidget(progress_);
  layout->addStretch(1);
  buttons_ = new QDialogButtonBox(
      QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help, this);
  ConnectHelpButton(buttons_, "findreplace");
  layout->addWidget(buttons_);
  connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(type_, &QComboBox::currentIndexChanged, this, &FindReplaceDialog::FillFindList);
  FillFindList();
  FitNarrowScreens(this);
}

void FindReplaceDialog::FillFindList() {
  find_->clear();
  Catalogue* catalogue = window_->data().catalogue.get();
  if (catalogue == nullptr) {
    find_->addItem(QString());
    return;
  }
  for (const std::u16string& value :
       FindChoices(*catalogue, *window_->data().locale,
                   static_cast<ReplaceType>(type_->currentIndex()))) {
    find_->addItem(ToQString(value));
  }
}

void FindReplaceDialog::accept() {
  if (window_->data().catalogue == nullptr) {
    window_->prompt().ShowMessage(kAppTitle, LoadString(kIdsUnableToLoadDatabase),
                                  MessageIcon::kError);
    return;
  }
  const std::u16string replacement = FromQString(replace_->text());
  if (!ConfirmFindAndReplace(window_->prompt(), find_->currentIndex(), replacement)) {
    if (find_->currentIndex() <= 0) {
      find_->setFocus();
    } else if (replacement.empty()) {
      replace_->setFocus();
    }
    return;
  }
  Run();
  QDialog::accept();
}

void FindReplaceDialog::Run() {
  WaitCursor wait;
  status_->show();
  progress_->show();
  for (QWidget* w : {static_cast<QWidget*>(find_), static_cast<QWidget*>(replace_),
                     static_cast<QWidget*>(type_),
                     static_cast<QWidget*>(buttons_->button(QDialogButtonBox::Cancel))}) {
    w->setEnabled(false);
  }
  buttons_->button(QDialogButtonBox::Ok)->setEnabled(false);
  DialogProgressPrompt prompt(window_->prompt(), status_, progress_);
  counts_ = FindAndReplace(window_->entries(), *window_->data().catalogue,
                           *window_->data().locale, prompt,
                           static_cast<ReplaceType>(type_->currentIndex()),
                           FromQString(find_->currentText()), FromQString(replace_->text()));
  wait.Release();
  if (counts_.entries_failed > 0) {
    window_->prompt().ShowMessage(kAppTitle, kReplaceFailed, MessageIcon::kError);
  }
  window_->Reload();
}

BulkOutcome MarkPaidFromWindow(MainWindow* window, int* marked) {
  FileTime start = 0, end = 0;
  if (!RangeToFileTimes(window->period().GetViewRange(), &start, &end)) {
    return BulkOutcome::kFailed;
  }
  const EntryFilter& filter = window->filter();
  const Locale& locale = *window->data().locale;
  BulkOutcome outcome;
  {
    WaitingPrompt prompt(window->prompt());
    outcome = MarkAllPaid(
        window->entries(), prompt, start, end,
        [&filter, &locale](const TimeEntry& entry) {
          return Matches(filter, entry, locale);
        },
        marked);
  }
  if (outcome == BulkOutcome::kFailed) {
    window->prompt().ShowMessage(kAppTitle, kMarkPaidFailed, MessageIcon::kError);
  }
  window->Reload();
  return outcome;
}

bool DeleteCriteriaOf(const CriteriaDialog& dialog, UserPrompt& prompt,
                      DeleteCriteria* criteria) {
  criteria->by_clients = dialog.by_clients();
  criteria->clients.clear();
  if (criteria->by_clients) {
    for (const Client& client : dialog.CheckedClients()) {
      criteria->clients.push_back(client.name);
    }
    return true;
  }
  if (!RangeToFileTimes(dialog.Range(), &criteria->start, &criteria->end)) {
    prompt.ShowMessage(kAppTitle, kRangeReversed, MessageIcon::kExclamation);
    return false;
  }
  return true;
}

BulkOutcome RunWindowDeleteData(MainWindow* window,
                                const std::optional<DeleteCriteria>& criteria,
                                int* deleted) {
  if (!criteria) return BulkOutcome::kDeclined;
  BulkOutcome outcome;
  {
    WaitingPrompt prompt(window->prompt());
    outcome = DeleteDataByCriteria(window->entries(), *window->data().locale, prompt,
                                   *criteria, deleted);
  }
  if (outcome == BulkOutcome::kFailed) {
    window->prompt().ShowMessage(kAppTitle, kDeleteDataFailed, MessageIcon::kError);
  }
  window->Reload();
  return outcome;
}

void DeleteDataFromWindow(MainWindow* window) {
  std::vector<Client> clients;
  if (Catalogue* catalogue = window->data().catalogue.get()) {
    clients = ClientList(catalogue->clients);
  }
  CriteriaDialog dialog(CriteriaDialog::Purpose::kDeleteData, window->period().GetRange(),
                        std::move(clients), window->prompt(), window);
  std::optional<DeleteCriteria> criteria;
  if (dialog.exec() == QDialog::Accepted) {
    DeleteCriteria filled;
    if (!DeleteCriteriaOf(dialog, window->prompt(), &filled)) return;
    criteria = filled;
  }
  RunWindowDeleteData(window, criteria);
}

}  // namespace quillora
