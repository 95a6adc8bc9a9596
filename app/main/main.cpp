// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QApplication>
#include <QDBusConnection>
#include <QLoggingCategory>
#include <QTimer>

#include "capplicationstyle.h"
#include "casynctstorage.h"
#include "cconnectionmanager.h"
#include "ccontactsmodule.h"
#include "cdesktopnotifier.h"
#include "clogwriter.h"
#include "cmainformstack.h"
#include "cmainmenuform.h"
#include "cmainwindow.h"
#include "comqeltarvikdaemoninterface.h"
#include "cossocontext.h"
#include "cquitonsignal.h"
#include "cscreens.h"
#include "cstartupprefetch.h"
#include "ctranslations.h"
#include "dbusobject.h"
#include "uiresources.h"

using namespace Dravo;

int main(int argc, char** argv)
{
    CStartupPrefetch prefetch;

    // The log is the client's trace: keep its debug lines even where the system's Qt
    // configuration turns debug output off (QT_LOGGING_RULES, when given, still wins).
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=true"));
    if (CLogWriter::fileLoggingWanted(argc, argv))
        CLogWriter::install();

    QApplication app(argc, argv);
    prefetch.startWithApplication();
    // The Wayland app id (and X11 class hint) names the desktop entry, from which a
    // phone's shell takes the icon, the name and the form factors.
    QGuiApplication::setDesktopFileName(QStringLiteral("com.qel.tarvik"));
    // Texts are translated once, when first used: the language is set before anything
    // shows one. The C locale keeps English.
    CTranslations::install(QLocale::system());
    CQuitOnSignal quitOnSignal;
    initUiResources();
    CApplicationStyle::install();

    Tarvik::DBusObject::instance();

    // The platform's activation calls arrive from the start, like on the handset.
    COssoContext::instance();

    registerScreens();
    auto* pMainWindow = new CMainWindow(nullptr);
    // New messages are also announced to the desktop while the window is in the back.
    new CDesktopNotifier(pMainWindow, &app);

    // The address book is not needed by the first screen: the chooser's plugin is loaded
    // on a helper thread once the main window is up (or after a few seconds when it stays
    // hidden), and it has the contacts read by its helper program without blocking. A
    // failure logs "main: osso abook initialization failed!" and the client goes on
    // without contacts.
    const auto startAddressBook = [] { CContactsModule::instance()->loadInBackground(); };
    QObject::connect(pMainWindow->formStack(), &CMainFormStack::signalShowMainWindow, &app,
                     [startAddressBook] { QTimer::singleShot(500, startAddressBook); });
    QTimer::singleShot(5000, &app, startAddressBook);

    // The network state is first needed on the second screen (compose, registration, the
    // map's choice of form), not by the main menu: its backend is found once the window
    // shows another form, a moment after that form has painted.
    CMainFormStack* pStack = pMainWindow->formStack();
    const auto prepareNetwork = [pStack] {
        if (pStack->isVisible() && !qobject_cast<CMainMenuForm*>(pStack->currentWidget()))
            QTimer::singleShot(100, CConnectionManager::instance(), &CConnectionManager::prepare);
    };
    QObject::connect(pStack, &QStackedWidget::currentChanged, &app, prepareNetwork);
    QObject::connect(pStack, &CMainFormStack::signalShowMainWindow, &app, prepareNetwork,
                     Qt::QueuedConnection);

    CAsyncTStorage::getInstance(1)->start();

    // The daemon learns that the client is up; its answer is neither awaited nor
    // checked, so a missing daemon changes nothing here.
    ComQelTarvikDaemonInterface* pDaemon = prefetch.takeDaemonProxy();
    pDaemon->OnClientStarted();

    Tarvik::DBusObject::instance()->EmitApplicationStarted();

    const int iResult = app.exec();

    delete pDaemon;
    delete pMainWindow;
    return iResult;
}
