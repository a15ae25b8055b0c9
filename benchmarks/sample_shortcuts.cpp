#include "benchmarks/sample_shortcuts.h"

#include "infra/runtime/format.h"
#include "samples/link_builder.h"

namespace smh::bench {

namespace {

std::string Narrow(const std::wstring& text) {
  return std::string(text.begin(), text.end());
}

}  // namespace

Shortcuts::Shortcuts(const Programs& programs, int count) : places_(test::StartupPlaces::Whose::kUser) {
  for (int i = 0; i < count; ++i) {
    LinkBuilder link;
    link.info = LinkInfoSpec{.basePath = Narrow(programs[i])};
    link.strings = {{LinkString::kName, u"A shortcut of the benchmark"}, {LinkString::kArguments, u"/quiet"}};
    test::WriteFileBytes(places_.startup + Format(L"Shortcut %d.lnk", i), link.Build().Text());
  }
}

}  // namespace smh::bench
