// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QSize>
#include <QString>

namespace Dravo {

// Registers the compiled-in images under ":/res_ui/" (skins, busy strip) and ":/res/img/"
// (icons, logos, the forms' progress strip). Safe to call more than once.
void initUiResources();

// Reads one image file, uncached; PNG without probing Qt's image plugins.
QImage readArt(const QString& strPath, const char* pFormat = nullptr);

// The art file strPath (a 1x image, with name@2x and name@3x beside it for high-density
// screens) in the variant for a device pixel ratio: 1x up to 1, @2x up to 2, @3x above, or the
// next smaller one that exists. The image's devicePixelRatio() is the variant's scale. Files are
// decoded once and kept: the art is a small fixed set.
QImage artImage(const QString& strPath, qreal dpr, const char* pFormat = nullptr);

// The art as a pixmap of the 1x image's logical size with dpr physical pixels per logical one,
// smoothly scaled from the variant when the ratio is not a whole one.
QPixmap artPixmap(const QString& strPath, qreal dpr);

// An icon of the art file strPath: its 1x image and, on a high-density screen, the variant for
// the screen's ratio. Made without Qt probing its image plugins for the file's format.
QIcon artIcon(const QString& strPath);

// The logical size to draw an icon made from art files at: its 1x image's, the smallest it
// holds. (QIcon adds the @2x or @3x file it needs for the screens beside the 1x one, so the
// largest size or the size that actualSize() picks is one in physical pixels.)
QSize artIconSize(const QIcon& icon);

}  // namespace Dravo
