// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Chooses how hard to compress, so that neither the line nor the processor waits for the other.

#include "levelcontroller.h"

#include <algorithm>

namespace zyws
{

namespace
{

constexpr double goodEnough = 1.01; // of the best cycle
constexpr double incompressible = 0.97; // share of a chunk that is left at the first rung
constexpr double worthATry = 1.5; // of the best cycle: a known rung above that is not tried again
constexpr int shortestPatience = 8; // choices
constexpr int longestPatience = 64;
/// Of a message shorter than this, the line's time says more about the round trip than the rate.
constexpr int tellingSize = 32 * 1024; // bytes

} // namespace

void RecentMedian::add(double value)
{
    m_values[static_cast<std::size_t>(m_count++) % m_values.size()] = value;
}

double RecentMedian::value() const
{
    const auto &[first, second, third] = m_values;
    if (m_count == 0)
        return 0;
    if (m_count == 1)
        return first;
    // Of two, the lower: what disturbs a measurement makes it longer.
    const double lower = std::min(first, second);
    return m_count == 2 ? lower : std::max(lower, std::min(std::max(first, second), third));
}

int LevelController::choose()
{
    for (Rung &rung : m_rungs)
        ++rung.age;
    const bool isTrying = m_trial >= 0 && m_rungs[index(m_trial)].age < shortestPatience;
    if (isTrying || !isKnown(m_current) || (!m_packed.time.isKnown() && !m_stored.time.isKnown()))
        return m_current;
    const int chosen = best();
    if (chosen != m_current) {
        m_current = chosen;
        for (Rung &rung : m_rungs)
            rung.patience = shortestPatience;
    }
    const bool isLineSlower = compressionTime(chosen) < lineTime(chosen);
    const int neighbour = isLineSlower ? chosen + 1 : chosen - 1;
    if (chosen > 0 && isDue(0))
        return attempt(0);
    if (neighbour > 0 && neighbour < rungCount && isDue(neighbour))
        return attempt(neighbour);
    return chosen;
}

int LevelController::attempt(int rung)
{
    Rung &tried = m_rungs[index(rung)];
    tried.age = 0;
    tried.share.clear(); // if the file is another by now, this is what shows it
    tried.patience = std::clamp(2 * tried.patience, shortestPatience, longestPatience);
    m_trial = rung;
    return rung;
}

void LevelController::compressed(int rung, int size, qsizetype packedSize, double seconds)
{
    m_rungs[index(rung)].cost.add(seconds / size);
    m_rungs[index(rung)].share.add(static_cast<double>(packedSize) / size);
    m_rungs[index(rung)].age = 0;
    if (rung == m_trial && rung > 0)
        m_trial = -1;
}

/// Threads share the processor with the client, the system and other programs, so that several
/// compress less than so many times as much.
void LevelController::starved(int rung, int size, double seconds)
{
    if (m_workers > 0 && isKnown(rung))
        m_parallel.add(m_rungs[index(rung)].cost.value() * size / seconds);
}

void LevelController::acknowledged(int rung, int size, qsizetype packedSize, double seconds)
{
    if (rung == 0 && m_trial == 0)
        m_trial = -1;
    Line &line = rung == 0 ? m_stored : m_packed;
    const Line &other = rung == 0 ? m_packed : m_stored;
    if (packedSize < tellingSize && line.time.isKnown())
        return;
    const bool isChange = line.age > 0 && other.isFresh();
    if (!line.isFresh())
        line.time.clear();
    line.time.add(seconds / size);
    line.share = static_cast<double>(packedSize) / size;
    ++m_stored.age;
    ++m_packed.age;
    line.age = 0;
    // Two kinds of chunks soon after each other: what the line alone does not explain is inflating.
    if (isChange)
        m_inflating.add(
            std::max(0.0, m_packed.time.value() - m_stored.time.value() * m_packed.share));
}

bool LevelController::Line::isFresh() const
{
    return time.isKnown() && age < shortestPatience;
}

/// Seconds for each byte sent.
double LevelController::rate() const
{
    const bool isStored = m_current == 0
        ? m_stored.time.isKnown() && (m_stored.isFresh() || !m_packed.isFresh())
        : !m_packed.isFresh() && m_stored.isFresh();
    if (isStored)
        return m_stored.time.value();
    return std::max(0.0, m_packed.time.value() - m_inflating.value()) / m_packed.share;
}

double LevelController::compressionTime(int rung) const
{
    const double workers = std::max(1, m_workers);
    const double parallel
        = m_parallel.isKnown() ? std::clamp(m_parallel.value(), 0.5, workers) : workers;
    return m_rungs[index(rung)].cost.value() / parallel;
}

double LevelController::lineTime(int rung) const
{
    return rung == 0 ? rate() : rate() * m_rungs[index(rung)].share.value() + m_inflating.value();
}

double LevelController::cycle(int rung) const
{
    return m_workers > 0 ? std::max(compressionTime(rung), lineTime(rung))
                         : compressionTime(rung) + lineTime(rung);
}

int LevelController::best() const
{
    const RecentMedian &share = m_rungs[1].share;
    if (share.isKnown() && share.value() > incompressible)
        return 0;
    double shortest = cycle(0);
    for (int rung = 1; rung < rungCount; ++rung) {
        if (isKnown(rung))
            shortest = std::min(shortest, cycle(rung));
    }
    int rung = 0;
    while (!isKnown(rung) || cycle(rung) > shortest * goodEnough)
        ++rung;
    return rung;
}

/// Whether a rung other than the current one is to be tried: for the first time, or once more.
bool LevelController::isDue(int rung) const
{
    const Rung &candidate = m_rungs[index(rung)];
    if (!(rung == 0 ? m_stored.time : candidate.share).isKnown())
        return true;
    return candidate.age > candidate.patience && cycle(rung) < worthATry * cycle(m_current);
}

} // namespace zyws
