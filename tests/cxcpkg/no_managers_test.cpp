// Builds without the manager windows.
#include "tests/cxcpkg/package_fixture.h"

namespace {

TEST(NoManagers, UserIsToldThatThereAreNoWindows) {
    test::TestApp app;
    CSnsCohFacezq package;
    EXPECT_EQ(package.showDlgSnsCohManager(nullptr), 0);
    EXPECT_EQ(package.m_dlgSnsCohManager, nullptr);
    test::CleanGroup group;
    EXPECT_EQ(group.showDlgGroupCxcManager(nullptr), 0);
    EXPECT_EQ(group.m_dlgGroupCxcManager, nullptr);
    EXPECT_EQ(app.messages(), test::Texts(2, "The manager windows are available on Windows only."));
}

}  // namespace
