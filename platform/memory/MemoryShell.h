#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/Process.h"
#include "platform/Shell.h"

namespace marl {

/// A shell that starts nothing and records everything.
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

  std::function<void(const Started&)> whenStarted;  ///< called for each start
  const FileSystem* files = nullptr;  ///< where programs and files must exist; null: all exist
  Text searchFolder;                  ///< where Run searches for a program without a folder
  std::vector<Started> started;
  int executeCode = 42;
  Text browser;  ///< the program associated with every type; no type has a program without it
  int findCode = 33;
  std::vector<Text> asked;                ///< arguments of FindProgram
  std::vector<std::pair<Text, int>> ran;  ///< command lines and show commands
  std::vector<Text> programs;             ///< the program of each command line
  Status runStatus = kOk;                 ///< the result of every Run
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
    if (files && !files->FileExists(file)) return kFileNotFound;
    if (findCode <= kNoAssociation) return findCode;
    if (browser.empty()) return kNoAssociation;
    program = browser;
    return findCode;
  }
  Status Run(TextView program, TextView commandLine, int show) override {
    if (commandLine.empty() || commandLine.find(u'\0') != TextView::npos ||
        program.find(u'\0') != TextView::npos) {
      return kInvalidParameter;
    }
    if (files && !files->FileExists(program.empty() ? Searched(commandLine) : Text(program))) {
      return kFileNotFound;
    }
    programs.emplace_back(program);
    ran.emplace_back(commandLine, show);
    return runStatus;
  }
  void Help(TextView file, int command, int data) override {
    help.push_back({Text(file), command, data});
  }

 private:
  static constexpr int kNoAssociation = 31;

  /// The first part of the command line: the program.
  Text Searched(TextView commandLine) const {
    const bool quoted = commandLine.starts_with(u'"');
    Text name(quoted ? commandLine.substr(1, commandLine.find(u'"', 1) - 1)
                     : commandLine.substr(0, commandLine.find(u' ')));
    if (name.find(u'\\') == Text::npos) name = searchFolder + u'\\' + name;
    if (name.rfind(u'.') == Text::npos || name.rfind(u'.') < name.rfind(u'\\')) name += u".exe";
    return name;
  }
};

/// State that the processes of a user share: whether one of them holds the claim.
struct MemorySession {
  int holders = 0;
};

/// A process with properties set by the test.
class MemoryProcess : public Process {
 public:
  Text commandLine;
  Text programPath = u"C:\\Suite\\Marl.exe";
  bool previousInstance = false;
  std::vector<Text> restarts;              ///< recorded: the command lines of `RegisterRestart`
  std::shared_ptr<MemorySession> session;  ///< if set, it decides about `previousInstance`

  MemoryProcess() = default;
  MemoryProcess(const MemoryProcess&) = delete;
  MemoryProcess& operator=(const MemoryProcess&) = delete;
  ~MemoryProcess() override {
    if (holds_) --session->holders;
  }

  Text CommandLine() const override { return commandLine; }
  Text ProgramPath() const override { return programPath; }
  bool PreviousInstance() override {
    if (!session) return previousInstance;
    previousInstance = session->holders > 0;
    if (!holds_) ++session->holders;
    holds_ = true;
    return previousInstance;
  }
  void RegisterRestart(TextView line) override { restarts.emplace_back(line); }

 private:
  bool holds_ = false;
};

}  // namespace marl
