#include "app/gui/shortcuts_dialog.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QTableWidget>
#include <QVBoxLayout>

namespace quillora {

QStringList ShortcutLines(const QList<QAction*>& actions) {
  QStringList lines;
  for (QAction* action : actions) {
    if (action->shortcuts().isEmpty()) continue;
    QString name = action->text();
    name.remove('&');
    if (name.endsWith("...")) name.chop(3);
    QStringList keys;
    for (const QKeySequence& key : action->shortcuts()) {
      keys << key.toString(QKeySequence::NativeText);
    }
    lines << name + '\t' + keys.join(", ");
  }
  return lines;
}

ShortcutsDialog::ShortcutsDialog(const QList<QAction*>& actions, QWidget* parent)
    : QDialog(parent) {
  setWindowTitle(tr("Keyboard Shortcuts"));
  auto* layout = new QVBoxLayout(this);
  const QStringList lines = ShortcutLines(actions);
  auto* table = new QTableWidget(static_cast<int>(lines.size()), 2, this);
  table->setHorizontalHeaderLabels({tr("Command"), tr("Keys")});
  table->verticalHeader()->hide();
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->setSelectionMode(QAbstractItemView::NoSelection);
  for (int row = 0; row < lines.size(); ++row) {
    const QStringList cells = lines[row].split('\t');
    table->setItem(row, 0, new QTableWidgetItem(cells.value(0)));
    table->setItem(row, 1, new QTableWidgetItem(cells.value(1)));
  }
  table->resizeColumnsToContents();
  table->horizontalHeader()->setStretchLastSection(true);
  layout->addWidget(table);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);
  resize(table->horizontalHeader()->length() + 80,
         std::min(640, table->verticalHeader()->length() + 120));
}

}  // namespace quillora
