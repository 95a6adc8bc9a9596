// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cviewtarvikform.h"

#include <QBoxLayout>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDesktopServices>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QTextEdit>
#include <QUrl>

#include "casynctstorage.h"
#include "cdevicemodeguard.h"
#include "cformfactory.h"
#include "clineedit.h"
#include "ctarvikprefill.h"
#include "ctextedit.h"
#include "ctexts.h"
#include "ctwpushbutton.h"
#include "ctwtoolbar.h"

namespace Dravo {

namespace {
const int CONTENT_MARGIN = 10;
const int CONTENT_SPACING = 10;
// A press that moves further than this is a drag or a selection, not a long press.
const int LONG_PRESS_SLOP = 12;

// Read-only fields on graphite panels, labels in the accent colour.
const char* const CONTENT_STYLE =
    "#viewContent QLabel { color: #7fd3f2; font-size: 17px; }"
    "#viewContent QLineEdit, #viewContent QTextEdit { background: #1a1d22; color: white;"
    " border: 1px solid #30353d; border-radius: 4px; padding: 3px 6px; font-size: 17px;"
    " selection-background-color: #2aa8d8; }";

// "From:" reads "From" to a screen reader.
QString accessibleLabel(const QString& strLabel)
{
    QString str = strLabel;
    if (str.endsWith(QLatin1Char(':')))
        str.chop(1);
    return str;
}
}  // namespace

CViewTarvikForm::CViewTarvikForm(QWidget* parent, const CTarvik& tarvik, int viewType)
    : CForm(parent),
      m_viewType(viewType),
      m_tarvik(tarvik),
      m_pLineEditDate(nullptr),
      m_pLineEditFromTo(nullptr),
      m_pLineEditSubject(nullptr),
      m_pTextEditMessage(nullptr),
      m_pToolBar(nullptr),
      m_pBtnShowOnMap(nullptr),
      m_pBtnViewRoute(nullptr),
      m_pBtnReply(nullptr),
      m_pBtnForward(nullptr),
      m_pBtnBack(nullptr),
      m_pPendingUserData(nullptr)
{
    qDebug("CViewTarvikForm::CViewTarvikForm started viewType = %d", viewType);
    const bool bSent = viewType == CFormFactory::eViewSent;

    auto* pContent = new QWidget(this);
    pContent->setObjectName(QStringLiteral("viewContent"));
    pContent->setStyleSheet(QString::fromLatin1(CONTENT_STYLE));
    auto* pGrid = new QGridLayout(pContent);
    pGrid->setContentsMargins(CONTENT_MARGIN, CONTENT_MARGIN, CONTENT_MARGIN, CONTENT_MARGIN);
    pGrid->setHorizontalSpacing(CONTENT_SPACING);
    pGrid->setVerticalSpacing(CONTENT_SPACING / 2);
    m_pLineEditDate = addField(pGrid, 0, CTexts::dateLabel(), QString());
    orientationChanged(false);
    m_pLineEditFromTo = addField(pGrid, 1, bSent ? CTexts::toLabel() : CTexts::fromLabel(),
                                 CTarvikPrefill::shownParty(m_tarvik, bSent));
    m_pLineEditSubject = addField(pGrid, 2, CTexts::subjectLabel(), m_tarvik.title());

    m_pTextEditMessage = new CTextEdit(pContent);
    m_pTextEditMessage->setAcceptRichText(false);
    m_pTextEditMessage->setReadOnly(true);
    m_pTextEditMessage->setPlainText(m_tarvik.note());
    m_pTextEditMessage->setAccessibleName(CTexts::messageTitle());
    pGrid->addWidget(m_pTextEditMessage, 3, 0, 1, 2);
    pGrid->setRowStretch(3, 1);
    pGrid->setColumnStretch(1, 1);

    m_pToolBar = CTWToolBar::createSideBar(this);
    QBoxLayout* pBar = m_pToolBar->boxLayout();
    if (!bSent) {
        m_pBtnShowOnMap =
            addButton(CTexts::showOnMap(), Qt::AlignTop, &CViewTarvikForm::onBtnShowOnMapClick);
        m_pBtnViewRoute =
            addButton(CTexts::viewRoute(), Qt::AlignTop, &CViewTarvikForm::onBtnViewRouteClick);
    }
    pBar->addStretch(1);
    if (!bSent)
        m_pBtnReply =
            addButton(CTexts::reply(), Qt::AlignBottom, &CViewTarvikForm::onBtnReplyClick);
    m_pBtnForward =
        addButton(CTexts::forward(), Qt::AlignBottom, &CViewTarvikForm::onBtnForwardClick);
    m_pBtnBack = addButton(CTexts::back(), Qt::AlignBottom, &CViewTarvikForm::onBtnCloseClick);

    setBody(pContent, m_pToolBar);

    // A long press shows the same menu as a right click, for touch screens.
    m_timerLongPress.setSingleShot(true);
    m_timerLongPress.setInterval(LONG_PRESS_MS);
    connect(&m_timerLongPress, &QTimer::timeout, this,
            [this] { showPositionMenu(m_pointPressed); });
    extendFieldMenu(m_pLineEditDate, m_pLineEditDate);
    extendFieldMenu(m_pLineEditFromTo, m_pLineEditFromTo);
    extendFieldMenu(m_pLineEditSubject, m_pLineEditSubject);
    extendFieldMenu(m_pTextEditMessage, m_pTextEditMessage->viewport());
}

CViewTarvikForm::~CViewTarvikForm()
{
    // An answer still on its way carries the tag: free it when it arrives, since other
    // listeners may still look at the pointer until then.
    if (CViewUserData* pTag = m_pPendingUserData) {
        CAsyncTStorage* pStorage = CAsyncTStorage::getInstance(1);
        auto* pConnection = new QMetaObject::Connection;
        *pConnection = connect(
            pStorage, &CAsyncTStorage::signalSettingsGotten, pStorage,
            [pTag, pConnection](bool, const CTSettings&, CTarvikStorage::CUserData* pUserData) {
                if (pUserData != pTag)
                    return;
                QObject::disconnect(*pConnection);
                delete pConnection;
                delete pTag;
            });
    }
}

CLineEdit* CViewTarvikForm::addField(QGridLayout* pGrid, int iRow, const QString& strLabel,
                                     const QString& strText)
{
    auto* pLabel = new QLabel(pGrid->parentWidget());
    pLabel->setTextFormat(Qt::PlainText);
    pLabel->setText(strLabel);
    QFont font = pLabel->font();
    font.setBold(true);
    pLabel->setFont(font);

    auto* pEdit = new CLineEdit(pGrid->parentWidget(), CLineEdit::eLineEditNavigateOnly);
    pEdit->setText(strText);
    pEdit->setCursorPosition(0);
    pEdit->setAttribute(Qt::WA_InputMethodEnabled, false);
    pEdit->setAccessibleName(accessibleLabel(strLabel));
    pLabel->setBuddy(pEdit);

    pGrid->addWidget(pLabel, iRow, 0);
    pGrid->addWidget(pEdit, iRow, 1);
    return pEdit;
}

CTWPushButton* CViewTarvikForm::addButton(const QString& strText, Qt::Alignment alignment,
                                          void (CViewTarvikForm::*slot)())
{
    CTWPushButton* pButton = m_pToolBar->addButton(strText, alignment);
    connect(pButton, &QAbstractButton::clicked, this, slot);
    return pButton;
}

QUrl CViewTarvikForm::geoUri() const
{
    return QUrl(QStringLiteral("geo:%1,%2")
                    .arg(m_tarvik.latitude(), 0, 'f', 6)
                    .arg(m_tarvik.longitude(), 0, 'f', 6));
}

QString CViewTarvikForm::coordinatesText() const
{
    return QStringLiteral("%1, %2")
        .arg(m_tarvik.latitude(), 0, 'f', 6)
        .arg(m_tarvik.longitude(), 0, 'f', 6);
}

bool CViewTarvikForm::openInMapApplication()
{
    if (QDesktopServices::openUrl(geoUri()))
        return true;
    qWarning("%s", qPrintable(QStringLiteral("CViewTarvikForm: no application took ") +
                              geoUri().toString()));
    return false;
}

void CViewTarvikForm::copyCoordinates()
{
    auto* pData = new QMimeData;
    pData->setText(coordinatesText());
    pData->setUrls({geoUri()});
    QGuiApplication::clipboard()->setMimeData(pData);
}

QMenu* CViewTarvikForm::createPositionMenu()
{
    auto* pMenu = new QMenu(this);
    pMenu->setAccessibleName(CTexts::messageTitle());
    pMenu->addAction(CTexts::openInMapApplication(), this, [this] { openInMapApplication(); });
    pMenu->addAction(CTexts::copyCoordinates(), this, [this] { copyCoordinates(); });
    return pMenu;
}

void CViewTarvikForm::showPositionMenu(const QPoint& globalPos, QMenu* pMenu)
{
    if (!pMenu) {
        pMenu = createPositionMenu();
    } else {
        QMenu* pPosition = createPositionMenu();
        pMenu->addSeparator();
        pMenu->addActions(pPosition->actions());
        pPosition->setParent(pMenu, Qt::Popup);
    }
    pMenu->setAttribute(Qt::WA_DeleteOnClose);
    pMenu->popup(globalPos);
}

void CViewTarvikForm::extendFieldMenu(QWidget* pField, QWidget* pMouseTarget)
{
    pField->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(pField, &QWidget::customContextMenuRequested, this, [this, pField](const QPoint& pos) {
        m_timerLongPress.stop();
        QMenu* pMenu = nullptr;
        if (auto* pLine = qobject_cast<QLineEdit*>(pField))
            pMenu = pLine->createStandardContextMenu();
        else if (auto* pText = qobject_cast<QTextEdit*>(pField))
            pMenu = pText->createStandardContextMenu();
        if (pMenu)
            pMenu->setParent(this, Qt::Popup);
        showPositionMenu(pField->mapToGlobal(pos), pMenu);
    });
    pMouseTarget->installEventFilter(this);
}

bool CViewTarvikForm::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    // A finger's touch arrives here as a mouse press too: the fields take touch only to
    // flick, and Qt turns an unhandled touch into mouse events.
    auto* pWidget = qobject_cast<QWidget*>(pWatched);
    if (pWidget && pEvent->type() == QEvent::MouseButtonPress) {
        auto* pMouse = static_cast<QMouseEvent*>(pEvent);
        if (pMouse->button() == Qt::LeftButton) {
            m_pointPressed = pMouse->globalPosition().toPoint();
            m_timerLongPress.start();
        }
    } else if (pEvent->type() == QEvent::MouseButtonRelease ||
               (pEvent->type() == QEvent::MouseMove &&
                (static_cast<QMouseEvent*>(pEvent)->globalPosition().toPoint() - m_pointPressed)
                        .manhattanLength() > LONG_PRESS_SLOP)) {
        m_timerLongPress.stop();
    }
    return CForm::eventFilter(pWatched, pEvent);
}

