// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QIcon>

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
    bool firstLineAndIcon(const CTarvik& tarvik, QString& strText, const QIcon** ppIcon) const;

private:
    CAsyncTStorage::eFolderName m_folderName;
    QIcon m_iconRead;
    QIcon m_iconUnread;
    QIcon m_iconSent;
    QIcon m_iconSending;
    QIcon m_iconFailedSend;
    QIcon m_iconDraft;
};

}  // namespace Dravo
