// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QEvent>
#include <QImage>
#include <QWidget>

#include "canimation.h"

namespace Dravo {

// Shows a web page rendered elsewhere (the map view helper) as the pictures it sends: a
// black blank page at start, the busy animation while a page loads (taps refused
// meanwhile), a failure text when the page cannot be shown, and optionally one of two
// input filters.
class CTWWebView : public QWidget
{
    Q_OBJECT
public:
    // Stops left-button drags as moves: press and release pass, the moves between them are
    // swallowed.
    class CKineticScrollEventFilter : public QObject
    {
    public:
        explicit CKineticScrollEventFilter(QObject* parent) : QObject(parent), m_bPressed(false) {}
        bool eventFilter(QObject* pObject, QEvent* pEvent) override;

    private:
        bool m_bPressed;
    };

    // Swallows every mouse, wheel, key, tablet, touch, gesture and drag-and-drop action; a
    // context menu request still passes.
    class CBlockAllUserActionsEventFilter : public QObject
    {
    public:
        explicit CBlockAllUserActionsEventFilter(QObject* parent) : QObject(parent) {}
        bool eventFilter(QObject* pObject, QEvent* pEvent) override;
    };

    enum eFilterType
    {
        eFilterNone = 0,
        eFilterKineticScroll = 1,
        eFilterBlockAllUserActions = 2
    };

    CTWWebView(QWidget* parent, int iFilterType);

    void setBusy(bool bBusy);
    bool isBusy() const { return m_bBusy; }
    // The filter chosen at construction; null for none.
    QObject* userActionsFilter() const { return m_pFilter; }
    // The page's latest picture.
    const QImage& frame() const { return m_frame; }
    void setFrame(const QImage& frame);
    // Shown instead of the page once set: the page cannot be shown.
    QString failureText() const { return m_strFailure; }
    void setFailureText(const QString& strText);

signals:
    void loadStarted();
    void loadFinished(bool ok);

public slots:
    void onAnimationFrameChanged();
    void onLoadStarted();
    void onLoadFinished(bool ok);

protected:
    bool event(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;

private:
    static bool isRefusedWhileBusy(QEvent::Type type);

    bool m_bBusy;
    CAnimation m_animation;
    QObject* m_pFilter;
    QImage m_frame;
    QString m_strFailure;
};

}  // namespace Dravo
