#ifdef _WIN32

#include "cxcui/CListSnsCohDatazq.h"
#include "cxcui/CListSnsCohFacezq.h"
#include "tests/ui/ui_fixture.h"

namespace {

using test::Texts;

template <class List>
class Lists : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(frame.CreateEx(0, AfxRegisterWndClass(0), _T(""), WS_POPUP | WS_VISIBLE, 0, 0,
                                   700, 300, nullptr, nullptr));
        ASSERT_TRUE(
            list.Create(WS_CHILD | WS_VISIBLE | LVS_REPORT, CRect(0, 0, 700, 300), &frame, 7));
        list.setUpImages();
    }

    test::HostApp app;
    CWnd frame;
    List list;
};

using CListSnsCohDatazqTest = Lists<CListSnsCohDatazq>;

TEST_F(CListSnsCohDatazqTest, SetUpGivesColumnsImagesAndStyles) {
    EXPECT_STREQ(list.GetRuntimeClass()->m_lpszClassName, "CListSnsCohDatazq");
    EXPECT_EQ(test::columnsOf(list), (Texts{"Name", "Chn A", "Chn B", "Times", "Slice", "Value"}));
    for (int column = 0; column < 6; ++column) {
        LVCOLUMN facts = {};
        facts.mask = LVCF_SUBITEM | LVCF_WIDTH | LVCF_FMT;
        ASSERT_TRUE(list.GetColumn(column, &facts));
        EXPECT_EQ(facts.cx, 90);
        EXPECT_EQ(facts.iSubItem, column + 1);
        EXPECT_EQ(facts.fmt & LVCFMT_JUSTIFYMASK, LVCFMT_LEFT);
    }
    EXPECT_EQ(list.GetExtendedStyle(), 105u);
    EXPECT_EQ(list.m_imageLarge->GetImageCount(), 2);
    EXPECT_EQ(list.m_imageSmall->GetImageCount(), 2);
    int width = 0;
    int height = 0;
    ::ImageList_GetIconSize(list.m_imageLarge->m_hImageList, &width, &height);
    EXPECT_EQ(width, 32);
    ::ImageList_GetIconSize(list.m_imageSmall->m_hImageList, &width, &height);
    EXPECT_EQ(width, 16);
    EXPECT_EQ(list.setUpColumns(), 1);
    EXPECT_EQ(list.GetHeaderCtrl()->GetItemCount(), 6);
}

TEST_F(CListSnsCohDatazqTest, SecondSetUpKeepsTheImages) {
    const CImageList* const before = list.m_imageSmall;
    EXPECT_EQ(list.setUpImages(), 1);
    EXPECT_EQ(list.m_imageSmall, before);
    EXPECT_EQ(list.GetHeaderCtrl()->GetItemCount(), 6);
}

TEST_F(CListSnsCohDatazqTest, SetUpEndsWhereNoColumnCanBeDeleted) {
    const test::BeforeControl control(list.m_hWnd, LVM_DELETECOLUMN, test::refuse);
    EXPECT_EQ(list.setUpColumns(), 1);
    EXPECT_EQ(list.GetHeaderCtrl()->GetItemCount(), 12);
}

TEST_F(CListSnsCohDatazqTest, SetUpBearsAListWithoutAHeader) {
    {
        const test::BeforeControl control(list.m_hWnd, LVM_GETHEADER, test::refuse);
        ASSERT_EQ(list.GetHeaderCtrl(), nullptr);
        EXPECT_EQ(list.setUpColumns(), 1);
    }
    EXPECT_EQ(list.GetHeaderCtrl()->GetItemCount(), 12);
}

TEST_F(CListSnsCohDatazqTest, WithoutMemoryForThePicturesTheListHasNone) {
    CListSnsCohDatazq fresh;
    ASSERT_TRUE(fresh.Create(WS_CHILD | LVS_REPORT, CRect(0, 0, 90, 90), &frame, 8));
    const test::FailingMemory failing(1);
    EXPECT_EQ(fresh.setUpImages(), 1);
    EXPECT_EQ(fresh.m_imageLarge, nullptr);
    EXPECT_EQ(test::picturesOf(fresh), (std::pair<int, int>(-1, -1)));
    EXPECT_EQ(fresh.GetHeaderCtrl()->GetItemCount(), 6);
}

