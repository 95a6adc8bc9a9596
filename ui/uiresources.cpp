// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "uiresources.h"

#include <QHash>
#include <QMutex>
#include <QtGlobal>

// Q_INIT_RESOURCE must be used outside of any namespace.
static void registerUiResources()
{
    Q_INIT_RESOURCE(tarvik_res_ui);
    Q_INIT_RESOURCE(tarvik_res_img);
}

namespace Dravo {

namespace {

// name.png -> name@2x.png
QString variantPath(const QString& strPath, int iScale)
{
    if (iScale == 1)
        return strPath;
    const int iSlash = strPath.lastIndexOf(QLatin1Char('/'));
    int iDot = strPath.lastIndexOf(QLatin1Char('.'));
    if (iDot <= iSlash)
        iDot = strPath.size();
    return strPath.left(iDot) + QStringLiteral("@%1x").arg(iScale) + strPath.mid(iDot);
}

// Decodes a file once, tagged with its scale; a file that failed to load is remembered as a
// null image.
QImage cachedImage(const QString& strPath, int iScale, const char* pFormat)
{
    static QMutex s_mutex;
    static QHash<QString, QImage> s_images;
    const QMutexLocker locker(&s_mutex);
    const auto it = s_images.constFind(strPath);
    if (it != s_images.constEnd())
        return *it;
    QImage image(strPath, pFormat);
    if (!image.isNull())
        image.setDevicePixelRatio(iScale);
    s_images.insert(strPath, image);
    return image;
}

}  // namespace

void initUiResources()
{
    static const bool s_bDone = (registerUiResources(), true);
    Q_UNUSED(s_bDone);
}

QImage artImage(const QString& strPath, qreal dpr, const char* pFormat)
{
    for (int iScale = dpr > 2 ? 3 : dpr > 1 ? 2 : 1; iScale > 1; --iScale) {
        const QImage image = cachedImage(variantPath(strPath, iScale), iScale, pFormat);
        if (!image.isNull())
            return image;
    }
    return cachedImage(strPath, 1, pFormat);
}

QPixmap artPixmap(const QString& strPath, qreal dpr)
{
    QImage image = artImage(strPath, dpr);
    if (image.isNull() || image.devicePixelRatio() == dpr)
        return QPixmap::fromImage(image);
    const QSizeF logical = image.deviceIndependentSize();
    image = image.scaled(qRound(logical.width() * dpr), qRound(logical.height() * dpr),
                         Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    image.setDevicePixelRatio(dpr);
    return QPixmap::fromImage(image);
}

QSize artIconSize(const QIcon& icon)
{
    QSize smallest;
    for (const QSize& size : icon.availableSizes()) {
        if (smallest.isEmpty() ||
            size.width() * size.height() < smallest.width() * smallest.height())
            smallest = size;
    }
    return smallest;
}

}  // namespace Dravo