void CViewTarvikForm::contextMenuEvent(QContextMenuEvent* pEvent)
{
    m_timerLongPress.stop();
    showPositionMenu(pEvent->globalPos());
    pEvent->accept();
}

void CViewTarvikForm::mousePressEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() == Qt::LeftButton) {
        m_pointPressed = pEvent->globalPosition().toPoint();
        m_timerLongPress.start();
    }
    CForm::mousePressEvent(pEvent);
}

void CViewTarvikForm::mouseReleaseEvent(QMouseEvent* pEvent)
{
    m_timerLongPress.stop();
    CForm::mouseReleaseEvent(pEvent);
}

void CViewTarvikForm::orientationChanged(bool bPortrait)
{
    m_pLineEditDate->setText(QLocale::system().toString(
        m_tarvik.dateTime().toLocalTime(), bPortrait ? QLocale::ShortFormat : QLocale::LongFormat));
    m_pLineEditDate->setCursorPosition(0);
}

QString CViewTarvikForm::title() const
{
    return CTexts::messageTitle();
}

void CViewTarvikForm::onBtnCloseClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    Q_EMIT closeForm(true, this);
}

void CViewTarvikForm::onBtnShowOnMapClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    Q_EMIT showForm(
        CFormFactory::createMapForm(parentWidget(), m_tarvik, CFormFactory::eMapPosition));
}

