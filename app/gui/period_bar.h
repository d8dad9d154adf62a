// The bar over the entry list: the period's caption (a button that opens the
// calendar, the month menu or the custom period dialog), "Previous Period",
// "Next Period", "Goto Today", and the week number when it is shown.
#ifndef QUILLORA_APP_GUI_PERIOD_BAR_H_
#define QUILLORA_APP_GUI_PERIOD_BAR_H_

#include <QLabel>
#include <QToolButton>
#include <QWidget>

namespace quillora {

class PeriodBar : public QWidget {
  Q_OBJECT

 public:
  explicit PeriodBar(QWidget* parent = nullptr);

  void SetCaption(const QString& caption, const QString& week_number);

  QToolButton* caption_button() const { return caption_; }
  QToolButton* previous_button() const { return previous_; }
  QToolButton* next_button() const { return next_; }
  QToolButton* today_button() const { return today_; }
  // The whole caption; the button shows it cut with "..." when it is narrow.
  QString caption() const { return caption_text_; }
  QString week_number() const { return week_->text(); }

 protected:
  void resizeEvent(QResizeEvent* event) override;

 signals:
  void PreviousPeriod();
  void NextPeriod();
  void GotoToday();
  void CaptionClicked();

 private:
  QToolButton* previous_;
  QToolButton* caption_;
  QToolButton* next_;
  QToolButton* today_;
  QLabel* week_;
  QString caption_text_;

  void ShowCaption();
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_PERIOD_BAR_H_
