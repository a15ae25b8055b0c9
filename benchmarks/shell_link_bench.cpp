// Reading a shell link: against the shell's own loader on the same bytes, against the bare calls on the same
// file, and against copying the same sections.

#include "benchmarks/bench.h"
#include "benchmarks/link_sections_copy.h"
#include "infra/runtime/com_ptr.h"
#include "infra/runtime/handle.h"
#include "shelllink/uShellLinkInfo.h"
#include "tests/support/file_fixture.h"

#include <shlobj.h>

#include <stdexcept>

namespace smh::bench {
namespace {

void Check(HRESULT result) {
  if (FAILED(result)) throw std::runtime_error("a call of the shell failed");
}

template <typename Interface>
ComPtr<Interface> Ask(IUnknown& object, const IID& id) {
  ComPtr<Interface> result;
  Check(object.QueryInterface(id, reinterpret_cast<void**>(result.Put())));
  return result;
}

ComPtr<IUnknown> NewShellLink() {
  ComPtr<IUnknown> link;
  Check(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                         reinterpret_cast<void**>(link.Put())));
  return link;
}

// About one and a half kilobytes, as the shell saves it for a program with arguments and an icon.
class SavedLink {
 public:
  SavedLink() : path(folder.File(L"saved.lnk")) {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    const ComPtr<IUnknown> object = NewShellLink();
    const ComPtr<IShellLinkW> link = Ask<IShellLinkW>(*object, IID_IShellLinkW);
    Check(link->SetPath(folder.Write(L"program.exe", "x").c_str()));
    Check(link->SetArguments(L"/background /profile \"Default user\""));
    Check(link->SetDescription(L"Starts the program in the background"));
    Check(link->SetWorkingDirectory(folder.Path().c_str()));
    Check(link->SetIconLocation(L"%SystemRoot%\\system32\\shell32.dll", 3));
    Check(Ask<IPersistFile>(*object, IID_IPersistFile)->Save(path.c_str(), TRUE));
    bytes = test::ReadFileBytes(path);
  }

  Bytes AsBytes() const { return std::as_bytes(std::span(bytes)); }

  test::TemporaryFolder folder;
  std::wstring path;
  std::string bytes;
};

std::size_t OpenReadClose(const std::wstring& path) {
  const ScopedHandle file(
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  char buffer[8192];
  DWORD read = 0;
  ReadFile(file.Get(), buffer, sizeof buffer, &read, nullptr);
  return read;
}

TEST_CASE("Reading a link file") {
  const SavedLink saved;
  const auto ours = [&] { return TShellLinkInfo(saved.path).HotKey(); };
  const Pair file = AlternateRuns(15, 200, ours, [&] { OpenReadClose(saved.path); });
  AddRow("link file: open, read and close", "us", file.ours, file.reference, 1.2);
  const ComPtr<IUnknown> object = NewShellLink();
  const ComPtr<IPersistFile> loader = Ask<IPersistFile>(*object, IID_IPersistFile);
  const Pair shell = AlternateRuns(15, 200, ours, [&] { loader->Load(saved.path.c_str(), STGM_READ); });
  AddRow("link file: the shell's loader", "us", shell.ours, shell.reference, kNoGoal);
}

TEST_CASE("Parsing a link in memory") {
  const SavedLink saved;
  const std::vector<Bytes> sections = SectionsOf(saved.AsBytes());
  const auto ours = [&] {
    LinkSections link;
    link.Load(saved.AsBytes());
    return link.Header().HotKey();
  };
  const Pair copying = AlternateRuns(15, 20'000, ours, [&] { CopySections(sections); });
  AddRow("link of " + std::to_string(saved.bytes.size()) + " bytes in memory: copying its sections", "us",
         copying.ours, copying.reference, 3);
}

}  // namespace
}  // namespace smh::bench
