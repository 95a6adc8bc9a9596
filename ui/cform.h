// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QTimer>
#include <QWidget>

namespace Dravo {

// One screen or popup of the application. A form never touches its stack: it asks for things
// with closeForm, showForm and updateTitle, and the stack carries them out.
class CForm : public QWidget
{
    Q_OBJECT
public:
    explicit CForm(QWidget* parent = nullptr);

    virtual QString title() const = 0;
    // A form that is drawn over the form beneath it (popups) returns true.
    virtual bool showsFormBelow() const;

    // Button handlers start with: if (buttonsLocked()) return; lockButtons();
    // so that a second press within UNLOCK_INTERVAL of an accepted one is dropped.
    void lockButtons();
    bool buttonsLocked() const { return m_bButtonsLocked; }

    static const int UNLOCK_INTERVAL = 500;

signals:
    // destroy: the stack deletes the form; otherwise it only takes it out.
    void closeForm(bool destroy, Dravo::CForm* pForm = nullptr);
    void showForm(Dravo::CForm* pForm);
    void updateTitle(Dravo::CForm* pForm);

public slots:
    void onTimerUnlockButtonsTimeout();

private:
    QTimer m_timerUnlockButtons;
    bool m_bButtonsLocked;
};

}  // namespace Dravo
