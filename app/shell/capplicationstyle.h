// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QProxyStyle>

#include "cskin.h"

namespace Dravo {

// The application's look for plain push buttons: the dark skinned button of the toolkit
// (highlighted while pressed) with white bold text, over the Fusion style.
class CApplicationStyle : public QProxyStyle
{
    Q_OBJECT
public:
    CApplicationStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* pOption, QPainter* pPainter,
                       const QWidget* pWidget = nullptr) const override;
    void drawControl(ControlElement element, const QStyleOption* pOption, QPainter* pPainter,
                     const QWidget* pWidget = nullptr) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* pOption, const QSize& size,
                           const QWidget* pWidget) const override;
    void polish(QPalette& palette) override;

    // Installs the style and a dark palette on the application.
    static void install();

private:
    mutable CSkin m_skinNormal;
    mutable CSkin m_skinPressed;
};

}  // namespace Dravo
