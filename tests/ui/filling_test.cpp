#ifdef _WIN32

#include "cxcui/filling.h"

#include "tests/ui/ui_fixture.h"

#include <stdexcept>

namespace {

TEST(Filling, EndsWithItsScopeAlsoByAnException) {
    bool filling = false;
    try {
        const cxc::Filling scope(filling);
        EXPECT_TRUE(filling);
        throw std::runtime_error("no memory for a text");
    } catch (const std::runtime_error&) {
    }
    EXPECT_FALSE(filling);
}

TEST(Filling, InnerOneLeavesTheOuterOneAsItIs) {
    bool filling = false;
    const cxc::Filling outer(filling);
    { const cxc::Filling inner(filling); }
    EXPECT_TRUE(filling);
}

// Remembers what it was last told about painting.
class PaintedList : public CListCtrl {
public:
    bool paints = true;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_SETREDRAW) paints = wParam != 0;
        return CListCtrl::WindowProc(message, wParam, lParam);
    }
};

TEST(PaintingStopped, ControlPaintsAgainAfterAnException) {
    const test::HostApp app;
    CWnd frame;
    PaintedList list;
    ASSERT_TRUE(frame.CreateEx(0, AfxRegisterWndClass(0), _T(""), WS_POPUP | WS_VISIBLE, 0, 0, 200,
                               100, nullptr, nullptr));
    ASSERT_TRUE(list.Create(WS_CHILD | WS_VISIBLE | LVS_REPORT, CRect(0, 0, 200, 100), &frame, 7));
    list.UpdateWindow();
    try {
        const cxc::PaintingStopped stopped(list);
        EXPECT_FALSE(list.paints);
        throw std::runtime_error("no memory for a text");
    } catch (const std::runtime_error&) {
    }
    EXPECT_TRUE(list.paints);
    EXPECT_TRUE(::GetUpdateRect(list.m_hWnd, nullptr, FALSE));
}

}  // namespace

#endif
