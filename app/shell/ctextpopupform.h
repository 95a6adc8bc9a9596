// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cpopupform.h"
#include "ctwlabel.h"
#include "ctwpopup.h"
#include "ctwwidget.h"

namespace Dravo {

// A popup with one centred, word-wrapped text and, optionally, the busy animation below
// it. A tap on the panel stops the animation and closes the popup.
class CTextPopupForm : public CPopupForm<CTWPopup>
{
    Q_OBJECT
public:
    CTextPopupForm(QWidget* parent, const QString& strText, bool bWithAnimation = false);

    QString text() const;
    void setText(const QString& strText);
    // The widget that shows the animation; null when the popup was made without one.
    CTWWidget* progressWidget() const { return m_pProgress; }

public Q_SLOTS:
    void onPopupMouseReleased();

protected:
    CTWLabel* m_pLabel;
    CTWWidget* m_pProgress;
    bool m_bClosing;
};

}  // namespace Dravo
