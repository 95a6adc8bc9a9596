// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

class QThread;

#include "icontactsmodule.h"

namespace Dravo {

// Finds and loads the contacts plugin. loadInBackground() does the expensive part
// (mapping the plugin) on a helper thread so start-up
// is not held up; module() finishes the job on the GUI thread when the plugin is
// first needed and returns null, with a log line, when it cannot be loaded.
class CContactsModule : public QObject
{
    Q_OBJECT
public:
    // The client's loader; tests make their own.
    static CContactsModule* instance();
    CContactsModule() = default;

    // Where the plugin is looked for: $TARVIK_PLUGIN_DIR when set, otherwise the
    // directory the build or the installation puts it in, relative to the executable.
    static QStringList searchPaths();

    // Starts loading off the GUI thread; initialize() of the module follows on the
    // GUI thread once it is loaded. Calling it twice does nothing more.
    void loadInBackground();
    IContactsModule* module();
    QString errorString() const { return m_strError; }

Q_SIGNALS:
    void loaded(bool ok);

private:
    bool loadLibrary(QString* error) const;
    void finishLoading(bool initialize);
    void waitForLoader();

    QPointer<QObject> m_pInstance;
    QPointer<QThread> m_pLoader;
    QString m_strError;
    QString m_strPath;
    bool m_bLoading = false;
    bool m_bDone = false;
};

}  // namespace Dravo
