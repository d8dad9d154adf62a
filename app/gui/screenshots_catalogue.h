// Pictures of the catalogue's dialogs for `make screenshots`.
#ifndef QUILLORA_APP_GUI_SCREENSHOTS_CATALOGUE_H_
#define QUILLORA_APP_GUI_SCREENSHOTS_CATALOGUE_H_

#include <QString>

#include "store/data_context.h"

namespace quillora {

// Fills the open catalogue of `data` with sample clients and rates and writes
// the clients, import, contacts, move, rate setup and rate edit dialogs into
// `out` at a handheld's size and a desktop's.
void ShootCatalogueDialogs(DataContext& data, const QString& out);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_SCREENSHOTS_CATALOGUE_H_
