#include "platform/WindowHooks.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryWindowHooks.h"
#include "tests/contract/Backends.h"
#ifdef _WIN32
#include "platform/win32/DesktopWin32.h"
#include "platform/win32/WindowHooksWin32.h"
#endif

namespace marl {
namespace {

constexpr std::uint32_t kMessage = 0x8001;  // private to the program

/// Windows with a procedure that records its messages and returns 77.
class HooksContract : public BackendTest {
 protected:
  using Message = MemoryWindowHooks::Message;

  HooksContract() {
#ifdef _WIN32
    if (real()) {
      WNDCLASSW plain = {};
      plain.lpfnWndProc = Remember;
      plain.hInstance = GetModuleHandleW(nullptr);
      plain.lpszClassName = L"MarlContractHooked";
      RegisterClassW(&plain);
      auto desktop = std::make_unique<win32::DesktopWin32>();
      hooks = std::make_unique<win32::WindowHooksWin32>(*desktop);
      desktop_ = std::move(desktop);
      return;
    }
#endif
    hooks = std::make_unique<MemoryWindowHooks>();
  }
  ~HooksContract() override {
#ifdef _WIN32
    for (const HWND window : windows_) DestroyWindow(window);
    UnregisterClassW(L"MarlContractHooked", GetModuleHandleW(nullptr));
#endif
  }

  MemoryWindowHooks& memory() { return static_cast<MemoryWindowHooks&>(*hooks); }

  WindowHandle NewWindow() {
#ifdef _WIN32
    if (real()) {
      windows_.push_back(CreateWindowExW(0, L"MarlContractHooked", L"", WS_OVERLAPPED, 0, 0, 9, 9,
                                         nullptr, nullptr, GetModuleHandleW(nullptr), nullptr));
      reached_.clear();
      return HandleToLong(windows_.back());
    }
#endif
    memory().windows.insert(++lastWindow_);
    return lastWindow_;
  }
  std::intptr_t Send(WindowHandle window, std::uint32_t message, std::uintptr_t wParam = 0,
                     std::intptr_t lParam = 0) {
#ifdef _WIN32
    if (real()) {
      return SendMessageW(static_cast<HWND>(LongToHandle(window)), message, wParam, lParam);
    }
#endif
    return memory().Send(window, message, wParam, lParam);
  }
  /// Messages that reached the window's own procedure since the last call.
  std::vector<Message> Reached() {
    std::vector<Message> reached;
#ifdef _WIN32
    if (real()) {
      reached.swap(reached_);
      return reached;
    }
#endif
    reached.swap(memory().reached);
    return reached;
  }

  std::unique_ptr<WindowHooks> hooks;

