#include "vorlane/foundation/Lifecycle.h"

#include "gtest/gtest.h"

#include <string>
#include <type_traits>

using namespace Vorlane;

namespace {

std::string calls;
ExitFunctionList* openList = nullptr;

void CallA()
{
    calls += 'a';
}

void CallB()
{
    calls += 'b';
}

void AddOneMore()
{
    calls += '+';
    openList->AddFunction(CallA);
}

} // namespace

TEST(LifecycleTest, FunctionsRunAtConstructionAndFromTheLastAddedToTheFirst)
{
    static_assert(!std::is_copy_constructible_v<ExitFunction> && !std::is_copy_assignable_v<EntryFunction>);
    {
        EntryFunction const entry(CallA);
        EntryFunction const noEntry(nullptr);
        ExitFunction const exit(CallB);
        ExitFunction const noExit(nullptr);
        ExitFunctionList const empty;
        ExitFunctionList list;
        openList = &list;
        for (void (*function)() : {CallA, CallB, AddOneMore, CallB, CallB}) {
            list.AddFunction(function);
        }
        EXPECT_EQ(calls, "a");
    }
    EXPECT_EQ(calls, "abb+bab") << "what is added meanwhile is not run";
}

TEST(FeedbackTest, StatusTwoAloneInterrupts)
{
    Feedback feedback;
    EXPECT_EQ(feedback.GetStatus(), 0);
    feedback.Start(10);
    feedback.Update(1, 10);
    feedback.Finished();
    for (int status = 0; status < 5; ++status) {
        feedback.SetStatus(static_cast<Feedback::Status>(status));
        EXPECT_EQ(feedback.CheckInterrupted(), status == 2) << status;
    }
}

TEST(CounterTest, CountsInStepsModulo32BitsAndKeepsTheStepWhenAssigned)
{
    static_assert(sizeof(Counter) == 8);
    EXPECT_EQ(Counter(), 0u);
    EXPECT_EQ(++Counter(), 1u);
    EXPECT_EQ(Counter(5), 0u);
    EXPECT_EQ(++Counter(5), 5u);
    EXPECT_EQ(++Counter(4294967295u, 3), 2u);
    Counter counter(0x100000005u, 0x200000007u);
    Counter before = counter++;
    EXPECT_EQ(before, 5u);
    EXPECT_EQ(counter, 12u);
    EXPECT_EQ(++before, 12u) << "the copy has the step";
    counter = Counter(40, 1);
    EXPECT_EQ(++counter, 47u);
    counter = 3;
    EXPECT_EQ(++counter, 10u);
    counter.Reset(0x100000002u);
    EXPECT_EQ(++counter, 9u);
    counter.Zero();
    EXPECT_EQ(++counter, 7u);
}
