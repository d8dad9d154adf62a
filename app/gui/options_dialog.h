// The options pages: "General", "Defaults" (the new-entry defaults),
// "Display Elements", "Custom Fields" and "Export", one tab each. The dialog
// shows a copy of the settings and answers the edited copy; the caller writes
// it back whole.
#ifndef QUILLORA_APP_GUI_OPTIONS_DIALOG_H_
#define QUILLORA_APP_GUI_OPTIONS_DIALOG_H_

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QTabWidget>
#include <array>
#include <string>
#include <vector>

#include "store/settings.h"

namespace quillora {

class OptionsDialog : public QDialog {
  Q_OBJECT

 public:
  // `currencies`: the names the "Currency:" list offers beside the one set.
  OptionsDialog(const Settings& settings, const std::vector<std::u16string>& currencies,
                QWidget* parent = nullptr);

  // The settings given, with every field that the pages own as they now show
  // it. A list showing no item (a stored index the list does not hold) keeps
  // the stored value; the minutes of the granularity are taken only while
  // its box is checked.
  Settings Result() const;

  QTabWidget* pages() const { return pages_; }

  // The colour of a palette index as the lists draw it: index 0 is the
  // window's text colour.
  static QColor ItemColour(int index, const QPalette& palette);

 private:
  QWidget* BuildGeneralPage();
  QWidget* BuildDefaultsPage(const std::vector<std::u16string>& currencies);
  QWidget* BuildDisplayPage();
  QWidget* BuildCustomFieldsPage();
  QWidget* BuildExportPage();
  QComboBox* ColourList(const QString& name);

  Settings settings_;
  QTabWidget* pages_ = nullptr;
  // General.
  QComboBox* week_start_ = nullptr;
  QComboBox* duration_interval_ = nullptr;
  QComboBox* item_tap_ = nullptr;
  QCheckBox* precise_ = nullptr;
  QCheckBox* week_number_ = nullptr;
  QCheckBox* tray_on_close_ = nullptr;
  // Defaults.
  QCheckBox* billable_ = nullptr;
  QComboBox* currency_ = nullptr;
  QCheckBox* granularity_on_ = nullptr;
  QComboBox* granularity_ = nullptr;
  // Display Elements.
  QComboBox* entry_time_ = nullptr;
  QCheckBox* client_name_ = nullptr;
  QCheckBox* status_icon_ = nullptr;
  std::array<QComboBox*, 3> colours_{};  // non-billable, billable, paid
  QComboBox* font_size_ = nullptr;
  QCheckBox* bold_ = nullptr;
  // Custom Fields.
  std::array<QLineEdit*, 3> custom_labels_{};
  // Export.
  QComboBox* break_sub_ = nullptr;
  QComboBox* encoding_ = nullptr;
  QComboBox* hour_symbol_ = nullptr;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_OPTIONS_DIALOG_H_
