#include "app/gui/project_hours_chart.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstdio>

namespace quillora {
namespace {

// Rows shown before the chart asks for no more height.
constexpr int kRowsWanted = 6;
constexpr int kMargin = 4;

}  // namespace

ProjectHoursChart::ProjectHoursChart(std::vector<ProjectHours> projects, QWidget* parent)
    : QWidget(parent), projects_(std::move(projects)) {
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
}

QString ProjectHoursChart::HoursText(double hours) {
  char text[64];
  std::snprintf(text, sizeof text, "%.02fh", hours);
  return QString::fromLatin1(text);
}

QString ProjectHoursChart::NameText(const ProjectHours& project) {
  if (project.project.empty()) return tr("(No Project)");
  return QString::fromUtf16(project.project.data(),
                            static_cast<qsizetype>(project.project.size()));
}

int ProjectHoursChart::RowHeight() const { return fontMetrics().height() + 4; }

QSize ProjectHoursChart::sizeHint() const {
  const int rows = std::min(static_cast<int>(projects_.size()), kRowsWanted);
  return QSize(200, rows * RowHeight() + 2 * kMargin);
}

QSize ProjectHoursChart::minimumSizeHint() const {
  return QSize(100, std::min(static_cast<int>(projects_.size()), 2) * RowHeight() + 2 * kMargin);
}

void ProjectHoursChart::paintEvent(QPaintEvent*) {
  if (projects_.empty()) return;
  QPainter painter(this);
  const QRect area = rect().adjusted(kMargin, kMargin, -kMargin, -kMargin);
  const int count = static_cast<int>(projects_.size());
  // Rows share the height when there is not room for all at full height;
  // their texts are left out when a row gets too low to hold them.
  const int row = std::max(2, std::min(RowHeight(), area.height() / count));
  const bool texts = row >= fontMetrics().height();
  double most = 0;
  for (const ProjectHours& p : projects_) most = std::max(most, p.hours);

  const int name_width = texts ? area.width() * 35 / 100 : 0;
  int hours_width = 0;
  if (texts) {
    for (const ProjectHours& p : projects_) {
      hours_width = std::max(hours_width, fontMetrics().horizontalAdvance(HoursText(p.hours)));
    }
  }
  const int gap = texts ? 4 : 0;
  const int bar_left = area.left() + name_width + gap;
  const int bar_span = std::max(0, area.width() - name_width - hours_width - 2 * gap);
  const QColor bar = palette().color(QPalette::Highlight);
  const QColor track = palette().color(QPalette::AlternateBase);

  for (int i = 0; i < count && (i + 1) * row <= area.height(); ++i) {
    const ProjectHours& p = projects_[static_cast<std::size_t>(i)];
    const int top = area.top() + i * row;
    const QRect line(area.left(), top, area.width(), row);
    const int inset = row > 6 ? 2 : 0;
    const QRect track_rect(bar_left, top + inset, bar_span, row - 2 * inset);
    painter.fillRect(track_rect, track);
    const int length =
        most > 0 ? static_cast<int>(std::lround(bar_span * std::max(0.0, p.hours) / most)) : 0;
    painter.fillRect(QRect(bar_left, top + inset, length, row - 2 * inset), bar);
    if (!texts) continue;
    painter.setPen(palette().color(QPalette::WindowText));
    const QRect name_rect(line.left(), top, name_width, row);
    painter.drawText(name_rect, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(NameText(p), Qt::ElideRight, name_width));
    painter.drawText(QRect(line.right() - hours_width + 1, top, hours_width, row),
                     Qt::AlignRight | Qt::AlignVCenter, HoursText(p.hours));
  }
}

}  // namespace quillora
