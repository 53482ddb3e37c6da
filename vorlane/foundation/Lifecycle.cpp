#include "vorlane/foundation/Lifecycle.h"

namespace Vorlane {

EntryFunction::EntryFunction(void (*function)()) : m_function(function)
{
    if (m_function != nullptr) {
        m_function();
    }
}

EntryFunction::~EntryFunction() = default;

// A copy, which only this class itself could make, holds no function and calls nothing.
EntryFunction::EntryFunction(EntryFunction const&) : m_function(nullptr) {}

EntryFunction& EntryFunction::operator=(EntryFunction const&)
{
    return *this;
}

ExitFunction::ExitFunction(void (*function)()) : m_function(function) {}

ExitFunction::~ExitFunction()
{
    if (m_function != nullptr) {
        m_function();
    }
}

// A copy holds no function, so that one function never runs twice.
ExitFunction::ExitFunction(ExitFunction const&) : m_function(nullptr) {}

ExitFunction& ExitFunction::operator=(ExitFunction const&)
{
    return *this;
}

ExitFunctionList::ExitFunctionList() = default;

ExitFunctionList::~ExitFunctionList()
{
    // By index from the last: a function that adds another does not disturb the walk.
    for (int index = m_functions.GetSize() - 1; index >= 0; --index) {
        m_functions[index]();
    }
}

void ExitFunctionList::AddFunction(void (*function)())
{
    m_functions.Add(function);
}

// A copy starts empty.
ExitFunctionList::ExitFunctionList(ExitFunctionList const&) {}

ExitFunctionList& ExitFunctionList::operator=(ExitFunctionList const&)
{
    return *this;
}

Feedback::~Feedback() = default;

void Feedback::Finished() {}

void Feedback::Start(int) {}

void Feedback::Update(int, int) {}

Counter::Counter(unsigned long step) : Counter(0, step) {}

Counter::Counter(unsigned long value, unsigned long step)
    : m_value(static_cast<std::uint32_t>(value)), m_step(static_cast<std::uint32_t>(step))
{}

Counter Counter::operator++(int)
{
    Counter const before(*this);
    ++*this;
    return before;
}

} // namespace Vorlane
