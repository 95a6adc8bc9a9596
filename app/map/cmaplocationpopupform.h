// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "clocation.h"
#include "ctextpopupform.h"

namespace Dravo {

class CLocationEngine;
class CLocationProvider;

// Asks the location engine for the own position, the start of a route. A valid position
// closes the popup and is handed on; an invalid one leaves the popup open with a message
// that a tap closes. While it locates a tap does nothing, so the route is never left
// without its start; the engine's give-up time-out bounds the wait.
class CMapLocationPopupForm : public CTextPopupForm
{
    Q_OBJECT
public:
    // pEngine: the engine to ask; the process-wide one when null.
    explicit CMapLocationPopupForm(QWidget* parent, CLocationEngine* pEngine = nullptr);

    const CLocation& location() const { return m_location; }

signals:
    void signalLocationGotten(double dLatitude, double dLongitude);

public slots:
    void onLocation(const Dravo::CLocation& location);
    void closeLocationPopupForm();
    void onPopupTapped();

private:
    void stopRequest();

    CLocationProvider* m_pProvider;
    CLocation m_location;
    bool m_bClosed;
    bool m_bFailed;  // no position: the text says so and a tap closes the popup
};

}  // namespace Dravo
