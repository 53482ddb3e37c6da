// Random lists of operations on a text, an array and a map, each beside its plain counterpart of the standard
// library.

#include "fuzz/Require.h"
#include "vorlane/foundation/FrameworkSurface.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

using VorlaneFuzz::Require;

namespace {

/// The input as a list of small numbers; 0 where it has ended.
class Input
{
public:
    Input(std::uint8_t const* bytes, std::size_t size) : m_next(bytes), m_end(bytes + size) {}

    bool HasEnded() const { return m_next == m_end; }
    int Byte() { return HasEnded() ? 0 : *m_next++; }
    /// From -2 to 253, to reach outside at both ends.
    int Index() { return Byte() - 2; }

private:
    std::uint8_t const* m_next;
    std::uint8_t const* m_end;
};

/// Whether `operation` is refused with the invalid-argument exception.
template <typename Operation>
bool IsRefused(Operation operation)
{
    try {
        operation();
        return false;
    } catch (CInvalidArgException const&) {
        return true;
    }
}

struct Texts
{
    CString text;
    CString other;
    std::string expected;
    std::string expectedOther;

    static std::string Cut(std::string const& whole, int first, int count)
    {
        std::size_t const begin = std::min(whole.size(), static_cast<std::size_t>(std::max(first, 0)));
        return whole.substr(begin, static_cast<std::size_t>(std::max(count, 0)));
    }

    void Step(Input& input)
    {
        int const operation = input.Byte();
        int const index = input.Index();
        switch (operation % 8) {
        case 0:
            text += static_cast<char>(index);
            expected += static_cast<char>(index);
            break;
        case 1:
            if (expected.size() < 1000) {
                text += other;
                expected += expectedOther;
            }
            break;
        case 2:
            text = text.Mid(index);
            expected = Cut(expected, index, 1 << 20);
            break;
        case 3:
            text = other.Mid(index, operation / 8);
            expected = Cut(expectedOther, index, operation / 8);
            break;
        case 4:
            std::swap(text, other);
            std::swap(expected, expectedOther);
            break;
        case 5:
            other = text;
            expectedOther = expected;
            break;
        case 6:
            text.TrimRight().TrimLeft().MakeLower();
            expected.erase(expected.find_last_not_of(" \t\n\v\f\r") + 1);
            expected.erase(0, std::min(expected.find_first_not_of(" \t\n\v\f\r"), expected.size()));
            std::transform(expected.begin(), expected.end(), expected.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
            break;
        default: {
            int const length = std::max(index, 0);
            int const kept = std::min(length, text.GetLength());
            char* const buffer = text.GetBuffer(length);
            std::fill(buffer + kept, buffer + length, 'x');
            text.ReleaseBuffer(length);
            expected.resize(static_cast<std::size_t>(length), 'x');
        }
        }
        Require(text.GetLength() == static_cast<int>(expected.size()) &&
                std::equal(expected.begin(), expected.end(), static_cast<char const*>(text)) &&
                text[text.GetLength()] == '\0' &&
                other.GetLength() == static_cast<int>(expectedOther.size()));
        Require((text == other) == (std::string(text) == std::string(other)));
    }
};

struct Arrays
{
    CArray<CString, CString const&> array;
    std::vector<std::string> expected;

    void Step(Input& input)
    {
        int const operation = input.Byte();
        int const index = input.Index();
        bool const isInside = index >= 0 && index < static_cast<int>(expected.size());
        switch (operation % 4) {
        case 0:
            Require(IsRefused([&] { array.SetSize(index, operation / 4 - 1); }) == (index < 0));
            if (index >= 0) {
                expected.resize(static_cast<std::size_t>(index));
            }
            break;
        case 1:
            Require(IsRefused([&] { array.Add(array[index]); }) == !isInside);
            if (isInside) {
                expected.push_back(std::string(expected[static_cast<std::size_t>(index)]));
            }
            break;
        case 2:
            Require(IsRefused([&] { array.SetAtGrow(index, "grown"); }) == (index < 0));
            if (index >= 0) {
                expected.resize(std::max(expected.size(), static_cast<std::size_t>(index) + 1));
                expected[static_cast<std::size_t>(index)] = "grown";
            }
            break;
        default:
            Require(IsRefused([&] { array[index] += 'x'; }) == !isInside);
            if (isInside) {
                expected[static_cast<std::size_t>(index)] += 'x';
            }
        }
        Require(array.GetSize() == static_cast<int>(expected.size()) &&
                array.GetCapacity() >= array.GetSize());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            Require(array[static_cast<int>(i)] == expected[i].c_str());
        }
    }
};

struct Maps
{
    CMap<int, int, int, int> map{3};
    std::map<int, int> expected;

    void Step(Input& input)
    {
        int const key = input.Index() * (input.Byte() + 1) - 1000;
        map[key] += key;
        expected[key] += key;
        int value = 0;
        Require(map.Lookup(key + 1, value) == (expected.count(key + 1) == 1));
    }

    void Check() const
    {
        std::map<int, int> seen;
        for (POSITION position = map.GetStartPosition(); position != nullptr;) {
            int key = 0;
            int value = 0;
            map.GetNextAssoc(position, key, value);
            Require(seen.emplace(key, value).second);
        }
        Require(seen == expected);
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size)
{
    Input input(bytes, std::min<std::size_t>(size, 4096));
    Texts texts;
    Arrays arrays;
    Maps maps;
    while (!input.HasEnded()) {
        switch (input.Byte() % 3) {
        case 0:
            texts.Step(input);
            break;
        case 1:
            arrays.Step(input);
            break;
        default:
            maps.Step(input);
        }
    }
    maps.Check();
    return 0;
}
