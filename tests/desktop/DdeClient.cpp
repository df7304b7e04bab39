#include "tests/desktop/DdeClient.h"

#include <dde.h>

#include <cstdlib>
#include <cstring>

#include "tests/desktop/Desktop.h"

namespace marl::desktop {

namespace {

HDDEDATA CALLBACK ClientCallback(UINT, UINT, HCONV, HSZ, HSZ, HDDEDATA, ULONG_PTR, ULONG_PTR) {
  return nullptr;
}

}  // namespace

DdeClient::DdeClient(Kind kind) : kind_(kind) {
  if (kind == Kind::kWide) {
    DdeInitializeW(&instance_, ClientCallback, APPCMD_CLIENTONLY, 0);
  } else {
    DdeInitializeA(&instance_, ClientCallback, APPCMD_CLIENTONLY, 0);
  }
}

DdeClient::~DdeClient() {
  if (conversation_) DdeDisconnect(conversation_);
  if (instance_) DdeUninitialize(instance_);
}

bool DdeClient::Connect(const std::wstring& service, const std::wstring& topic) {
  const HSZ serviceName = DdeCreateStringHandleW(instance_, service.c_str(), CP_WINUNICODE);
  const HSZ topicName = DdeCreateStringHandleW(instance_, topic.c_str(), CP_WINUNICODE);
  conversation_ = DdeConnect(instance_, serviceName, topicName, nullptr);
  if (!conversation_) error_ = DdeGetLastError(instance_);
  DdeFreeStringHandle(instance_, topicName);
  DdeFreeStringHandle(instance_, serviceName);
  return conversation_ != nullptr;
}

bool DdeClient::Execute(const std::wstring& command) {
  std::vector<BYTE> bytes;
  if (kind_ == Kind::kWide) {
    const auto* const from = reinterpret_cast<const BYTE*>(command.c_str());
    bytes.assign(from, from + (command.size() + 1) * sizeof(wchar_t));
  } else {
    const int needed =
        WideCharToMultiByte(CP_ACP, 0, command.c_str(), -1, nullptr, 0, nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(needed));
    WideCharToMultiByte(CP_ACP, 0, command.c_str(), -1, reinterpret_cast<char*>(bytes.data()),
                        needed, nullptr, nullptr);
  }
  return ExecuteBytes(bytes);
}

bool DdeClient::ExecuteBytes(const std::vector<BYTE>& bytes) {
  std::vector<BYTE> data = bytes;
  const HDDEDATA result =
      DdeClientTransaction(data.data(), static_cast<DWORD>(data.size()), conversation_, nullptr, 0,
                           XTYP_EXECUTE, static_cast<DWORD>(kDeadline.count()), nullptr);
  error_ = result ? DMLERR_NO_ERROR : DdeGetLastError(instance_);
  return result != nullptr;
}

bool DdeClient::Transact(UINT type, UINT format, const std::vector<BYTE>& bytes) {
  const HSZ item = DdeCreateStringHandleW(instance_, L"Project", CP_WINUNICODE);
  std::vector<BYTE> data = bytes;
  const bool sends = type == XTYP_POKE;
  // Some versions of Wine leave these without an answer.
  constexpr DWORD kPatience = 300;
  const HDDEDATA result = DdeClientTransaction(
      sends ? data.data() : nullptr, sends ? static_cast<DWORD>(data.size()) : 0, conversation_,
      item, format, type, kPatience, nullptr);
  error_ = result ? DMLERR_NO_ERROR : DdeGetLastError(instance_);
  DdeFreeStringHandle(instance_, item);
  return result != nullptr;
}

void DdeClient::Abandon(const std::wstring& command) {
  std::vector<BYTE> data((command.size() + 1) * sizeof(wchar_t));
  std::memcpy(data.data(), command.c_str(), data.size());
  DWORD transaction = 0;
  DdeClientTransaction(data.data(), static_cast<DWORD>(data.size()), conversation_, nullptr, 0,
                       XTYP_EXECUTE, TIMEOUT_ASYNC, &transaction);
  DdeAbandonTransaction(instance_, conversation_, transaction);
  conversation_ = nullptr;
}

namespace {

/// A copy in memory that the platform hands over.
HGLOBAL Global(const void* bytes, std::size_t size) {
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE, size);
  if (!memory) return nullptr;
  if (void* const to = GlobalLock(memory)) {
    std::memcpy(to, bytes, size);
    GlobalUnlock(memory);
  }
  return memory;
}

}  // namespace

RawDdeClient::RawDdeClient() {
  constexpr wchar_t kClass[] = L"MarlTestDdeClient";
  WNDCLASSW window = {};
  window.lpfnWndProc = Entry;
  window.hInstance = GetModuleHandleW(nullptr);
  window.lpszClassName = kClass;
  RegisterClassW(&window);
  window_ = CreateWindowExW(0, kClass, nullptr, WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                            window.hInstance, nullptr);
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

RawDdeClient::~RawDdeClient() { DestroyWindow(window_); }

LRESULT CALLBACK RawDdeClient::Entry(HWND window, UINT message, WPARAM w, LPARAM l) {
  auto* const self = reinterpret_cast<RawDdeClient*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (self && message == WM_DDE_ACK && !self->server_) {
    self->server_ = reinterpret_cast<HWND>(w);
    return 0;
  }
  return DefWindowProcW(window, message, w, l);
}

BOOL CALLBACK RawDdeClient::Offer(HWND window, LPARAM self) {
  const auto* const client = reinterpret_cast<const RawDdeClient*>(self);
  const ATOM name = GlobalFindAtomW(L"Marl");
  DWORD_PTR answer = 0;
  constexpr UINT kPatience = 5000;
  SendMessageTimeoutW(window, WM_DDE_INITIATE, reinterpret_cast<WPARAM>(client->window_),
                      MAKELPARAM(name, name), SMTO_ABORTIFHUNG, kPatience, &answer);
  return client->server_ == nullptr;
}

bool RawDdeClient::Connect() {
  const ATOM name = GlobalAddAtomW(L"Marl");
  EnumWindows(Offer, reinterpret_cast<LPARAM>(this));
  GlobalDeleteAtom(name);
  return server_ != nullptr;
}

void RawDdeClient::Post(UINT message, LPARAM parameter) {
  PostMessageW(server_, message, reinterpret_cast<WPARAM>(window_), parameter);
}

void RawDdeClient::PostExecute(const std::vector<BYTE>& bytes) {
  const HGLOBAL memory = Global(bytes.data(), bytes.size());
  Post(WM_DDE_EXECUTE, reinterpret_cast<LPARAM>(memory));
}

void RawDdeClient::PostData(UINT message, WORD format, const std::vector<BYTE>& bytes) {
  // The flags and the format come first, in each of the three.
  std::vector<BYTE> data(2 * sizeof(WORD));
  std::memcpy(data.data() + sizeof(WORD), &format, sizeof format);
  data.insert(data.end(), bytes.begin(), bytes.end());
  const HGLOBAL memory = Global(data.data(), data.size());
  const ATOM item = GlobalAddAtomW(L"Project");
  Post(message, PackDDElParam(message, reinterpret_cast<UINT_PTR>(memory), item));
}

void DieInConversation() {
  DdeClient client(DdeClient::Kind::kWide);
  if (client.Connect(L"Marl", L"Marl")) client.Abandon(L"PRJ C:\\dying.qprx");
  TerminateProcess(GetCurrentProcess(), 0);
  std::abort();
}

}  // namespace marl::desktop
