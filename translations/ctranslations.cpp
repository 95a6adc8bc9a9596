// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctranslations.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QTranslator>

// Q_INIT_RESOURCE must be used outside of any namespace.
static void registerTranslations()
{
    Q_INIT_RESOURCE(tarvik_i18n);
}

namespace Dravo {

namespace {
const char* const RESOURCE_DIR = ":/i18n";
const char* const FILE_PREFIX = "tarvik";
}  // namespace

QString CTranslations::install(const QLocale& locale)
{
    static const bool s_bRegistered = (registerTranslations(), true);
    Q_UNUSED(s_bRegistered);

    // The C and English locales keep the source texts: nothing is loaded.
    auto* pApp = QCoreApplication::instance();
    auto* pOwn = new QTranslator(pApp);
    if (!pOwn->load(locale, QLatin1String(FILE_PREFIX), QStringLiteral("_"),
                    QLatin1String(RESOURCE_DIR))) {
        delete pOwn;
        return QString();
    }
    const QString strLanguage = pOwn->language();

    // Qt's texts in the same language as ours, never in a language we do not speak.
    // The translator installed last is asked first, so ours goes in after Qt's.
    auto* pQt = new QTranslator(pApp);
    const QString strQtDir = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (pQt->load(QLocale(strLanguage), QStringLiteral("qtbase"), QStringLiteral("_"), strQtDir)) {
        QCoreApplication::installTranslator(pQt);
    } else {
        qDebug("CTranslations: no Qt translation for %s in %s", qPrintable(strLanguage),
               qPrintable(strQtDir));
        delete pQt;
    }
    QCoreApplication::installTranslator(pOwn);
    qDebug("CTranslations: %s installed", qPrintable(strLanguage));
    return strLanguage;
}

QStringList CTranslations::languages()
{
    static const bool s_bRegistered = (registerTranslations(), true);
    Q_UNUSED(s_bRegistered);
    QStringList lst;
    const QStringList lstFiles = QDir(QLatin1String(RESOURCE_DIR)).entryList({"tarvik_*.qm"});
    for (const QString& strFile : lstFiles)
        lst << strFile.mid(int(qstrlen(FILE_PREFIX)) + 1).chopped(3);
    return lst;
}

}  // namespace Dravo
