// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLabel>

#include "cbusyindicator.h"
#include "ctwskinned.h"

namespace Dravo {

// A label over a skin or brush background, with an optional busy indicator drawn above the text.
class CTWLabel : public CTWSkinned<QLabel>
{
    Q_OBJECT
public:
    explicit CTWLabel(QWidget* parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());
    explicit CTWLabel(const QString& strText, QWidget* parent = nullptr,
                      Qt::WindowFlags flags = Qt::WindowFlags());

    // Shows an art file (see artPixmap()) at its 1x logical size, in the pixels of the screen
    // the label is painted on.
    void setArtPixmap(const QString& strPath);

    void setBusy(bool bBusy);
    bool isBusy() const { return m_busy.isBusy(); }
    CAnimation* animation() { return m_busy.animation(); }

public slots:
    void onAnimationFrameChanged();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void init();

    CBusyIndicator m_busy;
    QString m_strArt;
};

}  // namespace Dravo
