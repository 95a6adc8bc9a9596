// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QEvent>
#include <QPointer>
#include <QWebEngineView>

#include "canimation.h"

class QWebEnginePage;

namespace Dravo {

// The web view of the map screens: a black blank page at start, the busy animation while
// a page loads (taps refused meanwhile), and optionally one of two input filters. Input
// reaches a web view through its focus proxy, the child widget that renders the page, so
// the filters and the busy gate sit on that widget, attached as soon as it exists.
class CTWWebView : public QWebEngineView
{
    Q_OBJECT
public:
    // Stops left-button drags from reaching the page as moves: press and release pass, the
    // moves between them are swallowed.
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

    // pPage: the view's page, made without a parent (the view becomes it); the default
    // page when null.
    CTWWebView(QWidget* parent, int iFilterType, QWebEnginePage* pPage = nullptr);

    void setBusy(bool bBusy);
    bool isBusy() const { return m_bBusy; }
    // The filter chosen at construction; null for none.
    QObject* userActionsFilter() const { return m_pFilter; }
    // The widget that receives the view's input; null until the page has been rendered.
    QWidget* inputWidget() const { return m_pInputWidget; }
    // Draws what the view shows while busy: black with the animation's current frame.
    void paintBusy(QPainter* pPainter, const QRect& area) const;

public slots:
    void onAnimationFrameChanged();
    void onLoadStarted();
    void onLoadFinished(bool ok);

protected:
    bool event(QEvent* pEvent) override;
    bool eventFilter(QObject* pObject, QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;

private:
    static bool isRefusedWhileBusy(QEvent::Type type);
    void attachToInputWidget();

    bool m_bBusy;
    CAnimation m_animation;
    QObject* m_pFilter;
    QPointer<QWidget> m_pInputWidget;
    QWidget* m_pCover;
};

}  // namespace Dravo
