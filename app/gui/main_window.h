// The main frame: menus and toolbar reaching every command, the period bar,
// and the list of the period's entries that pass the filter. It binds widgets
// to the logic and holds no rules of its own.
#ifndef QUILLORA_APP_GUI_MAIN_WINDOW_H_
#define QUILLORA_APP_GUI_MAIN_WINDOW_H_

#include <QAction>
#include <QActionGroup>
#include <QListView>
#include <QMainWindow>
#include <QTimer>
#include <memory>
#include <string>

#include "app/gui/entry_list_view.h"
#include "app/gui/gui_prompt.h"
#include "app/gui/period_bar.h"
#include "periods/entry_filter.h"
#include "periods/periods.h"
#include "platform/clock.h"
#include "store/data_context.h"
#include "store/record_store.h"

namespace quillora {

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  MainWindow(DataContext& data, const Clock& clock, QWidget* parent = nullptr);
  ~MainWindow() override;

  // Opens the entry store with change notifications, the catalogue and the
  // saved filter, and shows the current period. False when the entry store
  // cannot be opened.
  bool Open();

  // A command line handed over by a later start.
  void HandleCommandLine(const QStringList& arguments);

  // Reads the period's entries again.
  void Reload();
  // Looks for changes another process committed; reloads when there are.
  void PollExternalChanges();

  // What the dialogs work with. Each family of commands connects its menu
  // actions (found by name with action()) in a file of its own, through an
  // Install...Commands(MainWindow*) function called from the constructor.
  DataContext& data() { return data_; }
  EntryStore& entries() { return *entries_; }
  EntryFilter& filter() { return filter_; }
  const Clock& clock() const { return clock_; }
  // The record id of the selected entry, 0 when none.
  ObjectId SelectedRecordId() const;

  const Period& period() const { return *period_; }
  Period& period() { return *period_; }
  PeriodBar* period_bar() const { return period_bar_; }
  QListView* entry_list() const { return list_; }
  EntryListModel* entry_model() const { return model_; }
  UserPrompt& prompt() { return *prompt_; }
  // Tests answer the window's questions with a scripted prompt.
  void SetPrompt(UserPrompt* prompt) { prompt_ = prompt ? prompt : &gui_prompt_; }
  QAction* action(const QString& name) const;

 private:
  void BuildMenus();
  void ShowPeriod(std::unique_ptr<Period> period);
  void SwitchKind(PeriodKind kind);
  void OpenCaptionPicker();
  void DeleteSelectedEntry();
  void ScheduleReload();
  QAction* AddAction(QMenu* menu, const QString& name, const QString& text,
                     bool enabled = true);

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
  QActionGroup* view_group_ = nullptr;
  QTimer external_poll_;
  std::uint64_t external_counter_ = 0;
  bool reload_pending_ = false;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_MAIN_WINDOW_H_
