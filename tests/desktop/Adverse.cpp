#include "tests/desktop/Adverse.h"

#include <fstream>
#include <iterator>

namespace marl::desktop {

namespace {

HWND OfDialog(const RunningMarl& marl, const wchar_t* title) {
  return Dialog(marl, title).window();
}

/// Opens the options at a tab, by its access key, and presses the button there.
HWND FromOptions(const RunningMarl& marl, wchar_t tab, const wchar_t* button,
                 const wchar_t* title) {
  if (!marl.WaitForWindow() || !marl.PressMenu(L'O', L'O')) return nullptr;
  const Dialog options(marl, L"Options");
  if (!options || !WaitUntil([&] { return options.InFront(); })) return nullptr;
  Chord({VK_MENU}, static_cast<WORD>(tab));
  if (!WaitUntil([&] { return options.Button(button) != nullptr; })) return nullptr;
  return options.Press(button) ? OfDialog(marl, title) : nullptr;
}

HWND FromMenu(const RunningMarl& marl, wchar_t top, wchar_t entry, const wchar_t* title) {
  return marl.WaitForWindow() && marl.PressMenu(top, entry) ? OfDialog(marl, title) : nullptr;
}

HWND DisplaySettings(const RunningMarl& marl) {
  if (!BringForward(marl.WaitForWindow())) return nullptr;
  Keys(L"setgui");
  return OfDialog(marl, L"Display settings");
}

HWND SelectDocument(const SuiteFolder& suite, const RunningMarl& marl) {
  const std::wstring project = suite.temp() + L"\\job.qprx";
  WriteFileAt(project,
              "<project><language lc=\"fr\" description=\"French\"><document path=\"a.doc\"/>"
              "</language></project>");
  DdeClient client(DdeClient::Kind::kWide);
  if (!marl.WaitForWindow() || !client.Connect(L"Marl", L"Marl") ||
      !client.Execute(L"PRJ " + project)) {
    return nullptr;
  }
  return FromMenu(marl, L'T', L'P', L"Select language and file name");
}

}  // namespace

bool WriteFileAt(const std::wstring& path, const std::string& bytes) {
  std::ofstream file(path.c_str(), std::ios::binary | std::ios::trunc);
  file << bytes;
  file.flush();
  return file.good();
}

std::optional<std::string> ReadFileAt(const std::wstring& path) {
  std::ifstream file(path.c_str(), std::ios::binary);
  if (!file) return {};
  return std::string(std::istreambuf_iterator<char>(file), {});
}

const std::vector<OpenForm>& OpenForms() {
  static const std::vector<OpenForm> forms = {
      {"Main", [](const SuiteFolder&, const RunningMarl& marl) { return marl.WaitForWindow(); }},
      {"Splash",
       [](const SuiteFolder&, const RunningMarl& marl) {
         HWND splash = nullptr;
         WaitUntil([&] { return (splash = marl.Splash()) != nullptr || !marl.Running(); });
         return splash;
       }},
      {"Options", [](const SuiteFolder&,
                     const RunningMarl& marl) { return FromMenu(marl, L'O', L'O', L"Options"); }},
      {"DisplaySettings",
       [](const SuiteFolder&, const RunningMarl& marl) { return DisplaySettings(marl); }},
      {"Font",
       [](const SuiteFolder&, const RunningMarl& marl) {
         if (!DisplaySettings(marl)) return HWND{};
         const Dialog display(marl, L"Display settings");
         return display.Press(L"Normal...") ? OfDialog(marl, L"Set Font") : nullptr;
       }},
      {"Server",
       [](const SuiteFolder&, const RunningMarl& marl) {
         return FromMenu(marl, L'P', L'S', L"Change server");
       }},
      {"LanSettings",
       [](const SuiteFolder&, const RunningMarl& marl) {
         return FromOptions(marl, L'L', L"L&AN settings...", L"Local Area Network (LAN) Settings");
       }},
      {"Segmentation",
       [](const SuiteFolder&, const RunningMarl& marl) {
         return FromOptions(marl, L'G', L"Segmentation &rules...", L"Segmentation rules");
       }},
      {"SelectFile", SelectDocument},
      {"About", [](const SuiteFolder&,
                   const RunningMarl& marl) { return FromMenu(marl, L'H', L'A', L"About Marl"); }},
  };
  return forms;
}

testing::AssertionResult Adverse::Works(const SuiteFolder& suite, const wchar_t* leave,
                                        const std::wstring& program) {
  const RunningMarl marl(suite, {}, program);
  const HWND main = marl.WaitForWindow();
  if (!main) {
    return testing::AssertionFailure() << "it does not come up; exit code "
                                       << (marl.Running() ? 0 : marl.WaitForExit().value_or(0))
                                       << ' ' << ToUtf8(marl.Box().Text());
  }
  if (!marl.PressMenu(L'O', L'O')) return testing::AssertionFailure() << "no menu";
  const Dialog options(marl, L"Options");
  if (!options) return testing::AssertionFailure() << "no options";
  if (!options.Leave(leave)) return testing::AssertionFailure() << "the options stay";
  if (!WaitUntil([&] { return IsWindowEnabled(main) != FALSE; })) {
    return testing::AssertionFailure() << ToUtf8(marl.Box().Text());
  }
  return Close(marl);
}

std::wstring Adverse::Outcome(const SuiteFolder& suite, const wchar_t* leave) {
  const RunningMarl marl(suite);
  HWND main = nullptr;
  const auto comesTo = [&](const std::function<bool()>& holds) {
    return WaitUntil([&] {
      marl.DismissSplash();
      main = marl.Window();
      return marl.Box() || !marl.Running() || holds();
    });
  };
  const auto ended = [&]() -> std::wstring {
    const MessageBoxWindow box = marl.Box();
    if (!box) return L"!no message";
    const std::wstring text = box.Text();
    if (!box.Press(IDOK)) return L"!the message stays: " + text;
    const auto code = marl.WaitForExit();
    if (code != 1u) return L"!exit code " + std::to_wstring(code.value_or(0)) + L": " + text;
    return text;
  };
  const auto well = [&] { return marl.Running() && !marl.Box(); };
  if (!comesTo([&] { return main && IsWindowVisible(main); })) return L"!it does not come up";
  if (!well()) return ended();
  PostMessageW(main, WM_NULL, 0, 0);
  if (!BringForward(main)) return L"!it does not come to the front";
  Chord({VK_SHIFT}, VK_F6);
  HWND options = nullptr;
  if (!comesTo([&] { return (options = marl.Window(L"MarlForm", L"Options")) != nullptr; })) {
    return L"!no options";
  }
  if (!well()) return ended();
  const HWND button = Dialog(marl, L"Options").Button(leave);
  if (!button) return L"!no button";
  // Over the middle of a very wide form, the dialog is beside the screen.
  PostMessageW(button, BM_CLICK, 0, 0);
  if (!comesTo([&] { return IsWindowEnabled(main) != FALSE; })) return L"!the options stay";
  if (!well()) return ended();
  return Close(marl) ? std::wstring() : L"!it does not end well";
}

testing::AssertionResult Adverse::Ends(const RunningMarl& marl, const std::wstring& text) {
  const MessageBoxWindow box = marl.WaitForBox();
  if (!box) return testing::AssertionFailure() << "there is no message";
  if (box.Text() != text) return testing::AssertionFailure() << ToUtf8(box.Text());
  if (!box.Press(IDOK)) return testing::AssertionFailure() << "the message stays";
  if (marl.WaitForExit() != 1u) return testing::AssertionFailure() << "another exit code";
  return testing::AssertionSuccess();
}

std::vector<std::wstring> Adverse::Temporary(const SuiteFolder& suite) {
  std::vector<std::wstring> names;
  for (const auto& [path, state] : suite.Files()) {
    if (path.starts_with(suite.temp())) names.push_back(path);
  }
  return names;
}

testing::AssertionResult Adverse::BackToMain(const RunningMarl& marl) {
  const HWND main = marl.Window();
  HWND closing = nullptr;
  const bool back = WaitUntil([&] {
    if (!marl.Running() || IsWindowEnabled(main)) return true;
    const HWND front = FindWindowOf(marl.id(), [&](HWND window) {
      return window != main && IsWindowVisible(window) && IsWindowEnabled(window) &&
             (ClassOf(window) == L"MarlForm" || ClassOf(window) == kPlatformDialog);
    });
    if (!front || front == closing) return false;
    closing = front;
    PostMessageW(front, WM_CLOSE, 0, 0);
    return false;
  });
  if (!back) return testing::AssertionFailure() << "a dialog stays: " << ToUtf8(TextOf(closing));
  return testing::AssertionSuccess();
}

}  // namespace marl::desktop
