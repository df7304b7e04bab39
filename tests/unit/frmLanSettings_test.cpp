#include "network/frmLanSettings.h"

#include <gtest/gtest.h>

#include <array>
#include <set>

#include "platform/memory/MemoryDesktop.h"
#include "platform/memory/MemoryLocale.h"
#include "platform/memory/MemoryRegistryStore.h"
#include "platform/memory/MemoryStrings.h"

namespace marl {
namespace {

constexpr char kKey[] = "Software\\Oru\\Marl\\Proxy";
constexpr TextView kIncomplete = u"Please provide the proxy server address and port";

/// A value as stored: its kind and every byte.
struct Stored {
  std::uint32_t kind = 0;
  NarrowText bytes;
  bool operator==(const Stored&) const = default;
};

void PrintTo(const Stored& stored, std::ostream* out) {
  *out << stored.kind << ':';
  for (const char byte : stored.bytes) *out << ' ' << int{static_cast<unsigned char>(byte)};
}

Stored Dword(std::int32_t value) { return {kRegDword, DwordBytes(value)}; }
Stored Sz(const char* text) { return {kRegSz, NarrowText(text) + '\0'}; }

/// Refuses every write and deletion.
class ReadOnlyRegistry : public MemoryRegistryStore {
 public:
  Status SetValue(KeyHandle, const NarrowText&, std::uint32_t, const NarrowText&) override {
    return kAccessDenied;
  }
  Status DeleteKey(KeyHandle, const NarrowText&) override { return kAccessDenied; }
};

class LanSettings : public testing::Test {
 protected:
  void Plant(const char* name, std::uint32_t kind, const NarrowText& data) {
    registry.Plant(kCurrentUser, kKey, name, kind, data);
  }
  void PlantKey() {
    OpenKeyHandle key;
    registry.CreateKey(kCurrentUser, kKey, kKeyAllBasic, key);
  }
  bool KeyExists() {
    OpenKeyHandle key;
    return registry.OpenKey(kCurrentUser, kKey, kKeyQueryValue, key) == kOk;
  }
  std::optional<Stored> Value(const char* name) {
    OpenKeyHandle key;
    if (registry.OpenKey(kCurrentUser, kKey, kKeyQueryValue, key) != kOk) return {};
    Stored stored;
    std::uint32_t size = 0;
    registry.QueryValue(key.get(), name, stored.kind, {}, size);
    NarrowText bytes(size + 1, '\0');
    if (registry.QueryValue(key.get(), name, stored.kind, bytes, size) != kOk) return {};
    bytes.resize(size);
    stored.bytes = bytes;
    return stored;
  }

  /// Opens the dialog and lets `user` work in it.
  template <typename User>
  void Open(User user) {
    desktop.whenModal["frmLanSettings"] = [&](Form& form) {
      user(static_cast<frmLanSettings&>(form));
    };
    frmLanSettings form({desktop, registry, locale, strings});
    form.ShowModal(nullptr);
    EXPECT_FALSE(form.loaded());
  }
  static void Type(TextBox& field, TextView text) {
    field.UserEdit(text, static_cast<int>(text.size()), 0);
  }

