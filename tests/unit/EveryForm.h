#pragma once

#include <array>

#include "appearance/frmFont.h"
#include "appearance/frmUI.h"
#include "documents/frmSelectFile.h"
#include "network/frmChangeServer.h"
#include "network/frmLanSettings.h"
#include "settings/frmOptions.h"
#include "settings/frmSegmentation.h"
#include "shell/frmPrjWiz.h"
#include "shell/frmRunningApps.h"
#include "support/frmAbout2006.h"
#include "support/frmSplash.h"
#include "tests/unit/World.h"

namespace marl {

/// All forms but the main window, not loaded yet.
struct EveryForm {
  explicit EveryForm(World& world)
      : splash(world.desktop, world.pictures, world.locales),
        about({world.desktop, world.pictures, world.locales, world.strings, [](WindowHandle) {},
               [](TextView, TextView, TextView, TextView, int) {}}),
        owner(world.desktop, "frmOwner"),
        samples(owner),
        list(world.registry, world.locales),
        options({world.desktop, world.registry, world.locales, world.strings}, {}, owner),
        segmentation({world.desktop, world.registry, world.locales, world.strings}),
        lan({world.desktop, world.registry, world.locales, world.strings}),
        server({world.desktop, world.locales, world.pictures, world.strings}, list),
        select({world.desktop, world.locales, world.strings, [](WindowHandle) {}}),
        wizard(world.desktop, world.locales, world.strings),
        running(world.desktop, world.locales, world.strings),
        font({world.desktop, world.locales, world.strings, world.colorDialog, world.fontList},
             samples),
        display({world.desktop, world.registry, world.files, world.fileDialogs, world.colorDialog,
                 world.fontList, world.pictures, world.locales, world.strings, [](WindowHandle) {}},
                CaptionsOf(world)) {}

  std::array<Form*, 11> All() {
    return {&splash, &about,  &options, &segmentation, &lan,    &server,
            &select, &wizard, &running, &font,         &display};
  }

  frmSplash splash;
  frmAbout2006 about;

 private:
  class OneSample : public SampleForm {
   public:
    explicit OneSample(Form& form) : label_(form, "lblSample") {}
    Label& Sample(int) override { return label_; }
    Color GradientColor(int) const override { return 0; }
    int GradientAngle() const override { return 90; }

   private:
    Label label_;
  };

  static frmUI::Switchboard CaptionsOf(World& world) {
    frmUI::Switchboard switchboard;
    for (std::size_t i = 0; i < switchboard.captions.size(); ++i) {
      switchboard.captions[i] = world.strings.Get(IDS_BUTTON_ANALYSE + static_cast<int>(i));
    }
    return switchboard;
  }

  Form owner;
  OneSample samples;
  clsMRU list;

 public:
  frmOptions options;
  frmSegmentation segmentation;
  frmLanSettings lan;
  frmChangeServer server;
  frmSelectFile select;
  frmPrjWiz wizard;
  frmRunningApps running;
  frmFont font;
  frmUI display;
};

}  // namespace marl
