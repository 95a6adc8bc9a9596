// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QBoxLayout>
#include <QWidget>

#include "ctwskinned.h"

namespace Dravo {

class CTWPushButton;

// A skinned strip that holds buttons in its own box layout.
class CTWToolBar : public CTWSkinned<QWidget>
{
    Q_OBJECT
public:
    explicit CTWToolBar(QBoxLayout::Direction direction = QBoxLayout::TopToBottom,
                        QWidget* parent = nullptr);

    void setDirection(QBoxLayout::Direction direction);
    // Wrapped, the buttons fill rows along the bottom of a portrait screen.
    void setWrapping(bool bWrapping);
    // The tool bar's layout; null only if someone replaced it with another kind.
    QBoxLayout* boxLayout() const;

    // The vertical bar at the right of a screen: the tool bar skin, spacing and margins 10.
    static CTWToolBar* createSideBar(QWidget* parent);
    // Adds a button as wide as every side-bar button, named for screen readers by its
    // text (a line break read as a blank).
    CTWPushButton* addButton(const QString& strText, Qt::Alignment alignment);

    static const int SIDE_BAR_SPACING = 10;
    static const int SIDE_BAR_MARGIN = 10;
    static const int BUTTON_WIDTH = 104;

private:
    bool m_bSideBar = false;
};

}  // namespace Dravo
