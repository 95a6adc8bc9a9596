// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "clocationengine.h"

#include <QCoreApplication>
#include <QGeoPositionInfoSource>
#include <QMetaMethod>
#include <QThread>
#include <QtDebug>

namespace Dravo {

namespace {

QString timeOfDay()
{
    return QTime::currentTime().toString(QStringLiteral("hh:mm:ss.zzz"));
}

}  // namespace

QGeoPositionInfoSource* CLocationEngine::createPlatformSource(QObject* parent)
{
    const QString nmeaSource = qEnvironmentVariable("TARVIK_NMEA_SOURCE");
    if (!nmeaSource.isEmpty()) {
        QVariantMap parameters;
        parameters.insert(QStringLiteral("nmea.source"), nmeaSource);
        return QGeoPositionInfoSource::createSource(QStringLiteral("nmea"), parameters, parent);
    }
    return QGeoPositionInfoSource::createDefaultSource(parent);
}

CLocationEngine::CLocationEngine(const CTimings& timings, SourceFactory factory)
    : m_timings(timings), m_factory(factory ? std::move(factory) : &createPlatformSource)
{
    CLocation::registerMetaType();
    m_overallTimer.setSingleShot(true);
    m_overallTimer.setInterval(m_timings.iGiveUpMs);
    m_settleTimer.setSingleShot(true);
    m_settleTimer.setInterval(m_timings.iSettleMs);
    connect(&m_overallTimer, &QTimer::timeout, this, &CLocationEngine::onTimeout);
    connect(&m_settleTimer, &QTimer::timeout, this, &CLocationEngine::onLocationTimeout);
}

CLocationEngine::~CLocationEngine()
{
    if (m_pSource) {
        m_pSource->disconnect(this);
        delete m_pSource;
        m_pSource = nullptr;
    }
}

bool CLocationEngine::initialize()
{
    if (m_pSource) {
        return true;
    }
    m_pSource = m_factory(this);
    if (!m_pSource) {
        return false;
    }
    connect(m_pSource, &QGeoPositionInfoSource::positionUpdated, this, &CLocationEngine::onChanged);
    connect(m_pSource, &QGeoPositionInfoSource::errorOccurred, this,
            [this](QGeoPositionInfoSource::Error error) { onError(static_cast<int>(error)); });
    return true;
}

void CLocationEngine::requestLocation()
{
    qDebug() << "CLocationEngine::requestLocation: Requesting...";
    if (!initialize()) {
        qDebug() << "CLocationEngine::requestLocation: Failed to initialize location module";
        deliver(m_invalidLocation);
        return;
    }
    const QDateTime now = QDateTime::currentDateTime();
    if (m_lastLocation.isValid() && m_lastFixTime.isValid() &&
        m_lastFixTime.msecsTo(now) <= qint64(m_timings.iMaxAgeS) * 1000) {
        deliver(m_lastLocation);
        return;
    }
    if (m_bRunning) {
        return;  // joins the running request
    }
    m_bRunning = true;
    m_overallTimer.start();
    m_bSourceStarted = true;
    // A replaying source may report its first fix from inside startUpdates().
    m_pSource->startUpdates();
}

void CLocationEngine::onChanged(const QGeoPositionInfo& info)
{
    qDebug().noquote() << "--- CLocationEngine::onChanged " + timeOfDay();
    if (!m_bRunning) {
        return;
    }
    const CLocation location(info);
    if (!location.isValid()) {
        return;  // no latitude/longitude in this fix
    }
    const QDateTime now = QDateTime::currentDateTime();
    const QDateTime fixTime = info.timestamp();
    if (fixTime.isValid() && fixTime.msecsTo(now) > qint64(m_timings.iMaxAgeS) * 1000) {
        // A last-known position replayed by the source: ask for a new one.
        qDebug().noquote() << "CLocationEngine::onChanged: stale fix from " +
                                  fixTime.toString(Qt::ISODate) + ", requesting a new one";
        m_pSource->stopUpdates();
        m_pSource->startUpdates();
        return;
    }
    m_lastFixTime = now;
    m_lastLocation = location;
    if (!m_settleTimer.isActive()) {
        m_settleTimer.start();
    }
}

void CLocationEngine::onError(int error)
{
    if (error == QGeoPositionInfoSource::NoError) {
        return;
    }
    if (error == QGeoPositionInfoSource::ClosedError) {
        // The positioning service went away or was switched off.
        qDebug() << "CLocationEngine::onStop";
    } else {
        qDebug() << "CLocationEngine::onError:" << error;
    }
    if (m_bRunning) {
        deliver(m_invalidLocation);
    }
    if (error == QGeoPositionInfoSource::ClosedError && m_pSource) {
        // A closed source never reports again (an NMEA stream that ended stays ended):
        // the next request opens a new one.
        m_pSource->disconnect(this);
        m_pSource->deleteLater();
        m_pSource = nullptr;
        m_bSourceStarted = false;
    }
}

void CLocationEngine::onLocationTimeout()
{
    qDebug().noquote() << "CLocationEngine::onLocationTimeout: " + timeOfDay();
    deliver(m_lastLocation);
}

void CLocationEngine::onTimeout()
{
    qDebug() << "CLocationEngine::onTimeout";
    deliver(m_invalidLocation);
}

void CLocationEngine::deliver(const CLocation& location)
{
    // Stop at once so that fixes arriving before the event is handled cannot
    // start another settle period; the answer itself always travels as an event.
    stop();
    QCoreApplication::postEvent(this, new LocationEvent(location));
}

void CLocationEngine::customEvent(QEvent* event)
{
    if (event->type() == LocationEvent::eType) {
        onLocationInternal(static_cast<LocationEvent*>(event)->m_location);
        return;
    }
    QObject::customEvent(event);
}

void CLocationEngine::onLocationInternal(const CLocation& location)
{
    if (location.isValid()) {
        qDebug().noquote() << QStringLiteral("CLocationEngine::onLocationInternal: %1 %2")
                                  .arg(location.latitude(), 0, 'f', 6)
                                  .arg(location.longitude(), 0, 'f', 6);
    } else {
        qDebug() << "CLocationEngine::onLocationInternal: invalid location";
    }
    Q_EMIT onLocation(location);
}

void CLocationEngine::stop()
{
    m_bRunning = false;
    m_overallTimer.stop();
    m_settleTimer.stop();
    if (m_pSource && m_bSourceStarted) {
        m_bSourceStarted = false;
        m_pSource->stopUpdates();
    }
}

void CLocationEngine::onAppQuit()
{
    stop();
    delete m_pSource;
    m_pSource = nullptr;
}

void CLocationEngine::connectNotify(const QMetaMethod& signal)
{
    if (signal != QMetaMethod::fromSignal(&CLocationEngine::onLocation)) {
        return;
    }
    if (QThread::currentThread() == thread()) {
        requestLocation();
    } else {
        QMetaObject::invokeMethod(this, &CLocationEngine::requestLocation, Qt::QueuedConnection);
    }
}

void CLocationEngine::disconnectNotify(const QMetaMethod& signal)
{
    // An invalid method means "everything was disconnected".
    if (signal.isValid() && signal != QMetaMethod::fromSignal(&CLocationEngine::onLocation)) {
        return;
    }
    // A receiver being destroyed calls this with a signal-slot mutex held, which may be
    // the one isSignalConnected() takes: look at the receivers later, from the event loop.
    QMetaObject::invokeMethod(this, &CLocationEngine::stopIfUnused, Qt::QueuedConnection);
}

void CLocationEngine::stopIfUnused()
{
    if (!isSignalConnected(QMetaMethod::fromSignal(&CLocationEngine::onLocation))) {
        stop();
    }
}

}  // namespace Dravo
