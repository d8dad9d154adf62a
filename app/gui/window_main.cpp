// `quillora-window [--data-dir DIR] [FILE...]`: the window program. The
// command line `quillora` starts it when given no command; the desktop's menu
// entry starts it directly.
#include <QGuiApplication>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "app/gui/gui_main.h"
#include "platform/data_folder.h"

#ifndef QUILLORA_VERSION
#define QUILLORA_VERSION "0.1.0"
#endif

namespace {

// Qt's own options that take the next word as their value.
bool TakesQtValue(const std::string& option) {
  static const char* const kOptions[] = {"-platform",
                                         "-platformpluginpath",
                                         "-platformtheme",
                                         "-plugin",
                                         "-qwindowgeometry",
                                         "-qwindowicon",
                                         "-qwindowtitle",
                                         "-style",
                                         "-stylesheet",
                                         "-session",
                                         "-display",
                                         "-geometry",
                                         "-title"};
  for (const char* o : kOptions) {
    if (option == o || option == std::string("-") + o) return true;
  }
  return false;
}

void PrintUsage() {
  std::printf(
      "Usage: quillora-window [--data-dir DIR] [FILE...]\n"
      "\n"
      "The Quillora window on its data folder (--data-dir, else $QUILLORA_DATA_DIR,\n"
      "else $XDG_DATA_HOME/quillora, else ~/.local/share/quillora). A backup (.qrd)\n"
      "or archive (.qra) FILE is offered for restore. When the window already runs,\n"
      "it comes forward and takes the files instead. Qt's own options (-style NAME,\n"
      "-platform NAME, ...) are understood too. The commands: 'quillora --help'.\n");
}

}  // namespace

int main(int argc, char** argv) {
  std::string data_folder;
  std::vector<std::string> files;
  bool options_done = false;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (options_done || word.empty() || word[0] != '-') {
      files.push_back(word);
    } else if (word == "--") {
      options_done = true;
    } else if (word == "--data-dir") {
      if (i + 1 >= argc) {
        std::fprintf(stderr, "quillora-window: --data-dir needs a folder\n");
        return 2;
      }
      data_folder = argv[++i];
    } else if (word.rfind("--data-dir=", 0) == 0) {
      data_folder = word.substr(std::strlen("--data-dir="));
    } else if (word == "--help" || word == "-h") {
      PrintUsage();
      return 0;
    } else if (word == "--version") {
      std::printf("quillora-window %s\n", QUILLORA_VERSION);
      return 0;
    } else if (TakesQtValue(word)) {
      ++i;  // Qt reads the option and its value from argv itself.
    }
  }
  // The desktop knows the program by its menu entry, quillora.desktop.
  QGuiApplication::setDesktopFileName("quillora");
  return quillora::RunWindow(argc, argv, quillora::ResolveDataFolder(data_folder), files);
}
