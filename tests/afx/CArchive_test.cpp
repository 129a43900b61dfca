#include <afx.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <limits>
#include <string>

#ifdef __linux__
#include <unistd.h>
#endif

#include "tests/support/ArchiveFile.h"
#include "tests/support/Bytes.h"
#include "tests/support/Text.h"

namespace {

// What an archive of ours reads ahead at most [bytes].
constexpr std::uint64_t archiveBuffer = 1u << 19;

using test::ArchiveFile;
using test::Bytes;

std::string pattern(std::size_t n) {
    std::string bytes(n, '\0');
    for (std::size_t i = 0; i < n; ++i)
        bytes[i] = static_cast<char>(i * 7 + i / 251);
    return bytes;
}

std::string storedString(const CString& text) {
    ArchiveFile file;
    file.store([&](CArchive& ar) {
        ar << text;
        return 0;
    });
    return file.bytes();
}

CString loadedString(const Bytes& bytes) {
    ArchiveFile file(bytes);
    return file.load([](CArchive& ar) {
        CString text(_T("old"));
        ar >> text;
        return text;
    });
}

// The cause of the archive exception that `use` ends with; -1 without one.
template <class Use>
int causeOf(Use use) {
    try {
        use();
    } catch (CArchiveException* e) {
        const int cause = e->m_cause;
        e->Delete();
        return cause;
    }
    return -1;
}

template <class T>
int causeOfLoading(const Bytes& bytes, T& value) {
    ArchiveFile file(bytes);
    return causeOf([&] {
        file.load([&](CArchive& ar) {
            ar >> value;
            return 0;
        });
    });
}

// A file in memory that counts, and fails when told to.
class CountingFile : public CFile {
public:
    void Write(const void* data, UINT count) override {
        ++writes;
        if (failing) AfxThrowFileException(CFileException::diskFull, -1, _T("full"));
        bytes.append(static_cast<const char*>(data), count);
    }
    UINT Read(void* data, UINT count) override {
        const UINT n = static_cast<UINT>(std::min<std::size_t>(count, bytes.size() - position));
        std::memcpy(data, bytes.data() + position, n);
        position += n;
        largestRead = std::max(largestRead, count);
        return n;
    }
    ULONGLONG Seek(LONGLONG offset, UINT from) override {
        EXPECT_EQ(from, static_cast<UINT>(CFile::current));
        position = static_cast<std::size_t>(static_cast<LONGLONG>(position) + offset);
        return position;
    }

    std::string bytes;
    std::size_t position = 0;
    int writes = 0;
    UINT largestRead = 0;
    bool failing = false;
};

// The same with a length, as files on a disk have one.
class SizedFile : public CountingFile {
public:
    ULONGLONG GetLength() const override { return bytes.size(); }
    ULONGLONG GetPosition() const override { return position; }
};

#ifdef __linux__
long residentPages() {
    long whole = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> whole >> resident;
    return resident;
}
#endif

// Delivers zeros for ever behind its first bytes, as a device does.
class EndlessFile : public CountingFile {
public:
    UINT Read(void* data, UINT count) override {
        const UINT real = CountingFile::Read(data, count);
        std::memset(static_cast<char*>(data) + real, 0, count - real);
        delivered += count;
#ifdef __linux__
        if (delivered > 0x20000000 && pagesHalfWay == 0) pagesHalfWay = residentPages();
#endif
        return count;
    }

    std::uint64_t delivered = 0;
    long pagesHalfWay = 0;  // memory in use once 512 MiB were delivered
};

CString nameIn(CArchiveException* e) {
    const CString name = e->m_strFileName;
    e->Delete();
    return name;
}

}  // namespace

