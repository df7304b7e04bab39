#pragma once

#include <memory>
#include <utility>

#include "shell/Platform.h"
#include "tests/unit/Faults.h"

// One wrapper for each port. It passes calls on to a working port, and lets those fail that
// `Faults` names, in the way that the port's contract states. Operations that are not counted
// cannot fail.

namespace marl {

/// What a wrapper needs.
template <typename Port>
class FaultyPort : public Port {
 public:
  FaultyPort(Port& real, Faults& faults) : real_(real), faults_(faults) {}

 protected:
  PortCall Begin(std::string_view call) const { return PortCall(faults_, call); }
  Port& real_;
  Faults& faults_;
};

class FaultyRegistry : public FaultyPort<RegistryStore> {
 public:
  using FaultyPort::FaultyPort;
  Status OpenKey(KeyHandle key, const NarrowText& path, std::uint32_t access,
                 OpenKeyHandle& out) override {
    const PortCall call = Begin("Registry.OpenKey");
    if (!call.fails()) return real_.OpenKey(key, path, access, out);
    out.Reset();
    return kAccessDenied;
  }
  Status CreateKey(KeyHandle key, const NarrowText& path, std::uint32_t access,
                   OpenKeyHandle& out) override {
    const PortCall call = Begin("Registry.CreateKey");
    if (!call.fails()) return real_.CreateKey(key, path, access, out);
    out.Reset();
    return kAccessDenied;
  }
  void CloseKey(KeyHandle key) override { real_.CloseKey(key); }
  Status DeleteKey(KeyHandle key, const NarrowText& path) override {
    const PortCall call = Begin("Registry.DeleteKey");
    return call.fails() ? kAccessDenied : real_.DeleteKey(key, path);
  }
  Status QueryValue(KeyHandle key, const NarrowText& name, std::uint32_t& kind,
                    std::span<char> buffer, std::uint32_t& size) override {
    const PortCall call = Begin("Registry.QueryValue");
    return call.fails() ? kAccessDenied : real_.QueryValue(key, name, kind, buffer, size);
  }
  Status SetValue(KeyHandle key, const NarrowText& name, std::uint32_t kind,
                  const NarrowText& data) override {
    const PortCall call = Begin("Registry.SetValue");
    return call.fails() ? kAccessDenied : real_.SetValue(key, name, kind, data);
  }
  Status DeleteValue(KeyHandle key, const NarrowText& name) override {
    const PortCall call = Begin("Registry.DeleteValue");
    return call.fails() ? kAccessDenied : real_.DeleteValue(key, name);
  }
  Status EnumKey(KeyHandle key, std::uint32_t index, std::span<char> name) override {
    const PortCall call = Begin("Registry.EnumKey");
    return call.fails() ? kAccessDenied : real_.EnumKey(key, index, name);
  }
  Status EnumValue(KeyHandle key, std::uint32_t index, std::span<char> name,
                   std::uint32_t& nameLength, std::uint32_t& kind, std::span<char> data,
                   std::uint32_t& size) override {
    const PortCall call = Begin("Registry.EnumValue");
    return call.fails() ? kAccessDenied
                        : real_.EnumValue(key, index, name, nameLength, kind, data, size);
  }
  Status QueryInfo(KeyHandle key, KeyInfo& out) override {
    const PortCall call = Begin("Registry.QueryInfo");
    return call.fails() ? kAccessDenied : real_.QueryInfo(key, out);
  }
  Status ConnectRegistry(const NarrowText& machine, KeyHandle root, OpenKeyHandle& out) override {
    const PortCall call = Begin("Registry.ConnectRegistry");
    if (!call.fails()) return real_.ConnectRegistry(machine, root, out);
    out.Reset();
    return kAccessDenied;
  }
  std::uint32_t ExpandEnvironment(const NarrowText& source, std::span<char> buffer) override {
    const PortCall call = Begin("Registry.ExpandEnvironment");
    return call.fails() ? 0 : real_.ExpandEnvironment(source, buffer);
  }
  NarrowText ToNarrow(TextView text) const override { return real_.ToNarrow(text); }
  Text FromNarrow(std::string_view text) const override { return real_.FromNarrow(text); }
};

class FaultySettings : public FaultyPort<SettingsStore> {
 public:
  using FaultyPort::FaultyPort;
  Text GetSetting(TextView application, TextView section, TextView key,
                  TextView default_) const override {
    const PortCall call = Begin("Settings.GetSetting");
    return call.fails() ? Text(default_) : real_.GetSetting(application, section, key, default_);
  }
  Status SaveSetting(TextView application, TextView section, TextView key,
                     TextView value) override {
    const PortCall call = Begin("Settings.SaveSetting");
    return call.fails() ? kAccessDenied : real_.SaveSetting(application, section, key, value);
  }
};

class FaultyFiles : public FaultyPort<FileSystem> {
 public:
  using FaultyPort::FaultyPort;
  static constexpr auto kDiskFull = static_cast<Status>(112);

