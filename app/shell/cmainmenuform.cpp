// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cmainmenuform.h"

#include <QBoxLayout>
#include <QDesktopServices>
#include <QScrollBar>
#include <QUrl>

#include "caboutform.h"
#include "casynctstorage.h"
#include "cformfactory.h"
#include "ctexts.h"
#include "ctouchscroller.h"
#include "ctwlistitemdelegate.h"
#include "uiresources.h"

#ifndef TARVIK_FEEDBACK_URL
#define TARVIK_FEEDBACK_URL "https://tarvik.example.org/feedback"
#endif

namespace Dravo {

namespace {
const int MENU_FONT_PIXELS = 24;
const int ROW_MARGIN_LEFT = 17;
const int ROW_MARGIN_TOP = 18;
const int ROW_MARGIN_RIGHT = 10;
const int ROW_MARGIN_BOTTOM = 16;
}  // namespace

CMainMenuForm::CMainMenuForm(QWidget* parent)
    : CForm(parent), m_pListWidget(nullptr), m_bSettings(false)
{
    qDebug("CMainMenuForm::CMainMenuForm started");
    QBoxLayout* pLayout = qobject_cast<QBoxLayout*>(layout());
    if (!pLayout)
        return;

    m_pListWidget = new QListWidget(this);
    m_pListWidget->setFrameShape(QFrame::NoFrame);
    m_pListWidget->viewport()->setAutoFillBackground(false);
    m_pListWidget->setAttribute(Qt::WA_TranslucentBackground);
    // A transparent base rather than a style sheet, which would put the list under a
    // style sheet style (built and applied on the way to the first frame).
    QPalette palette = m_pListWidget->palette();
    palette.setColor(QPalette::Base, Qt::transparent);
    m_pListWidget->setPalette(palette);
    // Seven rows fill the 450 pixel screen; the text sits level with the 32 pixel icons.
    QFont font = m_pListWidget->font();
    font.setPixelSize(MENU_FONT_PIXELS);
    m_pListWidget->setFont(font);
    auto* pDelegate = new CTWListItemDelegate(m_pListWidget);
    pDelegate->setMargins(ROW_MARGIN_LEFT, ROW_MARGIN_TOP, ROW_MARGIN_RIGHT, ROW_MARGIN_BOTTOM);
    m_pListWidget->setItemDelegate(pDelegate);
    m_pListWidget->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    CTouchScroller::enable(m_pListWidget);
    m_pListWidget->setUniformItemSizes(true);
    connect(m_pListWidget, &QListWidget::itemClicked, this, &CMainMenuForm::itemClicked);

    const struct
    {
        const char* pIcon;
        const QString& strText;
    } entries[] = {
        {":/res/img/send.png", CTexts::sendATarvik()},
        {":/res/img/inbox.png", CTexts::inbox()},
        {":/res/img/outbox.png", CTexts::outbox()},
        {":/res/img/sent.png", CTexts::sentTarviks()},
        {":/res/img/settings.png", CTexts::settings()},
        {":/res/img/feedback.png", CTexts::feedback()},
        {":/res/img/about.png", CTexts::aboutTarvik()},
    };
    for (const auto& entry : entries)
        new QListWidgetItem(artIcon(QString::fromLatin1(entry.pIcon)), entry.strText,
                            m_pListWidget);

    pLayout->addWidget(m_pListWidget, 1);
}

QString CMainMenuForm::title() const
{
    return CTexts::appName();
}

QUrl CMainMenuForm::feedbackUrl()
{
    return QUrl(QStringLiteral(TARVIK_FEEDBACK_URL));
}

void CMainMenuForm::itemClicked(QListWidgetItem* pItem)
{
    if (!m_pListWidget || !pItem)
        return;
    const int iRow = m_pListWidget->row(pItem);
    if (iRow < 0 || iRow >= eRowCount)
        return;

    QWidget* pStack = parentWidget();
    switch (iRow) {
        case eRowSend:
            Q_EMIT showForm(CFormFactory::createComposeForm(pStack, CFormFactory::eComposeNew,
                                                            QString(), QString(), QString()));
            break;
        case eRowInbox:
            Q_EMIT showForm(CFormFactory::createInboxForm(pStack));
            break;
        case eRowOutbox:
            Q_EMIT showForm(CFormFactory::createOutboxForm(pStack));
            break;
        case eRowSent:
            Q_EMIT showForm(CFormFactory::createSentForm(pStack));
            break;
        case eRowSettings:
            requestSettings(true);
            break;
        case eRowFeedback:
            // No browser, or none that takes the address: the menu stays, the log says why.
            if (!QDesktopServices::openUrl(feedbackUrl())) {
                qWarning("%s", qPrintable(QStringLiteral("CMainMenuForm::itemClicked: could not "
                                                         "open the feedback page ") +
                                          feedbackUrl().toString()));
            }
            break;
        case eRowAbout:
            requestSettings(false);
            break;
    }
}

void CMainMenuForm::requestSettings(bool bForSettings)
{
    m_bSettings = bForSettings;
    CAsyncTStorage* pStorage = CAsyncTStorage::getInstance(1);
    connect(pStorage, &CAsyncTStorage::signalSettingsGotten, this, &CMainMenuForm::settingsGotten,
            Qt::UniqueConnection);
    if (!pStorage->getSettings()) {
        disconnect(pStorage, &CAsyncTStorage::signalSettingsGotten, this,
                   &CMainMenuForm::settingsGotten);
        qDebug("CMainMenuForm::itemClicked: storage is not ready, settings not requested");
    }
}

void CMainMenuForm::settingsGotten(bool result, CTSettings settings,
                                   CTarvikStorage::CUserData* userData)
{
    // A tagged answer was asked for by another screen.
    if (userData)
        return;
    disconnect(CAsyncTStorage::getInstance(1), &CAsyncTStorage::signalSettingsGotten, this,
               &CMainMenuForm::settingsGotten);
    if (!result) {
        qDebug("CMainMenuForm::settingsGotten: failed to get settings from db");
        return;
    }
    QWidget* pStack = parentWidget();
    if (m_bSettings) {
        Q_EMIT showForm(CFormFactory::createRegisterForm(
            pStack, CFormFactory::eRegisterAgain, settings.mynumber(), settings.screenname()));
    } else {
        Q_EMIT showForm(new CAboutForm(settings.version(), pStack));
    }
}

}  // namespace Dravo
