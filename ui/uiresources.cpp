// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "uiresources.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QHash>
#include <QImageReader>
#include <QMutex>
#include <QtGlobal>

// Q_INIT_RESOURCE must be used outside of any namespace.
static void registerUiResources()
{
    Q_INIT_RESOURCE(tarvik_res_ui);
    Q_INIT_RESOURCE(tarvik_res_img);
}

namespace Dravo {

QImage readArt(const QString& strPath, const char* pFormat)
{
    // The art is PNG, which Qt reads itself. Named, and with content detection off, it is
    // read without Qt first loading every image plugin to ask each whether it knows the data.
    const QByteArray format =
        pFormat ? QByteArray(pFormat) : QFileInfo(strPath).suffix().toLower().toLatin1();
    if (format == "png") {
        QImageReader reader(strPath, format);
        reader.setAutoDetectImageFormat(false);
        QImage image;
        if (reader.read(&image))
            return image;
    }
    return QImage(strPath, pFormat);
}

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
    QImage image = readArt(strPath, pFormat);
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

QIcon artIcon(const QString& strPath)
{
    QIcon icon;
    const QImage base = cachedImage(strPath, 1, nullptr);
    if (base.isNull())
        return icon;
    icon.addPixmap(QPixmap::fromImage(base));
    const qreal dpr = qGuiApp ? qGuiApp->devicePixelRatio() : 1.0;
    if (dpr > 1) {
        const QImage variant = artImage(strPath, dpr);
        if (variant.devicePixelRatio() > 1)
            icon.addPixmap(QPixmap::fromImage(variant));
    }
    return icon;
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
