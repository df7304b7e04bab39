#include "tests/desktop/Component.h"

#include <array>
#include <fstream>

namespace marl::desktop {

namespace {

constexpr wchar_t kCallsVariable[] = L"MARL_TEST_CALLS";

/// A new class id for each registration.
std::wstring NextClass() {
  static int number = 0;
  std::array<wchar_t, 48> id = {};
  swprintf(id.data(), id.size(), L"{7B0C7C5E-53B5-4B6B-9C63-0E1D5A6F%04X}", ++number);
  return id.data();
}

}  // namespace

RegisteredComponent::RegisteredComponent(const std::wstring& name, const std::wstring& library)
    : RegisteredComponent(name, library, NextClass()) {}

RegisteredComponent::RegisteredComponent(const std::wstring& name, const std::wstring& library,
                                         const std::wstring& id)
    : program_(name, name),
      programClass_(name + L"\\CLSID", id),
      class_(L"CLSID\\" + id, name),
      server_(L"CLSID\\" + id + L"\\InprocServer32", library) {}

std::wstring RegisteredComponent::Library() {
  std::array<wchar_t, MAX_PATH> path = {};
  GetModuleFileNameW(nullptr, path.data(), MAX_PATH);
  const std::wstring own = path.data();
  return own.substr(0, own.rfind(L'\\') + 1) + L"suite_component.dll";
}

ComponentCalls::ComponentCalls(const SuiteFolder& suite) : record_(suite.temp() + L"\\calls.bin") {
  SetEnvironmentVariableW(kCallsVariable, record_.c_str());
}

ComponentCalls::~ComponentCalls() { SetEnvironmentVariableW(kCallsVariable, nullptr); }

std::vector<std::wstring> ComponentCalls::All() const {
  std::ifstream file(record_.c_str(), std::ios::binary);
  std::vector<std::wstring> calls(1);
  wchar_t unit = 0;
  while (file.read(reinterpret_cast<char*>(&unit), sizeof unit)) {
    if (unit) {
      calls.back() += unit;
    } else {
      calls.emplace_back();
    }
  }
  calls.pop_back();
  return calls;
}

std::vector<std::wstring> ComponentCalls::WaitFor(std::size_t count) const {
  WaitUntil([&] { return All().size() >= count; });
  return All();
}

}  // namespace marl::desktop
