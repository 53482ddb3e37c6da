// Every object stored to the bytes of layouts.txt and loaded from them, whole, cut and damaged.

#include "fuzz/ArchivedObjects.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/ArchivedBytes.h"
#include "tests/support/CaseTable.h"
#include "tests/support/Files.h"

#include "gtest/gtest.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <stdexcept>

namespace VorlaneTest {
namespace {

using namespace VorlaneFuzz;

/// The schema number that a writer sets today, and all those at which something changes.
constexpr std::uint32_t today = 24;
constexpr std::uint32_t schemas[] = {0,          6,  7,  9,     10,         11,         12,
                                     13,         15, 16, 17,    18,         19,         20,
                                     21,         22, 23, today, 0x7FFFFFFF, 0x80000000, unsetSchema - 1,
                                     unsetSchema};

/// Bytes in memory that pass for the file "named".
struct NamedFile : CMemFile
{
    using CMemFile::CMemFile;
    CString GetFilePath() const override { return "named"; }
};

/// An object of some kind that can be stored, loaded and looked into.
struct Object
{
    std::function<void(CArchive&)> transfer;
    std::function<std::string()> look;

    std::string Store(std::uint32_t schema) const
    {
        Bytes const bytes = StoredBytes(schema, transfer);
        return std::string(bytes.begin(), bytes.end());
    }

    /// Tells how a load ends: "whole", or with one of the exceptions that bad bytes may raise.
    std::string Load(std::string const& bytes, std::uint32_t schema) const
    {
        NamedFile file(Bytes(bytes.begin(), bytes.end()));
        CArchive ar(&file, CArchive::load, 256);
        ar.m_nObjectSchema = schema;
        try {
            transfer(ar);
        } catch (CArchiveException const& exception) {
            EXPECT_EQ(exception.m_cause, 3);
            return exception.m_strFileName == "named" ? "ends" : "ends in a text";
        } catch (std::length_error const& exception) {
            EXPECT_STREQ(exception.what(), "vector<T> too long");
            return "too long";
        } catch (CMemoryException const&) {
            return "longer than any text can be";
        }
        return ar.GetRemaining() == 0 ? "whole" : "bytes are left";
    }
};

template <typename T>
Object MakeObject()
{
    auto const value = std::make_shared<T>();
    return {[value](CArchive& ar) { Serialize(ar, *value); },
            [value] {
                return HeldBytes(*value).bytes;
            }};
}

/// A new object of the class of this name.
Object Make(std::string const& name)
{
    static std::map<std::string, Object (*)()> makers;
    if (makers.empty()) {
        ForEachKind([](char const* kindName, auto kind) {
            makers[kindName] = MakeObject<typename decltype(kind)::Type>;
        });
    }
    return makers.at(name)();
}

/// Whether a number is among "all", "13-" or "7-0x7FFFFFFF".
bool IsAmong(std::uint32_t number, std::string const& range)
{
    long first = 0;
    long last = unsetSchema;
    std::sscanf(range.c_str(), "%li-%li", &first, &last);
    return first <= number && number <= last;
}

/// What layouts.txt tells of the bytes of objects.
struct Book
{
    struct Layout
    {
        std::string schemas;
        std::vector<Case> fields;
    };

    Book()
    {
        for (Case const& row : ReadCases(file, "coordinates")) {
            names[row.at("name")] = {row.at("float"), row.at("double")};
        }
        for (Case const& row : ReadCases(file, "bytes")) {
            names[row.at("name")] = {row.at("bytes"), row.at("bytes")};
        }
        std::map<std::string, std::vector<Case>> own;
        for (Case const& row : ReadCases(file, "fields")) {
            own[row.at("object")].push_back(row);
        }
        for (Case const& row : ReadCases(file, "objects")) {
            std::vector<Case> fields;
            if (row.at("base") != "-") {
                fields = layouts.at(row.at("base")).fields;
            }
            std::vector<Case> const& further = own.at(row.at("object"));
            fields.insert(fields.end(), further.begin(), further.end());
            layouts[row.at("object")] = {row.at("schemas"), fields};
        }
    }

    /// The bytes that a text stands for at a schema number.
    std::string Read(std::string const& text, std::uint32_t schema) const
    {
        bool const isDouble = schema <= 6 || schema == 19 || schema == unsetSchema;
        std::string bytes;
        std::istringstream words(text);
        for (std::string word; words >> word;) {
            auto const name = names.find(word);
            if (name != names.end()) {
                bytes += Read(name->second[isDouble], schema);
                continue;
            }
            std::size_t const star = std::min(word.find('*'), word.size());
            for (int i = star < word.size() ? std::stoi(word.substr(star + 1)) : 1; i > 0; --i) {
                for (std::size_t digit = 0; digit < star; digit += 2) {
                    bytes += static_cast<char>(std::stoi(word.substr(digit, 2), nullptr, 16));
                }
            }
        }
        return bytes;
    }

