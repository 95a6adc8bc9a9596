// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QPointer>

#include "clocation.h"

namespace Dravo {

class CLocationEngine;

// Owned by a screen: requestLocation() asks the engine for one position and the
// answer arrives later as onLocation(), exactly once per request.
class CLocationProvider : public QObject
{
    Q_OBJECT
public:
    // Uses the process-wide engine unless another one is given.
    explicit CLocationProvider(QObject* parent = nullptr, CLocationEngine* engine = nullptr);
    ~CLocationProvider() override;

    void requestLocation();
    // Drops the pending request; the engine stops when this was its last receiver.
    void cancel();
    bool isConnected() const { return m_bConnected; }

Q_SIGNALS:
    void onLocation(CLocation location);

public Q_SLOTS:
    void onEngineLocation(CLocation location);

private:
    CLocationEngine* engine() const;

    QPointer<CLocationEngine> m_pEngine;
    bool m_bUseSingleton;
    bool m_bConnected = false;
};

}  // namespace Dravo
