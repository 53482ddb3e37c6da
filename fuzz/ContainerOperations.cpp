// Random lists of operations on texts, arrays and maps, each beside a plain model: the values, the capacities
// and the order of iteration. The first byte of the input chooses the container.

#include "fuzz/Input.h"
#include "fuzz/Require.h"
#include "vorlane/foundation/FrameworkSurface.h"
#include "vorlane/foundation/TypedArrays.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

using VorlaneFuzz::Require;

namespace {

class Input : public VorlaneFuzz::Input
{
public:
    using VorlaneFuzz::Input::Input;

    std::size_t Below(std::size_t count) { return static_cast<std::size_t>(Byte()) % count; }
    /// From -2 to 253, to reach outside at both ends.
    int Index() { return Byte() - 2; }
    /// An index, or the end of a range.
    int Number()
    {
        int const index = Index();
        return index == 253 ? INT_MAX : index == 252 ? INT_MIN : index;
    }
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

/// A text and what it should be. Texts may share storage, or be short enough to need none.
struct Twins
{
    CString text;
    std::string twin;
};

constexpr char const* blanks = " \t\n\v\f\r";

std::size_t Size(int number)
{
    return static_cast<std::size_t>(std::max(number, 0));
}

std::string Part(std::string const& text, int first, int count)
{
    return text.substr(std::min(Size(first), text.size()), Size(count));
}

std::string Lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return text;
}

/// Changes the first text, perhaps with the help of the second, which may be the same, and of two numbers.
using Operation = void (*)(Twins&, Twins&, int, int);

constexpr Operation operations[] = {
    [](Twins& a, Twins&, int m, int) {
        a.text += static_cast<char>(m);
        a.twin += static_cast<char>(m);
    },
    [](Twins& a, Twins& b, int, int) {
        a.text = b.text;
        a.twin = b.twin;
    },
    [](Twins& a, Twins& b, int, int) { std::swap(a, b); },
    [](Twins& a, Twins& b, int, int) {
        a.text += b.text;
        a.twin += std::string(b.twin);
    },
    [](Twins& a, Twins& b, int m, int) {
        a.text = b.text.Left(m);
        a.twin = Part(b.twin, 0, m);
    },
    [](Twins& a, Twins& b, int m, int) {
        a.text = b.text.Mid(m);
        a.twin = Part(b.twin, m, INT_MAX);
    },
    [](Twins& a, Twins& b, int m, int n) {
        a.text = b.text.Mid(m, n);
        a.twin = Part(b.twin, m, n);
    },
    [](Twins& a, Twins&, int, int) {
        a.text.TrimLeft();
        a.twin.erase(0, a.twin.find_first_not_of(blanks));
    },
    [](Twins& a, Twins&, int, int) {
        a.text.TrimRight();
        a.twin.erase(a.twin.find_last_not_of(blanks) + 1);
    },
    [](Twins& a, Twins&, int, int) {
        a.text.MakeLower();
        a.twin = Lower(a.twin);
    },
    [](Twins& a, Twins& b, int, int) {
        char const* const none = nullptr;
        a.text = '<' + a.text + "|" + b.text + '>' + none;
        a.twin = '<' + a.twin + "|" + b.twin + '>';
    },
    [](Twins& a, Twins& b, int, int) {
        a.twin += std::string(b.twin.c_str());
        a.text += static_cast<char const*>(b.text);
    },
    [](Twins& a, Twins& b, int m, int) {
        std::size_t const skipped = Part(b.twin, 0, m).size();
        a.twin = std::string(b.twin.c_str() + skipped);
        a.text = static_cast<char const*>(b.text) + skipped;
    },
    [](Twins& a, Twins& b, int m, int) {
        a.twin = Part(b.twin, 0, m);
        a.text = CString(b.text, static_cast<int>(a.twin.size()));
    },
    [](Twins& a, Twins&, int m, int n) {
        int const length = a.text.Delete(m, n);
        Require(length == a.text.GetLength());
        a.twin.erase(Part(a.twin, 0, m).size(), Size(n));
    },
    [](Twins& a, Twins& b, int, int) {
        std::string const both = "7<" + std::string(a.twin.c_str()) + "|" + b.twin.c_str() + ">";
        a.text.Format("%d<%s|%s>", 7, static_cast<char const*>(a.text), static_cast<char const*>(b.text));
        a.twin = both;
    },
    [](Twins& a, Twins&, int m, int n) {
        int const length = m & 0xFF;
        char* const buffer = a.text.GetBuffer(length);
        Require(std::strcmp(buffer, a.twin.c_str()) == 0);
        CString const during = a.text;
        std::fill_n(buffer, length, 'b');
        buffer[length] = '\0';
        a.text.ReleaseBuffer(n < 2 ? -1 : length);
        Require(during == a.twin.c_str());
        a.twin = std::string(Size(length), 'b');
    },
};

template <typename Left, typename Right>
std::array<bool, 6> Comparisons(Left const& a, Right const& b)
{
    return {a == b, a != b, a<b, a> b, a <= b, a >= b};
}

/// Bytes behind an embedded zero byte don't count, for the hash neither.
void CheckAnswers(Twins const& a, Twins const& b, char character, int start)
{
    char const* const bytesOfA = a.text;
    char const* const bytesOfB = b.text;
    int const order = std::strcmp(a.twin.c_str(), b.twin.c_str());
    int const lowOrder = std::strcmp(Lower(a.twin).c_str(), Lower(b.twin).c_str());
    Require(Comparisons(a.text, b.text) == Comparisons(order, 0));
    Require(Comparisons(a.text, bytesOfB) == Comparisons(order, 0));
    Require(Comparisons(bytesOfA, b.text) == Comparisons(order, 0));
    Require(Comparisons(a.text.CompareNoCase(bytesOfB), 0) == Comparisons(lowOrder, 0));
    Require(std::less<CString>()(a.text, b.text) == (order < 0));
    Require(order != 0 || HashKey<CString const&>(a.text) == HashKey<char const*>(bytesOfB));
    std::size_t const found = start < 0 ? std::string::npos : a.twin.find(character, Size(start));
    Require(static_cast<std::size_t>(a.text.Find(character, start)) == found);
    std::size_t const oneOf = a.twin.find_first_of(b.twin.c_str());
    Require(static_cast<std::size_t>(a.text.FindOneOf(bytesOfB)) == oneOf);
}

void TryTexts(Input& input)
{
    constexpr std::size_t longest = 600;
    Twins twins[4];
    while (!input.HasEnded()) {
        Operation const operation = operations[input.Below(std::size(operations))];
        Twins& a = twins[input.Below(4)];
        Twins& b = twins[input.Below(4)];
        int const first = input.Number();
        int const second = input.Number();
        operation(a, b, first, second);
        for (Twins const& each : twins) {
            Require(std::string(each.text, Size(each.text.GetLength())) == each.twin);
            Require(each.text[each.text.GetLength()] == '\0');
        }
        CheckAnswers(a, b, static_cast<char>(first), second);
        if (a.twin.size() > longest) {
            a = Twins();
        }
    }
}

/// The elements of an array, and how its capacity grows.
template <typename Element>
struct ArrayModel
{
    std::vector<Element> elements;
    int capacity = 0;
    int growBy = 0;

