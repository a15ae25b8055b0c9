// Which places on the network answer. A dead one holds whoever looks at it for a long time: so the first look
// at each is taken on a thread of its own and waited for only so long, and while it is known for dead nobody
// looks there.
//
// A root is a share, or a drive that stands for one. What is known of it holds for the pass that it was
// learned in, or a later look within ten seconds outside of any pass; then it is asked for again. Local roots
// and those that answer are looked at directly.
//
// Any thread may call any operation. One leaf lock, not held while anything is looked at. Raise EAbort once
// the calling thread's pass was asked to end, std::bad_alloc and EAssertionFailed before the module's start.
#pragma once

#include "infra/files/file_facts.h"
#include "infra/runtime/module_global.h"

#include <windows.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace smh {

// How long the first look at a root is waited for.
inline constexpr DWORD kRootPatienceMs = 2000;

// What a thread reads in one go, for a scope on that thread; one within another has its place meanwhile.
class ReadingPass {
 public:
  // `isAskedToEnd` is asked before every look, on this thread; it takes no lock. Raises std::bad_alloc.
  explicit ReadingPass(std::function<bool()> isAskedToEnd);
  ~ReadingPass();
  ReadingPass(const ReadingPass&) = delete;
  ReadingPass& operator=(const ReadingPass&) = delete;

  // A new pass begins: every root is asked for again.
  void Begin();

 private:
  friend struct NetworkRoots;

  std::function<bool()> isAskedToEnd_;
  std::uint64_t begin_ = 0;
  ReadingPass* outer_ = nullptr;
};

// The root of a full path, in one spelling: "\\server\share\" or "Z:\"; empty for a local one and for any
// other text.
std::wstring NetworkRootOf(std::wstring_view path);

// Whether the path's root answers; true for a local one, and for a text that is no full path.
bool IsReachable(std::wstring_view path);

// As IsFile, IsFolder and StampOf (file_facts.h) see the path, but nothing where the root does not answer;
// then the thread's last error is ERROR_BAD_NETPATH. A look that fails for the network's sake tells of the
// root too.
bool IsReachableFile(PathView path);
bool IsReachableFolder(PathView path);
std::optional<FileStamp> ReachableStamp(PathView path);

// What is known of roots. A look that was given up goes on; it may outlive the module, because its thread
// runs nothing of it.
struct NetworkRoots;
extern ModuleGlobal<NetworkRoots> g_networkRoots;

}  // namespace smh
