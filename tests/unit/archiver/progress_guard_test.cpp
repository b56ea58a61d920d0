// Progress guards and their children: how a sub-operation's range maps onto
// its parent's, and who raises the completion event.
#include "archive_support.h"
#include "corr_engine/progress_guard.h"

using archiver_test::recording_progress;

TEST(ProgressGuard, ExportWorkerSplitMapsTheChildOntoTheLastTwoThirds)
{
    recording_progress bar;
    {
        corr_engine::progress_guard_t guard(&bar, L"loading", 3);
        EXPECT_EQ(3, bar.total);
        guard.progressed(1);
        auto child = guard.create_child(2, 1);
        {
            corr_engine::progress_guard_t inner(child.get(), L"packing", 1000);
            EXPECT_EQ(1000, child->get_total());
            inner.progressed(250);
            EXPECT_DOUBLE_EQ(1.5, bar.position);
            inner.progressed(5000); // past the end: stops at the child's end
            EXPECT_DOUBLE_EQ(3.0, bar.position);
            inner.progressed(-10); // never backwards
            EXPECT_DOUBLE_EQ(3.0, bar.position);
        }
        EXPECT_EQ(0, bar.firsts) << "only the outermost guard ends the operation";
    }
    EXPECT_EQ(1, bar.firsts);
    EXPECT_EQ((std::vector<std::wstring>{L"loading", L"packing"}), bar.texts);
}

TEST(ProgressGuard, ANewPhaseOfTheChildUsesWhatIsLeftOfItsSpan)
{
    recording_progress bar;
    corr_engine::progress_guard_t guard(&bar, L"", 10);
    auto child = guard.create_child(4, 2);
    child->progressed(1); // half of the child's initial total
    EXPECT_DOUBLE_EQ(2.0, bar.position);
    child->begin(L"phase two", 100);
    child->progressed(50); // half of the remaining two units
    EXPECT_DOUBLE_EQ(3.0, bar.position);
    child->progressed(50);
    EXPECT_DOUBLE_EQ(4.0, bar.position);
}

TEST(ProgressGuard, ChildForwardsCancellationAndTheSecondEventOnly)
{
    recording_progress bar;
    corr_engine::progress_guard_t guard(&bar, L"", 1);
    auto child = guard.create_child(1);
    EXPECT_FALSE(child->is_cancelled());
    bar.cancelled = true;
    EXPECT_TRUE(child->is_cancelled());
    EXPECT_TRUE(guard.is_cancelled());
    child->raise_first();
    child->raise_second();
    EXPECT_EQ(0, bar.firsts);
    EXPECT_EQ(1, bar.seconds);
}

TEST(ProgressGuard, NullProgressIsSilent)
{
    corr_engine::progress_guard_t guard(nullptr, L"nothing", 5);
    guard.progressed(1);
    EXPECT_FALSE(guard.is_cancelled());
    auto child = guard.create_child(2);
    child->begin(L"x", 10);
    child->progressed(10);
    EXPECT_FALSE(child->is_cancelled());
}
