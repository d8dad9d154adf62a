#include "app/gui/main_window.h"

#include <QApplication>
#include <QCalendarWidget>
#include <QDateEdit>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <QToolBar>
#include <QVBoxLayout>
#include <QWidgetAction>
#include <optional>

#include "app/gui/qt_text.h"
#include "periods/period_entries.h"
#include "store/string_table.h"
#include "store/time_entry.h"
#include "timekeeping/duration.h"

namespace quillora {
namespace {

SystemTime FromQDate(const QDate& d) {
  return MakeSystemTime(d.year(), d.month(), d.day());
}

}  // namespace

MainWindow::MainWindow(DataContext& data, const Clock& clock, QWidget* parent)
    : QMainWindow(parent), data_(data), clock_(clock), gui_prompt_(this, data.folder) {
  setWindowTitle(ToQString(kAppTitle));
  auto* central = new QWidget(this);
  auto* layout = new QVBoxLayout(central);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  period_bar_ = new PeriodBar(central);
  filter_bar_ = new FilterBar(central);
  model_ = new EntryListModel(data_.settings, *data_.locale, this);
  list_ = new QListView(central);
  list_->setModel(model_);
  list_->setItemDelegate(new EntryItemDelegate(model_, list_));
  list_->setUniformItemSizes(false);
  list_->setResizeMode(QListView::Adjust);
  list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_->setSelectionMode(QAbstractItemView::SingleSelection);
  BuildTable();
  views_ = new QStackedWidget(central);
  views_->addWidget(table_);
  views_->addWidget(list_);

  // Under the entries: the totals, always in view, and the hours of each
  // project; the splitter gives the projects more room.
  auto* totals = new QWidget(central);
  auto* totals_layout = new QVBoxLayout(totals);
  totals_layout->setContentsMargins(6, 4, 6, 0);
  totals_layout->setSpacing(4);
  totals_label_ = new QLabel(totals);
  totals_label_->setObjectName("totals");
  totals_label_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  projects_ = new QTreeWidget(totals);
  projects_->setColumnCount(3);
  projects_->setHeaderLabels({tr("Project"), tr("Hours"), tr("Share")});
  projects_->setRootIsDecorated(false);
  projects_->setUniformRowHeights(true);
  projects_->setSelectionMode(QAbstractItemView::NoSelection);
  projects_->setFocusPolicy(Qt::NoFocus);
  projects_->header()->setStretchLastSection(false);
  projects_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  projects_->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
  projects_->header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
  projects_->headerItem()->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
  projects_->headerItem()->setTextAlignment(2, Qt::AlignRight | Qt::AlignVCenter);
  totals_layout->addWidget(totals_label_);
  totals_layout->addWidget(projects_, 1);
  totals->setMinimumHeight(totals_label_->sizeHint().height() + 8);
  splitter_ = new QSplitter(Qt::Vertical, central);
  splitter_->addWidget(views_);
  splitter_->addWidget(totals);
  splitter_->setCollapsible(0, false);
  splitter_->setCollapsible(1, false);
  splitter_->setStretchFactor(0, 1);
  splitter_->setStretchFactor(1, 0);
  ApplyListFont();
  layout->addWidget(period_bar_);
  layout->addWidget(filter_bar_);
  layout->addWidget(splitter_, 1);
  setCentralWidget(central);
  BuildMenus();
  views_->setCurrentWidget(TableShown() ? static_cast<QWidget*>(table_) : list_);

  connect(period_bar_, &PeriodBar::PreviousPeriod, this, &MainWindow::PreviousPeriod);
  connect(period_bar_, &PeriodBar::NextPeriod, this, &MainWindow::NextPeriod);
  connect(period_bar_, &PeriodBar::GotoToday, this, &MainWindow::GotoToday);
  connect(list_, &QListView::doubleClicked, this, &MainWindow::EntryActivated);
  connect(list_, &QListView::clicked, this, &MainWindow::EntryClicked);
  connect(table_, &QTreeView::doubleClicked, this, [this](const QModelIndex& index) {
    if (table_model_->EntryAt(index)) emit EntryActivated();
  });
  connect(table_, &QTreeView::clicked, this, [this](const QModelIndex& index) {
    if (table_model_->EntryAt(index)) emit EntryClicked();
  });
  connect(filter_bar_, &FilterBar::ClearClicked, this, &MainWindow::ClearFilter);
  connect(period_bar_, &PeriodBar::CaptionClicked, this, &MainWindow::OpenCaptionPicker);
  // The item list keeps the handheld's arrow keys for the periods; in the
  // table they move through the rows and days (Alt+Left/Right change the
  // period there).
  left_ = new QShortcut(QKeySequence(Qt::Key_Left), list_);
  connect(left_, &QShortcut::activated, period_bar_, &PeriodBar::PreviousPeriod);
  right_ = new QShortcut(QKeySequence(Qt::Key_Right), list_);
  connect(right_, &QShortcut::activated, period_bar_, &PeriodBar::NextPeriod);
  left_->setContext(Qt::WidgetWithChildrenShortcut);
  right_->setContext(Qt::WidgetWithChildrenShortcut);
  connect(splitter_, &QSplitter::splitterMoved, this, &MainWindow::ScheduleLayoutSave);

  external_poll_.setInterval(1000);
  connect(&external_poll_, &QTimer::timeout, this, &MainWindow::PollExternalChanges);
  layout_save_.setSingleShot(true);
  layout_save_.setInterval(500);
  connect(&layout_save_, &QTimer::timeout, this, &MainWindow::SaveLayout);
  setMinimumSize(240, 320);
  resize(420, 620);
}

void MainWindow::BuildTable() {
  table_model_ = new EntryTableModel(data_.settings, *data_.locale, this);
  table_ = new QTreeView;
  table_->setObjectName("entryTable");
  table_->setModel(table_model_);
  table_->setUniformRowHeights(true);
  table_->setAlternatingRowColors(false);
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table_->setAllColumnsShowFocus(true);
  table_->setIndentation(14);
  table_->setExpandsOnDoubleClick(true);
  QHeaderView* header = table_->header();
  header->setSectionsMovable(true);
  header->setSectionsClickable(true);
  header->setSortIndicatorShown(true);
  // The last column takes the width left over; its own width is not kept.
  header->setStretchLastSection(true);
  header->setFirstSectionMovable(true);
  header->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(header, &QHeaderView::customContextMenuRequested, this,
          &MainWindow::ShowTableMenu);
  connect(header, &QHeaderView::sectionClicked, this, &MainWindow::SortByColumn);
  connect(header, &QHeaderView::sectionResized, this, [this](int column, int, int size) {
    if (applying_columns_ || IsLastShownColumn(column)) return;
    // A width the user gave is kept; a column dragged to nothing is hidden.
    layout_.widths[static_cast<std::size_t>(column)] = size > 0 ? size : kColumnHidden;
    ScheduleLayoutSave();
  });
  connect(header, &QHeaderView::sectionMoved, this, [this] {
    if (applying_columns_) return;
    for (int v = 0; v < kTableColumns; ++v) {
      layout_.order[static_cast<std::size_t>(v)] = table_->header()->logicalIndex(v);
    }
    ScheduleLayoutSave();
  });
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
  a.edit_entry->setShortcuts({QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter),
                              QKeySequence(Qt::Key_F2)});
  a.delete_entry = edit->addAction(tr("Delete Entry"));
  a.delete_entry->setShortcut(QKeySequence::Delete);
  a.copy_entry = edit->addAction(tr("Copy Entry..."));
  a.copy_entry->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_D));
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
    (*action)->setShortcut(QKeySequence(Qt::CTRL | (Qt::Key_0 + static_cast<int>(kind))));
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
  auto* styles = new QActionGroup(this);
  for (QAction* style : {a.table_view, a.item_list, a.compact_list}) {
    style->setCheckable(true);
    styles->addAction(style);
  }
  a.table_view->setChecked(TableShown());
  a.compact_list->setChecked(data_.settings.list_style == kListStyleCompact);
  a.item_list->setChecked(data_.settings.list_style == kListStyleItems);
  view->addSeparator();
  a.summary = view->addAction(tr("Quick Summary..."));
  a.summary->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_S));
  a.filters = view->addAction(tr("Filters..."));
  a.filters->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_F));
  a.clear_filter = view->addAction(tr("Clear Filter"));
  a.clear_filter->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F));

  QMenu* tools = menuBar()->addMenu(tr("&Tools"));
  a.timers = tools->addAction(tr("Entry Timers..."));
  a.timers->setCheckable(true);
  a.timers->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_T));
  a.clients = tools->addAction(tr("Clients..."));
  a.rates = tools->addAction(tr("Rate Setup..."));
  a.reports = tools->addAction(tr("Report Editor..."));
  a.options = tools->addAction(tr("Options..."));

  QMenu* help = menuBar()->addMenu(tr("&Help"));
  a.help = help->addAction(tr("Contents"));
  a.help->setShortcut(QKeySequence::HelpContents);
  a.shortcuts = help->addAction(tr("Keyboard Shortcuts"));
  a.export_csv->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_E));

  QToolBar* bar = addToolBar(tr("Commands"));
  bar->setObjectName("commands");
  bar->setMovable(false);
  bar->addAction(a.new_entry);
  bar->addAction(a.timers);
  bar->addAction(a.summary);
  bar->addAction(a.filters);
}

