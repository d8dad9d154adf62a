// The "Copy entry to:" dialog over the CopyEntryDialog model; OK copies.
#ifndef QUILLORA_APP_GUI_COPY_ENTRY_DIALOG_H_
#define QUILLORA_APP_GUI_COPY_ENTRY_DIALOG_H_

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDialog>
#include <QRadioButton>

#include "platform/locale.h"
#include "timekeeping/copy_entry.h"

namespace quillora {

class CopyEntryDialogWidget : public QDialog {
  Q_OBJECT

 public:
  CopyEntryDialogWidget(EntryStore& entries, const TimeEntry& source,
                        const Settings& settings, int code_page, UserPrompt& prompt,
                        QWidget* parent = nullptr);

  CopyEntryDialog& model() { return model_; }
  QRadioButton* rest_of_week() const { return rest_; }
  QDateEdit* end_date() const { return end_; }
  QCheckBox* include_weekend() const { return weekend_; }
  QComboBox* duration_box() const { return duration_; }

 public slots:
  void accept() override;

 private:
  EntryStore& entries_;
  TimeEntry source_;
  const Settings& settings_;
  int code_page_;
  UserPrompt& prompt_;
  CopyEntryDialog model_;
  QRadioButton* rest_ = nullptr;
  QRadioButton* specific_ = nullptr;
  QDateEdit* end_ = nullptr;
  QCheckBox* weekend_ = nullptr;
  QComboBox* duration_ = nullptr;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_COPY_ENTRY_DIALOG_H_
