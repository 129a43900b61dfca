// What the managers show of records that may hold anything: the smallest inputs that the fuzz
// targets keep, and the hand-made records with every byte damaged. The lists and boxes, real
// controls, hold what a second reader makes of the same bytes, and no more rows than the bytes can
// stand for, also after a user has chosen in them.
#ifdef _WIN32

#include "cxcui/CDlgGroupTrlCxcDataManager.h"
#include "cxcui/CDlgSnsCohManager.h"
#include "res/resource.h"
#include "tests/trust/ReferenceRecords.h"
#include "tests/trust/golden_files.h"
#include "tests/ui/ui_fixture.h"

#include <cstdio>
#include <fstream>
#include <limits>

namespace {

using Text = std::wstring;
using Texts = std::vector<Text>;

constexpr int least = std::numeric_limits<int>::min();
constexpr int most = std::numeric_limits<int>::max();
// Bytes of a pair vector without values, and rows that the list of pairs may have beyond the grid.
constexpr std::size_t leastPair = 65;
constexpr long long rowsBeyond = 1000;

// ---- what must be seen

template <class Value>
Text formatted(const wchar_t* format, Value value) {
    CString text;
    text.Format(format, value);
    return text.GetString();
}

template <class Value>
Value valueOf(const std::string& stored, std::size_t at = 0) {
    Value value = 0;
    std::memcpy(&value, stored.data() + at, sizeof(value));
    return value;
}

// Of a string's stored form: two bytes each behind marker and length; controls end at a zero.
Text textOf(const std::string& stored) {
    std::size_t at = 4;
    if (valueOf<unsigned char>(stored, 3) == 0xFF)
        at = valueOf<unsigned short>(stored, 4) == 0xFFFF ? 10 : 6;
    Text text;
    for (; at < stored.size() && valueOf<wchar_t>(stored, at) != 0; at += sizeof(wchar_t))
        text += valueOf<wchar_t>(stored, at);
    return text;
}

Text number(long long value) {
    return std::to_wstring(value);
}

double real(const reference::Dataset& data, int item) {
    return valueOf<double>(data.field(item));
}

bool isShown(const reference::Dataset& data) {
    return data.field(23)[0] != 0;
}

Text joined(const Texts& texts) {
    Text all;
    for (const Text& text : texts)
        all += (&text == texts.data() ? L"" : L"|") + text;
    return all;
}

// Row of a package's list.
Text datasetRow(const reference::Dataset& data) {
    const auto narrow = [&](int item) { return number(static_cast<int>(data.number(item))); };
    return joined({textOf(data.field(22)), textOf(data.field(32)), formatted(L"%f", real(data, 17)),
                   formatted(L"%f", real(data, 18)), narrow(9), narrow(7), narrow(8)});
}

// Row of a group's list.
Text entryRow(const reference::Dataset& data, bool active, bool shown) {
    return joined(
        {textOf(data.field(22)), active ? L"Active" : L"Layer", shown ? L"Show" : L"Hide",
         number(data.number(4)) + L": (" + number(data.number(5)) + L"->" + number(data.number(6)),
         formatted(L"%.3f", real(data, 17)) + L"->" + formatted(L"%.3f", real(data, 18)),
         formatted(L"%.3f", real(data, 20)) + L"->" + formatted(L"%.3f", real(data, 21)),
         textOf(data.field(32))});
}

// Rows of the list of pairs, and of the box of row sensors.
long long pairRows(const reference::Dataset& data) {
    if (!data.hasGrid) return 0;
    const long long wanted = static_cast<int>(data.number(9));
    const long long there = data.realCols < 1 ? 0 : std::max(data.realRows, data.realCols);
    return std::clamp(wanted, 0LL, there + rowsBeyond);
}

long long sensorRows(const reference::Dataset& data) {
    if (!data.hasGrid) return 0;
    const long long there = data.realCols < 1 ? std::min(data.realRows, rowsBeyond) : data.realRows;
    return std::clamp(data.number(9), 0LL, there);
}

const reference::Vector* pairAt(const reference::Dataset& data, long long row, long long col) {
    const bool inside = row >= 0 && row < data.realRows && col >= 0 && col < data.realCols;
    return inside ? &data.grid[static_cast<std::size_t>(row)][static_cast<std::size_t>(col)]
                  : nullptr;
}

double valueAt(const reference::Vector& pair, long long slice) {
    const auto at = static_cast<std::size_t>(slice) * sizeof(double);
    const bool there = pair.data.has_value() && slice < pair.size && at < pair.data->size();
    return there ? valueOf<double>(*pair.data, at) : 0.0;
}

// What a user may have changed of a dataset since it was read.
struct Chosen {
    long long slice;
    long long row;
};

Text pairRow(const reference::Dataset& data, const Chosen& chosen, int item) {
    const reference::Vector* const pair = pairAt(data, chosen.row, item);
    const auto channel = [&](const std::string& stored) {
        return number(static_cast<int>(valueOf<long long>(stored)));
    };
    const long long slices = data.number(4);
    const long long slice = std::clamp(chosen.slice, 0LL, std::max(slices, 1LL) - 1);
    const double value = pair == nullptr || slices < 1 ? 0.0 : valueAt(*pair, slice);
    return joined({L"CxC" + number(item + 1LL), pair == nullptr ? L"0" : channel(pair->chnlA),
                   pair == nullptr ? L"0" : channel(pair->chnlB), number(slices),
                   number(chosen.slice), formatted(L"%f", value)});
}

// ---- what is seen

Text rowOf(const CListCtrl& list, int row, int columns) {
    Texts texts;
    for (int column = 0; column < columns; ++column)
        texts.emplace_back(list.GetItemText(row, column).GetString());
    return joined(texts);
}

Text windowText(HWND window) {
    CString text;
    CWnd::FromHandle(window)->GetWindowText(text);
    return text.GetString();
}

// Up to eight of `count` items: the first ones, one in the middle, the last.
std::vector<int> someOf(int count) {
    std::vector<int> items;
    for (int i = 0; i < count; ++i) {
        if (count <= 8 || i < 3 || i == count / 2 || i == count - 1) items.push_back(i);
    }
    return items;
}

// The class and the dataset of each row of a package's list.
std::vector<int> classesOf(const reference::Package& model) {
    std::vector<int> classes;
    for (int cls = 0; cls < 3; ++cls) {
        if (model.slots[cls]) classes.push_back(cls);
    }
    return classes;
}

CSnsCohDatazq* slotOf(const CSnsCohFacezq& package, int cls) {
    return cls == 0 ? package.m_cohActive : cls == 1 ? package.m_cohControl : package.m_cohActCtl;
}

// ---- records

using Files = std::vector<golden::File>;

Files corpus(const std::string& kind) {
    Files files;
    const std::filesystem::path folder = std::filesystem::path(CXC_CORPUS) / kind;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::ifstream in(entry.path(), std::ios::binary);
        files.push_back(
            {entry.path().filename().string(), {std::istreambuf_iterator<char>(in), {}}});
    }
    std::sort(files.begin(), files.end(),
              [](const golden::File& a, const golden::File& b) { return a.name < b.name; });
    return files;
}