TEST_F(CListSnsCohDatazqTest, RefillWithoutADatasetLeavesTheRows) {
    CSnsCohDatazq data;
    test::fill(data, 3, 3, 2);
    list.m_dataset = &data;
    EXPECT_EQ(list.refill(), 1);
    EXPECT_EQ(list.GetItemCount(), 3);
    list.m_dataset = nullptr;
    EXPECT_EQ(list.refill(), 0);
    EXPECT_EQ(list.GetItemCount(), 3);
    EXPECT_FALSE(app.waiting());
}

TEST_F(CListSnsCohDatazqTest, ValueIsTakenAtTheClampedSliceAndTheSliceShownAsItIs) {
    CSnsCohDatazq data;
    test::fill(data, 3, 3, 3);
    data.m_selectBegin = 7;
    data.m_rowCrt = 1;
    test::pairOf(data, 1, 2).m_chnlA = 5;
    test::pairOf(data, 1, 2).m_chnlB = 0x100000007LL;
    list.m_dataset = &data;
    list.refill();
    EXPECT_EQ(test::rowOf(list, 2, 6), "CxC3|5|7|3|7|233.000000");
    data.m_selectBegin = -4;
    list.refill();
    EXPECT_EQ(test::rowOf(list, 2, 6), "CxC3|5|7|3|-4|231.000000");
}

TEST_F(CListSnsCohDatazqTest, PictureFollowsTheShowFlag) {
    CSnsCohDatazq data;
    test::fill(data, 2, 2, 1);
    list.m_dataset = &data;
    list.refill();
    EXPECT_EQ(test::imageOf(list, 1), 0);
    data.m_tscsInfo = true;
    list.refill();
    EXPECT_EQ(test::imageOf(list, 1), 1);
}

TEST_F(CListSnsCohDatazqTest, RowsFollowTheRowCountAndColumnsBeyondTheGridAreZero) {
    CSnsCohDatazq data;
    test::fill(data, 4, 2, 1);
    list.m_dataset = &data;
    list.refill();
    EXPECT_EQ(test::rowOf(list, 1, 6), "CxC2|0|0|1|0|121.000000");
    EXPECT_EQ(test::rowOf(list, 3, 6), "CxC4|0|0|1|0|0.000000");
    CSnsCohDatazq wide;
    test::fill(wide, 2, 4, 1);
    list.m_dataset = &wide;
    list.refill();
    EXPECT_EQ(list.GetItemCount(), 2);
}

TEST_F(CListSnsCohDatazqTest, RowsFollowTheRowCountAlsoWhereTheGridHasFewerRows) {
    CSnsCohDatazq wide;
    test::fill(wide, 2, 5, 1);
    wide.setChnlRowCol(5, 5);
    list.m_dataset = &wide;
    list.refill();
    ASSERT_EQ(list.GetItemCount(), 5);
    EXPECT_EQ(test::rowOf(list, 4, 6), "CxC5|0|0|1|0|151.000000");
    CSnsCohDatazq square;
    test::fill(square, 3, 3, 1);
    square.m_snsRowTotal = 5;
    list.m_dataset = &square;
    list.refill();
    ASSERT_EQ(list.GetItemCount(), 5);
    EXPECT_EQ(test::rowOf(list, 2, 6), "CxC3|0|0|1|0|131.000000");
    EXPECT_EQ(test::rowOf(list, 4, 6), "CxC5|0|0|1|0|0.000000");
}

TEST_F(CListSnsCohDatazqTest, RowsWithoutAPairAreBounded) {
    CSnsCohDatazq data;
    test::fill(data, 3, 4, 1);
    list.m_dataset = &data;
    for (const __int64 wanted : {2000000000LL, 1005LL}) {
        data.m_snsRowTotal = wanted;
        list.refill();
        EXPECT_EQ(list.GetItemCount(), 1004) << wanted;
    }
    // Read as a 32-bit number.
    for (const __int64 none : {-1LL, 0x80000000LL, 0x100000000LL}) {
        data.m_snsRowTotal = none;
        list.refill();
        EXPECT_EQ(list.GetItemCount(), 0) << none;
    }
    CSnsCohDatazq bare;
    bare.m_snsRowTotal = 2000000000;
    list.m_dataset = &bare;
    EXPECT_EQ(list.refill(), 1);
    EXPECT_EQ(list.GetItemCount(), 0);
}

