// Numbers and points drawn from a generator of its own (small letters) and from the default generator
// (capitals), beside a model: `s4294967301 iunp R`.
//
// `i` draws an integer, `u` and `n` a uniform and a normal number, `p` a point, `t` a point of another's
// length; `d` takes the sequences as they are without arguments. `s` sets the next seed, `r` goes back to the
// first one, `g` makes a new generator, `c` goes on with a copy.

#include "fuzz/StreamChecks.h"
#include "vorlane/numerics/RandomInternal.h"

#include <cctype>
#include <cstdlib>
#include <string>

using Spatia::Point3d;
using Vorlane::NormalRandomSequence;
using Vorlane::RandomInteger;
using Vorlane::UniformRandomSequence;
using VorlaneFuzz::Require;
using VorlaneFuzz::StreamModel;

namespace {

bool AreNear(Point3d const& point, Point3d const& expected, double tolerance)
{
    return (point - expected).Length() <= tolerance;
}

void RequireTurned(Point3d const& turned, Point3d const& from, Point3d const& direction)
{
    double const length = from.Length();
    Require(
        AreNear(turned, length == 0 ? direction : (length / direction.Length()) * direction, 1e-15 * length));
}

Point3d const lengths[] = {{3, 4, 0}, {0, 0, 0}, {1e-3, 0, 0}};

void DrawFrom(RandomInteger& generator, StreamModel& model, char letter)
{
    UniformRandomSequence uniform(generator, -1, 1), sameUniform(uniform);
    NormalRandomSequence normal(generator, 3, 0.5), sameNormal(normal);
    if (letter == 'i') {
        Require(generator() == model.Integer());
    } else if (letter == 'u') {
        Require(sameUniform() == model.Uniform(-1, 1) && uniform() == model.Uniform(-1, 1));
    } else if (letter == 'n') {
        Require(sameNormal() == model.Normal(3, 0.5) && normal() == model.Normal(3, 0.5));
    } else if (letter == 'p') {
        Require(AreNear(Vorlane::Random(uniform), model.Point(), 0));
    } else if (letter == 't') {
        for (Point3d const& from : lengths) {
            RequireTurned(Vorlane::Randomize(from, uniform), from, model.Point());
        }
    }
}

void DrawFromDefault(StreamModel& model, char letter)
{
    if (letter == 'I') {
        Require(Vorlane::defaultGenerator() == model.Integer());
    } else if (letter == 'U') {
        Require(UniformRandomSequence(-2.5, 7)() == model.Uniform(-2.5, 7));
    } else if (letter == 'N') {
        Require(NormalRandomSequence(3, 0.5)() == model.Normal(3, 0.5));
    } else if (letter == 'D') {
        Require(UniformRandomSequence()() == model.Uniform(0, 1));
        Require(NormalRandomSequence()() == model.Normal(0, 1));
    } else if (letter == 'P') {
        Require(AreNear(Vorlane::Random(), model.Point(), 0));
    } else if (letter == 'T') {
        for (Point3d const& from : lengths) {
            RequireTurned(Vorlane::Randomize(from), from, model.Point());
        }
    }
}

class Streams
{
public:
    Streams() { RandomInteger::SetDefaultSeed(1); }

    void Step(char letter, unsigned long number)
    {
        if (letter == 's') {
            m_generator.SetNextSeed(number);
            m_model.SetNextSeed(number);
        } else if (letter == 'r') {
            m_generator.Reset();
            m_model.SetNextSeed(m_model.GetFirstSeed());
        } else if (letter == 'g') {
            m_generator = RandomInteger(number);
            m_model = StreamModel(number);
        } else if (letter == 'c') {
            RandomInteger const copy(m_generator);
            m_generator(); // leaves the copy where it was
            m_generator = copy;
        } else if (letter == 'S') {
            Require(RandomInteger::SetDefaultSeed(number) == m_defaultModel.GetNextSeed());
            m_defaultModel.SetNextSeed(number);
        } else if (letter == 'R') {
            Vorlane::defaultGenerator.Reset();
            m_defaultModel.SetNextSeed(1);
        }
        DrawFrom(m_generator, m_model, letter);
        DrawFromDefault(m_defaultModel, letter);
        Require(m_generator.GetFirstSeed() == m_model.GetFirstSeed());
        Require(m_generator.GetNextSeed() == m_model.GetNextSeed());
        Require(RandomInteger::GetDefaultSeed() == m_defaultModel.GetNextSeed());
    }

private:
    RandomInteger m_generator;
    StreamModel m_model{1};
    StreamModel m_defaultModel{1};
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string const text(reinterpret_cast<char const*>(data), size < 200 ? size : 200);
    Streams streams;
    for (char const* next = text.c_str(); *next != '\0';) {
        char const letter = *next++;
        char* end = nullptr;
        unsigned long const number =
            std::isdigit(static_cast<unsigned char>(*next)) != 0 ? std::strtoul(next, &end, 10) : 0;
        next = end != nullptr ? end : next;
        streams.Step(letter, number);
        VorlaneFuzz::CheckStreams(number, letter, -letter / 3.0, 3);
    }
    return 0;
}
