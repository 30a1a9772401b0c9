// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Chooses how hard to compress, so that neither the line nor the processor waits for the other.

#ifndef LEVELCONTROLLER_H
#define LEVELCONTROLLER_H

#include "compressor.h"

#include <array>

namespace zyws
{

/// The median of the last three values: one outlier among them changes nothing.
class RecentMedian
{
public:
    void add(double value);
    void clear() { m_count = 0; }
    bool isKnown() const { return m_count > 0; }
    double value() const;

private:
    std::array<double, 3> m_values{};
    int m_count = 0;
};

/**
 * A controller without clock or thread: it is fed with what each chunk took.
 *
 * A chunk takes as long as its line or its compression, whichever is longer, or both together where
 * nothing overlaps. The controller estimates that for each rung, takes the lowest one within 1 % of
 * the best, and tries the rung below while compression is what takes longer, the rung above while
 * it is the line. It also tries to store, since receivers take time to inflate. What has been tried
 * is tried again from time to time, as the file or the line may have changed.
 */
class LevelController
{
public:
    /// Chunks that are compressed at once; 0 when nothing else happens meanwhile.
    void setWorkers(int count) { m_workers = count; }

    /// The rung for the chunk that is compressed next.
    int choose();
    /// A chunk of @p size bytes became @p packedSize bytes at @p rung in @p seconds.
    void compressed(int rung, int size, qsizetype packedSize, double seconds);
    /// The line has waited for a chunk of @p size bytes at @p rung: the one before was sent
    /// @p seconds earlier.
    void starved(int rung, int size, double seconds);
    /// The line and the printer had @p seconds of work with a chunk of @p size bytes that became
    /// @p packedSize bytes at @p rung.
    void acknowledged(int rung, int size, qsizetype packedSize, double seconds);

private:
    struct Rung {
        RecentMedian cost; ///< seconds for each byte of the file
        RecentMedian share; ///< bytes sent for each byte of the file
        int age = 0; ///< in choices, since it was last tried
        int patience = 0; ///< choices until it is tried again
    };
    /// What acknowledgements took, in seconds for each byte of the file.
    struct Line {
        RecentMedian time;
        double share = 1; ///< bytes sent for each byte of the file
        int age = 0; ///< in acknowledgements, since the last one of this kind
        bool isFresh() const;
    };

    bool isKnown(int rung) const { return rung == 0 || m_rungs[index(rung)].share.isKnown(); }
    static std::size_t index(int rung) { return static_cast<std::size_t>(rung); }
    double rate() const;
    double compressionTime(int rung) const;
    double lineTime(int rung) const;
    double cycle(int rung) const;
    int best() const;
    bool isDue(int rung) const;
    int attempt(int rung);

    std::array<Rung, rungCount> m_rungs;
    Line m_stored;
    Line m_packed; ///< compressed, and so inflated by the printer
    RecentMedian m_inflating; ///< seconds for each byte of the file
    RecentMedian m_parallel; ///< chunks compressed at once, as far as the line has noticed
    int m_workers = 0;
    int m_current = 1;
    int m_trial = -1; ///< the rung that is being tried; -1 for none
};

} // namespace zyws

#endif // LEVELCONTROLLER_H
