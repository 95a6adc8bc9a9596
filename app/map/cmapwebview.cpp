// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cmapwebview.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>
#include <QCoreApplication>
#include <QFileInfo>
#include <QLocalSocket>
#include <QProcess>
#include <QResizeEvent>
#include <QTimer>
#include <QtDebug>

#include "cmapconfig.h"
#include "cmapviewprotocol.h"
#include "ctexts.h"

namespace Dravo {

using namespace MapViewProtocol;

namespace {
// How long a helper whose view has gone may take to end by itself before it is killed.
const int kHelperExitMs = 5000;

// Helpers whose views have gone but that are still ending.
QList<QProcess*>& endingHelpers()
{
    static QList<QProcess*> s_lstHelpers;
    return s_lstHelpers;
}

// At exit, the helpers still ending are waited for (and killed when they take too long),
// so that none outlives the client.
void waitForEndingHelpers()
{
    const QList<QProcess*> lstHelpers = endingHelpers();
    endingHelpers().clear();
    for (QProcess* pProcess : lstHelpers) {
        if (!pProcess->waitForFinished(kHelperExitMs)) {
            pProcess->kill();
            pProcess->waitForFinished(1000);
        }
        delete pProcess;
    }
}
}  // namespace

CMapWebView::CMapWebView(const CLocation& location, bool bIsRouteMap, QWidget* parent)
    : CTWWebView(parent, eFilterBlockAllUserActions),
      m_location(location),
      m_bIsRouteMap(bIsRouteMap),
      m_bPageReady(false),
      m_bLoadReported(false),
      m_pSocket(new QLocalSocket(this)),
      m_iLastEvaluation(0)
{
    setContextMenuPolicy(Qt::NoContextMenu);
    setAcceptDrops(false);
    connect(this, &CTWWebView::loadFinished, this, &CMapWebView::onLoadFinished);
    // Started now, so that the helper comes up while the form is laid out; the page is
    // loaded after the constructor has returned, so that the owner's connections are made.
    startHelper();
    QTimer::singleShot(0, this, &CMapWebView::loadHtml);
}

CMapWebView::~CMapWebView()
{
    if (!m_pProcess)
        return;
    // Closing the socket ends the helper, which takes its web engine processes with it;
    // one that hangs is killed.
    QProcess* pProcess = m_pProcess;
    disconnect(pProcess, nullptr, this, nullptr);
    m_pSocket->abort();
    pProcess->setParent(nullptr);
    static bool s_bWaitAtExit = false;
    if (!s_bWaitAtExit) {
        s_bWaitAtExit = true;
        qAddPostRoutine(waitForEndingHelpers);
    }
    endingHelpers().append(pProcess);
    connect(pProcess, &QProcess::finished, pProcess, [pProcess] {
        endingHelpers().removeOne(pProcess);
        pProcess->deleteLater();
    });
    QTimer::singleShot(kHelperExitMs, pProcess, &QProcess::kill);
}

void CMapWebView::startHelper()
{
    const QString strPath = CMapConfig::helperPath();
    if (!QFileInfo(strPath).isExecutable()) {
        onHelperGone(QStringLiteral("%1 not found").arg(strPath));
        return;
    }
    int fds[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, fds) != 0) {
        onHelperGone(QStringLiteral("no socket: %1").arg(QString::fromLocal8Bit(strerror(errno))));
        return;
    }
    m_pSocket->setSocketDescriptor(fds[0]);
    connect(m_pSocket, &QLocalSocket::readyRead, this, &CMapWebView::onHelperMessages);

