#pragma once

#include <string>
#include <vector>

namespace marl::desktop {

/// The names of the tests that GoogleTest's filter leaves; those of one suite unless `suite` is
/// empty.
std::vector<std::string> SelectedTests(const std::string& suite = {});

/// Runs the selected tests, shared with other processes of the same program that have a desktop
/// each: whoever is free takes the next test that nobody has taken. The folder `queue`, which all
/// of them see, holds a file for each test that was taken. Prints GoogleTest's lines for each test.
/// A test that hangs ends the process. Returns the exit code of the process.
int RunShared(const std::wstring& queue);

}  // namespace marl::desktop
