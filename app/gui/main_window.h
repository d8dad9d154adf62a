// The main frame: menus and toolbar reaching every command, the period bar,
// the filter bar, the period's entries that pass the filter (the timesheet
// table, or the handheld's item list) and their totals below. It binds
// widgets to the logic and holds no rules of its own. It creates the actions of its
// commands; window_commands.cpp connects them to what they do.
#ifndef QUILLORA_APP_GUI_MAIN_WINDOW_H_
#define QUILLORA_APP_GUI_MAIN_WINDOW_H_

#include <QAction>
#include <QActionGroup>
#include <QLabel>
#include <QListView>
#include <QMainWindow>
#include <QShortcut>
#include <QSplitter>
#include <QStackedWidget>
#include <QTimer>
#include <QTreeView>
#include <QTreeWidget>
#include <memory>
#include <string>

#include "app/gui/entry_list_view.h"
#include "app/gui/entry_table_model.h"
#include "app/gui/filter_bar.h"
#include "app/gui/gui_prompt.h"
#include "app/gui/period_bar.h"
#include "periods/entry_filter.h"
#include "periods/periods.h"
#include "periods/quick_summary.h"
#include "platform/clock.h"
#include "store/data_context.h"
#include "store/record_store.h"
#include "store/window_layout.h"

namespace quillora {

// One action per command of the window, created with the menus.
struct WindowActions {
  // File
  QAction* export_csv = nullptr;
  QAction* export_xml = nullptr;
  QAction* report = nullptr;
  QAction* import = nullptr;
  QAction* import_entries = nullptr;  // File > Import Entries
  QAction* export_list = nullptr;
  QAction* backup = nullptr;
  QAction* restore = nullptr;
  QAction* archive = nullptr;
  QAction* archive_restore = nullptr;
  QAction* exit = nullptr;
  // Edit
  QAction* new_entry = nullptr;
  QAction* edit_entry = nullptr;
  QAction* delete_entry = nullptr;
  QAction* copy_entry = nullptr;
  QAction* find_replace = nullptr;
  QAction* mark_paid = nullptr;
  QAction* delete_data = nullptr;
  // View
  QAction* view_day = nullptr;
  QAction* view_week = nullptr;
  QAction* view_month = nullptr;
  QAction* view_custom = nullptr;
  QAction* previous_period = nullptr;
  QAction* next_period = nullptr;
  QAction* today = nullptr;
  QAction* table_view = nullptr;    // the timesheet table ("ListStyle" 0)
  QAction* item_list = nullptr;     // the handheld's items ("ListStyle" 2)
  QAction* compact_list = nullptr;  // compact items ("ListStyle" 1)
  QAction* summary = nullptr;
  QAction* filters = nullptr;
  QAction* clear_filter = nullptr;
  // Tools
  QAction* timers = nullptr;
  QAction* clients = nullptr;
  QAction* rates = nullptr;
  QAction* reports = nullptr;
  QAction* options = nullptr;
  // Help
  QAction* help = nullptr;
  QAction* shortcuts = nullptr;
};

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  MainWindow(DataContext& data, const Clock& clock, QWidget* parent = nullptr);
  ~MainWindow() override;

  // Opens the entry store with change notifications, the catalogue and the
  // saved filter, and shows the current period. False when the entry store
  // cannot be opened.
  bool Open();

  // Places the window as it stood when it was last closed, or, on the first
  // start, over `work_area` (the screen less its panels); then the totals
  // pane and the table's columns as they were left.
  void RestoreLayout(const QRect& work_area);
  // Writes the place, size, maximised state, pane and columns.
  void SaveLayout();

  // Reads the period's entries again.
  void Reload();
  // Looks for changes another process committed to the entries or to the
  // saved filter; reloads when there are.
  void PollExternalChanges();

