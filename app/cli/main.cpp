#include "app/cli/cli.h"
#include "app/gui/gui_main.h"

int main(int argc, char** argv) { return quillora::RunCli(argc, argv, quillora::RunWindow); }
