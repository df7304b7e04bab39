#include "platform/DdeCommand.h"
#include "tests/unit/FuzzTarget.h"
#include "tests/unit/SuiteWorld.h"

// Any bytes as the data of an execute command of another program.
MARL_FUZZ_TARGET(command) {
  using namespace marl;
  static SuiteWorld world;
  if (!world.application) world.Start();
  const Bytes bytes(data, data + size);
  Text command;
  if (IsWideCommand(bytes)) {
    command = WideCommand(bytes);
    fuzz::Expect(command.size() <= size / 2, "an odd last byte does not count");
  } else {
    command = world.registry.FromNarrow(NarrowCommand(bytes));
    fuzz::Expect(command.size() <= size, "no character is made up");
  }
  fuzz::Expect(command.find(u'\0') == Text::npos, "a command ends at its first NUL");

  const Text before = world.main().dlgOpen.FileName;
  const std::size_t started = world.shell.started.size();
  bool taken = false;
  world.desktop.Event([&] { taken = world.main().UserExecute(command); });
  fuzz::Expect(taken == command.starts_with(u"PRJ "), "only a project is taken");
  fuzz::Expect(world.main().dlgOpen.FileName == (taken ? command.substr(4) : before),
               "what follows is the project");
  fuzz::Expect(!world.desktop.ended() && world.desktop.messages.empty() &&
                   world.shell.started.size() == started,
               "nothing else happens");
}
