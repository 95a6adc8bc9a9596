// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QBrush>
#include <QIcon>
#include <QToolButton>

namespace Dravo {

// A tool button that paints only its brush and its icon, centred; no frame, text or style.
class CTWToolButton : public QToolButton
{
    Q_OBJECT
public:
    explicit CTWToolButton(QWidget* parent = nullptr);

    // A parentless button showing the icon at its natural (1x) size.
    static CTWToolButton* createButton(const QIcon& icon, bool bCheckable, bool bAutoExclusive,
                                       bool bFocusable);
    static CTWToolButton* createButton(const QIcon& icon, bool bFocusable = false);
    // An icon from three images under strDir: normal off, normal on (pressed or checked),
    // and the one shown when disabled.
    static QIcon createIcon(const QString& strDir, const QString& strNormalOff,
                            const QString& strNormalOn, const QString& strDisabled);

    void setBrush(const QBrush& brush);
    const QBrush& brush() const { return m_brush; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QBrush m_brush;
};

}  // namespace Dravo
