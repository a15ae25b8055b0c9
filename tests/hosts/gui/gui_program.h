// startupmanager.exe as a process of its own, driven by messages and seen through the state of its controls.
#pragma once

#include "tests/support/child_process.h"

#include <windows.h>
#include <commctrl.h>

#include <functional>
#include <optional>

namespace smh::test {

// Memory of another process, for messages whose arguments are pointers there.
class RemoteBuffer {
 public:
  RemoteBuffer(HANDLE process, std::size_t size);
  ~RemoteBuffer();
  RemoteBuffer(const RemoteBuffer&) = delete;
  RemoteBuffer& operator=(const RemoteBuffer&) = delete;

  std::byte* Address() const noexcept { return address_; }
  void Write(std::size_t offset, const void* from, std::size_t size) const;
  void Read(std::size_t offset, void* to, std::size_t size) const;
  std::wstring Text(std::size_t offset, std::size_t units) const;

 private:
  HANDLE process_;
  std::byte* address_;
};

// The text in the clipboard; empty for none, and while another program has it open.
std::wstring ClipboardText();

class GuiProgram {
 public:
  // Size, order and the like as at the first start, with its sentence read or not, or as they were left.
  enum class Look { kFresh, kFirst, kAsLeft };

  // Returns when the window is there and every entry was read.
  using Rights = ChildProcess::Rights;
  explicit GuiProgram(Look look, Rights rights = Rights::kFull,
                      const std::vector<std::wstring>& arguments = {});
  // Closes the window and waits for the end, which is a failed test when it does not come.
  ~GuiProgram();

  HWND Window() const noexcept { return window_; }
  HWND Control(int id) const { return GetDlgItem(window_, id); }
  // As if chosen from the menu; returns at once.
  void Command(UINT command) const { PostMessageW(window_, WM_COMMAND, command, 0); }
  bool CanRun(UINT command) const;
  // Of the tool bar, in its client area.
  RECT ButtonRect(UINT command) const;
  std::wstring Status(int part) const;
  void WaitUntilRead() const;
  // What an empty edit field shows.
  std::wstring Cue(int edit) const;
  void Search(const std::wstring& text) const;
  // The box that the program shows now, null when none comes.
  HWND WaitForDialog() const;

  // The node of the tree whose text begins so; selects it.
  bool SelectNode(const std::wstring& begin) const;
  std::vector<std::wstring> NodeTexts() const;

  // Lists by control.
  int Count(int list) const;
  std::wstring Cell(int list, int row, int column) const;
  // In pixels, as the list writes it.
  int TextWidth(int list, const std::wstring& text) const;
  std::vector<std::wstring> Column(int list, int column) const;
  // The row whose first column is that text, with or without what tells it from others of that name; -1.
  int RowOf(int list, const std::wstring& text) const;
  // What the details say of that property of the selected entry, as it is shown; empty when they do not.
  std::wstring Detail(const std::wstring& property) const;
  // The text of the tip that is shown; empty when none is.
  std::wstring TipText() const;
  // Puts the mouse on a cell, somewhere else than it is.
  void PointAt(int list, int row, int column) const;
  void Select(int list, const std::vector<int>& rows) const;
  std::vector<int> Selection(int list) const;
  bool IsChecked(int row) const;
  void ClickCheckBox(int row) const;
  void ClickHeader(int column) const;
  void SendDpiChange(int dpi, const RECT& place) const;
  // The whole window as NAME-win64.png or NAME-win32.png.
  void Screenshot(const std::wstring& name) const;

 private:
  RECT ItemRect(HWND list, int row, int part) const;
  std::wstring NodeText(HTREEITEM item) const;
  std::vector<HTREEITEM> Nodes() const;

  ChildProcess process_;
  HWND window_ = nullptr;
};

}  // namespace smh::test
