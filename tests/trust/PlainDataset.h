// Vectors, datasets, packages and groups a second time, from their description and as plainly as
// can be: standard containers, one loop inside the other, no care for speed. Sequences of calls
// are compared with them.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace plain {

using Int = long long;
using Messages = std::vector<std::string>;

struct Vector {
    std::optional<std::vector<double>> data;
    std::optional<std::vector<double>> backup;
    Int curIdx = 0;
    Int chnlA = 0;
    Int chnlB = 0;
    int pairFlag = 1;

    Int size() const { return data ? static_cast<Int>(data->size()) : 0; }

    int clean();
    int cleanBackup();
    int backupIn();
    int backupOut();
    bool checkInit(Int n, bool zero);
    double largest() const;
    int allNonZero() const;
    int copyFrom(const std::vector<double>& source);
    int resize(Int n);
    double polynomial(double x) const;
    int adopt(const std::vector<double>& values);
    int forget();
    int normalise();
    int range(double& least, double& mean, double& most) const;
    int statistic(double (&six)[6]) const;
    double selected(Int from, Int to, int mode) const;
    void load(const Vector& stored);
};

struct Matrix {
    Int rows = 0;
    Int cols = 0;
    std::vector<double> values;  // row after row
    double& at(Int r, Int c) { return values[static_cast<std::size_t>(r * cols + c)]; }
    double at(Int r, Int c) const { return values[static_cast<std::size_t>(r * cols + c)]; }
};

struct Dataset {
    double samplingRate = 0.0;
    double latencyBegin = 0.0;
    double latencyEnd = 0.0;
    Int longest = 0;
    std::string name = "CxcTrial";
    std::string note = "CxC ComputeInfo";
    bool show = false;
    int listItem = 0;
    Int slices = 0;
    Int selectBegin = 0;
    Int selectEnd = 1;
    Int row = 0;
    Int column = 0;
    Int rows = 0;
    Int cols = 0;
    std::optional<std::vector<std::vector<Vector>>> grid;
    double least = 0.0;
    double most = 0.0;
    double mean = 0.0;
    int normalised = 0;
    double rms = 0.0;
    double showLeast = 0.0;
    double showMost = 1.0;
    double showMid = 0.0;
    int channelType = 0;
    unsigned colours[3] = {0x7D7DFF, 0x0000FF, 0xFF0000};
    // Those that nothing interprets.
    int ints[12] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0};
    Int longs[5] = {};
    double reals[3] = {0.1, 1.0, 0.0};

    Int realRows() const { return grid ? static_cast<Int>(grid->size()) : 0; }
    Int realCols() const { return realRows() > 0 ? static_cast<Int>((*grid)[0].size()) : 0; }
    const Vector* cell(Int r, Int c) const;
    Vector* cell(Int r, Int c);

    int checkInit(Int newRows, Int newCols, Int newSlices, bool zero);
    int clean();
    double value(Int t, Int r, Int c) const;
    double selected(Int from, Int to, Int r, Int c) const;
    Int select(Int begin, Int end);
    int checkSelect(Int begin, Int end) const;
    int resetSensors();
    int announce(Int newRows, Int newCols);
    int setColumn(int col);
    Int next(int step, int wrap);
    int fromMatrices(const std::vector<Matrix>& matrices);
    int setSlice(const Matrix& matrix, Int t);
    int normaliseRms(Messages& messages);
    int checkRange();
    void statistics(double (&five)[5]);
    int zeroDiagonal();
    int signedRange(double& low, double& high, bool useTime, Int from, Int to, bool noDiagonal);
    int absoluteRange(double& low, double& high, bool useTime, Int from, Int to);
    int add(const Dataset& other);
    int accumulate();
    std::string channelTypeName() const;
    bool storesGrid() const;
    void load(const Dataset& stored);
    bool text(std::string& written) const;

private:
    bool countersAreGood() const;
    bool hasShape(Int wantedRows, Int wantedCols) const;
    std::vector<double> seen(Int r, Int c) const;
};

// Slots and entries share datasets with nobody.
using Slot = std::optional<Dataset>;

// What packages and groups are called.
struct Labels {
    int id = 0;
    std::string name = "SnsCohFace";
    std::string info = "Unknown";
    bool show = false;
};

struct Package {
    Labels labels;
    std::vector<int> viewers;
    Slot slots[3];
    int current = -1;
    int operation = 0;

    Int total() const;
    int clampList(int id) const;
    int setCurrent(int id);
    int setCurrentId(int id);
    Dataset* get(int cls, Messages& messages);
    int combine(bool yes, Messages& messages);
    int match(Int (&ends)[4], Messages& messages) const;
    int checkSelect(Int first, Int last, int cls, Messages& messages) const;
    int sizeAll(int sensors, Int active, Int control, Int mixed, bool flag);
    Dataset* sizeOne(int sensors, Int slices, int cls, bool flag, Messages& messages);
    int setClass(int cls, Messages& messages);
    int sumPackage(const Dataset& data, int cls);
    int sumFirstOf(const Package& other);
    std::string className(int cls);
    int accumulate(Dataset* data) const;
    int hasCurrent(Messages& messages) const;
    void load(const Package& stored);
};

struct Group {
    Labels labels;
    int operation = 0;
    std::vector<int> viewers;
    std::vector<Slot> entries;
    int current = -1;

    int total() const { return static_cast<int>(entries.size()); }
    int clamp(int id) const;
    int setCurrent(int id);
    int setCurrentId(int id);
    void insert(Slot entry, int index);
    Dataset* get(int index);
    int erase(int index);
    int addSized(int sensors, Int slices, bool flag);
    int average();
    int summary();
    void load(const Group& stored);

    struct Largest {
        Int slices = 0;
        Int rows = 0;
        Int cols = 0;
        bool any() const { return rows >= 1 && cols >= 1 && slices >= 1; }
    };
    Largest largest() const;
    int summarise(const Largest& sizes, Dataset& low, Dataset& mean, Dataset& high) const;

private:
    bool together(Largest& sizes) const;
    Dataset resultOf(const Largest& sizes) const;
    template <class Take>
    int each(const Largest& sizes, Take take) const;
};

}  // namespace plain
