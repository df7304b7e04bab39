#pragma once

#include "platform/Components.h"

namespace marl {

/// The suite's components with a stand-in for the lists of "Marl.QaComponent" where that is not
/// registered. The stand-in answers LanguageCount, GetLanguage, CodePageCount and GetCodePage from
/// the built-in tables and refuses every other operation, so ask the bare components for checks.
class BuiltInComponents : public Components {
 public:
  explicit BuiltInComponents(Components& installed) : installed_(installed) {}

  std::unique_ptr<Component> Create(TextView name, Text& failure) override;

 private:
  Components& installed_;
};

}  // namespace marl
