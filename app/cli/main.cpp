#include "app/cli/cli.h"

int main(int argc, char** argv) { return quillora::RunCli(argc, argv); }
