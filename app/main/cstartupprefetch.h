// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <future>
#include <thread>

class ComQelTarvikDaemonInterface;

namespace Dravo {

// Start-up work that the first frame waits for but that needs neither the GUI thread nor
// its order: done on a helper thread while the GUI thread builds the application, so the
// two cores of a phone share it.
// - From construction, before the application object: the font configuration is read
//   (fontconfig parses its XML files once per process, a few milliseconds).
// - From startWithApplication(), once the application object exists: Qt's SQLite driver
//   plugin is loaded for the storage worker, the session bus connected and the daemon proxy
//   made (a proxy asks the bus for its service's owner and waits for the answer).
class CStartupPrefetch
{
public:
    CStartupPrefetch();
    ~CStartupPrefetch();
    CStartupPrefetch(const CStartupPrefetch&) = delete;
    CStartupPrefetch& operator=(const CStartupPrefetch&) = delete;

    void startWithApplication();
    // The daemon proxy made by startWithApplication(), waited for; it then belongs to the caller
    // and lives in the calling thread.
    ComQelTarvikDaemonInterface* takeDaemonProxy();

private:
    std::thread m_fontThread;
    std::thread m_applicationThread;
    std::future<ComQelTarvikDaemonInterface*> m_daemonProxy;
};

}  // namespace Dravo