void MainWindow::ApplyListFont() {
  const QFont font = ListFont(QApplication::font(), data_.settings);
  list_->setFont(font);
  // The table keeps the system's weight: "Bold" is the item list's look.
  QFont table_font = font;
  table_font.setBold(false);
  table_->setFont(table_font);
  table_model_->SetFont(table_font);
}

bool MainWindow::TableShown() const {
  return data_.settings.list_style != kListStyleCompact &&
         data_.settings.list_style != kListStyleItems;
}

void MainWindow::SetListStyle(std::uint32_t style) {
  data_.settings.list_style = style;
  SaveSettings(*data_.registry, data_.settings);
  actions_.table_view->setChecked(TableShown());
  actions_.compact_list->setChecked(style == kListStyleCompact);
  actions_.item_list->setChecked(style == kListStyleItems);
  const ObjectId selected = SelectedRecordId();
  views_->setCurrentWidget(TableShown() ? static_cast<QWidget*>(table_) : list_);
  Reload();
  SelectRecord(selected);
}

namespace {

// The "Sort" key of each column.
constexpr std::uint32_t kColumnSortKeys[kTableColumns] = {
    kSortDate,     kSortStartTime, kSortClient, kSortProject, kSortPhase, kSortTask,
    kSortDuration, kSortRate,      kSortAmount, kSortStatus,  kSortNote};

}  // namespace

