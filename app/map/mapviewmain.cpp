// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// tarvik-mapview: the map helper. The client starts it for each map view and shows the
// pictures it sends; Qt WebEngine, its OpenGL driver and its heap live here and go with
// the process when the map closes, which a process that has once loaded Qt WebEngine
// cannot otherwise give back. It renders on the offscreen platform whatever the
// client's platform is, and takes no input: the map moves only through page functions.
#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>
#include <QApplication>
#include <QLocalSocket>
#include <QLoggingCategory>
#include <QThread>
#include <QWebEngineProfile>
#include <cstdio>

#include "cmappageview.h"
#include "cmapviewprotocol.h"
#include "cmapviewserver.h"

using namespace Dravo;

namespace {
QLocalSocket* s_pSocket = nullptr;

// Log lines go to the client, which writes them into its own log; what cannot go there
// (other threads, no client any more) goes to standard error.
void forwardMessage(QtMsgType type, const QMessageLogContext&, const QString& strMessage)
{
    // A line logged while one is being sent (by the socket itself) goes to standard error.
    static bool s_bSending = false;
    if (s_pSocket && !s_bSending && s_pSocket->state() == QLocalSocket::ConnectedState &&
        QThread::currentThread() == qApp->thread()) {
        s_bSending = true;
        MapViewProtocol::send(s_pSocket, MapViewProtocol::eLog,
                              [&](QDataStream& out) { out << int(type) << strMessage; });
        s_bSending = false;
        return;
    }
    fprintf(stderr, "tarvik-mapview: %s\n", qPrintable(strMessage));
}

// Qt WebEngine refuses to run as root with its sandbox on. Without the sandbox, the
// zygote processes serve nothing: renderers are then started directly.
void prepareWebEngine()
{
    if (geteuid() == 0 && qEnvironmentVariableIsEmpty("QTWEBENGINE_DISABLE_SANDBOX"))
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    if (qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX")) {
        const QByteArray flags = qgetenv("QTWEBENGINE_CHROMIUM_FLAGS");
        if (!flags.split(' ').contains("--no-zygote"))
            qputenv("QTWEBENGINE_CHROMIUM_FLAGS",
                    flags.isEmpty() ? "--no-zygote" : flags + " --no-zygote");
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
}
}  // namespace

int main(int argc, char** argv)
{
    // Ends with the client, should the socket not tell.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    const int iFd = MapViewProtocol::kSocketFd;
    if (fcntl(iFd, F_SETFD, FD_CLOEXEC) != 0) {
        fprintf(stderr, "tarvik-mapview: no client socket on descriptor %d\n", iFd);
        return 2;
    }
    prepareWebEngine();
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=true"));
    QApplication app(argc, argv);

    QLocalSocket socket;
    if (!socket.setSocketDescriptor(iFd)) {
        fprintf(stderr, "tarvik-mapview: cannot use the client socket: %s\n",
                qPrintable(socket.errorString()));
        return 2;
    }
    s_pSocket = &socket;
    qInstallMessageHandler(forwardMessage);

    // Off the record: nothing is written to disk; tiles stay in the memory cache.
    auto* pProfile = new QWebEngineProfile;
    pProfile->setHttpCacheType(QWebEngineProfile::MemoryHttpCache);
    auto* pView = new CMapPageView(pProfile);
    pView->show();
    int iResult = 0;
    {
        CMapViewServer server(pView, &socket);
        iResult = app.exec();
    }
    // The page before its profile.
    delete pView;
    delete pProfile;
    s_pSocket = nullptr;
    qInstallMessageHandler(nullptr);
    return iResult;
}