  bool NormalFileExists(TextView path) const override {
    const PortCall call = Begin("Files.NormalFileExists");
    return !call.fails() && real_.NormalFileExists(path);
  }
  bool FileExists(TextView path) const override {
    const PortCall call = Begin("Files.FileExists");
    return !call.fails() && real_.FileExists(path);
  }
  bool FolderExists(TextView path) const override {
    const PortCall call = Begin("Files.FolderExists");
    return !call.fails() && real_.FolderExists(path);
  }
  Status ReadAll(TextView path, Bytes& out) const override {
    const PortCall call = Begin("Files.ReadAll");
    return call.fails() ? kSharingViolation : real_.ReadAll(path, out);
  }
  std::unique_ptr<OutputFile> Create(TextView path, Status& status) override {
    const PortCall call = Begin("Files.Create");
    status = kAccessDenied;
    auto file = call.fails() ? nullptr : real_.Create(path, status);
    return file ? std::make_unique<Output>(std::move(file), faults_) : nullptr;
  }
  Status Remove(TextView path, bool force) override {
    const PortCall call = Begin("Files.Remove");
    return call.fails() ? kAccessDenied : real_.Remove(path, force);
  }
  Status Copy(TextView from, TextView to) override {
    const PortCall call = Begin("Files.Copy");
    return call.fails() ? kDiskFull : real_.Copy(from, to);
  }
  Status MakeFolder(TextView path) override {
    const PortCall call = Begin("Files.MakeFolder");
    return call.fails() ? kAccessDenied : real_.MakeFolder(path);
  }
  Status Attributes(TextView path, std::uint32_t& out) const override {
    const PortCall call = Begin("Files.Attributes");
    return call.fails() ? kAccessDenied : real_.Attributes(path, out);
  }
  Status SetAttributes(TextView path, std::uint32_t attributes) override {
    const PortCall call = Begin("Files.SetAttributes");
    return call.fails() ? kAccessDenied : real_.SetAttributes(path, attributes);
  }
  std::unique_ptr<FileSearch> Find(TextView pattern) const override {
    const PortCall call = Begin("Files.Find");
    auto search = call.fails() ? nullptr : real_.Find(pattern);
    return search ? std::make_unique<Search>(std::move(search), faults_) : nullptr;
  }
  Text TempPath() const override {
    const PortCall call = Begin("Files.TempPath");
    return call.fails() ? Text() : real_.TempPath();
  }
  Text TempName() override {
    const AllocationsWatched unwatched(false);
    return real_.TempName();
  }

 private:
  class Output : public OutputFile {
   public:
    Output(std::unique_ptr<OutputFile> real, Faults& faults)
        : real_(std::move(real)), faults_(faults) {}
    // When the disk is full, or the process is killed, half of the bytes are in the file.
    Status Write(const void* data, std::size_t size) override {
      try {
        const PortCall call(faults_, "Files.Write");
        if (!call.fails()) return real_->Write(data, size);
      } catch (const Killed&) {
        real_->Write(data, size / 2);
        throw;
      }
      if (!faults_.killed()) real_->Write(data, size / 2);
      return kDiskFull;
    }

   private:
    std::unique_ptr<OutputFile> real_;
    Faults& faults_;
  };
  class Search : public FileSearch {
   public:
    Search(std::unique_ptr<FileSearch> real, Faults& faults)
        : real_(std::move(real)), faults_(faults) {}
    Status Next(FoundEntry& out) override {
      const PortCall call(faults_, "Files.Next");
      return call.fails() ? kAccessDenied : real_->Next(out);
    }

   private:
    std::unique_ptr<FileSearch> real_;
    Faults& faults_;
  };
};

class FaultyShell : public FaultyPort<Shell> {
 public:
  using FaultyPort::FaultyPort;
  static constexpr int kNoAssociation = 31;

