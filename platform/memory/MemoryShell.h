#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "platform/Process.h"
#include "platform/Shell.h"

namespace marl {

/// A shell that starts nothing and remembers everything.
class MemoryShell : public Shell {
 public:
  struct Started {
    ShellOwner owner = ShellOwner::kMainForm;
    Text verb;
    Text file;
    Text parameters;
    Text directory;
    int show = 0;
    bool operator==(const Started&) const = default;
  };

  std::function<void(const Started&)> whenStarted;  ///< hears of each start
  std::vector<Started> started;
  int executeCode = 42;
  Text browser;  ///< what is associated with every type
  int findCode = 33;
  std::vector<Text> asked;                ///< the files whose program was asked for
  std::vector<std::pair<Text, int>> ran;  ///< command lines and show commands
  std::vector<Text> programs;             ///< the program of each command line
  Status runStatus = kOk;                 ///< what becomes of it
  struct HelpCall {
    Text file;
    int command = 0;
    int data = 0;
    bool operator==(const HelpCall&) const = default;
  };
  std::vector<HelpCall> help;

  int Execute(ShellOwner owner, TextView verb, TextView file, TextView parameters,
              TextView directory, int show) override {
    started.push_back({owner, Text(verb), Text(file), Text(parameters), Text(directory), show});
    if (whenStarted) whenStarted(started.back());
    return executeCode;
  }
  int FindProgram(TextView file, TextView, Text& program) override {
    asked.emplace_back(file);
    if (findCode > 32) program = browser;
    return findCode;
  }
  Status Run(TextView program, TextView commandLine, int show) override {
    if (commandLine.empty() || commandLine.find(u'\0') != TextView::npos ||
        program.find(u'\0') != TextView::npos) {
      return kInvalidParameter;
    }
    programs.emplace_back(program);
    ran.emplace_back(commandLine, show);
    return runStatus;
  }
  void Help(TextView file, int command, int data) override {
    help.push_back({Text(file), command, data});
  }
};

/// A process of the test's choosing.
class MemoryProcess : public Process {
 public:
  Text commandLine;
  Text programPath = u"C:\\Suite\\Marl.exe";
  bool previousInstance = false;

  Text CommandLine() const override { return commandLine; }
  Text ProgramPath() const override { return programPath; }
  bool PreviousInstance() override { return previousInstance; }
};

}  // namespace marl
