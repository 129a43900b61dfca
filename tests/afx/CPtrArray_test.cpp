#include <afxcoll.h>
#include <gtest/gtest.h>

#include <vector>

namespace {

int g_things[5];

void* thing(int i) {
    return &g_things[i];
}

std::vector<void*> contents(const CPtrArray& array) {
    std::vector<void*> all;
    for (INT_PTR i = 0; i < array.GetSize(); ++i)
        all.push_back(array.GetAt(i));
    return all;
}

template <class Use>
bool refuses(Use use) {
    try {
        use();
    } catch (CInvalidArgException* e) {
        e->Delete();
        return true;
    }
    return false;
}

}  // namespace

TEST(CPtrArray, AddReturnsTheIndexOfTheNewElement) {
    CPtrArray array;
    EXPECT_TRUE(array.IsEmpty());
    EXPECT_EQ(array.GetUpperBound(), -1);
    EXPECT_EQ(array.Add(thing(0)), 0);
    EXPECT_EQ(array.Add(nullptr), 1);
    EXPECT_EQ(array.GetSize(), 2);
    EXPECT_EQ(array.GetCount(), 2);
    EXPECT_EQ(array.GetUpperBound(), 1);
    EXPECT_EQ(contents(array), (std::vector<void*>{thing(0), nullptr}));
}

TEST(CPtrArray, InsertsInTheMiddleAndFillsAGapWithNull) {
    CPtrArray array;
    array.Add(thing(0));
    array.Add(thing(1));
    array.InsertAt(1, thing(2));
    EXPECT_EQ(contents(array), (std::vector<void*>{thing(0), thing(2), thing(1)}));
    array.InsertAt(5, thing(3), 2);
    EXPECT_EQ(contents(array), (std::vector<void*>{thing(0), thing(2), thing(1), nullptr, nullptr,
                                                   thing(3), thing(3)}));
}

TEST(CPtrArray, RemovesRanges) {
    CPtrArray array;
    for (int i = 0; i < 5; ++i)
        array.Add(thing(i));
    array.RemoveAt(1, 2);
    EXPECT_EQ(contents(array), (std::vector<void*>{thing(0), thing(3), thing(4)}));
    array.RemoveAt(2);
    array.RemoveAt(0);
    EXPECT_EQ(contents(array), (std::vector<void*>{thing(3)}));
    array.RemoveAll();
    array.RemoveAll();
    EXPECT_EQ(array.GetSize(), 0);
}

TEST(CPtrArray, ElementsCanBeReplaced) {
    CPtrArray array;
    array.Add(thing(0));
    array.SetAt(0, thing(1));
    EXPECT_EQ(array[0], thing(1));
    array[0] = thing(2);
    array.ElementAt(0) = static_cast<void*>(array[0]) == thing(2) ? thing(3) : nullptr;
    EXPECT_EQ(array.GetAt(0), thing(3));
}

TEST(CPtrArray, AnIndexOutsideThrowsInEveryBuild) {
    CPtrArray array;
    array.Add(thing(0));
    const CPtrArray& fixed = array;
    for (const INT_PTR bad : {INT_PTR{-1}, INT_PTR{1}, INT_PTR{1} << 40}) {
        EXPECT_TRUE(refuses([&] { fixed.GetAt(bad); }));
        EXPECT_TRUE(refuses([&] { array.SetAt(bad, nullptr); }));
        EXPECT_TRUE(refuses([&] { array[bad] = nullptr; }));
        EXPECT_TRUE(refuses([&] { array.ElementAt(bad) = nullptr; }));
    }
    EXPECT_TRUE(refuses([&] { array.InsertAt(-1, nullptr); }));
    EXPECT_TRUE(refuses([&] { array.RemoveAt(1); }));
    EXPECT_TRUE(refuses([&] { array.RemoveAt(0, 2); }));
    EXPECT_TRUE(refuses([&] { array.RemoveAt(-1); }));
    EXPECT_EQ(array.GetSize(), 1);
}

TEST(CPtrArray, ASizeBeyondMemoryIsAMemoryException) {
    CPtrArray array;
    try {
        array.InsertAt(INT_PTR{1} << 60, thing(0));
        ADD_FAILURE() << "nothing was thrown";
    } catch (CMemoryException* e) {
        e->Delete();
    }
    EXPECT_EQ(array.GetSize(), 0);
}

TEST(CPtrArray, HoldsManyElements) {
    CPtrArray array;
    for (INT_PTR i = 0; i < 10000; ++i)
        EXPECT_EQ(array.Add(reinterpret_cast<void*>(i)), i);
    EXPECT_EQ(array[9999], reinterpret_cast<void*>(INT_PTR{9999}));
}