TEST(CArchive, EveryPrimitiveIsItsLittleEndianImage) {
    ArchiveFile file;
    file.store([](CArchive& ar) {
        EXPECT_TRUE(ar.IsStoring());
        EXPECT_FALSE(ar.IsLoading());
        ar << static_cast<BYTE>(0xAB) << static_cast<char>('c') << true << false
           << static_cast<WORD>(0x1234) << static_cast<short>(-2) << static_cast<TCHAR>(0x263A)
           << static_cast<int>(-3) << 0xDEADBEEFu << static_cast<LONG>(-4)
           << static_cast<DWORD>(20160311) << static_cast<LONGLONG>(-5)
           << static_cast<ULONGLONG>(0x0123456789ABCDEF) << 1.5f << -2.5;
        return 0;
    });
    Bytes expected;
    expected.u8(0xAB).u8('c').u8(1).u8(0).u16(0x1234).u16(0xFFFE).u16(0x263A).i32(-3);
    expected.u32(0xDEADBEEF).i32(-4).u32(20160311).i64(-5).u64(0x0123456789ABCDEF);
    expected.u32(0x3FC00000).u64(0xC004000000000000);
    EXPECT_EQ(file.bytes(), expected.str());
}

TEST(CArchive, EveryPrimitiveIsReadBack) {
    Bytes stored;
    stored.u8(0xAB).u8('c').u8(2).u8(0).u16(0x1234).u16(0xFFFE).u16(0x263A).i32(-3);
    stored.u32(0xDEADBEEF).i32(-4).u32(20160311).i64(-5).u64(0x0123456789ABCDEF);
    stored.u32(0x3FC00000).u64(0xC004000000000000);
    ArchiveFile file(stored);
    file.load([](CArchive& ar) {
        EXPECT_TRUE(ar.IsLoading());
        EXPECT_FALSE(ar.IsStoring());
        BYTE byte = 0;
        char character = 0;
        bool two = false;
        bool zero = true;
        WORD word = 0;
        short number = 0;
        TCHAR unit = 0;
        int integer = 0;
        unsigned natural = 0;
        LONG longInteger = 0;
        DWORD version = 0;
        LONGLONG large = 0;
        ULONGLONG largest = 0;
        float small = 0;
        double real = 0;
        ar >> byte >> character >> two >> zero >> word >> number >> unit >> integer >> natural;
        ar >> longInteger >> version >> large >> largest >> small >> real;
        EXPECT_EQ(byte, 0xAB);
        EXPECT_EQ(character, 'c');
        EXPECT_TRUE(two);  // any byte but 0 is true
        EXPECT_FALSE(zero);
        EXPECT_EQ(word, 0x1234);
        EXPECT_EQ(number, -2);
        EXPECT_EQ(unit, static_cast<TCHAR>(0x263A));
        EXPECT_EQ(integer, -3);
        EXPECT_EQ(natural, 0xDEADBEEFu);
        EXPECT_EQ(longInteger, -4);
        EXPECT_EQ(version, 20160311u);
        EXPECT_EQ(large, -5);
        EXPECT_EQ(largest, 0x0123456789ABCDEFu);
        EXPECT_EQ(small, 1.5f);
        EXPECT_EQ(real, -2.5);
        EXPECT_EQ(ar.Read(&byte, 1), 0u);
        return 0;
    });
}

TEST(CArchive, DoublesKeepEveryBit) {
    const std::uint64_t bits = 0x7FF0000000000001;  // a signalling NaN
    double value;
    std::memcpy(&value, &bits, sizeof(value));
    ArchiveFile file;
    file.store([&](CArchive& ar) {
        ar << value;
        return 0;
    });
    EXPECT_EQ(file.bytes(), Bytes().u64(bits).str());
}

TEST(CArchive, APrimitiveThatTheEndCutsThrowsAndStaysAsItWas) {
    for (std::size_t size = 0; size < 8; ++size) {
        double real = 7.0;
        EXPECT_EQ(causeOfLoading(Bytes().f64(1.0).first(size), real), CArchiveException::endOfFile);
        EXPECT_EQ(real, 7.0);
    }
    int integer = 7;
    EXPECT_EQ(causeOfLoading(Bytes().u16(1), integer), CArchiveException::endOfFile);
    EXPECT_EQ(integer, 7);
    bool flag = true;
    EXPECT_EQ(causeOfLoading(Bytes(), flag), CArchiveException::endOfFile);
    EXPECT_TRUE(flag);
}

