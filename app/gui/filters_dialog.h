// The "Filters" page: the nine lists and three boxes of the FilterPage model.
// The lists other than "Rate Type:" also take a typed name.
#ifndef QUILLORA_APP_GUI_FILTERS_DIALOG_H_
#define QUILLORA_APP_GUI_FILTERS_DIALOG_H_

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <array>

#include "periods/entry_filter.h"
#include "store/data_context.h"

namespace quillora {

// The names the lists offer: the clients, the projects and contacts of every
// client, and the phase, currency and custom value lists. Lists whose store
// cannot be opened stay empty.
FilterChoices CatalogueFilterChoices(DataContext& data);

class FiltersDialog : public QDialog {
  Q_OBJECT

 public:
  // The dialog edits `page`, which must outlive it; accepting writes the
  // widgets' choices into the page (the caller then confirms it).
  explicit FiltersDialog(FilterPage* page, QWidget* parent = nullptr);

  QComboBox* list(FilterList which) const { return lists_[which]; }
  QCheckBox* unpaid() const { return unpaid_; }
  QCheckBox* paid() const { return paid_; }
  QCheckBox* non_billable() const { return non_billable_; }

  void accept() override;

 private:
  FilterPage* page_;
  std::array<QComboBox*, kFilterListCount> lists_{};
  QCheckBox* unpaid_ = nullptr;
  QCheckBox* paid_ = nullptr;
  QCheckBox* non_billable_ = nullptr;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_FILTERS_DIALOG_H_
