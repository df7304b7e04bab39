// Lifetime of windows: a window is destroyed with its owner, and its form is notified.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/forms/Controls.h"
#include "platform/forms/Form.h"
#include "platform/memory/MemoryDesktop.h"
#include "tests/contract/Backends.h"
#ifdef _WIN32
#include "platform/win32/DesktopWin32.h"
#endif

namespace marl {
namespace {

class PlainForm : public Form {
 public:
  PlainForm(Desktop& desktop, const char* name, bool endsProgram = false) : Form(desktop, name) {
    Design = {3000, 1500};
    EndsProgram = endsProgram;
    ShowInTaskbar = endsProgram;
  }

  CommandButton button{*this, "cmdButton"};
  int unloads = 0;
  int ends = 0;
  int activations = 0;

 protected:
  void OnUnload() override { ++unloads; }
  void OnEnded() override { ++ends; }
  void OnActivate() override { ++activations; }
};

#ifdef _WIN32
/// A desktop whose process does not end, so that the test can go on.
class LastingDesktop : public win32::DesktopWin32 {
 protected:
  void Ended() override {}
};

HWND WindowOf(const Form& form) { return static_cast<HWND>(LongToHandle(form.hWnd())); }
#endif

class LifetimeContract : public BackendTest {
 protected:
  LifetimeContract() {
#ifdef _WIN32
    if (real()) desktop = std::make_unique<LastingDesktop>();
#endif
    if (!desktop) desktop = std::make_unique<MemoryDesktop>();
    main = std::make_unique<PlainForm>(*desktop, "frmMain", true);
    first = std::make_unique<PlainForm>(*desktop, "frmFirst");
    second = std::make_unique<PlainForm>(*desktop, "frmSecond");
  }
  ~LifetimeContract() override {
    second.reset();
    first.reset();
    main.reset();
  }

  /// Shows the form modally, acts once it is shown, and returns when the event has ended. Code
  /// after the modal call sets `wentOn`.
  void ShowModal(PlainForm& form, Form* owner, const std::function<void()>& act) {
    Arrange(form, act);
    desktop->Event([&] {
      form.ShowModal(owner);
      wentOn.push_back(form.name());
    });
  }

  /// The platform asks the window to close.
  void Close(Form& form) {
#ifdef _WIN32
    if (real()) {
      SendMessageW(WindowOf(form), WM_CLOSE, 0, 0);
      return;
    }
#endif
    desktop->Event([&] { form.UserClose(); });
  }
  void EndSession(Form& form) {
#ifdef _WIN32
    if (real()) {
      SendMessageW(WindowOf(form), WM_ENDSESSION, TRUE, 0);
      return;
    }
#endif
    form.desktop().EndSession(true);
  }
  /// Asks whether the session may end, and says that it does not after all.
  bool AskForTheEnd(Form& form) {
#ifdef _WIN32
    if (real()) {
      const LRESULT answer = SendMessageW(WindowOf(form), WM_QUERYENDSESSION, 0, 0);
      EXPECT_EQ(SendMessageW(WindowOf(form), WM_QUERYENDSESSION, 0, ENDSESSION_CLOSEAPP), answer)
          << "an installer's question";
      SendMessageW(WindowOf(form), WM_ENDSESSION, FALSE, 0);
      return answer == TRUE;
    }
#endif
    const bool answer = form.desktop().MayEndSession();
    form.desktop().EndSession(false);
    return answer;
  }
  /// The platform destroys the window.
  void Destroy(Form& form) {
#ifdef _WIN32
    if (real()) {
      DestroyWindow(WindowOf(form));
      return;
    }
#endif
    static_cast<MemoryPeer*>(form.peer())->Destroy();
  }
  void ExpectGone(const Form& form) const {
    EXPECT_FALSE(form.loaded()) << form.name();
    EXPECT_FALSE(form.Visible()) << form.name();
    EXPECT_EQ(form.hWnd(), 0) << form.name();
    for (const Form* loaded : desktop->forms()) EXPECT_NE(loaded, &form);
  }

  std::unique_ptr<Desktop> desktop;
  std::unique_ptr<PlainForm> main;
  std::unique_ptr<PlainForm> first;
  std::unique_ptr<PlainForm> second;
  std::vector<std::string> wentOn;

