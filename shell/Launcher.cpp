#include "shell/Launcher.h"

namespace marl {

Text JoinPath(TextView folder, TextView file) {
  Text path(folder);
  if (!path.ends_with(u'\\')) path += u'\\';
  path += file;
  return path;
}

bool Launcher::RunProgram(TextView folder, TextView file, TextView arguments, int windowStyle,
                          bool complain) const {
  const Text path = JoinPath(folder, file);
  if (!platform_.files.NormalFileExists(path)) {
    if (complain) {
      platform_.desktop.MsgBox(platform_.strings.Get(IDS_FILE_NOT_FOUND) + path, kExclamation,
                               kApplicationTitle);
    }
    return false;
  }
  platform_.shell.Execute(ShellOwner::kMainForm, u"", path, arguments, folder, windowStyle);
  return true;
}

void Launcher::ShellOpen(TextView verb, TextView file, TextView parameters, TextView directory,
                         int show) const {
  platform_.shell.Execute(ShellOwner::kDesktop, verb, file, parameters, directory, show);
}

}  // namespace marl