  MemoryDesktop desktop;
  MemoryRegistryStore registry;
  MemoryLocale locale;
  MemoryStrings resource;
  StringTable strings{resource};
};

TEST_F(LanSettings, NoKeyShowsTheDefaultWithTheProxyDisabled) {
  Open([&](frmLanSettings& form) {
    EXPECT_TRUE(form.optDefault.Value());
    EXPECT_FALSE(form.optOverride.Value());
    EXPECT_EQ(form.chkUseProxy.Value(), 0);
    EXPECT_FALSE(form.chkUseProxy.Enabled());
    EXPECT_FALSE(form.lblProxyAddress.Enabled());
    EXPECT_FALSE(form.lblProxyPort.Enabled());
    EXPECT_FALSE(form.txtProxyAddress.Enabled());
    EXPECT_FALSE(form.txtProxyPort.Enabled());
    EXPECT_EQ(form.txtProxyAddress.Text(), u"");
    EXPECT_EQ(form.txtProxyPort.Text(), u"");
  });
  EXPECT_FALSE(KeyExists());
}

TEST_F(LanSettings, CaptionsComeFromTheTable) {
  Open([&](frmLanSettings& form) {
    EXPECT_EQ(form.Caption(), u"Local Area Network (LAN) Settings");
    EXPECT_EQ(form.optDefault.Caption(), u"Use the system &default settings for proxy server");
    EXPECT_EQ(form.optOverride.Caption(),
              u"&Override the system default settings with these settings:");
    EXPECT_EQ(form.chkUseProxy.Caption(), u"Use a pro&xy server for your LAN");
    EXPECT_EQ(form.lblProxyAddress.Caption(), u"&Address:");
    EXPECT_EQ(form.lblProxyPort.Caption(), u"&Port:");
    EXPECT_EQ(form.fraProxyServer.Caption(), u"Proxy Server");
    EXPECT_EQ(form.cmdOK.Caption(), u"OK");
    EXPECT_EQ(form.cmdCancel.Caption(), u"Cancel");
  });
}

TEST_F(LanSettings, StoredValuesAreShown) {
  Plant("UseProxy", kRegDword, DwordBytes(1));
  Plant("Port", kRegDword, DwordBytes(8080));
  Plant("Server", kRegSz, NarrowText("proxy.example", 14));
  Open([&](frmLanSettings& form) {
    EXPECT_TRUE(form.optOverride.Value());
    EXPECT_EQ(form.chkUseProxy.Value(), 1);
    EXPECT_EQ(form.txtProxyPort.Text(), u"8080");
    EXPECT_EQ(form.txtProxyAddress.Text(), u"proxy.example");
    EXPECT_TRUE(form.txtProxyAddress.Enabled());
  });
}

struct ControlState {
  bool override_;
  bool proxy;
  bool boxEnabled;
  bool fieldsEnabled;
};

class LanSettingsControls : public LanSettings, public testing::WithParamInterface<ControlState> {};

TEST_P(LanSettingsControls, FollowTheOptionsAndTheBox) {
  const ControlState& row = GetParam();
  Open([&](frmLanSettings& form) {
    // The other state first, so that each click has an effect.
    form.optOverride.UserClick();
    if (row.proxy) form.chkUseProxy.UserClick();
    (row.override_ ? form.optOverride : form.optDefault).UserClick();
    EXPECT_EQ(form.optDefault.Value(), !row.override_);
    EXPECT_EQ(form.chkUseProxy.Value(), row.proxy ? 1 : 0);
    EXPECT_EQ(form.chkUseProxy.Enabled(), row.boxEnabled);
    const std::array<const Control*, 4> fields{&form.lblProxyAddress, &form.lblProxyPort,
                                               &form.txtProxyAddress, &form.txtProxyPort};
    for (const Control* const control : fields) {
      EXPECT_EQ(control->Enabled(), row.fieldsEnabled) << control->name();
    }
  });
}

INSTANTIATE_TEST_SUITE_P(All, LanSettingsControls,
                         testing::Values(ControlState{false, false, false, false},
                                         ControlState{false, true, false, false},
                                         ControlState{true, false, true, false},
                                         ControlState{true, true, true, true}));

TEST_F(LanSettings, OkWithTheDefaultDeletesTheKeyWithItsValues) {
  Plant("UseProxy", kRegDword, DwordBytes(1));
  Plant("Server", kRegSz, NarrowText("a", 2));
  Open([&](frmLanSettings& form) {
    form.optDefault.UserClick();
    form.cmdOK.UserClick();
  });
  EXPECT_FALSE(KeyExists());
  PlantKey();
  EXPECT_EQ(Value("UseProxy"), std::nullopt) << "the values went with it";
}

TEST_F(LanSettings, OkWithTheDefaultAndNoKeyIsSilent) {
  Open([&](frmLanSettings& form) { form.cmdOK.UserClick(); });
  EXPECT_FALSE(KeyExists());
  EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(LanSettings, OverrideWithoutProxyStoresZerosAndMakesTheKey) {
  Open([&](frmLanSettings& form) {
    form.optOverride.UserClick();
    form.cmdOK.UserClick();
  });
  EXPECT_EQ(Value("UseProxy"), Dword(0));
  EXPECT_EQ(Value("Port"), Dword(0));
  EXPECT_EQ(Value("Server"), Sz(""));
  EXPECT_TRUE(desktop.messages.empty());
  Open([&](frmLanSettings& form) { EXPECT_TRUE(form.optOverride.Value()); });
}

TEST_F(LanSettings, WrittenInTheOrderUseProxyPortServer) {
  class Recording : public MemoryRegistryStore {
   public:
    std::vector<std::pair<NarrowText, NarrowText>> written;
    Status SetValue(KeyHandle key, const NarrowText& name, std::uint32_t kind,
                    const NarrowText& data) override {
      written.push_back({name, data});
      return MemoryRegistryStore::SetValue(key, name, kind, data);
    }
  } recording;
  desktop.whenModal["frmLanSettings"] = [&](Form& opened) {
    auto& form = static_cast<frmLanSettings&>(opened);
    form.optOverride.UserClick();
    form.chkUseProxy.UserClick();
    Type(form.txtProxyAddress, u"proxy");
    Type(form.txtProxyPort, u"3128");
    form.cmdOK.UserClick();
  };
  frmLanSettings form({desktop, recording, locale, strings});
  form.ShowModal(nullptr);
  const std::vector<std::pair<NarrowText, NarrowText>> expected = {
      {"UseProxy", DwordBytes(1)},
      {"Port", DwordBytes(0)},
      {"Port", DwordBytes(3128)},
      {"Server", NarrowText("proxy", 6)},
  };
  EXPECT_EQ(recording.written, expected);
}

struct Incomplete {
  TextView address;
  TextView port;
};

class LanSettingsIncomplete : public LanSettings, public testing::WithParamInterface<Incomplete> {};

TEST_P(LanSettingsIncomplete, ShowsAMessageAndNothingIsWritten) {
  Open([&](frmLanSettings& form) {
    form.optOverride.UserClick();
    form.chkUseProxy.UserClick();
    Type(form.txtProxyAddress, GetParam().address);
    Type(form.txtProxyPort, GetParam().port);
    form.cmdOK.UserClick();
    EXPECT_TRUE(form.Visible());
    form.cmdCancel.UserClick();
    EXPECT_FALSE(form.Visible());
  });
  EXPECT_EQ(desktop.messages,
            (std::vector<MemoryDesktop::Message>{{Text(kIncomplete), kExclamation, u"Marl"}}));
  EXPECT_FALSE(KeyExists());
}

INSTANTIATE_TEST_SUITE_P(Fields, LanSettingsIncomplete,
                         testing::Values(Incomplete{u"proxy", u""}, Incomplete{u"", u"80"},
                                         Incomplete{u"", u""}, Incomplete{u"   ", u"80"}));

TEST_F(LanSettings, IncompleteIsFineWithTheProxyOff) {
  Open([&](frmLanSettings& form) {
    form.optOverride.UserClick();
    Type(form.txtProxyAddress, u"kept.example");
    form.cmdOK.UserClick();
  });
  EXPECT_TRUE(desktop.messages.empty());
  EXPECT_EQ(Value("Server"), Sz("kept.example"));
}

TEST_F(LanSettings, FieldsKeepTheirContentsWhileTheProxyIsOff) {
  Plant("UseProxy", kRegDword, DwordBytes(1));
  Plant("Port", kRegDword, DwordBytes(8080));
  Plant("Server", kRegSz, NarrowText("proxy", 6));
  Open([&](frmLanSettings& form) {
    form.chkUseProxy.UserClick();
    form.cmdOK.UserClick();
  });
  EXPECT_EQ(Value("UseProxy"), Dword(0));
  EXPECT_EQ(Value("Port"), Dword(8080));
  EXPECT_EQ(Value("Server"), Sz("proxy"));
}

TEST_F(LanSettings, AddressIsStoredTrimmed) {
  Open([&](frmLanSettings& form) {
    form.optOverride.UserClick();
    form.chkUseProxy.UserClick();
    Type(form.txtProxyAddress, u"  my proxy  ");
    Type(form.txtProxyPort, u"0");
    form.cmdOK.UserClick();
  });
  EXPECT_EQ(Value("Server"), Sz("my proxy"));
  EXPECT_EQ(Value("Port"), Dword(0));
}

TEST_F(LanSettings, PortTakes65536AndRefuses65537) {
  Open([&](frmLanSettings& form) {
    form.optOverride.UserClick();
    form.chkUseProxy.UserClick();
    Type(form.txtProxyPort, u"65536");
    Type(form.txtProxyPort, u"65537");
    EXPECT_EQ(form.txtProxyPort.Text(), u"65536");
    Type(form.txtProxyAddress, u"p");
    form.cmdOK.UserClick();
  });
  EXPECT_EQ(Value("Port"), Dword(65536));
}

struct StoredPort {
  std::int32_t port;
  TextView shown;
};

class LanSettingsPort : public LanSettings, public testing::WithParamInterface<StoredPort> {};

TEST_P(LanSettingsPort, IsShownWhereItFits) {
  Plant("Port", kRegDword, DwordBytes(GetParam().port));
  Open([&](frmLanSettings& form) { EXPECT_EQ(form.txtProxyPort.Text(), GetParam().shown); });
}

INSTANTIATE_TEST_SUITE_P(Stored, LanSettingsPort,
                         testing::Values(StoredPort{0, u""}, StoredPort{1, u"1"},
                                         StoredPort{65536, u"65536"}, StoredPort{65537, u""},
                                         StoredPort{-1, u""}, StoredPort{2147483647, u""}));

TEST_F(LanSettings, UseProxyOfSevenIsShownCheckedAndWrittenAsOne) {
  Plant("UseProxy", kRegDword, DwordBytes(7));
  Plant("Port", kRegDword, DwordBytes(80));
  Plant("Server", kRegSz, NarrowText("p", 2));
  Open([&](frmLanSettings& form) {
    EXPECT_EQ(form.chkUseProxy.Value(), 1);
    form.cmdOK.UserClick();
  });
  EXPECT_EQ(Value("UseProxy"), Dword(1));
}

TEST_F(LanSettings, CancelWritesNothing) {
  Open([&](frmLanSettings& form) {
    form.optOverride.UserClick();
    form.cmdCancel.UserClick();
  });
  EXPECT_FALSE(KeyExists());
}

TEST_F(LanSettings, EachOpeningStartsFromTheStoredValues) {
  Plant("Server", kRegSz, NarrowText("stored", 7));
  frmLanSettings form({desktop, registry, locale, strings});
  desktop.whenModal["frmLanSettings"] = [&](Form&) {
    Type(form.txtProxyAddress, u"typed");
    form.cmdCancel.UserClick();
  };
  form.ShowModal(nullptr);
  desktop.whenModal["frmLanSettings"] = [&](Form&) {
    EXPECT_EQ(form.txtProxyAddress.Text(), u"stored");
  };
  form.ShowModal(nullptr);
}

TEST_F(LanSettings, RefusingStoreIsSilentAndTheDialogCloses) {
  ReadOnlyRegistry readOnly;
  readOnly.Plant(kCurrentUser, kKey, "UseProxy", kRegDword, DwordBytes(0));
  for (const bool toDefault : {true, false}) {
    desktop.whenModal["frmLanSettings"] = [&](Form& opened) {
      auto& form = static_cast<frmLanSettings&>(opened);
      if (toDefault) form.optDefault.UserClick();
      form.cmdOK.UserClick();
      EXPECT_FALSE(form.Visible());
    };
    frmLanSettings form({desktop, readOnly, locale, strings});
    form.ShowModal(nullptr);
  }
  EXPECT_TRUE(desktop.messages.empty());
}

// Values of other kinds, as any program can write them.
TEST_F(LanSettings, ForeignKindsAreConvertedAsTheRuntimeDoes) {
  Plant("UseProxy", kRegSz, NarrowText("1", 2));
  Plant("Port", kRegSz, NarrowText("8080", 5));
  Plant("Server", kRegDword, DwordBytes(42));
  Open([&](frmLanSettings& form) {
    EXPECT_EQ(form.chkUseProxy.Value(), 1);
    EXPECT_EQ(form.txtProxyPort.Text(), u"8080");
    EXPECT_EQ(form.txtProxyAddress.Text(), u"42");
    form.cmdOK.UserClick();
  });
  EXPECT_EQ(Value("UseProxy"), Dword(1));
  EXPECT_EQ(Value("Port"), Dword(8080));
  EXPECT_EQ(Value("Server"), Sz("42"));
}

TEST_F(LanSettings, ANumberIsReadAsTheUserWritesNumbers) {
  locale.threadLocale = 0x407;
  Plant("Port", kRegSz, NarrowText("8080,4", 7));
  Open([&](frmLanSettings& form) { EXPECT_EQ(form.txtProxyPort.Text(), u"8080"); });
}

struct RejectedValue {
  std::uint32_t kind;
  NarrowText data;
  const char16_t* message;  ///< null if the value is accepted
};

TEST_F(LanSettings, ValueThatIsNoNumberEndsTheProgramWithTheRuntimesText) {
  const RejectedValue rows[] = {{kRegSz, NarrowText("yes", 4), u"Type mismatch"},
                                {kRegSz, NarrowText("", 1), u"Type mismatch"},
                                {kRegSz, "", nullptr},
                                {kRegExpandSz, NarrowText("%none%", 7), u"Type mismatch"},
                                {kRegSz, NarrowText("3000000000", 11), u"Overflow"},
                                {kRegBinary, DwordBytes(1), u"Type mismatch"},
                                {kRegBinary, "", u"Type mismatch"},
                                {11, NarrowText("12345678"), u"Type mismatch"},
                                {0xFFFFFFFF, NarrowText(10000, 'A'), u"Type mismatch"},
                                {kRegDword, "\1", nullptr}};
  for (const RejectedValue& row : rows) {
    for (const char* const name : {"UseProxy", "Port"}) {
      SCOPED_TRACE(testing::Message() << name << " of kind " << row.kind);
      MemoryDesktop screen;
      MemoryRegistryStore store;
      store.Plant(kCurrentUser, kKey, name, row.kind, row.data);
      bool shown = false;
      if (!row.message) screen.whenModal["frmLanSettings"] = [&](Form&) { shown = true; };
      frmLanSettings form({screen, store, locale, strings});
      screen.Event([&] { form.ShowModal(nullptr); });
      EXPECT_EQ(shown, row.message == nullptr);
      EXPECT_EQ(screen.ended(), row.message != nullptr);
      if (row.message) {
        EXPECT_EQ(screen.messages,
                  (std::vector{MemoryDesktop::Message{row.message, kCritical, u"Marl"}}));
      } else {
        EXPECT_TRUE(screen.messages.empty());
      }
    }
  }
}

TEST_F(LanSettings, AnAddressOfAnyKindIsShownAndMakesNoMessage) {
  for (const std::uint32_t kind : {0u, 1u, 2u, 3u, 5u, 7u, 11u, 0xFFFFFFFFu}) {
    for (const NarrowText& bytes :
         {NarrowText(), NarrowText("x"), NarrowText("\xFF\xFE", 2), NarrowText(10000, 'A')}) {
      Plant("Server", kind, bytes);
      bool shown = false;
      Open([&](frmLanSettings&) { shown = true; });
      EXPECT_TRUE(shown);
    }
  }
  EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(LanSettings, KeysReachEveryControl) {
  Open([&](frmLanSettings& form) {
    EXPECT_EQ(form.DefaultButton(), &form.cmdOK);
    EXPECT_EQ(form.CancelButton(), &form.cmdCancel);
    EXPECT_EQ(form.AccessKeyTarget(u'a'), nullptr) << "its field is disabled";
    form.optOverride.UserClick();
    form.chkUseProxy.UserClick();
    EXPECT_EQ(form.AccessKeyTarget(u'a'), &form.txtProxyAddress);
    EXPECT_EQ(form.AccessKeyTarget(u'P'), &form.txtProxyPort);
    EXPECT_EQ(form.AccessKeyTarget(u'z'), nullptr);
    std::vector<const Control*> order;
    for (const Control* control : form.controls()) {
      if (!control->windowless() && control->TabStop) order.push_back(control);
    }
    EXPECT_EQ(order, (std::vector<const Control*>{
                         &form.optDefault, &form.optOverride, &form.chkUseProxy,
                         &form.txtProxyAddress, &form.txtProxyPort, &form.cmdOK, &form.cmdCancel}));
  });
}

}  // namespace
}  // namespace marl
