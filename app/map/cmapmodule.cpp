// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cmapmodule.h"

#include "cplugindirectory.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QPluginLoader>
#include <QtDebug>

#include "cplaceholderform.h"
#include "ctexts.h"
#include "imapmodule.h"

namespace Dravo {

namespace {
const char* const kPluginFile = "libtarvikmap.so";

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
    return {pluginDirectory()};
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
