#include "app/gui/filters_dialog.h"
#include "app/gui/qt_text.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QLineEdit>
#include <QScrollArea>
#include <QVBoxLayout>

#include "store/catalogue.h"
#include "store/client_store.h"
#include "store/record_store.h"

namespace quillora {
namespace {



void AppendValues(AuxStore& aux, ValueListKind kind, std::vector<std::u16string>* names) {
  for (const ValueItem& item : ValueList(aux, kind)) names->push_back(item.text);
}

}  // namespace

FilterChoices CatalogueFilterChoices(DataContext& data) {
  FilterChoices choices;
  if (data.catalogue) {
    Catalogue& catalogue = *data.catalogue;
    for (const Client& client : ClientList(catalogue.clients)) {
      choices.clients.push_back(client.name);
      for (const Project& project : ProjectsOf(catalogue.projects, *data.locale, client.number)) {
        choices.projects.push_back(project.name);
      }
      for (const CatalogueItem& contact : ItemsOf(catalogue.contacts, client.number)) {
        choices.bill_to.push_back(contact.name);
      }
    }
  }
  AuxStore aux(*data.volume);
  if (aux.Open()) {
    AppendValues(aux, ValueListKind::kPhase, &choices.phases);
    AppendValues(aux, ValueListKind::kCurrency, &choices.currencies);
    AppendValues(aux, ValueListKind::kCustom1, &choices.custom1);
    AppendValues(aux, ValueListKind::kCustom2, &choices.custom2);
    AppendValues(aux, ValueListKind::kCustom3, &choices.custom3);
  }
  return choices;
}

FiltersDialog::FiltersDialog(FilterPage* page, QWidget* parent)
    : QDialog(parent), page_(page) {
  setWindowTitle(ToQString(kFiltersTitle));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);

  auto* content = new QWidget;
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(2, 2, 2, 2);
  column->setSpacing(4);
  auto* form = new QFormLayout;
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  form->setContentsMargins(0, 0, 0, 0);
  form->setVerticalSpacing(3);
  for (int i = 0; i < kFilterListCount; ++i) {
    const auto which = static_cast<FilterList>(i);
    const FilterPageList& model = page_->list(which);
    auto* list = new QComboBox(content);
    list->setObjectName(QString("filterList%1").arg(i));
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    list->setMinimumContentsLength(3);
    for (const std::u16string& item : model.items) list->addItem(ToQString(item));
    if (which != kFilterRateTypeList) {
      list->setEditable(true);
      list->setInsertPolicy(QComboBox::NoInsert);
      list->lineEdit()->setMaxLength(static_cast<int>(kFilterCriterionChars));
    }
    list->setCurrentIndex(model.selection);
    form->addRow(ToQString(model.label), list);
    lists_[static_cast<std::size_t>(i)] = list;
  }
  column->addLayout(form);

  // Two boxes a row: the three side by side are too wide for a handheld.
  auto* boxes = new QGridLayout;
  boxes->setHorizontalSpacing(12);
  boxes->setVerticalSpacing(2);
  unpaid_ = new QCheckBox(ToQString(kFilterUnpaidBox), content);
  paid_ = new QCheckBox(ToQString(kFilterPaidBox), content);
  non_billable_ = new QCheckBox(ToQString(kFilterNonBillableBox), content);
  unpaid_->setChecked(page_->unpaid);
  paid_->setChecked(page_->paid);
  non_billable_->setChecked(page_->non_billable);
  boxes->addWidget(unpaid_, 0, 0);
  boxes->addWidget(paid_, 0, 1);
  boxes->addWidget(non_billable_, 1, 0);
  boxes->setColumnStretch(2, 1);
  column->addLayout(boxes);
  column->addStretch(1);

  auto* area = new QScrollArea(this);
  area->setWidget(content);
  area->setWidgetResizable(true);
  area->setFrameShape(QFrame::NoFrame);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  layout->addWidget(area, 1);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &FiltersDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);
}

void FiltersDialog::accept() {
  for (int i = 0; i < kFilterListCount; ++i) {
    const auto which = static_cast<FilterList>(i);
    QComboBox* list = lists_[static_cast<std::size_t>(i)];
    if (list->isEditable()) {
      page_->SelectText(which, FromQString(list->currentText()));
    } else {
      page_->Select(which, list->currentIndex());
    }
  }
  page_->unpaid = unpaid_->isChecked();
  page_->paid = paid_->isChecked();
  page_->non_billable = non_billable_->isChecked();
  QDialog::accept();
}

}  // namespace quillora