TEST(CArchive, UsingTheWrongDirectionThrowsWithTheFilesName) {
    ArchiveFile file(Bytes().i64(1).i64(2));
    {
        CFile opened(file.name(), CFile::modeRead);
        CArchive ar(&opened, CArchive::load);
        EXPECT_EQ(causeOf([&] { ar << 1; }), CArchiveException::readOnly);
        EXPECT_EQ(causeOf([&] { ar.Write("x", 1); }), CArchiveException::readOnly);
        EXPECT_EQ(causeOf([&] { ar << CString(_T("x")); }), CArchiveException::readOnly);
        try {
            ar << 1.0;
            ADD_FAILURE() << "nothing was thrown";
        } catch (CArchiveException* e) {
            EXPECT_EQ(test::toPath(nameIn(e)), file.path());
        }
        int value = 0;
        ar >> value;
        EXPECT_EQ(value, 1);
    }
    CFile opened(file.name(), CFile::modeCreate | CFile::modeWrite);
    CArchive ar(&opened, CArchive::store);
    int value = 0;
    char byte = 0;
    EXPECT_EQ(causeOf([&] { ar >> value; }), CArchiveException::writeOnly);
    EXPECT_EQ(causeOf([&] { ar.Read(&byte, 1); }), CArchiveException::writeOnly);
    CString text;
    EXPECT_EQ(causeOf([&] { ar >> text; }), CArchiveException::writeOnly);
    try {
        ar >> value;
        ADD_FAILURE() << "nothing was thrown";
    } catch (CArchiveException* e) {
        EXPECT_EQ(test::toPath(nameIn(e)), file.path());
    }
}

TEST(CArchive, ReadGivesWhatThereIsWithoutAnException) {
    ArchiveFile file(Bytes().u8(1).u8(2).u8(3));
    file.load([](CArchive& ar) {
        char buffer[10] = {};
        EXPECT_EQ(ar.Read(buffer, 2), 2u);
        EXPECT_EQ(ar.Read(buffer, 10), 1u);
        EXPECT_EQ(buffer[0], 3);
        EXPECT_EQ(ar.Read(buffer, 10), 0u);
        EXPECT_EQ(ar.Read(buffer, 0), 0u);
        return 0;
    });
}

TEST(CArchive, BlocksOfEverySizePassAtOddOffsets) {
    for (const UINT size : {1u, 4095u, 4096u, 4097u, 3u * 4096u, 65535u, 65536u, 65537u, 200001u,
                            524287u, 524288u, 524289u, 1200001u}) {
        for (const UINT offset : {0u, 1u, 13u, 4095u}) {
            const std::string bytes = pattern(offset + size + 5);
            ArchiveFile file;
            file.store([&](CArchive& ar) {
                ar.Write(bytes.data(), offset);
                ar.Write(bytes.data() + offset, size);
                ar.Write(bytes.data() + offset + size, 5);
                return 0;
            });
            ASSERT_EQ(file.bytes(), bytes) << size << " at " << offset;
            file.load([&](CArchive& ar) {
                std::string read(bytes.size(), '\0');
                EXPECT_EQ(ar.Read(read.data(), offset), offset);
                EXPECT_EQ(ar.Read(read.data() + offset, size), size);
                EXPECT_EQ(ar.Read(read.data() + offset + size, 100), 5u);
                EXPECT_EQ(read, bytes) << size << " at " << offset;
                return 0;
            });
        }
    }
}