    auto* pProcess = new QProcess(this);
    m_pProcess = pProcess;
    // The helper renders offscreen at the client's pixel ratio.
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    env.remove(QStringLiteral("QT_SCREEN_SCALE_FACTORS"));
    const qreal dRatio = devicePixelRatioF();
    if (dRatio != 1.0)
        env.insert(QStringLiteral("QT_SCALE_FACTOR"), QString::number(dRatio));
    else
        env.remove(QStringLiteral("QT_SCALE_FACTOR"));
    pProcess->setProcessEnvironment(env);
    pProcess->setStandardInputFile(QProcess::nullDevice());
    pProcess->setStandardOutputFile(QProcess::nullDevice());
    pProcess->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const int iChildFd = fds[1];
    pProcess->setChildProcessModifier([iChildFd] {
        // The helper's end of the socket as descriptor 3, kept across exec.
        if (iChildFd == kSocketFd)
            fcntl(kSocketFd, F_SETFD, 0);
        else
            dup2(iChildFd, kSocketFd);
    });
    connect(pProcess, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            onHelperGone(m_pProcess ? m_pProcess->errorString() : QString());
    });
    connect(pProcess, &QProcess::finished, this, [this](int iCode, QProcess::ExitStatus status) {
        onHelperGone(status == QProcess::CrashExit
                         ? QStringLiteral("it ended by a signal")
                         : QStringLiteral("it ended with exit code %1").arg(iCode));
    });
    pProcess->start(strPath, {});
    ::close(iChildFd);
}

qint64 CMapWebView::helperProcessId() const
{
    return m_pProcess ? m_pProcess->processId() : 0;
}

void CMapWebView::onHelperGone(const QString& strReason)
{
    if (!failureText().isEmpty())
        return;
    qCritical().noquote() << "CMapWebView: the map view helper is not running, no map: " +
                                 strReason;
    m_pSocket->abort();
    m_bPageReady = false;
    setFailureText(CTexts::mapUnavailable());
    setBusy(false);
    const auto results = m_mapResults;
    m_mapResults.clear();
    for (const auto& result : results)
        result(QVariant());
    // The owner hears of it as of a failed load, after its connections are made.
    if (!m_bLoadReported) {
        m_bLoadReported = true;
        QTimer::singleShot(0, this, [this] { emit loadFinished(false); });
    }
}

void CMapWebView::onHelperMessages()
{
    quint8 type = 0;
    QByteArray arguments;
    while (m_pSocket->isOpen() && receive(m_pSocket, &type, &arguments)) {
        QDataStream in(arguments);
        in.setVersion(kStreamVersion);
        switch (type) {
            case eLoadFinished: {
                bool ok = false;
                in >> ok;
                m_bLoadReported = true;
                emit loadFinished(ok);
                break;
            }
            case eRouteError: {
                QString strText;
                in >> strText;
                onRouteError(strText);
                break;
            }
            case eRouteLoaded:
                onRouteLoaded();
                break;
            case eTilesLoaded:
                onMapTilesLoaded();
                break;
            case eFrame:
                setFrame(readFrame(in));
                break;
            case eLog: {
                int iType = 0;
                QString strMessage;
                in >> iType >> strMessage;
                QMessageLogger logger;
                switch (iType) {
                    case QtWarningMsg:
                        logger.warning().noquote() << strMessage;
                        break;
                    case QtCriticalMsg:
                    case QtFatalMsg:
                        logger.critical().noquote() << strMessage;
                        break;
                    case QtInfoMsg:
                        logger.info().noquote() << strMessage;
                        break;
                    default:
                        logger.debug().noquote() << strMessage;
                        break;
                }
                break;
            }
            case eResult: {
                quint32 iId = 0;
                QVariant value;
                in >> iId >> value;
                if (auto result = m_mapResults.take(iId))
                    result(value);
                break;
            }
            default:
                break;
        }
    }
}

void CMapWebView::loadHtml()
{
    if (!failureText().isEmpty())
        return;
    m_bPageReady = false;
    emit loadStarted();
    const bool bRoute = m_bIsRouteMap;
    const QString strConfig = CMapConfig::pageConfigScript();
    const QString strUserAgent = CMapConfig::userAgent();
    const QSize viewSize = size();
    send(m_pSocket, eLoad,
         [&](QDataStream& out) { out << bRoute << strConfig << strUserAgent << viewSize; });
}

void CMapWebView::onLoadFinished(bool ok)
{
    qDebug("CMapWebView::onLoadFinished ok = %d", ok);
    m_bPageReady = failureText().isEmpty();
    resizeMap();
}

