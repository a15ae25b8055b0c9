// A handler's key with all that is below it: it goes whole or not at all, and nothing of another program's
// goes with it.
#include "tests/locations/registry/handler_rules_fixture.h"
#include "tests/locations/registry/meanwhile.h"

#include <gmock/gmock.h>

namespace smh::test {
namespace {

using Kind = ChangeAnswer::Kind;
using ::testing::IsEmpty;

using HandlerTree = HandlerRules;
INSTANTIATE_TEST_SUITE_P(Checkpoints, HandlerTree, ::testing::Bool());

TEST_P(HandlerTree, ATreeIsDeletedWholeOrNotAtAll) {
  using Rights = LimitedKey::Rights;
  const std::pair<std::wstring, Rights> rows[] = {{L"\\a", Rights::kNone},
                                                  {L"\\a\\b", Rights::kReadOnly},
                                                  {L"\\a\\b", Rights::kNone},
                                                  {L"\\z:/", Rights::kReadOnly},
                                                  {L"\\z:/", Rights::kNone}};
  for (const auto& [limited, rights] : rows) {
    DeleteKeyTree(kMachine, Menu(L"Foo"), OwnView());
    MakeTree(Menu(L"Foo"));
    // It gives other rights back than it has taken.
    std::make_unique<LimitedKey>(kMachine, Menu(L"Foo") + limited, rights, OwnView());
    const std::string before = Tree(Menu(L"Foo"));
    const ItemRef item = LoadMenu(L"Foo");
    ASSERT_NE(item, nullptr);
    {
      const LimitedKey noRights(kMachine, Menu(L"Foo") + limited, rights, OwnView());
      for (const auto& change : {&TLocationStartup::DeleteItem, &TLocationStartup::DisableItem}) {
        try {
          EXPECT_EQ((Menus().*change)(item).kind, Kind::kRefused) << limited;
        } catch (const EOSError& error) {
          EXPECT_EQ(error.Code(), DWORD(ERROR_ACCESS_DENIED));
        }
      }
    }
    EXPECT_EQ(Tree(Menu(L"Foo")), before) << limited;
    EXPECT_THAT(Tree(Off(L"Foo")), IsEmpty()) << limited;
    EXPECT_TRUE(item->IsListed() && item->IsEnabled());
  }
}

// Refused, or pretended, at every call in turn and from there on.
TEST_P(HandlerTree, ATreeWhoseDeletionIsCutOffComesBackToTheByte) {
  if (!GetParam()) return;
  for (const LSTATUS answer : {ERROR_ACCESS_DENIED, ERROR_SUCCESS}) {
    for (int number = 1;; ++number) {
      DeleteKeyTree(kMachine, Menu(L"Foo"), OwnView());
      MakeTree(Menu(L"Foo"));
      // Nothing may be made in it.
      GiveRights(Menu(L"Foo\\a"), L"D:P(A;;KRSD;;;WD)");
      const std::string before = Tree(Menu(L"Foo"));
      const ItemRef item = LoadMenu(L"Foo");
      int count = 0;
      module.Safeguard().Before([&](const std::wstring& line) {
        const bool deletes = line.starts_with(L"DeleteKey") || line.starts_with(L"DeleteValue");
        if (deletes && ++count == number - 1) module.Safeguard().Answer(L"Delete", answer, 99);
      });
      if (number == 1) module.Safeguard().Answer(L"Delete", answer, 99);
      const ChangeAnswer done = Menus().DeleteItem(item);
      module.Safeguard().Clear();
      if (done.kind == Kind::kDone) {
        EXPECT_EQ(number, 11) << "six values, four keys";
        break;
      }
      EXPECT_EQ(done.kind, Kind::kRefused);
      EXPECT_EQ(Tree(Menu(L"Foo")), before) << number;
      GiveRights(Menu(L"Foo\\a"), L"D:(A;OICI;KA;;;WD)");
      EXPECT_TRUE(item->IsListed());
    }
  }
}

TEST_P(HandlerTree, ATreeThatOthersAddToStays) {
  for (const wchar_t* theirs : {L"\\new", L"\\a\\b\\new", L"\\z:/\\new"}) {
    DeleteKeyTree(kMachine, Menu(L"Foo"), OwnView());
    MakeTree(Menu(L"Foo"));
    const ItemRef item = LoadMenu(L"Foo");
    std::string expected;
    {
      const Meanwhile meanwhile(module.Safeguard(), GetParam(), Meanwhile::Call::kDelete, [&] {
        SetValue(kMachine, Menu(L"Foo") + theirs, L"v", Sz(L"theirs"), OwnView());
        expected = Tree(Menu(L"Foo"));
      });
      ExpectChangedMeanwhile([&] { Menus().DeleteItem(item); }, theirs);
      EXPECT_TRUE(meanwhile.HasRun());
    }
    EXPECT_EQ(Tree(Menu(L"Foo")), expected) << theirs;
    EXPECT_TRUE(item->IsListed());

    // While the target is written: then nothing of the source is begun.
    RemoveValue(kMachine, Menu(L"Foo") + theirs, L"v", OwnView());
    const ItemRef again = LoadMenu(L"Foo");
    module.Safeguard().Clear();
    {
      const Meanwhile meanwhile(module.Safeguard(), GetParam(), Meanwhile::Call::kWrite, [&] {
        SetValue(kMachine, Menu(L"Foo") + theirs, L"v", Sz(L"theirs"), OwnView());
      });
      ExpectChangedMeanwhile([&] { Menus().DisableItem(again); }, theirs);
    }
    EXPECT_EQ(Tree(Menu(L"Foo")), expected) << theirs;
    EXPECT_THAT(Tree(Off(L"Foo")), IsEmpty());
    for (const std::wstring& line : RecordedChanges()) EXPECT_FALSE(line.starts_with(L"Delete")) << line;
  }
}

TEST_P(HandlerTree, ALinkIsNeitherEnteredNorWrittenThrough) {
  const RegistryTree outside(L"Software\\Handler rules target");
  outside.Set(L"", L"", Sz(kOther));
  outside.Set(L"sub", L"v", Sz(L"stays"));
  // As a handler, and as the place where one would go.
  SetHandler(kMachine, Menu(L"Foo"), kClass, OwnView());
  MakeKey(kMachine, kMenusKey + kAutorunsSide, OwnView());
  MakeLink(kMachine, Off(L"Foo"), outside.Key().Get(), OwnView());
  const ItemRef item = LoadMenu(L"Foo");
  ASSERT_NE(item, nullptr);
  try {
    EXPECT_NE(Menus().DisableItem(item).kind, Kind::kDone);
  } catch (const Exception&) {
  }
  EXPECT_EQ(Handler(kMachine, Menu(L"Foo"), OwnView()), Sz(kClass));
  EXPECT_EQ(outside.Get(L"", L""), Sz(kOther));
  EXPECT_EQ(outside.Get(L"sub", L"v"), Sz(L"stays"));
  DeleteKeyTree(kMachine, Off(L"Foo"), OwnView());

  MakeLink(kMachine, Menu(L"Linked"), outside.Key().Get(), OwnView());
  if (const ItemRef linked = LoadMenu(L"Linked")) {
    for (const auto& change : {&TLocationStartup::DisableItem, &TLocationStartup::DeleteItem}) {
      try {
        EXPECT_NE((Menus().*change)(linked).kind, Kind::kDone);
      } catch (const Exception&) {
      }
    }
  }
  EXPECT_EQ(outside.Get(L"", L""), Sz(kOther));
  EXPECT_EQ(outside.Get(L"sub", L"v"), Sz(L"stays"));
  DeleteKeyTree(kMachine, Menu(L"Linked"), OwnView());
}

}  // namespace
}  // namespace smh::test
