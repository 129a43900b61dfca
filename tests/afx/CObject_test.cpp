#include <afx.h>
#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

namespace {

class Animal : public CObject {
    DECLARE_DYNAMIC(Animal)
};
IMPLEMENT_DYNAMIC(Animal, CObject)

class Bird : public Animal {
    DECLARE_DYNAMIC(Bird)

    int m_wings = 2;
};
IMPLEMENT_DYNAMIC(Bird, Animal)

static_assert(!std::is_copy_constructible_v<Bird>);
static_assert(std::has_virtual_destructor_v<CObject>);

}  // namespace

TEST(CObject, KnowsItsClassAtRunTime) {
    const std::unique_ptr<CObject> bird(new Bird);
    EXPECT_STREQ(bird->GetRuntimeClass()->m_lpszClassName, "Bird");
    EXPECT_EQ(bird->GetRuntimeClass()->m_nObjectSize, static_cast<int>(sizeof(Bird)));
    EXPECT_EQ(bird->GetRuntimeClass()->m_wSchema, 0xFFFFu);
    EXPECT_EQ(bird->GetRuntimeClass()->m_pfnCreateObject, nullptr);
}

TEST(CObject, IsKindOfItsClassAndItsBases) {
    Bird bird;
    Animal animal;
    EXPECT_TRUE(bird.IsKindOf(RUNTIME_CLASS(Bird)));
    EXPECT_TRUE(bird.IsKindOf(RUNTIME_CLASS(Animal)));
    EXPECT_TRUE(bird.IsKindOf(RUNTIME_CLASS(CObject)));
    EXPECT_FALSE(animal.IsKindOf(RUNTIME_CLASS(Bird)));
    EXPECT_TRUE(RUNTIME_CLASS(Bird)->IsDerivedFrom(RUNTIME_CLASS(Animal)));
    EXPECT_FALSE(RUNTIME_CLASS(Animal)->IsDerivedFrom(RUNTIME_CLASS(Bird)));
}
