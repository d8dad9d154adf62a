// The timesheet table: the period's entries one row each in eleven columns
// (date, start, client, project, phase, task, duration, rate, amount, status,
// note). In the week, month and custom views the rows sit under one row per
// day that shows the day's hours and amount. Texts are made when a cell is
// drawn, so only the rows on screen cost formatting.
#ifndef QUILLORA_APP_GUI_ENTRY_TABLE_MODEL_H_
#define QUILLORA_APP_GUI_ENTRY_TABLE_MODEL_H_

#include <QAbstractItemModel>
#include <QFont>
#include <QPixmap>
#include <array>
#include <vector>

#include "periods/day_groups.h"
#include "periods/quick_summary.h"
#include "platform/locale.h"
#include "store/settings.h"
#include "store/time_entry.h"
#include "store/window_layout.h"

namespace quillora {

class EntryTableModel : public QAbstractItemModel {
  Q_OBJECT

 public:
  // Role of an entry row's record id (0 on a day row).
  static constexpr int kRecordIdRole = Qt::UserRole + 1;

  EntryTableModel(const Settings& settings, const Locale& locale,
                  QObject* parent = nullptr);

  // Shows `entries` in their order; grouped, they must already be in day
  // order (OrderEntries does both) and get one row per day.
  void SetEntries(std::vector<TimeEntry> entries, bool grouped);

  // The table's font; the day rows are drawn in its bold face.
  void SetFont(const QFont& font);

  bool grouped() const { return grouped_; }
  const std::vector<DayGroup>& days() const { return days_; }
  std::size_t EntryCount() const { return entries_.size(); }
  const TimeEntry& EntryAtPosition(std::size_t i) const { return entries_[i]; }
  // The entry of an entry row; null for a day row or an invalid index.
  const TimeEntry* EntryAt(const QModelIndex& index) const;
  // The row of the entry with `record_id`; invalid when not shown.
  QModelIndex IndexOf(ObjectId record_id) const;

  // The header texts, in column order.
  static QString ColumnTitle(int column);

  QModelIndex index(int row, int column,
                    const QModelIndex& parent = QModelIndex()) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  int columnCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  // Entry rows never have children: a view that unfolds everything then
  // keeps no state per entry row.
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  // Position in entries_ of an entry row; -1 for a day row.
  std::ptrdiff_t Position(const QModelIndex& index) const;
  QVariant EntryData(const TimeEntry& entry, int column, int role) const;
  QVariant DayData(const DayGroup& day, int column, int role) const;

  const Settings& settings_;
  const Locale& locale_;
  std::vector<TimeEntry> entries_;
  std::vector<DayGroup> days_;
  bool grouped_ = false;
  std::array<QPixmap, 3> icons_;
  QFont day_font_;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_ENTRY_TABLE_MODEL_H_
