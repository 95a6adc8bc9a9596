// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QListView>

#include "cbusyindicator.h"

namespace Dravo {

// A dark list: no frame, pixel scrolling, a text for an empty list, and a busy state that
// veils the rows, shows the busy indicator and refuses taps and keys.
class CTWListView : public QListView
{
    Q_OBJECT
public:
    explicit CTWListView(QWidget* parent = nullptr);
    CTWListView(const QString& strEmptyText, QWidget* parent = nullptr);

    void setBusy(bool bBusy);
    bool isBusy() const { return m_busy.isBusy(); }
    void setEmptyText(const QString& strEmptyText);
    const QString& emptyText() const { return m_strEmptyText; }
    CAnimation* animation() { return m_busy.animation(); }

public slots:
    void onAnimationFrameChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    // Keys reach the list itself, not only its viewport: drop them too while busy.
    void keyPressEvent(QKeyEvent* event) override;

private:
    CBusyIndicator m_busy;
    QString m_strEmptyText;
};

}  // namespace Dravo
