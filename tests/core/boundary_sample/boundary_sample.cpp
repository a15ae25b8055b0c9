// Started by tests: writes the arguments after the first one, one a line, into the file that the first one
// names.
#include <cstdio>

int wmain(int count, wchar_t** values) {
  if (count < 2) return 0;
  std::FILE* const file = _wfopen(values[1], L"wb");
  if (file == nullptr) return 1;
  for (int i = 2; i < count; ++i) std::fprintf(file, "%ls\n", values[i]);
  return std::fclose(file);
}
