// The worker base: one run at a time, bounded waits, and a worker that may die before its run.
#include "module/console/Thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <grp.h>
#include <memory>
#include <set>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

milliseconds Since(Clock::time_point start) {
    return std::chrono::duration_cast<milliseconds>(Clock::now() - start);
}

// What a test's run and its worker share.
struct Shared {
    std::atomic<int> runs{0};
    std::atomic<int> stopRequests{0};
    std::atomic<bool> stop{false};
    std::atomic<bool> sawAbandoned{false};
    std::promise<void> finished;
};

// Runs until it is told to end.
class Waiting : public CThread {
public:
    using CThread::CThread;
    ~Waiting() override {
        m_stop = true;
        m_stop.notify_all();
        CThread::Wait(WAIT_WITHOUT_LIMIT);
    }
    void Run() override {
        ++m_runs;
        m_thread = std::this_thread::get_id();
        m_stop.wait(false);
    }
    void RequestStop() override {
        ++m_stopRequests;
        m_stop = true;
        m_stop.notify_all();
    }

    std::atomic<int> m_runs{0};
    std::atomic<int> m_stopRequests{0};
    std::atomic<bool> m_stop{false};
    std::atomic<std::thread::id> m_thread{};
};

// Goes on after its worker: ignores RequestStop and works on shared state only.
class Stubborn : public CThread {
public:
    explicit Stubborn(std::shared_ptr<Shared> shared) : m_shared(std::move(shared)) {}
    void RequestStop() override { ++m_shared->stopRequests; }

protected:
    Body GetBody() override {
        return [shared = m_shared](CThreadRun& run) {
            ++shared->runs;
            shared->stop.wait(false);
            shared->sawAbandoned = run.IsAbandoned();
            run.Close();
            shared->finished.set_value();
        };
    }

private:
    std::shared_ptr<Shared> m_shared;
};

void Release(Shared& shared) {
    shared.stop = true;
    shared.stop.notify_all();
}

TEST(Thread, NameIsCopiedAndHasADefault) {
    EXPECT_EQ(CThread().GetName(), "<?>");
    char name[] = "BackupThread";
    const CThread thread(name);
    name[0] = 'X';
    EXPECT_EQ(thread.GetName(), "BackupThread");
}

TEST(Thread, BaseCanBeRunAndDoesNothing) {
    CThread thread;
    EXPECT_TRUE(thread.Start(0, 0));
    EXPECT_TRUE(thread.Wait(WAIT_WITHOUT_LIMIT));
    thread.RequestStop();
}

TEST(Thread, WithoutAThreadThereIsNothingToWaitFor) {
    Waiting thread;
    EXPECT_TRUE(thread.Wait(1000));
    EXPECT_FALSE(thread.IsAlive());
    EXPECT_FALSE(thread.HasThread());
    EXPECT_TRUE(thread.StopAndWait(1000));
    EXPECT_EQ(thread.m_stopRequests, 0);
    thread.Terminate(1);
    EXPECT_FALSE(thread.HasThread());
}

TEST(Thread, RunsOnceOnAnotherThreadAndRefusesASecondStart) {
    Waiting thread;
    EXPECT_TRUE(thread.Start(0, 0));
    EXPECT_TRUE(thread.IsAlive());
    EXPECT_NE(thread.GetThreadId(), std::thread::id());
    EXPECT_FALSE(thread.Start(0, 0));
    EXPECT_TRUE(thread.StopAndWait(WAIT_WITHOUT_LIMIT));
    EXPECT_EQ(thread.m_runs, 1);
    EXPECT_EQ(thread.m_thread, thread.GetThreadId());
    EXPECT_NE(thread.m_thread.load(), std::this_thread::get_id());
}

TEST(Thread, AThreadThatEndedIsHeldUntilItIsClosed) {
    CThread thread;
    ASSERT_TRUE(thread.Start(0, 0));
    ASSERT_TRUE(thread.Wait(WAIT_WITHOUT_LIMIT));
    EXPECT_FALSE(thread.IsAlive());
    EXPECT_TRUE(thread.HasThread());
    EXPECT_FALSE(thread.Start(0, 0));
    thread.CloseThread();
    EXPECT_FALSE(thread.HasThread());
    EXPECT_TRUE(thread.Start(0, 0));
    EXPECT_TRUE(thread.Wait(WAIT_WITHOUT_LIMIT));
}

TEST(Thread, OnlyTheDefaultStackAndFlagsAreAccepted) {
    CThread thread;
    EXPECT_FALSE(thread.Start(65536, 0));
    EXPECT_FALSE(thread.Start(0, 4));
    EXPECT_FALSE(thread.HasThread());
}

