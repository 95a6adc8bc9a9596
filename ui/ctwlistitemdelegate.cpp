// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctwlistitemdelegate.h"

#include <QIcon>
#include <QPainter>

#include "uiresources.h"

namespace Dravo {

namespace {
QImage highlightImage(qreal dpr)
{
    return artImage(QStringLiteral(":/res_ui/img/list_item_bg.png"), dpr);
}
}  // namespace

CTWListItemDelegate::CTWListItemDelegate(QObject* parent)
    : QStyledItemDelegate(parent),
      m_iLeftMargin(ICON_OFFSET),
      m_iTopMargin(15),
      m_iRightMargin(ICON_OFFSET),
      m_iBottomMargin(15)
{
}

void CTWListItemDelegate::getMargins(int& iLeft, int& iTop, int& iRight, int& iBottom) const
{
    iLeft = m_iLeftMargin;
    iTop = m_iTopMargin;
    iRight = m_iRightMargin;
    iBottom = m_iBottomMargin;
}

void CTWListItemDelegate::setMargins(int iLeft, int iTop, int iRight, int iBottom)
{
    m_iLeftMargin = iLeft;
    m_iTopMargin = iTop;
    m_iRightMargin = iRight;
    m_iBottomMargin = iBottom;
}

void CTWListItemDelegate::paint(QPainter* pPainter, const QStyleOptionViewItem& option,
                                const QModelIndex& index) const
{
    paintBackground(pPainter, option, index);
    if (index.isValid())
        drawContent(pPainter, option, index);
}

void CTWListItemDelegate::paintBackground(QPainter* pPainter, const QStyleOptionViewItem& option,
                                          const QModelIndex& index) const
{
    Q_ASSERT_X(index.isValid(), "ui/ctwlistitemdelegate", "index.isValid()");
    if (!index.isValid())
        return;
    const QImage highlight = highlightImage(pPainter->device()->devicePixelRatioF());
    pPainter->save();
    const bool bSelected = option.state & QStyle::State_Selected;
    if (!bSelected)
        pPainter->setBrush(Qt::NoBrush);
    pPainter->setPen(Qt::white);
    if (bSelected && !highlight.isNull())
        pPainter->drawImage(option.rect, highlight, highlight.rect());

    const QRect& r = option.rect;
    pPainter->setPen(QPen(QColor::fromRgba(SEPARATOR_DARK), 1));
    pPainter->drawLine(r.bottomLeft() - QPoint(0, 1), r.bottomRight() - QPoint(0, 1));
    pPainter->setPen(QPen(QColor::fromRgba(SEPARATOR_LIGHT), 1));
    pPainter->drawLine(r.bottomLeft(), r.bottomRight());
    pPainter->restore();
}

void CTWListItemDelegate::drawContent(QPainter* pPainter, const QStyleOptionViewItem& option,
                                      const QModelIndex& index) const
{
    const QString strText = index.data(Qt::DisplayRole).toString();
    const QVariant decoration = index.data(Qt::DecorationRole);

    pPainter->save();
    pPainter->setPen(Qt::white);
    int iIconWidth = 0;
    if (decoration.canConvert<QIcon>() && decoration.userType() == QMetaType::QIcon) {
        // At its 1x size, in the pixels of the device painted on.
        const QIcon icon = qvariant_cast<QIcon>(decoration);
        const QSize iconSize = artIconSize(icon);
        const QPixmap pixmap = icon.pixmap(iconSize, pPainter->device()->devicePixelRatioF(),
                                           QIcon::Normal, QIcon::Off);
        if (!pixmap.isNull()) {
            iIconWidth = iconSize.width();
            pPainter->drawPixmap(
                QRect(option.rect.topLeft() + QPoint(ICON_OFFSET, ICON_OFFSET), iconSize), pixmap);
        }
    }

    QRect textRect =
        option.rect.adjusted(m_iLeftMargin, m_iTopMargin, -m_iRightMargin, -m_iBottomMargin);
    textRect.setLeft(textRect.left() + iIconWidth + ICON_OFFSET);

    QFont font = pPainter->font();
    font.setBold(true);
    // A text too long for a narrow (portrait) row is set smaller rather than cut, down to
    // MIN_SHRINK of its size, and elided only below that.
    const int iPixels = font.pixelSize();
    QString strShown = strText;
    if (iPixels > 0 && !strText.contains(QLatin1Char('\n'))) {
        const int iFloor = qMax(1, iPixels * MIN_SHRINK_PERCENT / 100);
        while (font.pixelSize() > iFloor &&
               QFontMetrics(font).horizontalAdvance(strText) > textRect.width())
            font.setPixelSize(font.pixelSize() - 1);
        strShown = QFontMetrics(font).elidedText(strText, Qt::ElideRight, textRect.width());
    }
    pPainter->setFont(font);
    pPainter->drawText(textRect, Qt::AlignVCenter | Qt::TextWordWrap, strShown);
    pPainter->restore();
}

QSize CTWListItemDelegate::sizeHint(const QStyleOptionViewItem& option,
                                    const QModelIndex& index) const
{
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.rheight() += m_iTopMargin + m_iBottomMargin;
    return size;
}

}  // namespace Dravo
