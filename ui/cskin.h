// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QImage>
#include <QRect>
#include <QSize>
#include <QString>

namespace Dravo {

// A bitmap that stretches to any size by nine pieces. Row 0 and column 0 of the source are
// marker lines: the first run of opaque black pixels in each marks the columns and rows that
// stretch; everything else is a fixed border. The result of the last resize is cached.
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

    void resize(const QSize& size);
    void resize(const QRect& rect);

    bool hasScaledImage() const { return !m_scaledImage.isNull(); }
    const QImage& scaledImage() const { return m_scaledImage; }
    const QImage& sourceImage() const { return m_sourceImage; }
    // In source coordinates; null when a direction has no marker run.
    QRect stretchRect() const { return m_stretchRect; }

    static const QRgb MARKER = 0xFF000000;

private:
    void scanMarkers();

    QImage m_sourceImage;
    QImage m_scaledImage;
    QRect m_stretchRect;
};

}  // namespace Dravo
