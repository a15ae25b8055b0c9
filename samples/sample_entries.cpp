// sample_entries: puts the sample machine's shortcuts and files into the Startup folders and the folders of
// disabled entries, and the shortcut that a default program's command is beside its program. The shortcuts
// are written byte by byte, because the shell's own object makes none with an environment block and none that
// is damaged. And it makes the machine trust the root that one of its programs is signed under.
#include "samples/link_builder.h"

#include <windows.h>
#include <shlobj.h>
#include <wincrypt.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

namespace {

namespace fs = std::filesystem;
using namespace smh;

// Below the data folder. The third place is "AutorunsDisabled" in the Startup folder itself.
constexpr wchar_t kDisabled[] = L"Quillmark\\Startup Manager\\Disabled Startup";
constexpr wchar_t kOtherDisabled[] = L"Brisko Software\\Brisko Utilities\\StartUp Manager\\Disabled objects";
constexpr std::uint32_t kEnvironmentBlock = 0xA0000001;

fs::path ShellFolder(int csidl) {
  wchar_t path[MAX_PATH];
  if (FAILED(SHGetFolderPathW(nullptr, csidl | CSIDL_FLAG_CREATE, nullptr, SHGFP_TYPE_CURRENT, path))) {
    throw std::runtime_error("the shell does not know a folder");
  }
  return path;
}

void Write(const fs::path& path, const std::string& bytes) {
  fs::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!file.flush()) throw std::runtime_error("a sample file cannot be written");
}

void Write(const fs::path& path, const LinkBuilder& link) {
  Write(path, link.Build().Text());
}

LinkBuilder LinkTo(std::string program, std::u16string arguments) {
  LinkBuilder link;
  link.info = LinkInfoSpec{.basePath = std::move(program)};
  link.strings = {{LinkString::kArguments, std::move(arguments)}};
  return link;
}

void WriteUserEntries() {
  const fs::path startup = ShellFolder(CSIDL_STARTUP);
  const fs::path data = ShellFolder(CSIDL_APPDATA);
  Write(startup / "Aurora Panel.lnk",
        LinkTo("C:\\Program Files\\Northlight Audio\\auroratray.exe", u"/panel"));

  LinkBuilder environment = LinkTo("C:\\Samples\\moved away.exe", u"/quick \"to do\"");
  environment.blocks = {
      {kEnvironmentBlock, StringBlockData("", u"%SystemDrive%\\Samples\\Meadow\\meadow.exe")}};
  Write(startup / "Meadow Quick Note.lnk", environment);

  LinkBuilder icon = LinkTo("C:\\Samples\\plain.exe", u"paste");
  icon.hotKey = MAKEWORD('V', HOTKEYF_CONTROL | HOTKEYF_ALT);
  icon.strings.push_back({LinkString::kName, u"Pastes what was copied last"});
  icon.strings.push_back({LinkString::kWorkingDir, u"C:\\Samples"});
  icon.strings.push_back({LinkString::kIconLocation, u"C:\\Program Files\\Quillmark\\Inkwell\\inkwell.exe"});
  Write(startup / "Plain Paste.lnk", icon);

  fs::copy_file("C:\\Program Files\\Quillmark\\Inkwell\\inkwell.exe", startup / "inkdrop.exe",
                fs::copy_options::overwrite_existing);
  Write(startup / "read me.txt", "No entry: neither a shortcut nor a program.\r\n");
  Write(startup / "Damaged.lnk", FullLink().Build().CutTo(100).Text());

  Write(data / kDisabled / "Card Reader.lnk",
        LinkTo("C:\\Program Files\\Harbour Tools\\card watch.exe", u"/read"));
  Write(startup / "AutorunsDisabled" / "Fernhill News.lnk",
        LinkTo("C:\\Program Files\\Fernhill\\fernupdate.exe", u"/news"));
  Write(data / kOtherDisabled / "Tidewater Log.lnk",
        LinkTo("C:\\Program Files\\Tidewater Backup\\tidesync.exe", u"/log"));
}

void WriteCommonEntries() {
  const fs::path startup = ShellFolder(CSIDL_COMMON_STARTUP);
  const fs::path data = ShellFolder(CSIDL_COMMON_APPDATA);
  Write(startup / "Tidewater Status.lnk",
        LinkTo("C:\\Program Files\\Tidewater Backup\\tidesync.exe", u"/status /hidden"));
  LinkBuilder lost = LinkTo("C:\\Program Files\\Lost and Gone\\helper.exe", u"/start");
  lost.strings.push_back({LinkString::kName, u"Helper of a program that was removed"});
  Write(startup / "Lost Helper.lnk", lost);
  Write(startup / "Host.lnk", LinkTo("C:\\Samples\\Temp\\scvhost.exe", u""));

  Write(data / kDisabled / "Aurora Surround.lnk",
        LinkTo("C:\\Program Files\\Northlight Audio\\auroratray.exe", u"/surround"));
  Write(startup / "AutorunsDisabled" / "Plain Ticker.lnk", LinkTo("C:\\Samples\\plain.exe", u"ticker"));
  Write(data / kOtherDisabled / "Card Service.lnk",
        LinkTo("C:\\Program Files\\Harbour Tools\\card watch.exe", u"/service"));
}

void WriteClientShortcut() {
  LinkBuilder link = LinkTo("C:\\Samples\\Meadow\\meadow.exe", u"/calendar");
  link.strings.push_back({LinkString::kIconLocation, u"C:\\Samples\\Texts\\clienttexts.dll"});
  link.iconIndex = 1;
  Write(fs::path("C:\\Samples\\Meadow\\Meadow Calendar.lnk"), link);
}

// By the policies of the machine, which vouch for it, and by the user's roots, which the system's
// verification asks: from the machine's own roots some systems take out what they did not bring along.
void TrustSampleRoot() {
  std::ifstream file(fs::path("C:\\Samples\\Certificates\\root.cer"), std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(file), {});
  for (const DWORD place : {CERT_SYSTEM_STORE_LOCAL_MACHINE_GROUP_POLICY, CERT_SYSTEM_STORE_CURRENT_USER}) {
    const HCERTSTORE store = CertOpenStore(CERT_STORE_PROV_SYSTEM_REGISTRY_W, 0, 0, place, L"Root");
    const bool isAdded = store != nullptr &&
                         CertAddEncodedCertificateToStore(store, X509_ASN_ENCODING,
                                                          reinterpret_cast<const BYTE*>(bytes.data()),
                                                          static_cast<DWORD>(bytes.size()),
                                                          CERT_STORE_ADD_REPLACE_EXISTING, nullptr) != FALSE;
    if (store != nullptr) CertCloseStore(store, 0);
    if (!isAdded) throw std::runtime_error("the sample root cannot be added");
  }
}

}  // namespace

int wmain() {
  try {
    WriteUserEntries();
    WriteCommonEntries();
    WriteClientShortcut();
    TrustSampleRoot();
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "sample_entries: " << error.what() << '\n';
    return 1;
  }
}
