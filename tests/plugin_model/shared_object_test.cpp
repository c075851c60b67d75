// Reference counts, the pending-acquire rule and the registry of live objects.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "plugin_model/object_registry.hpp"

namespace PX_PLUGIN {
namespace {

// A shared object that tells when it is destroyed.
class Probe final : public SharedObjectImpl {
 public:
  explicit Probe(bool &destroyed) : destroyed_(destroyed) {}
  ~Probe() override { destroyed_ = true; }

 private:
  bool &destroyed_;
};

TEST(SharedObject, FirstAcquireAfterHandOutConsumesThePendingReference) {
  bool destroyed = false;
  auto *probe = new Probe(destroyed);
  probe->Acquire();          // the library's own reference
  probe->InternalAcquire();  // counted for the converter that receives it
  EXPECT_EQ(probe->ReferenceCount(), 2u);
  EXPECT_EQ(probe->PendingAcquireCount(), 1u);

  probe->Acquire();  // the converter's first acquire: absorbed
  EXPECT_EQ(probe->ReferenceCount(), 2u);
  EXPECT_EQ(probe->PendingAcquireCount(), 0u);
  probe->Acquire();  // a second one counts
  EXPECT_EQ(probe->ReferenceCount(), 3u);

  probe->Release();
  probe->Release();
  EXPECT_FALSE(destroyed);
  probe->Release();
  EXPECT_TRUE(destroyed);
}

TEST(SharedObject, ReleaseOfTheLastReferenceOrAtZeroDestroys) {
  bool lastDestroyed = false;
  auto *last = new Probe(lastDestroyed);
  last->Acquire();
  last->Release();
  EXPECT_TRUE(lastDestroyed);

  bool zeroDestroyed = false;
  auto *atZero = new Probe(zeroDestroyed);
  ASSERT_EQ(atZero->ReferenceCount(), 0u);
  atZero->Release();
  EXPECT_TRUE(zeroDestroyed);
}

TEST(ObjectRegistry, FindGivesNewOwnersAndRemovingDropsTheHold) {
  ObjectRegistry &registry = ObjectRegistry::Instance();
  const std::size_t before = registry.Size();
  const std::uint64_t document = NewDocumentTag();
  bool destroyed = false;
  auto *probe = new Probe(destroyed);
  {
    ObjectOwner owner = registry.Register(probe, document);
    EXPECT_EQ(probe->ReferenceCount(), 1u);  // one reference for all of the library's owners
    RegisteredObject found = registry.Find(probe);
    EXPECT_EQ(found.owner.get(), probe);
    EXPECT_EQ(found.document, document);
    EXPECT_EQ(found.owner.use_count(), 3);  // registry, owner, found
  }
  EXPECT_EQ(registry.Size(), before + 1);
  registry.Remove(probe);
  EXPECT_TRUE(destroyed);
  EXPECT_EQ(registry.Size(), before);
  EXPECT_FALSE(registry.Find(probe).owner);
}

TEST(ObjectRegistry, ObjectOutlivesTheRegistryWhileAConverterHoldsIt) {
  const std::uint64_t document = NewDocumentTag();
  bool destroyed = false;
  auto *probe = new Probe(destroyed);
  ObjectRegistry::Instance().Register(probe, document);
  probe->InternalAcquire();
  ObjectRegistry::Instance().RemoveDocument(document);
  EXPECT_FALSE(destroyed);
  probe->Release();  // the converter's
  EXPECT_TRUE(destroyed);
}

TEST(ObjectRegistry, SurplusReleaseByAConverterDoesNotReleaseTwice) {
  ObjectRegistry &registry = ObjectRegistry::Instance();
  const std::size_t before = registry.Size();
  const std::uint64_t document = NewDocumentTag();
  bool destroyed = false;
  auto *probe = new Probe(destroyed);
  ObjectOwner treeOwner = registry.Register(probe, document);
  probe->Release();  // a converter giving back a reference it never had
  EXPECT_TRUE(destroyed);
  EXPECT_EQ(registry.Size(), before);
  // The library's remaining owner must not release the dead object again (the sanitizer
  // build would report it).
  treeOwner.reset();
  registry.RemoveDocument(document);
}

// Enough objects to make the table of addresses grow several times and to move entries
// when others are removed: one document's removal leaves exactly the other's.
TEST(ObjectRegistry, RemovingADocumentAmongManyKeepsEveryOtherEntry) {
  ObjectRegistry &registry = ObjectRegistry::Instance();
  const std::size_t before = registry.Size();
  const std::uint64_t kept = NewDocumentTag();
  const std::uint64_t removed = NewDocumentTag();
  constexpr int kObjects = 5000;
  const auto destroyed = std::make_unique<bool[]>(kObjects);
  std::vector<Probe *> probes;
  for (int i = 0; i < kObjects; ++i) {
    probes.push_back(new Probe(destroyed[i]));
    registry.Register(probes.back(), i % 3 == 0 ? kept : removed);
  }
  registry.Remove(probes[1]);  // a single removal in the middle of the runs
  registry.RemoveDocument(removed);
  EXPECT_EQ(registry.Size(), before + (kObjects + 2) / 3);
  for (int i = 0; i < kObjects; ++i) {
    EXPECT_EQ(destroyed[i], i % 3 != 0) << i;
    if (i % 3 == 0) {
      EXPECT_EQ(registry.Find(probes[i]).document, kept) << i;
    }
  }
  registry.RemoveDocument(kept);
  EXPECT_EQ(registry.Size(), before);
}

}  // namespace
}  // namespace PX_PLUGIN