// Gives bytes to `use`, with their name in every message. Stops at the first that fails.
template <class Use>
class Cases {
public:
    explicit Cases(Use use) : m_use(use) {}

    void whole(const Files& files) {
        for (const golden::File& file : files)
            check(file.bytes, file.name + " whole, ", file.bytes.size());
    }
    // Cut at every `step`th byte, and that byte replaced in the ways of the tests of damage.
    void damaged(const Files& files, std::size_t step) {
        for (const golden::File& file : files) {
            for (std::size_t at = 0; at < file.bytes.size(); at += step) {
                check(file.bytes.substr(0, at), file.name + " cut at ", at);
                const auto old = static_cast<unsigned char>(file.bytes[at]);
                for (const unsigned value : {0x00u, 0x7Fu, 0x80u, 0xFFu, old ^ 0xFFu, old ^ 1u})
                    if (value != old) replace(file, at, value);
            }
        }
    }
    int tell() const {
        std::printf("%d cases\n", m_count);
        return m_count;
    }

private:
    void replace(const golden::File& file, std::size_t at, unsigned value) {
        std::string bytes = file.bytes;
        bytes[at] = static_cast<char>(value);
        check(bytes, file.name + " with " + std::to_string(value) + " at ", at);
    }
    void check(const std::string& bytes, const std::string& what, std::size_t at) {
        if (testing::Test::HasFailure()) return;
        SCOPED_TRACE(what + std::to_string(at));
        ++m_count;
        m_use(bytes);
    }

    Use m_use;
    int m_count = 0;
};

