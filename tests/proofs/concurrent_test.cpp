// Four threads change entries while another program writes, deletes and retypes the same values: what that
// has written and nobody agreed to take away is still there, and what it leaves alone is changed as asked.
#include "model/item_list.h"
#include "model/reading.h"
#include "tests/proofs/loss_judge.h"
#include "tests/proofs/proof_report.h"
#include "tests/proofs/run_contention.h"
#include "tests/proofs/undo_world.h"
#include "tests/support/waiting.h"

#include <algorithm>
#include <filesystem>
#include <mutex>
#include <random>
#include <set>
#include <thread>

namespace smh::test {
namespace {

constexpr int kThreads = 4;
constexpr TTypeStartupLocation kRuns[] = {sulRegistryUserRun, sulRegistryCommonRun};

class Changes {
 public:
  // Runs the change, numbered and traced.
  Outcome Make(Kind kind, const ItemRef& item, const std::function<ChangeAnswer()>& change) {
    int number = 0;
    {
      const std::lock_guard lock(lock_);
      number = static_cast<int>(outcomes_.size());
      outcomes_.emplace_back();
    }
    Outcome outcome;
    outcome.kind = kind;
    try {
      const TracedChange traced(number);
      const ChangeAnswer answer = change();
      outcome.isDone = answer.kind == ChangeAnswer::Kind::kDone;
      outcome.failure = outcome.isDone ? L"" : answer.text + L" (answer)";
    } catch (const Exception& exception) {
      outcome.failure = std::wstring(exception.ClassName()) + L": " + exception.Message();
    }
    // An item that has left the list keeps what it showed.
    if (item != nullptr) outcome.agreed = std::wstring(item->State().details.Command);
    const std::lock_guard lock(lock_);
    return outcomes_[static_cast<std::size_t>(number)] = std::move(outcome);
  }
  const std::vector<Outcome>& All() const { return outcomes_; }

