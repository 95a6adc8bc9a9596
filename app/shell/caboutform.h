// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cform.h"
#include "ctwpushbutton.h"

namespace Dravo {

class CTWLabel;

// The about screen: logo, version line, contact line and tagline, with Back.
class CAboutForm : public CForm
{
    Q_OBJECT
public:
    CAboutForm(const QString& strVersion, QWidget* parent = nullptr);

    QString title() const override;
    // Build-time configuration: the service's contact address.
    static QString contactEmail();
    // "tarvik v <version> by QEL Communications"
    static QString versionLine(const QString& strVersion);

    QString versionText() const;
    QString contactText() const;

public Q_SLOTS:
    void onBtnBackClick();

private:
    CTWPushButton* m_pBtnBack;
    CTWLabel* m_pLabelVersion;
    CTWLabel* m_pLabelContact;
};

}  // namespace Dravo
