// Wide text of the logic to and from Qt's strings (both UTF-16).
#ifndef QUILLORA_APP_GUI_QT_TEXT_H_
#define QUILLORA_APP_GUI_QT_TEXT_H_

#include <QString>
#include <string>

namespace quillora {

inline QString ToQString(const std::u16string& text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::u16string ToU16(const QString& text) {
  return std::u16string(reinterpret_cast<const char16_t*>(text.utf16()),
                        static_cast<std::size_t>(text.size()));
}

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_QT_TEXT_H_
