#include "app/gui/out_of_memory.h"

#include <QMessageBox>
#include <cstdlib>
#include <new>

namespace quillora {
namespace {

// Room for the message box itself, handed back when an allocation fails.
void* g_reserve = nullptr;
constexpr std::size_t kReserveBytes = 1 << 20;

void OnOutOfMemory() {
  std::free(g_reserve);
  g_reserve = nullptr;
  std::set_new_handler(nullptr);  // a second failure inside the box ends at once
  QMessageBox box(QMessageBox::NoIcon, QString(), QString::fromLatin1(kOutOfMemoryText),
                  QMessageBox::Ok);
  box.exec();
  std::_Exit(EXIT_FAILURE);
}

}  // namespace

void InstallOutOfMemoryHandler() {
  if (g_reserve == nullptr) g_reserve = std::malloc(kReserveBytes);
  std::set_new_handler(OnOutOfMemory);
}

}  // namespace quillora
