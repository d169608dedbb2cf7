// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Agents a few milliseconds away, on one machine: a relay in a thread of its
// own that takes each datagram on a loopback port of its own and hands it on,
// after the delay, to the agent's port, and the answers back the same way.
// On loopback an agent answers in microseconds, so what calls in parallel
// save (waiting on the network) would not show; through the relay it does.

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <map>
#include <queue>
#include <thread>
#include <tuple>
#include <vector>

using namespace std::chrono_literals;

class UdpDelayLine {
public:
    UdpDelayLine(const std::vector<int>& agentPorts, std::chrono::microseconds delay) : m_delay(delay)
    {
        for (int port : agentPorts) {
            const int s = Bound();
            m_front.push_back({s, port});
            m_ports.push_back(PortOf(s));
        }
        m_thread = std::thread([this] { Run(); });
    }
    ~UdpDelayLine()
    {
        m_stop = true;
        m_thread.join();
        for (const auto& f : m_front)
            close(f.socket);
        for (const auto& [key, s] : m_back)
            close(s);
    }
    // Where managers send to reach the agent of each port, in the same order.
    const std::vector<int>& GetPorts() const { return m_ports; }

private:
    struct Front {
        int socket;
        int agentPort;
    };
    struct Due {
        std::chrono::steady_clock::time_point at;
        int socket;
        sockaddr_in to;
        std::vector<char> data;
        bool operator>(const Due& other) const { return at > other.at; }
    };

    static int Bound()
    {
        const int s = socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        bind(s, reinterpret_cast<sockaddr*>(&address), sizeof address);
        return s;
    }
    static int PortOf(int s)
    {
        sockaddr_in address{};
        socklen_t length = sizeof address;
        getsockname(s, reinterpret_cast<sockaddr*>(&address), &length);
        return ntohs(address.sin_port);
    }
    static sockaddr_in Loopback(int port)
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        return address;
    }

    void Run()
    {
        std::priority_queue<Due, std::vector<Due>, std::greater<>> queue;
        // A socket toward the agent for each manager socket, so answers find their way back.
        std::map<int, std::pair<std::size_t, sockaddr_in>> managerOf;  // back socket -> front, manager
        while (!m_stop) {
            std::vector<pollfd> polled;
            for (const auto& f : m_front)
                polled.push_back(pollfd{f.socket, POLLIN, 0});
            for (const auto& [key, s] : m_back)
                polled.push_back(pollfd{s, POLLIN, 0});
            // Woken by a datagram, by the next one due, or to look at m_stop.
            auto wait = std::chrono::nanoseconds(5ms);
            if (!queue.empty())
                wait = std::clamp(std::chrono::nanoseconds(queue.top().at - std::chrono::steady_clock::now()),
                                  std::chrono::nanoseconds(0), wait);
            const timespec timeout{0, static_cast<long>(wait.count())};
            ppoll(polled.data(), polled.size(), &timeout, nullptr);
            const auto now = std::chrono::steady_clock::now();
            char buffer[65536];
            for (std::size_t i = 0; i < m_front.size(); ++i) {
                sockaddr_in from{};
                socklen_t length = sizeof from;
                ssize_t n;
                while ((n = recvfrom(m_front[i].socket, buffer, sizeof buffer, 0, reinterpret_cast<sockaddr*>(&from),
                                     &length))
                       > 0) {
                    const auto key = std::make_tuple(i, from.sin_port);
                    auto back = m_back.find(key);
                    if (back == m_back.end()) {
                        back = m_back.emplace(key, Bound()).first;
                        managerOf[back->second] = {i, from};
                    }
                    queue.push(Due{now + m_delay, back->second, Loopback(m_front[i].agentPort),
                                   std::vector<char>(buffer, buffer + n)});
                }
            }
            for (const auto& [key, s] : m_back) {
                ssize_t n;
                while ((n = recv(s, buffer, sizeof buffer, 0)) > 0) {
                    const auto& [front, manager] = managerOf[s];
                    queue.push(
                        Due{now + m_delay, m_front[front].socket, manager, std::vector<char>(buffer, buffer + n)});
                }
            }
            while (!queue.empty() && queue.top().at <= std::chrono::steady_clock::now()) {
                const Due& due = queue.top();
                sendto(due.socket, due.data.data(), due.data.size(), 0, reinterpret_cast<const sockaddr*>(&due.to),
                       sizeof due.to);
                queue.pop();
            }
        }
    }

    std::chrono::microseconds m_delay;
    std::vector<Front> m_front;
    std::vector<int> m_ports;
    std::map<std::tuple<std::size_t, in_port_t>, int> m_back;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};
