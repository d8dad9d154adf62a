#include "app/gui/dialog_fitter.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QFontMetrics>
#include <QScreen>
#include <QTabBar>
#include <algorithm>

namespace quillora {

int TitleBarWidth(const QWidget* window) {
  QFont font = QApplication::font();
  font.setBold(true);
  const QFontMetrics metrics(font);
  // A caption button is about twice the text's height on the common desktops;
  // the icon and three buttons (minimise, maximise, close) take four.
  const int button = 2 * metrics.height();
  return metrics.horizontalAdvance(window->windowTitle()) + 4 * button;
}

QSize NeededSize(const QWidget* dialog) {
  QSize need = dialog->sizeHint().expandedTo(dialog->minimumSizeHint());
  int width = std::max(need.width(), TitleBarWidth(dialog));
  // A tab bar that would need scroll arrows widens the dialog by what it
  // lacks.
  for (const QTabBar* bar : dialog->findChildren<QTabBar*>()) {
    if (!bar->isVisibleTo(dialog)) continue;
    const int lacking = bar->sizeHint().width() - bar->width();
    if (lacking > 0) width = std::max(width, dialog->width() + lacking);
  }
  need.setWidth(width);
  return need;
}

void FitToScreen(QWidget* dialog, const QSize& available) {
  const QSize fitted = dialog->size().expandedTo(NeededSize(dialog)).boundedTo(available);
  if (fitted.width() > dialog->width() || fitted.height() > dialog->height()) {
    dialog->resize(fitted.expandedTo(dialog->size()));
  }
}

bool DialogFitter::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Show) {
    auto* dialog = qobject_cast<QDialog*>(watched);
    if (dialog != nullptr && dialog->isWindow() &&
        !dialog->property("quilloraFitted").toBool()) {
      dialog->setProperty("quilloraFitted", true);
      if (const QScreen* screen = dialog->screen()) {
        FitToScreen(dialog, screen->availableGeometry().size());
      }
    }
  }
  return QObject::eventFilter(watched, event);
}

void InstallDialogFitter() {
  static DialogFitter* fitter = nullptr;
  if (fitter != nullptr || qApp == nullptr) return;
  fitter = new DialogFitter(qApp);
  qApp->installEventFilter(fitter);
}

}  // namespace quillora
