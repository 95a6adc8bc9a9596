// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cmainwindow.h"

#include <QHBoxLayout>

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

    setGeometry(QRect(QPoint(0, 0), initialSize()));
    updateTitle();
}

QSize CMainWindow::initialSize()
{
    // TARVIK_WINDOW_SIZE ("360x720") gives the first size another screen wants, such as
    // a phone's; anything else keeps 800 x 450.
    const QStringList parts = qEnvironmentVariable("TARVIK_WINDOW_SIZE").split(QLatin1Char('x'));
    if (parts.size() == 2) {
        bool bWidth = false;
        bool bHeight = false;
        const QSize size(parts[0].toInt(&bWidth), parts[1].toInt(&bHeight));
        if (bWidth && bHeight && !size.isEmpty())
            return size;
    }
    return QSize(800, 450);
}

void CMainWindow::updateTitle()
{
    const QString strTitle = m_pFormStack ? m_pFormStack->currentTitle() : QString();
    if (!strTitle.isEmpty())
        setWindowTitle(strTitle);
}

}  // namespace Dravo
