#include "documents/TranslateProject.h"

#include <gtest/gtest.h>

#include "documents/frmSelectFile.h"
#include "platform/RuntimeError.h"
#include "platform/memory/MemoryComponents.h"
#include "tests/unit/ProjectWorld.h"

namespace marl {
namespace {

constexpr TextView kNoLanguages = u"No target languages found";
constexpr TextView kNoFiles = u"No translation files found";
constexpr TextView kNoProject = u"This does not appear to be a valid Marl project file";

class Translate : public testing::Test, protected ProjectWorld {
 protected:
  using Rows = std::vector<Text>;

  Translate() {
    components.registered[u"Marl.QaComponent"] = [](const Text& operation,
                                                    std::vector<ComponentValue>& arguments,
                                                    ComponentValue& result, Text&) {
      static const std::vector<std::pair<Text, Text>> table = {
          {u"en", u"English"}, {u"de", u"German"}, {u"fr", u"French"}, {u"de", u"German again"}};
      if (operation == u"LanguageCount") {
        result = static_cast<std::int32_t>(table.size());
      } else if (operation == u"GetLanguage") {
        const auto& row = table.at(static_cast<std::size_t>(std::get<std::int32_t>(arguments[0])));
        arguments[2] = row.second;
        arguments[3] = row.first;
        result = std::int32_t{0};
      } else {
        result = std::int32_t{0};
      }
      return true;
    };
    desktop.whenAnyModal = [this](Form& shown) {
      LookAt(shown);
      static_cast<frmSelectFile&>(shown).cmdOK.UserClick();
    };
  }

  /// The user does this in the dialog before OK.
  void UserDoes(std::function<void(frmSelectFile&)> user) {
    desktop.whenModal["frmSelectFile"] = [this, user](Form& shown) {
      LookAt(shown);
      user(static_cast<frmSelectFile&>(shown));
    };
  }
  void LookAt(Form& shown) {
    auto& form = static_cast<frmSelectFile&>(shown);
    languages = RowsOf(form.cmbLanguage);
    documents = RowsOf(form.cmbFile);
    languageRow = form.cmbLanguage.ListIndex();
    documentRow = form.cmbFile.ListIndex();
  }

  void Run(TextView path) {
    const clsLanguages table(components);
    TranslateProject({desktop, files, locale, strings, common,
                      [&]() -> const clsLanguages& { return table; }, [](WindowHandle) {},
                      [this](TextView arguments) { edited.emplace_back(arguments); }})
        .Run(path, nullptr);
    EXPECT_TRUE(desktop.forms().empty()) << "the dialog is unloaded on every way out";
  }
  void RunXml(std::string_view content, TextView path = u"C:\\P\\job.qprx") {
    files.Put(path, content);
    Run(path);
  }
  void RunOlder(std::string_view content, TextView path = u"C:\\P\\job.qpj") {
    files.Put(path, content);
    Run(path);
  }
  bool Asked() const { return !desktop.modal.empty(); }

  static Rows RowsOf(const ItemList& list) {
    Rows rows;
    for (int i = 0; i < list.ListCount(); ++i) rows.push_back(list.List(i));
    return rows;
  }

