#pragma once

#include <functional>
#include <vector>

#include "platform/FontList.h"

namespace marl {

/// Fonts set by a test, in the form in which the platform passes them on.
class MemoryFontList : public FontList {
 public:
  std::vector<Text> faces{u"Tahoma", u"Arial", u"Times New Roman", u"Courier New"};

  void EnumFamilies(const Form&, const std::function<bool(TextView faceName)>& visit) override {
    for (const Text& face : faces) {
      if (!visit(face)) return;
    }
  }
};

}  // namespace marl
