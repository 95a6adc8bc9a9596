// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cskin.h"

#include <QPainter>

namespace Dravo {

namespace {

// Finds the first run of marker pixels along a line, starting at index 1.
// Returns false when there is none.
template <typename PixelAt>
bool findRun(int iLength, PixelAt pixelAt, int& iFirst, int& iLast)
{
    iFirst = -1;
    iLast = -1;
    for (int i = 1; i < iLength; ++i) {
        const bool bMarker = pixelAt(i) == CSkin::MARKER;
        if (iFirst == -1) {
            if (bMarker)
                iFirst = i;
        } else if (!bMarker) {
            iLast = i - 1;
            break;
        }
    }
    if (iFirst == -1)
        return false;
    if (iLast == -1)
        iLast = iLength - 1;
    return true;
}

// Copies a source piece into the target rectangle, scaling it when the sizes differ. The piece
// is cut out first so that smooth scaling never samples pixels outside of it.
void drawPiece(QPainter& painter, const QImage& source, const QRect& sourceRect,
               const QRect& targetRect)
{
    if (!sourceRect.isValid() || !targetRect.isValid())
        return;
    QImage piece = source.copy(sourceRect);
    if (piece.size() != targetRect.size())
        piece = piece.scaled(targetRect.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    painter.drawImage(targetRect.topLeft(), piece);
}

}  // namespace

CSkin::CSkin() = default;

CSkin::CSkin(const QImage& image) : m_sourceImage(image)
{
    scanMarkers();
}

CSkin::CSkin(const QImage& image, const QSize& size) : m_sourceImage(image)
{
    scanMarkers();
    resize(size);
}

CSkin::CSkin(const QImage& image, int iWidth, int iHeight) : m_sourceImage(image)
{
    scanMarkers();
    resize(QSize(iWidth, iHeight));
}

CSkin::CSkin(const QString& strFileName, const char* pFormat, const QSize& size)
    : m_sourceImage(strFileName, pFormat)
{
    if (m_sourceImage.isNull())
        qWarning("CSkin::CSkin failed to load %s", qPrintable(strFileName));
    scanMarkers();
    if (size.isValid())
        resize(size);
}

CSkin::CSkin(const CSkin& other) = default;
CSkin& CSkin::operator=(const CSkin& other) = default;
CSkin::~CSkin() = default;

void CSkin::scanMarkers()
{
    m_stretchRect = QRect();
    if (m_sourceImage.isNull())
        return;
    const QImage& img = m_sourceImage;
    int iLeft, iRight, iTop, iBottom;
    const bool bHorizontal = findRun(
        img.width(), [&img](int x) { return img.pixel(x, 0); }, iLeft, iRight);
    const bool bVertical = findRun(
        img.height(), [&img](int y) { return img.pixel(0, y); }, iTop, iBottom);
    if (bHorizontal && bVertical)
        m_stretchRect = QRect(QPoint(iLeft, iTop), QPoint(iRight, iBottom));
}

void CSkin::resize(const QRect& rect)
{
    resize(rect.size());
}

void CSkin::resize(const QSize& size)
{
    if (m_stretchRect.isNull() || size.width() <= 0 || size.height() <= 0) {
        m_scaledImage = QImage();
        return;
    }
    const int W = size.width();
    const int H = size.height();
    const int iSrcW = m_sourceImage.width();
    const int iSrcH = m_sourceImage.height();
    const QRect& s = m_stretchRect;

    // Fixed borders, markers excluded.
    const int L = s.left() - 1;
    const int T = s.top() - 1;
    const int R = iSrcW - s.right() - 1;
    const int B = iSrcH - s.bottom() - 1;
    const QRect centre(L, T, W - L - R, H - T - B);

    QImage result(W, H, QImage::Format_ARGB32);
    result.fill(0);
    QPainter painter(&result);
    // Pieces replace what lies under them so that skins with translucent borders stay exact.
    painter.setCompositionMode(QPainter::CompositionMode_Source);

    const QImage& src = m_sourceImage;
    auto corner = [&](const QRect& sourceRect, const QPoint& target) {
        if (sourceRect.width() < 1 || sourceRect.height() < 1)
            return;
        painter.drawImage(target, src, sourceRect);
    };

    corner(QRect(1, 1, L, T), QPoint(0, 0));
    corner(QRect(iSrcW - R, 1, R, T), QPoint(W - R, 0));
    drawPiece(painter, src, QRect(s.left(), 1, s.width(), T), QRect(L, 0, centre.width(), T));
    drawPiece(painter, src, QRect(1, s.top(), L, s.height()), QRect(0, T, L, centre.height()));
    drawPiece(painter, src, QRect(iSrcW - R, s.top(), R, s.height()),
              QRect(W - R, T, R, centre.height()));
    drawPiece(painter, src, s, centre);
    corner(QRect(1, iSrcH - B, L, B), QPoint(0, H - B));
    corner(QRect(iSrcW - R, iSrcH - B, R, B), QPoint(W - R, H - B));
    drawPiece(painter, src, QRect(s.left(), iSrcH - B, s.width(), B),
              QRect(L, H - B, centre.width(), B));
    painter.end();

    m_scaledImage = result;
}

}  // namespace Dravo
