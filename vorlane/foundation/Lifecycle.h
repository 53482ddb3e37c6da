#ifndef VORLANE_FOUNDATION_LIFECYCLE_H
#define VORLANE_FOUNDATION_LIFECYCLE_H

/// \file
/// Small services for the modules above the library: functions tied to the life of an object, progress and
/// interruption, and a stepping counter. Nothing here locks; an object is used from one thread at a time.

#include "vorlane/Export.h"
#include "vorlane/foundation/FrameworkSurface.h"

#include <cstdint>

namespace Vorlane {

/// Calls a function when it is constructed. At namespace scope it runs the function at the module's load.
class VORLANE_EXPORT EntryFunction
{
public:
    /// Calls `function` at once; a null pointer calls nothing.
    explicit EntryFunction(void (*function)());
    virtual ~EntryFunction();

private:
    EntryFunction(EntryFunction const&);
    EntryFunction& operator=(EntryFunction const&);

    void (*m_function)();
};

/// Calls a function when it is destroyed. At namespace scope it runs the function at the module's unload.
class VORLANE_EXPORT ExitFunction
{
public:
    /// Keeps `function` for the destructor; a null pointer calls nothing.
    explicit ExitFunction(void (*function)());
    virtual ~ExitFunction();

private:
    ExitFunction(ExitFunction const&);
    ExitFunction& operator=(ExitFunction const&);

    void (*m_function)();
};

/// Calls functions when it is destroyed, from the last added to the first. At namespace scope it runs them at
/// the module's unload.
class VORLANE_EXPORT ExitFunctionList
{
public:
    /// Without functions.
    ExitFunctionList();
    virtual ~ExitFunctionList();

    /// Appends `function`, which must not be null; the same function may be added more than once. One that is
    /// added while the list is being destroyed is not called.
    ///
    /// \throws CMemoryException if there is no room; the list is then as it was.
    void AddFunction(void (*function)());

private:
    ExitFunctionList(ExitFunctionList const&);
    ExitFunctionList& operator=(ExitFunctionList const&);

    CArray<void (*)(), void (*)()> m_functions;
};

/// The base of progress reports. Whoever wants to stop some work sets the status to `interrupted`; the code
/// that works polls CheckInterrupted. No algorithm of this library takes a Feedback.
class VORLANE_EXPORT Feedback
{
public:
    /// What a piece of work is doing.
    enum Status : int
    {
        running = 0,    ///< the status of a new object
        finished = 1,   ///< for derived classes
        interrupted = 2 ///< somebody asks the work to stop
    };

    /// With the status `running`.
    Feedback() = default;
    virtual ~Feedback();

    /// These do nothing here; a derived class reports with them and settles what the numbers mean.
    virtual void Finished();
    virtual void Start(int extent);
    virtual void Update(int position, int extent);

    /// The status, which may change from any to any other.
    Status GetStatus() const { return m_status; }
    void SetStatus(Status status) { m_status = status; }

    /// Whether the status is `interrupted`.
    bool CheckInterrupted() const { return m_status == interrupted; }

private:
    Status m_status = running;
};

/// Counts in steps, modulo 2 to the power of 32; wider arguments are taken modulo 2 to the power of 32.
class VORLANE_EXPORT Counter
{
public:
    /// Value 0, step 1.
    Counter() = default;

    /// Value 0 and this step. (The assignment from a number sets the value instead.)
    explicit Counter(unsigned long step);

    /// This value and this step.
    Counter(unsigned long value, unsigned long step);

    /// Copies value and step.
    Counter(Counter const&) = default;

    /// Copies the value only; the step stays.
    Counter& operator=(Counter const& other)
    {
        m_value = other.m_value;
        return *this;
    }

    /// Sets the value; the step stays.
    Counter& operator=(unsigned long value)
    {
        Reset(value);
        return *this;
    }

    /// The value.
    operator unsigned long() const { return m_value; }

    /// Adds the step.
    Counter& operator++()
    {
        m_value += m_step;
        return *this;
    }

    /// Adds the step and gives a copy, with the step, from before.
    Counter operator++(int);

    /// Sets the value; the step stays.
    void Reset(unsigned long value) { m_value = static_cast<std::uint32_t>(value); }

    /// Sets the value to 0; the step stays.
    void Zero() { m_value = 0; }

private:
    std::uint32_t m_value = 0;
    std::uint32_t m_step = 1;
};

} // namespace Vorlane

#endif