void MainWindow::SortByColumn(int column) {
  if (column < 0 || column >= kTableColumns) return;
  const std::uint32_t key = kColumnSortKeys[column];
  const std::uint32_t sort = data_.settings.sort;
  std::uint32_t next = key;
  if ((sort & 0xFF) == key && !(sort & kSortDescending)) next |= kSortDescending;
  data_.settings.sort = static_cast<std::uint16_t>(next);
  SaveSettings(*data_.registry, data_.settings);
  Reload();
}

void MainWindow::ShowSortIndicator() {
  const std::uint32_t key = data_.settings.sort & 0xFF;
  int column = kColumnDate;
  for (int c = 0; c < kTableColumns; ++c) {
    if (kColumnSortKeys[c] == key) column = c;
  }
  table_->header()->setSortIndicator(column, data_.settings.sort & kSortDescending
                                                 ? Qt::DescendingOrder
                                                 : Qt::AscendingOrder);
}

void MainWindow::ClearFilter() {
  filter_.Reset();
  SaveFilter(*data_.registry, filter_);
  Reload();
}

void MainWindow::ShowTableMenu(const QPoint& at) {
  QMenu menu(this);
  QHeaderView* header = table_->header();
  for (int c = 0; c < kTableColumns; ++c) {
    QAction* shown = menu.addAction(EntryTableModel::ColumnTitle(c));
    shown->setCheckable(true);
    shown->setChecked(!header->isSectionHidden(c));
    connect(shown, &QAction::toggled, this, [this, c](bool on) {
      layout_.widths[static_cast<std::size_t>(c)] = on ? kColumnAutomatic : kColumnHidden;
      ApplyColumns();
      ScheduleLayoutSave();
    });
  }
  menu.addSeparator();
  connect(menu.addAction(tr("Reset Columns")), &QAction::triggered, this, [this] {
    const WindowLayout fresh;
    layout_.widths = fresh.widths;
    layout_.order = fresh.order;
    ApplyColumns();
    ScheduleLayoutSave();
  });
  menu.exec(header->mapToGlobal(at));
}

