// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QTimer>
#include <QWidget>

class QBoxLayout;
class QScrollArea;

namespace Dravo {

class CTWToolBar;

// One screen or popup of the application. A form never touches its stack: it asks for things
// with closeForm, showForm and updateTitle, and the stack carries them out.
class CForm : public QWidget
{
    Q_OBJECT
public:
    explicit CForm(QWidget* parent = nullptr);
    ~CForm() override;

    virtual QString title() const = 0;
    // A form that is drawn over the form beneath it (popups) returns true.
    virtual bool showsFormBelow() const;

    // Button handlers start with: if (buttonsLocked()) return; lockButtons();
    // so that a second press within UNLOCK_INTERVAL of an accepted one is dropped.
    void lockButtons();
    bool buttonsLocked() const { return m_bButtonsLocked; }

    static const int UNLOCK_INTERVAL = 500;

    // Portrait: narrower than a landscape screen's content needs, or taller than wide.
    static bool isPortrait(const QSize& size);
    static constexpr int PORTRAIT_WIDTH = 600;
    static constexpr int REVEAL_MARGIN = 10;
    bool portrait() const { return m_bPortrait; }

signals:
    // destroy: the stack deletes the form; otherwise it only takes it out.
    void closeForm(bool destroy, Dravo::CForm* pForm = nullptr);
    void showForm(Dravo::CForm* pForm);
    void updateTitle(Dravo::CForm* pForm);

public slots:
    void onTimerUnlockButtonsTimeout();

protected:
    // The screen's content with its tool bar: the bar at the right in landscape, in rows
    // along the bottom in portrait. The form switches between them as it is resized.
    // Fields go in a scrolling content (bScrolls), so that the one with the focus stays in
    // view when an on-screen keyboard takes part of the window.
    void setBody(QWidget* pContent, CTWToolBar* pToolBar, bool bScrolls = false);
    // Called after the form changed orientation, with the new one.
    virtual void orientationChanged(bool bPortrait);
    void resizeEvent(QResizeEvent* event) override;

private:
    void setPortrait(bool bPortrait);
    void revealFocus();

    QBoxLayout* m_pBody = nullptr;
    CTWToolBar* m_pToolBar = nullptr;
    QScrollArea* m_pScrollArea = nullptr;
    QMetaObject::Connection m_focusConnection;
    bool m_bPortrait = false;
    QTimer m_timerUnlockButtons;
    bool m_bButtonsLocked;
};

}  // namespace Dravo
