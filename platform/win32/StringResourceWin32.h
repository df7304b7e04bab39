#pragma once

#include "platform/StringResource.h"

namespace marl::win32 {

/// The string resource of the running program's file.
class StringResourceWin32 : public StringResource {
 public:
  bool Load(int id, Text& out) const override;
};

}  // namespace marl::win32
