#pragma once

#include <string>

namespace marl {

/// Hears of a test that uses the memory backend wrongly, or of a form whose window would not show
/// what the program set.
using MisuseHandler = void (*)(const std::string& what);

/// Sets the handler. Test programs make a failure of the running test of it; without one the
/// process ends.
void OnMisuse(MisuseHandler handler);
void ReportMisuse(const std::string& what);

}  // namespace marl
