// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <unistd.h>
#include <QApplication>
#include <QColor>
#include <QImage>
#include <QVariant>
#include <QWebEnginePage>
#include <QWebEngineView>
#include <QtTest>
#include <memory>
#include <optional>

namespace TarvikTest {

// Qt WebEngine wants shared OpenGL contexts before the application object exists, and
// no sandbox when running as root.
inline void prepareWebEngine()
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    if (geteuid() == 0 && qEnvironmentVariableIsEmpty("QTWEBENGINE_DISABLE_SANDBOX"))
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
}

// Runs a script in the view's page and waits for its result; the test fails when no
// result comes.
inline QVariant evalJs(QWebEngineView* pView, const QString& strScript, int iTimeoutMs = 30000)
{
    auto pResult = std::make_shared<std::optional<QVariant>>();
    // The callback may outlive a wait that gave up; it holds the result by sharing it.
    pView->page()->runJavaScript(strScript, [pResult](const QVariant& value) { *pResult = value; });
    if (!QTest::qWaitFor([&] { return pResult->has_value(); }, iTimeoutMs)) {
        QTest::qFail(qPrintable(QStringLiteral("no answer from the page to: ") + strScript),
                     __FILE__, __LINE__);
        return QVariant();
    }
    return **pResult;
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

// QTEST_MAIN with the WebEngine preparation first.
#define TARVIK_WEBENGINE_TEST_MAIN(TestClass)    \
    int main(int argc, char** argv)              \
    {                                            \
        TarvikTest::prepareWebEngine();          \
        QApplication app(argc, argv);            \
        app.setAttribute(Qt::AA_Use96Dpi, true); \
        TestClass test;                          \
        QTEST_SET_MAIN_SOURCE_PATH               \
        return QTest::qExec(&test, argc, argv);  \
    }