 private:
  WindowHandle lastWindow_ = 500;
  std::unique_ptr<Desktop> desktop_;
#ifdef _WIN32
  static LRESULT CALLBACK Remember(HWND window, UINT message, WPARAM w, LPARAM l) noexcept {
    if (message < 0x8000) return DefWindowProcW(window, message, w, l);
    reached_.push_back({HandleToLong(window), message, w, l});
    return 77;
  }
  inline static std::vector<Message> reached_;
  std::vector<HWND> windows_;
#endif
};
MARL_OVER_ALL_BACKENDS(HooksContract);

/// Records its messages and returns what the test sets.
struct Listener : MessageListener {
  std::vector<MemoryWindowHooks::Message> heard;
  std::function<std::intptr_t(const MemoryWindowHooks::Message&)> answer;
  std::intptr_t OnMessage(WindowHandle window, std::uint32_t message, std::uintptr_t wParam,
                          std::intptr_t lParam) override {
    if (message < 0x8000) return 0;
    heard.push_back({window, message, wParam, lParam});
    return answer ? answer(heard.back()) : 5;
  }
};

TEST_P(HooksContract, NameHasOneNumberWhateverItsCase) {
  const std::uint32_t number = hooks->RegisterMessage("MarlContractMessage");
  EXPECT_GE(number, 0xC000u);
  EXPECT_LE(number, 0xFFFFu);
  EXPECT_EQ(hooks->RegisterMessage("MarlContractMessage"), number);
  EXPECT_EQ(hooks->RegisterMessage("MARLcontractMESSAGE"), number);
  EXPECT_NE(hooks->RegisterMessage("MarlContractMessage2"), number);
}

TEST_P(HooksContract, NameOfNothingOrTooLongHasNoNumber) {
  EXPECT_EQ(hooks->RegisterMessage(""), 0u);
  EXPECT_EQ(hooks->RegisterMessage(std::string(256, 'x')), 0u);
  EXPECT_NE(hooks->RegisterMessage(std::string(255, 'x')), 0u);
}

TEST_P(HooksContract, ListenerHearsFirstAndGivesTheResult) {
  const WindowHandle window = NewWindow();
  EXPECT_EQ(Send(window, kMessage), 77);
  EXPECT_EQ(Reached(), std::vector<Message>({{window, kMessage, 0, 0}}));
  Listener listener;
  const ProcAddress previous = hooks->Replace(window, listener);
  ASSERT_NE(previous, 0);
  EXPECT_EQ(Send(window, kMessage, 2, -3), 5);
  EXPECT_EQ(listener.heard, std::vector<Message>({{window, kMessage, 2, -3}}));
  EXPECT_EQ(Reached(), std::vector<Message>());
  hooks->PutBack(window, previous);
}

TEST_P(HooksContract, MessageIsHandedOnToTheProcedureBefore) {
  const WindowHandle window = NewWindow();
  Listener listener;
  const ProcAddress previous = hooks->Replace(window, listener);
  listener.answer = [&](const Message& message) {
    return 1 + hooks->Call(previous, message.window, message.message + 1, message.wParam,
                           message.lParam);
  };
  EXPECT_EQ(Send(window, kMessage, 2, -3), 78);
  EXPECT_EQ(Reached(), std::vector<Message>({{window, kMessage + 1, 2, -3}}));
  EXPECT_EQ(listener.heard.size(), 1u);
  EXPECT_EQ(hooks->Call(0, window, kMessage, 0, 0), 0) << "without one nothing happens";
  EXPECT_EQ(Reached(), std::vector<Message>());
  hooks->PutBack(window, previous);
}

TEST_P(HooksContract, ListenerThatIsPutBackHearsNoMore) {
  const WindowHandle window = NewWindow();
  auto listener = std::make_unique<Listener>();
  const ProcAddress previous = hooks->Replace(window, *listener);
  hooks->PutBack(window, previous);
  listener.reset();
  EXPECT_EQ(Send(window, kMessage), 77);
  EXPECT_EQ(Reached().size(), 1u);
  Listener second;
  ASSERT_EQ(hooks->Replace(window, second), previous) << "and the place is free again";
  EXPECT_EQ(Send(window, kMessage), 5);
  hooks->PutBack(window, previous);
}

TEST_P(HooksContract, ListenerMayPutItselfBack) {
  const WindowHandle window = NewWindow();
  Listener listener;
  const ProcAddress previous = hooks->Replace(window, listener);
  listener.answer = [&](const Message& message) {
    hooks->PutBack(message.window, previous);
    return hooks->Call(previous, message.window, message.message, 0, 0);
  };
  EXPECT_EQ(Send(window, kMessage), 77);
  EXPECT_EQ(Send(window, kMessage), 77);
  EXPECT_EQ(listener.heard.size(), 1u);
  EXPECT_EQ(Reached().size(), 2u);
}

TEST_P(HooksContract, EachWindowHasItsOwn) {
  const WindowHandle first = NewWindow();
  const WindowHandle second = NewWindow();
  Listener listener;
  const ProcAddress previous = hooks->Replace(first, listener);
  EXPECT_EQ(Send(second, kMessage), 77);
  EXPECT_TRUE(listener.heard.empty());
  EXPECT_EQ(Send(first, kMessage), 5);
  hooks->PutBack(first, previous);
}

TEST_P(HooksContract, NoWindowHasNoProcedure) {
  NewWindow();
  Listener listener;
  EXPECT_EQ(hooks->Replace(0x7FFFFFF0, listener), 0);
  EXPECT_EQ(hooks->Replace(0, listener), 0);
  hooks->PutBack(0x7FFFFFF0, 1);
  EXPECT_TRUE(listener.heard.empty());
}

}  // namespace
}  // namespace marl
