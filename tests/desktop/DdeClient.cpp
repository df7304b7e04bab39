#include "tests/desktop/DdeClient.h"

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

}  // namespace marl::desktop