TEST(CArchive, PrimitivesPassAcrossTheEndOfTheBuffer) {
    ArchiveFile file;
    constexpr int count = 100000;
    file.store([](CArchive& ar) {
        ar << static_cast<BYTE>(1);
        for (int i = 0; i < count; ++i)
            ar << static_cast<LONGLONG>(i) << static_cast<short>(i);
        return 0;
    });
    EXPECT_EQ(file.bytes().size(), 1u + 10u * count);
    file.load([](CArchive& ar) {
        BYTE first = 0;
        ar >> first;
        for (int i = 0; i < count; ++i) {
            LONGLONG large = -1;
            short small = -1;
            ar >> large >> small;
            if (large != i || small != static_cast<short>(i)) {
                ADD_FAILURE() << "value " << i;
                break;
            }
        }
        return 0;
    });
}

TEST(CArchive, ACallersBufferIsUsedAndStaysTheCallers) {
    CountingFile file;
    BYTE buffer[256];
    {
        CArchive ar(&file, CArchive::store, sizeof(buffer), buffer);
        for (int i = 0; i < 100; ++i)
            ar << i;
    }
    EXPECT_EQ(file.bytes.size(), 400u);
    EXPECT_EQ(file.writes, 2);
}

TEST(CArchive, BlocksPassThroughACallersBufferOfTheCustomarySize) {
    for (const UINT size : {1u, 4095u, 4096u, 4097u, 3u * 4096u}) {
        for (const UINT offset : {0u, 1u, 13u, 4095u}) {
            BYTE buffer[4096];
            CountingFile file;
            const std::string bytes = pattern(offset + size + 5);
            {
                CArchive ar(&file, CArchive::store, sizeof(buffer), buffer);
                ar.Write(bytes.data(), offset);
                ar.Write(bytes.data() + offset, size);
                ar.Write(bytes.data() + offset + size, 5);
            }
            ASSERT_EQ(file.bytes, bytes) << size << " at " << offset;
            CArchive ar(&file, CArchive::load, sizeof(buffer), buffer);
            std::string read(bytes.size(), '\0');
            EXPECT_EQ(ar.Read(read.data(), offset), offset);
            EXPECT_EQ(ar.Read(read.data() + offset, size), size);
            EXPECT_EQ(ar.Read(read.data() + offset + size, 100), 5u);
            EXPECT_EQ(read, bytes) << size << " at " << offset;
        }
    }
}

TEST(CArchive, ACallersBufferWithoutASizeIsNotTouched) {
    CountingFile file;
    BYTE buffer[2] = {7, 7};
    {
        CArchive ar(&file, CArchive::store, -1, buffer);
        ar << 0x01020304 << static_cast<BYTE>(5);
    }
    EXPECT_EQ(file.bytes, std::string("\4\3\2\1\5"));
    int value = 0;
    CArchive ar(&file, CArchive::load, 0, buffer);
    ar >> value;
    EXPECT_EQ(value, 0x01020304);
    EXPECT_EQ(buffer[0], 7);
    EXPECT_EQ(buffer[1], 7);
}

TEST(CArchive, NothingPassesThroughADetachedArchive) {
    CountingFile file;
    file.bytes = pattern(100);
    const std::string before = file.bytes;
    for (const bool aborted : {false, true}) {
        CArchive out(&file, CArchive::store);
        CArchive in(&file, CArchive::load);
        int value = 0;
        in >> value;
        if (aborted) {
            out.Abort();
            in.Abort();
        } else {
            out.Close();
            in.Close();
        }
        EXPECT_EQ(causeOf([&] { out << value; }), CArchiveException::genericException);
        EXPECT_EQ(causeOf([&] { out.Write("x", 1); }), CArchiveException::genericException);
        EXPECT_EQ(causeOf([&] { in >> value; }), CArchiveException::genericException);
        EXPECT_EQ(causeOf([&] { in.Read(&value, 4); }), CArchiveException::genericException);
        in.Flush();
        out.Close();
    }
    EXPECT_EQ(file.bytes, before);
}