  int Execute(ShellOwner owner, TextView verb, TextView file, TextView parameters,
              TextView directory, int show) override {
    const PortCall call = Begin("Shell.Execute");
    return call.fails() ? int{kAccessDenied}
                        : real_.Execute(owner, verb, file, parameters, directory, show);
  }
  int FindProgram(TextView file, TextView directory, Text& program) override {
    const PortCall call = Begin("Shell.FindProgram");
    return call.fails() ? kNoAssociation : real_.FindProgram(file, directory, program);
  }
  Status Run(TextView program, TextView commandLine, int show) override {
    const PortCall call = Begin("Shell.Run");
    return call.fails() ? kFileNotFound : real_.Run(program, commandLine, show);
  }
  void Help(TextView file, int command, int data) override {
    const PortCall call = Begin("Shell.Help");
    if (!call.fails()) real_.Help(file, command, data);
  }
};

class FaultyProcess : public FaultyPort<Process> {
 public:
  using FaultyPort::FaultyPort;
  Text CommandLine() const override { return real_.CommandLine(); }
  Text ProgramPath() const override { return real_.ProgramPath(); }
  bool PreviousInstance() override {
    const PortCall call = Begin("Process.PreviousInstance");
    return !call.fails() && real_.PreviousInstance();
  }
  void RegisterRestart(TextView commandLine) override {
    const PortCall call = Begin("Process.RegisterRestart");
    if (!call.fails()) real_.RegisterRestart(commandLine);
  }
};

class FaultyComponents : public FaultyPort<Components> {
 public:
  using FaultyPort::FaultyPort;
  static constexpr const char16_t* kNotCreated = u"The component cannot be created";
  static constexpr const char16_t* kCallFailed = u"The component failed";

  std::unique_ptr<Component> Create(TextView name, Text& failure) override {
    const PortCall call = Begin("Components.Create");
    if (call.fails()) {
      failure = kNotCreated;
      return nullptr;
    }
    auto component = real_.Create(name, failure);
    return component ? std::make_unique<Instance>(std::move(component), faults_) : nullptr;
  }

 private:
  class Instance : public Component {
   public:
    Instance(std::unique_ptr<Component> real, Faults& faults)
        : real_(std::move(real)), faults_(faults) {}
    bool Call(TextView operation, std::vector<ComponentValue>& arguments, ComponentValue& result,
              Text& failure) override {
      const PortCall call(faults_, "Components.Call");
      if (!call.fails()) return real_->Call(operation, arguments, result, failure);
      failure = kCallFailed;
      return false;
    }

