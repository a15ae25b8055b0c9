// The three output formats, on entries that are hard to write.
#include "hosts/cli/table_output.h"
#include "hosts/common/csv_output.h"
#include "hosts/common/json_output.h"
#include "hosts/common/text_encoding.h"
#include "tests/hosts/common/test_items.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

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

TEST(CsvOutput, QuotesAndDefusesFields) {
  EXPECT_EQ(CsvField(L"plain text"), L"plain text");
  EXPECT_EQ(CsvField(L"a,\"b\"\r\nc"), L"\"a,\"\"b\"\"\r\nc\"");
  for (const wchar_t first : std::wstring_view(L"=+-@")) {
    EXPECT_EQ(CsvField(first + std::wstring(L"x")), L"'" + std::wstring(1, first) + L"x");
  }
  EXPECT_EQ(CsvField(L"=a,b"), L"\"'=a,b\"");
  EXPECT_EQ(CsvField(std::wstring(L"x") + static_cast<wchar_t>(0xD801)), L"x\\u{d801}");
}

TEST(CsvOutput, RowsMatchTheHeader) {
  const auto columns = [](const std::wstring& row) { return std::count(row.begin(), row.end(), L','); };
  ItemRecord item = MakeItem(sulRegistryUserRun, L"key", L"name");
  EXPECT_EQ(columns(CsvHeader()), columns(CsvRow(item)));
  EXPECT_EQ(columns(CsvHeader(true)), columns(CsvRow(item, L"added")));
  EXPECT_TRUE(CsvHeader(true).starts_with(L"event,index,location,"));
  EXPECT_TRUE(CsvTable({&item, 1}).ends_with(L"\r\n"));
}

TEST(TableOutput, GroupsByLocationInTheirOrder) {
  const std::vector<ItemRecord> items = {MakeItem(sulRegistryCommonRun, L"k", L"third"),
                                         MakeItem(sulRegistryUserRun, L"k", L"first"),
                                         MakeItem(sulRegistryUserRun, L"k", L"second\x02")};
  const std::wstring table = ItemTable(items, 0);
  std::size_t last = 0;
  for (const wchar_t* part :
       {L"#", L"\nsulRegistryUserRun\n", L"first", L"second\\u{2}", L"\nsulRegistryCommonRun\n", L"third"}) {
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
  for (const std::size_t width : {79, 100, 200}) EXPECT_EQ(longest(ItemTable({&item, 1}, width)), width);
  item.file = L"C:\\" + std::wstring(80, L'f') + L"\\program.exe";
  EXPECT_NE(ItemTable({&item, 1}, 100).find(L"\\program.exe"), std::wstring::npos);
  item.file.clear();
  const std::wstring full = ItemTable({&item, 1}, 0);
  EXPECT_NE(full.find(item.command), std::wstring::npos);
  EXPECT_NE(full.find(item.description), std::wstring::npos);
  // Every field has its line in a sheet.
  const std::wstring sheet = L"\n" + ItemSheet(FullItem());
  for (const ItemField& field : ItemFields()) {
    EXPECT_NE(sheet.find(L"\n" + std::wstring(field.key) + L":"), std::wstring::npos);
  }
  // Too narrow for all columns: still a table, and no endless search for cells.
  EXPECT_GT(longest(ItemTable({&item, 1}, 5)), 5u);
}

}  // namespace
}  // namespace smh::test
