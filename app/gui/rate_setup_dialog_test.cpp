// The rate setup page offscreen: its tree and icons, the edit dialog kept
// open by a refusal, saving, editing, deleting and help.
#include "app/gui/rate_setup_dialog.h"

#include <QtTest>
#include <deque>

#include "app/gui/rate_edit_dialog.h"
#include "app/gui/rate_icons.h"
#include "app/gui/window_test_fixture.h"
#include "tests/dialog_script.h"

namespace quillora {
namespace {

QStringList Lines(const QTreeWidget* tree) {
  QStringList lines;
  for (int i = 0; i < tree->topLevelItemCount(); ++i) {
    const QTreeWidgetItem* group = tree->topLevelItem(i);
    lines << group->text(0);
    for (int j = 0; j < group->childCount(); ++j)
      lines << "  " + group->child(j)->text(0);
  }
  return lines;
}

class RateSetupDialogTest : public QObject, public testing::WindowFixture {
  Q_OBJECT

 private:
  std::unique_ptr<RateSetupDialog> dialog_;
  std::deque<std::function<int(QDialog&)>> script_;
  ClientId acme_ = 0;

  RateStore& rates() { return data_->catalogue->rates; }

 private slots:
  void init() {
    QVERIFY(OpenData());
    QVERIFY(OpenCatalogue(&*data_));
    AddClient(data_->catalogue->clients, u"Zeta");
    acme_ = AddClient(data_->catalogue->clients, u"Acme");
    AddRate(rates(), 0, 25.5, 0, u"Consulting", false);
    AddRate(rates(), 3, 500, acme_, u"Audit", true);
    script_.clear();
    dialog_ = std::make_unique<RateSetupDialog>(*data_, prompt_);
    dialog_->SetDialogRunner(testing::RunFrom(&script_));
  }

  void cleanup() {
    dialog_.reset();
    Close();
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
      for (const QImage& other : images)
        QVERIFY2(image != other, qPrintable(QString::number(t)));
      images << image;
    }
    QVERIFY(RateTypeIcon(kRateTypeCount).isNull());
    QVERIFY(!dialog_->tree()->topLevelItem(1)->child(0)->icon(0).isNull());
  }

  // A refusal keeps the edit dialog open with its message (the checks, their
  // order and texts are store/rates_test's); a good rate is saved and selected.
  void EditDialogStaysOpenOnARefusal() {
    QVERIFY(dialog_->Select(0));
    bool stayed_open = true;
    script_.push_back([&](QDialog& d) {
      auto* edit = qobject_cast<RateEditDialog*>(&d);
      if (!edit) return -1;
      edit->type()->setCurrentIndex(0);
      edit->description()->setText("Consulting");
      edit->value()->setText("1.15");
      edit->accept();  // Normal "Consulting" is there already
      stayed_open = edit->result() != QDialog::Accepted;
      edit->type()->setCurrentIndex(1);
      edit->accept();
      return edit->result();
    });
    dialog_->NewRate();
    QVERIFY(stayed_open);
    QCOMPARE(prompt_.shown.size(), std::size_t{1});
    QCOMPARE(RatesOf(rates(), 0).size(), std::size_t{2});
    QCOMPARE(dialog_->tree()->currentItem()->text(0), QString("Consulting (1.14)"));
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
    QVERIFY(prompt_.shown.empty());
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
    QCOMPARE(prompt_.shown.size(), std::size_t{2});
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
