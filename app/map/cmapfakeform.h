// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cform.h"
#include "ctarvik.h"

namespace Dravo {

class CTWPushButton;
class CTWWidget;

// Stands in for the map while there is no Internet connection: it asks for one, opens
// the map form above itself when it comes, and gives up on the second disconnect report.
class CMapFakeForm : public CForm
{
    Q_OBJECT
public:
    CMapFakeForm(QWidget* parent, const CTarvik& tarvik, int eType);

    QString title() const override;
    int disconnectCount() const { return m_iDisconnects; }

public slots:
    void onBtnCloseClick();
    void internetConnectionConnected();
    void internetConnectionDisconnected();
    void showMapForm();

private:
    void disconnectFromManager();

    CTarvik m_tarvik;
    int m_eType;
    int m_iDisconnects;
    CTWWidget* m_pProgress;
    CTWPushButton* m_pBtnClose;
};

}  // namespace Dravo
