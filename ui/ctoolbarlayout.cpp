// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctoolbarlayout.h"

#include <QWidget>

namespace Dravo {

CToolBarLayout::CToolBarLayout(Direction direction, QWidget* parent) : QBoxLayout(direction, parent)
{
}

void CToolBarLayout::setWrapping(bool bWrapping)
{
    if (m_bWrapping == bWrapping)
        return;
    m_bWrapping = bWrapping;
    invalidate();
    if (QWidget* pWidget = parentWidget())
        pWidget->updateGeometry();
}

QList<QLayoutItem*> CToolBarLayout::wrappedItems() const
{
    QList<QLayoutItem*> items;
    for (int i = 0; i < count(); ++i) {
        QLayoutItem* pItem = itemAt(i);
        if (pItem && !pItem->spacerItem() && !pItem->isEmpty())
            items.append(pItem);
    }
    return items;
}

int CToolBarLayout::cellWidth(const QList<QLayoutItem*>& items) const
{
    int iWidth = 0;
    for (const QLayoutItem* pItem : items)
        iWidth = qMax(iWidth, pItem->sizeHint().width());
    return iWidth;
}

int CToolBarLayout::columnsFor(int iWidth, const QList<QLayoutItem*>& items) const
{
    if (items.isEmpty())
        return 1;
    const QMargins margins = contentsMargins();
    const int iAvailable = iWidth - margins.left() - margins.right();
    const int iCell = cellWidth(items);
    int iColumns =
        qBound(1, (iAvailable + spacing()) / qMax(1, iCell + spacing()), int(items.size()));
    // Balanced rows: five buttons in rows of three and two, not four and one.
    const int iRows = (int(items.size()) + iColumns - 1) / iColumns;
    iColumns = (int(items.size()) + iRows - 1) / iRows;
    return iColumns;
}

int CToolBarLayout::arrange(const QRect& rect, bool bApply) const
{
    const QList<QLayoutItem*> items = wrappedItems();
    const QMargins margins = contentsMargins();
    if (items.isEmpty())
        return margins.top() + margins.bottom();
    const int iColumns = columnsFor(rect.width(), items);
    const int iSpacing = spacing();
    const int iAvailable = rect.width() - margins.left() - margins.right();
    const int iCell = qMax(1, (iAvailable - (iColumns - 1) * iSpacing) / iColumns);
    const int iRows = (int(items.size()) + iColumns - 1) / iColumns;

    int iY = rect.y() + margins.top();
    for (int iRow = 0; iRow < iRows; ++iRow) {
        const int iFirst = iRow * iColumns;
        const int iInRow = qMin(iColumns, int(items.size()) - iFirst);
        int iHeight = TOUCH_TARGET;
        for (int i = iFirst; i < iFirst + iInRow; ++i)
            iHeight = qMax(iHeight, items[i]->sizeHint().height());
        // A short last row keeps to the right, under the cells above it.
        int iX = rect.right() + 1 - margins.right() - iInRow * iCell - (iInRow - 1) * iSpacing;
        for (int i = iFirst; bApply && i < iFirst + iInRow; ++i) {
            QRect cell(iX, iY, iCell, iHeight);
            // A fixed-size widget (the map's arrows) sits centred in its cell; the item's own
            // maximum is not asked, as an alignment would cap it at the size hint. A button
            // in a row made tall by such a widget keeps a button's height, at the bottom.
            if (QWidget* pWidget = items[i]->widget()) {
                QSize size = cell.size().boundedTo(pWidget->maximumSize());
                const bool bFixed = pWidget->maximumSize() == pWidget->minimumSize();
                if (!bFixed)
                    size.setHeight(
                        qMin(size.height(), qMax(TOUCH_TARGET, items[i]->sizeHint().height())));
                const int iTop = bFixed ? cell.y() + (cell.height() - size.height()) / 2
                                        : cell.bottom() + 1 - size.height();
                pWidget->setGeometry(cell.x() + (cell.width() - size.width()) / 2, iTop,
                                     size.width(), size.height());
            } else {
                items[i]->setGeometry(cell);
            }
            iX += iCell + iSpacing;
        }
        iY += iHeight + (iRow + 1 < iRows ? iSpacing : 0);
    }
    return iY + margins.bottom() - rect.y();
}

QSize CToolBarLayout::sizeHint() const
{
    if (!m_bWrapping)
        return QBoxLayout::sizeHint();
    const QList<QLayoutItem*> items = wrappedItems();
    const QMargins margins = contentsMargins();
    const int iWidth = margins.left() + margins.right() + int(items.size()) * cellWidth(items) +
                       qMax(0, int(items.size()) - 1) * spacing();
    return QSize(iWidth, heightForWidth(iWidth));
}

QSize CToolBarLayout::minimumSize() const
{
    if (!m_bWrapping)
        return QBoxLayout::minimumSize();
    const QMargins margins = contentsMargins();
    const int iWidth = margins.left() + margins.right() + cellWidth(wrappedItems());
    return QSize(iWidth, heightForWidth(iWidth));
}

QSize CToolBarLayout::maximumSize() const
{
    if (!m_bWrapping)
        return QBoxLayout::maximumSize();
    return QSize(QLAYOUTSIZE_MAX, QLAYOUTSIZE_MAX);
}

bool CToolBarLayout::hasHeightForWidth() const
{
    return m_bWrapping || QBoxLayout::hasHeightForWidth();
}

int CToolBarLayout::heightForWidth(int iWidth) const
{
    if (!m_bWrapping)
        return QBoxLayout::heightForWidth(iWidth);
    return arrange(QRect(0, 0, iWidth, 0), false);
}

void CToolBarLayout::setGeometry(const QRect& rect)
{
    if (!m_bWrapping) {
        QBoxLayout::setGeometry(rect);
        return;
    }
    QLayout::setGeometry(rect);
    arrange(rect, true);
}

}  // namespace Dravo
