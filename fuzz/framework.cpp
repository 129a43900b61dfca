// The framework subset beneath the library: an archive in pieces of any size against the bytes
// that must come out, reading from any bytes against a plain reader, strings against the standard
// library's.
#include "fuzz/records.h"

#include <algorithm>

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

std::string checkString(Input in) {
    CString real;
    std::u16string plain;
    const auto text = [&] {
        return std::u16string(in.byte() % 5, static_cast<char16_t>(u'a' + in.byte() % 3));
    };
    const auto pointer = [](const std::u16string& t) {
        return reinterpret_cast<LPCTSTR>(t.c_str());
    };
    const auto index = [](std::size_t at) {
        return at == std::u16string::npos ? -1 : static_cast<int>(at);
    };
    for (int calls = 0; in.left() && calls < 300; ++calls) {
        const std::u16string piece = text();
        const int n = static_cast<int>(in.byte()) % 12 - 3;
        const auto at =
            static_cast<std::size_t>(std::min<int>(std::max(n, 0), static_cast<int>(plain.size())));
        switch (in.byte() % 9) {
            case 0:
                real += pointer(piece);
                plain += piece;
                break;
            case 1:
                real = real.Left(n);
                plain = plain.substr(0, at);
                break;
            case 2:
                real = real.Right(n);
                plain = plain.substr(plain.size() - at);
                break;
            case 3:
                real = real.Mid(n);
                plain = plain.substr(at);
                break;
            case 4: {
                const CString copy = real;
                real += copy;
                real += real;
                plain += plain;
                plain += plain;
                if (plain.size() > 4000) {
                    real.Empty();
                    plain.clear();
                }
                break;
            }
            case 5:
                if (n >= 0 && real.Find(pointer(piece), n) !=
                                  (n > static_cast<int>(plain.size())
                                       ? -1
                                       : index(plain.find(piece, static_cast<std::size_t>(n)))))
                    return differ("Find");
                break;
            case 6:
                if (real.ReverseFind(static_cast<TCHAR>('b')) != index(plain.rfind(u'b')))
                    return differ("ReverseFind");
                break;
            case 7: {
                CString made;
                made.Format(_T("%d/%s/%5.2f"), n, real.GetString(), n / 7.0);
                char number[64];
                std::snprintf(number, sizeof(number), "/%5.2f", n / 7.0);
                std::u16string wanted;
                for (const char c : std::to_string(n) + "/")
                    wanted += static_cast<char16_t>(c);
                wanted += plain;
                for (const char* c = number; *c != 0; ++c)
                    wanted += static_cast<char16_t>(*c);
                if (made.Compare(pointer(wanted)) != 0) return differ("Format");
                break;
            }
            default: {
                const int order = real.Compare(pointer(piece));
                if ((order < 0) != (plain < piece) || (order == 0) != (plain == piece))
                    return differ("Compare");
            }
        }
        if (real.GetLength() != static_cast<int>(plain.size()) ||
            !std::equal(plain.begin(), plain.end(),
                        reinterpret_cast<const char16_t*>(real.GetString())))
            return differ("the text");
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
