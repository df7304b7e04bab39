#pragma once

#include <string>

namespace marl {

/// Called if a test uses the memory backend wrongly, or if a form's window would not show what the
/// program has set.
using MisuseHandler = void (*)(const std::string& what);

/// Sets the handler. Test programs let the running test fail; without a handler the process ends.
void OnMisuse(MisuseHandler handler);
void ReportMisuse(const std::string& what);

}  // namespace marl
