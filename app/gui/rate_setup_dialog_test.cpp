// The rate setup page offscreen: its tree and icons, the edit dialog's four
// refusals in order with their exact texts, saving, editing, deleting and
// help.
#include <QtTest>
#include <deque>

#include "app/gui/qt_text.h"
#include "app/gui/rate_edit_dialog.h"
#include "app/gui/rate_icons.h"
#include "app/gui/rate_setup_dialog.h"
#include "tests/dialog_script.h"
#include "tests/fake_prompt.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

QStringList Lines(const QTreeWidget* tree) {
  QStringList lines;
  for (int i = 0; i < tree->topLevelItemCount(); ++i) {
    const QTreeWidgetItem* group = tree->topLevelItem(i);
    lines << group->text(0);
    for (int j = 0; j < group->childCount(); ++j) lines << "  " + group->child(j)->text(0);
  }
  return lines;
}

class RateSetupDialogTest : public QObject {
  Q_OBJECT

 private:
  std::unique_ptr<testing::TempDir> dir_;
  std::unique_ptr<DataContext> data_;
  std::unique_ptr<RateSetupDialog> dialog_;
  testing::FakePrompt prompt_;
  std::deque<std::function<int(QDialog&)>> script_;
  ClientId acme_ = 0;

  RateStore& rates() { return data_->catalogue->rates; }
  QStringList Shown() {
    QStringList texts;
    for (const auto& t : prompt_.Texts()) texts << ToQString(t);
    return texts;
  }

 private slots:
  void init() {
    dir_ = std::make_unique<testing::TempDir>();
    data_ = std::make_unique<DataContext>();
    std::string error;
    QVERIFY(OpenDataContext(dir_->File("data"), data_.get(), &error));
    QVERIFY(OpenCatalogue(data_.get()));
    AddClient(data_->catalogue->clients, u"Zeta");
    acme_ = AddClient(data_->catalogue->clients, u"Acme");
    AddRate(rates(), 0, 25.5, 0, u"Consulting", false);
    AddRate(rates(), 3, 500, acme_, u"Audit", true);
    prompt_ = testing::FakePrompt();
    script_.clear();
    dialog_ = std::make_unique<RateSetupDialog>(*data_, prompt_);
    dialog_->SetDialogRunner(testing::RunFrom(&script_));
  }

  void cleanup() {
    dialog_.reset();
    data_.reset();
    dir_.reset();
  }

  void TreeListsDefaultRatesThenClientsByName() {
    QCOMPARE(Lines(dialog_->tree()),
             QStringList({"(Default Rates)", "  Consulting (25.50)", "Acme",
                          "  Audit (500.00)", "Zeta"}));
    // Each type has an icon of its own.
    QList<QImage> images;
    for (std::uint16_t t = 0; t < kRateTypeCount; ++t) {
      const QIcon icon = RateTypeIcon(t);
      QVERIFY(!icon.isNull());
      const QImage image = icon.pixmap(16, 16).toImage();
      QCOMPARE(image.size(), QSize(16, 16));
      for (const QImage& other : images) QVERIFY2(image != other, qPrintable(QString::number(t)));
      images << image;
    }
    QVERIFY(RateTypeIcon(kRateTypeCount).isNull());
    QVERIFY(!dialog_->tree()->topLevelItem(1)->child(0)->icon(0).isNull());
  }

