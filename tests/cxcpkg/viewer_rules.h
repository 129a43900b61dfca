// The rules of viewers, which are the same for packages and groups.
#pragma once

#include "tests/support/Viewer.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

template <class Holder>
class ViewerRules : public ::testing::Test {
protected:
    test::TestApp app;
    Holder holder;
};

TYPED_TEST_SUITE_P(ViewerRules);

inline bool asked(test::Viewer& viewer) {
    return viewer.takeRepaint().requested;
}

TYPED_TEST_P(ViewerRules, WindowIsRegisteredOnce) {
    test::Viewer a;
    test::Viewer b;
    EXPECT_EQ(this->holder.viewerAdd(&a), 1);
    EXPECT_EQ(this->holder.viewerAdd(&a), 0);
    EXPECT_EQ(this->holder.viewerAdd(&b), 2);
    ASSERT_EQ(this->holder.m_viewers.GetSize(), 2);
    EXPECT_EQ(this->holder.m_viewers.GetAt(0), &a);
    EXPECT_EQ(this->holder.m_viewers.GetAt(1), &b);
}

TYPED_TEST_P(ViewerRules, NullIsRegisteredEveryTime) {
    EXPECT_EQ(this->holder.viewerAdd(nullptr), 1);
    EXPECT_EQ(this->holder.viewerAdd(nullptr), 2);
    EXPECT_EQ(this->holder.viewerInvalidate(true, nullptr, true), 2);
    EXPECT_EQ(this->holder.viewerInvalidate(true, nullptr, false), 0);
    EXPECT_EQ(this->holder.viewerRemove(nullptr, false), -1);  // no search finds it
    EXPECT_EQ(this->holder.m_viewers.GetSize(), 2);
}

TYPED_TEST_P(ViewerRules, RemovingReturnsWhatIsLeft) {
    test::Viewer a;
    test::Viewer b;
    test::Viewer stranger;
    EXPECT_EQ(this->holder.viewerRemove(&a, false), -1);
    this->holder.viewerAdd(&a);
    this->holder.viewerAdd(&b);
    EXPECT_EQ(this->holder.viewerRemove(&stranger, false), -1);
    EXPECT_EQ(this->holder.viewerRemove(&a, false), 1);
    EXPECT_EQ(this->holder.m_viewers.GetAt(0), &b);
    EXPECT_EQ(this->holder.viewerRemove(&b, false), 0);
    this->holder.viewerAdd(&a);
    this->holder.viewerAdd(&b);
    EXPECT_EQ(this->holder.viewerRemove(nullptr, true), 0);
    EXPECT_EQ(this->holder.m_viewers.GetSize(), 0);
    EXPECT_EQ(this->holder.viewerRemove(nullptr, true), 0);
}

TYPED_TEST_P(ViewerRules, InvalidatingAWindowRegistersIt) {
    test::Viewer a;
    EXPECT_EQ(this->holder.viewerInvalidate(true, &a, false), 1);
    EXPECT_EQ(this->holder.m_viewers.GetAt(0), &a);
    test::Repaint repaint = a.takeRepaint();
    EXPECT_TRUE(repaint.requested);
    EXPECT_TRUE(repaint.whole);
    EXPECT_TRUE(repaint.erase);
    EXPECT_EQ(this->holder.viewerInvalidate(false, &a, false), 1);
    repaint = a.takeRepaint();
    EXPECT_TRUE(repaint.requested);
    EXPECT_TRUE(repaint.whole);
    EXPECT_FALSE(repaint.erase);
    EXPECT_EQ(this->holder.m_viewers.GetSize(), 1);
}

TYPED_TEST_P(ViewerRules, OneWindowIsAskedAlone) {
    test::Viewer a;
    test::Viewer b;
    this->holder.viewerAdd(&a);
    this->holder.viewerAdd(&b);
    EXPECT_EQ(this->holder.viewerInvalidate(true, &b, false), 1);
    EXPECT_FALSE(asked(a));
    EXPECT_TRUE(asked(b));
}

