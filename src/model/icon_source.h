// Where the icons of files come from: the shell, asked by a process of our own
// (core/contracts/icon_exchange.h), so that no file ends the host or keeps its reader.
#pragma once

#include "core/contracts/icon_exchange.h"
#include "infra/runtime/handle.h"
#include "infra/runtime/module_global.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace smh {

// None, one or both.
struct IconPair {
  ScopedIcon large;
  ScopedIcon small;
};

// One question. Its file is not empty.
struct IconQuestion {
  IconRequest request;
  std::wstring file;
  // Of kOfFile and kOfEither, negative for a resource's number.
  int index = 0;
  bool operator==(const IconQuestion&) const = default;
};

// Starts the process with the first question and leaves it to the next source, one at a time, until it has
// been idle for a minute or the module ends. For one thread, which waits for each answer, without a lock. A
// file whose icon makes the process end, or takes longer than five seconds, has none; after two such waits,
// or ten such ends, and without the program, nothing has. Raises std::bad_alloc.
class IconSource {
 public:
  // What the asking thread does while the first question of this object's life is looked at: called at most
  // once, and not when there is nothing to wait for. What it raises passes, and ends that question.
  class Meanwhile {
   public:
    Meanwhile(IconSource& source, std::function<void()> work) : source_(source) {
      source_.meanwhile_ = std::move(work);
    }
    ~Meanwhile() { source_.meanwhile_ = nullptr; }
    Meanwhile(const Meanwhile&) = delete;
    Meanwhile& operator=(const Meanwhile&) = delete;

   private:
    IconSource& source_;
  };

  // `checkTerminated` is called when `wake` (null: none) is signalled, and all along a wait, and raises what
  // is to end that. The event outlives the object.
  IconSource(HANDLE wake, std::function<void()> checkTerminated);
  ~IconSource();
  IconSource(const IconSource&) = delete;
  IconSource& operator=(const IconSource&) = delete;

  // What will be asked next, if anything is: the program looks at it while the caller is busy with the answer
  // before. Called by the asking thread after each answer; what it raises ends that call.
  using Next = std::function<std::optional<IconQuestion>()>;
  void SetNext(Next next) { next_ = std::move(next); }

  // The icon `index` of the file, negative for a resource's number.
  IconPair OfFile(const std::wstring& file, int index);
  // What the shell shows for the file.
  IconPair OfShell(const std::wstring& file);
  // The first of the two that there is, for the price of one question.
  IconPair OfEither(const std::wstring& file, int index);
  // Whether nothing has an icon any more.
  bool HasGivenUp() const noexcept { return patience_ <= 0; }

 private:
  friend struct IdleIconProgram;
  class Program;

  IconPair Ask(const IconQuestion& question);
  std::unique_ptr<Program> TakeAsked(const IconQuestion& question);
  void AskAhead();
  bool WaitForAnswer(const Program& program);
  static std::unique_ptr<Program> TakeProgram();

  const HANDLE wake_;
  const std::function<void()> checkTerminated_;
  std::unique_ptr<Program> program_;
  std::function<void()> meanwhile_;
  Next next_;
  // What the program was asked for ahead; it has not been waited for.
  std::optional<IconQuestion> ahead_;
  // How much may still go wrong.
  int patience_;
};

// The process that no source uses just now. Sources end theirs themselves while it is not started.
struct IdleIconProgram;
extern ModuleGlobal<IdleIconProgram> g_idleIconProgram;

}  // namespace smh