TEST_F(CListSnsCohDatazqTest, RowIsRefusedWithoutGridAndAtANegativeIndex) {
    CSnsCohDatazq data;
    list.m_dataset = &data;
    EXPECT_EQ(list.fillRow(0), 0);
    test::fill(data, 2, 2, 1);
    EXPECT_EQ(list.fillRow(0), 1);
    EXPECT_EQ(list.fillRow(-2), 0);
    EXPECT_EQ(list.GetItemCount(), 1);
    list.m_dataset = nullptr;
    EXPECT_EQ(list.fillRow(0), 0);
}

TEST_F(CListSnsCohDatazqTest, DatasetThatItsPackageReleasedIsNoneAnyMore) {
    CSnsCohFacezq package;
    package.setCohData(test::newFilled(2, 2, 1), test::active);
    list.m_owner = &package;
    list.m_dataset = package.m_cohActive;
    EXPECT_EQ(list.refill(), 1);
    package.deleteCohDataset(test::active);
    EXPECT_EQ(list.dataset(), nullptr);
    EXPECT_EQ(list.refill(), 0);
    EXPECT_EQ(list.GetItemCount(), 2);
}

TEST_F(CListSnsCohDatazqTest, RowsAreThoseOfTheGridThatTheDatasetHasNow) {
    CSnsCohDatazq data;
    test::fill(data, 2, 2, 1);
    list.m_dataset = &data;
    list.refill();
    data.cleanSnsCohData();
    test::clickColumn(list, 1);
    EXPECT_EQ(list.GetItemCount(), 0);
    test::fill(data, 3, 3, 2);
    test::clickColumn(list, 3);
    ASSERT_EQ(list.GetItemCount(), 3);
    EXPECT_EQ(test::rowOf(list, 2, 6), "CxC3|0|0|2|0|131.000000");
}

TEST_F(CListSnsCohDatazqTest, ColumnClickFillsAnew) {
    CSnsCohDatazq data;
    test::fill(data, 2, 2, 1);
    list.m_dataset = &data;
    list.refill();
    test::cell(data, 0, 0, 1) = 0.5;
    test::clickColumn(list, 3);
    EXPECT_EQ(test::rowOf(list, 1, 6), "CxC2|0|0|1|0|0.500000");
    EXPECT_GT(app.waitBegins(), 0);
}

using CListSnsCohFacezqTest = Lists<CListSnsCohFacezq>;

class FaceList : public CListSnsCohFacezqTest {
protected:
    void SetUp() override {
        CListSnsCohFacezqTest::SetUp();
        for (int column = 0; column < 7; ++column)
            list.InsertColumn(column, _T("column"), LVCFMT_LEFT, 90, column + 1);
        list.m_package = &package;
    }
    CSnsCohFacezq package;
};

TEST_F(FaceList, RowOfALaterClassStandsAtItsRealIndex) {
    package.setCohData(test::newFilled(2, 2, 1), test::actCtl);
    list.refill();
    EXPECT_EQ(list.GetItemCount(), 1);
    EXPECT_EQ(package.m_cohActCtl->m_headerInt9, 0);
    EXPECT_EQ(package.m_curntCohDataSetID, 2);
}

TEST_F(FaceList, MinusOneIsTheCurrentClass) {
    package.setCohData(test::newFilled(2, 2, 1), test::control);
    package.m_curntCohDataSetID = test::control;
    EXPECT_EQ(list.fillRow(-1), 1);
    EXPECT_EQ(list.GetItemCount(), 1);
    package.m_curntCohDataSetID = -1;
    EXPECT_EQ(list.fillRow(-1), 0);
    EXPECT_EQ(app.messages(), Texts{"This is no data!"});
}

TEST_F(FaceList, OtherClassesAndMissingDatasetsGiveNoRow) {
    EXPECT_EQ(list.fillRow(3), 0);
    EXPECT_EQ(list.fillRow(-2), 0);
    EXPECT_EQ(list.fillRow(1), 0);
    EXPECT_EQ(package.m_curntCohDataSetID, 1);
    list.m_package = nullptr;
    EXPECT_EQ(list.fillRow(0), 0);
    EXPECT_TRUE(app.messages().empty());
}

TEST_F(FaceList, RunTimeClassHasItsName) {
    EXPECT_STREQ(list.GetRuntimeClass()->m_lpszClassName, "CListSnsCohFacezq");
}

}  // namespace

#endif
