// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QApplication>
#include <QColor>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QVariant>
#include <QtTest>
#include <memory>
#include <optional>

#include "cmapwebview.h"

namespace TarvikTest {

// Runs a script in the map view's page and waits for its result; the test fails when no
// result comes.
inline QVariant evalJs(Dravo::CMapWebView* pView, const QString& strScript, int iTimeoutMs = 30000)
{
    auto pResult = std::make_shared<std::optional<QVariant>>();
    // The callback may outlive a wait that gave up; it holds the result by sharing it.
    pView->runJavaScript(strScript, [pResult](const QVariant& value) { *pResult = value; });
    if (!QTest::qWaitFor([&] { return pResult->has_value(); }, iTimeoutMs)) {
        QTest::qFail(qPrintable(QStringLiteral("no answer from the page to: ") + strScript),
                     __FILE__, __LINE__);
        return QVariant();
    }
    return **pResult;
}

// The processes below root, children of children included.
inline QList<qint64> descendants(qint64 root)
{
    QHash<qint64, qint64> parents;
    for (const QString& entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        QFile stat(QStringLiteral("/proc/%1/stat").arg(entry));
        if (entry.toLongLong() > 0 && stat.open(QIODevice::ReadOnly)) {
            const QByteArray text = stat.readAll();
            parents.insert(entry.toLongLong(),
                           text.mid(text.lastIndexOf(')') + 2).split(' ').value(1).toLongLong());
        }
    }
    QList<qint64> lstFound;
    for (auto it = parents.cbegin(); it != parents.cend(); ++it) {
        for (qint64 p = it.value(); p > 1; p = parents.value(p, 0)) {
            if (p == root) {
                lstFound << it.key();
                break;
            }
        }
    }
    return lstFound;
}

// How many pixels of the image inside area are within tolerance of colour.
inline int countColour(const QImage& image, const QRect& area, const QColor& colour,
                       int iTolerance = 24)
{
    int iCount = 0;
    const QRect r = area.intersected(image.rect());
    for (int y = r.top(); y <= r.bottom(); ++y) {
        for (int x = r.left(); x <= r.right(); ++x) {
            const QColor c = image.pixelColor(x, y);
            if (qAbs(c.red() - colour.red()) <= iTolerance &&
                qAbs(c.green() - colour.green()) <= iTolerance &&
                qAbs(c.blue() - colour.blue()) <= iTolerance)
                ++iCount;
        }
    }
    return iCount;
}

}  // namespace TarvikTest

// QTEST_MAIN at 96 dpi, so that the pictures measured have the same size everywhere.
#define TARVIK_MAP_TEST_MAIN(TestClass)          \
    int main(int argc, char** argv)              \
    {                                            \
        QApplication app(argc, argv);            \
        app.setAttribute(Qt::AA_Use96Dpi, true); \
        TestClass test;                          \
        QTEST_SET_MAIN_SOURCE_PATH               \
        return QTest::qExec(&test, argc, argv);  \
    }
