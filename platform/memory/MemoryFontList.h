#pragma once

#include <functional>
#include <vector>

#include "platform/FontList.h"

namespace marl {

/// The fonts that a test puts on its machine, as the platform hands them over.
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
