// Which items of an ID list may reach the shell: those that it cannot read past.

#include "samples/link_builder.h"
#include "shelllink/format/item_strings.h"

#include <gtest/gtest.h>

namespace smh::test {
namespace {

using namespace std::string_literals;

const std::string kComputer = "\x1F\x50\xE0\x4F\xD0\x20\xEA\x3A\x69\x10\xA2\xD8\x08\x00\x2B\x30\x30\x9D"s;
const std::string kBin = "\x1F\x50\x40\xF0\x5F\x64\x81\x50\x1B\x10\x9F\x08\x00\xAA\x00\x2F\x95\x4E"s;
const std::string kDrive =
    "\x2F"
    "C:\\"s +
    std::string(19, '\0');

bool IsSafe(const std::vector<std::string>& items) {
  const std::string list = IdListOf(items);
  return DoItemsHoldTheirStrings(std::as_bytes(std::span(list)));
}

std::string Repeated(char byte, std::size_t count) {
  return std::string(count, byte);
}

// The item of a file as today's shells write it: a short name and an extension with the long one.
struct FileItem {
  std::string name = "PROGRA~1"s + "\0"s;
  std::u16string longName = u"Program Files\0"s;
  std::uint16_t version = 9;
  std::uint16_t nameOffset = 0x2E;
  std::string localName = {};
  char kind = 0x31;

  std::string Text() const {
    BuiltLink item;
    item.Put(kind + "\0\0\0\0\0"s + "\x11\x22\x33\x44\x10\0"s + name);
    if (item.Size() % 2 != 0) item.Put("\0"s);
    const std::size_t start = item.Size();
    item.PutField("Size", 0, 2);
    item.PutField("Version", version, 2);
    item.PutField("Signature", 0xBEEF0004, 4);
    item.PutField("Times", 0x1122334455667788, 8);
    item.PutField("NameOffset", nameOffset, 2);
    item.Put(Repeated('\0', 18));
    item.PutField("LocalOffset", 0, 2);
    item.Put(Repeated('\0', nameOffset - (item.Size() - start)));
    item.PutUnits(longName);
    if (!localName.empty()) item.Set("LocalOffset", item.Size() - start);
    item.Put(localName);
    item.PutField("Offset", start + 2, 2);
    item.Set("Size", item.Size() - start);
    return item.Text();
  }
};

TEST(ItemStringsTest, WhatAShellWritesIsSafe) {
  EXPECT_TRUE(IsSafe({}));
  EXPECT_TRUE(IsSafe({kComputer, kDrive, FileItem{}.Text(), FileItem{.kind = 0x32}.Text()}));
  EXPECT_TRUE(IsSafe({kComputer, kDrive, FileItem{.localName = "n\0a\0\0\0"s}.Text()}));
  // Of the first Windows with long names: two names, no extension.
  EXPECT_TRUE(IsSafe({kComputer, kDrive, "\x32\0\0\0\0\0\0\0\0\0\0\0long.name\0LONG~1\0"s}));
  EXPECT_TRUE(IsSafe({kComputer, kDrive, "\x34\0\0\0\0\0\0\0\0\0\0\0a\0b\0\0\0\0\0"s}));
  EXPECT_TRUE(IsSafe({"\xC3\x01\x81\\\\server\\share\0Network\0\x02\0"s}));
  EXPECT_TRUE(IsSafe({kBin}));
  EXPECT_TRUE(IsSafe({kComputer, "\0\0\x01\0\0\0\0\0\x05\0file\0name\0"s}));
  EXPECT_TRUE(IsSafe({kComputer, "\x53" + Repeated('x', 20) + Repeated('\0', 4)}));
}

TEST(ItemStringsTest, AStringThatLeavesItsItemIsNot) {
  const struct {
    const char* what;
    std::string item;
  } rows[] = {
      {"no kind", "\x32"s},
      {"a short drive", "\x2F"s},
      {"a drive",
       "\x2F"
       "C:\\xxxxxxxxxxxxxxxxxxx"s},
      {"a short file", "\x32\0\0\0\0\0\0\0"s},
      {"a file's name", "\x32\0\0\0\0\0\0\0\0\0\0\0name"s},
      {"its second name", "\x32\0\0\0\0\0\0\0\0\0\0\0name\0second"s},
      {"a name in UTF-16", "\x34\0\0\0\0\0\0\0\0\0\0\0a\0\xFFx\0b\0\xFF"s},
      {"a long name", FileItem{.longName = u"Program Files"}.Text()},
      {"a localized name", FileItem{.localName = "n\0a"s}.Text()},
      {"the first version's name", FileItem{.longName = u"name", .version = 3, .nameOffset = 0x26}.Text()},
      {"a network name", "\xC3\x01\x81\\\\server\\share"s},
      {"its description", "\xC3\x01\x81\\\\server\\share\0Network"s},
      {"a control panel's offset", "\0\0\x01\0\0\0\0\0\x50\0file\0name\0"s},
      {"a control panel's name", "\0\0\x01\0\0\0\0\0\x05\0file\0name"s},
      {"an unknown kind", "\x53" + Repeated('x', 21) + Repeated('\0', 3)},
      {"a short unknown kind", "\x53" + Repeated('\0', 8)},
      {"a second folder by its identifier", kComputer},
      {"a short identifier", kComputer.substr(0, 10)},
  };
  for (const auto& row : rows) {
    EXPECT_FALSE(IsSafe({kComputer, row.item})) << row.what;
    EXPECT_FALSE(IsSafe({kComputer, row.item, kDrive})) << row.what;
  }
  EXPECT_FALSE(IsSafe({kBin, FileItem{}.Text()})) << "records of deleted files";
  EXPECT_FALSE(IsSafe({kComputer.substr(0, 10)}));
}

}  // namespace
}  // namespace smh::test
