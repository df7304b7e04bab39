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
  /// The library's code for the last failure; DMLERR_NOTPROCESSED for a refused command.
  UINT lastError() const { return error_; }

 private:
  Kind kind_;
  DWORD instance_ = 0;
  HCONV conversation_ = nullptr;
  UINT error_ = DMLERR_NO_ERROR;
};

}  // namespace marl::desktop
