// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusContext>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>

namespace Dravo {
namespace Test {

// Plays the client for a daemon under test: the client's daemon-facing methods, each
// call recorded by name.
class CClientRecorder : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.qel.TarvikClient")
public:
    QStringList m_lstCalls;

public Q_SLOTS:
    Q_SCRIPTABLE void OpenInbox() { record(); }
    Q_SCRIPTABLE void OnMessagesReceived() { record(); }
    Q_SCRIPTABLE void OnMessagesSent() { record(); }
    Q_SCRIPTABLE void OnMessagesPartiallySent() { record(); }
    Q_SCRIPTABLE void OnMessagesSendFailed() { record(); }
    Q_SCRIPTABLE void OnRegistrationSucceed() { record(); }
    Q_SCRIPTABLE void OnRegistrationFailed() { record(); }
    Q_SCRIPTABLE void OnConnectionCheckSucceed() { record(); }
    Q_SCRIPTABLE void OnConnectionCheckFailed() { record(); }

Q_SIGNALS:
    void called(const QString& method);

private:
    void record()
    {
        m_lstCalls << message().member();
        emit called(m_lstCalls.last());
    }
};

}  // namespace Test
}  // namespace Dravo
