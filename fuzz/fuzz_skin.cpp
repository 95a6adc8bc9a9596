// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The skin marker scan and nine-piece resize on any image a skin file can hold: any size,
// any pixel format, marker runs anywhere or nowhere, and any size asked for.
#include "cskin.h"
#include "fuzzinput.h"

using namespace Dravo;
using namespace Dravo::Fuzz;

namespace {

const QImage::Format FORMATS[] = {
    QImage::Format_ARGB32,     QImage::Format_RGB32,   QImage::Format_ARGB32_Premultiplied,
    QImage::Format_Indexed8,   QImage::Format_Mono,    QImage::Format_RGB16,
    QImage::Format_Grayscale8, QImage::Format_RGBA8888};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    silenceQtLog();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t iSize)
{
    CFuzzInput in(pData, iSize);
    const int iWidth = in.take<uint8_t>() % 40;
    const int iHeight = in.take<uint8_t>() % 40;
    const QImage::Format format = FORMATS[in.take<uint8_t>() % std::size(FORMATS)];
    const int iTargetW = in.take<int8_t>() * 3;
    const int iTargetH = in.take<int8_t>() * 3;

    QImage image;
    if (iWidth > 0 && iHeight > 0) {
        image = QImage(iWidth, iHeight, format);
        if (format == QImage::Format_Indexed8)
            image.setColorCount(256);
        else if (format == QImage::Format_Mono)
            image.setColorCount(2);
        for (int c = 0; c < image.colorCount(); ++c)
            image.setColor(c, in.take<uint8_t>() & 1 ? CSkin::MARKER : in.take<QRgb>());
        for (int y = 0; y < iHeight; ++y) {
            uchar* pLine = image.scanLine(y);
            for (qsizetype i = 0; i < image.bytesPerLine(); ++i)
                pLine[i] = in.take<uint8_t>();
        }
    }

    CSkin skin(image);
    const QRect stretch = skin.stretchRect();
    if (!stretch.isNull()) {
        // The stretching part lies inside the image, clear of the marker lines.
        FUZZ_CHECK(stretch.left() >= 1 && stretch.top() >= 1);
        FUZZ_CHECK(stretch.right() < iWidth && stretch.bottom() < iHeight);
    }
    skin.resize(QSize(iTargetW, iTargetH));
    if (skin.hasScaledImage())
        FUZZ_CHECK(skin.scaledImage().size() == QSize(iTargetW, iTargetH));
    else
        FUZZ_CHECK(stretch.isNull() || iTargetW <= 0 || iTargetH <= 0);

    CSkin copy(skin);
    copy.resize(QRect(0, 0, iTargetH, iTargetW));
    return 0;
}
