// Memory exhaustion ends the program: when an allocation fails, a reserve is
// given back so that a bare "out of memory" box (no title) can be shown, then
// the program ends.
#ifndef QUILLORA_APP_GUI_OUT_OF_MEMORY_H_
#define QUILLORA_APP_GUI_OUT_OF_MEMORY_H_

namespace quillora {

inline constexpr char kOutOfMemoryText[] = "out of memory";

// Installs the new-handler; call once the QApplication exists.
void InstallOutOfMemoryHandler();

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_OUT_OF_MEMORY_H_
