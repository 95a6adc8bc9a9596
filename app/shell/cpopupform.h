// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QBoxLayout>
#include <QResizeEvent>

#include "cform.h"
#include "cskin.h"

namespace Dravo {

// A form drawn over the form beneath it: a transparent form holding, centred, one skinned
// popup panel of type TPopup (CTWPopup for every popup of the application).
template <class TPopup>
class CPopupForm : public CForm
{
public:
    static const int MIN_WIDTH = 350;
    static const int MIN_HEIGHT = 150;
    static const int MAX_WIDTH = 450;
    static const int MAX_HEIGHT = 250;

    explicit CPopupForm(QWidget* parent = nullptr) : CForm(parent), m_pPopup(new TPopup(this))
    {
        setAutoFillBackground(false);
        m_pPopup->setSkin(CSkin(QStringLiteral(":/res_ui/img/popup_bg.png")));
        m_pPopup->setMaximumSize(MAX_WIDTH, MAX_HEIGHT);
        setPanelMinimumSize(QSize(MIN_WIDTH, MIN_HEIGHT));
        if (QBoxLayout* pLayout = qobject_cast<QBoxLayout*>(layout())) {
            pLayout->addStretch(1);
            pLayout->addWidget(m_pPopup, 0, Qt::AlignCenter);
            pLayout->addStretch(1);
        }
    }

    bool showsFormBelow() const override { return true; }
    QString title() const override { return QString(); }

    TPopup* popup() const { return m_pPopup; }

protected:
    // The panel's smallest size, narrowed to what a narrow (portrait) screen has room for:
    // a popup never makes the window wider than the screen.
    void setPanelMinimumSize(const QSize& size)
    {
        m_minimum = size;
        const QWidget* pParent = parentWidget();
        fitPanel(pParent ? pParent->width() : size.width() + 2 * EDGE);
    }
    void resizeEvent(QResizeEvent* event) override
    {
        CForm::resizeEvent(event);
        fitPanel(event->size().width());
    }

    static constexpr int EDGE = 5;

    TPopup* m_pPopup;

private:
    void fitPanel(int iWidth)
    {
        const int iRoom = qMax(0, iWidth - 2 * EDGE);
        m_pPopup->setMinimumSize(qMin(m_minimum.width(), iRoom), m_minimum.height());
        m_pPopup->setMaximumWidth(qMin(int(MAX_WIDTH), qMax(iRoom, m_pPopup->minimumWidth())));
    }

    QSize m_minimum;
};

}  // namespace Dravo
