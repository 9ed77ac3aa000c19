// Reading that takes long, and whoever may end it.
#pragma once

#include <functional>

namespace tradewick
{

// As long as it lives, everything that waits for rows asks it, many times a second, whether to go on. Once it is told
// no, the reading ends with a DataError of the number `stopped`, and the connection can be used again. What is asked
// must not use a connection itself, which throws DataError. What comes over ODBC comes whole, and asks nobody.
class Watch
{
public:
    static constexpr int stopped = 3712; // the number of a cancelled operation

    explicit Watch(std::function<bool()> goesOn);
    ~Watch();
    Watch(const Watch &) = delete;
    Watch &operator=(const Watch &) = delete;

    // What it says; without one reading goes on.
    static bool goesOn();
    // Whether it is being asked at this moment: connections refuse to be used then.
    static bool isAsking();

private:
    const std::function<bool()> m_goesOn;
    Watch *const m_outer;
    bool m_isAsking = false;
};

} // namespace tradewick
