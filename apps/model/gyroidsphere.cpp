// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// A real solid to slice: a gyroid lattice inside a sphere.

#include "gyroidsphere.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace zymodel
{

namespace
{

constexpr double pi = 3.14159265358979323846;
constexpr double plateUse = 0.97; // of the smaller side
constexpr double standing = 0.9; // the sphere is cut at this part of its radius below the centre
constexpr double cells = 5; // lattice cells along the diameter
constexpr float wall = 0.32F; // half the wall's thickness, in units of the lattice's field
constexpr double meanGradient = 1.55; // of the lattice's field near its walls, per radian
constexpr float lit = 255;

} // namespace

GyroidSphere::GyroidSphere(const Plate &plate, quint32 seed)
    : m_plate(plate), m_radius(std::min(plate.width, plate.height) * plate.pitch * plateUse / 2),
      m_layerThickness(m_radius * (1 + standing) / plate.layers)
{
    const double wave = 2 * pi * cells / (2 * m_radius);
    std::minstd_rand random(seed);
    std::uniform_real_distribution<double> phase(0, 2 * pi);
    m_x = axis(plate.width, plate.pitch, plate.width * plate.pitch / 2, phase(random), wave);
    m_y = axis(plate.height, plate.pitch, plate.height * plate.pitch / 2, phase(random), wave);
    m_z = axis(plate.layers, m_layerThickness, m_radius * standing, phase(random), wave);
    m_edge = float(lit / (meanGradient * wave * plate.pitch));
    m_rim = float(lit / (2 * m_radius * plate.pitch));
}

GyroidSphere::Axis GyroidSphere::axis(int count, double step, double centre, double phase,
                                      double wave)
{
    Axis axis;
    for (int i = 0; i < count; ++i) {
        const double distance = (i + 0.5) * step - centre;
        axis.sine.push_back(float(std::sin(wave * distance + phase)));
        axis.cosine.push_back(float(std::cos(wave * distance + phase)));
        axis.square.push_back(float(distance * distance));
    }
    return axis;
}

void GyroidSphere::render(int layer, QByteArray &mask) const
{
    mask.fill('\0', m_plate.width * m_plate.height);
    auto *pixels = reinterpret_cast<uchar *>(mask.data());
    const auto z = std::size_t(layer - 1);
    const auto radiusSquare = float(m_radius * m_radius);
    for (std::size_t y = 0; y < m_y.sine.size(); ++y, pixels += m_plate.width) {
        const Row row{m_y.cosine[y], m_z.sine[z], m_y.sine[y] * m_z.cosine[z],
                      radiusSquare - m_y.square[y] - m_z.square[z]};
        if (row.room > 0)
            renderRow(row, pixels);
    }
}

void GyroidSphere::renderRow(const Row &row, uchar *pixels) const
{
    // Only the pixels inside the sphere and one more on each side.
    const int centre = m_plate.width / 2;
    const int reach = std::min(centre, int(std::sqrt(row.room) / float(m_plate.pitch)) + 2);
    const int end = std::min(m_plate.width, centre + reach + 1);
    const float *const sine = m_x.sine.data();
    const float *const cosine = m_x.cosine.data();
    const float *const square = m_x.square.data();
    const float edge = m_edge;
    const float rim = m_rim;
    for (int x = centre - reach; x < end; ++x) {
        const float field = row.sineX * sine[x] + row.cosineX * cosine[x] + row.constant;
        const float lattice = (wall - std::fabs(field)) * edge;
        const float sphere = (row.room - square[x]) * rim;
        const float covered = std::min(lattice, sphere) + lit / 2;
        pixels[x] = uchar(std::max(0.0F, std::min(lit, covered)));
    }
}

} // namespace zymodel
