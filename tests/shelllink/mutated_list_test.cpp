// ID lists with items whose sizes are right and whose contents are not: the shell would read past them.
#include "infra/runtime/byte_cursor.h"
#include "shelllink/uShellLinkInfo.h"
#include "tests/shelllink/shell_link_fixture.h"
#include "tests/support/child_process.h"
#include "tests/support/test_main.h"

#include <gtest/gtest.h>
#include <shlobj.h>

#include <random>
#include <string>
#include <vector>

namespace smh::test {
namespace {

constexpr int kLinks = 4'000;

using Items = std::vector<std::string>;

// The contents of the items of a list as the shell makes it.
Items ItemsOf(const wchar_t* path) {
  PIDLIST_ABSOLUTE list = ILCreateFromPathW(path);
  if (list == nullptr) list = SHSimpleIDListFromPath(path);
  if (list == nullptr) return {};
  Items items;
  ByteCursor rest(std::as_bytes(std::span(reinterpret_cast<const char*>(list), ILGetSize(list))));
  for (std::uint16_t size = rest.U16(); size > 2; size = rest.U16()) {
    const Bytes item = rest.Take(size - 2u);
    items.emplace_back(reinterpret_cast<const char*>(item.data()), item.size());
  }
  ILFree(list);
  return items;
}

// Computer, network, control panel, printers, documents, bin, Internet.
constexpr const wchar_t* kFolders[] = {
    L"{20D04FE0-3AEA-1069-A2D8-08002B30309D}", L"{208D2C60-3AEA-1069-A2D7-08002B30309D}",
    L"{21EC2020-3AEA-1069-A2DD-08002B30309D}", L"{2227A280-3AEA-1069-A2DE-08002B30309D}",
    L"{450D8FBA-AD25-11D0-98A8-0800361B1103}", L"{645FF040-5081-101B-9F08-00AA002F954E}",
    L"{871C5380-42A0-1069-A2EA-08002B30309D}"};

std::string FolderItem(const wchar_t* folder) {
  GUID id{};
  EXPECT_EQ(CLSIDFromString(folder, &id), S_OK);
  return "\x1F\x50" + std::string(reinterpret_cast<const char*>(&id), sizeof(id));
}

// Lists of whole files, and of any items behind each other, with a few changes in the contents.
class Mutator {
  std::size_t Below(std::size_t limit) { return random_() % limit; }
  template <typename List>
  auto& Any(List& list) {
    return list[Below(list.size())];
  }

 public:
  Mutator(unsigned seed, std::vector<Items> lists) : random_(seed), lists_(std::move(lists)) {
    for (const wchar_t* const folder : kFolders) pool_.push_back(FolderItem(folder));
    for (const Items& list : lists_) pool_.insert(pool_.end(), list.begin(), list.end());
  }

  std::string Next() {
    Items items = Any(lists_);
    if (Below(2) == 0) {
      items.resize(1);
      items[0] = pool_[Below(std::size(kFolders))];
      for (std::size_t count = 1 + Below(3); count > 0; --count) items.push_back(Any(pool_));
    }
    for (std::size_t count = 1 + Below(4); count > 0; --count) Change(Any(items));
    return IdListOf(items);
  }

 private:
  void Change(std::string& item) {
    switch (Below(6)) {
      case 0:
        item.resize(1 + Below(item.size()));
        break;
      case 1:
        for (char& byte : item) byte = byte == 0 ? 'x' : byte;
        break;
      case 2:
        item[0] = static_cast<char>(Below(256));
        break;
      case 3:
        item.resize(item.size() + Below(600), 'y');
        break;
      case 4:
        item.insert(Below(item.size()), Below(600), 'y');
        break;
      default:
        Any(item) = static_cast<char>(Below(256));
    }
  }

  std::mt19937 random_;
  const std::vector<Items> lists_;
  Items pool_;
};

// Reads the targets of links with mutated lists, from a seed on; ends early only with the process.
SMH_CHILD(ReadMutatedLists) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  g_siblings.Start();
  g_desktopFolder.Start();
  const TemporaryFolder folder;
  Mutator mutator(
      static_cast<unsigned>(std::stoul(arguments.at(0))),
      {ItemsOf(L"C:\\windows\\system32\\cmd.exe"), ItemsOf(L"C:\\Program Files"),
       ItemsOf(folder.Write(L"a long name with blanks.exe", "x").c_str()), ItemsOf(L"Q:\\gone\\gone.exe")});
  int named = 0;
  for (int i = 0; i < kLinks; ++i) {
    LinkBuilder link;
    link.idList = mutator.Next();
    TShellLinkInfo info;
    info.SetBytes(L"x.lnk", link.Build().Text());
    if (!info.Target().empty()) ++named;
  }
  g_desktopFolder.Stop();
  g_siblings.Stop();
  CoUninitialize();
  // Some changes leave a name.
  return named > kLinks / 100 ? 0 : 1;
}

TEST(MutatedListTest, NoListEndsTheProcess) {
  for (int seed = 1; seed <= 5; ++seed) {
    const ChildResult result = RunChild(L"ReadMutatedLists", {std::to_wstring(seed)});
    EXPECT_FALSE(result.timedOut);
    EXPECT_EQ(result.exitCode, 0u) << "seed " << seed;
  }
}

}  // namespace
}  // namespace smh::test
