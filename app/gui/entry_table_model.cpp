#include "app/gui/entry_table_model.h"

#include <QBrush>
#include <QColor>
#include <QFont>
#include <QGuiApplication>
#include <QPalette>

#include "app/gui/entry_list_view.h"
#include "app/gui/qt_text.h"
#include "periods/entry_list_item.h"
#include "store/note_text.h"
#include "store/string_table.h"
#include "timekeeping/duration.h"

namespace quillora {
namespace {

// internalId of a top-level row; a row under day d has d + 1.
constexpr quintptr kTopLevel = 0;

QString StatusText(EntryDisplayStatus status) {
  switch (status) {
    case kStatusBillableUnpaid:
      return ToQString(LoadString(kIdsSummaryBillable));
    case kStatusBillablePaid:
      return ToQString(LoadString(kIdsSummaryPaid));
    default:
      return ToQString(LoadString(kIdsSummaryNonBillable));
  }
}

QString FirstLine(const TimeEntry& entry) {
  if (entry.note.empty()) return {};
  const std::u16string text = NoteBlobToText(entry.note.data(), entry.note.size());
  const std::size_t end = text.find_first_of(u"\r\n");
  return ToQString(std::u16string_view(text).substr(0, end));
}

bool RightAligned(int column) {
  return column == kColumnDuration || column == kColumnRate || column == kColumnAmount;
}

}  // namespace

EntryTableModel::EntryTableModel(const Settings& settings, const Locale& locale,
                                 QObject* parent)
    : QAbstractItemModel(parent), settings_(settings), locale_(locale) {
  for (int s = 0; s < 3; ++s)
    icons_[static_cast<std::size_t>(s)] = EntryItemDelegate::StatusIcon(s);
}

void EntryTableModel::SetEntries(std::vector<TimeEntry> entries, bool grouped) {
  beginResetModel();
  entries_ = std::move(entries);
  grouped_ = grouped;
  days_ = grouped ? GroupByDay(entries_, settings_) : std::vector<DayGroup>();
  endResetModel();
}

void EntryTableModel::SetFont(const QFont& font) {
  day_font_ = font;
  day_font_.setBold(true);
}

QString EntryTableModel::ColumnTitle(int column) {
  static const char* const kTitles[kTableColumns] = {
      QT_TR_NOOP("Date"),     QT_TR_NOOP("Start"), QT_TR_NOOP("Client"),
      QT_TR_NOOP("Project"),  QT_TR_NOOP("Phase"), QT_TR_NOOP("Task"),
      QT_TR_NOOP("Duration"), QT_TR_NOOP("Rate"),  QT_TR_NOOP("Amount"),
      QT_TR_NOOP("Status"),   QT_TR_NOOP("Note")};
  return column >= 0 && column < kTableColumns ? tr(kTitles[column]) : QString();
}

std::ptrdiff_t EntryTableModel::Position(const QModelIndex& index) const {
  if (!index.isValid()) return -1;
  if (!grouped_) return index.row();
  if (index.internalId() == kTopLevel) return -1;
  const DayGroup& day = days_[index.internalId() - 1];
  return static_cast<std::ptrdiff_t>(day.first) + index.row();
}

const TimeEntry* EntryTableModel::EntryAt(const QModelIndex& index) const {
  const std::ptrdiff_t at = Position(index);
  return at < 0 ? nullptr : &entries_[static_cast<std::size_t>(at)];
}

QModelIndex EntryTableModel::IndexOf(ObjectId record_id) const {
  if (record_id == 0) return {};
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    if (entries_[i].recordId != record_id) continue;
    if (!grouped_) return createIndex(static_cast<int>(i), 0, kTopLevel);
    for (std::size_t d = 0; d < days_.size(); ++d) {
      if (i >= days_[d].first && i < days_[d].first + days_[d].count) {
        return createIndex(static_cast<int>(i - days_[d].first), 0, d + 1);
      }
    }
  }
  return {};
}

QModelIndex EntryTableModel::index(int row, int column, const QModelIndex& parent) const {
  if (row < 0 || column < 0 || column >= kTableColumns) return {};
  if (!parent.isValid()) {
    const std::size_t rows = grouped_ ? days_.size() : entries_.size();
    return static_cast<std::size_t>(row) < rows ? createIndex(row, column, kTopLevel)
                                                : QModelIndex();
  }
  if (!grouped_ || parent.internalId() != kTopLevel) return {};
  const auto day = static_cast<std::size_t>(parent.row());
  if (static_cast<std::size_t>(row) >= days_[day].count) return {};
  return createIndex(row, column, day + 1);
}

