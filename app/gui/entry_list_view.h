// The list of a period's entries: a model holding the entries, and a delegate
// that draws each as the list-item model says (lines fitted to the width with
// "...", the status colour and icon, the button-face line under each item).
#ifndef QUILLORA_APP_GUI_ENTRY_LIST_VIEW_H_
#define QUILLORA_APP_GUI_ENTRY_LIST_VIEW_H_

#include <QAbstractListModel>
#include <QFont>
#include <QPixmap>
#include <QStyledItemDelegate>
#include <vector>

#include "periods/entry_list_item.h"
#include "platform/locale.h"
#include "store/settings.h"
#include "store/time_entry.h"

namespace quillora {

class EntryListModel : public QAbstractListModel {
  Q_OBJECT

 public:
  // Role of an item's record id.
  static constexpr int kRecordIdRole = Qt::UserRole + 1;

  EntryListModel(const Settings& settings, const Locale& locale, QObject* parent = nullptr)
      : QAbstractListModel(parent), settings_(settings), locale_(locale) {}

  void SetEntries(std::vector<TimeEntry> entries);
  const TimeEntry& EntryAt(int row) const { return entries_[static_cast<std::size_t>(row)]; }
  int RowOf(ObjectId record_id) const;
  // The item of a row as the list draws it: all its lines, or with the
  // "ListStyle" setting 1 (compact) only the date and time line and the task.
  EntryListItem ItemAt(int row) const;
  const Settings& settings() const { return settings_; }
  const Locale& locale() const { return locale_; }

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  const Settings& settings_;
  const Locale& locale_;
  std::vector<TimeEntry> entries_;
};

class EntryItemDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  explicit EntryItemDelegate(const EntryListModel* model, QObject* parent = nullptr);

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

  // The status icons: 0 not billable, 1 billable and unpaid, 2 paid.
  static QPixmap StatusIcon(int status);

 private:
  const EntryListModel* model_;
};

// The entry list's font: `base` one point smaller for "Small" (FSize 0), as
// it is for "Medium" (1), two points larger for "Large" (2), bold when the
// bold bit is set.
QFont ListFont(const QFont& base, const Settings& settings);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_ENTRY_LIST_VIEW_H_
