#include "tests/unit/World.h"

#include "tests/unit/SuiteWorld.h"

namespace marl {

World::World() {
  settings.SaveSetting(u"Marl", u"Settings", u"FirstRun", u"N");
  settings.writes.clear();
  icons.Put(u"C:\\Suite\\q17icl.oru", 117, 1171, 1172);
}

World::~World() = default;

Platform World::platform() {
  // clang-format off
  return {desktop, files,    settings,   shell,
          process, components, strings,  locales,
          icons,   pictures, otherRegistry ? *otherRegistry : registry,
          hooks,   tray,     tips,       profile,
          fileDialogs, colorDialog, fontList,   clock};
  // clang-format on
}

int World::Start() {
  application = std::make_unique<Application>(platform());
  return application->Run();
}

SuiteWorld::SuiteWorld() { Install(u"C:\\Suite"); }

SuiteWorld::~SuiteWorld() = default;

void SuiteWorld::Install(TextView where) {
  folder = where;
  if (!folder.ends_with(u'\\')) folder += u'\\';
  for (const TextView tool : kTools) files.Put(folder + Text(tool), "tool");
  process.programPath = folder + u"Marl.exe";
  files.Put(process.programPath, "program");
}

}  // namespace marl
