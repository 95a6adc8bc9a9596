// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cfolderform.h"

#include <QBoxLayout>

#include "cdevicemodeguard.h"
#include "cformfactory.h"
#include "ctarviklistmodel.h"
#include "ctarviklistview.h"
#include "ctexts.h"
#include "ctwtoolbar.h"

namespace Dravo {

CFolderForm::CFolderForm(QWidget* parent, const CTraits& traits)
    : CForm(parent),
      m_traits(traits),
      m_pListView(nullptr),
      m_pToolBar(nullptr),
      m_pBtnDeleteAll(nullptr),
      m_pBtnOpen(nullptr),
      m_pBtnDelete(nullptr),
      m_pBtnSendReceive(nullptr),
      m_pBtnBack(nullptr)
{
    qDebug("%s::%s started", m_traits.pClassName, m_traits.pClassName);

    m_pListView = new CTarvikListView(this, m_traits.folderName);

    m_pToolBar = CTWToolBar::createSideBar(this);
    QBoxLayout* pBar = m_pToolBar->boxLayout();
    if (m_traits.bOpenButtons) {
        m_pBtnDeleteAll =
            addButton(CTexts::deleteAll(), Qt::AlignTop, &CFolderForm::onBtnDeleteAllClick);
        pBar->addStretch(1);
        m_pBtnOpen = addButton(CTexts::open(), Qt::AlignVCenter, &CFolderForm::onBtnOpenClick);
    }
    m_pBtnDelete =
        addButton(CTexts::deleteText(), Qt::AlignVCenter, &CFolderForm::onBtnDeleteClick);
    pBar->addStretch(1);
    if (m_traits.bSendReceive) {
        m_pBtnSendReceive =
            addButton(CTexts::sendReceive(), Qt::AlignBottom, &CFolderForm::onBtnSendReceiveClick);
    }
    m_pBtnBack = addButton(CTexts::back(), Qt::AlignBottom, &CFolderForm::onBtnCloseClick);

    setBody(m_pListView, m_pToolBar);

    connect(m_pListView, &QAbstractItemView::clicked, this, &CFolderForm::itemClicked);
    if (m_traits.bOpenButtons) {
        connect(m_pListView, &QAbstractItemView::doubleClicked, this,
                &CFolderForm::itemDoubleClicked);
    }
    connect(m_pListView, &CTarvikListView::refreshCompleted, this, &CFolderForm::refreshCompleted);

    CAsyncTStorage* pStorage = CAsyncTStorage::getInstance(1);
    connect(pStorage, &CAsyncTStorage::signalTarvikRemoved, this,
            [this](bool result, int tid, uint folderName, CTarvikStorage::CUserData*) {
                tarvikRemoved(result, tid, folderName);
            });
    connect(pStorage, &CAsyncTStorage::signalAllTarviksRemoved, this,
            [this](bool result, uint folderName, CTarvikStorage::CUserData*) {
                allTarviksRemoved(result, folderName);
            });
    connect(pStorage, &CAsyncTStorage::signalTarvikSaved, this,
            [this](bool result, int tid, uint folderName, CTarvikStorage::CUserData*) {
                tarvikSaved(result, tid, folderName);
            });
    connect(pStorage, &CAsyncTStorage::signalTarviksSaved, this,
            [this](bool result, const QList<int>& tids, uint folderName,
                   CTarvikStorage::CUserData*) { tarviksSaved(result, tids, folderName); });
}

CTWPushButton* CFolderForm::addButton(const QString& strText, Qt::Alignment alignment,
                                      void (CFolderForm::*slot)())
{
    CTWPushButton* pButton = m_pToolBar->addButton(strText, alignment);
    pButton->setEnabled(false);
    connect(pButton, &QAbstractButton::clicked, this, slot);
    return pButton;
}

int CFolderForm::rowCount() const
{
    const CTarvikListModel* pModel = m_pListView->tarvikModel();
    return pModel ? pModel->itemCount() : 0;
}

void CFolderForm::logCritical(const QString& strText) const
{
    qCritical("%s",
              qPrintable(QLatin1String(m_traits.pClassName) + QStringLiteral("::") + strText));
}

QString CFolderForm::title() const
{
    const int iRows = m_pListView ? rowCount() : 0;
    if (iRows <= 0)
        return m_traits.strTitle;
    return CTexts::titleWithCount(m_traits.strTitle, iRows);
}

void CFolderForm::refresh()
{
    qDebug("%s::refresh", m_traits.pClassName);
    m_currentTarvik = CTarvik();
    m_pListView->refresh();
}

void CFolderForm::refreshCompleted()
{
    Q_EMIT updateTitle(this);
    if (m_pBtnDeleteAll)
        m_pBtnDeleteAll->setEnabled(rowCount() > 0);
    if (m_pBtnSendReceive)
        m_pBtnSendReceive->setEnabled(true);
    m_pBtnBack->setEnabled(true);
    if (m_pBtnOpen)
        m_pBtnOpen->setEnabled(false);
    m_pBtnDelete->setEnabled(false);
}

bool CFolderForm::selectIndex(const QModelIndex& index, const char* pSlotName)
{
    const CTarvikListModel* pModel = m_pListView->tarvikModel();
    if (!pModel || !index.isValid() || index.row() >= pModel->itemCount()) {
        logCritical(QLatin1String(pSlotName) + QStringLiteral(" failed: invalid item's index"));
        return false;
    }
    m_currentTarvik = pModel->itemAt(index.row());
    return true;
}

void CFolderForm::itemClicked(const QModelIndex& index)
{
    if (!selectIndex(index, "itemClicked"))
        return;
    if (m_pBtnOpen)
        m_pBtnOpen->setEnabled(true);
    // A message that is still being sent cannot be taken back.
    m_pBtnDelete->setEnabled(!m_traits.bDeleteOnlyFailed || m_currentTarvik.flag() == 0);
}

void CFolderForm::itemDoubleClicked(const QModelIndex& index)
{
    if (!selectIndex(index, "itemDoubleClicked"))
        return;
    onBtnOpenClick();
}

void CFolderForm::onBtnOpenClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    if (m_currentTarvik.id() == -1)
        return;

