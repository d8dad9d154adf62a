#include "app/gui/entry_editor_dialog.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QCalendarWidget>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QStandardPaths>
#include <QStringConverter>
#include <QTextStream>
#include <QUrl>
#include <QVBoxLayout>

#include "app/gui/qt_text.h"
#include "store/string_table.h"

namespace quillora {
namespace {

constexpr int kGeneral = 0;
constexpr int kBilling = 1;
constexpr int kNotes = 3;
constexpr int kGroupRole = Qt::UserRole;
constexpr int kIndexRole = Qt::UserRole + 1;

QComboBox* EditableBox(QWidget* parent, int limit) {
  auto* box = new QComboBox(parent);
  box->setEditable(true);
  box->setInsertPolicy(QComboBox::NoInsert);
  box->lineEdit()->setMaxLength(limit);
  box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  box->setMinimumContentsLength(6);
  return box;
}

// Refills a drop-down's list, keeping the text in its box.
void Fill(QComboBox* box, const std::vector<std::u16string>& items,
          const std::u16string& text) {
  const QSignalBlocker block(box);
  box->clear();
  for (const auto& item : items) box->addItem(ToQString(item));
  box->setEditText(ToQString(text));
}

QFormLayout* Form(QWidget* page) {
  auto* form = new QFormLayout(page);
  form->setRowWrapPolicy(QFormLayout::DontWrapRows);
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  form->setContentsMargins(6, 6, 6, 6);
  form->setVerticalSpacing(4);
  return form;
}

// The "Start Time" and "End Time" pickers behind "Set...".
bool RunStartEndDialog(QWidget* parent, StartEndPickers* pickers) {
  QDialog dialog(parent);
  dialog.setWindowTitle(QObject::tr("Start Time"));
  auto* form = new QFormLayout(&dialog);
  auto* start = new QTimeEdit(ToQTime(pickers->start), &dialog);
  auto* end = new QTimeEdit(ToQTime(pickers->end), &dialog);
  start->setDisplayFormat("hh:mm");
  end->setDisplayFormat("hh:mm");
  form->addRow(QObject::tr("Start Time:"), start);
  form->addRow(QObject::tr("End Time:"), end);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  form->addRow(buttons);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  if (dialog.exec() != QDialog::Accepted) return false;
  const QDate day = ToQDate(pickers->start);
  pickers->start = FromQDateTime(day, start->time());
  pickers->end = FromQDateTime(day, end->time());
  return true;
}

// A date field that is one stop of the tab order: Tab leaves it instead of
// moving between its day, month and year.
class OneStopDateEdit : public QDateEdit {
 public:
  using QDateEdit::QDateEdit;

