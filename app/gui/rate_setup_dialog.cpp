#include "app/gui/rate_setup_dialog.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QVBoxLayout>

#include "app/gui/qt_text.h"
#include "app/gui/rate_edit_dialog.h"
#include "app/gui/rate_icons.h"

namespace quillora {
namespace {

constexpr int kClientRole = Qt::UserRole;
constexpr int kRecordRole = Qt::UserRole + 1;

}  // namespace

RateSetupDialog::RateSetupDialog(DataContext& data, UserPrompt& prompt, QWidget* parent)
    : QDialog(parent),
      rates_(data.catalogue->rates),
      catalogue_(*data.catalogue, *data.locale, prompt),
      tree_(new QTreeWidget(this)) {
  setWindowTitle(tr("Rate Setup"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 6, 6, 6);
  tree_->setObjectName("rates");
  tree_->setHeaderHidden(true);
  tree_->setSelectionMode(QAbstractItemView::SingleSelection);
  tree_->setIconSize(QSize(16, 16));
  layout->addWidget(tree_, 1);

  auto* commands = new QGridLayout();
  commands->setSpacing(4);
  auto button = [&](const char* name, const QString& text, int column,
                    void (RateSetupDialog::*slot)()) {
    auto* b = new QPushButton(text, this);
    b->setObjectName(name);
    b->setAutoDefault(false);
    b->setMinimumWidth(0);
    b->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    connect(b, &QPushButton::clicked, this, slot);
    commands->addWidget(b, 0, column);
    return b;
  };
  new_ = button("new", tr("New..."), 0, &RateSetupDialog::NewRate);
  edit_ = button("edit", tr("Edit..."), 1, &RateSetupDialog::EditRate);
  delete_ = button("delete", tr("Delete"), 2, &RateSetupDialog::DeleteRate);
  layout->addLayout(commands);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close | QDialogButtonBox::Help, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(buttons, &QDialogButtonBox::helpRequested, this, &RateSetupDialog::ShowHelp);
  layout->addWidget(buttons);

  connect(tree_, &QTreeWidget::currentItemChanged, this, [this] { UpdateCommands(); });
  connect(tree_, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
    if (item->parent()) EditRate();
  });
  Rebuild();
  if (tree_->topLevelItemCount() > 0) {
    tree_->topLevelItem(0)->setExpanded(true);
    tree_->setCurrentItem(tree_->topLevelItem(0));
  }
  resize(360, 480);
}

int RateSetupDialog::Run(QDialog& dialog) {
  return runner_ ? runner_(dialog) : dialog.exec();
}

void RateSetupDialog::Rebuild() {
  const QTreeWidgetItem* current = tree_->currentItem();
  const ClientId client = current ? current->data(0, kClientRole).toUInt() : 0;
  const QString label = current && current->parent() ? current->text(0) : QString();
  QList<ClientId> expanded;
  for (int i = 0; i < tree_->topLevelItemCount(); ++i) {
    if (tree_->topLevelItem(i)->isExpanded()) {
      expanded << tree_->topLevelItem(i)->data(0, kClientRole).toUInt();
    }
  }
  tree_->clear();
  const RateTree rate_tree = catalogue_.Rates();
  for (const RateGroup& group : rate_tree.groups) {
    auto* heading = new QTreeWidgetItem(tree_);
    heading->setText(0, ToQString(group.heading));
    QFont bold = heading->font(0);
    bold.setBold(true);
    heading->setFont(0, bold);
    heading->setData(0, kClientRole, group.client);
    for (const Rate& rate : group.rates) {
      auto* item = new QTreeWidgetItem(heading);
      item->setText(0, ToQString(RateLabel(rate)));
      item->setIcon(0, RateTypeIcon(rate.type));
      item->setToolTip(0, ToQString(RateTypeName(rate.type)));
      item->setData(0, kClientRole, group.client);
      item->setData(0, kRecordRole, rate.record_id);
    }
    heading->setExpanded(expanded.contains(group.client));
  }
  if (current && !Select(client, label)) Select(client);
  UpdateCommands();
}

bool RateSetupDialog::Select(ClientId client, const QString& label) {
  for (int i = 0; i < tree_->topLevelItemCount(); ++i) {
    QTreeWidgetItem* heading = tree_->topLevelItem(i);
    if (heading->data(0, kClientRole).toUInt() != client) continue;
    if (label.isEmpty()) {
      tree_->setCurrentItem(heading);
      return true;
    }
    for (int j = 0; j < heading->childCount(); ++j) {
      if (heading->child(j)->text(0) == label) {
        heading->setExpanded(true);
        tree_->setCurrentItem(heading->child(j));
        return true;
      }
    }
    return false;
  }
  return false;
}

void RateSetupDialog::UpdateCommands() {
  const QTreeWidgetItem* item = tree_->currentItem();
  new_->setEnabled(item != nullptr);
  edit_->setEnabled(item && item->parent());
  delete_->setEnabled(item && item->parent());
}

void RateSetupDialog::NewRate() {
  const QTreeWidgetItem* item = tree_->currentItem();
  if (!item) return;
  Rate rate;
  rate.client = item->data(0, kClientRole).toUInt();
  RateEditDialog dialog(catalogue_, rate, this);
  if (Run(dialog) != QDialog::Accepted) return;
  Rebuild();
  Rate saved;
  if (dialog.saved_record() &&
      rates_.Seek(SeekType::kObjectId, dialog.saved_record()) == dialog.saved_record() &&
      ReadRate(rates_, &saved) == 0) {
    Select(rate.client, ToQString(RateLabel(saved)));
  }
}

void RateSetupDialog::EditRate() {
  const QTreeWidgetItem* item = tree_->currentItem();
  if (!item || !item->parent()) return;
  const ObjectId id = item->data(0, kRecordRole).toUInt();
  Rate rate;
  if (rates_.Seek(SeekType::kObjectId, id) != id || ReadRate(rates_, &rate) != 0) return;
  rate.record_id = id;
  RateEditDialog dialog(catalogue_, rate, this);
  if (Run(dialog) != QDialog::Accepted) return;
  Rebuild();
  Rate saved;
  if (rates_.Seek(SeekType::kObjectId, id) == id && ReadRate(rates_, &saved) == 0) {
    Select(rate.client, ToQString(RateLabel(saved)));
  }
}

void RateSetupDialog::DeleteRate() {
  const QTreeWidgetItem* item = tree_->currentItem();
  if (!item || !item->parent()) return;
  RateInput input;
  input.client = item->data(0, kClientRole).toUInt();
  input.record_id = item->data(0, kRecordRole).toUInt();
  if (catalogue_.DeleteRate(input) != CatalogueResult::kDone) return;
  const ClientId client = input.client;
  Rebuild();
  Select(client);
}

QUrl RateSetupDialog::HelpUrl(const QString& topic) {
  const QString dir = QCoreApplication::applicationDirPath();
  for (const QString& path : {dir + "/Quillora.htm", dir + "/../share/doc/quillora/Quillora.htm",
                              dir + "/../docs/help/Quillora.htm"}) {
    if (QFileInfo::exists(path)) {
      QUrl url = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
      url.setFragment(topic);
      return url;
    }
  }
  return {};
}

void RateSetupDialog::ShowHelp() {
  const QString topic = "ratesetup";
  if (help_) {
    help_(topic);
    return;
  }
  const QUrl url = HelpUrl(topic);
  if (url.isValid()) QDesktopServices::openUrl(url);
}

}  // namespace quillora
