// SlowLine NAMESPACE DELAY LOSS: a line between this network namespace and another one, given as a file, that delivers
// each packet so many milliseconds late and loses so many of a hundred. Its ends are the interfaces "slow"; it prints
// "ready" when they are there. Not every kernel can do this by itself.

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <deque>
#include <iostream>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <linux/if_tun.h>
#include <net/if.h>
#include <poll.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;
constexpr Clock::duration longestWait = std::chrono::hours{1};

struct Packet {
    Clock::time_point due;
    int to;
    std::vector<char> bytes;
};

int require(int result, const char* what) {
    if (result < 0) {
        throw std::system_error{errno, std::generic_category(), what};
    }
    return result;
}

int openEnd() {
    const int end = require(::open("/dev/net/tun", O_RDWR | O_CLOEXEC), "/dev/net/tun");
    ifreq wanted{};
    std::strcpy(wanted.ifr_name, "slow");
    wanted.ifr_flags = IFF_TUN | IFF_NO_PI;
    require(::ioctl(end, TUNSETIFF, &wanted), "the interface");
    return end;
}

}  // namespace

int main(int count, char** words) try {
    if (count != 4) {
        throw std::invalid_argument{"usage: SlowLine NAMESPACE DELAY LOSS"};
    }
    const std::chrono::milliseconds delay{std::stol(words[2])};
    const int loss = std::stoi(words[3]);
    const int here = openEnd();
    require(::setns(require(::open(words[1], O_RDONLY | O_CLOEXEC), words[1]), CLONE_NEWNET), words[1]);
    const int there = openEnd();
    std::cout << "ready" << std::endl;

    // The same packets in the same order are lost each time.
    std::minstd_rand chance;  // NOLINT(cert-msc32-c,cert-msc51-cpp)
    std::uniform_int_distribution<int> percent{0, 99};
    std::deque<Packet> underWay;
    std::array<char, 65536> room{};
    for (;;) {
        std::array<pollfd, 2> ends{pollfd{here, POLLIN, 0}, pollfd{there, POLLIN, 0}};
        const auto left = underWay.empty() ? Clock::duration::max() : underWay.front().due - Clock::now();
        const auto wait =
            std::chrono::ceil<std::chrono::milliseconds>(std::clamp(left, Clock::duration{0}, longestWait));
        require(::poll(ends.data(), ends.size(), static_cast<int>(wait.count())), "poll");
        for (const auto& end : ends) {
            if (end.revents == 0) {
                continue;
            }
            const auto size = require(static_cast<int>(::read(end.fd, room.data(), room.size())), "read");
            if (percent(chance) >= loss) {
                underWay.push_back(
                    {Clock::now() + delay, end.fd == here ? there : here, {room.data(), room.data() + size}});
            }
        }
        for (; !underWay.empty() && underWay.front().due <= Clock::now(); underWay.pop_front()) {
            // What an interface that is down doesn't take is lost.
            static_cast<void>(
                ::write(underWay.front().to, underWay.front().bytes.data(), underWay.front().bytes.size()));
        }
    }
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