 protected:
  bool focusNextPrevChild(bool next) override {
    return QAbstractSpinBox::focusNextPrevChild(next);
  }
};

// The locale's date picture in Qt's notation: the same letters, less the
// era ("g"), with a lone "y" as two digits and "yyyyy" as four.
QString QtDatePicture(const std::u16string& picture) {
  QString out;
  const QString in = ToQString(picture);
  for (qsizetype i = 0; i < in.size();) {
    const QChar c = in[i];
    if (c == '\'') {
      const qsizetype end = in.indexOf('\'', i + 1);
      const qsizetype stop = end < 0 ? in.size() : end + 1;
      out += in.mid(i, stop - i);
      i = stop;
      continue;
    }
    qsizetype run = 1;
    while (i + run < in.size() && in[i + run] == c) ++run;
    if (c == 'g') {
      // no era in Qt's pictures
    } else if (c == 'y') {
      out += run >= 3 ? "yyyy" : "yy";
    } else {
      out += in.mid(i, run);
    }
    i += run;
  }
  return out.trimmed();
}

}  // namespace

QString PrivateDocumentFolder() {
  // The runtime folder (XDG_RUNTIME_DIR) is the user's alone and is emptied
  // at logout, so a note's text does not outlive the session.
  QString base = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  if (base.isEmpty()) {
    base = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
  }
  if (base.isEmpty()) return QString();
  const QString folder = base + "/quillora-notes";
  const QByteArray path = QFile::encodeName(folder);
  ::mkdir(path.constData(), 0700);
  // A folder planted by someone else, or a link to one, is never written into.
  struct stat st {};
  if (::lstat(path.constData(), &st) != 0 || !S_ISDIR(st.st_mode) ||
      st.st_uid != ::getuid()) {
    return QString();
  }
  if ((st.st_mode & 0777) != 0700 && ::chmod(path.constData(), 0700) != 0)
    return QString();
  return folder;
}

EntryEditorDialog::EntryEditorDialog(const EditorServices& services,
                                     const TimeEntry& entry, EntryStore& entries,
                                     QWidget* parent)
    : QDialog(parent),
      editor_(services, entry),
      entries_(entries),
      prompt_(services.prompt),
      document_folder_(PrivateDocumentFolder()) {
  setWindowTitle(editor_.is_new() ? tr("New Entry") : tr("Edit Entry"));
  opener_ = [](const QString& path) {
    return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
  };
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  pages_ = new QTabWidget(this);
  pages_->setUsesScrollButtons(true);
  pages_->addTab(BuildGeneral(), ToQString(LoadString(kIdsGeneralPage)));
  pages_->addTab(BuildBilling(), ToQString(LoadString(kIdsBillingPage)));
  pages_->addTab(BuildCustom(), ToQString(LoadString(kIdsCustomFieldsPage)));
  pages_->addTab(BuildNotes(), ToQString(LoadString(kIdsNotesPage)));
  layout->addWidget(pages_, 1);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  layout->addWidget(buttons);
  connect(buttons, &QDialogButtonBox::accepted, this, &EntryEditorDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(pages_, &QTabWidget::currentChanged, this, &EntryEditorDialog::PageChanged);
  ShowGeneral();
  note_->SetBlob(entry.note);
  // The date as the list shows it; the calendar's weeks begin on the day
  // the options choose.
  date_->setDisplayFormat(QtDatePicture(services.locale.ShortDatePicture()));
  date_->calendarWidget()->setFirstDayOfWeek(
      services.settings.option_bits & kOptionWeekStartsMonday ? Qt::Monday : Qt::Sunday);
}

QWidget* EntryEditorDialog::BuildGeneral() {
  auto* page = new QWidget;
  auto* form = Form(page);
  date_ = new OneStopDateEdit(page);
  date_->setCalendarPopup(true);
  client_ = EditableBox(page, static_cast<int>(kNameFieldChars));
  project_ = EditableBox(page, static_cast<int>(kNameFieldChars));
  phase_ = EditableBox(page, static_cast<int>(kNameFieldChars));
  task_ = EditableBox(page, static_cast<int>(kNameFieldChars));
  duration_ = EditableBox(page, static_cast<int>(kDurationFieldChars));
  auto* duration_row = new QHBoxLayout;
  duration_row->setSpacing(6);
  duration_row->addWidget(duration_, 1);
  duration_row->addWidget(new QLabel(tr("hour(s)"), page));
  start_check_ = new QCheckBox(page);
  start_check_->setToolTip(tr("The entry has a start time"));
  start_ = new QTimeEdit(page);
  start_->setDisplayFormat("hh:mm");
  auto* set = new QPushButton(tr("Set..."), page);
  set->setObjectName("setStartEnd");
  auto* start_row = new QHBoxLayout;
  start_row->addWidget(start_check_);
  start_row->addWidget(start_, 1);
  start_row->addWidget(set);
  form->addRow(tr("Date:"), date_);
  form->addRow(tr("Client:"), client_);
  form->addRow(tr("Project:"), project_);
  form->addRow(tr("Phase:"), phase_);
  form->addRow(tr("Task:"), task_);
  form->addRow(tr("Duration:"), duration_row);
  form->addRow(tr("Start:"), start_row);
  // The order of the keyboard: the fields as they are typed in, the date
  // first and the start last.
  QWidget* order[] = {date_,     client_,      project_, phase_, task_,
                      duration_, start_check_, start_,   set};
  for (std::size_t i = 0; i + 1 < std::size(order); ++i)
    setTabOrder(order[i], order[i + 1]);

  connect(date_, &QDateEdit::dateChanged, this, [this](const QDate& d) {
    if (!loading_) editor_.SetDate(FromQDateTime(d, QTime(0, 0)));
  });
  auto text_of = [this](QComboBox* box, void (EntryEditor::*set)(std::u16string_view)) {
    connect(box, &QComboBox::editTextChanged, this, [this, set](const QString& text) {
      if (!loading_) (editor_.*set)(FromQString(text));
    });
  };
  text_of(client_, &EntryEditor::SetClient);
  text_of(project_, &EntryEditor::SetProject);
  text_of(phase_, &EntryEditor::SetPhase);
  text_of(task_, &EntryEditor::SetTask);
  text_of(duration_, &EntryEditor::SetDurationText);
  // The cascade runs when the box is left or an item is picked.
  auto client_left = [this] {
    editor_.ClientLostFocus();
    Fill(project_, editor_.project_list(), editor_.general().project);
    Fill(task_, editor_.task_list(), editor_.general().task);
  };
  auto project_left = [this] {
    editor_.ProjectLostFocus();
    Fill(task_, editor_.task_list(), editor_.general().task);
  };
  connect(client_->lineEdit(), &QLineEdit::editingFinished, this, client_left);
  connect(client_, &QComboBox::activated, this, client_left);
  connect(project_->lineEdit(), &QLineEdit::editingFinished, this, project_left);
  connect(project_, &QComboBox::activated, this, project_left);
  auto start_changed = [this] {
    start_->setEnabled(start_check_->isChecked());
    if (loading_) return;
    std::optional<SystemTime> time;
    if (start_check_->isChecked()) {
      time = FromQDateTime(date_->date(),
                           QTime(start_->time().hour(), start_->time().minute()));
    }
    editor_.SetStart(time);
  };
  connect(start_check_, &QCheckBox::toggled, this, start_changed);
  connect(start_, &QTimeEdit::timeChanged, this, start_changed);
  connect(set, &QPushButton::clicked, this, [this] { SetStartEnd(); });
  return page;
}

QWidget* EntryEditorDialog::BuildBilling() {
  auto* page = new QWidget;
  auto* form = Form(page);
  billable_ = new QCheckBox(tr("Billable"), page);
  paid_ = new QCheckBox(tr("Paid"), page);
  auto* flags = new QHBoxLayout;
  flags->addWidget(billable_);
  flags->addWidget(paid_);
  flags->addStretch(1);
  bill_to_ = EditableBox(page, static_cast<int>(kBillToFieldChars));
  rate_tree_ = new QTreeWidget(page);
  rate_tree_->setHeaderHidden(true);
  rate_tree_->setRootIsDecorated(true);
  rate_tree_->setIndentation(12);
  rate_tree_->setMinimumHeight(60);
  currency_ = EditableBox(page, static_cast<int>(kCurrencyFieldChars));
  currency_->setMinimumContentsLength(3);
  rate_ = new QLineEdit(page);
  rate_->setMaxLength(static_cast<int>(kRateFieldChars));
  fixed_ = new QCheckBox(tr("Fixed"), page);
  auto* rate_row = new QHBoxLayout;
  rate_row->addWidget(currency_, 1);
  rate_row->addWidget(rate_, 2);
  rate_row->addWidget(fixed_);
  total_ = new QLineEdit(page);
  total_->setReadOnly(true);
  calculate_ = new QPushButton(tr("Calculate"), page);
  auto* total_row = new QHBoxLayout;
  total_row->addWidget(total_, 1);
  total_row->addWidget(calculate_);
  form->addRow(flags);
  form->addRow(tr("Bill To:"), bill_to_);
  form->addRow(tr("Rate:"), rate_tree_);
  form->addRow(QString(), rate_row);
  form->addRow(tr("Total:"), total_row);

  connect(billable_, &QCheckBox::toggled, this, [this](bool on) {
    if (!loading_) editor_.SetBillable(on);
  });
  connect(paid_, &QCheckBox::toggled, this, [this](bool on) {
    if (!loading_) editor_.SetPaid(on);
  });
  connect(bill_to_, &QComboBox::editTextChanged, this, [this](const QString& text) {
    if (!loading_) editor_.SetBillTo(FromQString(text));
  });
  connect(currency_, &QComboBox::editTextChanged, this, [this](const QString& text) {
    if (!loading_) editor_.SetCurrency(FromQString(text));
  });
  connect(rate_, &QLineEdit::textEdited, this, [this](const QString& text) {
    editor_.SetRateText(FromQString(text));
    const QSignalBlocker block(rate_tree_);
    if (rate_tree_->topLevelItemCount() > 0 && editor_.rate_choice().custom) {
      rate_tree_->setCurrentItem(rate_tree_->topLevelItem(0));
    }
  });
  connect(fixed_, &QCheckBox::toggled, this, [this](bool on) {
    if (!loading_) editor_.SetFixed(on);
  });
  connect(rate_tree_, &QTreeWidget::currentItemChanged, this,
          [this](QTreeWidgetItem* item) {
            if (loading_ || item == nullptr) return;
            const int group = item->data(0, kGroupRole).toInt();
            const int index = item->data(0, kIndexRole).toInt();
            if (group == -1) {
              editor_.ChooseCustomRate();
            } else if (index < 0 || !editor_.ChooseRate(group, index)) {
              return;  // a client's heading chooses nothing
            }
            ShowBilling();
          });
  connect(calculate_, &QPushButton::clicked, this, [this] {
    editor_.Calculate();
    ShowBilling();
  });
  return page;
}

QWidget* EntryEditorDialog::BuildCustom() {
  auto* page = new QWidget;
  auto* form = Form(page);
  form->setRowWrapPolicy(QFormLayout::WrapAllRows);
  const CustomFieldsPage& custom = editor_.custom_fields();
  for (int i = 0; i < 3; ++i) {
    const auto n = static_cast<std::size_t>(i);
    custom_labels_[n] = new QLabel(ToQString(custom.labels[n]) + ":", page);
    custom_[n] = EditableBox(page, static_cast<int>(kCustomFieldChars));
    Fill(custom_[n], editor_.CustomFieldList(i), custom.values[n]);
    form->addRow(custom_labels_[n], custom_[n]);
    connect(
        custom_[n], &QComboBox::editTextChanged, this,
        [this, i](const QString& text) { editor_.SetCustomField(i, FromQString(text)); });
  }
  return page;
}

QWidget* EntryEditorDialog::BuildNotes() {
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(6, 6, 6, 6);
  note_ = new NoteEdit(page);
  draw_ = new QPushButton(tr("Draw"), page);
  draw_->setCheckable(true);
  auto* word = new QPushButton(tr("Edit In Word"), page);
  word->setObjectName("editInWord");
  auto* row = new QHBoxLayout;
  row->addWidget(draw_);
  row->addWidget(word);
  row->addStretch(1);
  layout->addWidget(note_, 1);
  layout->addLayout(row);
  connect(draw_, &QPushButton::toggled, note_, &NoteEdit::SetDrawing);
  connect(word, &QPushButton::clicked, this, [this] { EditInWord(); });
  return page;
}

void EntryEditorDialog::ShowGeneral() {
  loading_ = true;
  const GeneralFields& g = editor_.general();
  date_->setDate(ToQDate(g.date));
  Fill(client_, editor_.client_list(), g.client);
  Fill(project_, editor_.project_list(), g.project);
  Fill(phase_, editor_.phase_list(), g.phase);
  Fill(task_, editor_.task_list(), g.task);
  Fill(duration_, editor_.DurationChoices(), g.duration);
  start_check_->setChecked(g.start.has_value());
  start_->setEnabled(g.start.has_value());
  start_->setTime(g.start ? QTime(g.start->hour, g.start->minute) : QTime(0, 0));
  loading_ = false;
}

void EntryEditorDialog::FillRateTree() {
  const QSignalBlocker block(rate_tree_);
  rate_tree_->clear();
  const RateTree& tree = editor_.rate_tree();
  if (tree.custom_rate) {
    auto* custom =
        new QTreeWidgetItem(rate_tree_, {ToQString(LoadString(kIdsCustomRate))});
    custom->setData(0, kGroupRole, -1);
  }
  for (std::size_t g = 0; g < tree.groups.size(); ++g) {
    auto* group = new QTreeWidgetItem(rate_tree_, {ToQString(tree.groups[g].heading)});
    group->setData(0, kGroupRole, static_cast<int>(g));
    group->setData(0, kIndexRole, -1);
    group->setFlags(Qt::ItemIsEnabled);
    for (std::size_t i = 0; i < tree.groups[g].rates.size(); ++i) {
      auto* item =
          new QTreeWidgetItem(group, {ToQString(RateLabel(tree.groups[g].rates[i]))});
      item->setData(0, kGroupRole, static_cast<int>(g));
      item->setData(0, kIndexRole, static_cast<int>(i));
    }
  }
  rate_tree_->expandAll();
}

void EntryEditorDialog::ShowBilling() {
  loading_ = true;
  const BillingFields& b = editor_.billing();
  billable_->setChecked(b.billable);
  paid_->setChecked(b.paid);
  Fill(bill_to_, editor_.bill_to_list(), b.bill_to);
  Fill(currency_, editor_.currency_list(), b.currency);
  if (rate_->text() != ToQString(b.rate)) rate_->setText(ToQString(b.rate));
  fixed_->setChecked(b.fixed);
  fixed_->setEnabled(b.fixed_enabled);
  total_->setText(ToQString(b.total));
  const RateChoice& choice = editor_.rate_choice();
  QTreeWidgetItem* current = nullptr;
  if (choice.custom) {
    if (rate_tree_->topLevelItemCount() > 0 &&
        rate_tree_->topLevelItem(0)->data(0, kGroupRole).toInt() == -1) {
      current = rate_tree_->topLevelItem(0);
    }
  } else {
    const int offset = editor_.rate_tree().custom_rate ? 1 : 0;
    if (QTreeWidgetItem* group = rate_tree_->topLevelItem(choice.group + offset)) {
      current = group->child(choice.index);
    }
  }
  {
    const QSignalBlocker block(rate_tree_);
    rate_tree_->setCurrentItem(current);
  }
  loading_ = false;
}

void EntryEditorDialog::PageChanged(int index) {
  const int left = page_;
  bool refused = false;
  if (left == kGeneral) refused = !editor_.LeaveGeneralPage();
  if (left == kBilling) refused = !editor_.LeaveBillingPage();
  if (left == kNotes) editor_.SetNote(note_->Blob());
  if (refused) {
    const QSignalBlocker block(pages_);
    pages_->setCurrentIndex(left);
    FocusRefused();
    return;
  }
  page_ = index;
  if (index == kBilling) {
    if (!billing_opened_) {
      editor_.OpenBillingPage();
      FillRateTree();
      billing_opened_ = true;
    }
    ShowBilling();
  }
}

void EntryEditorDialog::FocusRefused() {
  switch (editor_.focus()) {
    case EditorField::kClient:
      pages_->setCurrentIndex(kGeneral);
      client_->setFocus();
      break;
    case EditorField::kDuration:
      pages_->setCurrentIndex(kGeneral);
      duration_->setFocus();
      break;
    case EditorField::kTask:
      pages_->setCurrentIndex(kGeneral);
      task_->setFocus();
      break;
    case EditorField::kRate:
      pages_->setCurrentIndex(kBilling);
      rate_->setFocus();
      break;
    case EditorField::kNone:
      break;
  }
}

void EntryEditorDialog::SetStartEnd(const std::function<bool(StartEndPickers*)>& pick) {
  std::optional<StartEndPickers> pickers = editor_.BeginSetStartEnd();
  if (!pickers) {
    FocusRefused();
    return;
  }
  const bool chosen = pick ? pick(&*pickers) : RunStartEndDialog(this, &*pickers);
  if (chosen) editor_.EndSetStartEnd(pickers->start, pickers->end);
  ShowGeneral();
}

bool EntryEditorDialog::EditInWord() {
  const QString path = QDir(document_folder_).filePath("Quillora Note.txt");
  QFile file(path);
  bool written = !document_folder_.isEmpty() &&
                 file.open(QIODevice::WriteOnly | QIODevice::Truncate);
  if (written) {
    // UTF-8 with a byte order mark, so that any word processor reads it right.
    const QByteArray bytes = "\xEF\xBB\xBF" + note_->Text().toUtf8();
    written = file.write(bytes) == bytes.size() && file.flush();
    file.close();
  }
  if (!written) {
    prompt_.ShowMessage(kAppTitle, LoadString(kIdsExportNoteFailed),
                        MessageIcon::kExclamation);
    return false;
  }
  opener_(path);
  if (prompt_.Ask(kAppTitle, LoadString(kIdsEditInWordPrompt), MessageIcon::kInformation,
                  QuestionButtons::kOkCancel, Answer::kOk) != Answer::kOk) {
    return false;
  }
  if (!file.open(QIODevice::ReadOnly)) return false;
  QTextStream in(&file);
  in.setEncoding(QStringConverter::Utf8);
  note_->SetText(in.readAll());
  editor_.SetNote(note_->Blob());
  file.close();
  file.remove();
  return true;
}

void EntryEditorDialog::accept() {
  editor_.SetNote(note_->Blob());
  save_result_ = editor_.Save(entries_);
  if (*save_result_ == SaveResult::kSaved) {
    QDialog::accept();
    return;
  }
  // The refused page comes back with the model's fields as they stand.
  if (*save_result_ == SaveResult::kRefused) FocusRefused();
}

void EntryEditorDialog::reject() {
  if (!cancel_question_.empty() &&
      prompt_.Ask(kAppTitle, cancel_question_, MessageIcon::kQuestion,
                  QuestionButtons::kYesNo, Answer::kNo) != Answer::kYes) {
    return;
  }
  QDialog::reject();
}

}  // namespace quillora