void MainWindow::ApplyColumns() {
  applying_columns_ = true;
  QHeaderView* header = table_->header();
  const QFontMetrics metrics(table_->font());
  // Automatic widths fit a typical text of the column, so that a year of
  // entries is never measured row by row.
  const std::u16string date = data_.locale->AbbreviatedDayName(3) + u" " +
                              data_.locale->FormatShortDate(MakeSystemTime(2026, 12, 30));
  const QString samples[kTableColumns] = {ToQString(date) + "MMMM",
                                          "12:00 PMM",
                                          "Northwind Traders",
                                          "Website redesign",
                                          "Phase 2 build",
                                          "Development and testing",
                                          "000.00h",
                                          "000.00",
                                          "00000.00",
                                          "Non Billable MM",
                                          "A note of a few words and more"};
  for (int c = 0; c < kTableColumns; ++c) {
    const std::int32_t width = layout_.widths[static_cast<std::size_t>(c)];
    header->setSectionHidden(c, width == kColumnHidden);
    if (width == kColumnHidden) continue;
    const int automatic =
        std::max(metrics.horizontalAdvance(samples[c]),
                 metrics.horizontalAdvance(EntryTableModel::ColumnTitle(c))) +
        metrics.averageCharWidth() * 3;
    header->resizeSection(c, width > 0 ? width : automatic);
  }
  for (int v = 0; v < kTableColumns; ++v) {
    const int logical = layout_.order[static_cast<std::size_t>(v)];
    header->moveSection(header->visualIndex(logical), v);
  }
  applying_columns_ = false;
}

void MainWindow::ScheduleLayoutSave() { layout_save_.start(); }

bool MainWindow::IsLastShownColumn(int column) const {
  const QHeaderView* header = table_->header();
  for (int v = header->count() - 1; v >= 0; --v) {
    const int logical = header->logicalIndex(v);
    if (!header->isSectionHidden(logical)) return logical == column;
  }
  return false;
}

void MainWindow::RestoreLayout(const QRect& work_area) {
  layout_ = LoadWindowLayout(*data_.registry);
  QRect place = work_area;
  if (layout_.placed) {
    place = QRect(layout_.rect[0], layout_.rect[1], layout_.rect[2], layout_.rect[3]);
    // A place left on a screen that is gone comes back onto this one.
    if (!work_area.intersects(place)) place.moveTopLeft(work_area.topLeft());
    place.setSize(place.size().boundedTo(work_area.size()));
  }
  setGeometry(place);
  if (layout_.maximised) setWindowState(windowState() | Qt::WindowMaximized);
  if (layout_.totals_height > 0) {
    const int total = std::max(splitter_->height(), place.height());
    splitter_->setSizes(
        {std::max(total - layout_.totals_height, 1), layout_.totals_height});
  } else {
    // The totals line and a few projects.
    const int pane = totals_label_->sizeHint().height() * 8;
    splitter_->setSizes({std::max(place.height() - pane, 1), pane});
  }
  ApplyColumns();
}

void MainWindow::SaveLayout() {
  layout_save_.stop();
  const QRect normal = isMaximized() || isFullScreen() ? normalGeometry() : geometry();
  if (normal.isValid()) {
    layout_.placed = true;
    layout_.rect = {normal.x(), normal.y(), normal.width(), normal.height()};
  }
  layout_.maximised = isMaximized();
  const QList<int> sizes = splitter_->sizes();
  if (sizes.size() == 2 && sizes[1] > 0) layout_.totals_height = sizes[1];
  for (int c = 0; c < kTableColumns; ++c) {
    if (table_->header()->isSectionHidden(c))
      layout_.widths[static_cast<std::size_t>(c)] = 0;
  }
  SaveWindowLayout(*data_.registry, layout_);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  SaveLayout();
  QMainWindow::closeEvent(event);
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
  LoadSettings(*data_.registry, &stored_settings_);
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
  std::optional<SystemTime> selected_day;
  SystemTime day;
  if (const TimeEntry* entry = SelectedEntry();
      entry && FileTimeToSystemTime(entry->start, &day)) {
    selected_day = day;
  }
  ShowPeriod(SwitchPeriodKind(*period_, kind, data_.settings, clock_, selected_day));
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
  // A filter saved by another process (`quillora filter ...`) is taken up
  // as a change of the entries is.
  EntryFilter saved;
  bool changed = false;
  if (ReadSavedFilter(*data_.registry, &saved)) {
    // The range and the custom criteria are never saved: they stay.
    saved.range_start = filter_.range_start;
    saved.range_end = filter_.range_end;
    saved.custom1 = filter_.custom1;
    saved.custom2 = filter_.custom2;
    saved.custom3 = filter_.custom3;
    if (!(saved == filter_)) {
      filter_ = saved;
      changed = true;
    }
  }
  const std::uint64_t counter = data_.volume->ExternalChangeCounter();
  if (counter != external_counter_) {
    external_counter_ = counter;
    changed = true;
  }
  if (changed) Reload();
  // So are settings, but only a change since the last look: what this
  // window holds is never replaced by what it already saw or saved itself.
  Settings stored;
  if (LoadSettings(*data_.registry, &stored) && !(stored == stored_settings_)) {
    stored_settings_ = stored;
    if (!(stored == data_.settings)) emit SettingsChangedElsewhere(stored);
  }
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
  const bool table = TableShown();
  // The table groups its rows by day except in the day view.
  const bool by_day = table && period_->Kind() != PeriodKind::kDay;
  SortEntries(data_.settings.sort, *data_.locale, data_.settings, by_day, &shown);
  QuickSummarySums sums(data_.settings, *data_.locale);
  for (const TimeEntry& entry : shown) sums.Add(entry);
  ShowTotals(sums);
  if (table) {
    model_->SetEntries({});
    table_model_->SetEntries(std::move(shown), by_day);
    table_->setRootIsDecorated(by_day);
    if (by_day) table_->expandAll();
    ShowSortIndicator();
  } else {
    table_model_->SetEntries({}, false);
    model_->SetEntries(std::move(shown));
  }
  filter_bar_->Show(filter_);
  const WeekPeriod* week = dynamic_cast<const WeekPeriod*>(period_.get());
  period_bar_->SetCaption(ToQString(period_->GetCaption(*data_.locale)),
                          week ? ToQString(week->WeekNumberText()) : QString());
  SelectRecord(selected);
}

