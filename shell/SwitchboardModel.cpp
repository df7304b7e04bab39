#include "shell/SwitchboardModel.h"

namespace marl {

const std::array<SwitchboardButton, kButtonCount> kSwitchboard = {{
    {u"q17gauge.exe", u"Q17Gauge.exe"},      // 0 Analyse
    {u"q17pair.exe", u"Q17Pair.exe"},        // 1 Align
    {u"q17lexis.exe", u"Q17Lexis.exe"},      // 2 TermVault
    {u"q17cadence.exe", u"Q17Cadence.exe"},  // 3 Project Wizard
    {u"q17batch.exe", u"Q17Batch.exe"},      // 4 Apply
    {u"q17bench.exe", u"Q17Bench.exe"},      // 5 Edit
    {u"", u""},                              // 6 Change Server
    {u"", u""},                              // 7 Track Projects
    {u"q17warden.exe", u"Q17Warden.exe"},    // 8 Administrator
    {u"q17kit.exe", u"Q17Kit.exe"},          // 9 Utilities
    {u"", u""},                              // 10 QA Check
    {u"q17vault.exe", u"Q17Vault.exe"},      // 11 Maintain
    {u"q17renew.exe", u"Q17Renew.exe"},      // 12 Update
    {u"q17diff.exe", u"Q17Diff.exe"},        // 13 Compare
    {u"q17bridge.exe", u"Q17Bridge.exe"},    // 14 Exchange
    {u"q17cleave.exe", u"Q17Cleave.exe"},    // 15 Split
    {u"q17xlf.exe", u"Q17Xlf.exe"},          // 16 XLIFF
    {u"", u""},                              // 17 Exit
}};

namespace {

// Each button has its two texts, and the two ranges of ids do not overlap.
#define MARL_STRING(id, text) +((id) >= kCaptionString && (id) < kTooltipString)
constexpr int kCaptions = 0
#include "resources/strings/en.inc"
    ;
#undef MARL_STRING
#define MARL_STRING(id, text) +((id) >= kTooltipString && (id) < kTooltipString + kButtonCount)
constexpr int kTooltips = 0
#include "resources/strings/en.inc"
    ;
#undef MARL_STRING
static_assert(kCaptions == kButtonCount && kTooltips == kButtonCount);
static_assert(kTooltipString >= kCaptionString + kButtonCount);

}  // namespace

bool HiddenKeySequence::Take(char16_t character) {
  constexpr TextView kWord = u"SETGUI";
  if (character != kWord[static_cast<std::size_t>(position_ - 1)]) {
    position_ = 1;
    return false;
  }
  return ++position_ > static_cast<int>(kWord.size());
}

}  // namespace marl
