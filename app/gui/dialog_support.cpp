#include "app/gui/dialog_support.h"

#include <QApplication>
#include <QCursor>
#include <QPushButton>
#include <algorithm>

#include "app/gui/main_window.h"
#include "store/string_table.h"

namespace quillora {

Catalogue* CatalogueOf(MainWindow* window) {
  Catalogue* catalogue = window->data().catalogue.get();
  if (catalogue == nullptr && OpenCatalogue(&window->data())) {
    catalogue = window->data().catalogue.get();
  }
  if (catalogue == nullptr) {
    window->prompt().ShowMessage(kAppTitle, LoadString(kIdsUnableToLoadDatabase),
                                 MessageIcon::kError);
  }
  return catalogue;
}

PeriodRange WholeDayRange(const QDate& first, const QDate& last) {
  return {MakeSystemTime(first.year(), first.month(), first.day()),
          MakeSystemTime(last.year(), last.month(), last.day(), 23, 59, 59)};
}

void FitNarrowScreens(QWidget* dialog) {
  for (QPushButton* button : dialog->findChildren<QPushButton*>()) {
    button->setMinimumWidth(std::min(button->sizeHint().width(), 56));
  }
}

WaitCursor::WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }

WaitCursor::~WaitCursor() { Release(); }

void WaitCursor::Release() {
  if (!shown_) return;
  shown_ = false;
  QApplication::restoreOverrideCursor();
}

void WaitingPrompt::ShowMessage(const std::u16string& title, const std::u16string& text,
                                MessageIcon icon) {
  cursor_.reset();
  inner_.ShowMessage(title, text, icon);
}

Answer WaitingPrompt::Ask(const std::u16string& title, const std::u16string& text,
                          MessageIcon icon, QuestionButtons buttons,
                          Answer default_answer) {
  cursor_.reset();
  return inner_.Ask(title, text, icon, buttons, default_answer);
}

std::optional<std::string> WaitingPrompt::ChooseFileToOpen(const FileChooser& chooser) {
  cursor_.reset();
  auto path = inner_.ChooseFileToOpen(chooser);
  if (path) Wait();
  return path;
}

std::optional<std::string> WaitingPrompt::ChooseFileToSave(const FileChooser& chooser) {
  cursor_.reset();
  auto path = inner_.ChooseFileToSave(chooser);
  if (path) Wait();
  return path;
}

void WaitingPrompt::Wait() {
  if (!cursor_) cursor_.emplace();
}

std::optional<std::string> HandedFilePrompt::ChooseFileToOpen(const FileChooser&) {
  Wait();
  return path_;
}

bool ReportFound(UserPrompt& prompt, SavedReportLookup lookup) {
  switch (lookup) {
    case SavedReportLookup::kFound:
      return true;
    case SavedReportLookup::kNoSavedReport:
      prompt.ShowMessage(kAppTitle, LoadString(kIdsNoSavedReport), MessageIcon::kInformation);
      return false;
    case SavedReportLookup::kNotFound:
      prompt.ShowMessage(kAppTitle, LoadString(kIdsNoSavedReportNamed),
                         MessageIcon::kExclamation);
      return false;
    case SavedReportLookup::kDamaged:
      prompt.ShowMessage(kAppTitle, LoadString(kIdsSavedReportDamaged), MessageIcon::kError);
      return false;
  }
  return false;
}

}  // namespace quillora