void CMapWebView::resizeEvent(QResizeEvent* pEvent)
{
    qDebug("CMapWebView::resizeEvent size.width = %d, size.height = %d", pEvent->size().width(),
           pEvent->size().height());
    resizeMap();
    // The helper's view takes the size; the position page sizes its map division first.
    if (m_pSocket->isOpen()) {
        const QSize viewSize = pEvent->size();
        send(m_pSocket, eResize, [&](QDataStream& out) { out << viewSize; });
    }
    CTWWebView::resizeEvent(pEvent);
}

void CMapWebView::resizeMap()
{
    qDebug("CMapWebView::resizeMap size.width = %d, size.height = %d", width(), height());
}

void CMapWebView::showMap()
{
    qDebug("CMapWebView::showMap");
    evaluate(QStringLiteral("setSize(%1,%2);").arg(width()).arg(height()));
    evaluate(
        QStringLiteral("loadMap(%1,%2);").arg(m_location.latitude()).arg(m_location.longitude()));
}

void CMapWebView::showRouteScript(const char* pszFunction, double dLatitude, double dLongitude)
{
    qDebug("CMapWebView::showRoute");
    evaluate(QStringLiteral("%1(%2, %3, %4, %5);")
                 .arg(QLatin1String(pszFunction))
                 .arg(dLatitude)
                 .arg(dLongitude)
                 .arg(m_location.latitude())
                 .arg(m_location.longitude()));
}

void CMapWebView::showRoute(double dLatitude, double dLongitude)
{
    showRouteScript("loadRoute", dLatitude, dLongitude);
}

void CMapWebView::showRouteMap(double dLatitude, double dLongitude)
{
    showRouteScript("loadRouteMap", dLatitude, dLongitude);
}

void CMapWebView::showRouteDirections(double dLatitude, double dLongitude)
{
    showRouteScript("loadRouteDirections", dLatitude, dLongitude);
}

QString CMapWebView::mapActionScript(int iActionType)
{
    switch (iActionType) {
        case 0:
            return QStringLiteral("moveMap( 'north' );");
        case 1:
            return QStringLiteral("moveMap( 'east' );");
        case 2:
            return QStringLiteral("moveMap( 'south' );");
        case 3:
            return QStringLiteral("moveMap( 'west' );");
        case 4:
            return QStringLiteral("zoomMap( 'in' );");
        case 5:
            return QStringLiteral("zoomMap( 'out' );");
        default:
            return QString();
    }
}

void CMapWebView::executeMapAction(int iActionType)
{
    qDebug("CMapWebView::executeMapAction actionType = %d", iActionType);
    evaluate(mapActionScript(iActionType));
}

void CMapWebView::pageDown()
{
    evaluate(QStringLiteral("window.scrollBy(0, %1);").arg(height() - 10));
}

void CMapWebView::pageUp()
{
    evaluate(QStringLiteral("window.scrollBy(0, %1);").arg(10 - height()));
}

void CMapWebView::onMapTilesLoaded()
{
    qDebug("CMapWebView::onMapTilesLoaded");
    emit signalMapTilesLoaded();
}

void CMapWebView::onRouteLoaded()
{
    qDebug("CMapWebView::onRouteLoaded");
    emit signalRouteLoaded();
}

void CMapWebView::onRouteError(const QString& strText)
{
    qDebug().noquote() << "CMapWebView::onRouteError: " + logSafe(strText);
    emit signalRouteError();
}

void CMapWebView::evaluate(const QString& strScript)
{
    // The helper holds scripts back until its page has loaded.
    if (!strScript.isEmpty() && m_pSocket->isOpen())
        send(m_pSocket, eRunScript, [&](QDataStream& out) { out << strScript; });
}

void CMapWebView::runJavaScript(const QString& strScript,
                                const std::function<void(const QVariant&)>& result)
{
    if (!m_pSocket->isOpen()) {
        result(QVariant());
        return;
    }
    const quint32 iId = ++m_iLastEvaluation;
    m_mapResults.insert(iId, result);
    send(m_pSocket, eEvaluate, [&](QDataStream& out) { out << iId << strScript; });
}

}  // namespace Dravo