TEST(CArchive, FlushWhileStoringHandsEverythingToTheFile) {
    CountingFile file;
    CArchive ar(&file, CArchive::store);
    ar << 1;
    EXPECT_EQ(file.bytes.size(), 0u);
    ar.Flush();
    EXPECT_EQ(file.bytes.size(), 4u);
    ar.Flush();
    EXPECT_EQ(file.writes, 1);
    EXPECT_EQ(ar.GetFile(), &file);
    ar.Close();
    EXPECT_EQ(ar.GetFile(), nullptr);
}

TEST(CArchive, FlushWhileLoadingGivesUnreadBytesBackToTheFile) {
    CountingFile file;
    file.bytes = pattern(1000);
    CArchive ar(&file, CArchive::load);
    LONGLONG value = 0;
    ar >> value;
    ar.Flush();
    EXPECT_EQ(file.position, 8u);
    BYTE next = 0;
    ar >> next;
    EXPECT_EQ(static_cast<char>(next), file.bytes[8]);
    ar.Close();
    EXPECT_EQ(file.position, 9u);
}

TEST(CArchive, TheDestructorClosesAndItsFailureReachesTheCaller) {
    CountingFile file;
    { CArchive(&file, CArchive::store) << 1; }
    EXPECT_EQ(file.bytes.size(), 4u);
    file.failing = true;
    try {
        CArchive ar(&file, CArchive::store);
        ar << 1;
        throw 0;
    } catch (int) {
        // The write was given up: an exception was under way already.
    }
    try {
        CArchive ar(&file, CArchive::store);
        ar << 1;
    } catch (CFileException* e) {
        EXPECT_EQ(e->m_cause, CFileException::diskFull);
        e->Delete();
        return;
    }
    ADD_FAILURE() << "nothing was thrown";
}

TEST(CArchive, AbortAndTheModeBitDropWhatWasNotWritten) {
    CountingFile file;
    {
        CArchive ar(&file, CArchive::store);
        ar << 1;
        ar.Abort();
    }
    { CArchive(&file, CArchive::store | CArchive::bNoFlushOnDelete) << 1; }
    EXPECT_EQ(file.bytes.size(), 0u);
}

// ---- strings

TEST(CArchive, StringLengthsTakeTheShortestEscape) {
    for (const std::size_t n :
         {std::size_t{0}, std::size_t{1}, std::size_t{254}, std::size_t{255}, std::size_t{65533},
          std::size_t{65534}, std::size_t{65535}, std::size_t{70000}}) {
        const CString text(static_cast<TCHAR>('t'), static_cast<int>(n));
        Bytes expected;
        expected.u8(0xFF).u8(0xFE).u8(0xFF);
        if (n < 255)
            expected.u8(static_cast<unsigned>(n));
        else if (n < 65534)
            expected.u8(0xFF).u16(static_cast<unsigned>(n));
        else
            expected.u8(0xFF).u16(0xFFFF).u32(static_cast<std::uint32_t>(n));
        expected.units(std::string(n, 't'));
        EXPECT_TRUE(storedString(text) == expected.str()) << n;
        EXPECT_TRUE(loadedString(expected) == text) << n;
        EXPECT_EQ(loadedString(expected).GetLength(), static_cast<int>(n));
    }
}

TEST(CArchive, AnEmptyStringIsFourBytes) {
    EXPECT_EQ(storedString(CString()), std::string("\xFF\xFE\xFF\x00", 4));
    EXPECT_TRUE(loadedString(Bytes().string("")).IsEmpty());
}

TEST(CArchive, TheMagicOfADatasetTakes22Bytes) {
    EXPECT_EQ(storedString(_T("MEGCOHPTS")),
              std::string("\xFF\xFE\xFF\x09M\0E\0G\0C\0O\0H\0P\0T\0S\0", 22));
}

TEST(CArchive, NarrowStringsAreWidenedByTheCodePage) {
    EXPECT_EQ(test::toUtf8(loadedString(Bytes().narrowString("plain"))), "plain");
    const TCHAR euro[] = {0x20AC, 0};
    EXPECT_TRUE(loadedString(Bytes().u8(1).u8(0x80)) == euro);
    for (const std::size_t n : {std::size_t{254}, std::size_t{255}, std::size_t{65533},
                                std::size_t{65534}, std::size_t{70000}})
        EXPECT_EQ(loadedString(Bytes().narrowString(std::string(n, 'n'))).GetLength(),
                  static_cast<int>(n));
}