  void EditDialogRefusesInOrderWithTheExactTexts() {
    QVERIFY(dialog_->Select(0));
    QStringList shown_while_open;
    bool stayed_open = true;
    script_.push_back([&](QDialog& d) {
      auto* edit = qobject_cast<RateEditDialog*>(&d);
      if (!edit) return -1;
      edit->accept();  // nothing chosen
      edit->type()->setCurrentIndex(0);
      edit->accept();
      edit->description()->setText("Consulting");
      edit->value()->setText("12.345");
      edit->accept();
      edit->value()->setText("abc");
      edit->accept();
      edit->value()->setText("1.15");
      edit->accept();  // Normal "Consulting" is there already
      stayed_open = edit->result() != QDialog::Accepted;
      edit->type()->setCurrentIndex(1);
      edit->accept();
      return edit->result();
    });
    dialog_->NewRate();
    QVERIFY(stayed_open);
    QCOMPARE(Shown(),
             QStringList({"Please select a type.", "Please enter a description.",
                          "This is not a valid rate. Rate can have up to 2 decimal places.",
                          "This is not a valid rate. Rate can have up to 2 decimal places.",
                          "This type of rate with this description already exists for this "
                          "client. Please either choose a different type or alter the "
                          "description."}));
    for (const auto& s : prompt_.shown) QVERIFY(s.title == u"Quillora");
    const std::vector<Rate> defaults = RatesOf(rates(), 0);
    QCOMPARE(defaults.size(), std::size_t{2});
    QCOMPARE(defaults[1].value, 114u);  // 1.15 × 100 truncated
    QCOMPARE(defaults[1].type, std::uint16_t{1});
    QCOMPARE(dialog_->tree()->currentItem()->text(0), QString("Consulting (1.14)"));
  }

  void NewRateGoesToTheSelectedClient() {
    QVERIFY(dialog_->Select(acme_));
    script_.push_back([](QDialog& d) {
      auto* edit = qobject_cast<RateEditDialog*>(&d);
      edit->type()->setCurrentIndex(4);
      edit->description()->setText("Consulting");  // only the defaults have it
      edit->value()->setText(" 7.5 ");
      edit->accept();
      return edit->result();
    });
    dialog_->NewRate();
    QVERIFY(Shown().isEmpty());
    QCOMPARE(Lines(dialog_->tree()),
             QStringList({"(Default Rates)", "  Consulting (25.50)", "Acme",
                          "  Audit (500.00)", "  Consulting (7.50)", "Zeta"}));
  }

  void EditingKeepsTheFlagAndIsNotItsOwnDuplicate() {
    QVERIFY(dialog_->Select(acme_, "Audit (500.00)"));
    QString shown_value;
    int shown_type = -1;
    script_.push_back([&](QDialog& d) {
      auto* edit = qobject_cast<RateEditDialog*>(&d);
      shown_value = edit->value()->text();
      shown_type = edit->type()->currentIndex();
      edit->value()->setText("450");
      edit->accept();
      return edit->result();
    });
    dialog_->EditRate();
    QCOMPARE(shown_value, QString("500.00"));
    QCOMPARE(shown_type, 3);
    QVERIFY(Shown().isEmpty());
    const std::vector<Rate> acme = RatesOf(rates(), acme_);
    QCOMPARE(acme.size(), std::size_t{1});
    QCOMPARE(acme[0].value, 45000u);
    QVERIFY(acme[0].flag);
    QCOMPARE(dialog_->tree()->currentItem()->text(0), QString("Audit (450.00)"));
  }

  void DeletingAsksFirst() {
    QVERIFY(dialog_->Select(0, "Consulting (25.50)"));
    prompt_.answers = {Answer::kNo, Answer::kYes};
    dialog_->DeleteRate();
    QCOMPARE(RatesOf(rates(), 0).size(), std::size_t{1});
    dialog_->DeleteRate();
    QVERIFY(RatesOf(rates(), 0).empty());
    QCOMPARE(Shown(), QStringList({"Are you sure to permanently delete this item?",
                                   "Are you sure to permanently delete this item?"}));
    QCOMPARE(dialog_->tree()->currentItem()->text(0), QString("(Default Rates)"));
    QVERIFY(!dialog_->findChild<QPushButton*>("edit")->isEnabled());
  }

  void HelpOpensTheRateSetupTopic() {
    QString topic;
    dialog_->SetHelpOpener([&](const QString& t) { topic = t; });
    dialog_->ShowHelp();
    QCOMPARE(topic, QString("ratesetup"));
  }
};

}  // namespace
}  // namespace quillora

QTEST_MAIN(quillora::RateSetupDialogTest)
#include "rate_setup_dialog_test.moc"