    void SetSize(int size, int newGrowBy)
    {
        int const step = std::clamp(static_cast<int>(elements.size()) / 8, 4, 1024);
        growBy = newGrowBy >= 0 ? newGrowBy : growBy;
        if (size == 0) {
            capacity = 0;
        } else if (capacity == 0) {
            capacity = std::max(size, growBy);
        } else if (size > capacity) {
            capacity = std::max(size, capacity + (growBy != 0 ? growBy : step));
        }
        elements.resize(static_cast<std::size_t>(size));
    }

    void SetAtGrow(int index, Element element)
    {
        if (index >= static_cast<int>(elements.size())) {
            SetSize(index + 1, -1);
        }
        elements[static_cast<std::size_t>(index)] = std::move(element);
    }
};

template <typename Array>
class Arrays
{
public:
    using Element = std::decay_t<decltype(std::declval<Array>()[0])>;

    /// The second array is there to be copied and copied to.
    void Try(Input& input)
    {
        while (!input.HasEnded()) {
            std::size_t const own = input.Below(2);
            Step(m_arrays[own], m_models[own], input);
            CheckSize(m_arrays[own], m_models[own]);
        }
        for (std::size_t own = 0; own < 2; ++own) {
            CheckElements(m_arrays[own], m_models[own]);
        }
    }

private:
    using Model = ArrayModel<Element>;

    /// Large enough for the longest steps of growth, where elements take no time.
    static constexpr int largeStep = std::is_trivially_copyable_v<Element> ? 40 : 4;