TEST(CArchive, EmbeddedZerosStayInTheLength) {
    EXPECT_EQ(loadedString(Bytes().u8(3).u8('a').u8(0).u8('b')).GetLength(), 3);
    EXPECT_EQ(loadedString(Bytes().u8(0xFF).u16(0xFFFE).u8(3).u16('a').u16(0).u16('b')).GetLength(),
              3);
}

TEST(CArchive, LongerEscapesThanNeededAreAccepted) {
    EXPECT_EQ(test::toUtf8(loadedString(Bytes().u8(0xFF).u16(3).u8('a').u8('b').u8('c'))), "abc");
    EXPECT_EQ(test::toUtf8(loadedString(Bytes().u8(0xFF).u16(0xFFFF).u32(1).u8('a'))), "a");
    EXPECT_EQ(test::toUtf8(loadedString(
                  Bytes().u8(0xFF).u16(0xFFFF).u32(0xFFFFFFFF).u64(2).u8('a').u8('b'))),
              "ab");
}

TEST(CArchive, AStringCutAnywhereThrowsAndStaysAsItWas) {
    for (const Bytes& whole :
         {Bytes().string("name"), Bytes().narrowString("name"),
          Bytes().string(std::string(300, 'x')), Bytes().string(std::string(66000, 'x')),
          Bytes().narrowString(std::string(66000, 'x'))}) {
        for (std::size_t size = 0; size < whole.size(); size += size < 20 ? 1 : 997) {
            CString text(_T("old"));
            EXPECT_EQ(causeOfLoading(whole.first(size), text), CArchiveException::endOfFile)
                << size;
            EXPECT_TRUE(text == _T("old"));
        }
    }
}

TEST(CArchive, LengthsBeyondTheFileEndItWithoutTakingMemory) {
    for (const std::uint64_t n :
         {std::uint64_t{0x7FFFFFFF}, std::uint64_t{0xFFFFFFFE}, (std::uint64_t{1} << 63) + 1,
          std::numeric_limits<std::uint64_t>::max()}) {
        CString text(_T("old"));
        EXPECT_EQ(causeOfLoading(Bytes().length(n).u8('x'), text), CArchiveException::endOfFile);
        EXPECT_EQ(causeOfLoading(Bytes().u8(0xFF).u16(0xFFFE).length(n).u16('x'), text),
                  CArchiveException::endOfFile);
        EXPECT_TRUE(text == _T("old"));
    }
}

TEST(CArchive, AClaimBeyondTheFileIsRefusedBeforeItsCharactersAreRead) {
    const std::string content(8 << 20, 'x');
    for (const std::uint64_t n :
         {std::uint64_t{8 << 20} + 1, std::uint64_t{0x7FFFFFFF}, std::uint64_t{0xFFFFFFFE},
          (std::uint64_t{1} << 63) + 1, std::numeric_limits<std::uint64_t>::max()}) {
        for (const bool wide : {false, true}) {
            SizedFile file;
            Bytes prefix;
            if (wide) prefix.u8(0xFF).u16(0xFFFE);
            file.bytes = prefix.length(n).str() + content;
            CArchive ar(&file, CArchive::load);
            CString text(_T("old"));
            EXPECT_EQ(causeOf([&] { ar >> text; }), CArchiveException::endOfFile) << n;
            EXPECT_LE(file.position, archiveBuffer) << n;
            EXPECT_TRUE(text == _T("old"));
        }
    }
}

