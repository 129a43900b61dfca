// The manager of packages with records that may hold anything: the lists and boxes, real controls,
// hold what a second reader makes of the same bytes, and no more rows than the bytes can stand for,
// also after a user has chosen in them.
#ifdef _WIN32

#include "cxcui/CDlgSnsCohManager.h"
#include "res/resource.h"
#include "tests/listing/listed.h"
#include "tests/ui/ui_fixture.h"

namespace {

using namespace listed;

class HostilePackages : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dialog.Create(IDD_WAVEFORM_MANAGER, &app.m_main));
        test::parkPointer();
    }

    CListSnsCohFacezq& datasets() { return dialog.m_listFace; }
    CListSnsCohDatazq& pairs() { return dialog.m_listData; }
    HWND at(int id) { return ::GetDlgItem(dialog.m_hWnd, id); }
    Text textAt(int id) { return windowText(at(id)); }
    void command(int id, int code = BN_CLICKED) {
        dialog.SendMessage(WM_COMMAND, MAKEWPARAM(id, code), reinterpret_cast<LPARAM>(at(id)));
    }
    static Chosen chosenIn(const CSnsCohDatazq& data) {
        return {data.m_selectBegin, data.m_rowCrt};
    }

    void expectPairs(const reference::Dataset& model, const Chosen& chosen) {
        ASSERT_EQ(pairs().GetItemCount(), pairRows(model));
        for (const int item : someOf(pairs().GetItemCount())) {
            ASSERT_EQ(rowOf(pairs(), item, 6), pairRow(model, chosen, item));
            ASSERT_EQ(test::imageOf(pairs(), item), isShown(model) ? 1 : 0);
        }
        ASSERT_LT(pairs().GetNextItem(-1, LVNI_SELECTED), pairs().GetItemCount());
    }

    void expectDatasets(const reference::Package& model) {
        const std::vector<int> classes = classesOf(model);
        ASSERT_EQ(datasets().GetItemCount(), static_cast<int>(classes.size()));
        for (int i = 0; i < datasets().GetItemCount(); ++i) {
            const reference::Dataset& data = *model.slots[classes[i]];
            ASSERT_EQ(rowOf(datasets(), i, 7), datasetRow(data));
            ASSERT_EQ(test::imageOf(datasets(), i), isShown(data) ? 1 : 0);
        }
    }

    void expectRowBox(const reference::Dataset* model, long long row) {
        const int count = model == nullptr ? 0 : static_cast<int>(sensorRows(*model));
        const int chosen = static_cast<int>(row);
        ASSERT_EQ(dialog.m_comboRow.GetCount(), count);
        ASSERT_EQ(dialog.m_comboRow.GetCurSel(), chosen >= 0 && chosen < count ? chosen : -1);
        for (const int r : someOf(count)) {
            CString text;
            dialog.m_comboRow.GetLBText(r, text);
            const reference::Vector* const pair = pairAt(*model, r, 0);
            const auto channel = pair == nullptr ? 0LL : valueOf<long long>(pair->chnlA);
            ASSERT_EQ(Text(text.GetString()), number(r) + L"->" + number(channel));
        }
    }

    // The lists by themselves, as the record was read.
    void fill(CSnsCohFacezq& package, const reference::Package& model) {
        datasets().m_package = &package;
        datasets().refill();
        ASSERT_EQ(package.m_curntCohDataSetID, 2);
        expectDatasets(model);
        pairs().m_owner = &package;
        for (const int cls : classesOf(model)) {
            pairs().m_dataset = slotOf(package, cls);
            ASSERT_EQ(pairs().refill(), 1);
            const reference::Dataset& data = *model.slots[cls];
            expectPairs(data, {data.number(5), data.number(7)});
        }
        const int before = pairs().GetItemCount();
        pairs().m_dataset = nullptr;
        ASSERT_EQ(pairs().refill(), 0);
        ASSERT_EQ(pairs().GetItemCount(), before);
    }

    // The class whose pairs are listed first: the current one, or else the first there is.
    static int listedFirst(const reference::Package& model) {
        const auto current = valueOf<int>(model.current);
        const std::vector<int> classes = classesOf(model);
        if (current >= 0 && current < 3 && model.slots[current]) return current;
        return classes.empty() ? -1 : classes[0];
    }

    void show(CSnsCohFacezq& package, const reference::Package& model) {
        const int pairsBefore = pairs().GetItemCount();
        const int listed = listedFirst(model);
        package.m_curntCohDataSetID = valueOf<int>(model.current);
        app.clearMessages();
        dialog.show(package);
        // Asked for the current class, and once more where there is no other.
        const bool none = valueOf<int>(model.current) == -1;
        ASSERT_EQ(app.messages().size(), none ? (listed == -1 ? 2u : 1u) : 0u);
        expectDatasets(model);
        ASSERT_EQ(package.m_curntCohDataSetID, 2);
        const reference::Dataset* const current = model.slots[2] ? &*model.slots[2] : nullptr;
        expectRowBox(current, current == nullptr ? -1 : current->number(7));
        if (current != nullptr) {
            ASSERT_EQ(textAt(IDC_WAVEFORM_TIME_TOTAL), number(current->number(4)));
            ASSERT_EQ(textAt(IDC_WAVEFORM_SLICE_FIRST), number(current->number(5)));
            ASSERT_EQ(windowText(dialog.m_hWnd), L"Wave CxC Manager-" + textOf(current->field(22)));
        }
        ASSERT_EQ(dialog.m_comboOperation.GetCount(), 4);
        ASSERT_EQ(dialog.m_comboOperation.GetCurSel(), 0);
        ASSERT_EQ(pairs().dataset(), listed == -1 ? nullptr : slotOf(package, listed));
        if (listed == -1)
            ASSERT_EQ(pairs().GetItemCount(), pairsBefore);
        else
            expectPairs(*model.slots[listed], chosenIn(*pairs().dataset()));
    }

    void chooseEachDataset(CSnsCohFacezq& package, const reference::Package& model) {
        const std::vector<int> classes = classesOf(model);
        for (int i = 0; i < datasets().GetItemCount(); ++i) {
            constexpr UINT both = LVIS_SELECTED | LVIS_FOCUSED;
            datasets().SetItemState(i, both, both);
            ASSERT_EQ(package.m_curntCohDataSetID, classes[i]);
            ASSERT_EQ(pairs().dataset(), slotOf(package, classes[i]));
            expectRowBox(&*model.slots[classes[i]], pairs().dataset()->m_rowCrt);
            expectPairs(*model.slots[classes[i]], chosenIn(*pairs().dataset()));
            chooseInIt(*pairs().dataset(), *model.slots[classes[i]]);
            if (HasFatalFailure()) return;
        }
    }

    void chooseInIt(CSnsCohDatazq& data, const reference::Dataset& model) {
        for (const int row : {dialog.m_comboRow.GetCount() - 1, 0}) {
            if (row < 0 || dialog.m_comboRow.GetCount() == 0) continue;
            dialog.m_comboRow.SetCurSel(row);
            command(IDC_WAVEFORM_ROW, CBN_SELCHANGE);
            ASSERT_EQ(data.m_rowCrt, row);
            expectPairs(model, chosenIn(data));
        }
        const int last = pairs().GetItemCount() - 1;
        if (last >= 0) {
            pairs().SetItemState(last, LVIS_SELECTED, LVIS_SELECTED);
            ASSERT_EQ(data.m_columnCrt,
                      std::clamp<long long>(last, 0, std::max(model.number(10), 1LL) - 1));
        }
        for (const int button : {IDC_WAVEFORM_STEP_FORWARD, IDC_WAVEFORM_STEP_BACK}) {
            command(button);
            expectPairs(model, chosenIn(data));
        }
        ::SetWindowText(at(IDC_WAVEFORM_SLICE_FIRST), L"9223372036854775807");
        const long long slices = model.number(4);
        ASSERT_EQ(data.m_selectBegin, slices > std::numeric_limits<long long>::min()
                                          ? slices - 1
                                          : std::numeric_limits<long long>::max());
        expectPairs(model, chosenIn(data));
    }

    void fillAwkwardRows(CSnsCohFacezq& package, const reference::Package& model) {
        for (const int cls : {least, -2, 3, most, 0, -1, 2, -1, 1, -1}) {
            const int meant = cls == -1 ? package.m_curntCohDataSetID : cls;
            const bool there = meant >= 0 && meant < 3 && model.slots[meant];
            const int before = datasets().GetItemCount();
            ASSERT_EQ(datasets().fillRow(cls), there ? 1 : 0) << cls;
            ASSERT_EQ(datasets().GetItemCount(), before + (there ? 1 : 0)) << cls;
        }
        for (const int cls : classesOf(model)) {
            const reference::Dataset& data = *model.slots[cls];
            pairs().m_dataset = slotOf(package, cls);
            for (const int item : {least, -2, -1, most}) {
                const bool fits = item >= 0 && data.hasGrid;
                const int before = pairs().GetItemCount();
                ASSERT_EQ(pairs().fillRow(item), fits ? 1 : 0) << item;
                ASSERT_EQ(pairs().GetItemCount(), before + (fits ? 1 : 0)) << item;
                if (!fits) continue;
                ASSERT_EQ(rowOf(pairs(), before, 6),
                          pairRow(data, chosenIn(*pairs().m_dataset), item));
            }
        }
    }

    // Every list, and now and then every box, too, under the hands of a user.
    void use(CSnsCohFacezq& package, const reference::Package& model, std::size_t size) {
        fill(package, model);
        // Rows stand for bytes, a bounded number of rows without a pair aside.
        EXPECT_LE(mostPairs(model), size / leastPair + rowsBeyond);
        fillAwkwardRows(package, model);
        if (!HasFailure() && ++m_used % shownEvery == 0) {
            show(package, model);
            chooseEachDataset(package, model);
            test::pump();
            dialog.ShowWindow(SW_HIDE);
        }
        dialog.forgetPackage();
    }

    static std::size_t mostPairs(const reference::Package& model) {
        long long rows = 0;
        for (const int cls : classesOf(model))
            rows = std::max(rows, pairRows(*model.slots[cls]));
        return static_cast<std::size_t>(rows);
    }

    void usePackage(const std::string& bytes) {
        CSnsCohFacezq package;
        reference::Package model;
        if (readBoth(bytes, package, model)) use(package, model, bytes.size());
    }

    void useDataset(const std::string& bytes) {
        CSnsCohFacezq package;
        package.setCohData(new CSnsCohDatazq, test::actCtl);
        package.m_curntCohDataSetID = test::actCtl;
        reference::Package model;
        model.current = test::Bytes().i32(test::actCtl).str();
        model.slots[2].emplace();
        if (readBoth(bytes, *package.m_cohActCtl, *model.slots[2]))
            use(package, model, bytes.size());
    }

    // As a pair of a dataset, in its current row.
    void useVector(const std::string& bytes) {
        const std::string around = golden::newestRecord().str();
        CSnsCohFacezq package;
        package.setCohData(new CSnsCohDatazq, test::active);
        reference::Package model;
        reference::Dataset& data = model.slots[0].emplace();
        ASSERT_TRUE(readBoth(around, *package.m_cohActive, data));
        const auto row = static_cast<std::size_t>(data.number(7));
        if (readBoth(bytes, package.m_cohActive->m_mCC[row][1], data.grid[row][1]))
            use(package, model, around.size());
    }

    test::HostApp app;
    CDlgSnsCohManager dialog;
    int shownEvery = 4;

