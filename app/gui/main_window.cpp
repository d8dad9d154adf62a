#include "app/gui/main_window.h"

#include <QApplication>
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

#include "app/gui/qt_text.h"
#include "periods/period_entries.h"
#include "store/string_table.h"
#include "store/time_entry.h"

namespace quillora {
namespace {

SystemTime FromQDate(const QDate& d) { return MakeSystemTime(d.year(), d.month(), d.day()); }

}  // namespace

MainWindow::MainWindow(DataContext& data, const Clock& clock, QWidget* parent)
    : QMainWindow(parent), data_(data), clock_(clock), gui_prompt_(this) {
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
  ApplyListFont();
  layout->addWidget(period_bar_);
  layout->addWidget(list_, 1);
  setCentralWidget(central);
  BuildMenus();

  connect(period_bar_, &PeriodBar::PreviousPeriod, this, &MainWindow::PreviousPeriod);
  connect(period_bar_, &PeriodBar::NextPeriod, this, &MainWindow::NextPeriod);
  connect(period_bar_, &PeriodBar::GotoToday, this, &MainWindow::GotoToday);
  connect(list_, &QListView::doubleClicked, this, &MainWindow::EntryActivated);
  connect(list_, &QListView::clicked, this, &MainWindow::EntryClicked);
  connect(period_bar_, &PeriodBar::CaptionClicked, this, &MainWindow::OpenCaptionPicker);
  auto* left = new QShortcut(QKeySequence(Qt::Key_Left), this);
  connect(left, &QShortcut::activated, period_bar_, &PeriodBar::PreviousPeriod);
  auto* right = new QShortcut(QKeySequence(Qt::Key_Right), this);
  connect(right, &QShortcut::activated, period_bar_, &PeriodBar::NextPeriod);

  external_poll_.setInterval(1000);
  connect(&external_poll_, &QTimer::timeout, this, &MainWindow::PollExternalChanges);
  setMinimumSize(240, 320);
  resize(420, 620);
}

MainWindow::~MainWindow() = default;

void MainWindow::BuildMenus() {
  WindowActions& a = actions_;
  QMenu* file = menuBar()->addMenu(tr("&File"));
  a.export_csv = file->addAction(tr("Export CSV..."));
  a.export_xml = file->addAction(tr("Export XML..."));
  a.report = file->addAction(tr("Report..."));
  file->addSeparator();
  a.import = file->addAction(tr("Import..."));
  a.import_entries = file->addAction(tr("Import Entries..."));
  a.export_list = file->addAction(tr("Export List..."));
  file->addSeparator();
  a.backup = file->addAction(tr("Backup..."));
  a.restore = file->addAction(tr("Restore..."));
  a.archive = file->addAction(tr("Archive..."));
  a.archive_restore = file->addAction(tr("Archive Restore..."));
  file->addSeparator();
  a.exit = file->addAction(tr("Exit"));
  a.exit->setShortcut(QKeySequence::Quit);

  QMenu* edit = menuBar()->addMenu(tr("&Edit"));
  a.new_entry = edit->addAction(tr("New Entry"));
  a.new_entry->setShortcut(QKeySequence::New);
  a.edit_entry = edit->addAction(tr("Edit Entry"));
  a.delete_entry = edit->addAction(tr("Delete Entry"));
  a.delete_entry->setShortcut(QKeySequence::Delete);
  a.copy_entry = edit->addAction(tr("Copy Entry..."));
  edit->addSeparator();
  a.find_replace = edit->addAction(tr("Find and Replace..."));
  a.mark_paid = edit->addAction(tr("Mark All as Paid"));
  a.delete_data = edit->addAction(tr("Delete Data..."));

  QMenu* view = menuBar()->addMenu(tr("&View"));
  view_group_ = new QActionGroup(this);
  const std::pair<QAction**, PeriodKind> kinds[] = {
      {&a.view_day, PeriodKind::kDay},
      {&a.view_week, PeriodKind::kWeek},
      {&a.view_month, PeriodKind::kMonth},
      {&a.view_custom, PeriodKind::kCustom}};
  a.view_day = view->addAction(tr("Day"));
  a.view_week = view->addAction(tr("Week"));
  a.view_month = view->addAction(tr("Month"));
  a.view_custom = view->addAction(tr("Custom Period"));
  for (const auto& [action, kind] : kinds) {
    (*action)->setCheckable(true);
    (*action)->setData(static_cast<int>(kind));
    view_group_->addAction(*action);
  }
  view->addSeparator();
  a.previous_period = view->addAction(tr("Previous Period"));
  a.previous_period->setShortcut(QKeySequence(Qt::ALT | Qt::Key_Left));
  a.next_period = view->addAction(tr("Next Period"));
  a.next_period->setShortcut(QKeySequence(Qt::ALT | Qt::Key_Right));
  a.today = view->addAction(tr("Today"));
  a.today->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Home));
  view->addSeparator();
  a.table_view = view->addAction(tr("Table"));
  a.item_list = view->addAction(tr("Item List"));
  a.compact_list = view->addAction(tr("Compact Item List"));
  for (QAction* style : {a.table_view, a.item_list, a.compact_list}) {
    style->setCheckable(true);
    style->setVisible(false);
  }
  view->addSeparator();
  a.summary = view->addAction(tr("Quick Summary..."));
  a.filters = view->addAction(tr("Filters..."));
  a.clear_filter = view->addAction(tr("Clear Filter"));
  a.clear_filter->setVisible(false);

  QMenu* tools = menuBar()->addMenu(tr("&Tools"));
  a.timers = tools->addAction(tr("Entry Timers..."));
  a.timers->setCheckable(true);
  a.clients = tools->addAction(tr("Clients..."));
  a.rates = tools->addAction(tr("Rate Setup..."));
  a.reports = tools->addAction(tr("Report Editor..."));
  a.options = tools->addAction(tr("Options..."));

  QMenu* help = menuBar()->addMenu(tr("&Help"));
  a.help = help->addAction(tr("Contents"));
  a.help->setShortcut(QKeySequence::HelpContents);
  a.shortcuts = help->addAction(tr("Keyboard Shortcuts"));
  a.shortcuts->setVisible(false);

  QToolBar* bar = addToolBar(tr("Commands"));
  bar->setObjectName("commands");
  bar->setMovable(false);
  bar->addAction(a.new_entry);
  bar->addAction(a.timers);
  bar->addAction(a.summary);
  bar->addAction(a.filters);
}

void MainWindow::ApplyListFont() {
  list_->setFont(ListFont(QApplication::font(), data_.settings));
}

void MainWindow::PreviousPeriod() {
  period_->Previous();
  Reload();
}

void MainWindow::NextPeriod() {
  period_->Next();
  Reload();
}

void MainWindow::GotoToday() {
  period_->Today(clock_);
  Reload();
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
  if (prompt_->Ask(kAppTitle, u"Are you sure to permanently delete this item?",
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

}  // namespace quillora