 private:
  void Arrange(PlainForm& form, const std::function<void()>& act) {
#ifdef _WIN32
    if (real()) {
      g_acts[SetTimer(nullptr, 0, 1, Act)] = {&form, act};
      return;
    }
#endif
    static_cast<MemoryDesktop&>(*desktop).whenModal[form.name()] = [act](Form&) { act(); };
  }
#ifdef _WIN32
  struct Scheduled {
    Form* form;
    std::function<void()> act;
  };
  static void CALLBACK Act(HWND, UINT, UINT_PTR timer, DWORD) {
    const auto found = g_acts.find(timer);
    if (found == g_acts.end() || !found->second.form->Visible()) return;
    const auto act = std::move(found->second.act);
    g_acts.erase(found);
    KillTimer(nullptr, timer);
    act();
  }
  inline static std::map<UINT_PTR, Scheduled> g_acts;
#endif
};

TEST_P(LifetimeContract, WindowGoesWithItsOwner) {
  main->Show();
  first->Show();
  second->Show();
  EXPECT_EQ(desktop->OwnerFor(*main), nullptr);
  const WindowHandle handle = first->hWnd();
  EXPECT_NE(handle, 0);
  desktop->Event([&] { first->Unload(); });
  ExpectGone(*first);
  ExpectGone(*second);
  EXPECT_EQ(second->unloads, 1);
  EXPECT_TRUE(main->loaded());
  EXPECT_FALSE(desktop->ended());
}

TEST_P(LifetimeContract, FormCanBeLoadedAgainAfterItLostItsWindow) {
  main->Show();
  first->Show();
  second->Show();
  desktop->Event([&] { first->Unload(); });
  second->Show();
  EXPECT_TRUE(second->loaded());
  EXPECT_NE(second->hWnd(), 0);
  ShowModal(*first, main.get(), [&] { desktop->Event([&] { first->Hide(); }); });
  EXPECT_EQ(wentOn, std::vector<std::string>{"frmFirst"});
}

TEST_P(LifetimeContract, FrameOfASplashOwnsNothing) {
  main->Load();
  first->Border = BorderStyle::kNone;
  first->Show();
  EXPECT_EQ(desktop->OwnerFor(*first), main.get()) << "although it is hidden";
  second->Show();
  EXPECT_EQ(desktop->OwnerFor(*second), nullptr);
  desktop->Event([&] { first->Unload(); });
  EXPECT_TRUE(second->loaded());
}

TEST_P(LifetimeContract, ModalFormThatLosesItsWindowEndsItsEvent) {
  main->Show();
  first->Show();
  ShowModal(*second, first.get(), [&] { desktop->Event([&] { first->Unload(); }); });
  ExpectGone(*second);
  EXPECT_EQ(wentOn, std::vector<std::string>());
  EXPECT_FALSE(desktop->ended());
  bool next = false;
  desktop->Event([&] { next = true; });
  EXPECT_TRUE(next);
  EXPECT_TRUE(main->peer()->TakesInput()) << "it accepts input again";
}

TEST_P(LifetimeContract, ModalFormNoticesItsDestroyedWindow) {
  main->Show();
  ShowModal(*first, main.get(), [&] { Destroy(*first); });
  ExpectGone(*first);
  EXPECT_EQ(first->unloads, 1);
  EXPECT_EQ(wentOn, std::vector<std::string>());
  EXPECT_FALSE(desktop->ended());
  EXPECT_TRUE(main->peer()->TakesInput());
}

TEST_P(LifetimeContract, DialogBehindAnotherCannotBeClosed) {
  main->Show();
  ShowModal(*first, main.get(), [&] {
    ShowModal(*second, first.get(), [&] {
      EXPECT_FALSE(main->peer()->TakesInput());
      EXPECT_FALSE(first->peer()->TakesInput());
      EXPECT_TRUE(second->peer()->TakesInput());
      Close(*first);
      EXPECT_TRUE(first->Visible());
      EXPECT_TRUE(second->Visible());
      Close(*second);
    });
    ExpectGone(*second);
    Close(*first);
  });
  ExpectGone(*first);
  EXPECT_EQ(wentOn, (std::vector<std::string>{"frmSecond", "frmFirst"}));
  EXPECT_TRUE(main->loaded());
}

TEST_P(LifetimeContract, ProgramCanExitBehindTwoDialogs) {
  main->Show();
  ShowModal(*first, main.get(), [&] { ShowModal(*second, first.get(), [&] { Close(*main); }); });
  EXPECT_TRUE(desktop->ended());
  EXPECT_EQ(desktop->exitCode(), 0);
  EXPECT_EQ(main->unloads, 1);
  EXPECT_EQ(first->unloads + second->unloads, 0) << "nothing of a dialog is done any more";
  EXPECT_EQ(wentOn, std::vector<std::string>());
  for (const Form* form : {main.get(), first.get(), second.get()}) ExpectGone(*form);
}

TEST_P(LifetimeContract, SessionEndsTheProgramWhicheverFormHearsOfItFirst) {
  main->Show();
  ShowModal(*first, main.get(), [&] { EndSession(*first); });
  EXPECT_TRUE(desktop->ended());
  EXPECT_EQ(main->unloads, 1);
  EXPECT_EQ(first->unloads, 0);
  EXPECT_EQ(wentOn, std::vector<std::string>());
}

TEST_P(LifetimeContract, EveryFormAgreesAtOnceToTheEndOfTheSession) {
  main->Load();
  EXPECT_TRUE(AskForTheEnd(*main)) << "before it is shown";
  main->Show();
  ShowModal(*first, main.get(), [&] {
    EXPECT_TRUE(AskForTheEnd(*main)) << "behind a dialog";
    EXPECT_TRUE(AskForTheEnd(*first));
    EXPECT_TRUE(first->Visible());
    desktop->Event([&] { first->Hide(); });
  });
  EXPECT_EQ(wentOn, std::vector<std::string>{"frmFirst"}) << "nothing has ended";
  EXPECT_FALSE(desktop->ended());
  desktop->End(1);
  EXPECT_TRUE(AskForTheEnd(*main)) << "behind the last message";
  EXPECT_EQ(main->unloads, 0);
}

TEST_P(LifetimeContract, EndOfTheSessionBehindTheLastMessageUnloadsNothing) {
  main->Show();
  desktop->End(3);
  EndSession(*main);
  EXPECT_EQ(desktop->exitCode(), 3);
  EXPECT_EQ(main->unloads, 0);
}

TEST_P(LifetimeContract, NoHandlerRunsWhileTheMainFormGoes) {
  main->Show();
  first->Show();
  second->Show();
  const int before = main->activations + first->activations + second->activations;
  Close(*main);
  EXPECT_TRUE(desktop->ended());
  EXPECT_EQ(main->activations + first->activations + second->activations, before);
  ExpectGone(*first);
  ExpectGone(*second);
}

TEST_P(LifetimeContract, MainFormThatLosesItsWindowUnloadsOnceAndEndsTheProgram) {
  main->Show();
  first->Show();
  Destroy(*main);
  EXPECT_TRUE(desktop->ended());
  EXPECT_EQ(desktop->exitCode(), 0);
  EXPECT_EQ(main->unloads, 1);
  ExpectGone(*main);
  ExpectGone(*first);
}

TEST_P(LifetimeContract, EndWithoutUnloadLetsFormsReleaseWhatTheSystemWouldKeep) {
  main->Show();
  desktop->Event([] { throw ProcessEnd{3}; });
  EXPECT_TRUE(desktop->ended());
  EXPECT_EQ(desktop->exitCode(), 3);
  EXPECT_EQ(main->unloads, 0);
  EXPECT_EQ(main->ends, 1);
}

#ifdef _WIN32
TEST(LifetimeWin32, WindowsStillPaintBehindTheLastMessage) {
  LastingDesktop desktop;
  PlainForm main(desktop, "frmMain", true);
  main.Show();
  desktop.End(1);
  const HWND window = WindowOf(main);
  InvalidateRect(window, nullptr, TRUE);
  UpdateWindow(window);
  RECT left;
  EXPECT_FALSE(GetUpdateRect(window, &left, FALSE)) << "it would ask to be painted for ever";
  SendMessageW(window, WM_CLOSE, 0, 0);
  EXPECT_TRUE(IsWindow(window));
}

TEST(LifetimeWin32, RequestToQuitUnloadsTheMainForm) {
  LastingDesktop desktop;
  PlainForm main(desktop, "frmMain", true);
  main.Show();
  PostQuitMessage(5);
  EXPECT_EQ(desktop.Run(), 0);
  EXPECT_EQ(main.unloads, 1);
  EXPECT_TRUE(desktop.ended());
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
  }
}
#endif

MARL_OVER_ALL_BACKENDS(LifetimeContract);

}  // namespace
}  // namespace marl
