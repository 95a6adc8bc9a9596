// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QListWidget>

#include "cform.h"
#include "ctarvikstorage.h"
#include "ctsettings.h"

namespace Dravo {

// The first screen: seven entries, each an icon and a text, from which every other
// screen is reached.
class CMainMenuForm : public CForm
{
    Q_OBJECT
public:
    enum eRow
    {
        eRowSend = 0,
        eRowInbox,
        eRowOutbox,
        eRowSent,
        eRowSettings,
        eRowFeedback,
        eRowAbout,
        eRowCount
    };

    explicit CMainMenuForm(QWidget* parent = nullptr);

    QString title() const override;
    QListWidget* listWidget() const { return m_pListWidget; }

    // Build-time configuration: where "Feedback" leads.
    static QUrl feedbackUrl();

public Q_SLOTS:
    void itemClicked(QListWidgetItem* pItem);
    void settingsGotten(bool result, Dravo::CTSettings settings,
                        Dravo::CTarvikStorage::CUserData* userData = nullptr);

private:
    void requestSettings(bool bForSettings);

    QListWidget* m_pListWidget;
    bool m_bSettings;
};

}  // namespace Dravo
