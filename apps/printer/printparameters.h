// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The six print parameters and the time that a layer takes with them.

#ifndef PRINTPARAMETERS_H
#define PRINTPARAMETERS_H

#include <QString>

#include <array>

namespace zymodel
{
struct ModelHeader;
}

namespace zyprinter
{

/**
 * Each parameter has a value that a slicer has set, or else the one that the model recommends, or
 * else the machine's own. Texts stay as they were set: a slicer reads back what it wrote.
 */
class PrintParameters
{
public:
    enum Id {
        InitExposure, ///< s; exposure of the bottom layers
        DelayLight, ///< s; rest between a movement and the next exposure
        PrintExposure, ///< s; exposure of the other layers
        PrintHeight, ///< mm; lift between layers
        EleSpeed, ///< mm/min; speed of that lift
        BottomExposureNum, ///< number of bottom layers
    };
    static constexpr std::array<Id, 6> all{InitExposure, DelayLight, PrintExposure,
                                           PrintHeight,  EleSpeed,   BottomExposureNum};

    PrintParameters();

    QString text(Id id) const;
    double value(Id id) const;

    /// Sets a parameter; false, and nothing changes, when @p text is no number in its range.
    bool set(Id id, const QString &text);
    /// Takes the model's values wherever a slicer has set none.
    void recommend(const zymodel::ModelHeader &header);

    /// How long @p layer (from 1) takes, in seconds.
    double layerTime(int layer) const;
    /// How long the layers after @p layer up to @p count take, in seconds.
    double timeAfter(int layer, int count) const;

private:
    std::array<QString, all.size()> m_set;
    std::array<QString, all.size()> m_recommended;
};

} // namespace zyprinter

#endif // PRINTPARAMETERS_H
