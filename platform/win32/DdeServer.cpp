#include "platform/win32/DdeServer.h"

// After <windows.h>.
#include <dde.h>

#include "platform/DdeCommand.h"
#include "platform/forms/Desktop.h"
#include "platform/forms/Form.h"
#include "platform/win32/Handle.h"

namespace marl::win32 {

namespace {

// The library's callback has no context argument, so there is one server per process.
DdeServer* g_server = nullptr;

Text FromCodePage(const NarrowText& text) {
  const int size = static_cast<int>(text.size());
  const int needed = MultiByteToWideChar(CP_ACP, 0, text.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(needed), L'\0');
  MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), needed);
  return FromWide(wide.data(), wide.size());
}

}  // namespace

DdeServer::DdeServer(Desktop& desktop, Form& form, TextView service, TextView topic)
    : desktop_(desktop), form_(form) {
  // For a server that runs as administrator: the library's windows are its own, so the whole
  // process is opened for the messages of conversations.
  for (UINT message = WM_DDE_FIRST; message <= WM_DDE_LAST; ++message) {
    ChangeWindowMessageFilter(message, MSGFLT_ADD);
  }
  DWORD instance = 0;
  if (DdeInitializeW(&instance, Entry,
                     APPCLASS_STANDARD | CBF_FAIL_POKES | CBF_FAIL_REQUESTS | CBF_FAIL_ADVISES |
                         CBF_SKIP_ALLNOTIFICATIONS,
                     0) != DMLERR_NO_ERROR) {
    return;
  }
  instance_ = UniqueConversations(instance);
  g_server = this;
  const auto make = [&](TextView text) {
    return UniqueConversationText(
        {instance, DdeCreateStringHandleW(instance, Wide(Text(text)), CP_WINUNICODE)});
  };
  service_ = make(service);
  topic_ = make(topic);
  DdeNameService(instance, service_.get().text, nullptr, DNS_REGISTER);
}

DdeServer::~DdeServer() {
  if (instance_) {
    DdeNameService(instance_.get(), service_.get().text, nullptr, DNS_UNREGISTER);
  }
  if (g_server == this) g_server = nullptr;
}

HDDEDATA CALLBACK DdeServer::Entry(UINT type, UINT, HCONV, HSZ string1, HSZ string2, HDDEDATA data,
                                   ULONG_PTR, ULONG_PTR) noexcept {
  DdeServer* const server = g_server;
  if (!server) return nullptr;
  switch (type) {
    case XTYP_CONNECT: {
      const bool known = DdeCmpStringHandles(string1, server->topic_.get().text) == 0 &&
                         DdeCmpStringHandles(string2, server->service_.get().text) == 0;
      return reinterpret_cast<HDDEDATA>(static_cast<ULONG_PTR>(known));
    }
    case XTYP_EXECUTE: return server->Execute(data);
    default: return nullptr;
  }
}

HDDEDATA DdeServer::Execute(HDDEDATA data) {
  bool taken = false;
  desktop_.Event([&] {
    Bytes bytes(DdeGetData(data, nullptr, 0, 0));
    DdeGetData(data, bytes.data(), static_cast<DWORD>(bytes.size()), 0);
    taken = form_.UserExecute(IsWideCommand(bytes) ? WideCommand(bytes)
                                                   : FromCodePage(NarrowCommand(bytes)));
  });
  return reinterpret_cast<HDDEDATA>(static_cast<ULONG_PTR>(taken ? DDE_FACK : DDE_FNOTPROCESSED));
}

}  // namespace marl::win32
