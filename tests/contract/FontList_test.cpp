#include "platform/FontList.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "appearance/modGetFonts.h"
#include "platform/FoldCase.h"
#include "platform/RuntimeError.h"
#include "platform/forms/Controls.h"
#include "platform/memory/MemoryFontList.h"
#include "tests/contract/DesktopWorld.h"
#ifdef _WIN32
#include "platform/win32/FontListWin32.h"
#endif

namespace marl {
namespace {

class FontListContract : public BackendTest {
 protected:
  FontListContract() {
#ifdef _WIN32
    if (real()) fonts = std::make_unique<win32::FontListWin32>();
#endif
    if (!fonts) fonts = std::make_unique<MemoryFontList>();
    combo->Sorted = true;
  }
  std::vector<Text> Faces() {
    std::vector<Text> faces;
    fonts->EnumFamilies(*form, [&](TextView face) {
      faces.emplace_back(face);
      return true;
    });
    return faces;
  }

  std::unique_ptr<Desktop> desktop = NewDesktop(GetParam());
  std::unique_ptr<FontList> fonts;
  std::unique_ptr<Form> form = std::make_unique<Form>(*desktop, "frmAny");
  std::unique_ptr<ComboBox> combo = std::make_unique<ComboBox>(*form, "cmbFont");
};

TEST_P(FontListContract, EveryFaceHasANameThatFitsItsField) {
  const std::vector<Text> faces = Faces();
  EXPECT_FALSE(faces.empty());
  for (const Text& face : faces) {
    EXPECT_LE(face.size(), 32U);
    EXPECT_NE(face[0], u'\0');
  }
}

TEST_P(FontListContract, EnumerationEndsWhenTheVisitorSaysSo) {
  int visits = 0;
  fonts->EnumFamilies(*form, [&](TextView) { return ++visits < 2; });
  EXPECT_EQ(visits, 2);
}

TEST_P(FontListContract, AFailureOfTheVisitorComesOut) {
  EXPECT_THROW(fonts->EnumFamilies(*form, [](TextView) -> bool { throw RuntimeError::Overflow(); }),
               RuntimeError);
}

TEST_P(FontListContract, ALoadedFormHasTheSameFonts) {
  const std::vector<Text> before = Faces();
  form->Load();
  EXPECT_EQ(Faces(), before);
  form->Unload();
}

TEST_P(FontListContract, TheFilledListIsSortedAndEveryRowCanBeChosen) {
  FillFontList(*combo, *fonts);
  EXPECT_EQ(combo->ListCount(), static_cast<int>(Faces().size()));
  for (int row = 0; row < combo->ListCount(); ++row) {
    if (row > 0) {
      EXPECT_LE(FoldCase(combo->List(row - 1)), FoldCase(combo->List(row)));
    }
    EXPECT_EQ(combo->List(row).find(u'\0'), Text::npos);
    combo->SetText(combo->List(row));
    EXPECT_TRUE(SameText(combo->Text(), combo->List(row)));
  }
}

MARL_OVER_ALL_BACKENDS(FontListContract);

}  // namespace
}  // namespace marl
