// The 16-by-16 icon of each rate type, drawn rather than loaded: Normal a
// green coin, Overtime a clock, Weekend a calendar page, Fixed a padlock,
// Discount a tag with a minus.
#ifndef QUILLORA_APP_GUI_RATE_ICONS_H_
#define QUILLORA_APP_GUI_RATE_ICONS_H_

#include <QIcon>
#include <cstdint>

namespace quillora {

// A null icon for a type out of range.
QIcon RateTypeIcon(std::uint16_t type);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_RATE_ICONS_H_
