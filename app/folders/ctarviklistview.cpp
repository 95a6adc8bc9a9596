// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctarviklistview.h"

#include "ctarvikitemdelegate.h"
#include "ctarviklistmodel.h"
#include "ctexts.h"

namespace Dravo {

namespace {
const int LIST_FONT_PIXELS = 19;
}  // namespace

CTarvikListView::CTarvikListView(QWidget* parent, CAsyncTStorage::eFolderName folderName)
    : CTWListView(CTexts::noTarviks(), parent), m_folderName(folderName)
{
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Every entry has the same height: the view need not ask the delegate for each of
    // ten thousand rows.
    setUniformItemSizes(true);
    // Two lines per entry, large enough to read and to hit with a finger.
    QFont listFont = font();
    listFont.setPixelSize(LIST_FONT_PIXELS);
    setFont(listFont);
    setAccessibleName(folderName == CAsyncTStorage::eFolderInbox    ? CTexts::inbox()
                      : folderName == CAsyncTStorage::eFolderOutbox ? CTexts::outbox()
                      : folderName == CAsyncTStorage::eFolderSent   ? CTexts::sentTarviks()
                                                                    : CTexts::noTarviks());

    auto* pModel = new CTarvikListModel(this, folderName);
    auto* pDelegate = new CTarvikItemDelegate(this, folderName);
    setModel(pModel);
    setItemDelegate(pDelegate);
    connect(pModel, &CTarvikListModel::fetchingStarted, this, &CTarvikListView::onFetchingStarted);
    connect(pModel, &CTarvikListModel::fetchingComplete, this,
            &CTarvikListView::onFetchingComplete);
}

CTarvikListModel* CTarvikListView::tarvikModel() const
{
    return qobject_cast<CTarvikListModel*>(model());
}

void CTarvikListView::refresh()
{
    if (CTarvikListModel* pModel = tarvikModel())
        pModel->refresh();
}

void CTarvikListView::onFetchingStarted()
{
    setBusy(true);
}

void CTarvikListView::onFetchingComplete()
{
    setBusy(false);
    scrollToTop();
    Q_EMIT refreshCompleted();
}

}  // namespace Dravo
