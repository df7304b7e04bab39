#include "shell/SuiteComponents.h"

namespace marl {

void SuiteComponents::RunProjectTm() const { Run(u"Marl.ProjectTmComponent", u"Run", {}); }

void SuiteComponents::RunReplace() const { Run(u"Marl.ReplaceComponent", u"Run", {}); }

void SuiteComponents::RunSingleFile() const {
  Run(u"Marl.SingleFileComponent", u"Run", {Text(), std::int32_t{0}});
}

void SuiteComponents::RunQaCheck(int kind) const {
  Run(u"Marl.QaComponent", u"Run", {std::int32_t{kind}});
}

void SuiteComponents::RunCommentReport() const { Run(u"Marl.QaComponent", u"Report", {}); }

void SuiteComponents::Run(TextView component, TextView operation,
                          std::vector<ComponentValue> arguments) const {
  Text failure;
  const auto instance = platform_.components.Create(component, failure);
  if (!instance && !failure.empty()) throw RuntimeError(429, failure);
  if (!instance) {
    platform_.desktop.MsgBox(platform_.strings.Get(IDS_COMPONENT_MISSING), kExclamation,
                             kApplicationTitle);
    return;
  }
  ComponentValue result;
  if (!instance->Call(operation, arguments, result, failure)) throw RuntimeError(440, failure);
}

}  // namespace marl