// A body that closes its run last can be started again at once, a thousand times.
TEST(Thread, ARunThatClosesItselfCanBeStartedAgain) {
    class Closing : public CThread {
    public:
        std::atomic<int> m_runs{0};

    protected:
        Body GetBody() override {
            return [this](CThreadRun& run) {
                ++m_runs;
                run.Close();
                m_runs.notify_all();
            };
        }
    } thread;
    for (int cycle = 0; cycle < 1000; ++cycle) {
        while (!thread.Start(0, 0))
            std::this_thread::yield();
        thread.m_runs.wait(cycle);
    }
    while (thread.HasThread())
        std::this_thread::yield();
    EXPECT_EQ(thread.m_runs, 1000);
}

TEST(Thread, RunMayCloseTheThreadItself) {
    class Closing : public CThread {
    public:
        void Run() override {
            CloseThread();
            m_done.set_value();
        }
        std::promise<void> m_done;
    } thread;
    ASSERT_TRUE(thread.Start(0, 0));
    thread.m_done.get_future().wait();
    EXPECT_FALSE(thread.HasThread());
}

// Notes on which thread it runs, and holds something as long as the run does.
class Noting : public CThread {
public:
    std::shared_ptr<int> m_held;
    std::thread::id m_ran;

protected:
    Body GetBody() override {
        return [this, held = m_held](CThreadRun&) { m_ran = std::this_thread::get_id(); };
    }
};

TEST(Thread, ARunMayHaveTheThreadOfOneThatEnded) {
    Noting worker;
    std::set<std::thread::id> threads;
    for (int run = 0; run < 20; ++run) {
        worker.m_held = std::make_shared<int>(run);
        const std::weak_ptr<int> held = worker.m_held;
        ASSERT_TRUE(worker.Start(0, 0));
        ASSERT_TRUE(worker.Wait(10000));
        worker.CloseThread();
        worker.m_held.reset();
        const auto start = Clock::now();
        while (!held.expired() && Since(start) < milliseconds(10000))
            std::this_thread::yield();
        EXPECT_TRUE(held.expired()) << "the thread stays, what it ran goes";
        threads.insert(worker.m_ran);
    }
    EXPECT_LT(threads.size(), 20U);
}

TEST(Thread, RunsAtOnceHaveThreadsOfTheirOwn) {
    Waiting one;
    Waiting other;
    ASSERT_TRUE(one.Start(0, 0));
    ASSERT_TRUE(other.Start(0, 0));
    EXPECT_NE(one.GetThreadId(), other.GetThreadId());
}

TEST(Thread, StopAndWaitAsksTheRunToEnd) {
    Waiting thread;
    ASSERT_TRUE(thread.Start(0, 0));
    EXPECT_TRUE(thread.StopAndWait(10000));
    EXPECT_EQ(thread.m_stopRequests, 1);
    EXPECT_FALSE(thread.IsAlive());
    EXPECT_TRUE(thread.StopAndWait(10000)); // it has ended: it is not asked again
    EXPECT_EQ(thread.m_stopRequests, 1);
}

TEST(Thread, WaitIsBoundedByItsTimeout) {
    Waiting thread;
    ASSERT_TRUE(thread.Start(0, 0));
    const auto start = Clock::now();
    EXPECT_FALSE(thread.Wait(50));
    EXPECT_GE(Since(start), milliseconds(50));
    EXPECT_FALSE(thread.Wait(0));
    auto waiter = std::async(std::launch::async, [&] { return thread.Wait(WAIT_WITHOUT_LIMIT); });
    EXPECT_EQ(waiter.wait_for(milliseconds(20)), std::future_status::timeout);
    thread.RequestStop();
    EXPECT_TRUE(waiter.get());
}

TEST(Thread, ClosingDuringARunLetsASecondOneStart) {
    const auto shared = std::make_shared<Shared>();
    Stubborn first(shared);
    ASSERT_TRUE(first.Start(0, 0));
    first.CloseThread();
    EXPECT_FALSE(first.HasThread());
    EXPECT_EQ(first.GetThreadId(), std::thread::id());
    EXPECT_FALSE(first.IsAlive());
    EXPECT_TRUE(first.Wait(1000));

    class Twice : public CThread {
    public:
        std::atomic<int> m_runs{0};
        std::atomic<bool> m_stop{false};
        void Run() override {
            ++m_runs;
            m_runs.notify_all();
            m_stop.wait(false);
            --m_runs;
            m_runs.notify_all();
        }
    } twice;
    ASSERT_TRUE(twice.Start(0, 0));
    twice.CloseThread();
    ASSERT_TRUE(twice.Start(0, 0));
    for (int runs = twice.m_runs; runs < 2; runs = twice.m_runs)
        twice.m_runs.wait(runs);
    twice.m_stop = true;
    twice.m_stop.notify_all();
    for (int runs = twice.m_runs; runs > 0; runs = twice.m_runs)
        twice.m_runs.wait(runs);
    EXPECT_TRUE(twice.Wait(WAIT_WITHOUT_LIMIT));

    Release(*shared);
    shared->finished.get_future().wait();
}