    void Step(Array& array, Model& model, Input& input)
    {
        int const operation = input.Byte();
        int const index = input.Index() * (operation < 128 ? 1 : largeStep);
        int const other = input.Index();
        auto const isInside = [&](int place) {
            return place >= 0 && place < static_cast<int>(model.elements.size());
        };
        switch (operation % 7) {
        case 0:
            Require(IsRefused([&] { array.SetSize(index, other); }) == (index < 0));
            if (index >= 0) {
                model.SetSize(index, other);
            }
            break;
        case 1:
            // The value may lie in storage that is given back meanwhile.
            Require(IsRefused([&] { array.Add(array[other]); }) == !isInside(other));
            if (isInside(other)) {
                model.SetAtGrow(static_cast<int>(model.elements.size()), ElementAt(model, other));
            }
            break;
        case 2: {
            bool const isValid = index >= 0 && isInside(other);
            Require(IsRefused([&] { array.SetAtGrow(index, array[other]); }) == !isValid);
            if (isValid) {
                model.SetAtGrow(index, ElementAt(model, other));
            }
            break;
        }
        case 3:
            Require(IsRefused([&] { array.SetAt(index, MakeElement(other)); }) == !isInside(index));
            if (isInside(index)) {
                model.elements[static_cast<std::size_t>(index)] = MakeElement(other);
            }
            break;
        case 4:
            Require(IsRefused([&] { array.GetAt(other); }) == !isInside(other));
            array.Add(MakeElement(index));
            model.SetAtGrow(static_cast<int>(model.elements.size()), MakeElement(index));
            break;
        case 5: {
            std::size_t const from = static_cast<std::size_t>(other & 1);
            array.Copy(m_arrays[from]);
            if (&model != &m_models[from]) {
                model.SetSize(m_arrays[from].GetSize(), -1);
                model.elements = m_models[from].elements;
            }
            break;
        }
        default:
            if constexpr (std::is_constructible_v<Array, int, int>) {
                CheckConstructor(index, other);
            }
        }
        Require(isInside(index) == !IsRefused([&] { array[index]; }));
        Require(!isInside(index) || array[index] == model.elements[static_cast<std::size_t>(index)]);
    }

    static Element MakeElement(int number)
    {
        if constexpr (std::is_same_v<Element, CString>) {
            return CString(std::to_string(number).c_str());
        } else {
            return static_cast<Element>(number);
        }
    }

    static Element ElementAt(Model const& model, int index)
    {
        return model.elements[static_cast<std::size_t>(index)];
    }

    static void CheckSize(Array const& array, Model const& model)
    {
        Require(array.GetSize() == static_cast<int>(model.elements.size()));
        Require(array.GetCapacity() == model.capacity);
        Require((array.GetData() == nullptr) == model.elements.empty());
    }

    static void CheckElements(Array const& array, Model const& model)
    {
        CheckSize(array, model);
        Require(array.GetSize() == 0 ||
                std::equal(model.elements.begin(), model.elements.end(), array.GetData()));
    }

    /// Elements that are zero; and a growth of at least 1, but none for an empty array and for copies.
    static void CheckConstructor(int size, int growBy)
    {
        Array array(size, growBy);
        Model model;
        if (size >= 1) {
            model.SetSize(size, std::max(growBy, 1));
        }
        Array copy(array);
        Model modelOfCopy;
        modelOfCopy.SetSize(array.GetSize(), -1);
        modelOfCopy.elements = model.elements;
        CheckElements(array, model);
        for (int added = 0; added < 2; ++added) {
            array.Add(MakeElement(1));
            model.SetAtGrow(static_cast<int>(model.elements.size()), MakeElement(1));
            CheckElements(array, model);
            copy.Add(MakeElement(1));
            modelOfCopy.SetAtGrow(static_cast<int>(modelOfCopy.elements.size()), MakeElement(1));
            CheckElements(copy, modelOfCopy);
        }
        array = copy;
        model.SetSize(copy.GetSize(), -1);
        model.elements = modelOfCopy.elements;
        CheckElements(array, model);
    }

