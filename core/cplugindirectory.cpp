// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cplugindirectory.h"

#include <QCoreApplication>
#include <QDir>

namespace Dravo {

QString pluginDirectory()
{
    const QString strDir = qEnvironmentVariable("TARVIK_PLUGIN_DIR");
    if (!strDir.isEmpty())
        return strDir;
    return QDir::cleanPath(QDir(QCoreApplication::applicationDirPath())
                               .filePath(QStringLiteral(TARVIK_PLUGIN_RELDIR)));
}

QString pluginFile(const QString& strName)
{
    return QDir::cleanPath(QDir(pluginDirectory()).filePath(strName));
}

}  // namespace Dravo
