// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMainWindow>

namespace Dravo {

class CMainFormStack;

// The one top-level window: 800 x 450 (or what a smaller screen has room for), black,
// holding the main form stack. It is shown when the stack says so, and takes its title
// from the stack's current form.
class CMainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit CMainWindow(QWidget* parent = nullptr);

    CMainFormStack* formStack() const { return m_pFormStack; }

    // 800 x 450, within the screen's available size (a phone standing upright gets its
    // whole screen); TARVIK_WINDOW_SIZE=WxH asks for another size.
    static QSize initialSize(const QByteArray& strRequested, const QSize& available);
    static constexpr int MIN_SIDE = 200;

public Q_SLOTS:
    void updateTitle();

private:
    QWidget* m_pCentralWidget;
    CMainFormStack* m_pFormStack;
};

}  // namespace Dravo