   private:
    std::unique_ptr<Component> real_;
    Faults& faults_;
  };
};

class FaultyStrings : public FaultyPort<StringResource> {
 public:
  using FaultyPort::FaultyPort;
  bool Load(int id, Text& out) const override {
    const PortCall call = Begin("Strings.Load");
    return !call.fails() && real_.Load(id, out);
  }
};

class FaultyLocale : public FaultyPort<Locale> {
 public:
  using FaultyPort::FaultyPort;
  std::uint32_t ThreadLocale() const override { return real_.ThreadLocale(); }
  int LocaleInfo(std::uint32_t locale, std::uint32_t type, std::span<char> buffer) const override {
    const PortCall call = Begin("Locale.LocaleInfo");
    return call.fails() ? 0 : real_.LocaleInfo(locale, type, buffer);
  }
  bool SameText(TextView a, TextView b) const override {
    const PortCall call = Begin("Locale.SameText");
    return !call.fails() && real_.SameText(a, b);
  }
};

class FaultyIcons : public FaultyPort<Icons> {
 public:
  using FaultyPort::FaultyPort;
  LibraryHandle OpenLibrary(TextView path) override {
    const PortCall call = Begin("Icons.OpenLibrary");
    return call.fails() ? 0 : real_.OpenLibrary(path);
  }
  void CloseLibrary(LibraryHandle library) override { real_.CloseLibrary(library); }
  IconHandle Load(LibraryHandle library, int id, int width, int height) override {
    const PortCall call = Begin("Icons.Load");
    return call.fails() ? 0 : real_.Load(library, id, width, height);
  }
  void Destroy(IconHandle icon) override {
    const AllocationsWatched unwatched(false);
    real_.Destroy(icon);
  }
  int Metric(int index) const override {
    const PortCall call = Begin("Icons.Metric");
    return call.fails() ? 0 : real_.Metric(index);
  }
  WindowHandle OwnerOf(WindowHandle window) const override {
    const PortCall call = Begin("Icons.OwnerOf");
    return call.fails() ? 0 : real_.OwnerOf(window);
  }
  void SetIcon(WindowHandle window, int which, IconHandle icon) override {
    const PortCall call = Begin("Icons.SetIcon");
    if (!call.fails()) real_.SetIcon(window, which, icon);
  }
};

class FaultyPictures : public FaultyPort<Pictures> {
 public:
  using FaultyPort::FaultyPort;
  PicturePtr Load(int id) override {
    const PortCall call = Begin("Pictures.Load");
    return call.fails() ? nullptr : real_.Load(id);
  }
  void Prepare(int id) override {
    const PortCall call = Begin("Pictures.Prepare");
    if (!call.fails()) real_.Prepare(id);
  }
};

class FaultyHooks : public FaultyPort<WindowHooks> {
 public:
  using FaultyPort::FaultyPort;
  std::uint32_t RegisterMessage(std::string_view name) override {
    const PortCall call = Begin("Hooks.RegisterMessage");
    return call.fails() ? 0 : real_.RegisterMessage(name);
  }
  ProcAddress Replace(WindowHandle window, MessageListener& listener) override {
    const PortCall call = Begin("Hooks.Replace");
    return call.fails() ? 0 : real_.Replace(window, listener);
  }
  void PutBack(WindowHandle window, ProcAddress previous) override {
    const AllocationsWatched unwatched(false);
    real_.PutBack(window, previous);
  }
  void Allow(WindowHandle window, std::uint32_t message) override {
    const PortCall call = Begin("Hooks.Allow");
    if (!call.fails()) real_.Allow(window, message);
  }
  std::intptr_t Call(ProcAddress previous, WindowHandle window, std::uint32_t message,
                     std::uintptr_t wParam, std::intptr_t lParam) override {
    const AllocationsWatched unwatched(false);
    return real_.Call(previous, window, message, wParam, lParam);
  }
};

class FaultyTray : public FaultyPort<Tray> {
 public:
  using FaultyPort::FaultyPort;
  bool NotifyIcon(int command, const NotifyIconData& data) override {
    const PortCall call = Begin("Tray.NotifyIcon");
    return !call.fails() && real_.NotifyIcon(command, data);
  }
  IconHandle IconOf(WindowHandle window) const override {
    const PortCall call = Begin("Tray.IconOf");
    return call.fails() ? 0 : real_.IconOf(window);
  }
  std::unique_ptr<PopupMenu> CreatePopup() override {
    const AllocationsWatched unwatched(false);
    return real_.CreatePopup();
  }
  Point CursorPosition() const override {
    const PortCall call = Begin("Tray.CursorPosition");
    return call.fails() ? Point{} : real_.CursorPosition();
  }
};

class FaultyTips : public FaultyPort<TipWindows> {
 public:
  using FaultyPort::FaultyPort;
  void InitCommonControls() override { real_.InitCommonControls(); }
  std::intptr_t Instance() const override { return real_.Instance(); }
  WindowHandle CreateTip(std::uint32_t style, WindowHandle parent) override {
    const PortCall call = Begin("Tips.CreateTip");
    return call.fails() ? 0 : real_.CreateTip(style, parent);
  }
  void Destroy(WindowHandle window) override { real_.Destroy(window); }
  void SetTopmost(WindowHandle window) override {
    const PortCall call = Begin("Tips.SetTopmost");
    if (!call.fails()) real_.SetTopmost(window);
  }
  void Send(WindowHandle tip, int message, std::uintptr_t wParam,
            const TipParameter& lParam) override {
    const AllocationsWatched unwatched(false);
    real_.Send(tip, message, wParam, lParam);
  }
  bool ClientRect(WindowHandle window, PixelRect& out) const override {
    const PortCall call = Begin("Tips.ClientRect");
    return !call.fails() && real_.ClientRect(window, out);
  }
};

class FaultyProfile : public FaultyPort<Profile> {
 public:
  using FaultyPort::FaultyPort;
  Text GetString(TextView section, TextView key, TextView defaultText, std::size_t bufferSize,
                 TextView file) const override {
    const PortCall call = Begin("Profile.GetString");
    return call.fails() ? Text(defaultText)
                        : real_.GetString(section, key, defaultText, bufferSize, file);
  }
  bool SetString(TextView section, TextView key, TextView value, TextView file) override {
    const PortCall call = Begin("Profile.SetString");
    return !call.fails() && real_.SetString(section, key, value, file);
  }
};

class FaultyFileDialogs : public FaultyPort<FileDialogs> {
 public:
  using FaultyPort::FaultyPort;
  FileDialogResult ShowOpen(const Form* owner, const FileDialogSettings& settings,
                            Text& path) override {
    const PortCall call = Begin("FileDialogs.ShowOpen");
    return call.fails() ? FileDialogResult::kFailed : real_.ShowOpen(owner, settings, path);
  }
  FileDialogResult ShowSave(const Form* owner, const FileDialogSettings& settings,
                            Text& path) override {
    const PortCall call = Begin("FileDialogs.ShowSave");
    return call.fails() ? FileDialogResult::kFailed : real_.ShowSave(owner, settings, path);
  }
};

class FaultyColorDialog : public FaultyPort<ColorDialog> {
 public:
  using FaultyPort::FaultyPort;
  bool ShowColor(const Form* owner, int flags, Color& color) override {
    const PortCall call = Begin("ColorDialog.ShowColor");
    return !call.fails() && real_.ShowColor(owner, flags, color);
  }
};

class FaultyFontList : public FaultyPort<FontList> {
 public:
  using FaultyPort::FaultyPort;
  void EnumFamilies(const Form& form,
                    const std::function<bool(TextView faceName)>& visit) override {
    if (PortCall(faults_, "FontList.EnumFamilies").fails()) return;
    real_.EnumFamilies(form, visit);
  }
};

/// A desktop whose windows, messages and searches can fail. It is no wrapper, because the flow of
/// events is the desktop's own.
class FaultyDesktop : public MemoryDesktop {
 public:
  explicit FaultyDesktop(Faults& faults) : faults_(faults) {}

