#include "app/gui/gui_main.h"

#include <QApplication>
#include <QMessageBox>

#include "app/gui/backup_dialogs.h"
#include "app/gui/main_window.h"
#include "app/gui/out_of_memory.h"
#include "app/gui/single_instance.h"
#include "app/gui/window_commands.h"
#include "store/string_table.h"

namespace quillora {

int RunWindow(int argc, char** argv, const std::string& data_folder,
              const std::vector<std::string>& paths) {
  QApplication app(argc, argv);
  QApplication::setApplicationName("Quillora");
  QApplication::setApplicationDisplayName("Quillora");
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
    if (!window->Open()) window.reset();
  }
  if (!window) {
    QMessageBox::critical(nullptr, "Quillora", "Unable to load database.");
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
