#pragma once

#include <string>
#include <vector>

namespace marl::desktop {

/// Names of the tests that pass GoogleTest's filter; only those of `suite`, unless it is empty.
std::vector<std::string> SelectedTests(const std::string& suite = {});

/// Runs the selected tests, shared with other processes of the same program, each with its own
/// desktop: a free process takes the next test. In the folder `queue`, which all processes share,
/// there is a file for each test that is taken. Prints GoogleTest's lines for each test. A test
/// that hangs ends the process. Returns the exit code of the process.
int RunShared(const std::wstring& queue);

}  // namespace marl::desktop
