#pragma once

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <system_error>
#include <type_traits>
#include <utility>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

/// A value that a process shares with its children.
template <class Value>
class Shared {
    static_assert(std::is_trivially_destructible_v<Value>);

public:
    Shared() {
        void* const place = ::mmap(nullptr, sizeof(Value), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (place == MAP_FAILED) {
            throw std::system_error{errno, std::generic_category(), "mmap"};
        }
        value_ = std::construct_at(static_cast<Value*>(place));
    }
    Shared(const Shared&) = delete;
    Shared& operator=(const Shared&) = delete;
    ~Shared() { ::munmap(value_, sizeof(Value)); }

    Value& operator*() const { return *value_; }
    Value* operator->() const { return value_; }

private:
    Value* value_;
};

/// A child process that runs `work` and ends. Waited for at the latest when this goes.
class ChildProcess {
public:
    template <class Work>
    explicit ChildProcess(Work work) : id_{::fork()} {
        if (id_ < 0) {
            throw std::system_error{errno, std::generic_category(), "fork"};
        }
        if (id_ == 0) {
            work();
            ::_exit(EXIT_SUCCESS);
        }
    }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess() {
        if (id_ > 0) {
            static_cast<void>(wait());
        }
    }

    /// The status that the system gives for the child's end.
    [[nodiscard]] int wait() {
        int status = 0;
        while (::waitpid(id_, &status, 0) < 0 && errno == EINTR) {
        }
        id_ = -1;
        return status;
    }

private:
    pid_t id_;
};
