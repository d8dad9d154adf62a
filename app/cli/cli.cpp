#include "app/cli/cli.h"

#include <cstdio>

namespace quillora {

int RunCli(int argc, char** argv) {
  (void)argc;
  (void)argv;
  std::puts("quillora");
  return 0;
}

}  // namespace quillora