private:
    int m_used = 0;
};

TEST_F(HostilePackages, VectorsAreListedAsTheSecondReaderReadsThem) {
    Cases cases([&](const std::string& bytes) { useVector(bytes); });
    cases.whole(corpus("vector"));
    shownEvery = 61;
    cases.damaged(golden::vectorFiles(), 3);
    EXPECT_GT(cases.tell(), 500);
}

TEST_F(HostilePackages, DatasetsAreListedAsTheSecondReaderReadsThem) {
    Cases cases([&](const std::string& bytes) { useDataset(bytes); });
    cases.whole(corpus("dataset"));
    shownEvery = 61;
    cases.damaged(golden::datasetFiles(), 13);
    EXPECT_GT(cases.tell(), 2000);
}

TEST_F(HostilePackages, PackagesAreListedAsTheSecondReaderReadsThem) {
    Cases cases([&](const std::string& bytes) { usePackage(bytes); });
    cases.whole(corpus("package"));
    shownEvery = 61;
    cases.damaged(golden::packageFiles(), 7);
    EXPECT_GT(cases.tell(), 1000);
}

// A record of 300 bytes may have a grid of a million rows, as long as none has a column.
TEST_F(HostilePackages, RowsWithoutColumnsAreBounded) {
    for (const int rows : {1 << 20, 1001, 2}) {
        test::Bytes record = golden::opening(golden::newestVersion);
        record.append(golden::sizes(rows, 0)).i32(1).append(golden::header());
        CSnsCohFacezq package;
        package.setCohData(new CSnsCohDatazq, test::actCtl);
        package.m_curntCohDataSetID = test::actCtl;
        ASSERT_EQ(test::loadFrom(record.str(), *package.m_cohActCtl), test::Outcome::accepted);
        dialog.show(package);
        EXPECT_EQ(pairs().GetItemCount(), std::min(rows, 1000));
        EXPECT_EQ(dialog.m_comboRow.GetCount(), std::min(rows, 1000));
        EXPECT_EQ(rowOf(pairs(), 1, 6), L"CxC2|0|0|2|0|0.000000");
        dialog.forgetPackage();
    }
}

TEST_F(HostilePackages, PackageReadWhileItIsListedIsListedAnew) {
    CSnsCohFacezq package;
    reference::Package model;
    readBoth(golden::packageFiles()[0].bytes, package, model);
    dialog.show(package);
    Cases cases([&](const std::string& bytes) {
        readBoth(bytes, package, model);
        command(IDC_WAVEFORM_STEP_FORWARD);
        command(IDC_WAVEFORM_UPDATE);
        expectDatasets(model);
        ASSERT_TRUE(pairs().dataset() == nullptr || pairs().dataset() == package.m_cohActive ||
                    pairs().dataset() == package.m_cohControl ||
                    pairs().dataset() == package.m_cohActCtl);
    });
    cases.damaged(golden::packageFiles(), 61);
    EXPECT_GT(cases.tell(), 100);
    dialog.forgetPackage();
}

}  // namespace

#endif
