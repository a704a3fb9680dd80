// A forked process for the length of a measurement, and a processor binding for the length of a scope.
#pragma once

#include <sched.h>
#include <sys/types.h>

#include <functional>

namespace bench {

// Runs body in a child process, which ends with it or by the destructor. Construct it before any thread is started:
// only the forking thread exists in the child.
class Child {
public:
    explicit Child(const std::function<void()>& body);
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    ~Child();

private:
    pid_t m_pid;
};

// Binds the calling thread, and the threads it starts, to one processor until the scope ends; -1 does nothing.
class PinnedScope {
public:
    explicit PinnedScope(int processor);
    PinnedScope(const PinnedScope&) = delete;
    PinnedScope& operator=(const PinnedScope&) = delete;
    ~PinnedScope();

private:
    cpu_set_t m_before{};
};

} // namespace bench
