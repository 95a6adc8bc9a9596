// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "clocationprovider.h"

#include "clocationengine.h"

namespace Dravo {

CLocationProvider::CLocationProvider(QObject* parent, CLocationEngine* engine)
    : QObject(parent), m_pEngine(engine), m_bUseSingleton(engine == nullptr)
{
    CLocation::registerMetaType();
}

CLocationProvider::~CLocationProvider()
{
    cancel();
}

CLocationEngine* CLocationProvider::engine() const
{
    return m_bUseSingleton ? CLocationEngine::instance() : m_pEngine.data();
}

void CLocationProvider::requestLocation()
{
    if (m_bConnected) {
        return;  // the running request answers
    }
    CLocationEngine* pEngine = engine();
    if (!pEngine) {
        return;
    }
    m_bConnected = true;
    // The connection itself starts the engine's request.
    connect(pEngine, &CLocationEngine::onLocation, this, &CLocationProvider::onEngineLocation);
}

void CLocationProvider::cancel()
{
    if (!m_bConnected) {
        return;
    }
    m_bConnected = false;
    if (CLocationEngine* pEngine = engine()) {
        disconnect(pEngine, &CLocationEngine::onLocation, this,
                   &CLocationProvider::onEngineLocation);
    }
}

void CLocationProvider::onEngineLocation(CLocation location)
{
    cancel();
    Q_EMIT onLocation(location);
}

}  // namespace Dravo
