#include "platform/memory/Misuse.h"

#include <cstdio>
#include <cstdlib>

namespace marl {

namespace {

void EndTheProcess(const std::string& what) {
  std::fprintf(stderr, "%s\n", what.c_str());
  std::abort();
}

MisuseHandler theHandler = &EndTheProcess;

}  // namespace

void OnMisuse(MisuseHandler handler) { theHandler = handler ? handler : &EndTheProcess; }

void ReportMisuse(const std::string& what) { theHandler(what); }

}  // namespace marl
