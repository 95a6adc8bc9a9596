// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cskin.h"

#include <QPainter>

#include "uiresources.h"

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
// is cut out first so that smooth scaling never samples pixels outside of it, and drawn in
// pixels whatever the source's device pixel ratio.
void drawPiece(QPainter& painter, const QImage& source, const QRect& sourceRect,
               const QRect& targetRect)
{
    if (!sourceRect.isValid() || !targetRect.isValid())
        return;
    QImage piece = source.copy(sourceRect);
    piece.setDevicePixelRatio(1.0);
    if (piece.size() != targetRect.size())
        piece = piece.scaled(targetRect.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    painter.drawImage(targetRect.topLeft(), piece);
}

}  // namespace

CSkin::CSkin() = default;

CSkin::CSkin(const QImage& image)
    : m_sourceImage(image),
      m_stretchRect(scanMarkers(image)),
      m_activeImage(image),
      m_activeStretch(m_stretchRect),
      m_dActiveScale(image.devicePixelRatio())
{
}

CSkin::CSkin(const QImage& image, const QSize& size) : CSkin(image)
{
    resize(size);
}

CSkin::CSkin(const QImage& image, int iWidth, int iHeight) : CSkin(image)
{
    resize(QSize(iWidth, iHeight));
}

CSkin::CSkin(const QString& strFileName, const char* pFormat, const QSize& size)
    : CSkin(artImage(strFileName, 1.0, pFormat))
{
    if (m_sourceImage.isNull())
        qWarning("CSkin::CSkin failed to load %s", qPrintable(strFileName));
    m_strFileName = strFileName;
    m_format = pFormat;
    if (size.isValid())
        resize(size);
}

CSkin::CSkin(const CSkin& other) = default;
CSkin& CSkin::operator=(const CSkin& other) = default;
CSkin::~CSkin() = default;

QRect CSkin::scanMarkers(const QImage& img)
{
    if (img.isNull())
        return QRect();
    int iLeft, iRight, iTop, iBottom;
    const bool bHorizontal = findRun(
        img.width(), [&img](int x) { return img.pixel(x, 0); }, iLeft, iRight);
    const bool bVertical = findRun(
        img.height(), [&img](int y) { return img.pixel(0, y); }, iTop, iBottom);
    if (bHorizontal && bVertical)
        return QRect(QPoint(iLeft, iTop), QPoint(iRight, iBottom));
    return QRect();
}

void CSkin::selectSource(qreal dpr)
{
    if (m_strFileName.isEmpty())
        return;
    const QImage image =
        artImage(m_strFileName, dpr, m_format.isEmpty() ? nullptr : m_format.constData());
    if (image.cacheKey() == m_activeImage.cacheKey())
        return;
    const QRect stretch = scanMarkers(image);
    // A variant without usable markers is not used; the 1x source always works.
    const bool bUsable = !stretch.isNull();
    m_activeImage = bUsable ? image : m_sourceImage;
    m_activeStretch = bUsable ? stretch : m_stretchRect;
    m_dActiveScale = m_activeImage.devicePixelRatio();
}

void CSkin::resize(const QRect& rect, qreal dpr)
{
    resize(rect.size(), dpr);
}

void CSkin::resize(const QSize& size, qreal dpr)
{
    if (m_stretchRect.isNull() || size.width() <= 0 || size.height() <= 0 || dpr <= 0) {
        m_scaledImage = QImage();
        m_scaledSize = QSize();
        return;
    }
    if (!m_scaledImage.isNull() && size == m_scaledSize && m_scaledImage.devicePixelRatio() == dpr)
        return;
    selectSource(dpr);
    const QImage& src = m_activeImage;
    const QRect& s = m_activeStretch;
    const int iSrcW = src.width();
    const int iSrcH = src.height();

    // Physical pixels. Fixed borders (markers excluded) keep their source pixels when the
    // source is made for this ratio and are scaled to it otherwise.
    const bool bOneToOne = qFuzzyCompare(dpr, m_dActiveScale);
    const qreal dFactor = dpr / m_dActiveScale;
    auto border = [&](int iSource) { return bOneToOne ? iSource : qRound(iSource * dFactor); };
    const int W = qMax(1, qRound(size.width() * dpr));
    const int H = qMax(1, qRound(size.height() * dpr));
    const int iSrcL = s.left() - 1;
    const int iSrcT = s.top() - 1;
    const int iSrcR = iSrcW - s.right() - 1;
    const int iSrcB = iSrcH - s.bottom() - 1;
    const int L = border(iSrcL);
    const int T = border(iSrcT);
    const int R = border(iSrcR);
    const int B = border(iSrcB);
    const QRect centre(L, T, W - L - R, H - T - B);

    QImage result(W, H, QImage::Format_ARGB32);
    result.fill(0);
    QPainter painter(&result);
    // Pieces replace what lies under them so that skins with translucent borders stay exact.
    painter.setCompositionMode(QPainter::CompositionMode_Source);

    drawPiece(painter, src, QRect(1, 1, iSrcL, iSrcT), QRect(0, 0, L, T));
    drawPiece(painter, src, QRect(iSrcW - iSrcR, 1, iSrcR, iSrcT), QRect(W - R, 0, R, T));
    drawPiece(painter, src, QRect(s.left(), 1, s.width(), iSrcT), QRect(L, 0, centre.width(), T));
    drawPiece(painter, src, QRect(1, s.top(), iSrcL, s.height()), QRect(0, T, L, centre.height()));
    drawPiece(painter, src, QRect(iSrcW - iSrcR, s.top(), iSrcR, s.height()),
              QRect(W - R, T, R, centre.height()));
    drawPiece(painter, src, s, centre);
    drawPiece(painter, src, QRect(1, iSrcH - iSrcB, iSrcL, iSrcB), QRect(0, H - B, L, B));
    drawPiece(painter, src, QRect(iSrcW - iSrcR, iSrcH - iSrcB, iSrcR, iSrcB),
              QRect(W - R, H - B, R, B));
    drawPiece(painter, src, QRect(s.left(), iSrcH - iSrcB, s.width(), iSrcB),
              QRect(L, H - B, centre.width(), B));
    painter.end();

    result.setDevicePixelRatio(dpr);
    m_scaledImage = result;
    m_scaledSize = size;
}

}  // namespace Dravo
