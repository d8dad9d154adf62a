// The rate setup page: a tree of "(Default Rates)" and every client, each
// with its rates ("description (value)" beside its type's icon), and the
// commands New, Edit, Delete and Help ("Quillora.htm#ratesetup").
#ifndef QUILLORA_APP_GUI_RATE_SETUP_DIALOG_H_
#define QUILLORA_APP_GUI_RATE_SETUP_DIALOG_H_

#include <QDialog>
#include <QPushButton>
#include <QTreeWidget>
#include <QUrl>
#include <functional>

#include "platform/user_prompt.h"
#include "store/catalogue_service.h"
#include "store/data_context.h"

namespace quillora {

class RateSetupDialog : public QDialog {
  Q_OBJECT

 public:
  RateSetupDialog(DataContext& data, UserPrompt& prompt, QWidget* parent = nullptr);

  using DialogRunner = std::function<int(QDialog&)>;
  void SetDialogRunner(DialogRunner runner) { runner_ = std::move(runner); }
  // Opens the help at a topic; by default the help file beside the program
  // (or in the shared documentation folder) in the desktop's browser.
  using HelpOpener = std::function<void(const QString& topic)>;
  void SetHelpOpener(HelpOpener opener) { help_ = std::move(opener); }

  QTreeWidget* tree() const { return tree_; }
  void Rebuild();
  // Selects the group of `client` (0: the default rates), or its rate whose
  // label is `label` when one is given.
  bool Select(ClientId client, const QString& label = {});

  void NewRate();
  void EditRate();
  void DeleteRate();
  void ShowHelp();

  // The help file "Quillora.htm" at `topic`, when it is found; empty else.
  static QUrl HelpUrl(const QString& topic);

 private:
  int Run(QDialog& dialog);
  void UpdateCommands();

  RateStore& rates_;
  CatalogueService catalogue_;
  QTreeWidget* tree_;
  QPushButton* new_;
  QPushButton* edit_;
  QPushButton* delete_;
  DialogRunner runner_;
  HelpOpener help_;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_RATE_SETUP_DIALOG_H_