TEST(CArchive, AStringThatEndsWithItsFileIsReadWhole) {
    for (const std::size_t n : {std::size_t{65534}, std::size_t{300000}}) {
        SizedFile file;
        file.bytes = Bytes().string(std::string(n, 'w')).narrowString(std::string(n, 'n')).str();
        CArchive ar(&file, CArchive::load);
        CString wide;
        CString narrow;
        ar >> wide >> narrow;
        EXPECT_TRUE(wide == CString(static_cast<TCHAR>('w'), static_cast<int>(n)));
        EXPECT_TRUE(narrow == CString(static_cast<TCHAR>('n'), static_cast<int>(n)));
        EXPECT_EQ(file.position, file.bytes.size());
    }
}

TEST(CArchive, WithoutALengthAClaimIsReadInSmallStepsToTheEnd) {
    for (const std::uint64_t n : {std::uint64_t{0x30000000}, std::uint64_t{1} << 40}) {
        CountingFile file;
        file.bytes = Bytes().length(n).str() + std::string(3 << 20, 'x');
        CArchive ar(&file, CArchive::load);
        CString text(_T("old"));
        EXPECT_EQ(causeOf([&] { ar >> text; }), CArchiveException::endOfFile);
        EXPECT_EQ(file.position, file.bytes.size());
        EXPECT_LE(file.largestRead, archiveBuffer);
        EXPECT_TRUE(text == _T("old"));
    }
}

TEST(CArchive, CharactersBeyondAnyStringAreAMemoryException) {
    EndlessFile file;
    file.bytes = Bytes().length(0x40000000).str();
    CArchive ar(&file, CArchive::load);
    CString text(_T("old"));
#ifdef __linux__
    const long pagesBefore = residentPages();
#endif
    try {
        ar >> text;
        ADD_FAILURE() << "nothing was thrown";
    } catch (CMemoryException* e) {
        e->Delete();
    }
    EXPECT_GE(file.delivered, 0x40000000u);
    EXPECT_LE(file.largestRead, archiveBuffer);
    EXPECT_TRUE(text == _T("old"));
#ifdef __linux__
    EXPECT_LT(file.pagesHalfWay - pagesBefore, (64L << 20) / sysconf(_SC_PAGESIZE));
#endif
}

TEST(CArchive, AFileThatClaimsToBeEmptyIsReadAllTheSame) {
    // Generated files of some systems have content and the length 0.
    struct UnmeasuredFile : SizedFile {
        ULONGLONG GetLength() const override { return 0; }
    } file;
    file.bytes = Bytes().narrowString(std::string(70000, 'n')).str();
    CArchive ar(&file, CArchive::load);
    CString text;
    ar >> text;
    EXPECT_EQ(text.GetLength(), 70000);
}

TEST(CArchive, ASecondMarkerIsALength) {
    const std::string text(65534, 'q');
    const CString loaded =
        loadedString(Bytes().u8(0xFF).u16(0xFFFE).u8(0xFF).u16(0xFFFE).units(text));
    EXPECT_EQ(loaded.GetLength(), 65534);
}

TEST(CArchive, PrefixesOf8BitTextHaveNoMarker) {
    CountingFile file;
    CArchive ar(&file, CArchive::store);
    AfxWriteStringLength(ar, 5, FALSE);
    AfxWriteStringLength(ar, 300, FALSE);
    AfxWriteStringLength(ar, 0x1FFFFFFFFu, TRUE);
    ar.Flush();
    EXPECT_EQ(file.bytes, Bytes()
                              .u8(5)
                              .u8(0xFF)
                              .u16(300)
                              .u8(0xFF)
                              .u16(0xFFFE)
                              .u8(0xFF)
                              .u16(0xFFFF)
                              .u32(0xFFFFFFFF)
                              .u64(0x1FFFFFFFF)
                              .str());
    file.position = 0;
    CArchive in(&file, CArchive::load);
    int size = 0;
    EXPECT_EQ(AfxReadStringLength(in, size), 5u);
    EXPECT_EQ(size, 1);
    EXPECT_EQ(AfxReadStringLength(in, size), 300u);
    EXPECT_EQ(AfxReadStringLength(in, size), 0x1FFFFFFFFu);
    EXPECT_EQ(size, 2);
}
