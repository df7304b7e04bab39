#pragma once

#include <windows.h>
#include <ddeml.h>

#include "platform/Text.h"
#include "platform/win32/Handle.h"

namespace marl {

class Desktop;
class Form;

namespace win32 {

/// Serves DDE conversations of one service and topic and passes their commands to the form (DDE
/// management library). One instance at a time.
class DdeServer {
 public:
  DdeServer(Desktop& desktop, Form& form, TextView service, TextView topic);
  ~DdeServer();
  DdeServer(const DdeServer&) = delete;
  DdeServer& operator=(const DdeServer&) = delete;

  const Form& form() const { return form_; }

 private:
  static HDDEDATA CALLBACK Entry(UINT type, UINT format, HCONV conversation, HSZ string1,
                                 HSZ string2, HDDEDATA data, ULONG_PTR data1,
                                 ULONG_PTR data2) noexcept;
  HDDEDATA Execute(HDDEDATA data);

  Desktop& desktop_;
  Form& form_;
  // Texts are freed before the library's instance, to which they belong.
  UniqueConversations instance_;
  UniqueConversationText service_;
  UniqueConversationText topic_;
};

}  // namespace win32
}  // namespace marl
