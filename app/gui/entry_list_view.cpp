#include "app/gui/entry_list_view.h"

#include <QApplication>
#include <QPainter>
#include <iterator>

#include "app/gui/qt_text.h"
#include "periods/entry_list_item.h"

namespace quillora {
namespace {

constexpr int kIconSize = 16;


}  // namespace

void EntryListModel::SetEntries(std::vector<TimeEntry> entries) {
  beginResetModel();
  entries_ = std::move(entries);
  endResetModel();
}

int EntryListModel::RowOf(ObjectId record_id) const {
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    if (entries_[i].recordId == record_id) return static_cast<int>(i);
  }
  return -1;
}

EntryListItem EntryListModel::ItemAt(int row) const {
  EntryListItem item = BuildEntryListItem(EntryAt(row), settings_, locale_);
  if (settings_.list_style == 1 && item.lines.size() > 2) item.lines.resize(2);
  return item;
}

int EntryListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

QVariant EntryListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return {};
  const TimeEntry& entry = EntryAt(index.row());
  if (role == kRecordIdRole) return QVariant::fromValue(entry.recordId);
  if (role == Qt::DisplayRole || role == Qt::AccessibleTextRole) {
    QStringList lines;
    for (const auto& line : ItemAt(index.row()).lines) {
      lines << ToQString(line);
    }
    return lines.join('\n');
  }
  return {};
}

EntryItemDelegate::EntryItemDelegate(const EntryListModel* model, QObject* parent)
    : QStyledItemDelegate(parent), model_(model) {}

QPixmap EntryItemDelegate::StatusIcon(int status) {
  static const QColor kColours[3] = {QColor(0x9e, 0x9e, 0x9e), QColor(0xe6, 0x7e, 0x22),
                                     QColor(0x27, 0xae, 0x60)};
  QPixmap pixmap(kIconSize, kIconSize);
  pixmap.fill(Qt::transparent);
  QPainter p(&pixmap);
  p.setRenderHint(QPainter::Antialiasing);
  p.setPen(Qt::NoPen);
  p.setBrush(kColours[std::clamp(status, 0, 2)]);
  p.drawEllipse(QRectF(2, 2, kIconSize - 4, kIconSize - 4));
  p.setPen(QPen(Qt::white, 1.6));
  if (status == 1) {  // billable, unpaid: a coin's line
    p.drawLine(QPointF(8, 5), QPointF(8, 11));
  } else if (status == 2) {  // paid: a tick
    p.drawPolyline(QPolygonF({QPointF(5, 8.5), QPointF(7.2, 10.5), QPointF(11, 5.5)}));
  }
  return pixmap;
}

QSize EntryItemDelegate::sizeHint(const QStyleOptionViewItem& option,
                                  const QModelIndex& index) const {
  const auto item = model_->ItemAt(index.row());
  const int text_height = option.fontMetrics.height();
  // The width is the view's: items never reach past its right edge.
  return QSize(1, static_cast<int>(item.lines.size()) * text_height + 4);
}

void EntryItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const {
  const EntryListItem item = model_->ItemAt(index.row());
  const QRect r = option.rect;
  const bool selected = option.state & QStyle::State_Selected;
  const QPalette& pal = option.palette;

  painter->save();
  painter->fillRect(r, selected ? pal.highlight() : pal.base());
  const QFontMetrics fm(option.font);
  const EntryListItemLayout layout = LayoutEntryListItem(
      ItemRect{r.left(), r.top(), r.right() + 1, r.bottom() + 1}, item.icon >= 0, kIconSize,
      fm.height(), static_cast<int>(item.lines.size()));
  if (item.icon >= 0) {
    painter->drawPixmap(layout.icon_left, layout.icon_top, StatusIcon(item.icon));
  }
  QColor text = selected ? pal.highlightedText().color() : pal.text().color();
  if (!selected && !item.colour.window_text) text = QColor::fromRgb(item.colour.rgb);
  painter->setPen(text);
  painter->setFont(option.font);
  // The longest prefix that fits, found by halving.
  const CharactersThatFit fit = [&fm](std::u16string_view s, int width) {
    int low = 0, high = static_cast<int>(s.size());
    while (low < high) {
      const int mid = (low + high + 1) / 2;
      if (fm.horizontalAdvance(ToQString(std::u16string(s.substr(0, static_cast<std::size_t>(mid))))) <=
          width) {
        low = mid;
      } else {
        high = mid - 1;
      }
    }
    return low;
  };
  for (std::size_t i = 0; i < item.lines.size() && i < layout.lines.size(); ++i) {
    const ItemRect& line = layout.lines[i];
    const QRect box(line.left, line.top, line.width(), line.bottom - line.top);
    painter->drawText(box, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      ToQString(FitToWidth(item.lines[i], line.width(), fit)));
  }
  painter->setPen(pal.button().color().darker(110));
  painter->drawLine(layout.separator_left, layout.separator_y, layout.separator_right,
                    layout.separator_y);
  if (option.state & QStyle::State_HasFocus) {
    QStyleOptionFocusRect focus;
    focus.rect = r;
    focus.palette = pal;
    QApplication::style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, painter);
  }
  painter->restore();
}

namespace {
constexpr int kFontSteps[] = {-1, 0, 2};  // "Small", "Medium", "Large"
}  // namespace

QFont ListFont(const QFont& base, const Settings& settings) {
  QFont font = base;
  if (settings.font_size < std::size(kFontSteps) && font.pointSizeF() > 0) {
    font.setPointSizeF(font.pointSizeF() + kFontSteps[settings.font_size]);
  }
  font.setBold(settings.option_bits & kOptionBoldFont);
  return font;
}

}  // namespace quillora
