// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cform.h"
#include "ctarvik.h"
#include "ctarvikstorage.h"
#include "ctsettings.h"

class QGridLayout;
class QMenu;

namespace Dravo {

class CLineEdit;
class CTextEdit;
class CTWPushButton;
class CTWToolBar;

// Shows one message read-only: date, sender (or recipient), subject and text, with the
// way on to the map, the route, an answer and a forward.
class CViewTarvikForm : public CForm
{
    Q_OBJECT
public:
    // Travels with the settings request of Reply and Forward and says which asked.
    class CViewUserData : public CTarvikStorage::CUserData
    {
    public:
        explicit CViewUserData(int useCase) : m_useCase(useCase) {}
        int m_useCase;  // 0 forward, 1 reply
    };
    enum eUseCase
    {
        eUseCaseForward = 0,
        eUseCaseReply = 1
    };

    CViewTarvikForm(QWidget* parent, const CTarvik& tarvik, int viewType);
    ~CViewTarvikForm() override;

    QString title() const override;

    int viewType() const { return m_viewType; }
    const CTarvik& tarvik() const { return m_tarvik; }
    CLineEdit* lineEditDate() const { return m_pLineEditDate; }
    CLineEdit* lineEditFromTo() const { return m_pLineEditFromTo; }
    CLineEdit* lineEditSubject() const { return m_pLineEditSubject; }
    CTextEdit* textEditMessage() const { return m_pTextEditMessage; }
    // Null for a sent message, which has no map buttons and no Reply.
    CTWPushButton* buttonShowOnMap() const { return m_pBtnShowOnMap; }
    CTWPushButton* buttonViewRoute() const { return m_pBtnViewRoute; }
    CTWPushButton* buttonReply() const { return m_pBtnReply; }
    CTWPushButton* buttonForward() const { return m_pBtnForward; }
    CTWPushButton* buttonBack() const { return m_pBtnBack; }

    // The message's position for other applications: "geo:LAT,LON" and "LAT, LON", six
    // decimals each.
    QUrl geoUri() const;
    QString coordinatesText() const;
    // Hands the position to the system's map application; false when none took it.
    bool openInMapApplication();
    // Puts the position on the clipboard, as text and as a geo: URI.
    void copyCoordinates();
    // The menu of the two above; the caller owns it.
    QMenu* createPositionMenu();

    // How long a press must be held to open the menu.
    static const int LONG_PRESS_MS = 700;

public Q_SLOTS:
    void onBtnCloseClick();
    void onBtnShowOnMapClick();
    void onBtnViewRouteClick();
    void onBtnReplyClick();
    void onBtnForwardClick();
    void settingsGotten(bool result, Dravo::CTSettings settings,
                        Dravo::CTarvikStorage::CUserData* userData);

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;
    void contextMenuEvent(QContextMenuEvent* pEvent) override;
    // Portrait has room for the short date only.
    void orientationChanged(bool bPortrait) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;

private:
    void showPositionMenu(const QPoint& globalPos, QMenu* pMenu = nullptr);
    // The fields keep their own menu (copy, select all) and gain the position entries.
    void extendFieldMenu(QWidget* pField, QWidget* pMouseTarget);
    CLineEdit* addField(QGridLayout* pGrid, int iRow, const QString& strLabel,
                        const QString& strText);
    CTWPushButton* addButton(const QString& strText, Qt::Alignment alignment,
                             void (CViewTarvikForm::*slot)());
    void requestSettings(int useCase);

    int m_viewType;
    CTarvik m_tarvik;
    CLineEdit* m_pLineEditDate;
    CLineEdit* m_pLineEditFromTo;
    CLineEdit* m_pLineEditSubject;
    CTextEdit* m_pTextEditMessage;
    CTWToolBar* m_pToolBar;
    CTWPushButton* m_pBtnShowOnMap;
    CTWPushButton* m_pBtnViewRoute;
    CTWPushButton* m_pBtnReply;
    CTWPushButton* m_pBtnForward;
    CTWPushButton* m_pBtnBack;
    QTimer m_timerLongPress;
    QPoint m_pointPressed;
    // The tag of the settings request still unanswered, or null.
    CViewUserData* m_pPendingUserData;
};

}  // namespace Dravo
