#ifdef _WIN32

#include "tests/support/TestApp.h"

#include <gtest/gtest.h>

namespace {

using test::TestApp;

TEST(CImageListTest, KeepsCopiesOfIcons) {
    TestApp app;
    CImageList images;
    EXPECT_EQ(images.GetSafeHandle(), nullptr);
    EXPECT_FALSE(images.DeleteImageList());
    ASSERT_TRUE(images.Create(16, 16, ILC_COLOR16, 0, 1));
    EXPECT_EQ(CImageList::FromHandle(images.m_hImageList), &images);
    EXPECT_EQ(images.Add(::LoadIcon(nullptr, IDI_WARNING)), 0);
    EXPECT_EQ(images.Add(::LoadIcon(nullptr, IDI_ERROR)), 1);
    EXPECT_EQ(images.Add(nullptr), -1);
    EXPECT_EQ(images.GetImageCount(), 2);
    EXPECT_TRUE(images.DeleteImageList());
    EXPECT_EQ(images.m_hImageList, nullptr);
}

TEST(CommonControls, AreThoseThatTheManifestNames) {
    // Only a program with a manifest gets version 6, from a folder of its own.
    const HMODULE library = ::GetModuleHandle(_T("comctl32.dll"));
    ASSERT_NE(library, nullptr);
    TCHAR path[MAX_PATH] = {};
    ::GetModuleFileName(library, path, MAX_PATH);
    EXPECT_NE(test::toUtf8(path).find("common-controls"), std::string::npos) << test::toUtf8(path);
}

}  // namespace

#endif
