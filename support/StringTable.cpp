#include "support/StringTable.h"

#include "platform/RuntimeError.h"
#include "support/Numbers.h"

namespace marl {

Text StringTable::Get(int id) const {
  Text text;
  if (!resource_.Load(id, text)) {
    throw RuntimeError(326, u"Resource with identifier '" + NumberText(id) + u"' not found");
  }
  return text;
}

}  // namespace marl
