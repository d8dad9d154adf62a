#include "interchange/contacts_import.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "interchange/list_files.h"
#include "interchange/vcard.h"
#include "platform/text.h"
#include "store/client_store.h"
#include "tests/temp_dir.h"
#include "tests/test_volume.h"

namespace quillora {
namespace {

using Names = std::vector<std::u16string>;

std::string Cards(const std::vector<VCard>& cards) {
  std::string out;
  for (const VCard& c : cards) {
    out += '[';
    out += ToUtf8(c.file_as);
    out += '|';
    out += ToUtf8(c.company);
    out += ']';
  }
  return out;
}

TEST(VCardTest, FileAsNamesAndCompaniesOfVersionThreeAndFour) {
  struct Case {
    std::string bytes;
    std::string cards;
  } cases[] = {
      {"BEGIN:VCARD\r\nVERSION:3.0\r\nN:Doe;John;Q;Dr.;\r\nFN:Dr. John Q Doe\r\n"
       "ORG:Acme\\, Inc.;Sales\r\nEND:VCARD\r\n",
       "[Doe, John|Acme, Inc.]"},
      {"BEGIN:VCARD\nVERSION:4.0\nFN:Jane Roe\nEND:VCARD\n", "[Jane Roe|]"},
      {"BEGIN:VCARD\nN:;Cher;;;\nEND:VCARD\nBEGIN:VCARD\nN:Solo;;;;\nEND:VCARD\n",
       "[Cher|][Solo|]"},
      {"BEGIN:VCARD\nORG:Only Company\nEND:VCARD\n", "[Only Company|Only Company]"},
      {"BEGIN:VCARD\nN:;;;;\nFN:\nEND:VCARD\n", ""},
      // Folding with blanks and tabs; a group; letter case of names; quoted
      // parameters holding a colon; UTF-8 with its mark.
      {"\xEF\xBB\xBF"
       "begin:vcard\r\nitem1.n;LANGUAGE=de:M\xC3\xBC\r\n ller;J\r\n\tan\r\n"
       "Org;TYPE=\"work:main\":Gro\xC3\x9F GmbH\r\nend:VCARD\r\n",
       "[M\xC3\xBCller, Jan|Gro\xC3\x9F GmbH]"},
      {"BEGIN:VCARD\nN:O\\;Neil\\\\x;Ann,Marie;;;\nFN:a\\nb\nEND:VCARD\n",
       "[O;Neil\\x, Ann Marie|]"},
      {"BEGIN:VCARD\nFN:First\nFN:Second\nX-UNKNOWN;A=B:whatever\nPHOTO;ENCODING=b:AAAA\n"
       "END:VCARD\n",
       "[First|]"},
      // Broken cards: never ended, continuation with nothing to continue,
      // a line without a colon, invalid UTF-8.
      {"BEGIN:VCARD\nFN:Lost\nBEGIN:VCARD\nFN:Kept\nEND:VCARD\nBEGIN:VCARD\nFN:Cut",
       "[Kept|]"},
      {" orphan\nBEGIN:VCARD\nno colon here\n\n continued\nFN:Bad \xFF byte\nEND:VCARD",
       "[Bad \xEF\xBF\xBD byte|]"},
      {"FN:Outside\nEND:VCARD\n", ""},
      {"", ""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Cards(ReadVCards(c.bytes)), c.cards) << c.bytes;
  }
}

class ContactsImportTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(catalogue_.Open());
    AddClient(catalogue_.clients, u"Acme");
    Client client;
    ASSERT_TRUE(FindClient(catalogue_.clients, u"Acme", &client));
    acme_ = client.number;
  }

  // A device-style contacts database holding the given (file as, company)
  // pairs in that order; an empty file-as leaves the property out.
  void MakeDatabase(
      const std::u16string& name,
      const std::vector<std::pair<std::u16string, std::u16string>>& people) {
    DatabaseInfo info;
    info.name = name;
    info.type = 0x19;
    ASSERT_NE(volume_.store().CreateDatabase(info), 0u);
    ObjectId id = 0;
    auto db = volume_.store().OpenDatabase(&id, name, 0, 0, nullptr);
    ASSERT_NE(db, nullptr);
    for (const auto& [file_as, company] : people) {
      PropList props = {PropValue::Text(kPropContactCompany, company)};
      if (!file_as.empty()) props.push_back(PropValue::Text(kPropContactFileAs, file_as));
      ASSERT_NE(db->WriteProps(0, props), 0u);
    }
  }

  Names Contacts() {
    return ListNames(catalogue_, *locale_, {ListKind::kContacts, acme_});
  }

  testing::TempDir dir_;
  testing::TestVolume volume_;
  Catalogue catalogue_{volume_.store(), nullptr};
  std::unique_ptr<Locale> locale_ = Locale::UsEnglish();
  ClientId acme_ = 0;
};

