// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QEvent>
#include <QObject>
#include <QTimer>
#include <functional>

#include "clocation.h"
#include "csingleton.h"

class QGeoPositionInfo;
class QGeoPositionInfoSource;

namespace Dravo {

// Timer lengths of the location engine.
struct CLocationTimings
{
    int iGiveUpMs = 300000;  // a request without a usable fix ends invalid
    int iSettleMs = 10000;   // newer fixes may still replace the first usable one
    int iMaxAgeS = 600;      // cached fixes answer at once; older fixes are stale
};

// Gives one GPS position on request. Connecting to onLocation() is the request:
// the engine starts the position source, waits for a fix with a valid latitude and
// longitude, lets it settle and delivers the newest fix; a fresh cached fix is
// answered at once. Disconnecting the last receiver stops the source and the timers.
// Every answer, valid or not, is delivered through a posted event.
class CLocationEngine : public CSingleton<CLocationEngine>
{
    Q_OBJECT
    friend class CSingleton<CLocationEngine>;

public:
    using CTimings = CLocationTimings;

    // Creates the position source; null when no source is available.
    using SourceFactory = std::function<QGeoPositionInfoSource*(QObject* parent)>;

    // The source is the platform default, or the nmea plugin reading
    // TARVIK_NMEA_SOURCE (a file path or socket://host:port) when that is set.
    static QGeoPositionInfoSource* createPlatformSource(QObject* parent);

    explicit CLocationEngine(const CTimings& timings = CTimings(),
                             SourceFactory factory = SourceFactory());
    ~CLocationEngine() override;

    void requestLocation();

    bool isRunning() const { return m_bRunning; }
    bool isInitialized() const { return m_pSource != nullptr; }
    bool isSettling() const { return m_settleTimer.isActive(); }
    bool isGivingUpTimerActive() const { return m_overallTimer.isActive(); }
    const CTimings& timings() const { return m_timings; }

    class LocationEvent : public QEvent
    {
    public:
        static constexpr QEvent::Type eType = static_cast<QEvent::Type>(1001);
        explicit LocationEvent(const CLocation& location) : QEvent(eType), m_location(location) {}
        CLocation m_location;
    };

Q_SIGNALS:
    void onLocation(CLocation location);

public Q_SLOTS:
    void onTimeout();
    void onLocationTimeout();
    void onAppQuit() override;

protected:
    void connectNotify(const QMetaMethod& signal) override;
    void disconnectNotify(const QMetaMethod& signal) override;
    void customEvent(QEvent* event) override;

private:
    bool initialize();
    void onChanged(const QGeoPositionInfo& info);
    void onError(int error);
    void deliver(const CLocation& location);
    void onLocationInternal(const CLocation& location);
    void stop();
    void stopIfUnused();

    CTimings m_timings;
    SourceFactory m_factory;
    QGeoPositionInfoSource* m_pSource = nullptr;
    CLocation m_lastLocation;
    const CLocation m_invalidLocation;
    bool m_bRunning = false;
    bool m_bSourceStarted = false;
    QDateTime m_lastFixTime;
    QTimer m_overallTimer;
    QTimer m_settleTimer;
};

}  // namespace Dravo
