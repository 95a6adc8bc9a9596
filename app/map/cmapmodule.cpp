// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cmapmodule.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QOpenGLContext>
#include <QPluginLoader>
#include <QtDebug>

#include "cplaceholderform.h"
#include "ctexts.h"
#include "imapmodule.h"

QT_BEGIN_NAMESPACE
// Exported by Qt GUI; the attribute below would otherwise make every start pay for it.
Q_GUI_EXPORT void qt_gl_set_global_share_context(QOpenGLContext* pContext);
QT_END_NAMESPACE

namespace Dravo {

namespace {
const char* const kPluginFile = "libtarvikmap.so";

// Qt WebEngine renders through an OpenGL context shared with the application. Asked for
// before the application object exists, Qt makes that context at start-up, loading the
// OpenGL driver (about 70 ms and 70 MB here) for a map that may never be opened; so the
// context is made here, just before the web engine comes in. It is destroyed with the
// application object, as the one Qt would have made.
QOpenGLContext* s_pShareContext = nullptr;

void deleteShareContext()
{
    qt_gl_set_global_share_context(nullptr);
    delete s_pShareContext;
    s_pShareContext = nullptr;
}

void shareOpenGLContexts()
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    if (QOpenGLContext::globalShareContext())
        return;
    auto* pContext = new QOpenGLContext;
    if (!pContext->create()) {
        qWarning() << "CMapModule: no shared OpenGL context; the map may not render";
        delete pContext;
        return;
    }
    s_pShareContext = pContext;
    qt_gl_set_global_share_context(pContext);
    qAddPostRoutine(deleteShareContext);
}

// Without the sandbox, the zygote processes serve nothing but would stay for the life of
// the web engine, that is of the client: renderers are then started directly and end with
// their pages, so no web engine process is left once the last map has closed.
void dropZygoteWithoutSandbox()
{
    if (!qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX"))
        return;
    QByteArray flags = qgetenv("QTWEBENGINE_CHROMIUM_FLAGS");
    if (flags.split(' ').contains("--no-zygote"))
        return;
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", flags.isEmpty() ? "--no-zygote" : flags + " --no-zygote");
}

struct State
{
    bool bTried = false;
    IMapModule* pModule = nullptr;
    QString strError;
};

State& state()
{
    static State s_state;
    return s_state;
}
}  // namespace

QStringList CMapModule::searchPaths()
{
    const QString env = qEnvironmentVariable("TARVIK_PLUGIN_DIR");
    if (!env.isEmpty())
        return {env};
    return {QDir::cleanPath(QDir(QCoreApplication::applicationDirPath())
                                .filePath(QStringLiteral(TARVIK_PLUGIN_RELDIR)))};
}

IMapModule* CMapModule::module()
{
    State& s = state();
    if (s.bTried)
        return s.pModule;
    s.bTried = true;
    QString strPath;
    for (const QString& dir : searchPaths()) {
        const QString candidate = QDir(dir).filePath(QLatin1String(kPluginFile));
        if (QFileInfo::exists(candidate)) {
            strPath = candidate;
            break;
        }
    }
    if (strPath.isEmpty()) {
        s.strError = QStringLiteral("%1 not found in %2")
                         .arg(QLatin1String(kPluginFile), searchPaths().join(QStringLiteral(", ")));
    } else {
        shareOpenGLContexts();
        dropZygoteWithoutSandbox();
        QPluginLoader loader(strPath);
        s.pModule = qobject_cast<IMapModule*>(loader.instance());
        if (!s.pModule)
            s.strError = loader.errorString();
    }
    if (s.pModule)
        qDebug().noquote() << "CMapModule: map plugin loaded from " + strPath;
    else
        qCritical().noquote() << "CMapModule: cannot load the map plugin: " + s.strError;
    return s.pModule;
}

QString CMapModule::errorString()
{
    return state().strError;
}

CForm* CMapModule::createMapForm(QWidget* pParent, const CTarvik& tarvik, int iMapType)
{
    if (IMapModule* pModule = module())
        return pModule->createMapForm(pParent, tarvik, iMapType);
    return new CPlaceholderForm(pParent, CTexts::map(), CTexts::mapUnavailable());
}

}  // namespace Dravo
