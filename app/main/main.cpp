#include <unistd.h>

#include <QApplication>
#include <QDBusConnection>

#include "capplicationstyle.h"
#include "casynctstorage.h"
#include "clogwriter.h"
#include "cmainwindow.h"
#include "comqeltarvikdaemoninterface.h"
#include "cossocontext.h"
#include "cquitonsignal.h"
#include "dbusobject.h"
#include "startaddressbook.h"
#include "uiresources.h"

using namespace Dravo;

int main(int argc, char** argv)
{
    // The map module's web engine refuses to run as root with its sandbox on; the
    // variable must be set before any Qt object exists.
    if (geteuid() == 0 && qEnvironmentVariableIsEmpty("QTWEBENGINE_DISABLE_SANDBOX"))
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");

    if (CLogWriter::fileLoggingWanted(argc, argv))
        CLogWriter::install();

    QApplication app(argc, argv);
    CQuitOnSignal quitOnSignal;
    initUiResources();
    CApplicationStyle::install();

    Tarvik::DBusObject::instance();

    if (!startAddressBook())
        qCritical("main: osso abook initialization failed!");

    // The platform's activation calls arrive from the start, like on the handset.
    COssoContext::instance();

    auto* pMainWindow = new CMainWindow(nullptr);

    CAsyncTStorage::getInstance(1)->start();

    // The daemon learns that the client is up; its answer is neither awaited nor
    // checked, so a missing daemon changes nothing here.
    auto* pDaemon = new ComQelTarvikDaemonInterface(Tarvik::DBusObject::daemonService(),
                                                    Tarvik::DBusObject::daemonPath(),
                                                    QDBusConnection::sessionBus());
    pDaemon->OnClientStarted();

    Tarvik::DBusObject::instance()->EmitApplicationStarted();

    const int iResult = app.exec();

    delete pDaemon;
    delete pMainWindow;
    return iResult;
}