  std::unique_ptr<FormPeer> CreatePeer(Form& form) override {
    const PortCall call(faults_, "Desktop.CreatePeer");
    if (call.fails()) throw RuntimeError(7, u"Out of memory");
    return MemoryDesktop::CreatePeer(form);
  }
  // The test acts for the user: its allocations do not fail.
  void RunModal(Form& form, Form* owner) override {
    const AllocationsWatched unwatched(false);
    MemoryDesktop::RunModal(form, owner);
  }
  int MsgBox(TextView text, int flags, TextView title) override {
    // The last message always shows: the tests read it.
    if (ended()) {
      const AllocationsWatched unwatched(false);
      return MemoryDesktop::MsgBox(text, flags, title);
    }
    const PortCall call(faults_, "Desktop.MsgBox");
    return call.fails() ? 0 : MemoryDesktop::MsgBox(text, flags, title);
  }
  void EnumerateWindows(const std::function<bool(WindowHandle)>& visit) override {
    if (PortCall(faults_, "Desktop.EnumerateWindows").fails()) return;
    MemoryDesktop::EnumerateWindows(visit);
  }
  Text TitleOf(WindowHandle window, int capacity) override {
    const PortCall call(faults_, "Desktop.TitleOf");
    return call.fails() ? Text() : MemoryDesktop::TitleOf(window, capacity);
  }
  bool IsVisible(WindowHandle window) override {
    const PortCall call(faults_, "Desktop.IsVisible");
    return !call.fails() && MemoryDesktop::IsVisible(window);
  }
  void ShowWindow(WindowHandle window, int command) override {
    const PortCall call(faults_, "Desktop.ShowWindow");
    if (!call.fails()) MemoryDesktop::ShowWindow(window, command);
  }
  bool ActivateByTitle(TextView title) override {
    const PortCall call(faults_, "Desktop.ActivateByTitle");
    return !call.fails() && MemoryDesktop::ActivateByTitle(title);
  }
  void InitCommonControlsEx(int size, int flags) override {
    const PortCall call(faults_, "Desktop.InitCommonControlsEx");
    if (!call.fails()) MemoryDesktop::InitCommonControlsEx(size, flags);
  }
  void OfferCommands(Form& form, TextView service, TextView topic) override {
    const PortCall call(faults_, "Desktop.OfferCommands");
    if (!call.fails()) MemoryDesktop::OfferCommands(form, service, topic);
  }

 protected:
  void Ended() override {
    const AllocationsWatched unwatched(false);
    MemoryDesktop::Ended();
  }

 private:
  Faults& faults_;
};

}  // namespace marl
