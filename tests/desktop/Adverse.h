#pragma once

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "tests/desktop/Dialog.h"
#include "tests/desktop/Switchboard.h"

// Shared by the tests of a hostile environment and of hostile neighbours. With MARL_FAULTS their
// runs are long.

namespace marl::desktop {

inline constexpr wchar_t kMarlKey[] = L"Software\\Oru\\Marl";

inline int Times(int few, int many) { return Environment(L"MARL_FAULTS").empty() ? few : many; }

bool WriteFileAt(const std::wstring& path, const std::string& bytes);
std::optional<std::string> ReadFileAt(const std::wstring& path);

/// A form of the program.
struct OpenForm {
  const char* name;
  /// Opens it as its user does, once the program has started; null if it does not open.
  std::function<HWND(const SuiteFolder&, const RunningMarl&)> open;
};
/// Every form that a user can open. The main form and the splash are the first two.
const std::vector<OpenForm>& OpenForms();

class Adverse : public SwitchboardTest {
 protected:
  // The options show the wizard as wanted unless it is refused, and store that.
  Adverse() { settings.Set(L"Wizard", L"N"); }

  /// Starts the program (the suite's if `program` is empty), opens its options, takes them over,
  /// and exits.
  static testing::AssertionResult Works(const SuiteFolder& suite, const wchar_t* leave = L"OK",
                                        const std::wstring& program = {});
  /// Does the same. Returns the text of the message with which the runtime ends the program;
  /// nothing if it works; what is wrong, after "!", in all other cases.
  static std::wstring Outcome(const SuiteFolder& suite, const wchar_t* leave = L"OK");
  /// The start ends with this message of the runtime.
  static testing::AssertionResult Ends(const RunningMarl& marl, const std::wstring& text);
  /// The files in the private temporary folder.
  static std::vector<std::wstring> Temporary(const SuiteFolder& suite);
  /// Closes the dialogs over the main form with Escape.
  static testing::AssertionResult BackToMain(const RunningMarl& marl);

  int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }
  DWORD Bits() { return static_cast<DWORD>(random_()); }

 private:
  std::mt19937 random_{20};
};

}  // namespace marl::desktop
