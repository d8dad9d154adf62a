// The bar above the entries that says which filter is on, with a button that
// clears it. Hidden while the filter keeps every entry.
#ifndef QUILLORA_APP_GUI_FILTER_BAR_H_
#define QUILLORA_APP_GUI_FILTER_BAR_H_

#include <QLabel>
#include <QToolButton>
#include <QWidget>

#include "periods/entry_filter.h"

namespace quillora {

// "Filter: " and the criteria set, in the filter page's order, then the
// statuses when not all three are shown: "Filter: Client is Globex, unpaid
// only". Empty when the filter keeps every entry (the date range, which a
// view sets for its walk, is not named).
QString FilterDescription(const EntryFilter& filter);

class FilterBar : public QWidget {
  Q_OBJECT

 public:
  explicit FilterBar(QWidget* parent = nullptr);

  // Shows the description of `filter`, or hides the bar when it is empty.
  void Show(const EntryFilter& filter);
  QString text() const { return label_->text(); }
  QToolButton* clear_button() const { return clear_; }

 signals:
  void ClearClicked();

 private:
  QLabel* label_;
  QToolButton* clear_;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_FILTER_BAR_H_
