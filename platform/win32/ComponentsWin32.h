#pragma once

#include "platform/Components.h"

namespace marl::win32 {

/// Components as Automation objects, by ProgID, late bound.
class ComponentsWin32 : public Components {
 public:
  ComponentsWin32();
  ~ComponentsWin32() override;
  std::unique_ptr<Component> Create(TextView name, Text& failure) override;

 private:
  bool initialised_ = false;
};

}  // namespace marl::win32