    static constexpr char const* file = "persistence/layouts.txt";
    std::map<std::string, std::array<std::string, 2>> names;
    std::map<std::string, Layout> layouts;
};

Book const& TheBook()
{
    static Book const book;
    return book;
}

std::string Read(std::string const& text, std::uint32_t schema = today)
{
    return TheBook().Read(text, schema);
}

/// Some fields at a schema number: their bytes in a store and in a load, none where they don't belong to it,
/// and those that Look gives.
struct Part
{
    std::string stored, loaded, held;
    bool isChangedEarly;
};

using Image = std::vector<Part>;

/// What a "new" object holds, or a "filled" one.
Image ImageOf(std::string const& name, char const* state, std::uint32_t schema = today)
{
    Image image;
    for (Case const& row : TheBook().layouts.at(name).fields) {
        std::string const bytes = Read(row.at(state), schema);
        image.push_back({IsAmong(schema, row.at("stored")) ? bytes : "",
                         IsAmong(schema, row.at("loaded")) ? bytes : "", Read(row.at(state)),
                         row.at("field")[0] == '~'});
    }
    return image;
}

std::string Joined(Image const& image, std::string Part::*bytes)
{
    std::string all;
    for (Part const& part : image) {
        all += part.*bytes;
    }
    return all;
}

/// An object that holds what an image tells.
Object Make(std::string const& name, Image const& image)
{
    Object const object = Make(name);
    EXPECT_EQ(object.Load(Joined(image, &Part::held), today), "whole");
    return object;
}

/// Calls `check(name, schema, images)` for every object at every schema number, with the images of a new one
/// and a filled one.
template <typename Check>
void ForEachLayout(Check check)
{
    for (auto const& [name, layout] : TheBook().layouts) {
        for (std::uint32_t const schema : schemas) {
            if (IsAmong(schema, layout.schemas)) {
                SCOPED_TRACE(name + " at " + std::to_string(schema));
                check(name, schema, {ImageOf(name, "new", schema), ImageOf(name, "filled", schema)});
            }
        }
    }
}

} // namespace

TEST(PrimitiveFormTest, StoresItsBytesAtEverySchemaNumber)
{
    ForEachLayout([](std::string const& name, std::uint32_t schema, std::array<Image, 2> const& images) {
        EXPECT_EQ(Make(name).look(), Joined(images[0], &Part::held));
        for (Image const& image : images) {
            EXPECT_EQ(Make(name, image).look(), Joined(image, &Part::held));
            EXPECT_EQ(Make(name, image).Store(schema), Joined(image, &Part::stored));
        }
    });
    for (Case const& row : ReadCases(Book::file, "stores")) {
        auto const schema = static_cast<std::uint32_t>(std::stoul(row.at("schema"), nullptr, 0));
        Object const object = Make(row.at("object"), ImageOf(row.at("object"), "filled"));
        EXPECT_EQ(object.Store(schema), Read(row.at("bytes"), schema)) << row.at("where");
    }
}

TEST(PrimitiveFormTest, LoadsTheFieldsBeforeAnyCut)
{
    std::set<std::string> seen; // bytes of an object, which are cut but once
    ForEachLayout([&](std::string const& name, std::uint32_t schema, std::array<Image, 2> const& images) {
        for (bool const isFilled : {false, true}) {
            Image const& image = images[isFilled];
            Image const& before = images[!isFilled];
            std::string const bytes = Joined(image, &Part::loaded);
            std::size_t const firstCut = seen.insert(name + bytes).second ? 0 : bytes.size();
            for (std::size_t cut = firstCut; cut <= bytes.size(); ++cut) {
                Object const object = Make(name, before);
                std::string const outcome = object.Load(bytes.substr(0, cut), schema);
                bool const mayEndInText = outcome == "ends in a text" && name.rfind("Text", 0) == 0;
                EXPECT_EQ(mayEndInText ? "ends" : outcome, cut < bytes.size() ? "ends" : "whole");
                std::string expected;
                bool isPartlyChanged = false;
                std::size_t end = 0;
                for (std::size_t i = 0; i < image.size(); ++i) {
                    Part const& part = image[i];
                    isPartlyChanged |= part.isChangedEarly && end <= cut && cut < end + part.loaded.size();
                    end += part.loaded.size();
                    expected += (part.loaded.empty() || end > cut ? before[i] : part).held;
                }
                EXPECT_TRUE(isPartlyChanged || object.look() == expected)
                    << "cut to " << cut << ": " << testing::PrintToString(object.look());
            }
        }
    });
}

TEST(PrimitiveFormTest, SceneOfEveryObjectGoesToAFileAndBackAtAnyBufferSize)
{
    TemporaryFile const temporary("scene.bin");
    std::string bytes;
    for (auto const& [name, layout] : TheBook().layouts) {
        bytes += Joined(ImageOf(name, "filled"), &Part::stored);
    }
    for (int const bufferSize : {-1, 0, 1, 2, 3, 7, 8, 9, 10, 64, 65536, 1 << 20}) {
        SCOPED_TRACE(bufferSize);
        auto const store = [&](char const* path) {
            CFile file(path, CFile::modeWrite | CFile::modeCreate);
            CArchive ar(&file, CArchive::store, bufferSize);
            ar.m_nObjectSchema = today;
            for (auto const& [name, layout] : TheBook().layouts) {
                Make(name, ImageOf(name, "filled")).transfer(ar);
            }
            ar.Close();
        };
        store(temporary.path.c_str());
        EXPECT_EQ(ReadFile(temporary.path), bytes);
        EXPECT_THROW(store("/dev/full"), CFileException);
        CFile file(temporary.path.c_str(), CFile::modeRead);
        CArchive ar(&file, CArchive::load, bufferSize);
        ar.m_nObjectSchema = today;
        for (auto const& [name, layout] : TheBook().layouts) {
            Object const object = Make(name);
            object.transfer(ar);
            EXPECT_EQ(object.look(), Joined(ImageOf(name, "filled"), &Part::held)) << name;
        }
        EXPECT_EQ(ar.GetRemaining(), 0u);
    }
}

TEST(PrimitiveFormTest, OlderAndOddBytesLoadAsTold)
{
    for (Case const& row : ReadCases(Book::file, "loads")) {
        SCOPED_TRACE(row.at("where"));
        std::string const name = row.at("object");
        auto const schema = static_cast<std::uint32_t>(std::stoul(row.at("schema"), nullptr, 0));
        std::string const bytes = Read(row.at("bytes"), schema);
        Object const object = Make(name, ImageOf(name, row.at("before").c_str()));
        EXPECT_EQ(object.Load(bytes, schema), row.at("outcome"));
        EXPECT_EQ(object.look(), Read(row.at("held")));
        EXPECT_EQ(object.Store(today), object.look());
        for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
            EXPECT_EQ(Make(name).Load(bytes.substr(0, cut), schema).substr(0, 4), "ends") << "cut to " << cut;
        }
    }
}

