#pragma once

#include <string>
#include <vector>

#include "tests/desktop/Harness.h"

namespace marl::desktop {

/// Registers the component that is built with the tests, under one of the suite's names, while this
/// lives.
class RegisteredComponent {
 public:
  /// `name` is its ProgID, such as "Marl.QaComponent"; `library` is its file.
  explicit RegisteredComponent(const std::wstring& name, const std::wstring& library = Library());
  bool made() const { return server_.made() && programClass_.made(); }

  static std::wstring Library();

 private:
  RegisteredComponent(const std::wstring& name, const std::wstring& library,
                      const std::wstring& id);

  // In the order of creation; deleted in reverse.
  ClassKey program_;
  ClassKey programClass_;
  ClassKey class_;
  ClassKey server_;
};

/// While this lives, the component provides lists of languages and code pages to programs that are
/// started: "Own \u00fc \u4e2d" with the code "x-own", and "Other" with "fr".
class ComponentLanguages {
 public:
  ComponentLanguages() { SetEnvironmentVariableW(kVariable, L"1"); }
  ~ComponentLanguages() { SetEnvironmentVariableW(kVariable, nullptr); }
  ComponentLanguages(const ComponentLanguages&) = delete;
  ComponentLanguages& operator=(const ComponentLanguages&) = delete;

 private:
  static constexpr wchar_t kVariable[] = L"MARL_TEST_LANGUAGES";
};

/// Records the calls of components in programs that are started while this lives.
class ComponentCalls {
 public:
  explicit ComponentCalls(const SuiteFolder& suite);
  ~ComponentCalls();
  ComponentCalls(const ComponentCalls&) = delete;
  ComponentCalls& operator=(const ComponentCalls&) = delete;

  /// All calls so far, such as "Marl.QaComponent.Run(1)".
  std::vector<std::wstring> All() const;
  /// The same, once there are at least `count` of them or the deadline has passed.
  std::vector<std::wstring> WaitFor(std::size_t count) const;

 private:
  std::wstring record_;
};

}  // namespace marl::desktop