void CViewTarvikForm::onBtnViewRouteClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    if (!CDeviceModeGuard::check(QStringLiteral("CViewTarvikForm::onBtnViewRouteClick"), this))
        return;
    Q_EMIT showForm(CFormFactory::createMapForm(parentWidget(), m_tarvik, CFormFactory::eMapRoute));
}

void CViewTarvikForm::onBtnReplyClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    requestSettings(eUseCaseReply);
}

void CViewTarvikForm::onBtnForwardClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    requestSettings(eUseCaseForward);
}

void CViewTarvikForm::requestSettings(int useCase)
{
    // One request at a time: a second tap waits for the first answer.
    if (m_pPendingUserData)
        return;
    CAsyncTStorage* pStorage = CAsyncTStorage::getInstance(1);
    connect(pStorage, &CAsyncTStorage::signalSettingsGotten, this, &CViewTarvikForm::settingsGotten,
            Qt::UniqueConnection);
    m_pPendingUserData = new CViewUserData(useCase);
    if (!pStorage->getSettings(m_pPendingUserData)) {
        disconnect(pStorage, &CAsyncTStorage::signalSettingsGotten, this,
                   &CViewTarvikForm::settingsGotten);
        delete m_pPendingUserData;
        m_pPendingUserData = nullptr;
        qCritical("CViewTarvikForm::settingsGotten: failed to get settings from storage");
    }
}

