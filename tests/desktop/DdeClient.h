#pragma once

#include <windows.h>
#include <ddeml.h>

#include <string>
#include <vector>

namespace marl::desktop {

/// A DDE client, wide or 8-bit.
class DdeClient {
 public:
  enum class Kind { kWide, kNarrow };
  explicit DdeClient(Kind kind);
  ~DdeClient();
  DdeClient(const DdeClient&) = delete;
  DdeClient& operator=(const DdeClient&) = delete;

  bool Connect(const std::wstring& service, const std::wstring& topic);
  /// Sends one execute command, with its NUL. True when it was acknowledged.
  bool Execute(const std::wstring& command);
  /// Sends these bytes unchanged.
  bool ExecuteBytes(const std::vector<BYTE>& bytes);
  /// Any other transaction: its type (XTYP_POKE and so on), clipboard format and data. True when
  /// the server took part.
  bool Transact(UINT type, UINT format, const std::vector<BYTE>& bytes);
  /// Sends a command and forgets the conversation without waiting for an answer.
  void Abandon(const std::wstring& command);
  /// The library's code for the last failure; DMLERR_NOTPROCESSED for a refused command.
  UINT lastError() const { return error_; }

 private:
  Kind kind_;
  DWORD instance_ = 0;
  HCONV conversation_ = nullptr;
  UINT error_ = DMLERR_NO_ERROR;
};

/// A DDE client without the library, which posts its messages itself, in any order.
class RawDdeClient {
 public:
  RawDdeClient();
  /// Its window goes without ending the conversation.
  ~RawDdeClient();
  RawDdeClient(const RawDdeClient&) = delete;
  RawDdeClient& operator=(const RawDdeClient&) = delete;

  /// Begins a conversation with the service and topic Marl. True if the server answered.
  bool Connect();
  /// Posts a message of DDE to the server.
  void Post(UINT message, LPARAM parameter);
  /// Posts an execute command with these bytes.
  void PostExecute(const std::vector<BYTE>& bytes);
  /// Posts data for an item: WM_DDE_POKE, WM_DDE_DATA or WM_DDE_ADVISE.
  void PostData(UINT message, WORD format, const std::vector<BYTE>& bytes);

 private:
  static LRESULT CALLBACK Entry(HWND window, UINT message, WPARAM w, LPARAM l);
  static BOOL CALLBACK Offer(HWND window, LPARAM self);
  HWND window_ = nullptr;
  HWND server_ = nullptr;
};

/// With this argument, the test program is a client that dies.
inline constexpr wchar_t kDyingClient[] = L"--dying-client";
/// Connects to the program, sends it a command, and ends this process in the middle of it.
[[noreturn]] void DieInConversation();

}  // namespace marl::desktop