TEST(PrimitiveFormTest, CountsBeyondTheArchiveTakeLittleMemory)
{
    AllocationLimit const limit(32 << 20);
    for (Case const& row : ReadCases(Book::file, "hostile counts")) {
        for (std::string const count : {"FFFFFFFF", "00000080", "FFFFFF7F", "00000001"}) {
            SCOPED_TRACE(row.at("where") + " with " + count);
            std::string const bytes = Read(row.at("before") + " " + count + " 01*100");
            EXPECT_EQ(Make(row.at("object")).Load(bytes, today), count[6] >= '8' ? "too long" : "ends");
        }
    }
}

TEST(PrimitiveFormTest, MemoryThatRunsOutIsTheFrameworksException)
{
    ForEachKind([](char const* name, auto kind) {
        std::string const stored = Joined(ImageOf(name, "filled"), &Part::stored);
        CMemFile file(Bytes(stored.begin(), stored.end()));
        auto const load = [&] {
            typename decltype(kind)::Type object, other;
            CArchive ar(&file, CArchive::load);
            ar.m_nObjectSchema = today;
            Serialize(ar, object);
            auto copy(object);
            copy = other;
            other = object;
        };
        EXPECT_NO_THROW(ForEachFailedAllocation([&] { file.SeekToBegin(); }, load, [] {})) << name;
    });
}

TEST(PrimitiveFormTest, ObjectsHoldWhatNoArchiveDoes)
{
    VolumePrimitive volume;
    volume.SetVolume(reinterpret_cast<NComponentVolume<float>*>(&volume));
    auto const load = [&](CArchive& ar) {
        Serialize(ar, volume);
    };
    EXPECT_EQ(LoadBytes(today, {}, load), 3);
    EXPECT_NE(volume.GetVolume(), nullptr);
    EXPECT_EQ(LoadBytes(today, Bytes(4), load), 3);
    EXPECT_EQ(volume.GetVolume(), nullptr);
    Text3DPrimitive label; // its text is stored up to its zero character
    label.SetText(std::wstring(L"H\u00E9\u0100\0i", 5));
    Bytes const bytes = StoredBytes(today, [&](CArchive& ar) { Serialize(ar, label); });
    EXPECT_EQ(Bytes(bytes.begin() + 20, bytes.begin() + 25), (Bytes{3, 'H', 0xE9, '?', 5}));
    TetrahedronPrimitive tetrahedron;
    tetrahedron.SetHiddenFace(2, true);
    EXPECT_TRUE(tetrahedron.GetHiddenFace(2) && !tetrahedron.GetHiddenFace(1));
    EXPECT_THROW(tetrahedron.GetFaceNormal(4), CInvalidArgException);
    EXPECT_THROW(tetrahedron.GetFaceCentroid(-1), CInvalidArgException);
    EXPECT_THROW(TriangleMeshPrimitive().GetVertexAt(0), CInvalidArgException);
}

} // namespace VorlaneTest
