// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QBoxLayout>

namespace Dravo {

// A tool bar's layout. Unwrapped it is the plain box: a column of buttons at the right of a
// landscape screen, with its stretches and alignments. Wrapped it fills rows along the
// bottom of a portrait screen: visible items in equal cells as wide as the widest one
// needs, as many to a row as fit, the last row against the right edge (Back stays at the
// corner it has in landscape), every row at least a finger's height. Stretches are ignored
// while wrapped, so the same layout serves both orientations.
class CToolBarLayout : public QBoxLayout
{
public:
    explicit CToolBarLayout(Direction direction, QWidget* parent = nullptr);

    void setWrapping(bool bWrapping);
    bool isWrapping() const { return m_bWrapping; }

    QSize sizeHint() const override;
    QSize minimumSize() const override;
    QSize maximumSize() const override;
    bool hasHeightForWidth() const override;
    int heightForWidth(int iWidth) const override;
    void setGeometry(const QRect& rect) override;

    // The smallest row of a wrapped bar, about 9 mm at the usual phone densities.
    static constexpr int TOUCH_TARGET = 48;

private:
    QList<QLayoutItem*> wrappedItems() const;
    int cellWidth(const QList<QLayoutItem*>& items) const;
    int columnsFor(int iWidth, const QList<QLayoutItem*>& items) const;
    // Lays the items out in rect when bApply is set; returns the height the rows need.
    int arrange(const QRect& rect, bool bApply) const;

    bool m_bWrapping = false;
};

}  // namespace Dravo