TEST_F(ContactsImportTest, RowsAreSortedAndCheckedNamesAddedInThatOrder) {
  MakeDatabase(u"Contacts Database", {{u"Zimmer, Ann", u"Zeta Co"},
                                      {u"adams, Bo", u""},
                                      {u"", u"Nameless Ltd"},
                                      {u"Brown, Cy", u"Beta"}});
  DeviceContactsSource source(volume_.store(), nullptr);
  ContactsDialog dialog;
  ASSERT_TRUE(dialog.Load(source, *locale_));
  std::vector<std::u16string> shown;
  for (const ContactRow& row : dialog.rows())
    shown.push_back(row.file_as + u"|" + row.company);
  EXPECT_EQ(shown, (Names{u"|Nameless Ltd", u"adams, Bo|", u"Brown, Cy|Beta",
                          u"Zimmer, Ann|Zeta Co"}));

  EXPECT_TRUE(dialog.CheckedNames().empty());
  EXPECT_EQ(AddContactNames(catalogue_, *locale_, acme_, dialog.CheckedNames()), 0);
  dialog.SetChecked(3, true);
  dialog.SetChecked(1, true);
  dialog.SetChecked(9, true);
  EXPECT_EQ(AddContactNames(catalogue_, *locale_, acme_, dialog.CheckedNames()), 2);
  EXPECT_EQ(Contacts(), (Names{u"adams, Bo", u"Zimmer, Ann"}))
      << "displayed order, companies never imported";
  dialog.CheckAll();
  EXPECT_EQ(AddContactNames(catalogue_, *locale_, acme_, dialog.CheckedNames()), 1)
      << "the empty name and the names already there are refused";
  EXPECT_EQ(Contacts(), (Names{u"adams, Bo", u"Zimmer, Ann", u"Brown, Cy"}));
}

TEST_F(ContactsImportTest, TheRegistryNamesTheDatabase) {
  auto registry = OpenMemoryRegistry();
  DeviceContactsSource source(volume_.store(), registry.get());
  EXPECT_EQ(source.DatabaseName(), u"Contacts Database");
  std::vector<ContactRow> rows;
  EXPECT_FALSE(source.ReadContacts(&rows)) << "no database yet";

  RegistryKey key;
  ASSERT_EQ(registry->CreateKey(RegistryHive::kLocalMachine, u"Explorer\\Database", &key),
            0);
  ASSERT_EQ(WriteString(*registry, key, u"ContactsDatabase", u"Pocket Contacts"), 0);
  EXPECT_EQ(source.DatabaseName(), u"Pocket Contacts");
  MakeDatabase(u"pocket contacts", {{u"Wrong", u""}});
  EXPECT_EQ(source.FindDatabase(), 0u) << "the name is compared exactly";
  MakeDatabase(u"Pocket Contacts", {{u"Right", u"Co"}});
  ASSERT_TRUE(source.ReadContacts(&rows));
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].file_as, u"Right");
  EXPECT_NE(rows[0].record_id, 0u);

  ASSERT_EQ(WriteString(*registry, key, u"ContactsDatabase", std::u16string(260, u'x')),
            0);
  EXPECT_EQ(source.DatabaseName(), u"Contacts Database") << "longer than the buffer";
  ASSERT_EQ(WriteDword(*registry, key, u"ContactsDatabase", 7), 0);
  EXPECT_EQ(source.DatabaseName(), u"Contacts Database");
}

TEST_F(ContactsImportTest, AFolderOfVCardsIsASource) {
  testing::WriteFileBytes(dir_.File("b.vcf"),
                          "BEGIN:VCARD\nN:Young;Al\nORG:Y\nEND:VCARD\n"
                          "BEGIN:VCARD\nFN:Able Baker\nEND:VCARD\n");
  testing::WriteFileBytes(dir_.File("A.VCF"), "BEGIN:VCARD\nN:Moss;Kate\nEND:VCARD\n");
  testing::WriteFileBytes(dir_.File("notes.txt"),
                          "BEGIN:VCARD\nFN:Not a card\nEND:VCARD\n");
  testing::WriteFileBytes(dir_.File("garbage.vcf"), std::string("\0\xFF\x01:;\\", 6));
  VCardContactsSource source(FileSystem::Posix(), dir_.path());
  std::vector<ContactRow> rows;
  ASSERT_TRUE(source.ReadContacts(&rows));
  EXPECT_EQ(rows, (std::vector<ContactRow>{{1, u"Moss, Kate", u""},
                                           {2, u"Young, Al", u"Y"},
                                           {3, u"Able Baker", u""}}));
  ContactsDialog dialog;
  ASSERT_TRUE(dialog.Load(source, *locale_));
  dialog.CheckAll();
  EXPECT_EQ(dialog.CheckedNames(), (Names{u"Able Baker", u"Moss, Kate", u"Young, Al"}));

  VCardContactsSource missing(FileSystem::Posix(), dir_.File("nowhere"));
  EXPECT_FALSE(missing.ReadContacts(&rows));
  EXPECT_FALSE(dialog.Load(missing, *locale_));
  EXPECT_TRUE(dialog.rows().empty());
}

}  // namespace
}  // namespace quillora
