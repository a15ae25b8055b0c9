// What the window says of itself above its panes: what it is, whose entries it shows, and what it may change.
// For the window's thread.
#pragma once

#include "hosts/gui/account.h"
#include "hosts/gui/entry_rows.h"

#include <windows.h>

#include <string>
#include <vector>

namespace smh {

struct NoticeButton {
  UINT command;          // CMD_ in resource.h
  const wchar_t* label;  // a literal
};

// Without a text there is nothing to say.
struct Notice {
  std::wstring text;
  std::vector<NoticeButton> buttons;
};

class Notices {
 public:
  // `account` outlives the object. Looks up whether the user has read the first one before.
  explicit Notices(const Account& account);

  // What is said beside the entries of those locations: the most important thing alone.
  Notice For(const LocationSet& locations) const;
  // The user has read what For says: the first sentence for ever, what the rights are until the next start.
  void Hide();

 private:
  const Account& account_;
  bool isWelcomeRead_;
  bool areRightsRead_ = false;
};

}  // namespace smh
