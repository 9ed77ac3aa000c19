#include "data/watch.h"

#include <utility>

namespace tradewick
{

namespace
{

Watch *current = nullptr; // databases are read in one thread

} // namespace

Watch::Watch(std::function<bool()> goesOn) : m_goesOn(std::move(goesOn)), m_outer(current)
{
    current = this;
}

Watch::~Watch()
{
    current = m_outer;
}

bool Watch::isAsking()
{
    return current && current->m_isAsking;
}

bool Watch::goesOn()
{
    if (!current || current->m_isAsking)
        return true;
    current->m_isAsking = true;
    const bool goesOn = current->m_goesOn();
    current->m_isAsking = false;
    return goesOn;
}

} // namespace tradewick
