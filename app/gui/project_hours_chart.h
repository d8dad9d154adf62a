// A small bar chart of the hours of each project, drawn under the quick
// summary's list: one bar a project, in the summary's order, with the name on
// the left and the hours on the right.
#ifndef QUILLORA_APP_GUI_PROJECT_HOURS_CHART_H_
#define QUILLORA_APP_GUI_PROJECT_HOURS_CHART_H_

#include <QWidget>
#include <vector>

#include "periods/quick_summary.h"

namespace quillora {

class ProjectHoursChart : public QWidget {
  Q_OBJECT

 public:
  explicit ProjectHoursChart(std::vector<ProjectHours> projects, QWidget* parent = nullptr);

  const std::vector<ProjectHours>& projects() const { return projects_; }
  // The text beside a bar: "%.02fh" of the hours.
  static QString HoursText(double hours);
  // The name shown for the entries without a project.
  static QString NameText(const ProjectHours& project);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int RowHeight() const;

  std::vector<ProjectHours> projects_;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_PROJECT_HOURS_CHART_H_