  MemoryComponents components;
  Rows languages, documents;  ///< what the dialog listed
  int languageRow = -1, documentRow = -1;
  std::vector<Text> edited;  ///< arguments of the editor
};

constexpr std::string_view kXml =
    "<project><target-files shortlang=\"yes\"/><language lc=\"fr\" description=\"own\">"
    "<document path=\"fr\\sub\\report.doc\"/></language><language lc=\"xx\"/>"
    "<language lc=\"de\"><document path=\"de\\sub\\report.doc\"/></language></project>";

constexpr std::string_view kOlder =
    "[Languages]\r\nCount=3\r\nTarget0=fr\r\nTarget1=xx\r\nTarget2=de\r\n"
    "[Source Files]\r\nCount=2\r\nFile0=sub\\report.doc\r\nFile1=b.txt\r\n";

TEST_F(Translate, OlderProjectListsKnownLanguagesAndTranslations) {
  RunOlder(kOlder);
  EXPECT_EQ(languages, (Rows{u"French", u"German"}));
  EXPECT_EQ(documents, (Rows{u"sub\\report.qtd", u"b.qtd"}));
  EXPECT_EQ(languageRow, 0);
  EXPECT_EQ(documentRow, 0);
}

TEST_F(Translate, UnknownLanguageBetweenTwoLeavesTheMappingRight) {
  files.Put(u"C:\\P\\German\\b.qtd", "");
  UserDoes([](frmSelectFile& form) {
    form.cmbLanguage.UserSelectRow(1);
    form.cmbFile.UserSelectRow(1);
    form.cmdOK.UserClick();
  });
  RunOlder(kOlder);
  EXPECT_EQ(edited, Rows{u"\"C:\\P\\German\\b.qtd\""});
  EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(Translate, StyleOneNamesTheFolderByCode) {
  files.Put(u"C:\\P\\fr\\sub\\report.qtd", "");
  files.Put(u"C:\\P\\French\\sub\\report.qtd", "");
  RunOlder(std::string("[Target Files]\r\nShortLang=1\r\n") + std::string(kOlder));
  EXPECT_EQ(edited, Rows{u"\"C:\\P\\fr\\sub\\report.qtd\""});
}

TEST_F(Translate, AnyOtherStyleNamesItByDescription) {
  files.Put(u"C:\\P\\French\\sub\\report.qtd", "");
  for (const char* style : {"0", "2", "-1"}) {
    edited.clear();
    RunOlder(std::string("[Target Files]\r\nShortLang=") + style + "\r\n" + std::string(kOlder));
    EXPECT_EQ(edited, Rows{u"\"C:\\P\\French\\sub\\report.qtd\""}) << style;
  }
}

TEST_F(Translate, DocumentOfTheOtherStyleIsNotFound) {
  files.Put(u"C:\\P\\fr\\sub\\report.qtd", "");
  RunOlder(kOlder);
  EXPECT_EQ(desktop.messages, Says(u"File not found : C:\\P\\French\\sub\\report.qtd"));
  EXPECT_TRUE(edited.empty());
}

TEST_F(Translate, OfTwoLanguagesWithOneCodeTheFirstWins) {
  UserDoes([](frmSelectFile& form) { form.cmdCancel.UserClick(); });
  RunOlder("[Languages]\r\nCount=1\r\nTarget0=de\r\n[Source Files]\r\nCount=1\r\nFile0=a\r\n");
  EXPECT_EQ(languages, Rows{u"German"});
}

TEST_F(Translate, CodeMatchesOnlyExactly) {
  RunOlder(
      "[Languages]\r\nCount=2\r\nTarget0=DE\r\nTarget1=de-DE\r\n"
      "[Source Files]\r\nCount=1\r\nFile0=a\r\n");
  EXPECT_EQ(desktop.messages, Says(kNoLanguages));
  EXPECT_FALSE(Asked());
}

TEST_F(Translate, LanguageTwiceInTheProjectIsListedTwice) {
  RunOlder(
      "[Languages]\r\nCount=2\r\nTarget0=de\r\nTarget1=de\r\n"
      "[Source Files]\r\nCount=1\r\nFile0=a\r\n");
  EXPECT_EQ(languages, (Rows{u"German", u"German"}));
}

TEST_F(Translate, MissingTargetLeavesTheNext) {
  RunOlder("[Languages]\r\nCount=2\r\nTarget1=de\r\n[Source Files]\r\nCount=1\r\nFile0=a\r\n");
  EXPECT_EQ(languages, Rows{u"German"});
}

TEST_F(Translate, ExtensionsAreReplacedAndAdded) {
  RunOlder(
      "[Languages]\r\nCount=1\r\nTarget0=de\r\n[Source Files]\r\nCount=6\r\n"
      "File0=sub\\report.doc\r\nFile1=plain\r\nFile2=v1.2\\plain\r\nFile3=a.b.c\r\n"
      "File4=.doc\r\nFile5=end.\r\n");
  EXPECT_EQ(documents, (Rows{u"sub\\report.qtd", u"plain.qtd", u"v1.2\\plain.qtd", u"a.b.qtd",
                             u".qtd", u"end.qtd"}));
}

TEST_F(Translate, XmlProjectIsReadAsOneWhateverTheCaseOfItsExtension) {
  UserDoes([](frmSelectFile& form) { form.cmdCancel.UserClick(); });
  for (const TextView path : {u"C:\\P\\job.qprx", u"C:\\P\\JOB.QPRX", u"C:\\P\\.Qprx"}) {
    languages.clear();
    documents.clear();
    RunXml(kXml, path);
    EXPECT_EQ(languages, (Rows{u"French", u"German"})) << "by the table's names";
    EXPECT_EQ(documents, Rows{u"sub\\report.qtd"});
  }
  EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(Translate, XmlProjectNamesItsFoldersByItsStyle) {
  files.Put(u"C:\\P\\fr\\sub\\report.qtd", "");
  RunXml(kXml);
  EXPECT_EQ(edited, Rows{u"\"C:\\P\\fr\\sub\\report.qtd\""});
  RunXml("<language lc=\"fr\"/><document path=\"sub\\report.doc\"/>");
  EXPECT_EQ(desktop.messages, Says(u"File not found : C:\\P\\French\\sub\\report.qtd"));
}

TEST_F(Translate, XmlContentUnderAnotherExtensionIsAnOlderProject) {
  RunXml(kXml, u"C:\\P\\job.xml");
  EXPECT_EQ(desktop.messages, Says(kNoLanguages));
}

TEST_F(Translate, OlderContentUnderTheXmlExtensionHasNoLanguages) {
  RunOlder(kOlder, u"C:\\P\\x.qprx");
  EXPECT_EQ(desktop.messages, Says(kNoLanguages));
}

TEST_F(Translate, XmlWithADeclarationIsReadAsAnOlderProject) {
  RunXml(std::string("<!ELEMENT>") + std::string(kXml));
  EXPECT_EQ(desktop.messages, Says(kNoLanguages));
  // A file that is valid as both is read as the older format.
  desktop.messages.clear();
  RunXml("<!ELEMENT>\r\n" + std::string(kOlder));
  EXPECT_EQ(languages, (Rows{u"French", u"German"}));
}

TEST_F(Translate, UnreadableXmlProjectHasNoLanguages) {
  Run(u"C:\\P\\missing.qprx");
  EXPECT_EQ(desktop.messages, Says(kNoLanguages));
  EXPECT_FALSE(Asked());
}

TEST_F(Translate, UnreadableOlderProjectHasNoLanguages) {
  Run(u"C:\\P\\missing.qpj");
  EXPECT_EQ(desktop.messages, Says(kNoLanguages));
}

TEST_F(Translate, PathWithoutAFolderIsNoProject) {
  Run(u"job.qpj");
  EXPECT_EQ(desktop.messages, Says(kNoProject));
}

TEST_F(Translate, NoLanguagesComeBeforeNoDocuments) {
  RunOlder("[Languages]\r\nCount=0\r\n");
  EXPECT_EQ(desktop.messages, Says(kNoLanguages));
}

TEST_F(Translate, NoDocumentsIsReportedBeforeTheDialog) {
  RunOlder("[Languages]\r\nCount=1\r\nTarget0=de\r\n");
  EXPECT_EQ(desktop.messages, Says(kNoFiles));
  EXPECT_FALSE(Asked());
}

TEST_F(Translate, OnlyEmptyPathsAreNoDocuments) {
  RunOlder("[Languages]\r\nCount=1\r\nTarget0=de\r\n[Source Files]\r\nCount=3\r\nFile0=\r\n");
  EXPECT_EQ(desktop.messages, Says(kNoFiles));
  desktop.messages.clear();
  RunXml("<language lc=\"de\"/><document/>");
  EXPECT_EQ(desktop.messages, Says(kNoFiles));
  EXPECT_FALSE(Asked());
}

TEST_F(Translate, OnlyUnknownCodesAreNoLanguages) {
  RunXml("<language lc=\"xx\"/><document path=\"a\"/><language/>");
  EXPECT_EQ(desktop.messages, Says(kNoLanguages));
}

TEST_F(Translate, WithoutTheTableThereAreNoLanguages) {
  components.registered.clear();
  RunOlder(kOlder);
  EXPECT_EQ(desktop.messages, Says(kNoLanguages));
}

TEST_F(Translate, CancelAndCloseLaunchNothingAndShowNothing) {
  files.Put(u"C:\\P\\French\\sub\\report.qtd", "");
  UserDoes([](frmSelectFile& form) { form.cmdCancel.UserClick(); });
  RunOlder(kOlder);
  UserDoes([](frmSelectFile& form) { form.UserClose(); });
  RunOlder(kOlder);
  EXPECT_EQ(desktop.modal.size(), 2u);
  EXPECT_TRUE(edited.empty());
  EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(Translate, HiddenDocumentAndFolderAreNoNormalFiles) {
  files.Put(u"C:\\P\\French\\sub\\report.qtd", "", kHidden);
  RunOlder(kOlder);
  files.Erase(u"C:\\P\\French");
  files.PutFolder(u"C:\\P\\French\\sub\\report.qtd");
  RunOlder(kOlder);
  ASSERT_EQ(desktop.messages.size(), 2u);
  EXPECT_EQ(desktop.messages[1].text, u"File not found : C:\\P\\French\\sub\\report.qtd");
  EXPECT_TRUE(edited.empty());
}

TEST_F(Translate, NamesWithBlanksAccentsAndForeignLettersReachTheEditor) {
  const Text folder = u"C:\\My  projects, \u00dcbung \u0416 \u4e2d\u6587\\";
  files.Put(folder + u"French\\\u00e9t\u00e9 \u041c\u0438\u0440 \u4e2d.qtd", "");
  RunXml(
      "<language lc=\"fr\"/><document path=\"\xC3\xA9t\xC3\xA9 \xD0\x9C\xD0\xB8\xD1\x80 "
      "\xE4\xB8\xAD.doc\"/>",
      folder + u"a b.qprx");
  EXPECT_EQ(edited,
            Rows{u"\"" + folder + u"French\\\u00e9t\u00e9 \u041c\u0438\u0440 \u4e2d.qtd\""});
}

TEST_F(Translate, LongPathsReachTheEditor) {
  for (const std::size_t length : {200u, 240u, 245u, 246u, 300u}) {
    edited.clear();
    const Text name(length, u'n');
    files.Put(u"C:\\P\\French\\" + name + u".qtd", "");
    RunXml("<language lc=\"fr\"/><document path=\"" + std::string(length, 'n') + ".doc\"/>");
    EXPECT_EQ(edited, Rows{u"\"C:\\P\\French\\" + name + u".qtd\""});
  }
}

TEST_F(Translate, TheLongFormOfAPathIsTaken) {
  const Text folder = u"\\\\?\\C:\\P\\";
  files.Put(u"C:\\P\\French\\a.qtd", "");
  RunXml("<language lc=\"fr\"/><document path=\"a.doc\"/>", folder + u"job.qprx");
  EXPECT_EQ(edited, Rows{u"\"" + folder + u"French\\a.qtd\""});
  EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(Translate, SystemFilesAreNoNormalFiles) {
  files.Put(u"C:\\P\\French\\a.qtd", "", kSystem);
  RunXml("<language lc=\"fr\"/><document path=\"a.doc\"/>");
  ASSERT_EQ(desktop.messages.size(), 1u);
  EXPECT_EQ(desktop.messages[0].text, u"File not found : C:\\P\\French\\a.qtd");
}

TEST_F(Translate, PathsOutOfTheProjectAreFollowed) {
  files.Put(u"C:\\elsewhere\\a.qtd", "");
  RunXml("<language lc=\"fr\"/><document path=\"..\\..\\elsewhere\\a.doc\"/>");
  EXPECT_EQ(edited, Rows{u"\"C:\\P\\French\\..\\..\\elsewhere\\a.qtd\""});
}

TEST_F(Translate, HostilePathsStartNothing) {
  // Nothing is started, even if there is a file of such a name or one that the wildcards match: a
  // quote would end the argument, and the rest of the name would become further arguments.
  files.Put(u"D:\\a.qtd", "");
  files.Put(u"C:\\P\\French\\a.qtd", "");
  const struct {
    const char* name;
    const char* path;
    TextView sought;
  } cases[] = {{"drive", "D:\\a.doc", u"D:\\a.qtd"},
               {"server", "\\\\server\\share\\a.doc", u"\\server\\share\\a.qtd"},
               {"wildcard", "*.doc", u"*.qtd"},
               {"question", "?.doc", u"?.qtd"},
               {"quote", "a&quot;.doc", u"a\".qtd"},
               {"quotes around", "&quot;a&quot;.doc", u"\"a\".qtd"},
               {"less", "&lt;.doc", u"<.qtd"},
               {"greater", "&gt;.doc", u">.qtd"},
               {"slash at its end", "a\\", u"a\\.qtd"}};
  for (const auto& c : cases) {
    desktop.messages.clear();
    const Text path = u"C:\\P\\French\\" + Text(c.sought);
    if (c.sought.find(u'\\') == TextView::npos) files.Put(path, "");
    RunXml(std::string("<language lc=\"fr\"/><document path=\"") + c.path + "\"/>");
    EXPECT_EQ(desktop.messages, Says(u"File not found : " + path)) << c.name;
  }
  EXPECT_TRUE(edited.empty());
}

TEST_F(Translate, NulInAPathStartsNothing) {
  files.Put(u"C:\\P\\French\\a.qtd", "");
  using namespace std::string_view_literals;
  RunXml("<language lc=\"fr\"/><document path=\"a.qtd\0x.doc\"/>"sv);
  EXPECT_TRUE(edited.empty());
}

TEST_F(Translate, CountsBelowZeroAreNotZero) {
  // The lists are empty, but the command goes on until it needs them, so a later problem is
  // reported.
  RunOlder("[Languages]\r\nCount=-1\r\nTarget0=de\r\n[Source Files]\r\nCount=0\r\nFile0=a\r\n");
  EXPECT_EQ(desktop.messages, Says(kNoFiles));
  desktop.messages.clear();
  RunOlder("[Languages]\r\nCount=1\r\nTarget0=xx\r\n[Source Files]\r\nCount=-1\r\nFile0=a\r\n");
  EXPECT_EQ(desktop.messages, Says(kNoLanguages));
}

TEST_F(Translate, MessagesAboutTheListsComeWhenTheDialogHasGone) {
  int asked = 0;
  desktop.answer = [&](const MemoryDesktop::Message&) {
    EXPECT_TRUE(desktop.forms().empty());
    ++asked;
    return kAnswerOk;
  };
  RunOlder("[Languages]\r\nCount=1\r\nTarget0=xx\r\n[Source Files]\r\nCount=1\r\nFile0=a\r\n");
  RunOlder("[Languages]\r\nCount=1\r\nTarget0=de\r\n[Source Files]\r\nCount=1\r\n");
  EXPECT_EQ(asked, 2);
  EXPECT_FALSE(Asked());
}

TEST_F(Translate, StyleIsReadBeforeTheFolderIsTested) {
  files.Put(profile.windowsFolder + u"\\job.qpj", "[Target Files]\r\nShortLang=short\r\n");
  EXPECT_THROW(Run(u"job.qpj"), RuntimeError);
  EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(Translate, NegativeCountsAreNoLists) {
  RunOlder("[Languages]\r\nCount=-1\r\nTarget0=de\r\n[Source Files]\r\nCount=1\r\nFile0=a\r\n");
  EXPECT_EQ(desktop.messages, Says(kNoLanguages));
  desktop.messages.clear();
  RunOlder("[Languages]\r\nCount=1\r\nTarget0=de\r\n[Source Files]\r\nCount=-1\r\nFile0=a\r\n");
  EXPECT_EQ(desktop.messages, Says(kNoFiles));
  EXPECT_FALSE(Asked());
}

TEST_F(Translate, GreatestCountsListWhatIsThere) {
  RunOlder(
      "[Languages]\r\nCount=2147483647\r\nTarget0=de\r\nTarget2147483646=fr\r\n"
      "[Source Files]\r\nCount=2147483647\r\nFile7=a\r\n");
  EXPECT_EQ(languages, (Rows{u"German", u"French"}));
  EXPECT_EQ(documents, Rows{u"a.qtd"});
}

TEST_F(Translate, CountThatIsNoNumberFailsTheCommand) {
  const auto raises = [this](std::string_view content) {
    try {
      RunOlder(content);
    } catch (const RuntimeError& error) {
      return error.number();
    }
    return 0;
  };
  const int mismatch = RuntimeError::TypeMismatch().number();
  EXPECT_EQ(raises("[Languages]\r\nCount=abc\r\n"), mismatch);
  EXPECT_EQ(raises("[Target Files]\r\nShortLang=x\r\n"), mismatch);
  EXPECT_EQ(raises("[Languages]\r\nCount=1\r\n[Source Files]\r\nCount=x\r\n"), mismatch);
  EXPECT_EQ(raises("[Languages]\r\nCount=99999999999\r\n"), RuntimeError::Overflow().number());
  EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(Translate, LanguageFolderFollowsTheStyle) {
  const clsLanguages table(components);
  const TranslateProject command({desktop,
                                  files,
                                  locale,
                                  strings,
                                  common,
                                  [&]() -> const clsLanguages& { return table; },
                                  {},
                                  {}});
  EXPECT_EQ(command.GetLanguageFolder(2, 1), u"fr");
  EXPECT_EQ(command.GetLanguageFolder(2, 0), u"French");
  EXPECT_EQ(command.GetLanguageFolder(2, -1), u"French");
  EXPECT_EQ(command.GetLanguageFolder(9, 1), u"");
  EXPECT_EQ(command.GetLanguageFolder(-1, 0), u"");
}

}  // namespace
}  // namespace marl
