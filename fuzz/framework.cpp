// The framework subset beneath the library: an archive in pieces of any size against the bytes
// that must come out, reading from any bytes against a plain reader, strings against the standard
// library's.
#include "fuzz/records.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

namespace {

class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : m_data(data), m_left(size) {}
    bool left() const { return m_left > 0; }
    unsigned byte() {
        if (m_left == 0) return 0;
        --m_left;
        return *m_data++;
    }
    std::string rest() const { return {reinterpret_cast<const char*>(m_data), m_left}; }

private:
    const std::uint8_t* m_data;
    std::size_t m_left;
};

std::string differ(const char* what) {
    return std::string("different: ") + what;
}

template <class T>
void put(CArchive& ar, std::string& wanted, T value) {
    ar << value;
    wanted.append(reinterpret_cast<const char*>(&value), sizeof(value));
}

// Stores what the input says and returns what must have been stored.
std::string storeItems(CArchive& ar, Input& in) {
    std::string wanted;
    while (in.left()) {
        const unsigned seed = in.byte();
        switch (in.byte() % 6) {
            case 0:
                put(ar, wanted, static_cast<BYTE>(seed));
                break;
            case 1:
                put(ar, wanted, static_cast<int>(seed) * -77773);
                break;
            case 2:
                put(ar, wanted, static_cast<LONGLONG>(seed) * 0x0123456789ABCDLL);
                break;
            case 3:
                put(ar, wanted, static_cast<double>(seed) / 3.0);
                break;
            case 4:
                ar.Flush();
                break;
            default: {
                const std::string block(seed * 40 + 1, static_cast<char>(seed));
                ar.Write(block.data(), static_cast<UINT>(block.size()));
                wanted += block;
            }
        }
    }
    return wanted;
}

std::string checkStoring(Input in) {
    BYTE buffer[1024];
    const int room = 128 + static_cast<int>(in.byte()) * 3;
    test::RoughFile file(1 << 20);
    std::string wanted;
    {
        CArchive ar(&file, CArchive::store, room, buffer);
        wanted = storeItems(ar, in);
        ar.Close();
    }
    return file.content() == wanted.substr(0, 1 << 20) ? "" : differ("what is stored");
}

// Reads items of any bytes until they end.
std::string checkLoading(Input in) {
    const int room = 128 + static_cast<int>(in.byte()) * 3;
    const unsigned pattern = in.byte();
    const std::string bytes = in.rest();
    test::RoughFile file(bytes);
    reference::Reader plain(bytes);
    BYTE buffer[1024];
    CArchive ar(&file, CArchive::load, room, buffer);
    std::string wrong;
    try {
        for (unsigned i = 0; i < 2000 && plain.left() > 0 && wrong.empty(); ++i) {
            char block[700];
            switch ((pattern + i * 7) % 4) {
                case 0: {
                    int value = 0;
                    ar >> value;
                    if (std::memcmp(&value, plain.take(4).data(), 4) != 0) wrong = differ("int");
                    break;
                }
                case 1: {
                    double value = 0.0;
                    ar >> value;
                    if (std::memcmp(&value, plain.take(8).data(), 8) != 0) wrong = differ("double");
                    break;
                }
                case 2: {
                    const UINT asked = (pattern * 37 + i) % sizeof(block);
                    const UINT got = ar.Read(block, asked);
                    const std::string some = plain.takeSome(asked);
                    if (std::string(block, got) != some) wrong = differ("a block");
                    break;
                }
                default: {
                    BYTE value = 0;
                    ar >> value;
                    if (value != static_cast<BYTE>(plain.take(1)[0])) wrong = differ("byte");
                }
            }
        }
    } catch (CArchiveException* e) {
        e->Delete();
        // Whole items must not end early: fewer bytes than a double may be left.
        if (plain.left() >= 8) wrong = differ("the end");
    } catch (const reference::Ended&) {
        wrong = differ("an end that the archive did not see");
    }
    ar.Abort();
    return wrong;
}

