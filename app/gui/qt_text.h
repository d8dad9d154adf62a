// Conversions between the logic's UTF-16 texts and Qt's strings and dates.
#ifndef QUILLORA_APP_GUI_QT_TEXT_H_
#define QUILLORA_APP_GUI_QT_TEXT_H_

#include <QDate>
#include <QString>
#include <QTime>
#include <string>
#include <string_view>

#include "platform/clock.h"

namespace quillora {

inline QString ToQString(std::u16string_view text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::u16string FromQString(const QString& text) {
  return std::u16string(reinterpret_cast<const char16_t*>(text.utf16()),
                        static_cast<std::size_t>(text.size()));
}

inline QDate ToQDate(const SystemTime& st) { return QDate(st.year, st.month, st.day); }
inline QTime ToQTime(const SystemTime& st) {
  return QTime(st.hour, st.minute, st.second);
}

inline SystemTime FromQDateTime(const QDate& d, const QTime& t) {
  return MakeSystemTime(d.year(), d.month(), d.day(), t.hour(), t.minute(), t.second());
}

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_QT_TEXT_H_
