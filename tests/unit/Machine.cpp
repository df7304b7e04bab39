#include "tests/unit/Machine.h"

#include "tests/unit/StoredValues.h"
#include "tests/unit/SuiteWorld.h"

namespace marl {

namespace {

constexpr char kProjectFile[] =
    "<?xml version=\"1.0\"?>\r\n<qprx><target-files shortlang=\"yes\"/>\r\n"
    "<language lc=\"fr\" description=\"French\"/><document path=\"fr\\a.doc\"/>"
    "<document path=\"fr\\b.doc\"/>\r\n<language lc=\"de\"/></qprx>\r\n";
constexpr char kOlderProjectFile[] =
    "[Target Files]\r\nShortLang=1\r\n[Languages]\r\nCount=2\r\nTarget0=fr\r\nTarget1=de\r\n"
    "[Source Files]\r\nCount=1\r\nFile0=a.doc\r\n";
constexpr char kSkinFile[] =
    "<?xml version=\"1.0\"?>\r\n<marlskin>\r\n<parameter name=\"colour1\" value=\"255\"/>\r\n"
    "<parameter name=\"angle\" value=\"45\"/>\r\n"
    "<parameter name=\"font1\" value=\"Arial|10|1|0|0\"/>\r\n</marlskin>\r\n";

std::string Narrow(TextView text) {
  std::string narrow;
  for (const char16_t unit : text) {
    narrow += static_cast<char>(unit & 0xFF);
    if (unit > 0xFF) narrow += static_cast<char>(unit >> 8);
  }
  return narrow;
}

void AddKey(RegistryStore& registry, KeyHandle root, const NarrowText& path, StoredState& state) {
  for (const auto& [name, value] : ValuesOf(registry, root, path)) {
    state["key " + path + '|' + name] = std::to_string(value.kind) + ':' + value.bytes;
  }
  OpenKeyHandle key;
  if (registry.OpenKey(root, path, kKeyEnumerateSubKeys, key) != kOk) return;
  NarrowText name(300, '\0');
  for (std::uint32_t index = 0; registry.EnumKey(key.get(), index, name) == kOk; ++index) {
    AddKey(registry, root, path + '\\' + name.c_str(), state);
  }
}

NarrowText Terminated(const char* text) { return NarrowText(text) + '\0'; }

}  // namespace

Machine::Machine(bool firstUse) {
  for (const TextView tool : kTools) files.Put(u"C:\\Suite\\" + Text(tool), "tool");
  files.Put(u"C:\\Suite\\Marl.exe", "program");
  files.Put(kProject, kProjectFile);
  files.Put(kOlderProject, kOlderProjectFile);
  files.Put(kSkin, kSkinFile);
  for (const char16_t* working : {u"C:\\P\\fr\\a.qtd", u"C:\\P\\fr\\a.obj", u"C:\\P\\de\\a.qtd"}) {
    files.Put(working, "working file");
  }
  files.Put(u"C:\\P\\read-only.qtd", "working file", kReadOnly);
  files.Put(u"C:\\P\\fr\\a.doc", "document");
  files.Put(files.TempPath() + u"ORU1.TMP", "left behind");
  if (firstUse) return;

  const auto set = [&](TextView key, TextView value) {
    settings.Put(u"Marl", u"Settings", key, value);
  };
  set(u"FirstRun", u"N");
  set(u"Wizard", u"N");
  set(u"Left", u"300");
  set(u"Top", u"450");
  set(u"Tooltips", u"True");
  set(u"Tools", u"True");
  set(u"WindowState", u"0");
  settings.Put(u"Marl Project Wizard", u"Target Files", u"Folder", u"C:\\P");
  const auto plant = [&](const char* key, const char* name, std::uint32_t kind, NarrowText data) {
    registry.Plant(kCurrentUser, NarrowText("Software\\Oru\\") + key, name, kind, std::move(data));
  };
  plant("Marl\\Settings", "TrackingServer", kRegSz,
        Terminated("<project-tracking server=\"alpha\" ssl=\"no\" port=\"80\"/>"));
  plant("Marl\\ServerMRU", "MRU1", kRegSz,
        Terminated("<project-tracking server=\"alpha\" ssl=\"no\" port=\"80\"/>"));
  plant("Marl\\ServerMRU", "MRU2", kRegSz, Terminated("beta.example"));
  plant("Marl\\GUI", "Angle", kRegDword, DwordBytes(30));
  plant("Marl\\GUI", "IconsPerRow", kRegDword, DwordBytes(4));
  plant("Marl\\GUI", "Font1", kRegExpandSz, Terminated("%FACE%|10|0|0|0"));
  plant("Marl\\GUI", "DisplayIcons", kRegSz,
        Terminated("001|011|021|031|041|051|061|071|081|091|101|111|121|131|141|151|161|171"));
  plant("Marl\\HiddenSegments", "RegEx1", kRegSz, Terminated("[0-9]+"));
  plant("Marl\\HiddenSegments", "RegEx2", kRegSz, Terminated("[A-Z]+"));
  plant("Marl\\Segmentation", "DontSplit1", kRegSz, Terminated("Mr."));
  plant("Marl\\Segmentation", "ForceSplit1", kRegSz, Terminated(";"));
  plant("Marl\\Proxy", "UseProxy", kRegDword, DwordBytes(1));
  plant("Marl\\Proxy", "Port", kRegDword, DwordBytes(8080));
  plant("Marl\\Proxy", "Server", kRegSz, Terminated("proxy.example"));
  plant("Oru Bench\\Settings", "UseAltWordCounts", kRegDword, DwordBytes(1));
  registry.SetEnvironment("FACE", "Tahoma");
}

StoredState Machine::Stored() const {
  StoredState state;
  for (const TextView key : {u"FirstRun", u"Wizard", u"Left", u"Top", u"Tooltips", u"Tools",
                             u"WindowState", u"XtraFeatures"}) {
    if (!settings.Has(u"Marl", u"Settings", key)) continue;
    state["setting " + Narrow(key)] = Narrow(settings.GetSetting(u"Marl", u"Settings", key, u""));
  }
  auto& store = const_cast<MemoryRegistryStore&>(registry);
  AddKey(store, kCurrentUser, "Software", state);
  for (const Text& file : files.Files()) {
    const Bytes bytes = *files.Content(file);
    state["file " + Narrow(file)] = std::string(bytes.begin(), bytes.end());
  }
  return state;
}

ProgramRun::ProgramRun(Machine& machine)
    : machine_(machine),
      files_(machine.files, faults),
      settings_(machine.settings, faults),
      registry_(machine.registry, faults),
      profile_(machine.profile, faults) {
  process.session = machine.session;
  process.commandLine = u"nw";
  icons.Put(u"C:\\Suite\\q17icl.oru", 117, 1171, 1172);
  // A search lets messages through all the time.
  clock.step = 5000;
  shell.browser = u"C:\\Browser\\b.exe";
  desktop.others = {{u"Editor", true}, {u"Mail", true}};
  desktop.answer = [this](const MemoryDesktop::Message& message) {
    return (message.flags & kYesNo) == 0 ? int{kAnswerOk}
           : answersYes                  ? int{kAnswerYes}
                                         : int{kAnswerNo};
  };
  desktop.whenAnyModal = [this](Form& form) {
    if (const auto script = inDialog.find(form.name()); script != inDialog.end()) {
      script->second(form);
    }
  };
}

ProgramRun::~ProgramRun() = default;

void ProgramRun::Start() {
  // clang-format off
  application_ = std::make_unique<Application>(Platform{
      desktop, files_,    settings_,   shell_,
      process_, components_, strings_, locales_,
      icons_,   pictures_, registry_,
      hooks_,   tray_,     tips_,      profile_,
      fileDialogs_, colorDialog_, fontList_, clock});
  // clang-format on
  const AllocationsWatched watched(true);
  application_->Run();
  cameUp_ = up();
}

void ProgramRun::Leave() {
  Act([this] { main().UserClose(); });
}

std::string ProgramRun::Held() const {
  std::string held;
  const auto add = [&](const char* what, std::size_t count) {
    if (count != 0) held += std::to_string(count) + ' ' + what + "; ";
  };
  add("open keys", machine_.registry.OpenKeys());
  add("open files", static_cast<std::size_t>(machine_.files.OpenFiles()));
  add("open libraries", icons.open.size());
  add("components", static_cast<std::size_t>(components.live));
  add("tips", tips.tips.size());
  add("menus", static_cast<std::size_t>(tray.popups));
  add("forms", desktop.forms().size());
  add("hooks", hooks.listeners.size());
  add("offers", desktop.offers.size());
  return held;
}

}  // namespace marl
