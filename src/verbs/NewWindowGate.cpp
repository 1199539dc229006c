#include "NewWindowGate.h"

bool NewWindowGate::admit(bool userInitiated, double now)
{
    if (userInitiated)
        return true;
    // The clock counts from midnight: a step back means a new day, and so a new burst.
    const double since = now - m_lastRequest;
    const bool sameBurst = m_lastRequest >= 0 && since >= 0 && since < kBurstSeconds;
    m_lastRequest = now;
    if (m_opening || (m_limitReached && sameBurst))
        return false;
    m_limitReached = false;
    m_opening = true;
    return true;
}

void NewWindowGate::opened(bool atLimit, double now)
{
    if (!m_opening)
        return; // the user's own request: it starts no burst
    m_opening = false;
    m_limitReached = m_limitReached || atLimit;
    m_lastRequest = now; // the burst goes on from the moment the question was answered
}
