// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStyledItemDelegate>

namespace Dravo {

// Paints one row of a dark list: a highlight image behind the selected row, a two-tone
// separator along the bottom, then the row's icon and its bold, word-wrapped text.
class CTWListItemDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit CTWListItemDelegate(QObject* parent = nullptr);

    void paint(QPainter* pPainter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    void getMargins(int& iLeft, int& iTop, int& iRight, int& iBottom) const;
    void setMargins(int iLeft, int iTop, int iRight, int iBottom);

    // Distance of the icon from the row's corner and of the text from the icon.
    static const int ICON_OFFSET = 17;
    static constexpr int MIN_SHRINK_PERCENT = 60;
    static const QRgb SEPARATOR_DARK = 0xFF111111;
    static const QRgb SEPARATOR_LIGHT = 0xFF333333;

protected:
    // Highlight and separator only; subclasses that draw their own content call this.
    void paintBackground(QPainter* pPainter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const;
    // The icon and the bold text of the row, in white.
    void drawContent(QPainter* pPainter, const QStyleOptionViewItem& option,
                     const QModelIndex& index) const;

private:
    int m_iLeftMargin;
    int m_iTopMargin;
    int m_iRightMargin;
    int m_iBottomMargin;
};

}  // namespace Dravo
