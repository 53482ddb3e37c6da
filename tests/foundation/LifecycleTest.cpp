#include "vorlane/foundation/Lifecycle.h"

#include "gtest/gtest.h"

#include <string>
#include <type_traits>

using namespace Vorlane;

namespace {

std::string calls;

void CallA()
{
    calls += 'a';
}

void CallB()
{
    calls += 'b';
}

ExitFunctionList* openList = nullptr;

void AddOneMore()
{
    calls += '+';
    openList->AddFunction(CallA);
}

} // namespace

TEST(LifecycleTest, FunctionsRunAtConstructionAndDestruction)
{
    calls.clear();
    {
        EntryFunction const entry(CallA);
        EntryFunction const noEntry(nullptr);
        EXPECT_EQ(calls, "a");
        ExitFunction const exit(CallA);
        ExitFunction const noExit(nullptr);
        EXPECT_EQ(calls, "a");
    }
    EXPECT_EQ(calls, "aa");
    static_assert(!std::is_copy_constructible_v<ExitFunction> && !std::is_copy_assignable_v<EntryFunction>);
}

TEST(LifecycleTest, ListRunsFromTheLastAddedToTheFirst)
{
    calls.clear();
    {
        ExitFunctionList const empty;
        ExitFunctionList list;
        openList = &list;
        for (void (*function)() : {CallA, CallB, AddOneMore, CallB, CallB}) {
            list.AddFunction(function);
        }
        EXPECT_EQ(calls, "");
    }
    EXPECT_EQ(calls, "bb+ba") << "what is added meanwhile is not run";
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

TEST(CounterTest, CountsInStepsModulo32Bits)
{
    static_assert(sizeof(Counter) == 8);
    Counter byFive(5);
    EXPECT_EQ(byFive, 0u);
    EXPECT_EQ(++byFive, 5u);
    EXPECT_EQ(++byFive, 10u);

    struct Row
    {
        unsigned long value, step, next;
    };
    for (Row const& row : {Row{10, 5, 15}, Row{7, 0, 7}, Row{4294967295u, 1, 0}, Row{4294967295u, 3, 2},
                           Row{0x100000005u, 0x200000001u, 6}}) {
        Counter counter(row.value, row.step);
        Counter const before = counter++;
        EXPECT_EQ(before, row.value & 0xFFFFFFFFu);
        EXPECT_EQ(counter, row.next) << row.value << " + " << row.step;
        Counter copy(before);
        EXPECT_EQ(++copy, row.next) << "the copy keeps the step";
    }
}

TEST(CounterTest, AssignmentsSetTheValueAndKeepTheStep)
{
    Counter counter(100, 7);
    counter = Counter(40, 1);
    EXPECT_EQ(++counter, 47u);
    counter = 3;
    EXPECT_EQ(++counter, 10u);
    counter.Reset(0x100000000u);
    EXPECT_EQ(counter, 0u);
    ++counter;
    counter.Zero();
    EXPECT_EQ(counter, 0u);
}