 private:
  std::mutex lock_;
  std::vector<Outcome> outcomes_;
};

ItemRef FindByText(TTypeStartupLocation location, const std::wstring& text) {
  ScopedLock lock(Items().Lock());
  for (const ItemRef& item : Items().Snapshot()) {
    if (item->Location() == location && item->GivenText() == SharedText(text)) return item;
  }
  return nullptr;
}

ItemRef AnyContended(std::mt19937& random) {
  std::vector<ItemRef> items;
  {
    ScopedLock lock(Items().Lock());
    items = Items().Snapshot();
  }
  std::erase_if(items, [](const ItemRef& item) {
    return !std::wstring_view(item->GivenText()).starts_with(L'c') || item->Location() == sulNone;
  });
  return items.empty() ? nullptr : items[random() % items.size()];
}

// The life of an entry that nobody else touches: every change of it must come about.
void LiveOwnLife(Changes& changes, const std::wstring& name, int round) {
  TTypeStartupLocation at = kRuns[round % 2];
  const auto expect = [&](Kind kind, auto&& change) {
    const ItemRef item = kind == Kind::kAdd ? nullptr : FindByText(at, name);
    if (kind != Kind::kAdd && item == nullptr) {
      ADD_FAILURE() << "not listed before change " << static_cast<int>(kind) << " in round " << round;
      return;
    }
    TLocationStartup& location = *FindLocation(at);
    const Outcome outcome = changes.Make(kind, item, [&] { return change(location, item); });
    EXPECT_TRUE(outcome.isDone) << "change " << static_cast<int>(kind) << " in round " << round << ": "
                                << std::filesystem::path(outcome.failure).string();
  };
  const auto disable = [](TLocationStartup& location, const ItemRef& item) {
    return location.DisableItem(item);
  };
  const auto enable = [](TLocationStartup& location, const ItemRef& item) {
    return location.EnableItem(item);
  };
  const std::wstring number = std::to_wstring(round);
  expect(Kind::kAdd, [&](TLocationStartup& location, const ItemRef&) {
    return location.AddItem(name, CommandOf(name, L"new" + number));
  });
  expect(Kind::kDisable, disable);
  expect(Kind::kEnable, enable);
  expect(Kind::kChange, [&](TLocationStartup& location, const ItemRef& item) {
    return location.ChangeItemCommand(item, CommandOf(name, L"changed" + number));
  });
  const TTypeStartupLocation target = kRuns[(round + 1) % 2];
  // A move names the entry after its program.
  expect(Kind::kMove,
         [&](TLocationStartup& location, const ItemRef& item) { return location.MoveItem(item, target); });
  at = target;
  expect(Kind::kDisable, disable);
  expect(Kind::kDelete,
         [](TLocationStartup& location, const ItemRef& item) { return location.DeleteItem(item); });
}

void ChangeContended(Changes& changes, std::mt19937& random, int thread) {
  static std::atomic<int> s_number{0};
  const std::wstring number = std::to_wstring(++s_number);
  const ItemRef item = AnyContended(random);
  if (item == nullptr) return;
  TLocationStartup& location = *FindLocation(item->Location());
  const unsigned what = random() % 20;
  if (what < 2) {
    changes.Make(Kind::kDelete, item, [&] { return location.DeleteItem(item); });
  } else if (what < 7) {
    const std::wstring command =
        CommandOf(std::wstring(item->GivenText()), L"inside" + std::to_wstring(thread) + L'-' + number);
    changes.Make(Kind::kChange, item, [&] { return location.ChangeItemCommand(item, command); });
  } else if (what < 10) {
    const TTypeStartupLocation target = kRuns[item->Location() == kRuns[0] ? 1 : 0];
    changes.Make(Kind::kMove, item, [&] { return location.MoveItem(item, target); });
  } else if (item->IsEnabled()) {
    changes.Make(Kind::kDisable, item, [&] { return location.DisableItem(item); });
  } else {
    changes.Make(Kind::kEnable, item, [&] { return location.EnableItem(item); });
  }
}

// Sorted lines of path, state and command: of the list, and of the keys.
std::vector<std::wstring> Listed() {
  std::vector<std::wstring> lines;
  ScopedLock lock(Items().Lock());
  for (const ItemRef& item : Items().Snapshot()) {
    if (std::ranges::find(kRuns, item->Location()) == std::end(kRuns)) continue;
    const ItemState state = item->State();
    lines.push_back(std::wstring(state.name) + (state.isEnabled ? L" on " : L" off ") +
                    std::wstring(state.details.Command));
  }
  std::ranges::sort(lines);
  return lines;
}
std::vector<std::wstring> Standing() {
  std::vector<std::wstring> lines;
  for (const auto& [location, root, key] : RunPlaces()) {
    for (const std::wstring& name : Values(root, key, OwnView())) {
      const std::optional<RawValue> value = GetValue(root, key, name, OwnView());
      const bool isText = value && (value->type == REG_SZ || value->type == REG_EXPAND_SZ);
      lines.push_back(RegistryValueAddress{OwnView(), root, key, name}.FullPath() +
                      (key == kRunKey ? L" on " : L" off ") + (isText ? TextOf(value) : L""));
    }
  }
  std::ranges::sort(lines);
  return lines;
}

std::string AsText(const std::vector<std::wstring>& lines) {
  std::wstring text;
  for (const std::wstring& line : lines) text += line + L'\n';
  return std::filesystem::path(text).string();
}

std::set<std::wstring> StandingContents() {
  std::set<std::wstring> contents;
  for (const auto& [location, root, key] : RunPlaces()) {
    for (const std::wstring& name : Values(root, key, OwnView())) {
      if (const std::optional<RawValue> value = GetValue(root, key, name, OwnView())) {
        contents.insert(ContentOf(value->bytes.data(), static_cast<DWORD>(value->bytes.size())));
      }
    }
  }
  return contents;
}

// What the Run keys held; put back at the program's end. The keys themselves stay: the library watches them.
class KeptRunKeys : public ::testing::Environment {
 public:
  void SetUp() override {
    ForEachView([this](HKEY root, REGSAM view) {
      saved_.push_back(std::make_unique<SavedKey>(root, kRunKey, view));
    });
  }
  void TearDown() override { saved_.clear(); }

  static void Empty() {
    ForEachView([](HKEY root, REGSAM view) {
      for (const std::wstring& key : {kRunKey, kRunSide}) {
        MakeKey(root, key, view);
        for (const std::wstring& name : Values(root, key, view)) RemoveValue(root, key, name, view);
      }
    });
  }

 private:
  template <typename Visit>
  static void ForEachView(Visit&& visit) {
    visit(HKEY_CURRENT_USER, OwnView());
    visit(HKEY_LOCAL_MACHINE, OwnView());
    if (HasTwoViews()) visit(HKEY_LOCAL_MACHINE, REGSAM(0));
  }