TYPED_TEST_P(ViewerRules, AllVisibleWindowsAreAskedAndAllEntriesCounted) {
    test::Viewer a;
    test::Viewer hidden(false);
    test::Viewer c;
    test::Viewer stranger;
    this->holder.viewerAdd(&a);
    this->holder.viewerAdd(&hidden);
    this->holder.viewerAdd(&c);
    EXPECT_EQ(this->holder.viewerInvalidate(false, nullptr, true), 3);
    const test::Repaint repaint = a.takeRepaint();
    EXPECT_TRUE(repaint.requested);
    EXPECT_TRUE(repaint.whole);
    EXPECT_FALSE(repaint.erase);
    EXPECT_TRUE(asked(c));
    EXPECT_FALSE(asked(stranger));
    hidden.ShowWindow(SW_SHOW);
    hidden.takeRepaint();
    EXPECT_EQ(this->holder.viewerInvalidate(true, nullptr, true), 3);
    EXPECT_TRUE(hidden.takeRepaint().erase);
    a.ShowWindow(SW_HIDE);
    EXPECT_EQ(this->holder.viewerInvalidate(true, &stranger, true), 4);
    EXPECT_TRUE(asked(stranger));
}

TYPED_TEST_P(ViewerRules, HiddenWindowIsNotAskedWithTheOthers) {
    test::Viewer hidden(false);
    this->holder.viewerAdd(&hidden);
    EXPECT_EQ(this->holder.viewerInvalidate(true, nullptr, true), 1);
    hidden.ShowWindow(SW_SHOW);
    hidden.takeRepaint();
    hidden.ShowWindow(SW_HIDE);
    EXPECT_EQ(this->holder.viewerInvalidate(true, nullptr, true), 1);
    EXPECT_FALSE(asked(hidden));
}

TYPED_TEST_P(ViewerRules, ChildWindowsAreViewersToo) {
    test::Viewer parent;
    CWnd child;
    const RECT rect = {0, 0, 20, 10};
    ASSERT_TRUE(child.Create(AfxRegisterWndClass(0), _T("child"), WS_VISIBLE, rect, &parent, 17));
    CWnd grandchild;
    ASSERT_TRUE(
        grandchild.Create(AfxRegisterWndClass(0), _T("grandchild"), WS_VISIBLE, rect, &child, 18));
    // With the methods of a viewer, but over the window of another object.
    const auto askedOf = [](CWnd& wnd) {
#ifdef _WIN32
        RECT update = {};
        const bool requested = ::GetUpdateRect(wnd.m_hWnd, &update, FALSE) != FALSE;
        ::ValidateRect(wnd.m_hWnd, nullptr);
        return requested;
#else
        const bool requested = afx_headless::repaintRequests(wnd.m_hWnd).count > 0;
        afx_headless::validate(wnd.m_hWnd);
        return requested;
#endif
    };
    askedOf(child);
    askedOf(grandchild);
    this->holder.viewerAdd(&grandchild);
    EXPECT_EQ(this->holder.viewerInvalidate(true, nullptr, true), 1);
    EXPECT_TRUE(askedOf(grandchild));
    EXPECT_FALSE(askedOf(child));
    parent.ShowWindow(SW_HIDE);
    EXPECT_EQ(this->holder.viewerInvalidate(true, nullptr, true), 1);
    EXPECT_FALSE(askedOf(grandchild));
}

TYPED_TEST_P(ViewerRules, ObjectWithoutAWindowAsksNobody) {
    CWnd none;
    test::Viewer stranger;
    EXPECT_EQ(this->holder.viewerInvalidate(true, &none, false), 1);
    EXPECT_FALSE(asked(stranger));  // a null handle would repaint every window
    EXPECT_EQ(this->holder.viewerInvalidate(true, nullptr, true), 1);
    EXPECT_FALSE(asked(stranger));
}

TYPED_TEST_P(ViewerRules, DestroyedViewerIsSkippedButCounted) {
    test::Viewer a;
    auto dead = std::make_unique<test::Viewer>();
    this->holder.viewerAdd(dead.get());
    this->holder.viewerAdd(&a);
    dead.reset();
    EXPECT_EQ(this->holder.viewerInvalidate(true, nullptr, true), 2);
    EXPECT_TRUE(asked(a));
    a.DestroyWindow();
    EXPECT_EQ(this->holder.viewerInvalidate(true, nullptr, true), 2);
}

REGISTER_TYPED_TEST_SUITE_P(ViewerRules, WindowIsRegisteredOnce, NullIsRegisteredEveryTime,
                            RemovingReturnsWhatIsLeft, InvalidatingAWindowRegistersIt,
                            OneWindowIsAskedAlone, AllVisibleWindowsAreAskedAndAllEntriesCounted,
                            HiddenWindowIsNotAskedWithTheOthers, ChildWindowsAreViewersToo,
                            ObjectWithoutAWindowAsksNobody, DestroyedViewerIsSkippedButCounted);

}  // namespace
