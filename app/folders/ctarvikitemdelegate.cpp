// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctarvikitemdelegate.h"

#include <QAbstractItemView>
#include <QLocale>
#include <QPainter>

#include "ctexts.h"

namespace Dravo {

namespace {

struct IconNames
{
    const QString read = QStringLiteral(":/res/img/message_read.png");
    const QString unread = QStringLiteral(":/res/img/message_unread.png");
    const QString sent = QStringLiteral(":/res/img/message_sent.png");
    const QString sending = QStringLiteral(":/res/img/message_sending.png");
    const QString failedSend = QStringLiteral(":/res/img/message_failed_send.png");
    const QString draft = QStringLiteral(":/res/img/message_draft.png");
};

const IconNames& iconNames()
{
    static const IconNames s_names;
    return s_names;
}

// The title line is a step quieter than the name line.
const QColor SUBTITLE_COLOR(0xb4, 0xb9, 0xc2);

const int WEIGHT_BOLD = 75;
const int WEIGHT_NORMAL = 50;

// Qt 6 weights run 100..900; 75 and 50 are the old scale's bold and normal.
QFont::Weight weightFor(int iOldWeight)
{
    return iOldWeight >= WEIGHT_BOLD ? QFont::Bold : QFont::Normal;
}

CTarvik tarvikAt(const QModelIndex& index)
{
    const QVariant value = index.data(Qt::UserRole);
    if (value.canConvert<CTarvik>() && value.userType() == qMetaTypeId<CTarvik>())
        return value.value<CTarvik>();
    return CTarvik();
}

}  // namespace

CTarvikItemDelegate::CTarvikItemDelegate(QObject* parent, CAsyncTStorage::eFolderName folderName)
    : CTWListItemDelegate(parent),
      m_folderName(folderName),
      m_iconRead(iconNames().read),
      m_iconUnread(iconNames().unread),
      m_iconSent(iconNames().sent),
      m_iconSending(iconNames().sending),
      m_iconFailedSend(iconNames().failedSend),
      m_iconDraft(iconNames().draft)
{
    setMargins(10, 5, 10, 5);
}

bool CTarvikItemDelegate::firstLineAndIcon(const CTarvik& tarvik, QString& strText,
                                           const QIcon** ppIcon) const
{
    switch (int(m_folderName)) {
        case CAsyncTStorage::eFolderInbox:
            strText = tarvik.screenname();
            *ppIcon = tarvik.flag() != 0 ? &m_iconUnread : &m_iconRead;
            return true;
        case CAsyncTStorage::eFolderOutbox:
            strText = tarvik.to();
            *ppIcon = tarvik.flag() != 0 ? &m_iconSending : &m_iconFailedSend;
            return true;
        case CAsyncTStorage::eFolderSent:
            strText = tarvik.to();
            *ppIcon = &m_iconSent;
            return true;
        case CAsyncTStorage::eFolderDraft:
            strText = tarvik.to().isEmpty() ? CTexts::emptyField() : tarvik.to();
            *ppIcon = &m_iconDraft;
            return true;
        default:
            break;
    }
    strText.clear();
    *ppIcon = nullptr;
    qCritical("CTarvikItemDelegate::calcSize failed: invalid folder name");
    return false;
}

void CTarvikItemDelegate::paint(QPainter* pPainter, const QStyleOptionViewItem& option,
                                const QModelIndex& index) const
{
    if (!index.isValid())
        return;
    paintBackground(pPainter, option, index);

    const CTarvik tarvik = tarvikAt(index);
    QString strFirst;
    const QIcon* pIcon = nullptr;
    firstLineAndIcon(tarvik, strFirst, &pIcon);

    QFont font = option.font;
    font.setWeight(weightFor(tarvik.flag() != 0 ? WEIGHT_BOLD : WEIGHT_NORMAL));
    font.setItalic(false);

    int iLeft, iTop, iRight, iBottom;
    getMargins(iLeft, iTop, iRight, iBottom);
    QRect rect = option.rect.adjusted(iLeft, iTop, -iRight, -iBottom);

    pPainter->save();
    if (pIcon && !pIcon->isNull()) {
        // The icon is as high as the two lines; its pixmap comes from the art variant for the
        // device's pixel ratio and is stretched smoothly the rest of the way.
        const QRect iconRect(rect.left(), rect.top(), rect.height(), rect.height());
        pPainter->setRenderHint(QPainter::SmoothPixmapTransform);
        pPainter->drawPixmap(
            iconRect, pIcon->pixmap(iconRect.size(), pPainter->device()->devicePixelRatioF()));
    }
    rect.setLeft(rect.left() + rect.height() + ICON_SPACING);

    pPainter->setPen(Qt::white);
    pPainter->setFont(font);
    const QFontMetrics firstMetrics(font);
    const QString strDate =
        QLocale::system().toString(tarvik.dateTime().toLocalTime(), QLocale::ShortFormat);
    const QString strLine1 = firstMetrics.elidedText(strFirst + QStringLiteral("  ") + strDate,
                                                     Qt::ElideRight, rect.width());
    const QRect line1Rect(rect.left(), rect.top(), rect.width(), firstMetrics.height());
    pPainter->drawText(line1Rect, Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, strLine1);

    font.setItalic(true);
    pPainter->setFont(font);
    const QFontMetrics secondMetrics(font);
    const QString strTitle = tarvik.title().isEmpty() ? CTexts::emptyField() : tarvik.title();
    const QString strLine2 = secondMetrics.elidedText(strTitle, Qt::ElideRight, rect.width());
    const QRect line2Rect(rect.left(), line1Rect.bottom() + 1 + LINE_SPACING, rect.width(),
                          secondMetrics.height());
    pPainter->setPen(SUBTITLE_COLOR);
    pPainter->drawText(line2Rect, Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, strLine2);
    pPainter->restore();
}

QSize CTarvikItemDelegate::sizeHint(const QStyleOptionViewItem& option,
                                    const QModelIndex& index) const
{
    QString strFirst;
    const QIcon* pIcon = nullptr;
    firstLineAndIcon(tarvikAt(index), strFirst, &pIcon);

    QFont font = option.font;
    font.setWeight(QFont::Bold);
    font.setItalic(false);
    const QFontMetrics metrics(font);
    const auto* pView = qobject_cast<const QAbstractItemView*>(option.widget);
    const int iWidth = pView ? pView->viewport()->width() : option.rect.width();
    // The line is measured as it will be drawn: single, elided to the width.
    const QRect lineRect =
        metrics.boundingRect(metrics.elidedText(strFirst, Qt::ElideRight, qMax(0, iWidth)));
    const int iLine = qMax(lineRect.height(), metrics.height());

    int iLeft, iTop, iRight, iBottom;
    getMargins(iLeft, iTop, iRight, iBottom);
    return QSize(iWidth, 2 * iLine + LINE_SPACING + iTop + iBottom);
}

}  // namespace Dravo
