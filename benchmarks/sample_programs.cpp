#include "benchmarks/sample_programs.h"

#include "infra/runtime/format.h"

#include <windows.h>

namespace smh::bench {

Programs::Programs(int count) {
  wchar_t own[MAX_PATH];
  GetModuleFileNameW(nullptr, own, MAX_PATH);
  std::wstring sample(own);
  sample.replace(sample.rfind(L'\\') + 1, std::wstring::npos, L"boundary_sample.exe");
  const std::string bytes = test::ReadFileBytes(sample);
  for (int i = 0; i < count; ++i) paths_.push_back(folder_.Write(Format(L"program%d.exe", i), bytes));
}

}  // namespace smh::bench
