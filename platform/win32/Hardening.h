#pragma once

#include <windows.h>

namespace marl::win32 {

/// Protects the process; called before anything else in the entry point. Libraries that the program
/// or Windows loads later by name come from the system folder alone (`RestrictLibrarySearch`), a
/// corrupt heap ends the process (HeapSetInformation), and a drive without a medium is a failure of
/// the call instead of a box of the system (SetErrorMode).
void HardenProcess();

/// SetDefaultDllDirectories, which Windows 7 has only with update KB2533623.
using SetLibraryFolders = BOOL WINAPI(DWORD);

/// Restricts the search for libraries that are loaded by name to the system folder; a component
/// with a full path still finds its own libraries beside it. Without `setFolders` (null), the
/// current folder is taken out of the search (SetDllDirectory), and the libraries that Windows is
/// known to load by name are loaded now by their full paths: a library that is loaded already is
/// not searched for.
void RestrictLibrarySearch(SetLibraryFolders* setFolders);

}  // namespace marl::win32