LPCTSTR pointer(const std::u16string& text) {
    return reinterpret_cast<LPCTSTR>(text.c_str());
}

// A position as the framework counts it.
int index(std::size_t at) {
    return at == std::u16string::npos ? -1 : static_cast<int>(at);
}

// A string of the framework and what it must be.
struct Twins {
    CString real;
    std::u16string plain;

    bool alike() const {
        return real.GetLength() == static_cast<int>(plain.size()) &&
               std::equal(plain.begin(), plain.end(),
                          reinterpret_cast<const char16_t*>(real.GetString()));
    }
};

constexpr unsigned changes = 5;

void change(Twins& t, unsigned which, const std::u16string& piece, int n) {
    const std::size_t at = std::min(static_cast<std::size_t>(std::max(n, 0)), t.plain.size());
    switch (which) {
        case 0:
            t.real += pointer(piece);
            t.plain += piece;
            break;
        case 1:
            t.real = t.real.Left(n);
            t.plain = t.plain.substr(0, at);
            break;
        case 2:
            t.real = t.real.Right(n);
            t.plain = t.plain.substr(t.plain.size() - at);
            break;
        case 3:
            t.real = t.real.Mid(n);
            t.plain = t.plain.substr(at);
            break;
        default: {
            const CString copy = t.real;
            t.real += copy;
            t.real += t.real;
            t.plain += t.plain;
            t.plain += t.plain;
            if (t.plain.size() > 4000) {
                t.real.Empty();
                t.plain.clear();
            }
        }
    }
}

bool formatsAlike(const Twins& t, int n) {
    CString made;
    made.Format(_T("%d/%s/%5.2f"), n, t.real.GetString(), n / 7.0);
    char number[64];
    std::snprintf(number, sizeof(number), "/%5.2f", n / 7.0);
    std::u16string wanted;
    for (const char c : std::to_string(n) + "/")
        wanted += static_cast<char16_t>(c);
    wanted += t.plain;
    for (const char* c = number; *c != 0; ++c)
        wanted += static_cast<char16_t>(*c);
    return made.Compare(pointer(wanted)) == 0;
}

bool findsAlike(const Twins& t, const std::u16string& piece, int n) {
    if (n < 0) return true;
    const auto from = static_cast<std::size_t>(n);
    const int wanted = from > t.plain.size() ? -1 : index(t.plain.find(piece, from));
    return t.real.Find(pointer(piece), n) == wanted;
}

// Asks both the same, changing neither.
std::string ask(const Twins& t, unsigned which, const std::u16string& piece, int n) {
    switch (which) {
        case 0:
            return findsAlike(t, piece, n) ? "" : differ("Find");
        case 1:
            return t.real.ReverseFind(static_cast<TCHAR>('b')) == index(t.plain.rfind(u'b'))
                       ? ""
                       : differ("ReverseFind");
        case 2:
            return formatsAlike(t, n) ? "" : differ("Format");
        default: {
            const int order = t.real.Compare(pointer(piece));
            return (order < 0) == (t.plain < piece) && (order == 0) == (t.plain == piece)
                       ? ""
                       : differ("Compare");
        }
    }
}

std::string checkString(Input in) {
    Twins twins;
    for (int calls = 0; in.left() && calls < 300; ++calls) {
        const unsigned length = in.byte() % 5;
        const std::u16string piece(length, static_cast<char16_t>(u'a' + in.byte() % 3));
        const int n = static_cast<int>(in.byte()) % 12 - 3;
        const unsigned which = in.byte() % 9;
        if (which < changes) {
            change(twins, which, piece, n);
        } else {
            const std::string wrong = ask(twins, which - changes, piece, n);
            if (!wrong.empty()) return wrong;
        }
        if (!twins.alike()) return differ("the text");
    }
    return "";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Input input(data, size);
    fuzz::require(checkStoring(input));
    fuzz::require(checkLoading(input));
    return fuzz::require(checkString(input));
}