void MainWindow::ShowTotals(const QuickSummarySums& sums) {
  totals_ = sums.totals();
  auto number = [](double value) { return ToQString(FormatTwoDecimals(value)); };
  totals_label_->setText(
      tr("Entries: %1    Hours: %2    Billable Hours: %3    Unpaid: %4    Paid: %5    "
         "Amount: %6")
          .arg(static_cast<qulonglong>(totals_.entries))
          .arg(number(totals_.hours()), number(totals_.billable_hours),
               number(totals_.unpaid_amount), number(totals_.paid_amount),
               number(totals_.amount())));
  projects_->clear();
  const double hours = totals_.hours();
  QList<QTreeWidgetItem*> items;
  for (const ProjectHours& project : sums.Projects()) {
    auto* item = new QTreeWidgetItem;
    item->setText(0, ToQString(project.project));
    if (project.project.empty()) {  // the quick summary shows an empty name
      item->setText(0, tr("(no project)"));
      QFont font = item->font(0);
      font.setItalic(true);
      item->setFont(0, font);
    }
    item->setText(1, number(project.hours));
    item->setText(2, hours > 0
                         ? QString::number(project.hours * 100 / hours, 'f', 1) + "%"
                         : QString());
    item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
    item->setTextAlignment(2, Qt::AlignRight | Qt::AlignVCenter);
    items << item;
  }
  projects_->addTopLevelItems(items);
}

const TimeEntry* MainWindow::SelectedEntry() const {
  if (TableShown()) return table_model_->EntryAt(table_->currentIndex());
  const QModelIndex index = list_->currentIndex();
  if (!index.isValid() || index.row() >= model_->rowCount()) return nullptr;
  return &model_->EntryAt(index.row());
}

ObjectId MainWindow::SelectedRecordId() const {
  const TimeEntry* entry = SelectedEntry();
  return entry ? entry->recordId : 0;
}

void MainWindow::SelectRecord(ObjectId record_id) {
  if (record_id == 0) return;
  if (TableShown()) {
    const QModelIndex index = table_model_->IndexOf(record_id);
    if (!index.isValid()) return;
    table_->setCurrentIndex(index);
    table_->scrollTo(index);
    return;
  }
  const int row = model_->RowOf(record_id);
  if (row >= 0) list_->setCurrentIndex(model_->index(row));
}

void MainWindow::DeleteSelectedEntry() {
  const ObjectId id = SelectedRecordId();
  if (id == 0) return;
  if (prompt_->Ask(kAppTitle, LoadString(kIdsDeleteItemQuestion), MessageIcon::kWarning,
                   QuestionButtons::kYesNo, Answer::kNo) != Answer::kYes) {
    return;
  }
  TimeEntry entry = *SelectedEntry();
  DeleteEntry(*entries_, entry);
}

void MainWindow::OpenCaptionPicker() {
  QMenu menu(this);
  const QPoint where = period_bar_->caption_button()->mapToGlobal(
      period_bar_->caption_button()->rect().bottomLeft());
  if (auto* month = dynamic_cast<MonthPeriod*>(period_.get())) {
    const MonthMenu items = BuildMonthMenu(*month, *data_.locale);
    for (int m = 0; m < 12; ++m) {
      QAction* a =
          menu.addAction(ToQString(items.month_names[static_cast<std::size_t>(m)]));
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
