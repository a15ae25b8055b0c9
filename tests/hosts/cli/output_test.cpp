// The three output formats, on entries that are hard to write.
#include "hosts/cli/console.h"
#include "hosts/cli/table_output.h"
#include "hosts/common/csv_output.h"
#include "hosts/common/host_error.h"
#include "hosts/common/json_output.h"
#include "hosts/common/text_encoding.h"
#include "tests/hosts/common/test_items.h"

#include <windows.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace smh::test {

namespace {

using Json = nlohmann::ordered_json;

Json Parsed(const std::wstring& text) {
  return Json::parse(ToUtf8(text));
}

ItemRecord FullItem() {
  ItemRecord item = MakeItem(sulRegistryUserRun, L"(x64)HKEY_CURRENT_USER\\Run", L"Mixer \"4\"",
                             L"\"C:\\Program Files\\m.exe\" /a,b");
  item.index = 7;
  item.fileFound = true;
  item.fileSize = 5'000'000'000;
  item.lastWriteTime = 45443.5;  // 2024-05-31 noon
  item.rating = 2;
  item.can = 1u << kActionDelete | 1u << kActionChangeCommand | 1u << kActionShowLocation;
  return item;
}

TEST(JsonOutput, EscapesWhatUtf8AndJsonCannotHold) {
  const std::wstring lone(1, static_cast<wchar_t>(0xDC00));
  EXPECT_EQ(JsonText(L"a" + lone + L"\"\\\n\x01\x80"), L"\"a\\udc00\\\"\\\\\\n\\u0001\\u0080\"");
  const std::wstring smile = FromUtf8("\xF0\x9F\x98\x80");
  EXPECT_EQ(Parsed(JsonText(smile)), "\xF0\x9F\x98\x80");
}

// A name can hold any unit: none may end a line, move the cursor or turn the text around it.
TEST(Output, NoNameBreaksOrForgesALine) {
  std::wstring units = L"\u061C\u200E\u200F\u2028\u2029\x7F\r\n\t";
  for (wchar_t unit = 1; unit < 0xA0; unit = unit == 0x1F ? 0x80 : unit + 1) units += unit;
  for (wchar_t unit = 0x202A; unit <= 0x202E; ++unit) units += unit;
  for (wchar_t unit = 0x2066; unit <= 0x2069; ++unit) units += unit;
  units += L'\0';
  for (const wchar_t unit : units) {
    const std::wstring name = std::wstring(L"a") + unit + L"startupctl: Deleted \"b\".";
    ItemRecord item = MakeItem(sulRegistryUserRun, name, name, name);
    item.company = item.description = name;
    wchar_t escape[16];
    wsprintfW(escape, L"a\\u{%x}s", static_cast<unsigned>(unit));
    const std::pair<std::wstring, std::ptrdiff_t> outputs[] = {
        {ItemTable({&item, 1}, {}), 4},
        {ItemSheet(ItemFields(), item), std::ssize(ItemFields())},
        {CsvTable<ItemRecord>(ItemFields(), {&item, 1}), 2},
        {HostError(name, std::vector{name}).Message(), 1},
    };
    for (const auto& [text, lines] : outputs) {
      EXPECT_EQ(std::ranges::count(text, L'\n'), lines) << ToUtf8(text);
      EXPECT_NE(text.find(escape), std::wstring::npos) << ToUtf8(text);
      const auto isBad = [](wchar_t each) { return each != L'\n' && each != L'\r' && IsUnprintable(each); };
      EXPECT_TRUE(std::ranges::none_of(text, isBad)) << ToUtf8(text);
    }
    const std::wstring json = JsonObject<ItemRecord>(ItemFields(), item);
    EXPECT_TRUE(std::ranges::none_of(json, IsUnprintable)) << ToUtf8(json);
    EXPECT_EQ(Parsed(json)["caption"], ToUtf8(name));
  }
}

TEST(CsvOutput, QuotesAndDefusesFields) {
  const std::pair<std::wstring, std::wstring> cases[] = {
      {L"plain text", L"plain text"},
      {L"a,\"b\"\r\nc", L"\"a,\"\"b\"\"\\u{d}\\u{a}c\""},
      {L"=x", L"'=x"},
      {L"+x", L"'+x"},
      {L"-x", L"'-x"},
      {L"@x", L"'@x"},
      {L"  =x", L"'  =x"},
      {L"\u00A0\u3000\uFF1Dx", L"'\u00A0\u3000\uFF1Dx"},
      {L"\t=x", L"\\u{9}=x"},
      {L"=a,b", L"\"'=a,b\""},
      {std::wstring(L"x") + static_cast<wchar_t>(0xD801), L"x\\u{d801}"},
      {L" ", L" "},
  };
  for (const auto& [text, field] : cases) EXPECT_EQ(CsvField(text), field);
  EXPECT_EQ(CsvValue(std::int64_t(-1)), L"-1");
}

// Last of its process's output: from then on nothing is written.
TEST(Console, APipeThatIsClosedEarlyIsNoError) {
  HANDLE reader = nullptr;
  HANDLE writer = nullptr;
  ASSERT_TRUE(CreatePipe(&reader, &writer, nullptr, 0));
  const HANDLE before = GetStdHandle(STD_OUTPUT_HANDLE);
  SetStdHandle(STD_OUTPUT_HANDLE, writer);
  WriteOutput(L"first");
  EXPECT_FALSE(IsOutputClosed());
  CloseHandle(reader);
  EXPECT_NO_THROW(WriteOutput(std::wstring(100'000, L'x')));
  EXPECT_TRUE(IsOutputClosed());
  EXPECT_NO_THROW(WriteOutput(L"more"));
  EXPECT_FALSE(WantsColours());
  SetStdHandle(STD_OUTPUT_HANDLE, before);
  CloseHandle(writer);
}

TEST(Columns, AreThoseThatWereNamedInTheirOrder) {
  const std::vector<std::wstring> keys = {L"Enabled", L"caption"};
  const std::vector<ItemField> fields = SelectFields(ItemFields(), keys);
  const ItemRecord item = MakeItem(sulRegistryUserRun, L"key", L"name");
  EXPECT_EQ(JsonObject<ItemRecord>(fields, item), LR"({"enabled":true,"caption":"name"})");
  EXPECT_EQ(CsvTable<ItemRecord>(fields, {&item, 1}), L"enabled,caption\r\ntrue,name\r\n");
  EXPECT_EQ(FieldTable<ItemRecord>(fields, {&item, 1}).Text({}), L"enabled  caption\nyes      name\n");
  EXPECT_THROW(SelectFields(ItemFields(), std::vector<std::wstring>{L"captoin"}), HostError);
  EXPECT_EQ(SelectFields(ItemFields(), {}).size(), ItemFields().size());
}

TEST(TableOutput, GroupsByLocationInTheirOrder) {
  const std::vector<ItemRecord> items = {MakeItem(sulRegistryCommonRun, L"k", L"third"),
                                         MakeItem(sulRegistryUserRun, L"k", L"first"),
                                         MakeItem(sulRegistryUserRun, L"k", L"second\x02")};
  const std::wstring table = ItemTable(items, {});
  std::size_t last = 0;
  for (const wchar_t* part : {L"State", L"\nRun, this user (sulRegistryUserRun)\n", L"first", L"second\\u{2}",
                              L"\nRun, all users (sulRegistryCommonRun)\n", L"third"}) {
    const std::size_t position = table.find(part, last);
    ASSERT_NE(position, std::wstring::npos) << ToUtf8(part) << " in\n" << ToUtf8(table);
    last = position;
  }
}

TEST(TableOutput, FitsTheConsoleAndCutsNothingWithoutOne) {
  ItemRecord item = MakeItem(sulRegistryUserRun, L"k", std::wstring(60, L'c'), std::wstring(200, L'f'));
  item.description = std::wstring(100, L'd');
  const auto longest = [](const std::wstring& text) {
    std::size_t length = 0;
    for (std::size_t start = 0; start < text.size();) {
      const std::size_t end = text.find(L'\n', start);
      length = std::max(length, DisplayWidth(std::wstring_view(text).substr(start, end - start)));
      start = end + 1;
    }
    return length;
  };
  for (const std::size_t width : {79, 100, 200}) EXPECT_EQ(longest(ItemTable({&item, 1}, {width})), width);
  item.file = L"C:\\" + std::wstring(80, L'f') + L"\\program.exe";
  EXPECT_NE(ItemTable({&item, 1}, {100}).find(L"\\program.exe (missing)"), std::wstring::npos);
  const std::wstring command = std::exchange(item.command, {});
  EXPECT_EQ(ItemTable({&item, 1}, {100}).find(L"(missing)"), std::wstring::npos) << "there is none to miss";
  item.command = command;
  item.file.clear();
  const std::wstring full = ItemTable({&item, 1}, {});
  EXPECT_NE(full.find(item.command), std::wstring::npos);
  EXPECT_NE(full.find(item.description), std::wstring::npos);
  // Every field has its line in a sheet.
  const std::wstring sheet = L"\n" + ItemSheet(ItemFields(), FullItem());
  for (const ItemField& field : ItemFields()) {
    EXPECT_NE(sheet.find(L"\n" + std::wstring(field.key) + L":"), std::wstring::npos);
  }
  // One long name makes no other line as long.
  std::vector<ItemRecord> many(1'000, item);
  many[500].caption.assign(16'000, L'c');
  const std::wstring table = ItemTable(many, {});
  EXPECT_NE(table.find(many[500].caption), std::wstring::npos);
  EXPECT_LT(table.size(), 1'000'000u);
  // Too narrow for all columns: still a table, and no endless search for cells.
  EXPECT_GT(longest(ItemTable({&item, 1}, {5})), 5u);
}

TEST(TableOutput, ColoursWhatNeedsALook) {
  std::vector<ItemRecord> items(4, MakeItem(sulRegistryUserRun, L"k", L"name"));
  for (ItemRecord& item : items) item.reachability = kFileFound;
  items[1].enabled = false;
  items[2].reachability = kFileUnreachable;
  items[3].rating = 2;
  const std::wstring table = ItemTable(items, {.isColoured = true});
  for (const wchar_t* part :
       {L"\n\x1b[1mRun, this user", L"\x1b[2m", L"\x1b[33m", L" (unreachable)", L"\x1b[31m"}) {
    EXPECT_NE(table.find(part), std::wstring::npos) << ToUtf8(part);
  }
  EXPECT_EQ(ItemTable(items, {}).find(L'\x1b'), std::wstring::npos);
}

}  // namespace
}  // namespace smh::test