  // What the dialogs work with.
  DataContext& data() { return data_; }
  EntryStore& entries() { return *entries_; }
  EntryFilter& filter() { return filter_; }
  const Clock& clock() const { return clock_; }
  // The selected entry of the view shown; null when none.
  const TimeEntry* SelectedEntry() const;
  // The record id of the selected entry, 0 when none.
  ObjectId SelectedRecordId() const;
  // Selects the entry with `record_id` when it is shown.
  void SelectRecord(ObjectId record_id);

  const Period& period() const { return *period_; }
  Period& period() { return *period_; }
  PeriodBar* period_bar() const { return period_bar_; }
  QListView* entry_list() const { return list_; }
  EntryListModel* entry_model() const { return model_; }
  QTreeView* table() const { return table_; }
  EntryTableModel* table_model() const { return table_model_; }
  FilterBar* filter_bar() const { return filter_bar_; }
  QLabel* totals_label() const { return totals_label_; }
  QSplitter* splitter() const { return splitter_; }
  // The totals of the entries shown, as the quick summary computes them.
  const EntryTotals& totals() const { return totals_; }
  UserPrompt& prompt() { return *prompt_; }
  // Tests answer the window's questions with a scripted prompt.
  void SetPrompt(UserPrompt* prompt) { prompt_ = prompt ? prompt : &gui_prompt_; }
  const WindowActions& actions() const { return actions_; }

  // Sets the views' font from the settings ("FSize" and the bold option).
  void ApplyListFont();
  // "ListStyle": 0 the table, 1 the compact item list, 2 the item list;
  // saved, and the period shown again.
  void SetListStyle(std::uint32_t style);
  // A click on a column's header: sorts by it, the second click on the same
  // column the other way round; "Sort" keeps the choice.
  void SortByColumn(int column);
  // Resets the filter to keep every entry and saves it.
  void ClearFilter();
  // Shows the period of `kind` around the current one, and saves the choice.
  void SwitchKind(PeriodKind kind);
  // Asks, then deletes the selected entry.
  void DeleteSelectedEntry();
  void PreviousPeriod();
  void NextPeriod();
  void GotoToday();

 signals:
  // A double click on an entry.
  void EntryActivated();
  // A single click on an entry.
  void EntryClicked();
  // Another process (`quillora settings set ...`) saved settings that differ
  // from this window's.
  void SettingsChangedElsewhere(const Settings& settings);

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void BuildMenus();
  void BuildTable();
  void ShowTableMenu(const QPoint& at);
  void ApplyColumns();
  void ScheduleLayoutSave();
  void ShowTotals(const QuickSummarySums& sums);
  void ShowSortIndicator();
  bool TableShown() const;
  bool IsLastShownColumn(int column) const;
  void ShowPeriod(std::unique_ptr<Period> period);
  void OpenCaptionPicker();
  void ScheduleReload();

  DataContext& data_;
  const Clock& clock_;
  GuiPrompt gui_prompt_;
  UserPrompt* prompt_ = &gui_prompt_;
  std::unique_ptr<EntryStore> entries_;
  EntryFilter filter_;
  std::unique_ptr<Period> period_;
  PeriodBar* period_bar_ = nullptr;
  QListView* list_ = nullptr;
  EntryListModel* model_ = nullptr;
  QTreeView* table_ = nullptr;
  EntryTableModel* table_model_ = nullptr;
  QStackedWidget* views_ = nullptr;
  FilterBar* filter_bar_ = nullptr;
  QSplitter* splitter_ = nullptr;
  QLabel* totals_label_ = nullptr;
  QTreeWidget* projects_ = nullptr;
  QShortcut* left_ = nullptr;
  QShortcut* right_ = nullptr;
  EntryTotals totals_;
  WindowLayout layout_;
  bool applying_columns_ = false;
  QTimer layout_save_;
  WindowActions actions_;
  QActionGroup* view_group_ = nullptr;
  QTimer external_poll_;
  std::uint64_t external_counter_ = 0;
  Settings stored_settings_;  // as the registry held them at the last look
  bool reload_pending_ = false;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_MAIN_WINDOW_H_
