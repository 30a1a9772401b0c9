// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A real solid to slice: a gyroid lattice inside a sphere.

#ifndef GYROIDSPHERE_H
#define GYROIDSPHERE_H

#include <QByteArray>

#include <vector>

namespace zymodel
{

/**
 * A sphere that fills the build plate's smaller side, flattened where it stands on the plate, of
 * which a gyroid lattice is left: sin x cos y + sin y cos z + sin z cos x near 0.
 *
 * Sines and cosines are tabulated per axis, so that a pixel costs a few multiplications.
 */
class GyroidSphere
{
public:
    struct Plate {
        int width; ///< pixels
        int height; ///< pixels
        double pitch; ///< mm per pixel
        int layers;
    };

    /// @param seed moves the lattice inside the sphere.
    GyroidSphere(const Plate &plate, quint32 seed);

    /// mm per layer: the solid's height divided by the number of layers.
    double layerThickness() const { return m_layerThickness; }

    /// The mask of @p layer (from 1): 0 outside, 255 inside, grey where a pixel is partly covered.
    void render(int layer, QByteArray &mask) const;

private:
    struct Axis {
        std::vector<float> sine;
        std::vector<float> cosine;
        std::vector<float> square; ///< of the distance from the sphere's centre, mm^2
    };
    struct Row {
        float sineX; ///< factor of sin x
        float cosineX; ///< factor of cos x
        float constant;
        float room; ///< radius^2 - dy^2 - dz^2, mm^2: inside while dx^2 is less
    };

    static Axis axis(int count, double step, double centre, double phase, double wave);
    void renderRow(const Row &row, uchar *pixels) const;

    Plate m_plate;
    double m_radius; ///< mm
    double m_layerThickness; ///< mm
    Axis m_x;
    Axis m_y;
    Axis m_z;
    float m_edge; ///< grey levels per unit of the lattice's field
    float m_rim; ///< grey levels per mm^2 at the sphere's surface
};

} // namespace zymodel

#endif // GYROIDSPHERE_H
