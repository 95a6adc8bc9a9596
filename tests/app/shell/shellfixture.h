// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QSignalSpy>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>

#include "capplicationstyle.h"
#include "casynctstorage.h"
#include "cbuscall.h"
#include "cformfactory.h"
#include "cplaceholderform.h"
#include "cprivatebus.h"
#include "dbusobject.h"
#include "uiresources.h"

namespace TarvikTest {

// What the form factory was asked for.
struct FactoryCall
{
    QString strKind;
    int iType = -1;
    QStringList lstArgs;
    Dravo::CForm* pForm = nullptr;
};

inline QList<FactoryCall>& factoryCalls()
{
    static QList<FactoryCall> s_lst;
    return s_lst;
}

// Records one creator call and makes a placeholder in place of the screen.
inline Dravo::CForm* recordCall(QWidget* pParent, const QString& strKind, int iType,
                                const QStringList& lstArgs)
{
    FactoryCall call{strKind, iType, lstArgs,
                     new Dravo::CPlaceholderForm(pParent, strKind, QString())};
    factoryCalls() << call;
    return call.pForm;
}

// Replaces every creator by one that records its arguments and makes a placeholder.
inline void recordFactory()
{
    using Dravo::CFormFactory;
    auto folder = [](const QString& strKind) {
        return [strKind](QWidget* pParent) { return recordCall(pParent, strKind, -1, {}); };
    };
    CFormFactory::setInboxCreator(folder("inbox"));
    CFormFactory::setOutboxCreator(folder("outbox"));
    CFormFactory::setSentCreator(folder("sent"));
    CFormFactory::setSendReceiveCreator(folder("sendReceive"));
    CFormFactory::setComposeCreator([](QWidget* pParent, int iType, const QString& a,
                                       const QString& b, const QString& c, double dLat,
                                       double dLon) {
        return recordCall(
            pParent, "compose", iType,
            {a, b, c, QString::number(dLat, 'g', 10), QString::number(dLon, 'g', 10)});
    });
    auto tarvikForm = [](const QString& strKind) {
        return [strKind](QWidget* pParent, const Dravo::CTarvik& tarvik, int iType) {
            return recordCall(pParent, strKind, iType,
                              {QString::number(tarvik.id()), tarvik.title()});
        };
    };
    CFormFactory::setViewCreator(tarvikForm("view"));
    CFormFactory::setMapCreator(tarvikForm("map"));
    CFormFactory::setRegisterCreator(
        [](QWidget* pParent, int iType, const QString& strNumber, const QString& strName) {
            return recordCall(pParent, "register", iType, {strNumber, strName});
        });
}

// Private buses, a fresh HOME, the UI storage open on a new database, and a second bus
// connection that plays the daemon.
class CShellFixture
{
public:
    bool start()
    {
        if (!m_tmpHome.isValid() || !m_buses.start())
            return false;
        qputenv("HOME", m_tmpHome.path().toLocal8Bit());
        Dravo::initUiResources();
        Dravo::CApplicationStyle::install();
        m_peer = QDBusConnection::connectToBus(m_buses.session().address(), "daemon");
        Tarvik::DBusObject::instance();
        Dravo::CAsyncTStorage* pStorage = Dravo::CAsyncTStorage::getInstance(1);
        QSignalSpy spy(pStorage, &Dravo::CAsyncTStorage::signalInitialized);
        pStorage->start();
        if (!pStorage->isInitialized() && !spy.wait(10000))
            return false;
        recordFactory();
        return m_peer.isConnected();
    }

    // Calls one client method from the daemon's side and waits for the reply without
    // blocking the client's event loop.
    QDBusMessage callClient(const QString& strMethod,
                            const QString& strInterface = "com.qel.TarvikClient")
    {
        return Dravo::Test::callAndWait(
            m_peer, QDBusMessage::createMethodCall("com.qel.tarvik", "/com/qel/tarvik",
                                                   strInterface, strMethod));
    }

    QDBusConnection& peer() { return m_peer; }
    QString home() const { return m_tmpHome.path(); }

private:
    QTemporaryDir m_tmpHome;
    Dravo::Test::CPrivateBuses m_buses;
    QDBusConnection m_peer = QDBusConnection(QString());
};

}  // namespace TarvikTest