  std::vector<std::unique_ptr<SavedKey>> saved_;
};
[[maybe_unused]] auto* const g_keptRunKeys = ::testing::AddGlobalTestEnvironment(new KeptRunKeys);

class Concurrent : public ::testing::TestWithParam<bool> {
 protected:
  Concurrent() {
    KeptRunKeys::Empty();
    undo_.UseCheckpoints(GetParam());
    ClearJournal();
    for (int i = 0; i < kContended; ++i) {
      const std::wstring name = L"c" + std::to_wstring(i);
      for (const auto& [location, root, key] : RunPlaces()) {
        SetValue(root, key, name, Sz(CommandOf(name, L"first")), OwnView());
      }
    }
  }
  ~Concurrent() override {
    StopReading();
    KeptRunKeys::Empty();
    ClearJournal();
    undo_.UseCheckpoints(true);
  }

  static void ReadAfresh() {
    {
      ScopedLock lock(Items().Lock());
      Items().Clear();
    }
    for (const TTypeStartupLocation location : kRuns) FindLocation(location)->ReadItems();
  }
  static DWORD Length() { return ProofStride() == 1 ? 30'000 : 5'000; }

  // Each of the threads: by turns a life of its own entry and some changes of what the outside program
  // changes.
  void RunThreads(ULONGLONG end) {
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
      threads.emplace_back([this, thread, end] {
        std::mt19937 random(static_cast<unsigned>(thread));
        const std::wstring name = L"t" + std::to_wstring(thread);
        for (int round = thread; GetTickCount64() < end; ++round) {
          LiveOwnLife(changes_, name, round);
          ++lives_;
          for (int i = 0; i < 12; ++i) ChangeContended(changes_, random, thread);
        }
      });
    }
    // The reader looks once a second; begun anew it looks at once, and the list is as fresh as it gets.
    for (; GetTickCount64() < end; Sleep(50)) StartReading();
    for (std::thread& thread : threads) thread.join();
  }

  UndoWorld& undo_ = UndoWorld::Instance();
  Changes changes_;
  std::atomic<int> lives_{0};
};

TEST_P(Concurrent, NothingIsLostAndWhatIsLeftAloneIsChanged) {
  ReadAfresh();
  std::vector<TracedCall> outside;
  std::vector<TracedCall> calls;
  {
    const ChangeTrace trace{nullptr, undo_.Service().Module()};
    Contender program(Length());
    RunThreads(GetTickCount64() + Length());
    outside = program.Finish();
    calls = ChangeTrace::Take();
  }
  EXPECT_TRUE(WaitUntil([] { return Listed() == Standing(); })) << "the list follows\n"
                                                                << AsText(Listed()) << "but there stand\n"
                                                                << AsText(Standing());
  StopReading();
  ReadAfresh();
  EXPECT_EQ(Listed(), Standing()) << "and so does a fresh one";

  int unlooked = 0;
  for (const TracedCall& call : calls) unlooked += !call.stood.empty() && !call.isLastLook ? 1 : 0;
  EXPECT_EQ(unlooked, 0) << "taken away without a look directly before";
  calls.insert(calls.end(), outside.begin(), outside.end());
  const Judge judge(calls, changes_.All());
  const std::set<std::wstring> standing = StandingContents();
  std::map<std::string, int> fates;
  for (const TracedCall& written : outside) {
    if (written.written.empty()) {
      ++fates["deletions"];
      continue;
    }
    const std::string fate = standing.contains(written.written) ? "standing" : judge.Explain(written);
    ++fates[fate];
    EXPECT_NE(fate, "") << "lost:\n" << judge.StoryOf(written.written);
  }
  std::printf("%s:", GetParam() ? "recorded" : "plain");
  for (const auto& [fate, count] : fates) std::printf(" %d %s,", count, fate.c_str());
  std::map<std::wstring, int> failures;
  int done = 0;
  for (const Outcome& outcome : changes_.All()) outcome.isDone ? ++done : ++failures[outcome.failure];
  std::printf(" %d changes done, %d lives of own entries\n", done, lives_.load());
  for (const auto& [failure, count] : failures) std::printf("  %6d %ls\n", count, failure.c_str());
  EXPECT_GT(done, 20);
  EXPECT_GT(outside.size(), 100u);
  ProofReport::Count("four threads and an outsider", GetParam() ? "recorded" : "plain");
}

INSTANTIATE_TEST_SUITE_P(BothWays, Concurrent, testing::Bool(),
                         [](const auto& way) { return way.param ? "Recorded" : "Plain"; });

}  // namespace
}  // namespace smh::test