    Q_EMIT showForm(
        CFormFactory::createViewForm(parentWidget(), m_currentTarvik, m_traits.iViewType));

    if (m_traits.bMarkReadOnOpen && m_currentTarvik.flag() == 1) {
        m_currentTarvik.setFlag(0);
        if (!CAsyncTStorage::getInstance(1)->saveTarvik(m_currentTarvik, m_traits.folderName))
            logCritical(QStringLiteral("onBtnOpenClick: storage is not ready"));
    }
}

void CFolderForm::onBtnDeleteClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    if (m_currentTarvik.id() == -1)
        return;
    if (!CAsyncTStorage::getInstance(1)->removeTarvik(m_currentTarvik.id(), m_traits.folderName))
        logCritical(QStringLiteral("onBtnDeleteClick: storage is not ready"));
}

void CFolderForm::onBtnDeleteAllClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    if (rowCount() < 1)
        return;
    if (!CAsyncTStorage::getInstance(1)->removeAllTarviks(m_traits.folderName))
        logCritical(QStringLiteral("onBtnDeleteAllClick: storage is not ready"));
}

void CFolderForm::onBtnSendReceiveClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    if (!CDeviceModeGuard::check(QStringLiteral("CComposeTarvikForm::onBtnSendClick"), this))
        return;
    Q_EMIT showForm(CFormFactory::createSendReceivePopup(parentWidget()));
}

void CFolderForm::onBtnCloseClick()
{
    if (buttonsLocked())
        return;
    lockButtons();
    Q_EMIT closeForm(true, this);
}

void CFolderForm::tarvikRemoved(bool result, int tid, uint folderName)
{
    if (!isOwnFolder(folderName))
        return;
    if (result)
        refresh();
    else
        logCritical(QStringLiteral("tarvikRemoved failed id = %1").arg(tid));
}

void CFolderForm::allTarviksRemoved(bool result, uint folderName)
{
    if (!isOwnFolder(folderName))
        return;
    if (result)
        refresh();
    else
        logCritical(QStringLiteral("allTarviksRemoved failed"));
}

void CFolderForm::tarvikSaved(bool result, int tid, uint folderName)
{
    if (!isOwnFolder(folderName))
        return;
    if (result)
        refresh();
    else
        logCritical(QStringLiteral("tarvikSaved failed id = %1").arg(tid));
}

void CFolderForm::tarviksSaved(bool result, QList<int> tids, uint folderName)
{
    if (!isOwnFolder(folderName))
        return;
    if (result)
        refresh();
    else
        logCritical(QStringLiteral("tarviksSaved failed size=%1").arg(tids.size()));
}

}  // namespace Dravo
