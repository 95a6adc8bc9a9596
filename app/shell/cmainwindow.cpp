// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cmainwindow.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QScreen>
#include <QtDebug>

#include "cmainformstack.h"

namespace Dravo {

CMainWindow::CMainWindow(QWidget* parent)
    : QMainWindow(parent), m_pCentralWidget(nullptr), m_pFormStack(nullptr)
{
    QPalette pal = palette();
    pal.setColor(QPalette::Window, Qt::black);
    setPalette(pal);

    m_pCentralWidget = new QWidget(this);
    auto* pLayout = new QHBoxLayout(m_pCentralWidget);
    pLayout->setSpacing(0);
    pLayout->setContentsMargins(0, 0, 0, 0);
    setCentralWidget(m_pCentralWidget);

    m_pFormStack = new CMainFormStack(this);
    pLayout->addWidget(m_pFormStack);

    connect(m_pFormStack, &CMainFormStack::onTitleUpdate, this, &CMainWindow::updateTitle);
    connect(m_pFormStack, &CMainFormStack::signalShowMainWindow, this, &CMainWindow::show);

    const QScreen* pScreen = QGuiApplication::primaryScreen();
    setGeometry(QRect(QPoint(0, 0), initialSize(qgetenv("TARVIK_WINDOW_SIZE"),
                                                pScreen ? pScreen->availableSize() : QSize())));
    updateTitle();
}

QSize CMainWindow::initialSize(const QByteArray& strRequested, const QSize& available)
{
    if (!strRequested.isEmpty()) {
        const QList<QByteArray> parts = strRequested.toLower().split('x');
        bool bWidth = false;
        bool bHeight = false;
        const QSize requested =
            parts.size() == 2 ? QSize(parts[0].toInt(&bWidth), parts[1].toInt(&bHeight)) : QSize();
        if (bWidth && bHeight && requested.width() >= MIN_SIDE && requested.height() >= MIN_SIDE)
            return requested;
        qWarning("CMainWindow: TARVIK_WINDOW_SIZE=%s is not a size like 360x720, ignored",
                 strRequested.left(40).constData());
    }
    const QSize landscape(800, 450);
    const bool bFits =
        available.width() >= landscape.width() && available.height() >= landscape.height();
    if (bFits || available.width() < MIN_SIDE || available.height() < MIN_SIDE)
        return landscape;
    return available;
}

void CMainWindow::updateTitle()
{
    const QString strTitle = m_pFormStack ? m_pFormStack->currentTitle() : QString();
    if (!strTitle.isEmpty())
        setWindowTitle(strTitle);
}

}  // namespace Dravo
