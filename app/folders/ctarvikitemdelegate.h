// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPixmap>

#include "casynctstorage.h"
#include "ctarvik.h"
#include "ctwlistitemdelegate.h"

namespace Dravo {

// Paints one message of a folder as two lines beside a state icon: the sender (inbox) or
// recipient (other folders) with the date, then the title in italics. Unread and queued
// messages are bold.
class CTarvikItemDelegate : public CTWListItemDelegate
{
    Q_OBJECT
public:
    CTarvikItemDelegate(QObject* parent, CAsyncTStorage::eFolderName folderName);

    void paint(QPainter* pPainter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    // Space between the two lines, and between the icon and the text.
    static const int LINE_SPACING = 3;
    static const int ICON_SPACING = 10;

    // What the first line names and which icon the entry shows; false for a folder
    // outside 0..3 (logged).
    bool firstLineAndIcon(const CTarvik& tarvik, QString& strText, const QPixmap** ppIcon) const;

private:
    CAsyncTStorage::eFolderName m_folderName;
    QPixmap m_pixmapRead;
    QPixmap m_pixmapUnread;
    QPixmap m_pixmapSent;
    QPixmap m_pixmapSending;
    QPixmap m_pixmapFailedSend;
    QPixmap m_pixmapDraft;
};

}  // namespace Dravo
