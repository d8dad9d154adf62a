#include "app/gui/main_window.h"
#include "app/gui/qt_text.h"

#include <QCalendarWidget>
#include <QDateEdit>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <QToolBar>
#include <QVBoxLayout>
#include <QWidgetAction>

#include "app/gui/catalogue_commands.h"
#include "app/gui/options_commands.h"
#include "app/gui/backup_dialogs.h"
#include "app/gui/data_commands.h"
#include "app/gui/entry_commands.h"
#include "periods/period_entries.h"
#include "store/string_table.h"
#include "store/time_entry.h"

namespace quillora {
namespace {

SystemTime FromQDate(const QDate& d) { return MakeSystemTime(d.year(), d.month(), d.day()); }

}  // namespace

MainWindow::MainWindow(DataContext& data, const Clock& clock, QWidget* parent)
    : QMainWindow(parent), data_(data), clock_(clock), gui_prompt_(this, data.folder) {
  setWindowTitle(ToQString(kAppTitle));
  auto* central = new QWidget(this);
  auto* layout = new QVBoxLayout(central);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  period_bar_ = new PeriodBar(central);
  model_ = new EntryListModel(data_.settings, *data_.locale, this);
  list_ = new QListView(central);
  list_->setModel(model_);
  list_->setItemDelegate(new EntryItemDelegate(model_, list_));
  list_->setUniformItemSizes(false);
  list_->setResizeMode(QListView::Adjust);
  list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_->setSelectionMode(QAbstractItemView::SingleSelection);
  QFont font = list_->font();
  font.setBold(data_.settings.option_bits & kOptionBoldFont);
  list_->setFont(font);
  layout->addWidget(period_bar_);
  layout->addWidget(list_, 1);
  setCentralWidget(central);
  BuildMenus();

  connect(period_bar_, &PeriodBar::PreviousPeriod, this, [this] {
    period_->Previous();
    Reload();
  });
  connect(period_bar_, &PeriodBar::NextPeriod, this, [this] {
    period_->Next();
    Reload();
  });
  connect(period_bar_, &PeriodBar::GotoToday, this, [this] {
    period_->Today(clock_);
    Reload();
  });
  connect(period_bar_, &PeriodBar::CaptionClicked, this, &MainWindow::OpenCaptionPicker);
  auto* left = new QShortcut(QKeySequence(Qt::Key_Left), this);
  connect(left, &QShortcut::activated, period_bar_, &PeriodBar::PreviousPeriod);
  auto* right = new QShortcut(QKeySequence(Qt::Key_Right), this);
  connect(right, &QShortcut::activated, period_bar_, &PeriodBar::NextPeriod);

  external_poll_.setInterval(1000);
  connect(&external_poll_, &QTimer::timeout, this, &MainWindow::PollExternalChanges);
  setMinimumSize(240, 320);
  resize(420, 620);
  InstallCatalogueCommands(this);
  InstallOptionsCommands(this);
  InstallDataCommands(this);
  InstallEntryCommands(this);
}

MainWindow::~MainWindow() = default;

QAction* MainWindow::AddAction(QMenu* menu, const QString& name, const QString& text,
                               bool enabled) {
  auto* action = menu->addAction(text);
  action->setObjectName(name);
  action->setEnabled(enabled);
  return action;
}

QAction* MainWindow::action(const QString& name) const {
  return findChild<QAction*>(name);
}

void MainWindow::BuildMenus() {
  QMenu* file = menuBar()->addMenu(tr("&File"));
  AddAction(file, "exportCsv", tr("Export CSV..."), false);
  AddAction(file, "exportXml", tr("Export XML..."), false);
  AddAction(file, "report", tr("Report..."), false);
  file->addSeparator();
  AddAction(file, "import", tr("Import..."), false);
  AddAction(file, "exportList", tr("Export List..."), false);
  file->addSeparator();
  AddAction(file, "backup", tr("Backup..."), false);
  AddAction(file, "restore", tr("Restore..."), false);
  AddAction(file, "archive", tr("Archive..."), false);
  AddAction(file, "archiveRestore", tr("Archive Restore..."), false);
  file->addSeparator();
  QAction* exit = AddAction(file, "exit", tr("Exit"));
  exit->setShortcut(QKeySequence::Quit);
  connect(exit, &QAction::triggered, this, &QWidget::close);

  QMenu* edit = menuBar()->addMenu(tr("&Edit"));
  QAction* new_entry = AddAction(edit, "newEntry", tr("New Entry"), false);
  new_entry->setShortcut(QKeySequence::New);
  AddAction(edit, "editEntry", tr("Edit Entry"), false);
  QAction* del = AddAction(edit, "deleteEntry", tr("Delete Entry"));
  del->setShortcut(QKeySequence::Delete);
  connect(del, &QAction::triggered, this, &MainWindow::DeleteSelectedEntry);
  AddAction(edit, "copyEntry", tr("Copy Entry..."), false);
  edit->addSeparator();
  AddAction(edit, "findReplace", tr("Find and Replace..."), false);
  AddAction(edit, "markPaid", tr("Mark All as Paid"), false);
  AddAction(edit, "deleteData", tr("Delete Data..."), false);

  QMenu* view = menuBar()->addMenu(tr("&View"));
  view_group_ = new QActionGroup(this);
  const std::pair<PeriodKind, QString> kinds[] = {{PeriodKind::kDay, tr("Day")},
                                                  {PeriodKind::kWeek, tr("Week")},
                                                  {PeriodKind::kMonth, tr("Month")},
                                                  {PeriodKind::kCustom, tr("Custom Period")}};
  for (const auto& [kind, text] : kinds) {
    QAction* a = AddAction(view, QString("view%1").arg(static_cast<int>(kind)), text);
    a->setCheckable(true);
    a->setData(static_cast<int>(kind));
    view_group_->addAction(a);
    connect(a, &QAction::triggered, this, [this, kind = kind] { SwitchKind(kind); });
  }
  view->addSeparator();
  AddAction(view, "summary", tr("Quick Summary..."), false);
  AddAction(view, "filters", tr("Filters..."), false);

  QMenu* tools = menuBar()->addMenu(tr("&Tools"));
  QAction* timers = AddAction(tools, "timers", tr("Entry Timers..."), false);
  timers->setCheckable(true);
  AddAction(tools, "clients", tr("Clients..."), false);
  AddAction(tools, "rates", tr("Rate Setup..."), false);
  AddAction(tools, "reports", tr("Report Editor..."), false);
  AddAction(tools, "options", tr("Options..."), false);

  QMenu* help = menuBar()->addMenu(tr("&Help"));
  AddAction(help, "help", tr("Contents"), false);

  QToolBar* bar = addToolBar(tr("Commands"));
  bar->setObjectName("commands");
  bar->setMovable(false);
  bar->addAction(new_entry);
  bar->addAction(timers);
  bar->addAction(action("summary"));
  bar->addAction(action("filters"));
}

bool MainWindow::Open() {
  entries_ = std::make_unique<EntryStore>(*data_.volume);
  NotificationRequest request;
  request.flags = 1;
  request.notify = [this](const StoreChange&) { ScheduleReload(); };
  if (!entries_->Open(0, &request)) return false;
  // The catalogue goes on regardless, as the device's view did.
  OpenCatalogue(&data_);
  filter_.Reset();
  LoadFilter(*data_.registry, &filter_);
  external_counter_ = data_.volume->ExternalChangeCounter();
  external_poll_.start();
  ShowPeriod(MakePeriod(PeriodKindFromView(data_.settings.view), clock_.LocalNow(),
                        data_.settings));
  return true;
}

void MainWindow::ShowPeriod(std::unique_ptr<Period> period) {
  period_ = std::move(period);
  for (QAction* a : view_group_->actions()) {
    a->setChecked(a->data().toInt() == static_cast<int>(period_->Kind()));
  }
  Reload();
}

void MainWindow::SwitchKind(PeriodKind kind) {
  if (kind == period_->Kind()) return;
  ShowPeriod(SwitchPeriodKind(*period_, kind, data_.settings, clock_));
  data_.settings.view = static_cast<std::uint32_t>(kind);
  SaveSettings(*data_.registry, data_.settings);
}

void MainWindow::ScheduleReload() {
  if (reload_pending_) return;
  reload_pending_ = true;
  QTimer::singleShot(0, this, [this] {
    reload_pending_ = false;
    Reload();
  });
}

void MainWindow::PollExternalChanges() {
  const std::uint64_t counter = data_.volume->ExternalChangeCounter();
  if (counter == external_counter_) return;
  external_counter_ = counter;
  Reload();
}

void MainWindow::Reload() {
  if (!entries_ || !period_) return;
  const ObjectId selected = SelectedRecordId();
  std::vector<TimeEntry> shown;
  WalkPeriodEntries(*entries_, period_->GetViewRange(), filter_, *data_.locale,
                    [&shown](const TimeEntry& entry) {
                      shown.push_back(entry);
                      return true;
                    });
  SortEntries(data_.settings.sort, *data_.locale, &shown);
  model_->SetEntries(std::move(shown));
  const WeekPeriod* week = dynamic_cast<const WeekPeriod*>(period_.get());
  period_bar_->SetCaption(ToQString(period_->GetCaption(*data_.locale)),
                          week ? ToQString(week->WeekNumberText()) : QString());
  const int row = model_->RowOf(selected);
  if (row >= 0) list_->setCurrentIndex(model_->index(row));
}

ObjectId MainWindow::SelectedRecordId() const {
  const QModelIndex index = list_->currentIndex();
  if (!index.isValid()) return 0;
  return model_->EntryAt(index.row()).recordId;
}

void MainWindow::DeleteSelectedEntry() {
  const ObjectId id = SelectedRecordId();
  if (id == 0) return;
  if (prompt_->Ask(kAppTitle, LoadString(kIdsDeleteItemQuestion),
                  MessageIcon::kWarning, QuestionButtons::kYesNo,
                  Answer::kNo) != Answer::kYes) {
    return;
  }
  TimeEntry entry = model_->EntryAt(list_->currentIndex().row());
  DeleteEntry(*entries_, entry);
}

void MainWindow::OpenCaptionPicker() {
  QMenu menu(this);
  const QPoint where =
      period_bar_->caption_button()->mapToGlobal(period_bar_->caption_button()->rect().bottomLeft());
  if (auto* month = dynamic_cast<MonthPeriod*>(period_.get())) {
    const MonthMenu items = BuildMonthMenu(*month, *data_.locale);
    for (int m = 0; m < 12; ++m) {
      QAction* a = menu.addAction(ToQString(items.month_names[static_cast<std::size_t>(m)]));
      a->setCheckable(true);
      a->setChecked(items.checked_month == m + 1);
      connect(a, &QAction::triggered, this, [this, month, m] {
        month->SelectMonth(m + 1);
        Reload();
      });
    }
    menu.addSeparator();
    for (std::size_t i = 0; i < items.years.size(); ++i) {
      QAction* a = menu.addAction(ToQString(items.year_texts[i]));
      const int year = items.years[i];
      a->setCheckable(true);
      a->setChecked(items.checked_year == year);
      connect(a, &QAction::triggered, this, [this, month, year] {
        month->SelectYear(year);
        Reload();
      });
    }
    menu.addSeparator();
    connect(menu.addAction(ToQString(items.goto_today)), &QAction::triggered, period_bar_,
            &PeriodBar::GotoToday);
    menu.exec(where);
    return;
  }
  if (auto* custom = dynamic_cast<CustomPeriod*>(period_.get())) {
    QDialog dialog(this);
    dialog.setWindowTitle(tr("Custom Period"));
    auto* form = new QFormLayout(&dialog);
    const PeriodRange dates = CustomDialogDates(*period_, data_.settings);
    auto* start = new QDateEdit(ToQDate(dates.start), &dialog);
    auto* end = new QDateEdit(ToQDate(dates.end), &dialog);
    start->setCalendarPopup(true);
    end->setCalendarPopup(true);
    form->addRow(tr("Start:"), start);
    form->addRow(tr("End:"), end);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    if (dialog.exec() == QDialog::Accepted &&
        custom->SetDate(FromQDate(start->date()), FromQDate(end->date()))) {
      StoreCustomPeriod(*custom, &data_.settings);
      SaveSettings(*data_.registry, data_.settings);
      Reload();
    }
    return;
  }
  auto* calendar = new QCalendarWidget(&menu);
  calendar->setSelectedDate(ToQDate(period_->GetAnchor()));
  auto* holder = new QWidgetAction(&menu);
  holder->setDefaultWidget(calendar);
  menu.addAction(holder);
  connect(calendar, &QCalendarWidget::clicked, &menu, [this, &menu](const QDate& date) {
    period_->SelectDate(FromQDate(date));
    menu.close();
    Reload();
  });
  menu.exec(where);
}

void MainWindow::HandleCommandLine(const QStringList& arguments) {
  OpenHandedFiles(this, arguments);
}

}  // namespace quillora
