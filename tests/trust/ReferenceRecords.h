// The record formats a second time, read from the format's tables and not from the library: what
// bytes mean, which messages appear, how reading ends, what is left where it fails, and what is
// stored again afterwards.
#pragma once

#include "tests/trust/RoughFile.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace reference {

/// The file has no byte any more for an item that must be whole.
struct Ended {};

class Reader {
public:
    explicit Reader(std::string bytes) : m_bytes(std::move(bytes)) {}

    std::string take(unsigned long long n);      // all of them; throws Ended
    std::string takeSome(unsigned long long n);  // as many as there are
    unsigned long long left() const { return m_bytes.size() - m_at; }
    void say(const std::string& message) { messages.push_back(message); }
    /// Arrays that the record made the reader take, in bytes of a program's memory.
    void claim(unsigned long long bytes) { claimed += bytes; }

    std::vector<std::string> messages;
    unsigned long long claimed = 0;

private:
    std::string m_bytes;
    std::size_t m_at = 0;
};

struct Vector {
    std::string curIdx = std::string(8, '\0');
    std::string chnlA = std::string(8, '\0');
    std::string chnlB = std::string(8, '\0');
    std::string pairFlag = std::string("\1\0", 2);
    long long size = 0;
    std::optional<std::string> data;
    long long bkSize = 0;
    std::optional<std::string> bkData;

    bool read(Reader& in);  // false: refused
    std::string stored() const;

private:
    bool readValues(Reader& in);
    bool readBackup(Reader& in);
};

struct Dataset {
    Dataset();

    std::vector<std::string> fields;  // stored forms, in the order of the newest layout
    bool hasGrid = false;
    long long realRows = 0;
    long long realCols = 0;
    std::vector<std::vector<Vector>> grid;

    bool read(Reader& in);
    std::string stored() const;
    /// Stored form of an item, of the first where it is a run; the number of one of eight bytes.
    const std::string& field(int item) const;
    long long number(int item) const;

private:
    void clean();
    void readItems(Reader& in, int first, int last);
    bool readGridPart(Reader& in);
    bool readGrid(Reader& in);
    void read20080720(Reader& in);
    bool covered() const;
};

struct Package {
    std::string current = std::string("\377\377\377\377", 4);
    std::optional<Dataset> slots[3];
    std::string id = std::string(4, '\0');
    std::string name;  // stored forms
    std::string info;
    std::string show = std::string(1, '\0');

    Package();
    bool read(Reader& in);
    std::string stored() const;
};

struct Group {
    std::string current = std::string("\377\377\377\377", 4);
    std::vector<Dataset> entries;
    std::string id = std::string(4, '\0');
    std::string name;
    std::string info;
    std::string show = std::string(1, '\0');
    std::string operation = std::string(4, '\0');

    Group();
    bool read(Reader& in);
    std::string stored() const;

private:
    bool readEntries(Reader& in);
};

/// Reads a record; says how that ends.
template <class Record>
test::Outcome outcomeOfReading(Record& record, Reader& in) {
    try {
        return record.read(in) ? test::Outcome::accepted : test::Outcome::refused;
    } catch (const Ended&) {
        return test::Outcome::endOfFile;
    }
}

}  // namespace reference
