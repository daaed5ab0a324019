#include <Platform/Http/Transfers/WakeUpPair.hpp>

#ifdef __linux__

#include <algorithm>
#include <charconv>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

#include <fcntl.h>
#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

namespace Tarnwick_API::Platform {

namespace {

/// A local socket that executed programs would inherit, by how many bytes have come and how much is not taken yet.
struct Candidate {
    int socket;
    int received = 0;
    int sent = 0;
    bool mayReceive = true;
    bool maySend = true;

    [[nodiscard]] bool look() noexcept {
        return ::ioctl(socket, FIONREAD, &received) == 0 && ::ioctl(socket, SIOCOUTQ, &sent) == 0;
    }
};

bool isLocalStream(int descriptor) noexcept {
    const auto is = [descriptor](int option, int wanted) {
        int value = 0;
        socklen_t length = sizeof value;
        return ::getsockopt(descriptor, SOL_SOCKET, option, &value, &length) == 0 && value == wanted;
    };
    return is(SO_DOMAIN, AF_UNIX) && is(SO_TYPE, SOCK_STREAM);
}

std::vector<Candidate> inheritedLocalSockets() {
    std::vector<Candidate> found;
    for (const auto& entry : std::filesystem::directory_iterator{"/proc/self/fd"}) {
        const auto name = entry.path().filename().string();
        int descriptor = -1;
        std::from_chars(name.data(), name.data() + name.size(), descriptor);
        const int flags = ::fcntl(descriptor, F_GETFD);
        if (flags >= 0 && (flags & FD_CLOEXEC) == 0 && isLocalStream(descriptor)) {
            found.push_back({descriptor});
        }
    }
    return found;
}

void note(std::vector<Candidate>& candidates, int wakes) {
    std::erase_if(candidates, [wakes](Candidate& each) {
        const int sentBefore = each.sent;
        if (!each.look()) {
            return true;
        }
        each.mayReceive = each.mayReceive && each.received == wakes && each.sent == 0;
        each.maySend = each.maySend && each.received == 0 && (wakes == 0 ? each.sent == 0 : each.sent > sentBefore);
        return !each.mayReceive && !each.maySend;
    });
}

}  // namespace

void keepFromExecutedPrograms(CURLM* multi) noexcept {
    // Each call to wake is one byte, and a poll takes them all: no socket of another thread's has just as many bytes
    // each time.
    constexpr int wakes = 5;
    try {
        auto candidates = inheritedLocalSockets();
        note(candidates, 0);
        for (int count = 1; count <= wakes; ++count) {
            curl_multi_wakeup(multi);
            note(candidates, count);
        }
        curl_multi_poll(multi, nullptr, 0, 0, nullptr);
        note(candidates, 0);
        const auto receives = [](const Candidate& each) { return each.mayReceive; };
        if (candidates.size() != 2 || std::ranges::count_if(candidates, receives) != 1) {
            return;
        }
        for (const auto& each : candidates) {
            ::fcntl(each.socket, F_SETFD, FD_CLOEXEC);
        }
    } catch (const std::exception&) {
        // No list of descriptors, or no memory for it.
        return;
    }
}

}  // namespace Tarnwick_API::Platform

#else

namespace Tarnwick_API::Platform {

void keepFromExecutedPrograms(CURLM* /*multi*/) noexcept {
}

}  // namespace Tarnwick_API::Platform

#endif