QModelIndex EntryTableModel::parent(const QModelIndex& index) const {
  if (!index.isValid() || !grouped_ || index.internalId() == kTopLevel) return {};
  return createIndex(static_cast<int>(index.internalId() - 1), 0, kTopLevel);
}

int EntryTableModel::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid())
    return static_cast<int>(grouped_ ? days_.size() : entries_.size());
  if (!grouped_ || parent.internalId() != kTopLevel || parent.column() != 0) return 0;
  return static_cast<int>(days_[static_cast<std::size_t>(parent.row())].count);
}

int EntryTableModel::columnCount(const QModelIndex&) const { return kTableColumns; }

Qt::ItemFlags EntryTableModel::flags(const QModelIndex& index) const {
  Qt::ItemFlags flags = QAbstractItemModel::flags(index);
  if (Position(index) >= 0) flags |= Qt::ItemNeverHasChildren;
  return flags;
}

QVariant EntryTableModel::headerData(int section, Qt::Orientation orientation,
                                     int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::DisplayRole) return ColumnTitle(section);
  if (role == Qt::TextAlignmentRole) {
    return QVariant::fromValue(RightAligned(section) ? Qt::AlignRight | Qt::AlignVCenter
                                                     : Qt::AlignLeft | Qt::AlignVCenter);
  }
  return {};
}

QVariant EntryTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  if (role == Qt::TextAlignmentRole) {
    return QVariant::fromValue(RightAligned(index.column())
                                   ? Qt::AlignRight | Qt::AlignVCenter
                                   : Qt::AlignLeft | Qt::AlignVCenter);
  }
  if (const TimeEntry* entry = EntryAt(index))
    return EntryData(*entry, index.column(), role);
  return DayData(days_[static_cast<std::size_t>(index.row())], index.column(), role);
}

QVariant EntryTableModel::EntryData(const TimeEntry& entry, int column, int role) const {
  if (role == kRecordIdRole) return QVariant::fromValue(entry.recordId);
  const EntryDisplayStatus status = DisplayStatus(entry);
  if (role == Qt::ForegroundRole) {
    const ItemColour colour = StatusColour(settings_.display, status);
    if (colour.window_text) return {};
    return QBrush(QColor::fromRgb(colour.rgb));
  }
  if (role == Qt::DecorationRole) {
    if (column != kColumnStatus ||
        !(settings_.display.display_flags & kDisplayStatusIcon))
      return {};
    return icons_[static_cast<std::size_t>(status)];
  }
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
  if (role == Qt::ToolTipRole && column != kColumnNote && column != kColumnTask)
    return {};
  SystemTime start;
  switch (column) {
    case kColumnDate:
      if (!FileTimeToSystemTime(entry.start, &start)) return {};
      return ToQString(locale_.FormatShortDate(start));
    case kColumnStart:
      if (!HasStartTime(entry) || !FileTimeToSystemTime(entry.start, &start)) return {};
      return ToQString(locale_.FormatTime(start, kTimeNoSeconds));
    case kColumnClient:
      return ToQString(entry.client);
    case kColumnProject:
      return ToQString(entry.project);
    case kColumnPhase:
      return ToQString(entry.phase);
    case kColumnTask:
      return ToQString(entry.task);
    case kColumnDuration:
      return ToQString(FormatHundredths(entry.duration));
    case kColumnRate:
      return ToQString(FormatHundredths(entry.rate));
    case kColumnAmount:
      // Only billable entries carry an amount, as in the totals.
      if (!entry.billable) return {};
      return ToQString(FormatTwoDecimals(EntryAmount(entry, settings_)));
    case kColumnStatus:
      return StatusText(status);
    case kColumnNote:
      if (role == Qt::ToolTipRole) {
        return ToQString(NoteBlobToText(entry.note.data(), entry.note.size()));
      }
      return FirstLine(entry);
    default:
      return {};
  }
}

QVariant EntryTableModel::DayData(const DayGroup& day, int column, int role) const {
  if (role == Qt::FontRole) return day_font_;
  if (role == Qt::BackgroundRole) return QGuiApplication::palette().alternateBase();
  if (role != Qt::DisplayRole) return {};
  switch (column) {
    case kColumnDate:
      return ToQString(locale_.AbbreviatedDayName(day.day.day_of_week) + u" " +
                       locale_.FormatShortDate(day.day));
    case kColumnDuration:
      return ToQString(FormatTwoDecimals(day.totals.hours()));
    case kColumnAmount:
      return ToQString(FormatTwoDecimals(day.totals.amount()));
    default:
      return {};
  }
}

}  // namespace quillora