// Reads the record in both ways. Returns whether both end alike.
template <class Record, class Model>
bool readBoth(const std::string& bytes, Record& record, Model& model) {
    reference::Reader in(bytes);
    const test::Outcome expected = reference::outcomeOfReading(model, in);
    test::RoughFile file(bytes);
    const test::Outcome outcome = test::passThrough(file, CArchive::load, record);
    EXPECT_STREQ(test::name(outcome), test::name(expected));
    return outcome == expected;
}

// ---- the package's manager

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

// ---- a package that is read while its manager lists it

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

// ---- the group's manager

class HostileGroups : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dialog.Create(IDD_GROUP_MANAGER, &app.m_main));
        test::parkPointer();
    }

    CListGrpTrlCxcDatazq& list() { return dialog.m_list; }
    int count() { return list().GetItemCount(); }
    void command(int id) { dialog.SendMessage(WM_COMMAND, static_cast<WPARAM>(id)); }

    // shown: what all datasets have been set to, -1 for what was read.
    void expectRows(const reference::Group& model, int current, int shown = -1) {
        ASSERT_EQ(count(), static_cast<int>(model.entries.size()));
        for (const int i : someOf(count())) {
            const reference::Dataset& data = model.entries[static_cast<std::size_t>(i)];
            const bool seen = shown == -1 ? isShown(data) : shown == 1;
            ASSERT_EQ(rowOf(list(), i, 7), entryRow(data, i == current, seen));
            ASSERT_EQ(test::imageOf(list(), i), seen ? 1 : 0);
        }
    }

    void fill(test::CleanGroup& group, const reference::Group& model) {
        list().m_group = &group;
        ASSERT_EQ(list().refill(), 1);
        expectRows(model, group.m_curntCohDataSetID);
        for (const int i : {least, -2, -1, 0, count() - 1, count(), most}) {
            const int meant = i == -1 ? group.m_curntCohDataSetID : i;
            const bool there = meant >= 0 && meant < group.size();
            const int before = count();
            ASSERT_EQ(list().fillRow(i), there ? 1 : 0) << i;
            ASSERT_EQ(count(), before + (there ? 1 : 0)) << i;
        }
    }

    void show(test::CleanGroup& group, const reference::Group& model) {
        const Text before = windowText(dialog.m_hWnd);
        const int current = group.m_curntCohDataSetID;
        dialog.show(group, &app.m_main);
        expectRows(model, current);
        const bool active = current >= 0 && current < count();
        const Text title =
            active ? L"Active:" + textOf(model.entries[static_cast<std::size_t>(current)].field(22))
                   : L"No File";
        ASSERT_EQ(Text(dialog.m_title.GetString()), title);
        ASSERT_EQ(windowText(dialog.m_hWnd), active ? title : before);
    }

    void choose(test::CleanGroup& group, const reference::Group& model) {
        for (const int row : {count() - 1, 0}) {
            if (row < 0 || count() == 0) continue;
            list().SetItemState(row, LVIS_SELECTED, LVIS_SELECTED);
            ASSERT_EQ(group.m_curntCohDataSetID, row);
            command(IDC_GROUP_APPLY);
            expectRows(model, row);
        }
        for (const int shown : {1, 0}) {
            command(shown == 1 ? IDC_GROUP_SHOW_ALL : IDC_GROUP_HIDE_ALL);
            expectRows(model, group.m_curntCohDataSetID, shown);
        }
        if (count() == 0) return;
        reference::Group rest = model;
        rest.entries.pop_back();
        list().SetItemState(count() - 1, LVIS_SELECTED, LVIS_SELECTED);
        command(ID_GROUP_DELETE);
        expectRows(rest, group.m_curntCohDataSetID, 0);
    }

    void use(const std::string& bytes) {
        test::CleanGroup group;
        reference::Group model;
        if (!readBoth(bytes, group, model)) return;
        fill(group, model);
        if (!HasFailure() && ++m_used % shownEvery == 0) {
            show(group, model);
            choose(group, model);
            test::pump();
            dialog.ShowWindow(SW_HIDE);
        }
        dialog.forgetGroup();
    }

    test::HostApp app;
    CDlgGroupTrlCxcDataManager dialog;
    int shownEvery = 4;

private:
    int m_used = 0;
};

TEST_F(HostileGroups, GroupsAreListedAsTheSecondReaderReadsThem) {
    Cases cases([&](const std::string& bytes) { use(bytes); });
    cases.whole(corpus("group"));
    shownEvery = 61;
    cases.damaged(golden::groupFiles(), 5);
    EXPECT_GT(cases.tell(), 1000);
}

}  // namespace

#endif