TEST(Thread, AnAbandonedRunCountsAsEnded) {
    const auto shared = std::make_shared<Shared>();
    Stubborn thread(shared);
    ASSERT_TRUE(thread.Start(0, 0));
    const auto start = Clock::now();
    EXPECT_TRUE(thread.StopAndWait(50)); // gives the run up
    EXPECT_GE(Since(start), milliseconds(50));
    EXPECT_EQ(shared->stopRequests, 1);
    EXPECT_FALSE(thread.IsAlive());
    EXPECT_TRUE(thread.Wait(0));
    EXPECT_TRUE(thread.HasThread());
    EXPECT_FALSE(thread.Start(0, 0));
    thread.CloseThread();
    EXPECT_FALSE(thread.HasThread());

    Release(*shared);
    shared->finished.get_future().wait();
    EXPECT_TRUE(shared->sawAbandoned);
}

// An abandoned run that closes itself late must not close the run that came after it.
TEST(Thread, ALateRunDoesNotCloseTheNextOne) {
    class Two : public CThread {
    public:
        std::vector<std::shared_ptr<Shared>> m_states;
        void RequestStop() override {}

    protected:
        Body GetBody() override {
            m_states.push_back(std::make_shared<Shared>());
            return [shared = m_states.back()](CThreadRun& run) {
                shared->stop.wait(false);
                run.Close();
                shared->finished.set_value();
            };
        }
    } thread;
    ASSERT_TRUE(thread.Start(0, 0));
    thread.StopAndWait(0);
    thread.CloseThread();
    ASSERT_TRUE(thread.Start(0, 0));
    Release(*thread.m_states[0]);
    thread.m_states[0]->finished.get_future().wait();
    EXPECT_TRUE(thread.HasThread());
    EXPECT_TRUE(thread.IsAlive());
    Release(*thread.m_states[1]);
    thread.m_states[1]->finished.get_future().wait();
    EXPECT_FALSE(thread.HasThread());
}

TEST(Thread, ARunOutlivesItsWorkerSafely) {
    const auto shared = std::make_shared<Shared>();
    {
        Stubborn thread(shared);
        ASSERT_TRUE(thread.Start(0, 0));
        const auto start = Clock::now();
        while (shared->runs == 0 && Since(start) < milliseconds(10000))
            std::this_thread::yield();
    } // does not wait
    EXPECT_EQ(shared->runs, 1);
    Release(*shared);
    shared->finished.get_future().wait();
    EXPECT_TRUE(shared->sawAbandoned);
}

// The second of two quick triggers comes to nothing.
TEST(Thread, OfTwoTriggersInQuickSuccessionOneRuns) {
    const auto shared = std::make_shared<Shared>();
    Stubborn thread(shared);
    EXPECT_TRUE(thread.Start(0, 0));
    std::this_thread::sleep_for(milliseconds(10));
    EXPECT_FALSE(thread.Start(0, 0));
    Release(*shared);
    shared->finished.get_future().wait();
    EXPECT_EQ(shared->runs, 1);
}

// Without rights, since the limit does not bind a privileged user.
int StartAtTheThreadLimit() {
    constexpr uid_t NOBODY = 65534;
    if (geteuid() == 0 && (setgroups(0, nullptr) != 0 || setgid(NOBODY) != 0 || setuid(NOBODY) != 0))
        return 10;
    rlimit old{};
    if (getrlimit(RLIMIT_NPROC, &old) != 0)
        return 11;
    const rlimit none{0, old.rlim_max};
    if (setrlimit(RLIMIT_NPROC, &none) != 0)
        return 12;
    CThread thread;
    if (thread.Start(0, 0))
        return 1;
    if (thread.HasThread() || thread.IsAlive() || thread.GetThreadId() != std::thread::id())
        return 2;
    if (setrlimit(RLIMIT_NPROC, &old) != 0)
        return 13;
    if (!thread.Start(0, 0) || !thread.Wait(WAIT_WITHOUT_LIMIT))
        return 3;
    return 0;
}

TEST(Thread, AFailedStartLeavesTheWorkerStartable) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process of its own, without threads of earlier tests
    EXPECT_EXIT(_exit(StartAtTheThreadLimit()), ::testing::ExitedWithCode(0), "");
}

} // namespace
