// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QTextEdit>

namespace Dravo {

// A multi-line field that reports focus changes.
class CTextEdit : public QTextEdit
{
    Q_OBJECT
public:
    CTextEdit(const QString& strText, QWidget* parent = nullptr);
    explicit CTextEdit(QWidget* parent = nullptr);

signals:
    void signalFocusGotten();
    void signalFocusLost();

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
};

}  // namespace Dravo
