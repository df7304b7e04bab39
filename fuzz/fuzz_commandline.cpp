#include "documents/modUTF8.h"
#include "tests/unit/FuzzTarget.h"
#include "tests/unit/SuiteWorld.h"

// Any text as the command line: only "NW", in any case, keeps the wizard away.
MARL_FUZZ_TARGET(commandline) {
  using namespace marl;
  SuiteWorld world;
  world.PutSetting(u"Wizard", u"Y");
  const Text line = DecodeUTF8(Bytes(data, data + size));
  world.process.commandLine = line;
  world.Start();
  const bool without = line.size() == 2 && (line[0] == u'N' || line[0] == u'n') &&
                       (line[1] == u'W' || line[1] == u'w');
  fuzz::Expect(world.desktop.ended() != without, "the wizard runs instead of the switchboard");
  fuzz::Expect(world.desktop.exitCode() == 0 && world.desktop.messages.empty(), "without a word");
  const auto tools = world.Tools();
  fuzz::Expect(without ? tools.empty() : tools.size() == 1 && tools[0].parameters == u"1",
               "the line is not passed on");
}