void CViewTarvikForm::settingsGotten(bool result, CTSettings settings,
                                     CTarvikStorage::CUserData* userData)
{
    // Another screen's request (tagged or not): not ours to answer or free.
    if (!m_pPendingUserData || userData != m_pPendingUserData)
        return;
    disconnect(CAsyncTStorage::getInstance(1), &CAsyncTStorage::signalSettingsGotten, this,
               &CViewTarvikForm::settingsGotten);
    CViewUserData* pTag = m_pPendingUserData;
    m_pPendingUserData = nullptr;
    if (!result) {
        qCritical("CViewTarvikForm::settingsGotten: failed to get settings from storage");
        delete pTag;
        return;
    }
    qDebug("CViewTarvikForm::settingsGotten");
    const int useCase = pTag->m_useCase;
    delete pTag;

    const bool bSent = m_viewType == CFormFactory::eViewSent;
    const QString strShown = m_pLineEditFromTo->text();
    if (useCase == eUseCaseReply) {
        const CTarvikPrefill prefill =
            CTarvikPrefill::reply(m_tarvik, settings.screenname(), strShown);
        Q_EMIT showForm(CFormFactory::createComposeForm(parentWidget(), CFormFactory::eComposeReply,
                                                        prefill.m_strTo, prefill.m_strSubject,
                                                        prefill.m_strNote));
    } else if (useCase == eUseCaseForward) {
        const CTarvikPrefill prefill =
            CTarvikPrefill::forward(m_tarvik, bSent, settings.screenname(), strShown);
        Q_EMIT showForm(CFormFactory::createComposeForm(
            parentWidget(), CFormFactory::eComposeForward, prefill.m_strTo, prefill.m_strSubject,
            prefill.m_strNote, m_tarvik.latitude(), m_tarvik.longitude()));
    } else {
        qCritical("CViewTarvikForm::settingsGotten: incorrect use case userData->m_useCase = %d",
                  useCase);
    }
}

}  // namespace Dravo
