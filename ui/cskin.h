// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QImage>
#include <QRect>
#include <QSize>
#include <QString>

namespace Dravo {

// A bitmap that stretches to any size by nine pieces. Row 0 and column 0 of the source are
// marker lines: the first run of opaque black pixels in each marks the columns and rows that
// stretch; everything else is a fixed border. The result of the last resize is cached.
//
// Resizing takes the device pixel ratio it is for: the result has the logical size times the
// ratio in pixels and is tagged with the ratio. A skin loaded from a file then takes its source
// from the name@2x or name@3x file beside it (see artImage()), whose marker lines stay one pixel
// wide; borders are scaled by the ratio over the source's scale, and copied 1:1 when they match.
// A skin made from an image has that one source, at the image's devicePixelRatio().
class CSkin
{
public:
    CSkin();
    explicit CSkin(const QImage& image);
    CSkin(const QImage& image, const QSize& size);
    CSkin(const QImage& image, int iWidth, int iHeight);
    // Loads the image from a file (or resource) first; an invalid size skips the resize.
    explicit CSkin(const QString& strFileName, const char* pFormat = nullptr,
                   const QSize& size = QSize());
    CSkin(const CSkin& other);
    CSkin& operator=(const CSkin& other);
    virtual ~CSkin();

    // Size is logical; the same size and ratio as last time keep the image made then.
    void resize(const QSize& size, qreal dpr = 1.0);
    void resize(const QRect& rect, qreal dpr = 1.0);

    bool hasScaledImage() const { return !m_scaledImage.isNull(); }
    const QImage& scaledImage() const { return m_scaledImage; }
    const QImage& sourceImage() const { return m_sourceImage; }
    // In source coordinates; null when a direction has no marker run.
    QRect stretchRect() const { return m_stretchRect; }

    static const QRgb MARKER = 0xFF000000;

private:
    static QRect scanMarkers(const QImage& image);
    void selectSource(qreal dpr);

    QImage m_sourceImage;
    QRect m_stretchRect;
    // Where the sources for other ratios come from; empty for a skin made from an image.
    QString m_strFileName;
    QByteArray m_format;
    // The source the scaled image is made from, its stretch rectangle and its scale.
    QImage m_activeImage;
    QRect m_activeStretch;
    qreal m_dActiveScale = 1.0;
    QImage m_scaledImage;
    QSize m_scaledSize;
};

}  // namespace Dravo
