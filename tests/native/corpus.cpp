#include "native/corpus.h"

namespace smh::test {

namespace {

class CorpusWriter {
 public:
  void Accept(const char* name, const BuiltLink& link) { Add("accepted-", name, link, std::nullopt); }
  void RefuseData(const char* name, const BuiltLink& link) {
    Add("data-", name, link, LinkFault::kSizeOrData);
  }
  void RefuseHeader(const char* name, const BuiltLink& link) {
    Add("header-", name, link, LinkFault::kHeaderSize);
  }
  void RefuseClass(const char* name, const BuiltLink& link) {
    Add("class-", name, link, LinkFault::kClassId);
  }
  void RefuseInfo(const char* name, const BuiltLink& link) { Add("info-", name, link, LinkFault::kLinkInfo); }
  std::vector<CorpusLink> Take() { return std::move(links_); }

 private:
  void Add(const char* prefix, const char* name, const BuiltLink& link, std::optional<LinkFault> fault) {
    links_.push_back({std::string(prefix) + name, link.Text(), fault});
  }

  std::vector<CorpusLink> links_;
};

LinkBuilder WithInfo(LinkInfoSpec info) {
  LinkBuilder link;
  link.info = std::move(info);
  return link;
}

LinkBuilder WithBlock(std::uint32_t signature, std::string data) {
  LinkBuilder link;
  link.blocks = {{signature, std::move(data)}};
  return link;
}

LinkBuilder LocalLink() {
  return WithInfo({.basePath = "C:\\Tools\\", .suffix = "tool.exe"});
}

LinkBuilder NetworkLink(bool hasUnicode) {
  return WithInfo({.volume = std::nullopt,
                   .suffix = "tool.exe",
                   .network = NetworkSpec{.netName = "\\\\server\\share",
                                          .hasUnicode = hasUnicode,
                                          .netNameUnicode = u"\\\\server\\share",
                                          .device = "Z:",
                                          .deviceUnicode = u"Z:"}});
}

LinkBuilder AnsiStrings() {
  LinkBuilder link;
  link.isUnicode = false;
  link.strings = {{LinkString::kName, u"caf\u00E9"}, {LinkString::kArguments, u"/x"}};
  return link;
}

void AddHeaders(CorpusWriter& corpus) {
  const BuiltLink plain = LinkBuilder{}.Build();
  corpus.Accept("full", FullLink().Build());
  corpus.Accept("header-alone", plain);
  corpus.Accept("header-without-terminal", plain.CutTo(kLinkHeaderSize));
  LinkBuilder swapped = LocalLink();
  swapped.classId = kSwappedLinkClassId;
  corpus.Accept("swapped-class", swapped.Build());
  corpus.RefuseData("empty", plain.CutTo(0));
  corpus.RefuseHeader("size-75", plain.With("HeaderSize", 75));
  corpus.RefuseHeader("size-largest", plain.With("HeaderSize", 0xFFFFFFFF));
  corpus.RefuseClass("low-half", plain.With("LinkCLSIDLow", 0x21402));
  corpus.RefuseClass("high-half", plain.With("LinkCLSIDHigh", 0));
}

void AddIdLists(CorpusWriter& corpus) {
  LinkBuilder link;
  link.idList = IdListOf({"item"});
  const BuiltLink good = link.Build();
  corpus.Accept("id-list", good);
  // Malformed lists are kept: only the shell would read them, and it never sees them.
  using namespace std::string_literals;
  link.idList = ""s;
  corpus.Accept("id-list-empty", link.Build());
  link.idList = "\x09\0ab\0\0"s;
  corpus.Accept("id-list-item-too-long", link.Build());
  link.idList = "\x04\0ab"s;
  corpus.Accept("id-list-unterminated", link.Build());
  corpus.RefuseData("id-list-size-65535", good.With("IDListSize", 0xFFFF));
}

void AddLinkInfos(CorpusWriter& corpus) {
  const BuiltLink local = LocalLink().Build();
  corpus.Accept("local", local);
  corpus.Accept(
      "local-unicode",
      WithInfo({.basePath = "C:\\", .hasUnicode = true, .basePathUnicode = u"C:\\\u4E2D.exe"}).Build());
  LinkBuilder forced = LocalLink();
  forced.moreFlags = kForceNoLinkInfo;
  corpus.Accept("force-no-link-info", forced.Build());
  corpus.Accept("volume-label-offset-at-size",
                local.With("VolumeLabelOffset", local.ValueOf("VolumeIDSize")));
  corpus.Accept("volume-offset-zero", local.With("VolumeIDOffset", 0));
  corpus.Accept("base-path-offset-at-end", local.With("LocalBasePathOffset", local.ValueOf("LinkInfoSize")));
  corpus.RefuseData("info-size-3", local.With("LinkInfoSize", 3));
  corpus.RefuseData("info-size-largest", local.With("LinkInfoSize", 0xFFFFFFFF));
  for (const std::uint32_t size : {4u, 7u, 27u}) {
    corpus.RefuseInfo(("size-" + std::to_string(size)).c_str(), local.With("LinkInfoSize", size));
  }
  corpus.RefuseInfo("header-size-32", local.With("LinkInfoHeaderSize", 32));
  corpus.RefuseInfo("header-size-above-size",
                    local.With("LinkInfoHeaderSize", local.ValueOf("LinkInfoSize") + 1));
}

void AddLinkInfoOffsets(CorpusWriter& corpus) {
  const BuiltLink full = FullLink().Build();
  const std::uint64_t behind = full.ValueOf("LinkInfoSize") + 1;
  for (const char* const field :
       {"VolumeIDOffset", "LocalBasePathOffset", "CommonNetworkRelativeLinkOffset", "CommonPathSuffixOffset",
        "LocalBasePathOffsetUnicode", "CommonPathSuffixOffsetUnicode"}) {
    corpus.RefuseInfo(field, full.With(field, behind));
  }
  const BuiltLink local = LocalLink().Build();
  corpus.RefuseInfo("VolumeLabelOffset", local.With("VolumeLabelOffset", local.ValueOf("VolumeIDSize") + 1));
  const BuiltLink unicode = FullLink().Build();
  corpus.RefuseInfo("VolumeLabelOffsetUnicode",
                    unicode.With("VolumeLabelOffsetUnicode", unicode.ValueOf("VolumeIDSize") + 1));
}

void AddNetworkLinks(CorpusWriter& corpus) {
  const BuiltLink ansi = NetworkLink(false).Build();
  const BuiltLink unicode = NetworkLink(true).Build();
  const std::uint64_t behind = unicode.ValueOf("CommonNetworkRelativeLinkSize") + 1;
  corpus.Accept("network", ansi);
  corpus.Accept("network-unicode", unicode);
  corpus.Accept("network-offset-zero", ansi.With("CommonNetworkRelativeLinkOffset", 0));
  corpus.Accept("device-name-offset-never-tested", ansi.With("DeviceNameOffset", 0xFFFFFFFF));
  corpus.RefuseInfo("NetNameOffset", ansi.With("CommonNetworkRelativeLinkSize", 19));
  corpus.RefuseInfo("NetNameOffsetUnicode", unicode.With("NetNameOffsetUnicode", behind));
  const BuiltLink device = unicode.With("DeviceNameOffsetUnicode", behind);
  corpus.RefuseInfo("DeviceNameOffsetUnicode", device);
  corpus.Accept("device-name-without-device", device.With("CommonNetworkRelativeLinkFlags", 2));
}

void AddStrings(CorpusWriter& corpus) {
  LinkBuilder link;
  link.strings = {{LinkString::kName, u"Name"}, {LinkString::kIconLocation, std::u16string(u"a\0b", 3)}};
  link.hasTerminal = false;
  const BuiltLink good = link.Build();
  corpus.Accept("strings", good);
  corpus.Accept("strings-ansi", AnsiStrings().Build());
  corpus.Accept("string-of-0", good.CutTo(kLinkHeaderSize).With("LinkFlags", kHasName).Followed({"\0\0", 2}));
  corpus.RefuseData("count-missing", good.CutTo(kLinkHeaderSize));
  corpus.RefuseData("count-65535", good.With("Count0", 0xFFFF));
  corpus.RefuseData("last-count-65535", good.With("Count1", 0xFFFF));
}

void AddBlocks(CorpusWriter& corpus) {
  const BuiltLink good = WithBlock(0xA0000008, "shim data").Build();
  corpus.Accept("shim", good);
  corpus.Accept("block-of-8", WithBlock(0xA000000A, {}).Build());
  corpus.Accept("environment-ansi", WithBlock(0xA0000001, StringBlockData("C:\\a.exe", u"")).Build());
  corpus.Accept(
      "string-block-without-zeros",
      WithBlock(0xA0000007, StringBlockData(std::string(260, 'a'), std::u16string(260, u'w'))).Build());
  corpus.Accept("terminal-of-3", good.With("TerminalBlock", 3));
  corpus.RefuseData("terminal-of-4", good.With("TerminalBlock", 4));
  corpus.RefuseData("terminal-missing", good.CutTo(good.Size() - 4));
  corpus.RefuseData("after-terminal", good.Followed("x"));
  corpus.RefuseData("block-size-4", good.With("BlockSize0", 4));
  corpus.RefuseData("block-size-7", good.With("BlockSize0", 7));
  corpus.RefuseData("block-size-largest", good.With("BlockSize0", 0xFFFFFFFF));
}

void AddBlockSizes(CorpusWriter& corpus) {
  struct Row {
    const char* name;
    std::uint32_t signature;
    std::size_t size;
  };
  constexpr Row kSized[] = {{"environment", 0xA0000001, 788},      {"console", 0xA0000002, 204},
                            {"tracker", 0xA0000003, 96},           {"console-code-page", 0xA0000004, 12},
                            {"special-folder", 0xA0000005, 16},    {"darwin", 0xA0000006, 788},
                            {"icon-environment", 0xA0000007, 788}, {"known-folder", 0xA000000B, 28}};
  for (const Row& row : kSized) {
    const std::size_t data = row.size - 8;
    corpus.Accept(row.name, WithBlock(row.signature, std::string(data, '\1')).Build());
    corpus.RefuseData((std::string(row.name) + "-shorter").c_str(),
                      WithBlock(row.signature, std::string(data - 1, '\1')).Build());
    corpus.RefuseData((std::string(row.name) + "-longer").c_str(),
                      WithBlock(row.signature, std::string(data + 1, '\1')).Build());
  }
}

}  // namespace

std::vector<CorpusLink> Corpus() {
  CorpusWriter corpus;
  AddHeaders(corpus);
  AddIdLists(corpus);
  AddLinkInfos(corpus);
  AddLinkInfoOffsets(corpus);
  AddNetworkLinks(corpus);
  AddStrings(corpus);
  AddBlocks(corpus);
  AddBlockSizes(corpus);
  return corpus.Take();
}

}  // namespace smh::test
