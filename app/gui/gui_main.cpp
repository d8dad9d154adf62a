#include "app/gui/gui_main.h"

#include <QApplication>
#include <QMessageBox>
#include <QScreen>

#include "app/gui/backup_dialogs.h"
#include "app/gui/desktop_palette.h"
#include "app/gui/dialog_fitter.h"
#include "app/gui/main_window.h"
#include "app/gui/out_of_memory.h"
#include "app/gui/qt_text.h"
#include "app/gui/painted_icon.h"
#include "app/gui/single_instance.h"
#include "app/gui/window_commands.h"
#include "store/string_table.h"

namespace quillora {

int RunWindow(int argc, char** argv, const std::string& data_folder,
              const std::vector<std::string>& paths) {
  QApplication app(argc, argv);
  QApplication::setApplicationName("Quillora");
  // No display name: Qt would append " — Quillora" to every title on X11 and
  // Wayland, so the window's "Quillora - Timer 2 01:12:40" would say it twice.
  // The desktop finds the installed quillora.desktop (and its icon) by this.
  QGuiApplication::setDesktopFileName("quillora");
  QApplication::setWindowIcon(AppIcon());
  ApplyDesktopPalette();
  InstallDialogFitter();
  InstallOutOfMemoryHandler();
  QStringList arguments;
  for (const std::string& p : paths) arguments << QString::fromStdString(p);

  SingleInstance instance;
  if (instance.HandOver(arguments)) return 0;
  instance.Listen();

  DataContext data;
  std::string error;
  SystemClock clock;
  std::unique_ptr<MainWindow> window;
  if (OpenDataContext(data_folder, &data, &error)) {
    window = std::make_unique<MainWindow>(data, clock);
    WireWindowCommands(window.get());
    // The work area: the screen less the desktop's panels and menu bar.
    const QScreen* screen = QGuiApplication::primaryScreen();
    window->RestoreLayout(screen ? screen->availableGeometry() : QRect(0, 0, 1024, 768));
    if (!window->Open()) window.reset();
  }
  if (!window) {
    QMessageBox::critical(nullptr, ToQString(kAppTitle),
                          ToQString(LoadString(kIdsUnableToLoadDatabase)));
    return 1;
  }
  QObject::connect(&instance, &SingleInstance::CommandLineReceived, window.get(),
                   [&window](const QStringList& handed) {
                     window->showNormal();
                     window->raise();
                     window->activateWindow();
                     OpenHandedFiles(window.get(), handed);
                   });
  window->show();
  OpenHandedFiles(window.get(), arguments);
  return QApplication::exec();
}

}  // namespace quillora
