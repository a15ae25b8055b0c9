#include "core/contracts/com_object.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace smh::test {
namespace {

struct IFirst : IUnknown {
  static constexpr GUID iid = {0x1, 0, 0, {0, 0, 0, 0, 0, 0, 0, 1}};
  virtual int STDMETHODCALLTYPE First() = 0;
};

struct ISecond : IUnknown {
  static constexpr GUID iid = {0x2, 0, 0, {0, 0, 0, 0, 0, 0, 0, 2}};
  virtual int STDMETHODCALLTYPE Second() = 0;
};

class Both final : public ComObject<IFirst, ISecond> {
 public:
  explicit Both(int& living) : living_(living) { ++living_; }
  int STDMETHODCALLTYPE First() override { return 1; }
  int STDMETHODCALLTYPE Second() override { return 2; }

 private:
  ~Both() override { --living_; }

  int& living_;
};

class Service final : public ServiceObject<IFirst> {
 public:
  int STDMETHODCALLTYPE First() override { return 1; }
};

constinit Service g_service;
static_assert(std::is_trivially_destructible_v<Service>);

template <typename Interface>
Interface* Ask(IUnknown& object, REFIID wanted) {
  void* answer = &object;
  const HRESULT result = object.QueryInterface(wanted, &answer);
  EXPECT_EQ(result, answer == nullptr ? E_NOINTERFACE : S_OK);
  return static_cast<Interface*>(answer);
}

TEST(ComObjectTest, CountedObjectAnswersEachInterfaceAndDiesWithItsLastReference) {
  int living = 0;
  ComPtr<Both> object = MakeComObject<Both>(living);
  IFirst* const first = object.Get();
  ISecond* const second = Ask<ISecond>(*first, ISecond::iid);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(second->Second(), 2);
  EXPECT_EQ(Ask<IFirst>(*second, IFirst::iid), first);
  // One identity, from whichever side.
  EXPECT_EQ(Ask<IUnknown>(*second, IID_IUnknown), Ask<IUnknown>(*first, IID_IUnknown));
  EXPECT_EQ(Ask<IUnknown>(*first, IID_IClassFactory), nullptr);
  EXPECT_EQ(first->QueryInterface(IFirst::iid, nullptr), E_POINTER);
  EXPECT_EQ(second->AddRef(), 6u);
  for (ULONG left = 5; left > 0; --left) EXPECT_EQ(first->Release(), left);
  EXPECT_EQ(living, 1);
  object.Reset();
  EXPECT_EQ(living, 0);
}

TEST(ComObjectTest, ServiceOutlivesItsReferences) {
  for (int i = 0; i < 3; ++i) EXPECT_EQ(g_service.Release(), 1u);
  EXPECT_EQ(g_service.AddRef(), 2u);
  IFirst* answer = nullptr;
  EXPECT_EQ(AnswerService<IFirst>(&answer, g_service), S_OK);
  EXPECT_EQ(answer, Ask<IFirst>(g_service, IFirst::iid));
  EXPECT_EQ(AnswerService<IFirst>(nullptr, g_service), E_POINTER);
}

}  // namespace
}  // namespace smh::test