    Array m_arrays[2];
    Model m_models[2];
};

unsigned int HashOf(int key)
{
    return static_cast<unsigned int>(key) >> 4;
}

unsigned int HashOf(std::string const& key)
{
    unsigned int hash = 0;
    for (char const c : key) {
        hash = hash * 33 + static_cast<unsigned char>(c);
    }
    return hash;
}

int ArgumentOf(int key)
{
    return key;
}

char const* ArgumentOf(std::string const& key)
{
    return key.c_str();
}

template <typename Key>
Key MakeKey(int number)
{
    if constexpr (std::is_same_v<Key, int>) {
        return number;
    } else {
        return std::to_string(number) + static_cast<char>(number | 0x80);
    }
}

/// A map whose values are ints; its keys are `Key` in the model.
template <typename Map, typename Key>
class Maps
{
public:
    void Try(Input& input)
    {
        while (!input.HasEnded()) {
            Step(input);
            Require(m_map.GetCount() == static_cast<int>(m_model.size()));
            Require(m_map.GetHashTableSize() == m_tableSize);
        }
        CheckOrder();
    }

private:
    struct Entry
    {
        int age; ///< how many entries there were before it
        int value;
    };

    void Step(Input& input)
    {
        int const operation = input.Byte();
        int const factor = input.Index();
        int const number = factor * (input.Byte() + 1) - 1000;
        Key const key = MakeKey<Key>(number);
        switch (operation % 8) {
        case 0:
            CheckOrder();
            m_map.RemoveAll();
            m_model.clear();
            break;
        case 1: {
            unsigned int const size = static_cast<unsigned int>(operation / 8);
            bool const isRefused = IsRefused([&] { m_map.InitHashTable(size, number & 1); });
            Require(isRefused == (size == 0 || !m_model.empty()));
            m_tableSize = isRefused ? m_tableSize : size;
            break;
        }
        case 2:
            for (int n = 0; n < operation && m_model.size() < 300; ++n) {
                Set(MakeKey<Key>(number + n * operation), n);
            }
            break;
        case 3:
        case 4:
            Set(key, operation);
            break;
        default:
            m_map[ArgumentOf(key)] += operation;
            EntryOf(key).value += operation;
        }
        Look(key);
        Look(MakeKey<Key>(number + 1));
    }

    Entry& EntryOf(Key const& key)
    {
        int const age = static_cast<int>(m_model.size());
        return m_model.emplace(key, Entry{age, 0}).first->second;
    }

    void Set(Key const& key, int value)
    {
        m_map.SetAt(ArgumentOf(key), value);
        EntryOf(key).value = value;
    }

    void Look(Key const& key) const
    {
        auto const entry = m_model.find(key);
        int value = -7;
        Require(m_map.Lookup(ArgumentOf(key), value) == (entry != m_model.end()));
        Require(value == (entry != m_model.end() ? entry->second.value : -7));
    }

    /// Bucket after bucket, the newest entry of each first.
    void CheckOrder() const
    {
        std::map<std::pair<unsigned int, int>, std::pair<Key, int>> expected;
        for (auto const& [key, entry] : m_model) {
            expected[{HashOf(key) % m_tableSize, -entry.age}] = {key, entry.value};
        }
        std::decay_t<decltype(KeyOf(m_map))> key{};
        int value = 0;
        POSITION position = m_map.GetStartPosition();
        for (auto const& [place, keyAndValue] : expected) {
            m_map.GetNextAssoc(position, key, value);
            Require(key == ArgumentOf(keyAndValue.first) && value == keyAndValue.second);
        }
        Require(position == nullptr && IsRefused([&] { m_map.GetNextAssoc(position, key, value); }));
    }

    template <typename MapKey, typename Argument>
    static MapKey KeyOf(CMap<MapKey, Argument, int, int> const&);

    Map m_map{3};
    std::map<Key, Entry> m_model;
    unsigned int m_tableSize = 17;
};

template <typename Container>
void Try(Input& input)
{
    Container().Try(input);
}

constexpr void (*tries[])(Input&) = {
    TryTexts,
    Try<Maps<CMap<int, int, int, int>, int>>,
    Try<Maps<CMap<CString, char const*, int, int>, std::string>>,
    Try<Arrays<CArray<int, int const&>>>,
    Try<Arrays<CStringArray>>,
    Try<Arrays<CArray<CString, char const*>>>,
    Try<Arrays<Vorlane::IntArray>>,
    Try<Arrays<Vorlane::DoubleArray>>,
    Try<Arrays<Vorlane::BoolArray>>,
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size)
{
    Input input(bytes, std::min<std::size_t>(size, 512));
    tries[input.Below(std::size(tries))](input);
    return 0;
}
