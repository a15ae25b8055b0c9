// Snapshots without a machine: their format, what is refused of others' files, comparing, adapting, planning.
#include "hosts/cli/apply_plan.h"
#include "hosts/common/flat_json.h"
#include "hosts/common/snapshot_compare.h"
#include "hosts/common/snapshot_file.h"
#include "hosts/common/text_encoding.h"
#include "infra/runtime/text.h"
#include "tests/hosts/cli/snapshot_entries.h"

#include <gtest/gtest.h>

namespace smh::test {

namespace {

const std::wstring kMenus = L"Software\\Classes\\*\\shellex\\ContextMenuHandlers";
const std::wstring kLone(1, static_cast<wchar_t>(0xD83D));

SnapshotEntry Handler(const std::wstring& name) {
  SnapshotEntry entry = User({}, L"C:\\menu.dll");
  entry.location = sulRegistryAllRegContextMenuHandlers;
  entry.key = kMenus + L"\\" + name;
  entry.valueName.reset();
  return entry;
}

Snapshot SnapshotOf(std::vector<SnapshotEntry> entries) {
  return {{.name = L"PC",
           .hasTwoViews = true,
           .profileFolder = L"C:\\Users\\ann",
           .roamingFolder = {},
           .localFolder = L"C:\\Users\\ann\\AppData\\Local"},
          L"2024-05-31T23:59:59Z",
          std::move(entries)};
}

TEST(SnapshotFile, ComesBackAsItWas) {
  SnapshotEntry parked = User(L"b", L"C:\\b.exe", false);
  parked.key = kRunPath + L"\\AutorunsDisabled";
  parked.disabledBy = parked.key;
  parked.twin = L"";
  const Snapshot snapshot = SnapshotOf({User(L"", L"\"C:\\a \u4E2D.exe\" \n\x80"), parked,
                                        User(std::wstring(L"nul\0\\u{41}", 10), kLone + L"\\x"),
                                        Shortcut(L"mixer.lnk", L"C:\\m.exe"), Handler(L"a/b:c")});
  const std::string bytes = ToUtf8(SnapshotText(snapshot));
  const Snapshot back = ParseSnapshot("\xEF\xBB\xBF" + bytes);
  EXPECT_EQ(back.machine, snapshot.machine);
  EXPECT_EQ(back.time, snapshot.time);
  EXPECT_EQ(back.entries, snapshot.entries);
  // Every beginning of a file is refused, not taken for a smaller state.
  for (std::size_t size = 0; size + 2 < bytes.size(); size += 7) {
    EXPECT_THROW(ParseSnapshot(bytes.substr(0, size)), JsonFault) << size;
  }
}

TEST(SnapshotFile, HostileOnesAreRefusedWithAReason) {
  const std::string good =
      ToUtf8(SnapshotText(SnapshotOf({User(L"a", L"C:\\a.exe"), Shortcut(L"m.lnk", L"m")})));
  const auto with = [&good](const std::string& from, const std::string& to) {
    std::string text = good;
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
  };
  const auto many = [](const std::string& text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all;
  };
  const std::string entry =
      good.substr(good.find("{\"location\""), good.find("},\n{") + 1 - good.find("{\"location\""));
  const std::pair<std::string, const wchar_t*> rows[] = {
      {"", L"not valid JSON"},
      {"[]", L"a list"},
      {"3", L"no object"},
      {"{}", L"snapshotVersion"},
      {many("[", 1'000'000), L"a list"},
      {many("{\"a\":", 1'000'000), L"\"a\" is an object"},
      {with("Version\":1", "Version\":2"), L"version 2"},
      {with("\"views\":2", "\"views\":true"), L"no whole number"},
      {with("\"views\":2", "\"views\":1e1"), L"fraction"},
      {with("\"views\":2", "\"views\":18446744073709551615"), L"too large"},
      {with("C:\\\\Users\\\\ann\"", "C:\\\\\""), L"no full path"},
      {with("C:\\\\Users\\\\ann\"", "C:\\\\Users\\\\..\""), L"no full path"},
      {with("\"entries\":[", "\"entries\":[[],"), L"is a list"},
      {with("\"entries\":[", "\"entries\":[7,"), L"no object"},
      {with("\"entries\":[", "\"entries\":[{\"location\":\"sulRegistryUserRun\"},"),
       L"entry 1: \"command\" is missing"},
      {with("\"sulRegistryUserRun\"", "\"sulRegistryUserWalk\""), L"there is no location"},
      {with("\"sulRegistryUserRun\"", "\"sulRegistryCommonRun\""), L"root"},
      {with("HKEY_CURRENT_USER", "HKEY_USERS"), L"root"},
      {with("\"view\":64", "\"view\":4294967360"), L"view"},
      {with("CurrentVersion\\\\Run\"", "CurrentVersion\\\\RunOnce\""), L"outside of its location"},
      {with("CurrentVersion\\\\Run\"", "CurrentVersion\\\\Run\\\\AutorunsDisabled\""),
       L"outside of its location"},
      {with("\"valueName\":\"a\"", "\"valueName\":null"), L"value name"},
      {with("\"valueName\":\"a\"", "\"valueName\":\"a\\u0000\""), L"NUL"},
      {with("\"valueName\":\"a\"", "\"valueName\":\"\\ud800\""), L"not valid JSON"},
      {with("\"valueName\":\"a\"", "\"valueName\":\"\xED\xA0\x80\""), L"not valid JSON"},
      {with("\"valueName\":\"a\"", "\"valueName\":\"a\",\"valueName\":\"b\""), L"twice"},
      {with("\"enabled\":true", "\"enabled\":false"), L"contradict"},
      {with("\"enabled\":true", "\"enabled\":\"true\""), L"no truth value"},
      {with("\"twin\":null", "\"twin\":1"), L"no text"},
      {with("m.lnk", "..\\\\m.lnk"), L"file"},
      {with("m.lnk", "C:m.lnk"), L"file"},
      {with("m.lnk", ".."), L"file"},
      {with(entry, entry + many("," + entry, 20)), L"of one name"},
  };
  for (const auto& [text, reason] : rows) {
    try {
      ParseSnapshot(text);
      ADD_FAILURE() << ToUtf8(reason) << " was taken";
    } catch (const JsonFault& fault) {
      EXPECT_NE(fault.Reason().find(reason), std::wstring::npos)
          << ToUtf8(reason) << ": " << ToUtf8(fault.Reason());
    }
  }
}

TEST(FlatJson, TakesNoMoreThanItsLimit) {
  std::string text = "{\"rows\":[";
  for (std::size_t i = 0; i < kMostRows; ++i) text += "{},";
  std::size_t count = 0;
  const RowTaker take = [&count](const FlatObject&, const FlatObject&) { ++count; };
  ReadFlatJson(text.substr(0, text.size() - 1) + "]}", "rows", take);
  EXPECT_EQ(count, kMostRows);
  EXPECT_THROW(ReadFlatJson(text + "{}]}", "rows", take), JsonFault);
}

// "kind name before > after", one per difference.
std::wstring Differences(const std::vector<SnapshotEntry>& before, const std::vector<SnapshotEntry>& after) {
  std::wstring text;
  const auto side = [](const SnapshotEntry* entry) {
    return entry == nullptr ? L"-" : entry->command + (entry->enabled ? L"+" : L"-");
  };
  for (const Difference& each : CompareEntries(before, after)) {
    text += std::wstring(DifferenceName(each.kind)) + L" " + std::wstring(each.Entry().Name()) + L" " +
            side(each.before) + L">" + side(each.after) + L"; ";
  }
  return text;
}

TEST(SnapshotCompare, PairsEntriesOfOneNameBestFirst) {
  SnapshotEntry other = User(L"a", L"1");
  other.view = 32;
  SnapshotEntry turned = User(L"a", L"1");
  turned.twin = L"2";
  const struct {
    std::vector<SnapshotEntry> before, after;
    const wchar_t* differences;
  } rows[] = {
      {{User(L"a", L"1"), User(L"b", L"2")}, {User(L"b", L"2"), User(L"A", L"1")}, L""},
      {{User(L"a", L"1")}, {User(L"a", L"1", false)}, L"switched a 1+>1-; "},
      {{User(L"a", L"1")}, {User(L"a", L"2")}, L"changed a 1+>2+; "},
      {{User(L"a", L"1")}, {User(L"a", L"2", false)}, L"changed a 1+>2-; "},
      {{User(L"a", L"1")}, {other}, L"added a ->1+; removed a 1+>-; "},
      {{User(L"a", L"1")}, {turned}, L"changed a 1+>1+; "},
      {{User(L"a", L"1"), User(L"a", L"2", false)},
       {User(L"a", L"2", false), User(L"a", L"1", false)},
       L"switched a 1+>1-; "},
      {{User(L"a", L"1", false)}, {User(L"a", L"2"), User(L"a", L"1")}, L"switched a 1->1+; added a ->2+; "},
      {{User(L"a", L"1")},
       {Handler(L"a"), Shortcut(L"a", L"1")},
       L"added a ->1+; removed a 1+>-; added a ->C:\\menu.dll+; "},
  };
  for (const auto& row : rows) EXPECT_EQ(Differences(row.before, row.after), row.differences);
}

TEST(SnapshotAdapt, PutsTheUsersFoldersInPlaceOfTheOthers) {
  const MachineFacts target{.name = L"HERE",
                            .hasTwoViews = false,
                            .profileFolder = L"D:\\Bob B",
                            .roamingFolder = {},
                            .localFolder = L"D:\\local"};
  const std::pair<const wchar_t*, const wchar_t*> rows[] = {
      {L"c:\\users\\ANN\\x.exe /y", L"\"D:\\Bob B\\x.exe\" /y"},
      {L"\"C:\\Users\\ann\\x.exe\" C:\\Users\\ann", L"\"D:\\Bob B\\x.exe\" \"D:\\Bob B\""},
      {L"C:\\Users\\anna\\x.exe", L"C:\\Users\\anna\\x.exe"},
      {L"C:\\Old\\C:\\Users\\ann\\x", L"C:\\Old\\C:\\Users\\ann\\x"},
      {L"x /f=C:\\Users\\ann\\AppData\\Local\\y", L"x /f=D:\\local\\y"},
  };
  for (const auto& [from, to] : rows) {
    Snapshot snapshot = SnapshotOf({User(L"a", from)});
    AdaptTo(snapshot, target);
    EXPECT_EQ(snapshot.entries[0].command, to);
    EXPECT_EQ(snapshot.entries[0].view, 32);
  }
  Snapshot snapshot = SnapshotOf({Shortcut(L"a.lnk", L"\"C:\\Users\\ann\\AppData\\Local\\a.exe\" \"b\"")});
  AdaptTo(snapshot, target);
  EXPECT_EQ(snapshot.entries[0].command, L"D:\\local\\a.exe \"b\"");
}

std::wstring Plan(const std::vector<SnapshotEntry>& wanted, const std::vector<ItemRecord>& items,
                  OtherEntries others = OtherEntries::kKept) {
  std::wstring text;
  const std::vector<ApplyStep> steps = PlanApply(wanted, items, SnapshotOf({}).machine, others);
  for (const EntryChange& change :
       ChangesOf(steps, [](const ItemRecord&) { return ComPtr<IStartupItem>(); })) {
    text += change.outcome ? L"no" : OperationOf(change.verb).name;
    text += L" " + change.before.caption;
    if (!change.outcome && change.order.enabled == false) text += L" off";
    text += L"; ";
  }
  return text;
}

TEST(ApplyPlan, DoesWhatIsNeededAndSaysWhatCannotBe) {
  const std::vector<ItemRecord> items = {Item(User(L"a", L"1")), Item(User(L"b", L"2", false)),
                                         Item(User(L"c", L"3")), Item(User(L"d", L"4"), 0),
                                         Item(Shortcut(L"e.lnk", L"5"))};
  SnapshotEntry foreign = User(L"f", L"6", false);
  foreign.disabledBy = L"theirs";
  SnapshotEntry plain = User(L"g", L"7");
  plain.view = 32;
  const SnapshotEntry here[] = {User(L"c", L"3"), User(L"d", L"4"), Shortcut(L"e.lnk", L"5")};
  const auto all = [&here](std::vector<SnapshotEntry> more) {
    more.insert(more.end(), std::begin(here), std::end(here));
    return more;
  };
  const std::vector<SnapshotEntry> both = {User(L"a", L"1"), User(L"b", L"2", false)};
  EXPECT_EQ(Plan(all(both), items, OtherEntries::kDeleted), L"");
  EXPECT_EQ(Plan(all({User(L"a", L"1", false), User(L"b", L"2")}), items), L"disable a off; enable b; ");
  EXPECT_EQ(Plan(all({User(L"a", L"9", false)}), items, OtherEntries::kDeleted), L"delete b; change a off; ");
  EXPECT_EQ(Plan({User(L"d", L"4", false)}, items, OtherEntries::kKept), L"no d; ");
  EXPECT_EQ(Plan({}, {items[3]}, OtherEntries::kDeleted), L"no d; ");
  // One that differs in case only, and one without a command.
  EXPECT_EQ(Plan({User(L"y", L"X")}, {Item(User(L"y", L"x"))}), L"no y; ");
  EXPECT_EQ(Plan({User(L"y", L"")}, {}), L"no y; ");
  EXPECT_EQ(Plan({User(L"x", L"1"), User(L"y", L"2", false), Shortcut(L"z.LNK", L"3")}, {}),
            L"add z; add x; add y off; ");
  EXPECT_EQ(Plan({foreign, plain, Handler(L"h"), User(L"", L"8"), User(std::wstring(L"\0", 1), L"9"),
                  Shortcut(L"i.exe", L"10")},
                 {}),
            L"no i.exe; no g; no ; no " + std::wstring(1, L'\0') + L"; no f; no h; ");
}

}  // namespace
}  // namespace smh::test
