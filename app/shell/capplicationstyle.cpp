// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "capplicationstyle.h"

#include <QApplication>
#include <QPainter>
#include <QStyleFactory>
#include <QStyleOptionButton>

namespace Dravo {

namespace {
const int BUTTON_MIN_WIDTH = 80;
const int BUTTON_MIN_HEIGHT = 41;
}  // namespace

CApplicationStyle::CApplicationStyle()
    : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))),
      m_skinNormal(QStringLiteral(":/res_ui/img/btn_bg.png")),
      m_skinPressed(QStringLiteral(":/res_ui/img/btn_bg_hl.png"))
{
}

void CApplicationStyle::install()
{
    auto* pStyle = new CApplicationStyle();
    QApplication::setStyle(pStyle);
    // The base style's standard palette is light; the application's dark one is that
    // palette as polish() makes it.
    QPalette palette = pStyle->standardPalette();
    pStyle->polish(palette);
    QApplication::setPalette(palette);
}

void CApplicationStyle::polish(QPalette& palette)
{
    QProxyStyle::polish(palette);
    palette.setColor(QPalette::Window, Qt::black);
    palette.setColor(QPalette::WindowText, Qt::white);
    palette.setColor(QPalette::Base, QColor(0x1a, 0x1d, 0x22));
    palette.setColor(QPalette::Text, Qt::white);
    palette.setColor(QPalette::Button, QColor(0x2a, 0x2e, 0x35));
    palette.setColor(QPalette::ButtonText, Qt::white);
    palette.setColor(QPalette::Highlight, QColor(0x2a, 0xa8, 0xd8));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(0x80, 0x80, 0x80));
    palette.setColor(QPalette::Disabled, QPalette::WindowText, QColor(0x80, 0x80, 0x80));
}

void CApplicationStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* pOption,
                                      QPainter* pPainter, const QWidget* pWidget) const
{
    if (element == PE_PanelButtonCommand && pOption) {
        const bool bPressed = pOption->state & (State_Sunken | State_On);
        CSkin& skin = bPressed ? m_skinPressed : m_skinNormal;
        // The painter's device is the widget, or a pixmap it is grabbed into.
        skin.resize(pOption->rect.size(), pPainter->device()->devicePixelRatioF());
        if (skin.hasScaledImage()) {
            pPainter->drawImage(pOption->rect.topLeft(), skin.scaledImage());
            return;
        }
    }
    if (element == PE_FrameFocusRect)
        return;
    QProxyStyle::drawPrimitive(element, pOption, pPainter, pWidget);
}

void CApplicationStyle::drawControl(ControlElement element, const QStyleOption* pOption,
                                    QPainter* pPainter, const QWidget* pWidget) const
{
    if (element == CE_PushButtonLabel) {
        if (const auto* pButton = qstyleoption_cast<const QStyleOptionButton*>(pOption)) {
            QStyleOptionButton option(*pButton);
            // Disabled buttons read dimmed, so the enabled ones stand out.
            const bool bEnabled = pButton->state & State_Enabled;
            option.palette.setColor(QPalette::ButtonText,
                                    bEnabled ? QColor(Qt::white) : QColor(0x6e, 0x74, 0x7d));
            pPainter->save();
            QFont font = pPainter->font();
            font.setBold(true);
            pPainter->setFont(font);
            QProxyStyle::drawControl(element, &option, pPainter, pWidget);
            pPainter->restore();
            return;
        }
    }
    QProxyStyle::drawControl(element, pOption, pPainter, pWidget);
}

QSize CApplicationStyle::sizeFromContents(ContentsType type, const QStyleOption* pOption,
                                          const QSize& size, const QWidget* pWidget) const
{
    QSize result = QProxyStyle::sizeFromContents(type, pOption, size, pWidget);
    if (type == CT_PushButton) {
        result.setWidth(qMax(result.width() + 16, BUTTON_MIN_WIDTH));
        result.setHeight(qMax(result.height(), BUTTON_MIN_HEIGHT));
    }
    return result;
}

}  // namespace Dravo
