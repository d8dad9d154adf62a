// The criteria dialog of archiving and of deleting data: a "Type:" choice
// between the entries of a date range ("Start:", "End:") and the data of
// chosen clients ("Client(s):"), and, for archiving, "Delete when archived".
#ifndef QUILLORA_APP_GUI_CRITERIA_DIALOG_H_
#define QUILLORA_APP_GUI_CRITERIA_DIALOG_H_

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDialog>
#include <QListWidget>
#include <vector>

#include "periods/periods.h"
#include "platform/user_prompt.h"
#include "store/client_store.h"

namespace quillora {

class CriteriaDialog : public QDialog {
  Q_OBJECT

 public:
  enum class Purpose { kArchive, kDeleteData };

  // `clients` in name order; the dates start from `initial`. Refusals go
  // through `prompt`.
  CriteriaDialog(Purpose purpose, const PeriodRange& initial, std::vector<Client> clients,
                 UserPrompt& prompt, QWidget* parent = nullptr);

  // Index 0: the date range; 1: the clients.
  int type_index() const { return type_->currentIndex(); }
  bool by_clients() const { return type_->currentIndex() == 1; }
  PeriodRange Range() const;
  // The checked clients, in list order.
  std::vector<Client> CheckedClients() const;
  bool delete_when_archived() const { return delete_ && delete_->isChecked(); }

  QComboBox* type_box() const { return type_; }
  QDateEdit* start_edit() const { return start_; }
  QDateEdit* end_edit() const { return end_; }
  QListWidget* client_list() const { return client_list_; }
  QCheckBox* delete_box() const { return delete_; }

  // Refuses a choice of clients with none checked, and a range whose end is
  // before its start.
  void accept() override;

 private:
  void UpdateEnabled();

  UserPrompt& prompt_;
  std::vector<Client> clients_;
  QComboBox* type_;
  QDateEdit* start_;
  QDateEdit* end_;
  QListWidget* client_list_;
  QCheckBox* delete_ = nullptr;
};

// The refusals of the dialog.
inline constexpr char16_t kNoClientChecked[] = u"Please check at least one client.";
inline constexpr char16_t kRangeReversed[] =
    u"The end date must not be earlier than the start date.";

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_CRITERIA_DIALOG_H_
