#pragma once

#include "platform/Components.h"

namespace marl {

/// The suite's components, with built-in lists if "Marl.QaComponent" is not registered. The
/// built-in component provides LanguageCount, GetLanguage, CodePageCount and GetCodePage from
/// tables and refuses every other operation, so do not use it for QA checks.
class BuiltInComponents : public Components {
 public:
  explicit BuiltInComponents(Components& installed) : installed_(installed) {}

  std::unique_ptr<Component> Create(TextView name, Text& failure) override;

 private:
  Components& installed_;
};

}  // namespace marl
