// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMainWindow>

namespace Dravo {

class CMainFormStack;

// The one top-level window: 800 x 450 unless TARVIK_WINDOW_SIZE says otherwise, black, holding the
// main form stack. It is shown when the stack says so, and takes its title from the stack's current
// form.
class CMainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit CMainWindow(QWidget* parent = nullptr);

    CMainFormStack* formStack() const { return m_pFormStack; }

public Q_SLOTS:
    void updateTitle();

private:
    static QSize initialSize();

    QWidget* m_pCentralWidget;
    CMainFormStack* m_pFormStack;
};

}  // namespace Dravo
